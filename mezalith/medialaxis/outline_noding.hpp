// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/medialaxis/grid_outline.hpp>

#include <span>

namespace mezalith::detail {

/// The segments parted where they meet: each is led through the grid points nearest to its meetings
/// with others and through the ends that it passes within half a step, so that what comes out has
/// only ends in common. Of pieces that coincide, pairs are left out, as they separate nothing.
/// Sides are not set. No point moves by more than 0.71 steps. Source: Hobby (1999), Practical
/// segment intersection with finite precision output, Computational Geometry 13. Cost: O(n log n)
/// and the number of pairs whose extents in x overlap.
MEZALITH_EXPORT GridSegments partedSegments(std::span<const GridSegment> segments);

}  // namespace mezalith::detail
