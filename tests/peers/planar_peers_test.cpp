// SPDX-License-Identifier: MIT
#include "mezalith/geometry/test_support.hpp"
#include "tests/peers/geos_peer.hpp"
#include "tests/peers/stars.hpp"
#include <mezalith/geometry/area.hpp>
#include <mezalith/geometry/point_location.hpp>

#include <algorithm>
#include <utility>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using test::pointNear;
using test::Random;
using test::star;
using test::stars;
using test::starWithHole;
using test::uniform;

// 10^6 points, half of them on a grid with the corners.
TEST(PlanarPeers, PointsLieWhereGeosSaysToo) {
    Random random(20261121);
    int onBorder = 0, inside = 0;
    for (int i = 0; i < 1000; ++i) {
        const bool grid = i % 2 == 0;
        const test::Rings rings = starWithHole(random, grid);
        test::OwnedPolygon owned(rings);
        const MzPolygon polygon = owned.record();
        const test::PreparedGeosArea peer(test::geosPolygon(rings));
        for (int j = 0; j < 1000; ++j) {
            const MzPoint point = pointNear(random, grid);
            const MzPointLocation location = MzLocatePoint(&polygon, point);
            ASSERT_EQ(location, test::locationByGeos(peer, point))
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
        const double area = test::areaByGeos(test::geosPolygon(rings));
        ASSERT_NEAR(MzArea(&polygon), area, 1e-12 * area) << "polygon " << i;
    }
}

// Stars side by side and one in another's hole; half the points on a grid with the corners.
TEST(PlanarPeers, PointsLieInMultiPolygonsWhereGeosSaysToo) {
    Random random(20261127);
    int onBorder = 0, inside = 0;
    for (int i = 0; i < 300; ++i) {
        const bool grid = i % 2 == 0;
        const auto members = stars(random, grid);
        test::OwnedMultiPolygon owned(members);
        const MzMultiPolygon polygons = owned.record();
        test::GeosGeometry geometry = test::geosMultiPolygon(members);
        ASSERT_TRUE(test::isValidToGeos(geometry)) << "multi-polygon " << i;
        const test::PreparedGeosArea peer(std::move(geometry));
        for (int j = 0; j < 1000; ++j) {
            const MzPoint point = test::pointAmongStars(random, grid);
            const MzPointLocation location = MzLocatePoint(&polygons, point);
            ASSERT_EQ(location, test::locationByGeos(peer, point))
                << "multi-polygon " << i << " at " << point.x << ' ' << point.y;
            onBorder += location == MzPointLocation::OnBorder ? 1 : 0;
            inside += location == MzPointLocation::Inside ? 1 : 0;
        }
    }
    EXPECT_GT(onBorder, 200);
    EXPECT_GT(inside, 50'000);
}

TEST(PlanarPeers, AreasOfMultiPolygonsAreThoseOfGeos) {
    Random random(20261128);
    for (int i = 0; i < 5000; ++i) {
        const auto members = stars(random, i % 2 == 0);
        test::OwnedMultiPolygon owned(members);
        const MzMultiPolygon polygons = owned.record();
        const double area = test::areaByGeos(test::geosMultiPolygon(members));
        ASSERT_NEAR(MzArea(&polygons), area, 1e-12 * area) << "multi-polygon " << i;
    }
}

/// Of 1 for counter-clockwise; GEOS says NO of what has no inside, too.
void expectOrientationOfGeos(test::Points points) {
    const auto ring = test::recordOf<MzLinearRing>(points);
    ASSERT_EQ(MzRingOrientation(&ring) == 1, test::isCounterclockwiseToGeos(points))
        << points[0].x << ' ' << points[0].y << ' ' << points[1].x << ' ' << points[1].y;
}

TEST(PlanarPeers, RingsRunAsGeosSays) {
    Random random(20261129);
    for (int i = 0; i < 10'000; ++i) {
        test::Points ring = star(random, 3 + i % 40, 4, 10, i % 2 == 0);
        expectOrientationOfGeos(ring);
        std::ranges::reverse(ring);
        expectOrientationOfGeos(ring);
    }
}

// Triangles whose third corner lies on a side but for rounding.
TEST(PlanarPeers, SliversRunAsGeosSays) {
    Random random(20261130);
    int flat = 0;
    for (int i = 0; i < 100'000; ++i) {
        const MzPoint a = pointNear(random, i % 2 == 0), b = pointNear(random, i % 2 == 0);
        const double share = uniform(random, 0, 1);
        const MzPoint c{a.x + share * (b.x - a.x), a.y + share * (b.y - a.y)};
        test::Points sliver{a, b, c, a};
        expectOrientationOfGeos(sliver);
        const auto ring = test::recordOf<MzLinearRing>(sliver);
        flat += MzRingOrientation(&ring) == 0 ? 1 : 0;
    }
    EXPECT_LT(flat, 20'000);
}

}  // namespace
}  // namespace mezalith
