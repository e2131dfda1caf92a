// SPDX-License-Identifier: MIT
#include "mezalith/geometry/plane_vector.hpp"
#include <mezalith/medialaxis/grid_outline.hpp>
#include <mezalith/medialaxis/outline_noding.hpp>
#include <mezalith/medialaxis/outline_sweep.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace mezalith::detail {
namespace {

// Products of differences of 32-bit coordinates need 66 bits.
__extension__ using Wide = __int128;

/// The box around the points that are finite.
struct Box {
    MzPoint low{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
    MzPoint high{-low.x, -low.y};

    void add(MzPoint p) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    bool isEmpty() const { return !(low.x <= high.x); }
    // Halves first: the sum of two finite numbers may not be one.
    MzPoint middle() const { return {0.5 * low.x + 0.5 * high.x, 0.5 * low.y + 0.5 * high.y}; }
    double halfSide() const {
        return std::max(0.5 * high.x - 0.5 * low.x, 0.5 * high.y - 0.5 * low.y);
    }
    double largest() const {
        return std::max({std::abs(low.x), std::abs(low.y), std::abs(high.x), std::abs(high.y)});
    }
};

Box boxOf(const MzPolygon* polygon) {
    Box box;
    for (const MzLinearRing& ring : ringsOf(polygon)) {
        for (const MzPoint p : pointsOf(&ring)) {
            if (isFinite(p)) box.add(p);
        }
    }
    return box;
}

/// The power of two that takes `halfSide` to less than 2^30: differences then fit the 32 bits that
/// the builder of the diagram takes. With one bit more it goes wrong for one ring in some
/// thousands.
int exponentFor(double halfSide) {
    int exponent = 0;
    std::frexp(halfSide, &exponent);
    return std::min(30 - exponent, 1000);
}

std::int32_t onGrid(double value) {
    constexpr double kEnd = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(std::nearbyint(value), -kEnd, kEnd));
}

/// Whether b lies between a and c.
bool isStraight(GridPoint a, GridPoint b, GridPoint c) {
    return turn(a, b, c) == 0 && (a < b) == (b < c);
}

/// Takes away the last point while it is one with the first or lies on the way there.
void closeRing(std::vector<GridPoint>& ring) {
    while (ring.size() > 1 && ring.back() == ring.front()) ring.pop_back();
    while (ring.size() > 2 && isStraight(ring[ring.size() - 2], ring.back(), ring.front())) {
        ring.pop_back();
    }
    if (ring.size() > 2 && isStraight(ring.back(), ring[0], ring[1])) ring.erase(ring.begin());
}

void addToRing(std::vector<GridPoint>& ring, GridPoint p) {
    if (!ring.empty() && ring.back() == p) return;
    while (ring.size() > 1 && isStraight(ring[ring.size() - 2], ring.back(), p)) ring.pop_back();
    ring.push_back(p);
}

void appendSegments(const std::vector<GridPoint>& ring, GridSegments& segments) {
    if (ring.size() < 3) return;
    GridPoint previous = ring.back();
    for (const GridPoint p : ring) {
        segments.push_back({std::min(previous, p), std::max(previous, p), false});
        previous = p;
    }
}

/// Parts segments where they meet and finds their sides; none left where that cannot be done.
void settle(GridOutline& outline) {
    constexpr int kAttempts = 4;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const Sides sides = findSides(outline.segments);
        outline.isTouching = sides.isTouching;
        if (sides.areFound) return;
        outline.segments = partedSegments(outline.segments);
    }
    outline.segments.clear();
}

}  // namespace

int turn(GridPoint a, GridPoint b, GridPoint c) {
    const double ux = static_cast<double>(b.x) - a.x;
    const double uy = static_cast<double>(b.y) - a.y;
    const double vx = static_cast<double>(c.x) - b.x;
    const double vy = static_cast<double>(c.y) - b.y;
    const double left = ux * vy;
    const double right = uy * vx;
    // Differences are exact, products are off by half a unit in the last place.
    const double bound = (std::abs(left) + std::abs(right)) * 0x1p-51;
    if (left - right > bound) return 1;
    if (left - right < -bound) return -1;
    const Wide exact = static_cast<Wide>(ux) * static_cast<Wide>(vy) -
                       static_cast<Wide>(uy) * static_cast<Wide>(vx);
    return exact > 0 ? 1 : exact < 0 ? -1 : 0;
}

bool isMeeting(const GridSegment& s, const GridSegment& t) {
    const int lowSide = turn(s.low, s.high, t.low);
    const int highSide = turn(s.low, s.high, t.high);
    if (lowSide * highSide > 0) return false;
    if (lowSide == 0 && highSide == 0) {
        return std::max(s.low, t.low) < std::min(s.high, t.high);
    }
    const int sLowSide = turn(t.low, t.high, s.low);
    const int sHighSide = turn(t.low, t.high, s.high);
    if (sLowSide * sHighSide > 0) return false;
    // They have a point in common: an end of both, or more.
    const bool isEnd = s.low == t.low || s.low == t.high || s.high == t.low || s.high == t.high;
    return !isEnd;
}

GridOutline gridOutlineOf(const MzPolygon* polygon, int coarser) {
    const Box box = boxOf(polygon);
    GridOutline outline;
    if (box.isEmpty() || !(box.halfSide() > 0)) return outline;
    const int exponent = exponentFor(box.halfSide()) - coarser;
    const double scale = std::ldexp(1.0, exponent);
    outline.origin = box.middle();
    outline.step = std::ldexp(1.0, -exponent);
    outline.largest = box.largest();
    std::vector<GridPoint> points;
    for (const MzLinearRing& ring : ringsOf(polygon)) {
        points.clear();
        for (const MzPoint p : pointsOf(&ring)) {
            if (!isFinite(p)) continue;
            addToRing(points, {onGrid((p.x - outline.origin.x) * scale),
                               onGrid((p.y - outline.origin.y) * scale)});
        }
        closeRing(points);
        appendSegments(points, outline.segments);
    }
    settle(outline);
    return outline;
}

}  // namespace mezalith::detail
