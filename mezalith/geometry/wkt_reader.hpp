// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/geometry_block.hpp>

#include <cstdint>
#include <optional>
#include <string_view>

namespace mezalith {

/// A geometry read from Well-Known Text, or why there is none.
struct MzWKTReading {
    MzGeometryBlock geometry;
    std::optional<std::int32_t> srid;  ///< of a leading "SRID=4326;"
    MzReadError error;                 ///< when there is no geometry

    explicit operator bool() const { return geometry.record() != nullptr; }
};

/// Reads one geometry of any of the seven types (OGC 06-103r4, clause 7), letters in either case,
/// blanks where they are liked. "Z", "M" and "ZM" say how many numbers a position has; without them
/// it has two to four. All but x and y are left out. "EMPTY" may stand for any list, and for a
/// point, which is held as NaN twice; the points of a multi-point may go without their parentheses.
/// Collections may be nested 100 deep.
MEZALITH_EXPORT MzWKTReading MzReadWKT(std::string_view text);

}  // namespace mezalith
