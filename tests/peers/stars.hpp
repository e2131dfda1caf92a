// SPDX-License-Identifier: MIT
#pragma once

#include "mezalith/geometry/test_support.hpp"

#include <array>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

// Stars, alone and several together, and points about them.

namespace mezalith::test {

using Random = std::mt19937_64;

inline double uniform(Random& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

/// A star around the origin; with `grid`, its corners are whole multiples of 1/8, so that points of
/// that grid meet its corners and sides.
inline Points star(Random& random, int corners, double least, double most, bool grid) {
    Points points;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * std::numbers::pi * i / corners;
        const double radius = uniform(random, least, most);
        MzPoint point{radius * std::cos(angle), radius * std::sin(angle)};
        if (grid) point = {std::round(point.x * 8) / 8, std::round(point.y * 8) / 8};
        points.push_back(point);
    }
    points.push_back(points.front());
    return points;
}

inline Rings starWithHole(Random& random, bool grid) {
    const int corners = 5 + static_cast<int>(random() % 60);
    return {star(random, corners, 4, 10, grid), star(random, corners, 1, 3, grid)};
}

inline MzPoint pointNear(Random& random, bool grid) {
    const MzPoint point{uniform(random, -10, 10), uniform(random, -10, 10)};
    if (!grid) return point;
    return {std::round(point.x * 8) / 8, std::round(point.y * 8) / 8};
}

inline Rings moved(Rings rings, MzPoint by) {
    for (Points& ring : rings) {
        for (MzPoint& p : ring) p = {p.x + by.x, p.y + by.y};
    }
    return rings;
}

/// Where the stars beside each other have their middles.
inline constexpr std::array<MzPoint, 3> kMiddles{{{0, 0}, {20, 0}, {0, -20}}};

/// Stars beside each other, the first with an island in its hole.
inline std::vector<Rings> stars(Random& random, bool grid) {
    std::vector<Rings> members{{star(random, 8, 0.4, 0.7, grid)}};
    for (const MzPoint middle : kMiddles) {
        const int corners = 5 + static_cast<int>(random() % 8);
        members.push_back(moved(
            {star(random, corners, 4, 9, grid), star(random, corners, 1.25, 3, grid)}, middle));
    }
    return members;
}

/// Near one of them.
inline MzPoint pointAmongStars(Random& random, bool grid) {
    const MzPoint middle = kMiddles[random() % kMiddles.size()];
    const MzPoint point = pointNear(random, grid);
    return {point.x + middle.x, point.y + middle.y};
}

}  // namespace mezalith::test
