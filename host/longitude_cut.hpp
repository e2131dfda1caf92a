// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/primitives.hpp>

#include <span>
#include <vector>

namespace mezalith::host {

/// The pieces of the polyline with west <= x <= east, in order; new end points lie on its segments.
/// Pieces of a single point are left out, as are points that are not finite.
std::vector<std::vector<MzPoint>> lineBetween(std::span<const MzPoint> line, double west,
                                              double east);

/// What of the closed ring lies in west <= x <= east, as one closed ring; parts that hang together
/// only outside come joined along x = west or x = east. Sides along those have a vertex at every
/// whole y from -90 to 90, so that they bend when they are projected, and all alike. Empty when
/// fewer than three points are left; points that are not finite are left out. The method is that of
/// Sutherland and Hodgman (1974), Reentrant polygon clipping, CACM 17(1).
std::vector<MzPoint> ringBetween(std::span<const MzPoint> ring, double west, double east);

}  // namespace mezalith::host
