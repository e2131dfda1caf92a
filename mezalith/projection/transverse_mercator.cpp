// SPDX-License-Identifier: MIT
#include <mezalith/projection/transverse_mercator.hpp>

#include <algorithm>
#include <array>
#include <cmath>

namespace mezalith {
namespace {

// WGS 84.
constexpr double semiMajorAxis = 6378137.0;
constexpr double eccentricitySquared = 0.0066943799901413165;
constexpr double secondEccentricitySquared = 0.006739496742276434;

constexpr double scaleOfUTM = 0.9996;
constexpr double falseEastingOfUTM = 500000.0;

constexpr double pi = 3.141592653589793;
constexpr double degreesPerRadian = 57.29577951308232;
constexpr double quarterTurn = 1.5707963267948966;

double radians(double degrees) { return degrees * pi / 180; }

double centralMeridianOfZone(std::uint32_t zone) {
    return static_cast<std::int32_t>(zone * 6u - 183u);
}

std::uint32_t zoneOfLongitude(double longitude) {
    constexpr double modulus = 4294967296.0;
    const double zone = std::fmod(std::floor(longitude / 6) + 31, modulus);
    return std::isnan(zone) ? 0u : static_cast<std::uint32_t>(static_cast<std::int64_t>(zone));
}

// --- the series -----------------------------------------------------------

/// A latitude with all that the series need from the mathematics library; the series themselves are
/// plain arithmetic, which the compiler does for several points at a time.
struct Latitude {
    double phi, sine, cosine, tangent;
    double root;  ///< of 1 - e² sin²
};

Latitude latitudeOf(double phi) {
    const double s = std::sin(phi), c = std::cos(phi), t = std::tan(phi);
    return {phi, s, c, t, std::sqrt(1 - eccentricitySquared * (s * s))};
}

inline double meridionalArc(double phi, double s, double c) {
    constexpr double aPrime = 0.9983242984313436;
    constexpr double bPrime = 0.005018678421484986;
    constexpr double cPrime = 2.1002980978867826e-05;
    constexpr double dPrime = 1.0936603392140145e-07;
    constexpr double ePrime = 6.178058818421671e-10;
    const double s2 = s * s;
    return semiMajorAxis *
           (aPrime * phi - s * c * (bPrime + s2 * (cPrime + s2 * (dPrime + s2 * ePrime))));
}

/// `lambda` in radians from the central meridian.
inline MzPoint forwardSeries(const Latitude& latitude, double lambda, double scale) {
    const auto [phi, s, c, t, root] = latitude;
    const double lambda2 = lambda * lambda;
    const double T = t * t, T2 = T * T, T3 = T2 * T;
    const double N = semiMajorAxis / root;
    const double C = secondEccentricitySquared * (c * c);
    const double A2 = lambda2 * (c * c);
    const double x2 = 1 - T + C;
    const double x4 = 5 - 18 * T + T2 + 14 * C - 58 * T * C;
    const double x6 = 61 - 479 * T + 179 * T2 - T3;
    const double y2 = 5 - T + 9 * C + 4 * (C * C);
    const double y4 = 61 - 58 * T + T2 + 270 * C - 330 * T * C;
    const double y6 = 1385 - 3111 * T + 543 * T2 - T3;
    const double x = scale * N * c * lambda * (1 + A2 / 6 * (x2 + A2 / 20 * (x4 + A2 / 42 * x6)));
    const double y =
        scale * meridionalArc(phi, s, c) +
        scale * N * s * c * 0.5 * lambda2 * (1 + A2 / 12 * (y2 + A2 / 30 * (y4 + A2 / 56 * y6)));
    return {x, y};
}

/// Longitude and latitude in degrees from the footpoint latitude.
inline MzPoint inverseSeries(const Latitude& footpoint, MzPoint p, double meridian, double scale) {
    const auto [phi, s, c, t, root] = footpoint;
    const double T = t * t, T2 = T * T, T3 = T2 * T;
    const double N = semiMajorAxis / root;
    const double eta = secondEccentricitySquared * (c * c);
    const double D = p.x / (N * scale), D2 = D * D;
    const double y2 = 5 + 3 * T + eta - 4 * (eta * eta) - 9 * T * eta;
    const double y4 = 61 + 90 * T - 252 * T * eta + 45 * T2 + 46 * eta;
    const double y6 = 1385 + 3633 * T + 4095 * T2 + 1575 * T3;
    const double x2 = 1 + 2 * T + eta;
    const double x4 = 5 + 28 * T + 24 * T2 + 8 * T * eta + 6 * eta;
    const double x6 = 61 + 662 * T + 1320 * T2 + 720 * T3;
    const double latitude =
        (phi - 0.5 * (1 + eta) * t * D2 * (1 - D2 / 12 * (y2 - D2 / 30 * (y4 - D2 / 56 * y6)))) *
        180 / pi;
    const double longitude =
        meridian + D / c * degreesPerRadian * (1 - D2 / 6 * (x2 - D2 / 20 * (x4 - D2 / 42 * x6)));
    const bool beyondPole = std::abs(phi) >= quarterTurn;
    return {beyondPole ? 0.0 : longitude, beyondPole ? (p.y < 0 ? -90.0 : 90.0) : latitude};
}

// --- the inverse arc ------------------------------------------------------

constexpr int maximumSteps = 10;

/// One Newton step towards the latitude of `arc`; true when it was small enough to be the last.
inline bool stepTowardsArc(double& phi, double arc) {
    constexpr double k = 1 / (1 - eccentricitySquared);
    const double s = std::sin(phi), c = std::cos(phi);
    const double t = 1 - eccentricitySquared * (s * s);
    const double delta = (meridionalArc(phi, s, c) - arc) * t * std::sqrt(t) * k / semiMajorAxis;
    phi -= delta;
    return std::abs(delta) < 1e-11;
}

// --- many points ----------------------------------------------------------

/// Points are taken in blocks, each quantity of a block in an array of its own, so that the series
/// run on vectors and the Newton steps of neighbours overlap.
struct Block {
    static constexpr std::size_t capacity = 32;
    using Lane = std::array<double, capacity>;

