// SPDX-License-Identifier: MIT
#include "mezalith/geometry/geos/geos_geometry.hpp"

#include "mezalith/geometry/plane_vector.hpp"
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace mezalith::detail {
namespace {

/// A context with what it last reported.
class Context {
  public:
    Context() : handle_(GEOS_init_r()) {
        GEOSContext_setErrorMessageHandler_r(handle_, &Context::keep, this);
    }
    ~Context() { GEOS_finish_r(handle_); }
    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    GEOSContextHandle_t handle() const { return handle_; }
    void report(std::string text) { report_ = std::move(text); }
    std::string takeReport() { return std::exchange(report_, {}); }

  private:
    static void keep(const char* text, void* context) {
        static_cast<Context*>(context)->report(text);
    }

    GEOSContextHandle_t handle_;
    std::string report_;
};

Context& context() {
    thread_local Context own;
    return own;
}

using Points = std::span<const MzPoint>;

/// What `create` makes of the points. Nothing of what is not finite, on which some of the library's
/// operations do not end.
template <typename Create>
GeosGeometry madeOf(Points points, const Create& create) {
    if (!std::ranges::all_of(points, isFinite)) {
        context().report("a coordinate is not finite");
        return nullptr;
    }
    static_assert(sizeof(MzPoint) == 2 * sizeof(double));
    const double* numbers = points.empty() ? nullptr : &points.front().x;
    GEOSCoordSequence* sequence = GEOSCoordSeq_copyFromBuffer_r(
        geosContext(), numbers, static_cast<unsigned>(points.size()), 0, 0);
    return GeosGeometry(create(geosContext(), sequence));
}

GeosGeometry pointOf(MzPoint point) { return madeOf({&point, 1}, GEOSGeom_createPoint_r); }

GeosGeometry ringOf(Points points) {
    std::vector<MzPoint> closed;
    if (!points.empty() && !MzEqualPoints(points.front(), points.back())) {
        closed.reserve(points.size() + 1);
        closed.assign(points.begin(), points.end());
        closed.push_back(points.front());
        points = closed;
    }
    return madeOf(points, GEOSGeom_createLinearRing_r);
}

/// One geometry made of all that `memberOf` makes of the parts, by `combine`, which takes them
/// over; null when one could not be made.
template <typename Parts, typename MemberOf, typename Combine>
GeosGeometry gathered(const Parts& parts, const MemberOf& memberOf, const Combine& combine) {
    std::vector<GeosGeometry> members;
    members.reserve(parts.size());
    for (const auto& part : parts) {
        members.push_back(memberOf(part));
        if (members.back() == nullptr) return nullptr;
    }
    std::vector<GEOSGeometry*> raw;
    raw.reserve(members.size());
    for (GeosGeometry& member : members) raw.push_back(member.release());
    return GeosGeometry(combine(raw));
}

/// Rings without points are left out.
GeosGeometry polygonOfRings(const MzPolygon& polygon) {
    std::vector<Points> rings;
    for (const MzLinearRing& ring : ringsOf(&polygon)) {
        if (!pointsOf(&ring).empty()) rings.emplace_back(pointsOf(&ring));
    }
    if (rings.empty()) return GeosGeometry(GEOSGeom_createEmptyPolygon_r(geosContext()));
    return gathered(rings, ringOf, [](std::vector<GEOSGeometry*>& made) {
        return GEOSGeom_createPolygon_r(geosContext(), made.front(), made.data() + 1,
                                        static_cast<unsigned>(made.size() - 1));
    });
}

GeosGeometry lineOf(const MzLineString& line) {
    return madeOf(pointsOf(&line), GEOSGeom_createLineString_r);
}

template <typename Parts, typename MemberOf>
GeosGeometry collectionOf(int type, const Parts& parts, const MemberOf& memberOf) {
    return gathered(parts, memberOf, [type](std::vector<GEOSGeometry*>& made) {
        return GEOSGeom_createCollection_r(geosContext(), type, made.data(),
                                           static_cast<unsigned>(made.size()));
    });
}

/// A point of NaNs is one without coordinates.
GeosGeometry pointOrNone(Points points) {
    const bool isNone = points.empty() || (std::isnan(points[0].x) && std::isnan(points[0].y));
    return isNone ? GeosGeometry(GEOSGeom_createEmptyPoint_r(geosContext())) : pointOf(points[0]);
}

/// Null for a type that is none.
GeosGeometry made(const MzGeometryRecord& geometry) {
    switch (geometry.type) {
        case MzGeometryTypePoint:
            return pointOrNone(pointsOf(&geometry));
        case MzGeometryTypeLineString:
            return lineOf(lineStringOf(geometry));
        case MzGeometryTypePolygon:
            return polygonOfRings(polygonOf(geometry));
        case MzGeometryTypeMultiPoint:
            return collectionOf(GEOS_MULTIPOINT, pointsOf(&geometry), pointOf);
        case MzGeometryTypeMultiLineString: {
            const MzMultiLineString lines = multiLineStringOf(geometry);
            return collectionOf(GEOS_MULTILINESTRING, lineStringsOf(&lines), lineOf);
        }
        case MzGeometryTypeMultiPolygon: {
            const MzMultiPolygon polygons = multiPolygonOf(geometry);
            return collectionOf(GEOS_MULTIPOLYGON, polygonsOf(&polygons), polygonOfRings);
        }
        case MzGeometryTypeGeometryCollection:
            return collectionOf(GEOS_GEOMETRYCOLLECTION, membersOf(&geometry), made);
        default:
            return nullptr;
    }
}

// --- and back ---------------------------------------------------------------

template <typename Record>
Record recordOfPoints(std::vector<MzPoint>& points) {
    return {static_cast<std::uint32_t>(points.size()), points.data()};
}

/// A polygon record and its arrays, which may not move.
struct OwnedPolygon {
    explicit OwnedPolygon(const GEOSGeometry* polygon) {
        const auto given = ringsOfGeos(polygon);
        points.reserve(given.size());
        rings.reserve(given.size());
        for (const GEOSGeometry* ring : given) {
            rings.push_back(recordOfPoints<MzLinearRing>(points.emplace_back(pointsOfGeos(ring))));
        }
    }
    MzPolygon record() { return {static_cast<std::uint32_t>(rings.size()), rings.data()}; }

    std::vector<std::vector<MzPoint>> points;
    std::vector<MzLinearRing> rings;
};

std::shared_ptr<MzGeometry> multiPolygonOf(std::span<const GEOSGeometry* const> members) {
    std::vector<OwnedPolygon> owned;
    owned.reserve(members.size());
    std::vector<MzPolygon> records;
    records.reserve(members.size());
    for (const GEOSGeometry* member : members)
        records.push_back(owned.emplace_back(member).record());
    if (records.size() == 1) return MzPolygonGeometry::geometryWithPolygon(records.front());
    return MzMultiPolygonGeometry::geometryWithMultiPolygon(
        {static_cast<std::uint32_t>(records.size()), records.data()});
}

}  // namespace

void DestroyGeosGeometry::operator()(GEOSGeometry* geometry) const {
    GEOSGeom_destroy_r(geosContext(), geometry);
}

GEOSContextHandle_t geosContext() { return context().handle(); }

std::string takeGeosError() { return context().takeReport(); }

std::optional<MzGeometryRecord> recordOf(const MzGeometry* geometry) {
    if (const auto* point = dynamic_cast<const MzPointGeometry*>(geometry)) {
        // Records have no const form; nobody writes through this one.
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-const-cast)
        return geometryOf(const_cast<MzPoint*>(point->pointGeometry()));
    }
    if (const auto* line = dynamic_cast<const MzLineStringGeometry*>(geometry)) {
        return geometryOf(*line->lineStringGeometry());
    }
    if (const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(geometry)) {
        return geometryOf(*polygon->polygonGeometry());
    }
    if (const auto* points = dynamic_cast<const MzMultiPointGeometry*>(geometry)) {
        return geometryOf(*points->multiPointGeometry());
    }
    if (const auto* polygons = dynamic_cast<const MzMultiPolygonGeometry*>(geometry)) {
        return geometryOf(*polygons->multiPolygonGeometry());
    }
    return std::nullopt;
}

