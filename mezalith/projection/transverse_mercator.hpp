// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>

#include <cstdint>
#include <span>

namespace mezalith {

// Transverse Mercator and UTM on the WGS 84 ellipsoid (a = 6378137 m), as power series about the
// central meridian with the origin at the equator.
//
// Units     latitudes and longitudes in degrees, plane coordinates in metres; x grows to the east,
//           y to the north. The arc functions take and give radians.
// Domain    any numbers, nothing is checked. Longitudes far from the central meridian are projected
//           as they are, with growing error. NaN gives NaN, infinities NaN or infinities.
// Accuracy  forward and inverse on the ground, at every latitude short of the poles: 2e-5 m within
//           3 degrees of the central meridian, 1e-3 m within 6, 0.05 m within 10, 30 m within 20.
// Source    DMA TM 8358.2 (1989), The Universal Grids, after Thomas (1952), Conformal Projections
//           in Geodesy and Cartography, USC&GS Special Publication 251; to the eighth order in the
//           difference of longitude, without the smallest terms in the eccentricity.
// Settled: no false northing in either hemisphere, so southern northings are negative.

/// Chooses the zone from the longitude (`truncate(floor(longitude / 6) + 31)`), stores it and
/// projects into it. Settled: 180 gives zone 61, and there are no exceptions for Norway and
/// Svalbard. Zones of longitudes below -186 wrap modulo 2^32; NaN and infinities give zone 0.
MEZALITH_EXPORT void LatitudeLongitudeToUTM(std::uint32_t* zone, double* x, double* y,
                                            double latitude, double longitude);

/// The central meridian of zone z is z * 6 - 183 degrees, in signed 32 bits that wrap around.
MEZALITH_EXPORT void LatitudeLongitudeToUTMZone(std::uint32_t zone, double* x, double* y,
                                                double latitude, double longitude);

/// The same for many points at a lower cost, bit for bit: from x = longitude, y = latitude to
/// easting and northing. `destination` may be the same memory; points that find no place there are
/// left out.
MEZALITH_EXPORT void LatitudeLongitudeToUTMZone(std::uint32_t zone, std::span<const MzPoint> source,
                                                std::span<MzPoint> destination);

/// Forward projection without false easting. `originLatitude` is accepted and ignored: the origin
/// is the equator. At the poles the square of the tangent is huge but finite, and x is 0 to within
/// 1e-10 m.
MEZALITH_EXPORT void LatitudeLongitudeToTransverseMercator(double* x, double* y, double latitude,
                                                           double longitude, double originLatitude,
                                                           double centralMeridian,
                                                           double scaleFactor);

MEZALITH_EXPORT void UTMToLatitudeLongitude(std::uint32_t zone, double* latitude, double* longitude,
                                            double easting, double northing);

/// The same for many points, under the terms of the forward form.
MEZALITH_EXPORT void UTMToLatitudeLongitude(std::uint32_t zone, std::span<const MzPoint> source,
                                            std::span<MzPoint> destination);

/// Inverse projection. `originLatitude` is accepted and ignored. At or beyond the meridional
/// distance of a pole the answer is latitude 90 or -90 and longitude 0, whatever the meridian.
MEZALITH_EXPORT void TransverseMercatorToLatitudeLongitude(double* latitude, double* longitude,
                                                           double x, double y,
                                                           double originLatitude,
                                                           double centralMeridian,
                                                           double scaleFactor);

/// Meridional distance from the equator in metres of the latitude `phi` in radians, within 5e-6 m.
/// Snyder (1987), Map Projections: A Working Manual, USGS Professional Paper 1395, equation 3-21,
/// one order further and in powers of the squared sine.
MEZALITH_EXPORT double MeridionalArcPROJ4(double phi);

/// The latitude in radians whose meridional distance is `arc` metres, by at most ten Newton steps;
/// the last one is returned without a word if they do not converge. Undoes `MeridionalArcPROJ4`
/// within 1e-15.
MEZALITH_EXPORT double InverseMeridionalArcPROJ4(double arc);

/// Meridional distance as above by the five-term sine series of DMA TM 8358.2, within 1e-7 m;
/// exactly 0 at 0. Used by no other function here.
MEZALITH_EXPORT double MeridionalArcTM8358(double phi);

}  // namespace mezalith
