// SPDX-License-Identifier: MIT
#include <mezalith/platform/path_cutting.hpp>
#include <mezalith/platform/touch.hpp>

#include <algorithm>
#include <cmath>

namespace mezalith::platform {
namespace {

/// Positive when `p` is to the left of the line from `a` to `b`.
double sideOf(MzPoint a, MzPoint b, MzPoint p) {
    return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
}

}  // namespace

DeviceBox boxAround(const Disc& disc) {
    const MzPoint c = disc.center;
    return {c.x - disc.radius, c.y - disc.radius, c.x + disc.radius, c.y + disc.radius};
}

std::optional<Chord> chordWithin(MzPoint a, MzPoint b, const Disc& disc) {
    // A unit more, so that the part is no shorter than what is in the disc, whatever is rounded.
    const SegmentPart part = segmentWithin(a, b, grownBox(boxAround(disc), 1));
    if (part.isEmpty()) {
        return std::nullopt;
    }
    const MzPoint from = pointOnSegment(a, b, part.from);
    const MzPoint to = pointOnSegment(a, b, part.to);
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    const MzPoint ahead =
        length > 0 ? MzPoint{(to.x - from.x) / length, (to.y - from.y) / length} : MzPoint{1, 0};
    const MzPoint c{disc.center.x - from.x, disc.center.y - from.y};
    const double foot = c.x * ahead.x + c.y * ahead.y;
    const double nearest = std::clamp(foot, 0.0, length);
    const auto at = [&](double t) { return MzPoint{from.x + ahead.x * t, from.y + ahead.y * t}; };
    const double away = c.y * ahead.x - c.x * ahead.y;
    if (!(std::hypot(away, foot - nearest) <= disc.radius)) {
        return std::nullopt;
    }
    const double half = std::sqrt(std::max(disc.radius * disc.radius - away * away, 0.0));
    return Chord{
        at(nearest),
        at((std::clamp(foot - half, 0.0, length) + std::clamp(foot + half, 0.0, length)) / 2)};
}

bool touchesConvex(std::span<const MzPoint> corners, const Disc& disc) {
    bool isLeftOfOne = false;
    bool isRightOfOne = false;
    MzPoint a = corners.back();
    for (const MzPoint& b : corners) {
        if (chordWithin(a, b, disc)) {
            return true;
        }
        const double side = sideOf(a, b, disc.center);
        isLeftOfOne = isLeftOfOne || side > 0;
        isRightOfOne = isRightOfOne || side < 0;
        a = b;
    }
    return isLeftOfOne != isRightOfOne;
}

}  // namespace mezalith::platform
