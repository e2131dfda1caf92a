// SPDX-License-Identifier: MIT
#include <mezalith/projection/gauss_kruger.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>

namespace mezalith {
namespace {

constexpr double kRadians = std::numbers::pi / 180;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// WGS 84: the semi-major axis in metres, the flattening, and what follows from them.
constexpr double kA = 6378137.0;
constexpr double kF = 1 / 298.257223563;
constexpr double kN = kF / (2 - kF);
constexpr double kE2 = kF * (2 - kF);
constexpr double kE = 0.081819190842621494;
static_assert(kE * kE - kE2 < 1e-17 && kE2 - kE * kE < 1e-17);
/// Radius of the sphere whose meridians are as long, metres.
constexpr double kRectifyingRadius =
    kA / (1 + kN) * (1 + kN * kN * (1.0 / 4 + kN * kN * (1.0 / 64 + kN * kN / 256)));

using Series = std::array<double, 6>;

// Coefficients of sin 2j, j = 1 to 6, by powers of n.
constexpr Series kForward{
    kN * (1.0 / 2 +
          kN * (-2.0 / 3 +
                kN * (5.0 / 16 + kN * (41.0 / 180 + kN * (-127.0 / 288 + kN * 7891 / 37800))))),
    kN* kN * (13.0 / 48 +
              kN * (-3.0 / 5 + kN * (557.0 / 1440 + kN * (281.0 / 630 + kN * -1983433 / 1935360)))),
    kN* kN* kN * (61.0 / 240 + kN * (-103.0 / 140 + kN * (15061.0 / 26880 + kN * 167603 / 181440))),
    kN* kN* kN* kN * (49561.0 / 161280 + kN * (-179.0 / 168 + kN * 6601661 / 7257600)),
    kN* kN* kN* kN* kN * (34729.0 / 80640 + kN * -3418889 / 1995840),
    kN* kN* kN* kN* kN* kN * 212378941 / 319334400};
constexpr Series kInverse{
    kN * (1.0 / 2 +
          kN * (-2.0 / 3 +
                kN * (37.0 / 96 + kN * (-1.0 / 360 + kN * (-81.0 / 512 + kN * 96199 / 604800))))),
    kN* kN * (1.0 / 48 +
              kN * (1.0 / 15 + kN * (-437.0 / 1440 + kN * (46.0 / 105 + kN * -1118711 / 3870720)))),
    kN* kN* kN * (17.0 / 480 + kN * (-37.0 / 840 + kN * (-209.0 / 4480 + kN * 5569 / 90720))),
    kN* kN* kN* kN * (4397.0 / 161280 + kN * (-11.0 / 504 + kN * -830251 / 7257600)),
    kN* kN* kN* kN* kN * (4583.0 / 161280 + kN * -108847 / 3991680),
    kN* kN* kN* kN* kN* kN * 20648693 / 638668800};

/// Of the double of a complex angle: sine and cosine of its real part, hyperbolic ones of the
/// imaginary part.
struct DoubleAngle {
    double sine, cosine, sinh, cosh;
};

/// The sum of series[j] sin 2(j+1)z, by Clenshaw's recurrence.
MzPoint sineSum(const Series& series, const DoubleAngle& z) {
    // Twice the cosine of 2z, and the sine.
    const MzPoint c{2 * z.cosine * z.cosh, -2 * z.sine * z.sinh};
    const MzPoint s{z.sine * z.cosh, z.cosine * z.sinh};
    MzPoint b1{0, 0}, b2{0, 0};
    for (std::size_t j = series.size(); j-- > 0;) {
        const MzPoint b{series[j] + c.x * b1.x - c.y * b1.y - b2.x, c.x * b1.y + c.y * b1.x - b2.y};
        b2 = b1;
        b1 = b;
    }
    return {b1.x * s.x - b1.y * s.y, b1.x * s.y + b1.y * s.x};
}

/// For |x| < 0.01, all digits.
double smallSinh(double x) { return x * (1 + x * x / 6 * (1 + x * x / 20)); }

/// Tangent of the conformal latitude from that of the latitude.
double conformalTangent(double tau) {
    const double secant = std::sqrt(1 + tau * tau);
    const double sigma = smallSinh(kE * std::atanh(kE * tau / secant));
    return std::sqrt(1 + sigma * sigma) * tau - sigma * secant;
}

/// Its inverse, by Newton's method, which doubles the digits at each of a few steps.
double tangentOfConformal(double conformal) {
    constexpr int kSteps = 5;
    constexpr double kEnough = 1e-16;
    // Beyond, all but a factor is constant; the start is right near the poles.
    double tau = conformal / (1 - kE2);
    if (std::abs(conformal) > 70) tau = conformal * std::exp(kE * std::atanh(kE));
    for (int step = 0; step < kSteps; ++step) {
        const double reached = conformalTangent(tau);
        const double squared = 1 + tau * tau;
        const double change = (conformal - reached) / std::sqrt(1 + reached * reached) *
                              (1 + (1 - kE2) * tau * tau) / ((1 - kE2) * std::sqrt(squared));
        tau += change;
        if (!(std::abs(change) > kEnough * std::max(1.0, std::abs(tau)))) break;
    }
    return tau;
}

/// In radii, northing first as the series have it.
MzPoint forward(MzPoint point, double meridian) {
    if (!(std::abs(point.y) <= 90) || !std::isfinite(point.x)) return {kNaN, kNaN};
    const double lambda = std::remainder(point.x - meridian, 360) * kRadians;
    const double sine = std::sin(lambda), cosine = std::cos(lambda);
    const double conformal = conformalTangent(std::tan(point.y * kRadians));
    // What the series need of the sphere's northing and easting follows without the angles.
    const double length = std::sqrt(conformal * conformal + cosine * cosine);
    const double up = conformal / length, across = cosine / length, s = sine / length;
    const DoubleAngle twice{2 * up * across, (across - up) * (across + up),
                            2 * s * std::sqrt(1 + s * s), 1 + 2 * s * s};
    const MzPoint sphere{std::atan2(conformal, cosine), std::asinh(s)};
    const MzPoint change = sineSum(kForward, twice);
    return {(sphere.y + change.y) * kRectifyingRadius, (sphere.x + change.x) * kRectifyingRadius};
}

MzPoint inverse(MzPoint plane, double meridian) {
    if (!std::isfinite(plane.x) || !std::isfinite(plane.y)) return {kNaN, kNaN};
    const MzPoint z{plane.y / kRectifyingRadius, plane.x / kRectifyingRadius};
    const MzPoint change = sineSum(
        kInverse, {std::sin(2 * z.x), std::cos(2 * z.x), std::sinh(2 * z.y), std::cosh(2 * z.y)});
    const double xi = z.x - change.x, eta = z.y - change.y;
    const double s = std::sinh(eta), c = std::cos(xi);
    const double tau = tangentOfConformal(std::sin(xi) / std::hypot(s, c));
    return {meridian + std::atan2(s, c) / kRadians, std::atan(tau) / kRadians};
}

}  // namespace

MzPoint MzGaussKruger(MzPoint point, double meridian) { return forward(point, meridian); }

MzPoint MzInverseGaussKruger(MzPoint plane, double meridian) { return inverse(plane, meridian); }

void MzGaussKruger(std::span<const MzPoint> source, std::span<MzPoint> destination, double meridian,
                   double scale, MzPoint offset) {
    const std::size_t count = std::min(source.size(), destination.size());
    for (std::size_t i = 0; i < count; ++i) {
        const MzPoint p = forward(source[i], meridian);
        destination[i] = {offset.x + scale * p.x, offset.y + scale * p.y};
    }
}

void MzInverseGaussKruger(std::span<const MzPoint> source, std::span<MzPoint> destination,
                          double meridian, double scale, MzPoint offset) {
    const std::size_t count = std::min(source.size(), destination.size());
    for (std::size_t i = 0; i < count; ++i) {
        destination[i] =
            inverse({(source[i].x - offset.x) / scale, (source[i].y - offset.y) / scale}, meridian);
    }
}

}  // namespace mezalith
