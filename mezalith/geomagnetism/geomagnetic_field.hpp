// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geomagnetism/geomagnetic_model.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/date.hpp>

#include <span>
#include <vector>

namespace mezalith {

/// The magnetic field at a place, in its geodetic directions: nT and degrees. As a change of it, nT
/// and degrees a year.
struct MzMagneticElements {
    double north = 0;        ///< nT, to the geographic north
    double east = 0;         ///< nT
    double down = 0;         ///< nT, along the vertical of the ellipsoid
    double horizontal = 0;   ///< nT
    double total = 0;        ///< nT
    double declination = 0;  ///< degrees, from true to magnetic north, positive to the east
    double inclination = 0;  ///< degrees, below the horizon
};

/// The Earth's main field at one time: what `MzMagneticDeclination` is asked for, to the model's
/// full degree and for any date. An evaluation allocates nothing.
///
///     auto model = MzGeomagneticModel::internationalReferenceField();
///     MzGeomagneticField field(*model, date);
///     double declination = field.elementsAt({10.75, 59.91}).declination;
///
/// Units     places in degrees, longitude and latitude, on WGS 84; altitudes in metres above the
///           ellipsoid; field in nT, angles in degrees.
/// Domain    any longitude, latitudes of -90 to 90. At a pole, north is along the meridian of the
///           longitude that is given. What is not finite, a date of no model year included, gives
///           NaN. Whether the model is made for the date is its `validityInYear`'s to say.
/// Accuracy  the sums are within 1e-6 nT of exact ones. What no such model holds, the field of the
///           crust above all, is of the order of 100 nT.
/// Source    Langel (1987), The Main Field, in Jacobs (ed.), Geomagnetism, vol. 1; functions
///           divided by the sine of the colatitude, by which poles are places like others, as in
///           Holmes and Featherstone (2002), Journal of Geodesy 76, 279-299.
class MEZALITH_EXPORT MzGeomagneticField {
  public:
    MzGeomagneticField(const MzGeomagneticModel& model, platform::Date date);
    /// In a decimal year.
    MzGeomagneticField(const MzGeomagneticModel& model, double year);

    /// The decimal year that the field is of.
    double year() const { return year_; }
    int degree() const { return degree_; }

    MzMagneticElements elementsAt(MzPoint place, double altitude = 0) const;

    /// By how much the elements differ a year later, the coefficients changing at their present
    /// rate.
    MzMagneticElements annualChangeAt(MzPoint place, double altitude = 0) const;

    /// The elements at all crossings of `longitudes` and `latitudes`, parallel by parallel: the
    /// same as one by one, bit for bit, at a fraction of the cost. Does nothing unless `results`
    /// has room for all.
    void elementsOnGrid(std::span<const double> longitudes, std::span<const double> latitudes,
                        double altitude, std::span<MzMagneticElements> results) const;

  private:
    class Parallel;

    /// What one pair of coefficients is multiplied with, as far as no place matters.
    struct Term {
        MzGaussCoefficients value{};  ///< nT
        MzGaussCoefficients rate{};   ///< nT a year
        double previous = 0;          ///< the recursion's factors of the two degrees below
        double beforePrevious = 0;
        double root = 0;  ///< sqrt(n^2 - m^2)
    };

    static Term termOf(int degree, int order);

    int degree_;
    double year_;
    /// By order, then by degree from 1, so that the recursion of each order runs through memory.
    std::vector<Term> terms_;
};

}  // namespace mezalith
