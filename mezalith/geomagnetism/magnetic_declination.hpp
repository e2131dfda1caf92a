// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/date.hpp>

namespace mezalith {

/// The angle from true to magnetic north, from the models of the resource "IGRF11.COF".
///
/// To navigate by, use `MzGeomagneticField`, which is right for today and says when it is not.
///
/// Settled: between the epochs 2000 and 2010 answers are wrong by tens of degrees, as the factors
/// of `MzLegendrePolynomial` are from degree 11 on; at and after 2010 the model ends at degree 8.
/// The components are those of the sphere, not turned to the ellipsoid's north and vertical, which
/// makes a tenth of a degree at middle latitudes.
/// Source: Finlay et al. (2010), International Geomagnetic Reference Field: the eleventh
/// generation, Geophysical Journal International 183, 1216-1230.
class MEZALITH_EXPORT MzMagneticDeclination {
  public:
    /// Degrees, positive where magnetic north lies to the east, at `point` (longitude and latitude,
    /// degrees), `altitude` metres above the WGS 84 ellipsoid. NaN for what is not finite.
    ///
    /// The file is read again when it has changed; it may be asked from several threads.
    /// Settled: a date up to 1900, or a file that cannot be read, gives 0; the north pole gives
    /// NaN, while the south pole, by rounding, gives a number.
    double declinationForLatitudeLongitude(MzPoint point, platform::Date date,
                                           double altitude) const;

    /// The same at altitude 0.
    double declinationForLatitudeLongitude(MzPoint point, platform::Date date) const;
};

}  // namespace mezalith
