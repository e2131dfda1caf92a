// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/geomagnetic_field.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

namespace mezalith {
namespace {

constexpr double kSemiMajorAxis = 6378137.0;
constexpr double kSquaredEccentricity = 0.0066943799901413165;  // f (2 - f), f = 1 / 298.257223563
constexpr double kReferenceRadius = 6371200.0;
constexpr double kDegree = std::numbers::pi / 180;

struct Vector {
    double north = 0;
    double east = 0;
    double down = 0;
};

Vector operator+(Vector a, Vector b) {
    return {a.north + b.north, a.east + b.east, a.down + b.down};
}

MzMagneticElements elementsOf(Vector field) {
    const double horizontal = std::sqrt(field.north * field.north + field.east * field.east);
    return {.north = field.north,
            .east = field.east,
            .down = field.down,
            .horizontal = horizontal,
            .total = std::sqrt(horizontal * horizontal + field.down * field.down),
            .declination = std::atan2(field.east, field.north) / kDegree,
            .inclination = std::atan2(field.down, horizontal) / kDegree};
}

MzMagneticElements difference(const MzMagneticElements& later, const MzMagneticElements& earlier) {
    return {.north = later.north - earlier.north,
            .east = later.east - earlier.east,
            .down = later.down - earlier.down,
            .horizontal = later.horizontal - earlier.horizontal,
            .total = later.total - earlier.total,
            .declination = std::remainder(later.declination - earlier.declination, 360),
            .inclination = later.inclination - earlier.inclination};
}

/// A parallel of the ellipsoid, seen from the Earth's centre.
struct Geocentric {
    double cosine;      ///< of the colatitude
    double sine;        ///< of the colatitude
    double radius;      ///< metres
    double tiltCosine;  ///< of the angle by which the geocentric north is turned downwards
    double tiltSine;
};

Geocentric geocentric(double latitude, double altitude) {
    const double sinPhi = std::sin(latitude * kDegree), cosPhi = std::cos(latitude * kDegree);
    const double normal = kSemiMajorAxis / std::sqrt(1 - kSquaredEccentricity * sinPhi * sinPhi);
    const double p = (normal + altitude) * cosPhi;
    const double z = (normal * (1 - kSquaredEccentricity) + altitude) * sinPhi;
    const double radius = std::sqrt(p * p + z * z);
    const double cosine = z / radius, sine = p / radius;
    return {cosine, sine, radius, sine * cosPhi + cosine * sinPhi, cosine * cosPhi - sine * sinPhi};
}

}  // namespace

/// The field along a parallel: for each order, what the cosine and the sine of that many longitudes
/// are multiplied with.
class MzGeomagneticField::Parallel {
  public:
    /// Of the coefficients or of their rates, as `kind` says.
    Parallel(const MzGeomagneticField& field, double latitude, double altitude,
             MzGaussCoefficients Term::*kind)
        : place_(geocentric(latitude, altitude)), degree_(field.degree_), kind_(kind) {
        const double ratio = kReferenceRadius / place_.radius;
        powers_[0] = ratio * ratio;
        for (std::size_t n = 1; n <= size(); ++n) powers_[n] = powers_[n - 1] * ratio;
        const Term* terms = addZonal(field.terms_.data());
        double sectoral = 1;
        for (int m = 1; m <= degree_; ++m) terms = addOrder(m, terms, sectoral);
    }

    Vector at(double longitude) const {
        const double cosLambda = std::cos(longitude * kDegree);
        const double sinLambda = std::sin(longitude * kDegree);
        double c = 1, s = 0;
        Vector sum;
        for (std::size_t m = 0; m <= size(); ++m) {
            const Sums& of = sums_[m];
            sum.north += of.north.g * c + of.north.h * s;
            sum.east += of.east.g * s - of.east.h * c;
            sum.down -= of.down.g * c + of.down.h * s;
            const double next = c * cosLambda - s * sinLambda;
            s = s * cosLambda + c * sinLambda;
            c = next;
        }
        return {sum.north * place_.tiltCosine - sum.down * place_.tiltSine, sum.east,
                sum.north * place_.tiltSine + sum.down * place_.tiltCosine};
    }

  private:
    struct Sums {
        MzGaussCoefficients north, east, down;
    };

    std::size_t size() const { return static_cast<std::size_t>(degree_); }

    static void add(MzGaussCoefficients& sum, double factor, MzGaussCoefficients coefficients) {
        sum.g += factor * coefficients.g;
        sum.h += factor * coefficients.h;
    }

