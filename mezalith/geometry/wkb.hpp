// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>

#include <cstddef>
#include <cstdint>

namespace mezalith {

// Well-Known Binary, two-dimensional, as in OGC Simple Feature Access part 1 (06-103r4), clause 8.
//
// These functions trust their input: no length is checked against the bytes available and member
// types are not compared with what is expected. Foreign bytes come in through
// `MzGeometry::geometryWithWKBData`, which checks them first.

/// WKB geometry type codes; 0 is the abstract base.
enum MzGeometryType : std::uint32_t {
    MzGeometryTypePoint = 1,
    MzGeometryTypeLineString = 2,
    MzGeometryTypePolygon = 3,
    MzGeometryTypeMultiPoint = 4,
    MzGeometryTypeMultiLineString = 5,
    MzGeometryTypeMultiPolygon = 6
};

/// A pointer to a position in the bytes, advanced by what is read or written there.
using wkbCursor = const std::byte**;
using wkbWriteCursor = std::byte**;

/// Byte orders between the primitives (not the WKB byte itself).
inline constexpr int wkbLittleEndian = 1;
inline constexpr int wkbBigEndian = 2;

// --- primitives; positions need no alignment

/// Reads the byte order byte: 1 (little-endian) if it is not zero, 2 (big-endian) if it is.
MEZALITH_EXPORT int wkbByteOrder(wkbCursor cursor);
/// Reads without advancing.
MEZALITH_EXPORT std::uint32_t getInt(const std::byte* pointer, int order);
/// Reads without advancing.
MEZALITH_EXPORT std::uint8_t getByte(const std::byte* pointer);
MEZALITH_EXPORT std::uint8_t popByte(wkbCursor cursor);
MEZALITH_EXPORT std::uint32_t popInt(wkbCursor cursor, int order);
MEZALITH_EXPORT double popDouble(wkbCursor cursor, int order);
MEZALITH_EXPORT void skipByte(wkbCursor cursor);
MEZALITH_EXPORT void skipInt(wkbCursor cursor);
MEZALITH_EXPORT void skipDouble(wkbCursor cursor);
/// Writes in host order and advances, as do the two below.
MEZALITH_EXPORT void writeByte(wkbWriteCursor cursor, const std::uint8_t* value);
MEZALITH_EXPORT void writeInt(wkbWriteCursor cursor, const std::uint32_t* value);
MEZALITH_EXPORT void writeDouble(wkbWriteCursor cursor, const double* value);
/// The type code of the geometry at `bytes`, which holds at least 5 bytes.
MEZALITH_EXPORT std::uint32_t geometryTypeFromData(const std::byte* bytes);
/// The byte order byte to write: always 1.
/// Settled: the host is taken to be little-endian and is not probed.
MEZALITH_EXPORT std::uint8_t wkbByteOrderFromHost();

// --- decoders
//
// Each returns the bytes of record block that the elements need. With a null output that is all,
// and the cursor advances over the elements; with an output the records are filled as well. Point
// arrays of rings and line strings are never assigned: pairs are decoded into the array that the
// record already designates, and skipped where that is null.

/// n raw (x, y) pairs; 16·n.
MEZALITH_EXPORT std::size_t pointToMzPoint(wkbCursor cursor, std::uint32_t n, MzPoint* points,
                                           int order);
/// n Point elements, each by its own byte order; 16·n.
MEZALITH_EXPORT std::size_t wkbPointToMzPoint(wkbCursor cursor, std::uint32_t n, MzPoint* points);
/// r rings: a count, then that many pairs; 16·r + the sum of 16·count.
MEZALITH_EXPORT std::size_t linearRingToMzLinearRing(wkbCursor cursor, std::uint32_t r,
                                                     MzLinearRing* rings, int order);
/// n LineString elements; 16·n + the sum of 16·count.
MEZALITH_EXPORT std::size_t wkbLineStringToMzLineString(wkbCursor cursor, std::uint32_t n,
                                                        MzLineString* lines);
/// n Polygon elements; 16·n + the ring sizes.
/// Settled: the rings of polygon i are placed 256 + 16·i bytes past the start of `polygons`, which
/// the returned size does not cover; the block must reach that far.
MEZALITH_EXPORT std::size_t wkbPolygonToMzPolygon(wkbCursor cursor, std::uint32_t n,
                                                  MzPolygon* polygons);
/// One MultiPoint element, its points just behind the record; 16 + 16·n.
MEZALITH_EXPORT std::size_t wkbMultiPointToMzMultiPoint(wkbCursor cursor, MzMultiPoint* multiPoint);
/// One MultiLineString element, its members just behind the record; 16 + the line-string figure.
MEZALITH_EXPORT std::size_t wkbMultiLineStringToMzMultiLineString(wkbCursor cursor,
                                                                  MzMultiLineString* lines);
/// One MultiPolygon element, its members just behind the record; 16 + the polygon figure.
MEZALITH_EXPORT std::size_t wkbMultiPolygonToMzMultiPolygon(wkbCursor cursor,
                                                            MzMultiPolygon* polygons);

// --- encoders
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

/// Logs the first 16 bytes, one line "Hex Out: XX" each; `bytes` holds at least 16.
MEZALITH_EXPORT void printHEX(const std::byte* bytes);

}  // namespace mezalith
