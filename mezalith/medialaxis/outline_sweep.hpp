// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/medialaxis/grid_outline.hpp>

#include <span>

namespace mezalith::detail {

struct Sides {
    bool areFound = false;    ///< not where segments meet elsewhere than in ends
    bool isTouching = false;  ///< whether more than two segments have an end in common
};

/// Tells each segment on which side of it lies the inside, which is what an odd number of segments
/// separates from the outside, and whether any two of them meet elsewhere than in common ends.
/// Exact, O(n log n).
/// Source: Shamos & Hoey (1976), Geometric intersection problems, 17th Annual Symposium on
/// Foundations of Computer Science.
MEZALITH_EXPORT Sides findSides(std::span<GridSegment> segments);

}  // namespace mezalith::detail
