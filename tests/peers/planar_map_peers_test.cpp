// SPDX-License-Identifier: MIT
#include "mezalith/geometry/test_support.hpp"
#include "tests/peers/geos_peer.hpp"
#include "tests/peers/maps.hpp"
#include <mezalith/geometry/area.hpp>
#include <mezalith/geometry/point_location.hpp>
#include <mezalith/geometry/record_bounds.hpp>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <random>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Random = std::mt19937_64;

std::vector<test::Rings> membersOf(const MzMultiPolygon& polygons) {
    std::vector<test::Rings> members;
    for (const MzPolygon& member : polygonsOf(&polygons)) {
        members.push_back(test::ringsOfRecord(member));
    }
    return members;
}

/// A corner, the middle of a side, or anywhere about a member.
MzPoint pointOf(Random& random, const MzMultiPolygon& polygons) {
    const MzPolygon& member = polygons.polygons[random() % polygons.count];
    const auto points = pointsOf(&member.rings[random() % member.count]);
    const std::size_t i = random() % (points.size() - 1);
    const MzPoint a = points[i], b = points[i + 1];
    const MzRect box = *MzBoundsOfRings(ringsOf(&member));
    const auto within = [&](double low, double size) {
        return std::uniform_real_distribution<double>(low - 0.1 * size, low + 1.1 * size)(random);
    };
    switch (random() % 4) {
        case 0:
            return a;
        case 1:
            return {(a.x + b.x) / 2, (a.y + b.y) / 2};
        default:
            return {within(box.origin.x, box.size.width), within(box.origin.y, box.size.height)};
    }
}

/// By the file that they are in.
class AreasOfMaps : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(AreasOfMaps, HavePointsWhereGeosSaysToo) {
    constexpr int kPoints = 200;
    Random random(20261126);
    int multiPolygons = 0, inside = 0, onBorder = 0;
    test::forEachMultiPolygon(GetParam(), [&](const MzMultiPolygon& polygons) {
        test::GeosGeometry geometry = test::geosMultiPolygon(membersOf(polygons));
        ++multiPolygons;
        if (!test::isValidToGeos(geometry)) return;
        const test::PreparedGeosArea peer(std::move(geometry));
        for (int i = 0; i < kPoints; ++i) {
            const MzPoint point = pointOf(random, polygons);
            const MzPointLocation location = MzLocatePoint(&polygons, point);
            ASSERT_EQ(location, test::locationByGeos(peer, point))
                << "multi-polygon " << multiPolygons << " at " << point.x << ' ' << point.y;
            onBorder += location == MzPointLocation::OnBorder ? 1 : 0;
            inside += location == MzPointLocation::Inside ? 1 : 0;
        }
    });
    EXPECT_GE(multiPolygons, 4);
    EXPECT_GT(inside, multiPolygons * kPoints / 20);
    EXPECT_GT(onBorder, multiPolygons * kPoints / 5);
}

TEST_P(AreasOfMaps, AreAsLargeAsGeosSays) {
    test::forEachMultiPolygon(GetParam(), [&](const MzMultiPolygon& polygons) {
        const double area = test::areaByGeos(test::geosMultiPolygon(membersOf(polygons)));
        EXPECT_GT(area, 0);
        EXPECT_NEAR(MzArea(&polygons), area, 1e-12 * area);
    });
    test::forEachPolygon(GetParam(), [&](const MzPolygon& polygon) {
        const double area = test::areaByGeos(test::geosPolygon(test::ringsOfRecord(polygon)));
        EXPECT_GT(area, 0);
        EXPECT_NEAR(MzArea(&polygon), area, 1e-12 * area);
    });
}

TEST_P(AreasOfMaps, HaveRingsThatRunAsGeosSays) {
    test::forEachPolygon(GetParam(), [&](const MzPolygon& polygon) {
        for (const MzLinearRing& ring : ringsOf(&polygon)) {
            const auto points = pointsOf(&ring);
            EXPECT_EQ(MzRingOrientation(&ring), test::isCounterclockwiseToGeos(points) ? 1 : -1);
            test::Points turned(points.rbegin(), points.rend());
            const auto record = test::recordOf<MzLinearRing>(turned);
            EXPECT_EQ(MzRingOrientation(&record), test::isCounterclockwiseToGeos(turned) ? 1 : -1);
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Maps, AreasOfMaps,
                         testing::ValuesIn(test::mapSources(MEZALITH_SOURCE_DIR)), test::nameOfMap);

}  // namespace
}  // namespace mezalith
