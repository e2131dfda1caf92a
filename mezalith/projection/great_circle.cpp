// SPDX-License-Identifier: MIT
#include <mezalith/projection/great_circle.hpp>

#include <cmath>

namespace mezalith {
namespace {

constexpr double radiansPerDegree = 0.017453292519943295;
constexpr double degreesPerRadian = 57.29577951308232;
constexpr double pi = 3.141592653589793;

double radians(double degrees) { return degrees * radiansPerDegree; }

double degreesByHalfTurn(double radians) { return radians * 180 / pi; }

double squaredSine(double angle) {
    const double sine = std::sin(angle);
    return sine * sine;
}

}  // namespace

double MzEarthDistance(double longitude1, double latitude1, double longitude2, double latitude2) {
    const double lambda1 = radians(longitude1), phi1 = radians(latitude1);
    const double lambda2 = radians(longitude2), phi2 = radians(latitude2);
    const double h = squaredSine((phi2 - phi1) / 2) +
                     std::cos(phi1) * std::cos(phi2) * squaredSine((lambda2 - lambda1) / 2);
    return 2 * std::atan2(std::sqrt(h), std::sqrt(1 - h)) * MzEarthRadius;
}

MzPoint MzPointWithDistanceAndBearing(MzPoint start, double distance, double bearing) {
    const double lambda1 = radians(start.x), phi1 = radians(start.y);
    const double delta = distance / MzEarthRadius, theta = radians(bearing);
    const double phi2 = std::asin(std::cos(theta) * std::sin(delta) * std::cos(phi1) +
                                  std::cos(delta) * std::sin(phi1));
    const double lambda2 = lambda1 + std::atan2(std::sin(theta) * std::sin(delta) * std::cos(phi1),
                                                std::cos(delta) - std::sin(phi2) * std::sin(phi1));
    return {lambda2 * degreesPerRadian, phi2 * degreesPerRadian};
}

double MzInitialBearingBetweenPoints(double longitude1, double latitude1, double longitude2,
                                     double latitude2) {
    const double phi1 = radians(latitude1), phi2 = radians(latitude2);
    const double deltaLambda = radians(longitude2) - radians(longitude1);
    const double theta = std::atan2(
        std::sin(deltaLambda) * std::cos(phi2),
        std::sin(phi2) * std::cos(phi1) - std::cos(deltaLambda) * std::sin(phi1) * std::cos(phi2));
    return std::fmod(degreesByHalfTurn(theta) + 360, 360);
}

MzPoint MzGeodesicMidpoint(double longitude1, double latitude1, double longitude2,
                           double latitude2) {
    const double lambda1 = radians(longitude1), phi1 = radians(latitude1);
    const double phi2 = radians(latitude2);
    const double deltaLambda = radians(longitude2) - lambda1;
    const double bx = std::cos(deltaLambda) * std::cos(phi2);
    const double by = std::sin(deltaLambda) * std::cos(phi2);
    const double along = std::cos(phi1) + bx;
    const double phi =
        std::atan2(std::sin(phi1) + std::sin(phi2), std::sqrt(along * along + by * by));
    const double lambda = lambda1 + std::atan2(by, along);
    return {degreesByHalfTurn(lambda), degreesByHalfTurn(phi)};
}

}  // namespace mezalith
