// SPDX-License-Identifier: MIT
#include <mezalith/projection/web_mercator_projection.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace mezalith {
namespace {

constexpr double kRadius = 6378137.0;  // metres
constexpr double kRadians = std::numbers::pi / 180;
constexpr double kHalf = kRadius * std::numbers::pi;
/// Where y equals half the width of the world, degrees.
constexpr double kLimit = 85.051128779806592;

MzPoint forward(MzPoint point) {
    const double x = kRadius * (point.x * kRadians);
    if (std::abs(point.y) < 90) return {x, kRadius * std::asinh(std::tan(point.y * kRadians))};
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    return {x, std::abs(point.y) == 90 ? std::copysign(kInfinity, point.y) : kNaN};
}

MzPoint inverse(MzPoint plane) {
    return {plane.x / kRadius / kRadians, std::atan(std::sinh(plane.y / kRadius)) / kRadians};
}

}  // namespace

MzWebMercatorProjection::MzWebMercatorProjection() {
    setSrid(3857);
    setName("Web Mercator");
    setEquitorialCylindrical(true);
    setWrapsHorizontally(true);
    setBounds({{-kHalf, -kHalf}, {2 * kHalf, 2 * kHalf}});
    setMaximumResolution(0.01);
    setMinimumResolution(2 * kHalf / 256);
}

MzPoint MzWebMercatorProjection::projectedCoordinateForLongitudeLatitude(MzPoint point) const {
    return forward(point);
}

MzPoint MzWebMercatorProjection::longitudeLatitudeForProjectedCoordinate(MzPoint point) const {
    return inverse(point);
}

void MzWebMercatorProjection::projectCoordinates(std::span<const MzPoint> source,
                                                 std::span<MzPoint> destination) const {
    const std::size_t count = std::min(source.size(), destination.size());
    for (std::size_t i = 0; i < count; ++i) destination[i] = forward(source[i]);
}

void MzWebMercatorProjection::unprojectCoordinates(std::span<const MzPoint> source,
                                                   std::span<MzPoint> destination) const {
    const std::size_t count = std::min(source.size(), destination.size());
    for (std::size_t i = 0; i < count; ++i) destination[i] = inverse(source[i]);
}

MzProjectionRegion MzWebMercatorProjection::region() const {
    return MzProjectionRegion::endless(-kLimit, kLimit);
}

std::shared_ptr<MzWebMercatorProjection> MzWebMercatorProjection::copy() const {
    return std::static_pointer_cast<MzWebMercatorProjection>(MzMapProjection::copy());
}

std::shared_ptr<MzMapProjection> MzWebMercatorProjection::newInstance() const {
    return std::make_shared<MzWebMercatorProjection>();
}

}  // namespace mezalith
