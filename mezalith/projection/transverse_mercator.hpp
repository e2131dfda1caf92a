// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstdint>

namespace mezalith {

// Transverse Mercator and UTM on the WGS 84 ellipsoid (a = 6378137 m). The series are those of
// Snyder (1987), Map Projections: A Working Manual, USGS Professional Paper 1395, chapter 8, carried
// to the eighth order, with the origin at the equator. Accurate to well under a millimetre within
// three degrees of the central meridian and to a few millimetres within six; longitudes farther out
// are projected as they are, with growing error. Latitudes and longitudes in degrees, plane
// coordinates in metres. Nothing is checked; NaN gives NaN.
// Settled: no false northing in either hemisphere, so southern northings are negative.

/// Chooses the zone from the longitude (`truncate(floor(longitude / 6) + 31)`), stores it and
/// projects into it. Settled: 180 gives zone 61, and there are no exceptions for Norway and
/// Svalbard. Longitudes below -186 wrap modulo 2^32; NaN gives zone 0.
MEZALITH_EXPORT void LatitudeLongitudeToUTM(std::uint32_t* zone, double* x, double* y,
                                            double latitude, double longitude);

/// The central meridian of zone z is z·6 - 183 degrees, computed in 32 bits.
MEZALITH_EXPORT void LatitudeLongitudeToUTMZone(std::uint32_t zone, double* x, double* y,
                                                double latitude, double longitude);

/// Forward projection without false easting. `originLatitude` is accepted and ignored: the origin
/// is the equator. At the poles tan² of the latitude is huge but finite.
MEZALITH_EXPORT void LatitudeLongitudeToTransverseMercator(double* x, double* y, double latitude,
                                                           double longitude, double originLatitude,
                                                           double centralMeridian,
                                                           double scaleFactor);

MEZALITH_EXPORT void UTMToLatitudeLongitude(std::uint32_t zone, double* latitude, double* longitude,
                                            double easting, double northing);

/// Inverse projection. `originLatitude` is accepted and ignored. At or beyond the meridional
/// distance of a pole the answer is latitude ±90 and longitude 0.
MEZALITH_EXPORT void TransverseMercatorToLatitudeLongitude(double* latitude, double* longitude,
                                                           double x, double y,
                                                           double originLatitude,
                                                           double centralMeridian,
                                                           double scaleFactor);

/// Meridional distance from the equator, metres, of the latitude `phi` in radians.
MEZALITH_EXPORT double MeridionalArcPROJ4(double phi);

/// The latitude in radians whose meridional distance is `arc` metres, by at most ten Newton steps;
/// the last one is returned without a word if they do not converge.
MEZALITH_EXPORT double InverseMeridionalArcPROJ4(double arc);

/// Meridional distance by the five-term sine series of DMA TM 8358.2; exactly 0 at 0. Used by no
/// other function here.
MEZALITH_EXPORT double MeridionalArcTM8358(double phi);

}  // namespace mezalith
