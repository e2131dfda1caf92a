// SPDX-License-Identifier: MIT
#include "mezalith/geometry/plane_vector.hpp"
#include "mezalith/medialaxis/preferred_root.hpp"
#include "mezalith/medialaxis/truncated_logarithm.hpp"
#include <mezalith/medialaxis/curve_intersection.hpp>

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace mezalith {
namespace {

constexpr double kNowhere = std::numeric_limits<double>::infinity();

using detail::cross;
using detail::minus;

/// Parabola parameters.
struct Roots {
    double first;
    double second;
};

/// Whether a coefficient of this exponent vanishes beside one of that exponent.
bool isNegligible(std::int64_t exponent, std::int64_t beside) { return exponent + 7 < beside; }

std::optional<Roots> rootsWithoutLinear(double quadratic, double constant) {
    const double square = -constant / quadratic;
    if (square < 0) return std::nullopt;
    const double root = std::sqrt(square);
    return Roots{-root, root};
}

/// The roots of a·s² + b·s + c with the discriminant given, coefficients that vanish beside the
/// others left out; nothing where there are none.
std::optional<Roots> rootsOf(double a, double b, double c, double discriminant) {
    if (discriminant < 0) return std::nullopt;
    const std::int64_t eA = detail::truncatedLogarithm(std::abs(a));
    const std::int64_t eB = detail::truncatedLogarithm(std::abs(b));
    const std::int64_t eC = detail::truncatedLogarithm(std::abs(c));
    if (isNegligible(eA, eB) && isNegligible(eA, eC)) return Roots{-c / b, -c / b};
    if (isNegligible(eB, eA) && isNegligible(eB, eC)) return rootsWithoutLinear(a, c);
    if ((isNegligible(eC, eA) && isNegligible(eB, eA)) ||
        (isNegligible(eA, eB) && isNegligible(eC, eB))) {
        return Roots{0, 0};
    }
    const double root = std::sqrt(discriminant);
    return Roots{(-b - root) / (2 * a), (-b + root) / (2 * a)};
}

double rayParameter(MzPoint point, MzPoint rayStart, MzPoint rayDirection) {
    if (rayDirection.x < 1e-7) return (point.y - rayStart.y) / rayDirection.y;
    return (point.x - rayStart.x) / rayDirection.x;
}

}  // namespace

void MzRayRayIntersection(double* t1, double* t2, MzPoint start1, MzPoint dir1, MzPoint start2,
                          MzPoint dir2) {
    const double determinant = cross(dir1, dir2);
    if (determinant == 0) {
        *t1 = *t2 = kNowhere;
        return;
    }
    const MzPoint apart = minus(start2, start1);
    *t1 = cross(apart, dir2) / determinant;
    *t2 = cross(apart, dir1) / determinant;
}

void MzParabolaCoefficientsForSegmentPoint(double* focalDistance, MzPoint* vertex,
                                           MzPoint segmentStart, MzPoint segmentDirection,
                                           MzPoint point) {
    const double along = detail::dot(minus(point, segmentStart), segmentDirection);
    const MzPoint foot = detail::plus(segmentStart, detail::times(segmentDirection, along));
    const MzPoint half = detail::times(minus(foot, point), 0.5);
    *focalDistance = detail::lengthOf(half);
    *vertex = detail::plus(point, half);
}

void MzRayParabolaIntersectionBothAnswers(double* t1, double* s1, double* t2, double* s2,
                                          MzPoint rayStart, MzPoint rayDirection,
                                          MzPoint parabolaStart, MzPoint parabolaDirection,
                                          MzPoint parabolaQuadratic) {
    const double a = cross(parabolaQuadratic, rayDirection);
    const double b = cross(parabolaDirection, rayDirection);
    const double c = cross(minus(parabolaStart, rayStart), rayDirection);
    double discriminant = b * b - 4 * a * c;
    if (std::abs(discriminant) < 1e-7) discriminant = 0;
    const std::optional<Roots> roots = rootsOf(a, b, c, discriminant);
    if (!roots) {
        *t1 = *s1 = *t2 = *s2 = kNowhere;
        return;
    }
    const auto at = [&](double s) {
        const MzPoint point =
            detail::curvePoint(parabolaStart, parabolaDirection, parabolaQuadratic, s);
        return rayParameter(point, rayStart, rayDirection);
    };
    *s1 = roots->first;
    *s2 = roots->second;
    *t1 = at(*s1);
    *t2 = at(*s2);
}

void MzRayParabolaIntersection(double* t, double* s, MzPoint rayStart, MzPoint rayDirection,
                               MzPoint parabolaStart, MzPoint parabolaDirection,
                               MzPoint parabolaQuadratic) {
    double t1 = 0;
    double s1 = 0;
    double t2 = 0;
    double s2 = 0;
    MzRayParabolaIntersectionBothAnswers(&t1, &s1, &t2, &s2, rayStart, rayDirection, parabolaStart,
                                         parabolaDirection, parabolaQuadratic);
    const bool first = detail::prefersFirstRoot(s1, s2);
    *t = first ? t1 : t2;
    *s = first ? s1 : s2;
}

}  // namespace mezalith
