// SPDX-License-Identifier: MIT
#include "mezalith/geometry/test_support.hpp"
#include "tests/peers/geos_peer.hpp"
#include "tests/peers/stars.hpp"
#include <mezalith/geometry/nearest_point.hpp>

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

// For each kind of geometry 2 10^4 points.

namespace mezalith {
namespace {

using test::GeosGeometry;
using test::pointNear;
using test::Random;
using test::stars;
using test::starWithHole;

constexpr int kGeometries = 1000;
constexpr int kPoints = 20;

/// The nearest points of the record are on the geometry and as far as GEOS says.
template <typename Record>
void expectNearestOfGeos(const Record& record, const GeosGeometry& peer, Random& random) {
    for (int i = 0; i < kPoints; ++i) {
        const MzPoint to = test::pointAmongStars(random, false);
        const auto nearest = MzNearestPointOf(&record, to);
        ASSERT_TRUE(nearest);
        ASSERT_NEAR(nearest->distance, test::distanceByGeos(peer, to), 1e-13)
            << to.x << ' ' << to.y;
        ASSERT_NEAR(std::hypot(nearest->point.x - to.x, nearest->point.y - to.y), nearest->distance,
                    1e-13);
        ASSERT_NEAR(test::distanceByGeos(peer, nearest->point), 0, 1e-13);
    }
}

TEST(NearestPeers, PolygonsAreAsFarAsGeosSays) {
    Random random(20261123);
    for (int i = 0; i < kGeometries; ++i) {
        const test::Rings rings = starWithHole(random, i % 2 == 0);
        test::OwnedPolygon owned(rings);
        expectNearestOfGeos(owned.record(), test::geosPolygon(rings), random);
    }
}

TEST(NearestPeers, MultiPolygonsAreAsFarAsGeosSays) {
    Random random(20261201);
    for (int i = 0; i < kGeometries; ++i) {
        const auto members = stars(random, i % 2 == 0);
        test::OwnedMultiPolygon owned(members);
        expectNearestOfGeos(owned.record(), test::geosMultiPolygon(members), random);
    }
}

/// A walk across the plane that may cross itself.
test::Points walk(Random& random) {
    test::Points points(2 + random() % 60);
    for (MzPoint& p : points) p = pointNear(random, random() % 2 == 0);
    return points;
}

TEST(NearestPeers, LinesAreAsFarAsGeosSays) {
    Random random(20261202);
    for (int i = 0; i < kGeometries; ++i) {
        test::Points points = walk(random);
        expectNearestOfGeos(test::recordOf<MzLineString>(points), test::geosLine(points), random);
    }
}

TEST(NearestPeers, MultiLinesAreAsFarAsGeosSays) {
    Random random(20261203);
    for (int i = 0; i < kGeometries; ++i) {
        test::Rings lines{walk(random), walk(random), walk(random)};
        std::vector<MzLineString> records;
        for (test::Points& line : lines) records.push_back(test::recordOf<MzLineString>(line));
        const MzMultiLineString record{3, records.data()};
        const GeosGeometry peer = test::geosMulti(GEOS_MULTILINESTRING, lines, test::geosLine);
        expectNearestOfGeos(record, peer, random);
    }
}

TEST(NearestPeers, MultiPointsAreAsFarAsGeosSays) {
    Random random(20261204);
    for (int i = 0; i < kGeometries; ++i) {
        test::Points points = walk(random);
        const GeosGeometry peer = test::geosMulti(GEOS_MULTIPOINT, points, test::geosPoint);
        expectNearestOfGeos(test::recordOf<MzMultiPoint>(points), peer, random);
    }
}

}  // namespace
}  // namespace mezalith
