// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/device_path.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace mezalith::platform::detail {

/// The points of a cubic curve.
using Curve = std::array<MzPoint, 4>;

inline constexpr int kDeepestHalving = 32;

inline MzPoint middleOf(MzPoint a, MzPoint b) {
    return {a.x * 0.5 + b.x * 0.5, a.y * 0.5 + b.y * 0.5};
}

inline std::pair<Curve, Curve> halvesOf(const Curve& c) {
    const MzPoint ab = middleOf(c[0], c[1]);
    const MzPoint bc = middleOf(c[1], c[2]);
    const MzPoint cd = middleOf(c[2], c[3]);
    const MzPoint abc = middleOf(ab, bc);
    const MzPoint bcd = middleOf(bc, cd);
    const MzPoint center = middleOf(abc, bcd);
    return {{c[0], ab, abc, center}, {center, bcd, cd, c[3]}};
}

/// An upper bound of the distance between a curve and its chord: 1/8 of its largest second
/// derivative.
inline double deviationOf(const Curve& c) {
    const double first = std::hypot(c[0].x - 2 * c[1].x + c[2].x, c[0].y - 2 * c[1].y + c[2].y);
    const double second = std::hypot(c[1].x - 2 * c[2].x + c[3].x, c[1].y - 2 * c[2].y + c[3].y);
    return 0.75 * std::max(first, second);
}

inline bool isBeside(const Curve& c, const DeviceBox& box) {
    const auto [left, right] = std::minmax({c[0].x, c[1].x, c[2].x, c[3].x});
    const auto [bottom, top] = std::minmax({c[0].y, c[1].y, c[2].y, c[3].y});
    return right < box.minX || left > box.maxX || top < box.minY || bottom > box.maxY;
}

/// Lines along curves that deviate from them by at most `tolerance`; what lies wholly on one side
/// of `box` is not refined.
struct Flatness {
    double tolerance;
    DeviceBox box;
    double tangent = 0;  ///< curves begin and end with a line of this length in their own direction
};

/// The point `distance` from `from` in the direction of the first of the others that is elsewhere.
inline MzPoint alongTangent(MzPoint from, const std::array<MzPoint, 3>& others, double distance) {
    for (const MzPoint& to : others) {
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        if (length > 0) {
            const double part = distance / length;
            return {from.x + (to.x - from.x) * part, from.y + (to.y - from.y) * part};
        }
    }
    return from;
}

/// Calls `take` with the end of each line along the curve, and whether it is the curve's own end.
template <typename Take>
void flattenCurve(const Curve& curve, const Flatness& flatness, Take&& take, int depth = 0,
                  bool isLast = true) {
    if (depth == kDeepestHalving || !(deviationOf(curve) > flatness.tolerance) ||
        isBeside(curve, flatness.box)) {
        take(curve[3], isLast);
        return;
    }
    const auto [first, second] = halvesOf(curve);
    flattenCurve(first, flatness, take, depth + 1, false);
    flattenCurve(second, flatness, take, depth + 1, isLast);
}

template <typename Visitor>
void walkCurve(const Curve& curve, const Flatness& flatness, Visitor& visitor) {
    const auto& [start, control1, control2, end] = curve;
    if (flatness.tangent > 0) {
        visitor.lineTo(alongTangent(start, {control1, control2, end}, flatness.tangent), false);
    }
    flattenCurve(curve, flatness, [&](MzPoint point, bool isEnd) {
        if (isEnd && flatness.tangent > 0) {
            visitor.lineTo(alongTangent(end, {control2, control1, start}, flatness.tangent), false);
        }
        visitor.lineTo(point, isEnd);
    });
}

/// Walks the elements of a path, curves turned into lines. `visitor` is told by `moveTo(point)`,
/// `lineTo(point, isCorner)`, which is NO within a curve, and `close()`.
template <typename Visitor>
void walkPath(const DevicePath& path, const Flatness& flatness, Visitor&& visitor) {
    const MzPoint* next = path.points().data();
    for (const DevicePath::Verb verb : path.verbs()) {
        switch (verb) {
            case DevicePath::Verb::Move:
                visitor.moveTo(*next++);
                break;
            case DevicePath::Verb::Line:
                visitor.lineTo(*next++, true);
                break;
            case DevicePath::Verb::Curve:
                walkCurve({next[-1], next[0], next[1], next[2]}, flatness, visitor);
                next += 3;
                break;
            case DevicePath::Verb::Close:
                visitor.close();
                break;
        }
    }
}

}  // namespace mezalith::platform::detail