    /// Order 0, with the derivatives by a recursion of their own.
    const Term* addZonal(const Term* term) {
        Sums sums;
        double value = 1, valueBelow = 0, slope = 0, slopeBelow = 0;
        for (int n = 1; n <= degree_; ++n, ++term) {
            const double turned = place_.cosine * slope - place_.sine * value;
            const double nextSlope = term->previous * turned - term->beforePrevious * slopeBelow;
            const double nextValue =
                term->previous * place_.cosine * value - term->beforePrevious * valueBelow;
            slopeBelow = slope;
            slope = nextSlope;
            valueBelow = value;
            value = nextValue;
            const double power = powers_[static_cast<std::size_t>(n)];
            add(sums.north, power * slope, term->*kind_);
            add(sums.down, power * (n + 1) * value, term->*kind_);
        }
        sums_[0] = sums;
        return term;
    }

    /// Order m: `value` is the function over the sine of the colatitude, `sectoral` that of degree
    /// and order m - 1, which becomes that of m.
    const Term* addOrder(int m, const Term* term, double& sectoral) {
        Sums sums;
        if (m > 1) sectoral *= term->previous * place_.sine;
        double value = sectoral, valueBelow = 0;
        for (int n = m; n <= degree_; ++n, ++term) {
            if (n > m) {
                const double next =
                    term->previous * place_.cosine * value - term->beforePrevious * valueBelow;
                valueBelow = value;
                value = next;
            }
            const double weighted = powers_[static_cast<std::size_t>(n)] * value;
            const double below = powers_[static_cast<std::size_t>(n)] * valueBelow;
            add(sums.north, n * place_.cosine * weighted - term->root * below, term->*kind_);
            add(sums.east, m * weighted, term->*kind_);
            add(sums.down, (n + 1) * place_.sine * weighted, term->*kind_);
        }
        sums_[static_cast<std::size_t>(m)] = sums;
        return term;
    }

    static constexpr std::size_t kMost = MzGeomagneticModel::kMaxDegree + 1;

    Geocentric place_;
    int degree_;
    MzGaussCoefficients Term::*kind_;
    std::array<double, kMost> powers_;
    std::array<Sums, kMost> sums_;
};

MzGeomagneticField::Term MzGeomagneticField::termOf(int degree, int order) {
    const double n = degree, m = order;
    // On the diagonal, the factor that leads from one order to the next.
    if (degree == order) return {.previous = std::sqrt((2 * n - 1) / (2 * n))};
    const double root = std::sqrt(n * n - m * m);
    return {.previous = (2 * n - 1) / root,
            .beforePrevious = std::sqrt(std::max(0.0, (n - 1) * (n - 1) - m * m)) / root,
            .root = root};
}

MzGeomagneticField::MzGeomagneticField(const MzGeomagneticModel& model, platform::Date date)
    : MzGeomagneticField(model, platform::decimalYear(date)) {}

MzGeomagneticField::MzGeomagneticField(const MzGeomagneticModel& model, double year)
    : degree_(model.degree()),
      year_(std::isfinite(year) ? year : std::numeric_limits<double>::quiet_NaN()) {
    const std::size_t count = MzGeomagneticModel::countToDegree(degree_);
    std::vector<MzGaussCoefficients> values(count), rates(count);
    model.coefficientsInYear(year_, values, rates);
    terms_.reserve(count);
    for (int m = 0; m <= degree_; ++m) {
        for (int n = std::max(m, 1); n <= degree_; ++n) {
            Term term = termOf(n, m);
            term.value = values[MzGeomagneticModel::indexOf(n, m)];
            term.rate = rates[MzGeomagneticModel::indexOf(n, m)];
            terms_.push_back(term);
        }
    }
}

MzMagneticElements MzGeomagneticField::elementsAt(MzPoint place, double altitude) const {
    return elementsOf(Parallel(*this, place.y, altitude, &Term::value).at(place.x));
}

MzMagneticElements MzGeomagneticField::annualChangeAt(MzPoint place, double altitude) const {
    const Vector now = Parallel(*this, place.y, altitude, &Term::value).at(place.x);
    const Vector rate = Parallel(*this, place.y, altitude, &Term::rate).at(place.x);
    return difference(elementsOf(now + rate), elementsOf(now));
}

void MzGeomagneticField::elementsOnGrid(std::span<const double> longitudes,
                                        std::span<const double> latitudes, double altitude,
                                        std::span<MzMagneticElements> results) const {
    if (results.size() / std::max<std::size_t>(longitudes.size(), 1) < latitudes.size()) return;
    auto result = results.begin();
    for (const double latitude : latitudes) {
        const Parallel parallel(*this, latitude, altitude, &Term::value);
        for (const double longitude : longitudes) *result++ = elementsOf(parallel.at(longitude));
    }
}

}  // namespace mezalith
