// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>

#include <cstddef>
#include <cstdint>

namespace mezalith {

// Records to Well-Known Binary, little-endian.
//
// Each appends to a buffer from malloc and keeps a running length in the caller's counter; a
// counter of 0 starts a new buffer and ignores the one passed. The possibly moved buffer is
// returned and belongs to the caller, who frees it; what lies behind the counted bytes is not part
// of the encoding. A failed allocation prints a fixed text to standard error, frees the buffer and
// returns null; nothing more is written or counted. A null array counts as empty.

/// n Point elements; the counter grows by 21·n.
MEZALITH_EXPORT std::byte* wkbPointToData(const MzPoint* points, std::uint32_t n, std::byte* buffer,
                                          std::uint64_t* length);
/// r ring bodies.
/// Settled: each ring is written with the point count of ring 0, the counter grows by 4·r only, and
/// the ring index has 8 bits, so that rings from the 257th on repeat the first ones.
MEZALITH_EXPORT std::byte* wkbLinearRingToData(const MzLinearRing* rings, std::uint32_t r,
                                               std::byte* buffer, std::uint64_t* length);
/// n LineString elements.
/// Settled: each is written with the point count of line 0, and the counter grows by 9·n only.
MEZALITH_EXPORT std::byte* wkbLineStringToData(const MzLineString* lines, std::uint32_t n,
                                               std::byte* buffer, std::uint64_t* length);
/// n Polygon elements.
/// Settled: polygon 0 is written n times, and its pairs are not counted.
MEZALITH_EXPORT std::byte* wkbPolygonToData(const MzPolygon* polygons, std::uint32_t n,
                                            std::byte* buffer, std::uint64_t* length);
/// A MultiPoint element in a new buffer; the counter is set.
MEZALITH_EXPORT std::byte* wkbMultiPointToData(const MzMultiPoint* multiPoint,
                                               std::uint64_t* length);
/// A MultiLineString element in a new buffer; the counter is set, see `wkbLineStringToData`.
MEZALITH_EXPORT std::byte* wkbMultiLineStringToData(const MzMultiLineString* lines,
                                                    std::uint64_t* length);
/// A MultiPolygon element in a new buffer; the counter is set, see `wkbPolygonToData`.
MEZALITH_EXPORT std::byte* wkbMultiPolygonToData(const MzMultiPolygon* polygons,
                                                 std::uint64_t* length);

}  // namespace mezalith
