// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/projection/map_projection.hpp>

#include <memory>
#include <vector>

namespace mezalith {

// Great circles to be drawn, on the sphere of `MzEarthDistance`: the counterparts of that distance
// and of `MzGeodesicGeometry`. Points are longitude and latitude in degrees, distances metres.

/// The distance for any two points, antipodes included: never more than half the circumference.
/// Within 1e-8 m. NaN unless all numbers are finite.
MEZALITH_EXPORT double MzGeodesicDistance(MzPoint a, MzPoint b);

/// The most points that `MzGeodesicPoints` answers.
inline constexpr std::size_t MzGeodesicMaxPoints = std::size_t{1} << 27;

/// The shorter great circle from `start` to `end`: two points at least, equally spaced and never
/// farther apart than `resolution`, the first and the last as they were given.
///
/// Longitudes are unwrapped: each is within 180 degrees of the one before, so a line over the 180th
/// meridian runs on beyond it, up to its end, which then is whole turns from the longitude given. A
/// line over a pole leaves it on the opposite meridian, 180 degrees away. Between antipodes, where
/// every great circle is as short, it is the meridian to the north.
///
/// A resolution that is zero, negative or NaN gives the two ends alone. Nothing when an end is not
/// finite or there would be more than `MzGeodesicMaxPoints`.
MEZALITH_EXPORT std::vector<MzPoint> MzGeodesicPoints(MzPoint start, MzPoint end,
                                                      double resolution);

/// The same points as polylines that can be stroked as they are. The line is parted at the poles,
/// each part reaching up to the pole on its own meridian, and at the edge of a cylindrical
/// `projection` that wraps horizontally (may be null): both parts get the point of the great circle
/// on the edge, and all longitudes lie within the projection's bounds. Empty where there are no
/// points.
MEZALITH_EXPORT std::vector<std::shared_ptr<MzMultiPointGeometry>> MzGeodesicLines(
    MzPoint start, MzPoint end, double resolution, const MzMapProjection* projection);

}  // namespace mezalith
