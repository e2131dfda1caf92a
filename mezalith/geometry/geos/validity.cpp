// SPDX-License-Identifier: MIT
#include "mezalith/geometry/geos/geos_geometry.hpp"
#include "mezalith/geometry/plane_vector.hpp"
#include <mezalith/geometry/geos/validity.hpp>
#include <mezalith/geometry/wkb_builder.hpp>
#include <mezalith/geometry/wkb_reader.hpp>
#include <mezalith/geometry/wkb_writer.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <utility>
#include <vector>

namespace mezalith {
namespace {

using detail::geosContext;
using detail::GeosGeometry;
using detail::isFinite;

constexpr const char* kTooFewPoints = "Too few points in geometry component";
constexpr MzPoint kNowhere{std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::quiet_NaN()};

bool isNone(const MzGeometryRecord& point) {
    return std::ranges::all_of(pointsOf(&point),
                               [](MzPoint p) { return std::isnan(p.x) && std::isnan(p.y); });
}

// --- defects that a geometry may not have on its way to the library ---------------------------

using Defect = std::optional<MzDefect>;
using Points = std::span<const MzPoint>;

Defect defectOfPoints(Points points) {
    const auto place = std::ranges::find_if_not(points, isFinite);
    if (place == points.end()) return std::nullopt;
    return MzDefect{"Invalid Coordinate", *place};
}

Defect defectOfLine(const MzLineString& line) {
    const Points points = pointsOf(&line);
    if (points.size() == 1) return MzDefect{kTooFewPoints, points.front()};
    return defectOfPoints(points);
}

Defect defectOfRing(const MzLinearRing& ring) {
    const Points points = pointsOf(&ring);
    if (points.empty()) return std::nullopt;
    if (auto defect = defectOfPoints(points)) return defect;
    if (!MzEqualPoints(points.front(), points.back())) {
        return MzDefect{"Ring is not closed", points.back()};
    }
    if (points.size() < 4) return MzDefect{kTooFewPoints, points.front()};
    return std::nullopt;
}

template <typename Parts, typename DefectOfPart>
Defect firstDefect(const Parts& parts, const DefectOfPart& defectOfPart) {
    for (const auto& part : parts) {
        if (auto defect = defectOfPart(part)) return defect;
    }
    return std::nullopt;
}

Defect defectOfRings(const MzPolygon& polygon) {
    return firstDefect(ringsOf(&polygon), defectOfRing);
}

Defect plainDefectOf(const MzGeometryRecord& geometry) {
    switch (geometry.type) {
        case MzGeometryTypePoint:
            return isNone(geometry) ? std::nullopt : defectOfPoints(pointsOf(&geometry));
        case MzGeometryTypeMultiPoint:
            return defectOfPoints(pointsOf(&geometry));
        case MzGeometryTypeLineString:
            return defectOfLine(lineStringOf(geometry));
        case MzGeometryTypeMultiLineString: {
            const MzMultiLineString lines = multiLineStringOf(geometry);
            return firstDefect(lineStringsOf(&lines), defectOfLine);
        }
        case MzGeometryTypePolygon:
            return defectOfRings(polygonOf(geometry));
        case MzGeometryTypeMultiPolygon: {
            const MzMultiPolygon polygons = multiPolygonOf(geometry);
            return firstDefect(polygonsOf(&polygons), defectOfRings);
        }
        case MzGeometryTypeGeometryCollection:
            return firstDefect(membersOf(&geometry), plainDefectOf);
        default:
            return MzDefect{"Without coordinates", kNowhere};
    }
}

MzPoint placeOf(const GEOSGeometry* point) {
    MzPoint place = kNowhere;
    if (point == nullptr) return place;
    GEOSGeomGetX_r(geosContext(), point, &place.x);
    GEOSGeomGetY_r(geosContext(), point, &place.y);
    return place;
}

Defect defectByLibrary(const MzGeometryRecord& geometry) {
    std::string error;
    const GeosGeometry made = detail::toGeos(geometry, &error);
    if (made == nullptr) return MzDefect{error, kNowhere};
    char* text = nullptr;
    GEOSGeometry* place = nullptr;
    const char truth = GEOSisValidDetail_r(geosContext(), made.get(), 0, &text, &place);
    const GeosGeometry owned(place);
    if (truth == 1) return std::nullopt;
    MzDefect defect{text != nullptr ? text : detail::takeGeosError(), placeOf(place)};
    GEOSFree_r(geosContext(), text);
    return defect;
}

// --- repair -----------------------------------------------------------------------------------

void addAll(MzWKBBuilder& builder, Points points) {
    for (const MzPoint point : points) builder.add(point);
}

/// The finite points of a line or ring, if there are enough of them.
std::vector<MzPoint> usable(Points points, std::size_t least) {
    std::vector<MzPoint> finite;
    std::ranges::copy_if(points, std::back_inserter(finite), isFinite);
    if (finite.size() < least) finite.clear();
    return finite;
}

void addUsablePolygon(MzWKBBuilder& builder, const MzPolygon& polygon) {
    builder.begin(MzGeometryTypePolygon);
    for (const MzLinearRing& ring : ringsOf(&polygon)) {
        const auto points = usable(pointsOf(&ring), 3);
        if (points.empty()) continue;
        builder.beginRing();
        addAll(builder, points);
        builder.end();
    }
    builder.end();
}

void addUsableLine(MzWKBBuilder& builder, const MzLineString& line) {
    const auto points = usable(pointsOf(&line), 2);
    if (points.empty()) return;
    builder.begin(MzGeometryTypeLineString);
    addAll(builder, points);
    builder.end();
}

void addPoint(MzWKBBuilder& builder, MzPoint point) {
    builder.begin(MzGeometryTypePoint);
    builder.add(point);
    builder.end();
}

/// Of a geometry that is no collection what the library can take, as a multi-geometry.
std::vector<std::byte> usablePartOf(const MzGeometryRecord& geometry) {
    MzWKBBuilder builder;
    const std::uint32_t type = geometry.type;
    builder.begin(MzMemberTypeOf(type) != 0 ? type : type + 3);
    if (type == MzGeometryTypePoint || type == MzGeometryTypeMultiPoint) {
        for (const MzPoint point : usable(pointsOf(&geometry), 1)) addPoint(builder, point);
    } else if (type == MzGeometryTypeLineString) {
        addUsableLine(builder, lineStringOf(geometry));
    } else if (type == MzGeometryTypeMultiLineString) {
        const MzMultiLineString lines = multiLineStringOf(geometry);
        for (const MzLineString& line : lineStringsOf(&lines)) addUsableLine(builder, line);
    } else if (type == MzGeometryTypePolygon) {
        addUsablePolygon(builder, polygonOf(geometry));
    } else {
        const MzMultiPolygon polygons = multiPolygonOf(geometry);
        for (const MzPolygon& polygon : polygonsOf(&polygons)) addUsablePolygon(builder, polygon);
    }
    builder.end();
    return builder.bytes();
}

/// Where a hole crosses its outline, the outline comes first; what collapses goes.
GeosGeometry madeValid(const GEOSGeometry* geometry) {
    GEOSMakeValidParams* parameters = GEOSMakeValidParams_create_r(geosContext());
    GEOSMakeValidParams_setMethod_r(geosContext(), parameters, GEOS_MAKE_VALID_STRUCTURE);
    GEOSMakeValidParams_setKeepCollapsed_r(geosContext(), parameters, 0);
    GEOSGeometry* result = GEOSMakeValidWithParams_r(geosContext(), geometry, parameters);
    GEOSMakeValidParams_destroy_r(geosContext(), parameters);
    return GeosGeometry(result);
}

void addPolygon(MzWKBBuilder& builder, const GEOSGeometry* polygon) {
    builder.begin(MzGeometryTypePolygon);
    for (const GEOSGeometry* ring : detail::ringsOfGeos(polygon)) {
        builder.beginRing();
        addAll(builder, detail::pointsOfGeos(ring));
        builder.end();
    }
    builder.end();
}

void addLine(MzWKBBuilder& builder, const GEOSGeometry* line) {
    builder.begin(MzGeometryTypeLineString);
    addAll(builder, detail::pointsOfGeos(line));
    builder.end();
}

/// The members with `add`, as one geometry of `type` if that is a multi-geometry or there are
/// several; false for none.
template <typename Members, typename Add>
bool gather(MzWKBBuilder& builder, std::uint32_t type, const Members& members, const Add& add) {
    if (members.empty()) return false;
    const bool isMulti = MzMemberTypeOf(type) != 0;
    const bool isGathered = isMulti || members.size() > 1;
    if (isGathered) builder.begin(isMulti ? type : type + 3);
    for (const auto& member : members) add(builder, member);
    if (isGathered) builder.end();
    return true;
}

/// Adds what is left of the geometry; false when that is nothing.
bool addRepaired(MzWKBBuilder& builder, const MzGeometryRecord& geometry) {
    if (geometry.type == MzGeometryTypeGeometryCollection) {
        builder.begin(geometry.type);
        bool isSomething = false;
        for (const MzGeometryRecord& member : membersOf(&geometry)) {
            isSomething |= addRepaired(builder, member);
        }
        builder.end();
        return isSomething;
    }
    const MzWKBReading usable = MzReadWKB(usablePartOf(geometry));
    const GeosGeometry made = usable ? detail::toGeos(*usable.geometry.record(), nullptr) : nullptr;
    const GeosGeometry valid = made != nullptr ? madeValid(made.get()) : nullptr;
    if (valid == nullptr) return false;
    const detail::GeosMembers members(valid.get());
    switch (geometry.type) {
        case MzGeometryTypePoint:
        case MzGeometryTypeMultiPoint:
            return gather(builder, geometry.type, members.points, addPoint);
        case MzGeometryTypeLineString:
        case MzGeometryTypeMultiLineString:
            return gather(builder, geometry.type, members.lines, addLine);
        default:
            return gather(builder, geometry.type, members.polygons, addPolygon);
    }
}

}  // namespace

std::optional<MzDefect> MzDefectOf(const MzGeometryRecord& geometry) {
    if (auto defect = plainDefectOf(geometry)) return defect;
    return defectByLibrary(geometry);
}

std::optional<MzDefect> MzDefectOf(const MzGeometry* geometry) {
    const auto record = detail::recordOf(geometry);
    return MzDefectOf(record.value_or(MzGeometryRecord{}));
}

MzGeometryBlock MzRepaired(const MzGeometryRecord& geometry) {
    if (MzGeometryTypeName(geometry.type).empty()) return {};
    MzWKBBuilder builder;
    if (!addRepaired(builder, geometry)) return {};
    return MzReadWKB(builder.bytes()).geometry;
}

std::shared_ptr<MzGeometry> MzRepaired(const std::shared_ptr<MzGeometry>& geometry) {
    const auto record = detail::recordOf(geometry.get());
    if (!record) return nullptr;
    if (!MzDefectOf(*record)) return geometry;
    const MzGeometryBlock repaired = MzRepaired(*record);
    if (repaired.record() == nullptr) return nullptr;
    return MzGeometry::geometryWithWKBData(MzWKBOfGeometry(*repaired.record()));
}

}  // namespace mezalith
