// SPDX-License-Identifier: MIT
#include "mezalith/geometry/test_support.hpp"
#include "tests/peers/geos_peer.hpp"
#include <mezalith/geometry/area.hpp>
#include <mezalith/geometry/nearest_point.hpp>
#include <mezalith/geometry/point_location.hpp>

#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Random = std::mt19937_64;

double uniform(Random& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

/// A star around the origin; with `grid`, its corners are whole multiples of 1/8, so that points of
/// that grid meet its corners and sides.
test::Points star(Random& random, int corners, double least, double most, bool grid) {
    test::Points points;
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

test::Rings starWithHole(Random& random, bool grid) {
    const int corners = 5 + static_cast<int>(random() % 60);
    return {star(random, corners, 4, 10, grid), star(random, corners, 1, 3, grid)};
}

MzPoint pointNear(Random& random, bool grid) {
    const MzPoint point{uniform(random, -10, 10), uniform(random, -10, 10)};
    if (!grid) return point;
    return {std::round(point.x * 8) / 8, std::round(point.y * 8) / 8};
}

MzPointLocation locationByGeos(const test::PreparedGeosPolygon& polygon, MzPoint point) {
    if (polygon.contains(point)) return MzPointLocation::Inside;
    return polygon.intersects(point) ? MzPointLocation::OnBorder : MzPointLocation::Outside;
}

// 10^6 points, half of them on a grid with the corners.
TEST(PlanarPeers, PointsLieWhereGeosSaysToo) {
    Random random(20261121);
    int onBorder = 0, inside = 0;
    for (int i = 0; i < 1000; ++i) {
        const bool grid = i % 2 == 0;
        const test::Rings rings = starWithHole(random, grid);
        test::OwnedPolygon owned(rings);
        const MzPolygon polygon = owned.record();
        const test::PreparedGeosPolygon peer(rings);
        for (int j = 0; j < 1000; ++j) {
            const MzPoint point = pointNear(random, grid);
            const MzPointLocation location = MzLocatePoint(&polygon, point);
            ASSERT_EQ(location, locationByGeos(peer, point))
                << "polygon " << i << " at " << point.x << ' ' << point.y;
            onBorder += location == MzPointLocation::OnBorder ? 1 : 0;
            inside += location == MzPointLocation::Inside ? 1 : 0;
        }
    }
    EXPECT_GT(onBorder, 1000);
    EXPECT_GT(inside, 100000);
}

TEST(PlanarPeers, AreasAreThoseOfGeos) {
    Random random(20261122);
    for (int i = 0; i < 10000; ++i) {
        const test::Rings rings = starWithHole(random, false);
        test::OwnedPolygon owned(rings);
        const MzPolygon polygon = owned.record();
        const double area = test::GeosPolygon(rings).area();
        ASSERT_NEAR(MzArea(&polygon), area, 1e-12 * area) << "polygon " << i;
    }
}

TEST(PlanarPeers, NearestPointsAreAsFarAsGeosSays) {
    Random random(20261123);
    for (int i = 0; i < 500; ++i) {
        const test::Rings rings = starWithHole(random, i % 2 == 0);
        test::OwnedPolygon owned(rings);
        const MzPolygon polygon = owned.record();
        const test::GeosPolygon peer(rings);
        for (int j = 0; j < 20; ++j) {
            const MzPoint point = pointNear(random, false);
            const auto nearest = MzNearestPointOf(&polygon, point);
            ASSERT_TRUE(nearest);
            ASSERT_NEAR(nearest->distance, peer.distanceTo(point), 1e-13) << i << ' ' << j;
            ASSERT_NEAR(std::hypot(nearest->point.x - point.x, nearest->point.y - point.y),
                        nearest->distance, 1e-13);
        }
    }
}

}  // namespace
}  // namespace mezalith