    std::size_t count;
    Lane phi, sine, cosine, tangent, root;
    std::array<MzPoint, capacity> input;

    void setLatitude(std::size_t i, const Latitude& latitude) {
        phi[i] = latitude.phi;
        sine[i] = latitude.sine;
        cosine[i] = latitude.cosine;
        tangent[i] = latitude.tangent;
        root[i] = latitude.root;
    }

    Latitude latitude(std::size_t i) const {
        return {phi[i], sine[i], cosine[i], tangent[i], root[i]};
    }
};

template <typename OneBlock>
void forEachBlock(std::span<const MzPoint> source, std::span<MzPoint> destination,
                  const OneBlock& oneBlock) {
    const std::size_t count = std::min(source.size(), destination.size());
    Block block{};
    for (std::size_t start = 0; start < count; start += block.count) {
        block.count = std::min(Block::capacity, count - start);
        std::copy_n(source.begin() + static_cast<std::ptrdiff_t>(start), block.count,
                    block.input.begin());
        oneBlock(block, destination.data() + start);
    }
}

void projectBlock(Block& block, double meridian, MzPoint* destination) {
    for (std::size_t i = 0; i < block.count; ++i) {
        block.setLatitude(i, latitudeOf(radians(block.input[i].y)));
    }
    for (std::size_t i = 0; i < block.count; ++i) {
        const double lambda = radians(block.input[i].x - meridian);
        const MzPoint p = forwardSeries(block.latitude(i), lambda, scaleOfUTM);
        destination[i] = {p.x + falseEastingOfUTM, p.y};
    }
}

/// Sets the latitudes of all arcs, each by the very steps it would take alone.
void findFootpoints(const Block& block, const Block::Lane& arc, Block::Lane& phi) {
    std::array<bool, Block::capacity> found{};
    std::size_t searching = block.count;
    for (std::size_t i = 0; i < block.count; ++i) phi[i] = arc[i] / semiMajorAxis;
    for (int step = 0; step < maximumSteps && searching > 0; ++step) {
        for (std::size_t i = 0; i < block.count; ++i) {
            if (found[i] || !stepTowardsArc(phi[i], arc[i])) continue;
            found[i] = true;
            --searching;
        }
    }
}

void unprojectBlock(Block& block, double meridian, MzPoint* destination) {
    Block::Lane arc, phi;
    for (std::size_t i = 0; i < block.count; ++i) {
        block.input[i].x -= falseEastingOfUTM;
        arc[i] = block.input[i].y / scaleOfUTM;
    }
    findFootpoints(block, arc, phi);
    for (std::size_t i = 0; i < block.count; ++i) block.setLatitude(i, latitudeOf(phi[i]));
    for (std::size_t i = 0; i < block.count; ++i) {
        destination[i] = inverseSeries(block.latitude(i), block.input[i], meridian, scaleOfUTM);
    }
}

}  // namespace

// --- forward --------------------------------------------------------------

void LatitudeLongitudeToUTM(std::uint32_t* zone, double* x, double* y, double latitude,
                            double longitude) {
    *zone = zoneOfLongitude(longitude);
    LatitudeLongitudeToUTMZone(*zone, x, y, latitude, longitude);
}

void LatitudeLongitudeToUTMZone(std::uint32_t zone, double* x, double* y, double latitude,
                                double longitude) {
    LatitudeLongitudeToTransverseMercator(x, y, latitude, longitude, 0, centralMeridianOfZone(zone),
                                          scaleOfUTM);
    *x += falseEastingOfUTM;
}

void LatitudeLongitudeToUTMZone(std::uint32_t zone, std::span<const MzPoint> source,
                                std::span<MzPoint> destination) {
    forEachBlock(source, destination,
                 [meridian = centralMeridianOfZone(zone)](Block& block, MzPoint* projected) {
                     projectBlock(block, meridian, projected);
                 });
}

void LatitudeLongitudeToTransverseMercator(double* x, double* y, double latitude, double longitude,
                                           double /*originLatitude*/, double centralMeridian,
                                           double scaleFactor) {
    const MzPoint p = forwardSeries(latitudeOf(radians(latitude)),
                                    radians(longitude - centralMeridian), scaleFactor);
    *x = p.x;
    *y = p.y;
}

// --- inverse --------------------------------------------------------------

void UTMToLatitudeLongitude(std::uint32_t zone, double* latitude, double* longitude, double easting,
                            double northing) {
    TransverseMercatorToLatitudeLongitude(latitude, longitude, easting - falseEastingOfUTM,
                                          northing, 0, centralMeridianOfZone(zone), scaleOfUTM);
}

void UTMToLatitudeLongitude(std::uint32_t zone, std::span<const MzPoint> source,
                            std::span<MzPoint> destination) {
    forEachBlock(source, destination,
                 [meridian = centralMeridianOfZone(zone)](Block& block, MzPoint* geographic) {
                     unprojectBlock(block, meridian, geographic);
                 });
}

void TransverseMercatorToLatitudeLongitude(double* latitude, double* longitude, double x, double y,
                                           double /*originLatitude*/, double centralMeridian,
                                           double scaleFactor) {
    const Latitude footpoint = latitudeOf(InverseMeridionalArcPROJ4(y / scaleFactor));
    const MzPoint p = inverseSeries(footpoint, {x, y}, centralMeridian, scaleFactor);
    *longitude = p.x;
    *latitude = p.y;
}

// --- arcs -----------------------------------------------------------------

double MeridionalArcPROJ4(double phi) { return meridionalArc(phi, std::sin(phi), std::cos(phi)); }

double InverseMeridionalArcPROJ4(double arc) {
    double phi = arc / semiMajorAxis;
    for (int step = 0; step < maximumSteps; ++step) {
        if (stepTowardsArc(phi, arc)) break;
    }
    return phi;
}

double MeridionalArcTM8358(double phi) {
    constexpr double aPrime = 6367449.145823415;
    constexpr double bPrime = 16038.508662976112;
    constexpr double cPrime = 16.83261326314994;
    constexpr double dPrime = 0.021984404134261563;
    constexpr double ePrime = 3.114837105572214e-05;
    if (phi == 0.0) return 0.0;
    return aPrime * phi + bPrime * std::sin(-2 * phi) + cPrime * std::sin(4 * phi) +
           dPrime * std::sin(-6 * phi) + ePrime * std::sin(8 * phi);
}

}  // namespace mezalith
