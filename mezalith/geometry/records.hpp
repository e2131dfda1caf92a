// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>

#include <cstddef>
#include <cstdint>
#include <span>

namespace mezalith {

// Flat geometry records. Each geometry lives in one contiguous block: the top record first, its
// arrays behind it, the pointers pointing into the same block. A null array counts as empty,
// whatever its count says: iterate over `pointsOf`, `ringsOf` and the like.

struct MzLineString {
    std::uint32_t count;
    MzPoint* points;
};

/// A closed ring: the first point is repeated last, as stored.
struct MzLinearRing {
    std::uint32_t count;
    MzPoint* points;
};

struct MzMultiPoint {
    std::uint32_t count;
    MzPoint* points;
};

/// Ring 0 is the outer ring.
struct MzPolygon {
    std::uint32_t count;
    MzLinearRing* rings;
};

struct MzMultiLineString {
    std::uint32_t count;
    MzLineString* lineStrings;
};

struct MzMultiPolygon {
    std::uint32_t count;
    MzPolygon* polygons;
};

static_assert(sizeof(MzPoint) == 16);
static_assert(sizeof(MzLineString) == 16 && offsetof(MzLineString, points) == 8);
static_assert(sizeof(MzLinearRing) == 16 && offsetof(MzLinearRing, points) == 8);
static_assert(sizeof(MzMultiPoint) == 16 && offsetof(MzMultiPoint, points) == 8);
static_assert(sizeof(MzPolygon) == 16 && offsetof(MzPolygon, rings) == 8);
static_assert(sizeof(MzMultiLineString) == 16 && offsetof(MzMultiLineString, lineStrings) == 8);
static_assert(sizeof(MzMultiPolygon) == 16 && offsetof(MzMultiPolygon, polygons) == 8);

/// The points of a line string, ring or multi-point; none for a null record or a null array.
template <typename Record>
std::span<MzPoint> pointsOf(const Record* record) {
    if (record == nullptr || record->points == nullptr) return {};
    return {record->points, record->count};
}

/// The rings of a polygon; none for a null record or a null array.
inline std::span<MzLinearRing> ringsOf(const MzPolygon* polygon) {
    if (polygon == nullptr || polygon->rings == nullptr) return {};
    return {polygon->rings, polygon->count};
}

/// The line strings of a multi-line-string; none for a null record or a null array.
inline std::span<MzLineString> lineStringsOf(const MzMultiLineString* lines) {
    if (lines == nullptr || lines->lineStrings == nullptr) return {};
    return {lines->lineStrings, lines->count};
}

/// The polygons of a multi-polygon; none for a null record or a null array.
inline std::span<MzPolygon> polygonsOf(const MzMultiPolygon* polygons) {
    if (polygons == nullptr || polygons->polygons == nullptr) return {};
    return {polygons->polygons, polygons->count};
}

// Sizes of record blocks in bytes, the top record's 16-byte header included, in 64 bits. Point
// counts are taken from the records as they stand, whatever their arrays; null arrays of rings,
// line strings and polygons count as empty; a null record gives 0.

/// 16.
MEZALITH_EXPORT std::size_t sizeOfMzPoint();
MEZALITH_EXPORT std::size_t sizeOfMzLineString(const MzLineString* lineString);
MEZALITH_EXPORT std::size_t sizeOfMzMultiPoint(const MzMultiPoint* multiPoint);
MEZALITH_EXPORT std::size_t sizeOfMzPolygon(const MzPolygon* polygon);
/// Settled: each line string's header is counted twice.
MEZALITH_EXPORT std::size_t sizeOfMzMultiLineString(const MzMultiLineString* lines);
/// Settled: each polygon's header is counted twice.
MEZALITH_EXPORT std::size_t sizeOfMzMultiPolygon(const MzMultiPolygon* polygons);

}  // namespace mezalith
