// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>

namespace mezalith {

// Great circles on a sphere of radius 6327000 m. Longitudes, latitudes and bearings in degrees,
// distances in metres. Points have x = longitude, y = latitude. Result longitudes are not
// normalised. NaN gives NaN.
// Settled: the radius is not the usual mean radius of 6371009 m; distances come out 0.7 % short.

/// Radius of the sphere, metres.
inline constexpr double MzEarthRadius = 6327000.0;

/// Haversine distance. Exact antipodes may give NaN by rounding.
MEZALITH_EXPORT double MzEarthDistance(double longitude1, double latitude1, double longitude2,
                                       double latitude2);

/// Where one arrives after `distance` metres from `start` with the initial `bearing` (clockwise
/// from north).
MEZALITH_EXPORT MzPoint MzPointWithDistanceAndBearing(MzPoint start, double distance,
                                                      double bearing);

/// Initial bearing clockwise from north, in [0, 360).
MEZALITH_EXPORT double MzInitialBearingBetweenPoints(double longitude1, double latitude1,
                                                     double longitude2, double latitude2);

/// The point halfway along the great circle; undefined direction between antipodes.
MEZALITH_EXPORT MzPoint MzGeodesicMidpoint(double longitude1, double latitude1, double longitude2,
                                           double latitude2);

}  // namespace mezalith
