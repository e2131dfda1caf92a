// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/primitives.hpp>

#include <vector>

namespace mezalith::host {

using GlobeRing = std::vector<MzPoint>;
using GlobeRings = std::vector<GlobeRing>;

/// Polygons, each a list of rings, as they are on the globe.
struct JoinedPolygons {
    /// Those that need no joining, as they were.
    std::vector<GlobeRings> apart;
    /// What the others became: lines that are closed on the globe, the longitude going on over the
    /// 180th meridian, so that the last point may lie whole turns from the first, and leaping at
    /// poles. None when they surround everything.
    GlobeRings joined;
    /// What they were; empty when there was nothing to join.
    GlobeRings joinedFrom;
};

/// Puts polygons together again of a map that was cut at the 180th meridian and closed along the
/// poles: sides along the meridian that lie on both of its edges are dropped, as are those along a
/// pole, and what they held together is joined across. By the even-odd rule, the area is the same.
/// Rings are closed and in degrees, their points finite.
JoinedPolygons joinedAcrossAntimeridian(const std::vector<GlobeRings>& polygons);

/// Whether a side runs along the 180th meridian: to a billionth of a degree, or a thousandth of the
/// side's length where that is less than 1e-4 degrees, as for maps with rounded coordinates.
bool isAlongAntimeridian(MzPoint p, MzPoint q);

/// Whether a polygon has sides that `joinedAcrossAntimeridian` may drop.
bool touchesAntimeridian(const GlobeRings& polygon);

}  // namespace mezalith::host
