// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>

#include <span>

namespace mezalith {

// Transverse Mercator on the ellipsoid WGS 84 with the equator as origin and a scale of 1 on the
// meridian, by Krueger's series to the sixth order of the third flattening: metres to the east of
// the meridian and to the north of the equator. Longitudes are taken whole turns apart, so that
// the nearest image of the meridian counts.
//
// Accuracy: 10 nanometres up to 35 degrees from the meridian, a millimetre up to 60 degrees, 2
// centimetres up to 70. Source: Karney (2011), Transverse Mercator with an accuracy of a few
// nanometers, Journal of Geodesy 85, equations 7 to 27, 35 and 36.

/// `point` in longitude and latitude, `meridian` in degrees. NaN for points that are not finite and
/// latitudes beyond the poles.
MEZALITH_EXPORT MzPoint MzGaussKruger(MzPoint point, double meridian);

/// Longitude and latitude, degrees, of a place in metres; longitudes within 180 degrees of the
/// meridian. NaN for points that are not finite.
MEZALITH_EXPORT MzPoint MzInverseGaussKruger(MzPoint plane, double meridian);

/// Many points at once, by the same arithmetic: easting and northing as `offset` + `scale` times
/// the plane's metres. `destination` may be `source`; points that find no place there are left out.
MEZALITH_EXPORT void MzGaussKruger(std::span<const MzPoint> source, std::span<MzPoint> destination,
                                   double meridian, double scale, MzPoint offset);
/// Back from these.
MEZALITH_EXPORT void MzInverseGaussKruger(std::span<const MzPoint> source,
                                          std::span<MzPoint> destination, double meridian,
                                          double scale, MzPoint offset);

}  // namespace mezalith
