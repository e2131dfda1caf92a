// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/medialaxis/polygon_skeleton.hpp>

#include <vector>

namespace mezalith {

/// The line on which a polygon's name is set: the longest way through `skeleton` that goes round
/// holes on their wider side, as `count` points (2 at least) spaced evenly and then smoothed, so
/// that their spacing is nearly even. `skeleton` is that of the polygon, pruned as far as the line
/// is not to run into corners. Each point carries its distance from the outline, half the width of
/// the room there; all lie inside, the
/// ends perhaps in corners. A skeleton of one node gives that node alone; null and one of
/// none give nothing.
/// Cost: O(n log n) and `count` distances from the outline of n points.
MEZALITH_EXPORT std::vector<MzSkeletonNode> MzSpineOfPolygon(const MzPolygon* polygon,
                                                             const MzPolygonSkeleton* skeleton,
                                                             std::size_t count = 129);

}  // namespace mezalith
