// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/geometry_block.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace mezalith {

/// The forms in which Well-Known Binary comes.
enum class MzWKBForm {
    WKB,        ///< OGC 06-103r4, two-dimensional: codes 1 to 7
    ISO,        ///< ISO/IEC 13249-3, codes 1001 to 3007: the same where there is neither Z nor M
    EWKB,       ///< flags for Z, M and an SRID in the type
    GeoPackage  ///< a header with SRID and envelope before it: OGC 12-128r15, clause 2.1.3
};

/// What follows a geometry is refused, or left alone.
enum class MzTrailingBytes { Refused, Allowed };

/// A geometry read from Well-Known Binary with what its bytes say of it, or why there is none.
struct MzWKBReading {
    MzGeometryBlock geometry;
    MzWKBForm form = MzWKBForm::WKB;
    bool isLittleEndian = true;        ///< the outermost element; members have orders of their own
    bool hasZ = false;                 ///< as far as the outermost element says; left out
    bool hasM = false;                 ///< the same
    std::optional<std::int32_t> srid;  ///< of EWKB and of a GeoPackage's header
    std::size_t length = 0;            ///< bytes that the geometry takes, header included
    MzReadError error;                 ///< when there is no geometry

    explicit operator bool() const { return geometry.record() != nullptr; }
};

/// Reads one geometry of any of the seven types in any of the forms, which the bytes tell. Each
/// element may have a byte order of its own (0 big-endian, any other value little-endian) and
/// dimensions of its own; third and fourth coordinates are left out. Collections may be nested 100
/// deep, and members must be of the type that their multi-geometry wants.
///
/// Coordinates keep every bit, those of NaNs included. The bytes are untrusted: counts are believed
/// only as far as the bytes can hold them. Nothing but the block is allocated, and it is filled in
/// one pass; where the head does not tell how large it must be (multi-polygons, collections, Z, M
/// and SRIDs, and wherever bytes may follow) a walk over the counts measures it first.
MEZALITH_EXPORT MzWKBReading MzReadWKB(std::span<const std::byte> bytes,
                                       MzTrailingBytes trailing = MzTrailingBytes::Refused);

}  // namespace mezalith
