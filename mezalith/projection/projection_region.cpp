// SPDX-License-Identifier: MIT
#include <mezalith/projection/projection_region.hpp>

#include <cmath>
#include <numbers>

namespace mezalith {
namespace {

constexpr double kRadians = std::numbers::pi / 180;

double squaredSine(double degrees) {
    const double sine = std::sin(degrees * kRadians);
    return sine * sine;
}

}  // namespace

bool MzProjectionRegion::holds(MzPoint point) const {
    if (!std::isfinite(point.x) || !std::isfinite(point.y)) return false;
    if (shape == Shape::Cap) return MzAngleBetween(point, centre) <= reach;
    if (point.y < south || point.y > north) return false;
    return shape == Shape::Endless || std::abs(std::remainder(point.x - centre.x, 360)) <= reach;
}

double MzAngleBetween(MzPoint a, MzPoint b) {
    // Haversines, which keep their digits for places that are close.
    const double h =
        squaredSine((b.y - a.y) / 2) + std::cos(a.y * kRadians) * std::cos(b.y * kRadians) *
                                           squaredSine(std::remainder(b.x - a.x, 360) / 2);
    return 2 * std::atan2(std::sqrt(h), std::sqrt(std::fmax(1 - h, 0))) / kRadians;
}

}  // namespace mezalith
