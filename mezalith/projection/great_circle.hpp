// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>

namespace mezalith {

// Great circles on a sphere of radius 6327000 m. Points have x = longitude, y = latitude.
//
// Units     longitudes, latitudes and bearings in degrees, bearings clockwise from north;
//           distances in metres.
// Domain    any finite numbers; longitudes are neither required nor brought within +-180. NaN and
//           infinities give NaN.
// Source    distance: Sinnott (1984), Virtues of the Haversine, Sky and Telescope 68(2), p. 159.
//           Others: Snyder (1987), Map Projections: A Working Manual, USGS Professional Paper 1395,
//           section 5; the midpoint is the direction of the sum of the two unit vectors.
// Settled: the radius is not the usual mean radius of 6371009 m; distances come out 0.7 % short.

/// Radius of the sphere, metres.
inline constexpr double MzEarthRadius = 6327000.0;

/// Haversine distance, within 1e-8 m up to 10 km, 1e-7 m between points up to 170 degrees apart and
/// 0.5 m beyond.
/// Settled: exact antipodes may give NaN, as rounding can bring the haversine above 1;
/// `MzGeodesicDistance` answers there, too.
MEZALITH_EXPORT double MzEarthDistance(double longitude1, double latitude1, double longitude2,
                                       double latitude2);

/// Where one arrives after `distance` metres from `start` with the initial `bearing`. Within 1e-7 m
/// as long as both ends stay a degree away from the poles; within 0.5 m elsewhere, except that
/// arrival at a pole may give NaN, as rounding can bring the sine of the latitude above 1.
MEZALITH_EXPORT MzPoint MzPointWithDistanceAndBearing(MzPoint start, double distance,
                                                      double bearing);

/// Initial bearing in [0, 360); 0 for a point and itself.
MEZALITH_EXPORT double MzInitialBearingBetweenPoints(double longitude1, double latitude1,
                                                     double longitude2, double latitude2);

/// The point halfway along the great circle, within 1e-7 m while the ends are at most 170 degrees
/// apart. Between antipodes the direction is arbitrary. The longitude lies within 180 degrees of
/// `longitude1`.
MEZALITH_EXPORT MzPoint MzGeodesicMidpoint(double longitude1, double latitude1, double longitude2,
                                           double latitude2);

}  // namespace mezalith
