// SPDX-License-Identifier: MIT
#include <mezalith/platform/bitmap_touch.hpp>

#include <algorithm>
#include <array>
#include <cmath>

namespace mezalith::platform {
namespace {

/// How far a pixel shines beyond its sides.
constexpr double smoothing = 0.5;

/// Pixels from `begin` up to, not including, `end`.
struct Span {
    std::int32_t begin;
    std::int32_t end;
};

/// Those of `count` pixels that shine where a coordinate is within `distance` of `center`.
Span pixelsAround(double center, double distance, std::int32_t count) {
    const double most = count;
    return {
        static_cast<std::int32_t>(std::clamp(std::floor(center - distance - smoothing), 0.0, most)),
        static_cast<std::int32_t>(std::clamp(std::ceil(center + distance + smoothing), 0.0, most))};
}

bool isPainted(std::uint32_t pixel) { return pixel >> 24 != 0; }

bool touchesPixel(const Bitmap& bitmap, std::int32_t x, std::int32_t y,
                  const AffineTransform& placement, const Disc& disc) {
    const double left = std::max(x - smoothing, 0.0);
    const double top = std::max(y - smoothing, 0.0);
    const double right = std::min(x + 1 + smoothing, static_cast<double>(bitmap.width));
    const double bottom = std::min(y + 1 + smoothing, static_cast<double>(bitmap.height));
    std::array corners{MzPoint{left, top}, MzPoint{right, top}, MzPoint{right, bottom},
                       MzPoint{left, bottom}};
    placement.transformPoints(corners, corners);
    return touchesConvex(corners, disc);
}

}  // namespace

bool touchesBitmap(const Bitmap& bitmap, const AffineTransform& placement, const Disc& disc) {
    const auto inverse = placement.inverse();
    if (!inverse) {
        return false;
    }
    const MzPoint c = inverse->transformPoint(disc.center);
    const double across = disc.radius * std::hypot(inverse->m11, inverse->m21);
    const double down = disc.radius * std::hypot(inverse->m12, inverse->m22);
    if (!std::isfinite(c.x + across) || !std::isfinite(c.y + down)) {
        return false;
    }
    const Span columns = pixelsAround(c.x, across, bitmap.width);
    const Span rows = pixelsAround(c.y, down, bitmap.height);
    for (std::int32_t y = rows.begin; y < rows.end; ++y) {
        const auto row = bitmap.row(y);
        for (std::int32_t x = columns.begin; x < columns.end; ++x) {
            if (isPainted(row[static_cast<std::size_t>(x)]) &&
                touchesPixel(bitmap, x, y, placement, disc)) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace mezalith::platform
