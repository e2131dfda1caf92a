// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/clipping/clipping_region.hpp>
#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>

#include <span>

namespace mezalith::detail {

// The clippers of regions that are `exact`, in projected units throughout. Each writes from `out`
// on, where there is the room that `outcode_clipping.hpp` tells for as many points, and answers the
// end of what it wrote. Points that are not finite are passed over, as if they were not there, and
// a region whose rectangle begins at no finite point or has a negative or NaN side has no inside.
// Whatever the input, all that is written lies within the region, border included.
//
// Points closer than the region's `minSpacing` (Manhattan distance) to the last one taken are
// dropped, the last of a line or ring excepted: what is clipped is nowhere farther than that from
// the source.
//
// Method: outside, a path is followed as its nearest point on the border would go. That curve winds
// around every inner point as often as the path itself, so that areas and fillings stay true, and
// of it only what cannot be left out is written: from where the path left, the corners on the net
// way to where it comes back.
// Accuracy: crossings lie exactly on their side, and along it within a few units in the last place
// of the coordinates of the segment. Coordinates whose differences are not finite are clipped
// without a crash, and without accuracy.

/// The points inside, border included; spacing is measured from the last one kept.
MEZALITH_EXPORT MzPoint* clipPointsExactly(std::span<const MzPoint> points, MzPoint* out,
                                           const MzClippingRegion& region);

/// One polyline: what of the line lies inside, in its own order and direction, joined along the
/// border.
MEZALITH_EXPORT MzPoint* clipLineExactly(std::span<const MzPoint> line, MzPoint* out,
                                         const MzClippingRegion& region);

/// One ring, its last point the same as its first, whose winding number around every inner point is
/// that of the source, closed or not. Nothing for a ring that winds around none and stays outside.
MEZALITH_EXPORT MzPoint* clipRingExactly(std::span<const MzPoint> ring, MzPoint* out,
                                         const MzClippingRegion& region);

}  // namespace mezalith::detail
