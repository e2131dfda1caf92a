// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>

#include <compare>
#include <cstdint>
#include <span>
#include <vector>

// The outline of a polygon on a grid of integers, on which every question about sides and
// crossings has an exact answer.

namespace mezalith::detail {

struct GridPoint {
    std::int32_t x;
    std::int32_t y;
    friend auto operator<=>(const GridPoint&, const GridPoint&) = default;
};

/// A piece of an outline, from the lesser end to the greater one by x, then y.
struct GridSegment {
    GridPoint low;
    GridPoint high;
    bool isInteriorAbove;  ///< on the left on the way from low to high
    friend bool operator==(const GridSegment&, const GridSegment&) = default;
};

using GridSegments = std::vector<GridSegment>;

/// Segments that have at most ends in common, and where the grid lies: its point (0, 0) at
/// `origin`, `step` apart.
struct GridOutline {
    GridSegments segments;
    MzPoint origin{0, 0};
    double step = 0;
    double largest = 0;       ///< of the coordinates of the polygon, by magnitude
    bool isTouching = false;  ///< whether more than two segments have an end in common

    MzPoint placeOf(double x, double y) const { return {origin.x + x * step, origin.y + y * step}; }
};

/// The sign of the turn at b on the way from a to c: 1 to the left, -1 to the right, 0 straight.
/// Exact.
MEZALITH_EXPORT int turn(GridPoint a, GridPoint b, GridPoint c);

/// Whether two segments have more in common than an end.
MEZALITH_EXPORT bool isMeeting(const GridSegment& s, const GridSegment& t);

/// The outline of the area inside an odd number of rings, in whichever direction these run, closed
/// or not. The grid has 2^30 to 2^31 steps over the larger side of the polygon's box; rings that
/// cross, touch or run along one another are parted where they do, at the nearest grid points. No
/// point of the outline is further than 3 steps from where it should be. Points that are not finite
/// are left out, and `coarser` leaves out so many bits of the grid. No segments for null and for
/// what has no area.
MEZALITH_EXPORT GridOutline gridOutlineOf(const MzPolygon* polygon, int coarser = 0);

}  // namespace mezalith::detail
