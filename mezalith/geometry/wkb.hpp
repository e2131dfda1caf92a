// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>

#include <cstddef>
#include <cstdint>

namespace mezalith {

// Well-Known Binary, two-dimensional, as in OGC Simple Feature Access part 1 (06-103r4), clause 8:
// its values and the way into records. The way out is in `wkb_encoder`.
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

/// Logs the first 16 bytes, one line "Hex Out: XX" each; `bytes` holds at least 16.
MEZALITH_EXPORT void printHEX(const std::byte* bytes);

}  // namespace mezalith
