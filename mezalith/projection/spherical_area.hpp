// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>

namespace mezalith {

/// The radius of the sphere that has the surface of the WGS 84 ellipsoid, metres.
inline constexpr double MzAuthalicEarthRadius = 6371007.180918474;

// Areas on a sphere, in square units of its radius. Points are longitude and latitude in degrees;
// longitudes need not lie within +-180. Sides are the shorter great circles between the points,
// those along a meridian or the equator being straight on a Plate Carree map. A ring that runs
// round a pole surrounds it, also where it is closed along a parallel of +-90. NaN when a
// coordinate is not finite. Source: Chamberlain and Duquette (2007), Some Algorithms for Polygons
// on a Sphere, JPL Publication 07-03; the excess of a side's strip to the equator is that of a
// right-angled pair of triangles (Todhunter, Spherical Trigonometry, section 103).

/// What the ring surrounds, whichever way it runs: the smaller of the two parts of the sphere.
MEZALITH_EXPORT double MzSphericalArea(const MzLinearRing* ring,
                                       double radius = MzAuthalicEarthRadius);
/// Of the outer ring, without those of the holes.
MEZALITH_EXPORT double MzSphericalArea(const MzPolygon* polygon,
                                       double radius = MzAuthalicEarthRadius);
MEZALITH_EXPORT double MzSphericalArea(const MzMultiPolygon* polygons,
                                       double radius = MzAuthalicEarthRadius);

}  // namespace mezalith
