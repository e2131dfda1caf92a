// SPDX-License-Identifier: MIT
#include "mezalith/geometry/geos/geos_geometry.hpp"
#include <mezalith/geometry/geos/validity.hpp>
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace mezalith {
namespace {

using detail::geosContext;
using detail::GeosGeometry;

constexpr const char* kTooFewPoints = "Too few points in geometry component";
constexpr double kNowhere = std::numeric_limits<double>::quiet_NaN();

bool isFinite(MzPoint p) { return std::isfinite(p.x) && std::isfinite(p.y); }

// --- defects that a geometry may not have on its way to the library ---------------------------

using Defect = std::optional<MzDefect>;
using Points = std::span<const MzPoint>;

Defect defectOfPoints(Points points) {
    const auto place = std::ranges::find_if_not(points, isFinite);
    if (place == points.end()) return std::nullopt;
    return MzDefect{"Invalid Coordinate", *place};
}

Defect defectOfLine(Points points) {
    if (points.size() == 1) return MzDefect{kTooFewPoints, points.front()};
    return defectOfPoints(points);
}

Defect defectOfRing(Points points) {
    if (points.empty()) return std::nullopt;
    if (auto defect = defectOfPoints(points)) return defect;
    if (!MzEqualPoints(points.front(), points.back())) {
        return MzDefect{"Ring is not closed", points.back()};
    }
    if (points.size() < 4) return MzDefect{kTooFewPoints, points.front()};
    return std::nullopt;
}

Defect defectOfRings(const MzPolygon& polygon) {
    for (const MzLinearRing& ring : ringsOf(&polygon)) {
        if (auto defect = defectOfRing(pointsOf(&ring))) return defect;
    }
    return std::nullopt;
}

Defect plainDefectOf(const MzGeometry* geometry) {
    if (const auto* point = dynamic_cast<const MzPointGeometry*>(geometry)) {
        return defectOfPoints({point->pointGeometry(), 1});
    }
    if (const auto* points = dynamic_cast<const MzMultiPointGeometry*>(geometry)) {
        return defectOfPoints(pointsOf(points->multiPointGeometry()));
    }
    if (const auto* line = dynamic_cast<const MzLineStringGeometry*>(geometry)) {
        return defectOfLine(pointsOf(line->lineStringGeometry()));
    }
    if (const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(geometry)) {
        return defectOfRings(*polygon->polygonGeometry());
    }
    if (const auto* polygons = dynamic_cast<const MzMultiPolygonGeometry*>(geometry)) {
        for (const MzPolygon& polygon : polygonsOf(polygons->multiPolygonGeometry())) {
            if (auto defect = defectOfRings(polygon)) return defect;
        }
        return std::nullopt;
    }
    return MzDefect{"Without coordinates", {kNowhere, kNowhere}};
}

MzPoint placeOf(const GEOSGeometry* point) {
    MzPoint place{kNowhere, kNowhere};
    if (point == nullptr) return place;
    GEOSGeomGetX_r(geosContext(), point, &place.x);
    GEOSGeomGetY_r(geosContext(), point, &place.y);
    return place;
}

Defect defectByLibrary(const MzGeometry* geometry) {
    std::string error;
    const GeosGeometry made = detail::toGeos(geometry, &error);
    if (made == nullptr) return MzDefect{error, {kNowhere, kNowhere}};
    char* text = nullptr;
    GEOSGeometry* place = nullptr;
    const char truth = GEOSisValidDetail_r(geosContext(), made.get(), 0, &text, &place);
    if (truth == 1) return std::nullopt;
    const GeosGeometry owned(place);
    const MzDefect defect{text != nullptr ? text : detail::takeGeosError(), placeOf(place)};
    GEOSFree_r(geosContext(), text);
    return defect;
}

// --- repair -----------------------------------------------------------------------------------

/// A polygon of the usable rings of another: those points that are finite, closed, three at least.
class UsableRings {
  public:
    explicit UsableRings(const MzPolygon& polygon) {
        const auto given = ringsOf(&polygon);
        points_.reserve(given.size());
        for (const MzLinearRing& ring : given) addRing(pointsOf(&ring));
    }

    MzPolygon record() {
        rings_.clear();
        for (auto& points : points_) {
            rings_.push_back({static_cast<std::uint32_t>(points.size()), points.data()});
        }
        return {static_cast<std::uint32_t>(rings_.size()), rings_.data()};
    }

  private:
    void addRing(Points given) {
        std::vector<MzPoint> points;
        std::ranges::copy_if(given, std::back_inserter(points), isFinite);
        if (points.size() > 2) points_.push_back(std::move(points));
    }

    std::vector<std::vector<MzPoint>> points_;
    std::vector<MzLinearRing> rings_;
};

std::shared_ptr<MzGeometry> usablePolygons(std::span<const MzPolygon> polygons) {
    std::vector<UsableRings> usable;
    usable.reserve(polygons.size());
    std::vector<MzPolygon> records;
    records.reserve(polygons.size());
    for (const MzPolygon& polygon : polygons) {
        records.push_back(usable.emplace_back(polygon).record());
    }
    return MzMultiPolygonGeometry::geometryWithMultiPolygon(
        {static_cast<std::uint32_t>(records.size()), records.data()});
}

/// Of the geometry what the library can take; null for nothing.
std::shared_ptr<MzGeometry> usablePartOf(const MzGeometry* geometry) {
    if (const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(geometry)) {
        return usablePolygons({polygon->polygonGeometry(), 1});
    }
    if (const auto* polygons = dynamic_cast<const MzMultiPolygonGeometry*>(geometry)) {
        return usablePolygons(polygonsOf(polygons->multiPolygonGeometry()));
    }
    std::vector<MzPoint> usable;
    const auto keep = [&usable](Points points) {
        std::ranges::copy_if(points, std::back_inserter(usable), isFinite);
        return static_cast<std::uint32_t>(usable.size());
    };
    if (const auto* line = dynamic_cast<const MzLineStringGeometry*>(geometry)) {
        if (keep(pointsOf(line->lineStringGeometry())) < 2) return nullptr;
        return MzLineStringGeometry::geometryWithLineString(
            {static_cast<std::uint32_t>(usable.size()), usable.data()});
    }
    if (const auto* points = dynamic_cast<const MzMultiPointGeometry*>(geometry)) {
        if (keep(pointsOf(points->multiPointGeometry())) < 1) return nullptr;
        return MzMultiPointGeometry::geometryWithMultiPoint(
            {static_cast<std::uint32_t>(usable.size()), usable.data()});
    }
    return nullptr;
}

/// Where a hole crosses its outline, the outline comes first; what collapses goes.
GEOSGeometry* madeValid(const GEOSGeometry* geometry) {
    GEOSMakeValidParams* parameters = GEOSMakeValidParams_create_r(geosContext());
    GEOSMakeValidParams_setMethod_r(geosContext(), parameters, GEOS_MAKE_VALID_STRUCTURE);
    GEOSMakeValidParams_setKeepCollapsed_r(geosContext(), parameters, 0);
    GEOSGeometry* result = GEOSMakeValidWithParams_r(geosContext(), geometry, parameters);
    GEOSMakeValidParams_destroy_r(geosContext(), parameters);
    return result;
}

}  // namespace

std::optional<MzDefect> MzDefectOf(const MzGeometry* geometry) {
    if (auto defect = plainDefectOf(geometry)) return defect;
    return defectByLibrary(geometry);
}

std::shared_ptr<MzGeometry> MzRepaired(const std::shared_ptr<MzGeometry>& geometry) {
    if (!MzDefectOf(geometry.get())) return geometry;
    const std::shared_ptr<MzGeometry> usable = usablePartOf(geometry.get());
    const GeosGeometry made = usable != nullptr ? detail::toGeos(usable.get(), nullptr) : nullptr;
    if (made == nullptr) return nullptr;
    const GeosGeometry valid(madeValid(made.get()));
    if (valid == nullptr) return nullptr;
    const MzGeometries pieces = detail::fromGeos(valid.get());
    const bool isWhole = pieces.size() == 1 && pieces[0]->dimension() == geometry->dimension();
    return isWhole ? pieces[0] : nullptr;
}

}  // namespace mezalith
