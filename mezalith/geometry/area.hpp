// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>

namespace mezalith {

/// Which way a ring runs: 1 counter-clockwise, -1 clockwise, 0 when it has no inside. Decided
/// without rounding by the turn at its lowest corner; by the sign of `MzSignedArea` where the ring
/// only comes and goes there. A ring need not be closed.
MEZALITH_EXPORT int MzRingOrientation(const MzLinearRing* ring);

// Areas in the plane, in square units of the coordinates. Each point counts relative to the first,
// so that rings far from the origin keep their digits. NaN when a coordinate is not finite.

/// Of one ring, positive when it runs counter-clockwise. What the ring surrounds twice counts
/// twice.
MEZALITH_EXPORT double MzSignedArea(const MzLinearRing* ring);
/// Of the outer ring, without those of the holes, whichever way the rings run.
MEZALITH_EXPORT double MzArea(const MzPolygon* polygon);
MEZALITH_EXPORT double MzArea(const MzMultiPolygon* polygons);

}  // namespace mezalith
