// SPDX-License-Identifier: MIT
#include <mezalith/projection/transverse_mercator.hpp>

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

double meridionalArc(double phi, double s, double c) {
    constexpr double aPrime = 0.9983242984313436;
    constexpr double bPrime = 0.005018678421484986;
    constexpr double cPrime = 2.1002980978867826e-05;
    constexpr double dPrime = 1.0936603392140145e-07;
    constexpr double ePrime = 6.178058818421671e-10;
    const double s2 = s * s;
    return semiMajorAxis *
           (aPrime * phi - s * c * (bPrime + s2 * (cPrime + s2 * (dPrime + s2 * ePrime))));
}

}  // namespace

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

void LatitudeLongitudeToTransverseMercator(double* x, double* y, double latitude, double longitude,
                                           double /*originLatitude*/, double centralMeridian,
                                           double scaleFactor) {
    const double phi = radians(latitude), lambda = radians(longitude - centralMeridian);
    const double lambda2 = lambda * lambda;
    const double s = std::sin(phi), c = std::cos(phi), t = std::tan(phi);
    const double T = t * t, T2 = T * T, T3 = T2 * T;
    const double N = semiMajorAxis / std::sqrt(1 - eccentricitySquared * (s * s));
    const double C = secondEccentricitySquared * (c * c);
    const double A2 = lambda2 * (c * c);
    const double x2 = 1 - T + C;
    const double x4 = 5 - 18 * T + T2 + 14 * C - 58 * T * C;
    const double x6 = 61 - 479 * T + 179 * T2 - T3;
    const double y2 = 5 - T + 9 * C + 4 * (C * C);
    const double y4 = 61 - 58 * T + T2 + 270 * C - 330 * T * C;
    const double y6 = 1385 - 3111 * T + 543 * T2 - T3;
    *x = scaleFactor * N * c * lambda * (1 + A2 / 6 * (x2 + A2 / 20 * (x4 + A2 / 42 * x6)));
    *y = scaleFactor * meridionalArc(phi, s, c) +
         scaleFactor * N * s * c * 0.5 * lambda2 *
             (1 + A2 / 12 * (y2 + A2 / 30 * (y4 + A2 / 56 * y6)));
}

void UTMToLatitudeLongitude(std::uint32_t zone, double* latitude, double* longitude, double easting,
                            double northing) {
    TransverseMercatorToLatitudeLongitude(latitude, longitude, easting - falseEastingOfUTM,
                                          northing, 0, centralMeridianOfZone(zone), scaleOfUTM);
}

void TransverseMercatorToLatitudeLongitude(double* latitude, double* longitude, double x, double y,
                                           double /*originLatitude*/, double centralMeridian,
                                           double scaleFactor) {
    const double phi = InverseMeridionalArcPROJ4(y / scaleFactor);
    if (std::abs(phi) >= quarterTurn) {
        *latitude = y < 0 ? -90.0 : 90.0;
        *longitude = 0.0;
        return;
    }
    const double s = std::sin(phi), c = std::cos(phi), t = std::tan(phi);
    const double T = t * t, T2 = T * T, T3 = T2 * T;
    const double N = semiMajorAxis / std::sqrt(1 - eccentricitySquared * (s * s));
    const double eta = secondEccentricitySquared * (c * c);
    const double D = x / (N * scaleFactor), D2 = D * D;
    const double latitude2 = 5 + 3 * T + eta - 4 * (eta * eta) - 9 * T * eta;
    const double latitude4 = 61 + 90 * T - 252 * T * eta + 45 * T2 + 46 * eta;
    const double latitude6 = 1385 + 3633 * T + 4095 * T2 + 1575 * T3;
    const double longitude2 = 1 + 2 * T + eta;
    const double longitude4 = 5 + 28 * T + 24 * T2 + 8 * T * eta + 6 * eta;
    const double longitude6 = 61 + 662 * T + 1320 * T2 + 720 * T3;
    *latitude =
        (phi - 0.5 * (1 + eta) * t * D2 *
                   (1 - D2 / 12 * (latitude2 - D2 / 30 * (latitude4 - D2 / 56 * latitude6)))) *
        180 / pi;
    *longitude = centralMeridian +
                 D / c * degreesPerRadian *
                     (1 - D2 / 6 * (longitude2 - D2 / 20 * (longitude4 - D2 / 42 * longitude6)));
}

double MeridionalArcPROJ4(double phi) { return meridionalArc(phi, std::sin(phi), std::cos(phi)); }

double InverseMeridionalArcPROJ4(double arc) {
    constexpr int maximumSteps = 10;
    constexpr double tolerance = 1e-11;
    constexpr double k = 1 / (1 - eccentricitySquared);
    double phi = arc / semiMajorAxis;
    for (int step = 0; step < maximumSteps; ++step) {
        const double s = std::sin(phi), c = std::cos(phi);
        const double t = 1 - eccentricitySquared * (s * s);
        const double delta =
            (meridionalArc(phi, s, c) - arc) * t * std::sqrt(t) * k / semiMajorAxis;
        phi -= delta;
        if (std::abs(delta) < tolerance) break;
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
