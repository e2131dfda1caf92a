// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>
#include <mezalith/geometry/wkb.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace mezalith {

/// The code of a collection, which follows those of `MzGeometryType`.
inline constexpr std::uint32_t MzGeometryTypeGeometryCollection = 7;

/// How deep collections may be nested where geometries are read and written.
inline constexpr unsigned MzDeepestCollection = 100;

/// A geometry of any of the seven types: the header of the other records, its padding put to use
/// for the type. The array that counts is
///
///     points        Point (count 1), LineString, MultiPoint
///     rings         Polygon
///     lineStrings   MultiLineString
///     polygons      MultiPolygon
///     members       GeometryCollection
///
/// A null array counts as empty. A point without coordinates has NaN for both.
struct MzGeometryRecord {
    std::uint32_t count;
    std::uint32_t type;
    union {
        MzPoint* points;
        MzLinearRing* rings;
        MzLineString* lineStrings;
        MzPolygon* polygons;
        MzGeometryRecord* members;
    };
};

static_assert(sizeof(MzGeometryRecord) == 16 && offsetof(MzGeometryRecord, points) == 8);

// A geometry as the record of its type, sharing its arrays. The geometry's type is not looked at.

inline MzLineString lineStringOf(const MzGeometryRecord& g) { return {g.count, g.points}; }
inline MzMultiPoint multiPointOf(const MzGeometryRecord& g) { return {g.count, g.points}; }
inline MzPolygon polygonOf(const MzGeometryRecord& g) { return {g.count, g.rings}; }
inline MzMultiLineString multiLineStringOf(const MzGeometryRecord& g) {
    return {g.count, g.lineStrings};
}
inline MzMultiPolygon multiPolygonOf(const MzGeometryRecord& g) { return {g.count, g.polygons}; }

/// The members of a collection; none for a null record or a null array.
inline std::span<MzGeometryRecord> membersOf(const MzGeometryRecord* collection) {
    if (collection == nullptr || collection->members == nullptr) return {};
    return {collection->members, collection->count};
}

// A record as a geometry, sharing its arrays.

inline MzGeometryRecord geometryOf(MzPoint* point) {
    return {.count = 1, .type = MzGeometryTypePoint, .points = point};
}
inline MzGeometryRecord geometryOf(const MzLineString& line) {
    return {.count = line.count, .type = MzGeometryTypeLineString, .points = line.points};
}
inline MzGeometryRecord geometryOf(const MzPolygon& polygon) {
    return {.count = polygon.count, .type = MzGeometryTypePolygon, .rings = polygon.rings};
}
inline MzGeometryRecord geometryOf(const MzMultiPoint& points) {
    return {.count = points.count, .type = MzGeometryTypeMultiPoint, .points = points.points};
}
inline MzGeometryRecord geometryOf(const MzMultiLineString& lines) {
    return {.count = lines.count,
            .type = MzGeometryTypeMultiLineString,
            .lineStrings = lines.lineStrings};
}
inline MzGeometryRecord geometryOf(const MzMultiPolygon& multi) {
    return {.count = multi.count, .type = MzGeometryTypeMultiPolygon, .polygons = multi.polygons};
}
inline MzGeometryRecord geometryOf(std::span<MzGeometryRecord> members) {
    return {.count = static_cast<std::uint32_t>(members.size()),
            .type = MzGeometryTypeGeometryCollection,
            .members = members.data()};
}

/// Calls `visit` with each run of points in the geometry, in order: those of a point, of a
/// multi-point, of each line string and of each ring. Runs may be empty.
template <typename Visit>
void MzVisitRuns(const MzGeometryRecord& geometry, const Visit& visit) {
    const auto visitRings = [&](const MzPolygon& polygon) {
        for (const MzLinearRing& ring : ringsOf(&polygon)) visit(pointsOf(&ring));
    };
    switch (geometry.type) {
        case MzGeometryTypePoint:
        case MzGeometryTypeLineString:
        case MzGeometryTypeMultiPoint:
            return visit(pointsOf(&geometry));
        case MzGeometryTypePolygon:
            return visitRings(polygonOf(geometry));
        case MzGeometryTypeMultiLineString: {
            const MzMultiLineString lines = multiLineStringOf(geometry);
            for (const MzLineString& line : lineStringsOf(&lines)) visit(pointsOf(&line));
            return;
        }
        case MzGeometryTypeMultiPolygon: {
            const MzMultiPolygon multi = multiPolygonOf(geometry);
            for (const MzPolygon& polygon : polygonsOf(&multi)) visitRings(polygon);
            return;
        }
        case MzGeometryTypeGeometryCollection:
            for (const MzGeometryRecord& member : membersOf(&geometry)) MzVisitRuns(member, visit);
            return;
        default:
            return;
    }
}

/// "Point", "LineString", ... "GeometryCollection" for the codes 1 to 7; empty for any other.
MEZALITH_EXPORT std::string_view MzGeometryTypeName(std::uint32_t type);

/// The code of such a name, its letters in either case; 0 for any other text.
MEZALITH_EXPORT std::uint32_t MzGeometryTypeNamed(std::string_view name);

/// What the members of a multi-geometry must be: 1 of 4, 2 of 5, 3 of 6; 0 for all other types.
constexpr std::uint32_t MzMemberTypeOf(std::uint32_t type) {
    return type >= MzGeometryTypeMultiPoint && type <= MzGeometryTypeMultiPolygon
               ? type - MzGeometryTypeMultiPoint + MzGeometryTypePoint
               : 0;
}

/// Around all points that have a number for x and for y: (min x, min y, max x, max y) as two
/// corners; none where there are no such points.
struct MzCorners {
    MzPoint low;
    MzPoint high;
};
MEZALITH_EXPORT std::optional<MzCorners> MzCornersOfGeometry(const MzGeometryRecord& geometry);

}  // namespace mezalith
