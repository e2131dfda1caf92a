// SPDX-License-Identifier: MIT
#pragma once

#include "mezalith/geometry/test_support.hpp"
#include <mezalith/medialaxis/grid_outline.hpp>
#include <mezalith/platform/log.hpp>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// What the tests of medial axes share: rings, distances by brute force, the lines of the log.

namespace mezalith::test {

/// Collects the log's lines while it lives.
class LogLines {
  public:
    LogLines()
        : before_(
              platform::setLogSink([this](std::string_view line) { lines_.emplace_back(line); })) {}
    ~LogLines() { platform::setLogSink(std::move(before_)); }
    LogLines(const LogLines&) = delete;
    LogLines& operator=(const LogLines&) = delete;

    const std::vector<std::string>& lines() const { return lines_; }

  private:
    std::vector<std::string> lines_;
    platform::LogSink before_;
};

using Random = std::mt19937_64;

inline double uniform(Random& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

inline Points reversed(Points points) {
    std::ranges::reverse(points);
    return points;
}

/// Without holes in its outline: `count` corners at even angles around the origin,
/// counter-clockwise and closed, their distance from it between `least` and 1.
inline Points starRing(Random& random, int count, double least) {
    Points points;
    for (int i = 0; i < count; ++i) {
        const double angle = 2 * std::numbers::pi * i / count;
        const double radius = uniform(random, least, 1);
        points.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    points.push_back(points.front());
    return points;
}

/// Corners on a circle around the origin, counter-clockwise and closed.
inline Points convexRing(Random& random, int count) {
    std::vector<double> angles;
    for (int i = 0; i < count; ++i) {
        angles.push_back(2 * std::numbers::pi * (i + uniform(random, 0, 0.9)) / count);
    }
    Points points;
    for (const double angle : angles) points.push_back({std::cos(angle), std::sin(angle)});
    points.push_back(points.front());
    return points;
}

/// `points` enlarged and moved.
inline Points placed(Points points, double scale, MzPoint offset) {
    for (MzPoint& p : points) p = {p.x * scale + offset.x, p.y * scale + offset.y};
    return points;
}

inline double distanceToSegment(MzPoint p, MzPoint a, MzPoint b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double square = dx * dx + dy * dy;
    const double along = (p.x - a.x) * dx + (p.y - a.y) * dy;
    const double share = square > 0 ? std::clamp(along / square, 0.0, 1.0) : 0.0;
    return std::hypot(p.x - a.x - dx * share, p.y - a.y - dy * share);
}

/// `teeth` thin teeth on a bar, counter-clockwise and closed.
inline Points combRing(int teeth, double depth) {
    Points points{{0, -0.1}, {static_cast<double>(teeth), -0.1}};
    for (int i = teeth; i > 0; --i) {
        points.push_back({i + 0.0, depth});
        points.push_back({i - 0.4, depth});
        points.push_back({i - 0.5, 0.1});
        points.push_back({i - 0.9, 0.1});
    }
    points.push_back(points.front());
    return points;
}

/// A band wound round the origin, counter-clockwise and closed.
inline Points spiralRing(int count) {
    Points inner;
    Points outer;
    for (int i = 0; i < count; ++i) {
        const double angle = 0.4 * i;
        const double radius = 0.3 + angle / 10;
        inner.push_back({radius * std::cos(angle), radius * std::sin(angle)});
        outer.push_back({(radius + 0.3) * std::cos(angle), (radius + 0.3) * std::sin(angle)});
    }
    Points points = outer;
    points.insert(points.end(), inner.rbegin(), inner.rend());
    points.push_back(points.front());
    return points;
}

/// Four arms of this width, counter-clockwise and closed.
inline Points plusRing(double width) {
    const double w = width / 2;
    return {{-w, -1}, {w, -1}, {w, -w}, {1, -w},  {1, w},   {w, w},  {w, 1},
            {-w, 1},  {-w, w}, {-1, w}, {-1, -w}, {-w, -w}, {-w, -1}};
}

/// To the nearest point of the ring.
inline double distanceToRing(MzPoint p, const Points& ring) {
    double least = std::hypot(p.x - ring.front().x, p.y - ring.front().y);
    for (std::size_t i = 0; i < ring.size(); ++i) {
        least = std::min(least, distanceToSegment(p, ring[i], ring[(i + 1) % ring.size()]));
    }
    return least;
}

inline double distanceToRings(MzPoint p, const Rings& rings) {
    double least = distanceToRing(p, rings.front());
    for (const Points& ring : rings) least = std::min(least, distanceToRing(p, ring));
    return least;
}

/// Inside an odd number of rings.
inline bool isInside(MzPoint p, const Rings& rings) {
    bool inside = false;
    for (const Points& ring : rings) {
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const MzPoint a = ring[i];
            const MzPoint b = ring[(i + 1) % ring.size()];
            if ((a.y > p.y) == (b.y > p.y)) continue;
            if (p.x < a.x + (b.x - a.x) * (p.y - a.y) / (b.y - a.y)) inside = !inside;
        }
    }
    return inside;
}

inline detail::GridOutline outlineOf(const Rings& rings) {
    OwnedPolygon owned(rings);
    const MzPolygon polygon = owned.record();
    return detail::gridOutlineOf(&polygon);
}

}  // namespace mezalith::test
