// SPDX-License-Identifier: MIT
#include <mezalith/projection/spherical_area.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>

namespace mezalith {
namespace {

constexpr double kPi = std::numbers::pi;

double radians(double degrees) { return degrees * kPi / 180; }

/// The signed area between the side and the equator on the unit sphere: positive for a side that
/// runs west in the north. Tangents of half angles, so that small strips keep their digits.
double stripBelow(MzPoint from, MzPoint to) {
    const double turn = std::tan(radians(std::remainder(to.x - from.x, 360)) / 2);
    const double low = std::tan(radians(from.y) / 2);
    const double high = std::tan(radians(to.y) / 2);
    return -2 * std::atan2(turn * (low + high), 1 + low * high);
}

/// How often the ring runs round the axis, eastwards counted positive.
double turnsRoundAxis(std::span<const MzPoint> ring) {
    double degrees = 0;
    MzPoint from = ring.back();
    for (const MzPoint to : ring) {
        degrees += std::remainder(to.x - from.x, 360);
        from = to;
    }
    return std::round(degrees / 360);
}

/// On the unit sphere.
double areaWithin(std::span<const MzPoint> ring) {
    if (ring.size() < 3) return 0;
    double strips = 0;
    MzPoint from = ring.back();
    for (const MzPoint to : ring) {
        strips += stripBelow(from, to);
        from = to;
    }
    const double turns = turnsRoundAxis(ring);
    const double area = std::abs(strips + 2 * kPi * turns);
    const double part = std::fmod(area, 4 * kPi);
    return std::min(part, 4 * kPi - part);
}

}  // namespace

double MzSphericalArea(const MzLinearRing* ring, double radius) {
    return areaWithin(pointsOf(ring)) * radius * radius;
}

double MzSphericalArea(const MzPolygon* polygon, double radius) {
    const std::span<const MzLinearRing> rings = ringsOf(polygon);
    double area = 0;
    for (std::size_t i = 0; i < rings.size(); ++i) {
        const double ringArea = MzSphericalArea(&rings[i], radius);
        area += i == 0 ? ringArea : -ringArea;
    }
    return area;
}

double MzSphericalArea(const MzMultiPolygon* polygons, double radius) {
    double area = 0;
    for (const MzPolygon& polygon : polygonsOf(polygons)) {
        area += MzSphericalArea(&polygon, radius);
    }
    return area;
}

}  // namespace mezalith
