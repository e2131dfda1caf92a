// SPDX-License-Identifier: MIT
#include <mezalith/medialaxis/outline_noding.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace mezalith::detail {
namespace {

__extension__ using Wide = __int128;

using GridPoints = std::vector<GridPoint>;

Wide crossOf(GridPoint a, GridPoint b, GridPoint c, GridPoint d) {
    const Wide ux = static_cast<Wide>(b.x) - a.x;
    const Wide uy = static_cast<Wide>(b.y) - a.y;
    const Wide vx = static_cast<Wide>(d.x) - c.x;
    const Wide vy = static_cast<Wide>(d.y) - c.y;
    return ux * vy - uy * vx;
}

/// The grid point in whose square the lines of two segments that are not parallel cross.
GridPoint crossingOf(const GridSegment& s, const GridSegment& t) {
    const auto share = static_cast<long double>(crossOf(s.low, t.low, t.low, t.high)) /
                       static_cast<long double>(crossOf(s.low, s.high, t.low, t.high));
    const auto between = [&](std::int32_t from, std::int32_t to) {
        const auto width = static_cast<long double>(to) - static_cast<long double>(from);
        return static_cast<std::int32_t>(
            std::floor(static_cast<long double>(from) + width * share + 0.5L));
    };
    return {between(s.low.x, s.high.x), between(s.low.y, s.high.y)};
}

std::pair<std::int32_t, std::int32_t> heightsOf(const GridSegment& s) {
    return std::minmax(s.low.y, s.high.y);
}

bool isApart(const GridSegment& s, const GridSegment& t) {
    const auto [sLow, sHigh] = heightsOf(s);
    const auto [tLow, tHigh] = heightsOf(t);
    return s.high.x < t.low.x || t.high.x < s.low.x || sHigh < tLow || tHigh < sLow;
}

void sortUnique(GridPoints& points) {
    std::ranges::sort(points);
    const auto repeated = std::ranges::unique(points);
    points.erase(repeated.begin(), repeated.end());
}

/// All ends, and the grid points nearest to the crossings. `segments` are in order.
GridPoints knotsOf(std::span<const GridSegment> segments) {
    GridPoints knots;
    std::vector<const GridSegment*> active;
    for (const GridSegment& segment : segments) {
        std::erase_if(active, [&](const GridSegment* s) { return s->high.x < segment.low.x; });
        for (const GridSegment* other : active) {
            if (isApart(*other, segment) || !isMeeting(*other, segment)) continue;
            if (crossOf(other->low, other->high, segment.low, segment.high) == 0) continue;
            knots.push_back(crossingOf(*other, segment));
        }
        active.push_back(&segment);
        knots.push_back(segment.low);
        knots.push_back(segment.high);
    }
    sortUnique(knots);
    return knots;
}

/// Whether a segment passes through the square of one step around the point, of which the left and
/// the lower side are part and the other two are not: every place is in one square only.
bool isNear(const GridSegment& s, GridPoint p) {
    const auto [low, high] = heightsOf(s);
    if (p.x < s.low.x || p.x > s.high.x || p.y < low || p.y > high) return false;
    const Wide dx = static_cast<Wide>(s.high.x) - s.low.x;
    const Wide dy = static_cast<Wide>(s.high.y) - s.low.y;
    const Wide reach = dx + (dy < 0 ? -dy : dy);
    const Wide side = 2 * crossOf(s.low, s.high, s.low, p);
    // A falling segment may touch the lower left corner, others touch corners that are not part.
    const bool touches = dy < 0 && side == reach;
    return touches || (-reach < side && side < reach);
}

/// The knots that the segment passes, in the order along it.
void collectKnots(const GridSegment& s, const GridPoints& knots, GridPoints& passed) {
    passed.clear();
    const auto from = std::ranges::lower_bound(knots, s.low.x, {}, &GridPoint::x);
    for (auto knot = from; knot != knots.end() && knot->x <= s.high.x; ++knot) {
        if (isNear(s, *knot)) passed.push_back(*knot);
    }
    // Knots are in order by x, then upwards; along a falling segment, downwards.
    if (s.high.y < s.low.y) {
        std::ranges::sort(
            passed, [](GridPoint a, GridPoint b) { return a.x != b.x ? a.x < b.x : a.y > b.y; });
    }
}

/// Keeps one of each odd number of equal segments.
void dropPairs(GridSegments& segments) {
    const auto inOrder = [](const GridSegment& s, const GridSegment& t) {
        return std::pair(s.low, s.high) < std::pair(t.low, t.high);
    };
    std::ranges::sort(segments, inOrder);
    GridSegments kept;
    for (const GridSegment& segment : segments) {
        if (!kept.empty() && kept.back() == segment) {
            kept.pop_back();
        } else {
            kept.push_back(segment);
        }
    }
    segments = std::move(kept);
}

}  // namespace

GridSegments partedSegments(std::span<const GridSegment> segments) {
    GridSegments whole(segments.begin(), segments.end());
    for (GridSegment& segment : whole) segment.isInteriorAbove = false;
    dropPairs(whole);
    const GridPoints knots = knotsOf(whole);
    GridSegments parted;
    GridPoints passed;
    for (const GridSegment& segment : whole) {
        collectKnots(segment, knots, passed);
        for (std::size_t i = 1; i < passed.size(); ++i) {
            const auto [low, high] = std::minmax(passed[i - 1], passed[i]);
            parted.push_back({low, high, false});
        }
    }
    dropPairs(parted);
    return parted;
}

}  // namespace mezalith::detail