GeosGeometry toGeos(const MzGeometryRecord& geometry, std::string* error) {
    GeosGeometry result = made(geometry);
    if (result == nullptr && error != nullptr) *error = takeGeosError();
    return result;
}

GeosGeometry toGeos(const MzGeometry* geometry, std::string* error) {
    if (const auto record = recordOf(geometry)) return toGeos(*record, error);
    if (error != nullptr) *error = "a geometry without coordinates";
    return nullptr;
}

void GeosMembers::add(const GEOSGeometry* geometry) {
    if (GEOSisEmpty_r(geosContext(), geometry) != 0) return;
    switch (GEOSGeomTypeId_r(geosContext(), geometry)) {
        case GEOS_POINT:
            points.push_back(pointsOfGeos(geometry).front());
            return;
        case GEOS_LINESTRING:
        case GEOS_LINEARRING:
            lines.push_back(geometry);
            return;
        case GEOS_POLYGON:
            polygons.push_back(geometry);
            return;
        default:
            break;
    }
    const int count = GEOSGetNumGeometries_r(geosContext(), geometry);
    for (int i = 0; i < count; ++i) add(GEOSGetGeometryN_r(geosContext(), geometry, i));
}

std::vector<MzPoint> pointsOfGeos(const GEOSGeometry* line) {
    const GEOSCoordSequence* sequence = GEOSGeom_getCoordSeq_r(geosContext(), line);
    unsigned count = 0;
    GEOSCoordSeq_getSize_r(geosContext(), sequence, &count);
    std::vector<MzPoint> points(count);
    if (count > 0) GEOSCoordSeq_copyToBuffer_r(geosContext(), sequence, &points.front().x, 0, 0);
    return points;
}

std::vector<const GEOSGeometry*> ringsOfGeos(const GEOSGeometry* polygon) {
    const int holes = GEOSGetNumInteriorRings_r(geosContext(), polygon);
    std::vector<const GEOSGeometry*> rings{GEOSGetExteriorRing_r(geosContext(), polygon)};
    rings.reserve(static_cast<std::size_t>(holes) + 1);
    for (int i = 0; i < holes; ++i) {
        rings.push_back(GEOSGetInteriorRingN_r(geosContext(), polygon, i));
    }
    return rings;
}

MzGeometries fromGeos(const GEOSGeometry* geometry) {
    GeosMembers members(geometry);
    MzGeometries pieces;
    if (members.points.size() == 1) {
        pieces.push_back(MzPointGeometry::geometryWithPoint(members.points.front()));
    } else if (!members.points.empty()) {
        pieces.push_back(MzMultiPointGeometry::geometryWithMultiPoint(
            recordOfPoints<MzMultiPoint>(members.points)));
    }
    for (const GEOSGeometry* line : members.lines) {
        std::vector<MzPoint> points = pointsOfGeos(line);
        pieces.push_back(
            MzLineStringGeometry::geometryWithLineString(recordOfPoints<MzLineString>(points)));
    }
    if (!members.polygons.empty()) pieces.push_back(multiPolygonOf(members.polygons));
    return pieces;
}

}  // namespace mezalith::detail
