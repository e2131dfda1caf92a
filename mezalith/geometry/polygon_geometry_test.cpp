// SPDX-License-Identifier: MIT
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_functions.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/geometry/test_support.hpp>

#include <limits>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

const MzRect kTen{{0, 0}, {10, 10}};
const Rings kTwoRings{square(0, 0, 4), square(1, 1, 2)};

MzData data(const Bytes& bytes) { return std::make_shared<const Bytes>(bytes); }

std::shared_ptr<MzPolygonGeometry> polygon(const Rings& rings) {
    return MzPolygonGeometry::initWithPolygon(OwnedPolygon(rings).record());
}

bool contains(const Rings& rings, MzPoint point) {
    return polygon(rings)->contains(MzPointGeometry::initWithPoint(point).get());
}

void expectRings(const MzPolygon* record, const Rings& expected) {
    ASSERT_EQ(record->count, expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_TRUE(sameBits(pointsOf(&record->rings[i]), expected[i])) << "ring " << i;
    }
}

TEST(PolygonGeometry, CopiesTheRecordItIsMadeFrom) {
    OwnedPolygon owned(kTwoRings);
    const MzPolygon record = owned.record();
    const std::vector made{MzPolygonGeometry::initWithPolygon(record),
                           MzPolygonGeometry::initWithPolygonPtr(&record),
                           MzPolygonGeometry::geometryWithPolygon(record),
                           MzPolygonGeometry::geometryWithPolygonPtr(&record)};
    owned.rings()[0].points[0] = {9, 9};
    for (const auto& geometry : made) {
        expectRings(geometry->polygonGeometry(), kTwoRings);
        EXPECT_EQ(geometry->geometryData().size(), sizeOfMzPolygon(&record));
        EXPECT_EQ(geometry->geometryType(), 3u);
        EXPECT_EQ(geometry->dimension(), 2);
    }
    EXPECT_EQ(MzPolygonGeometry::initWithPolygonPtr(nullptr), nullptr);
    EXPECT_EQ(MzPolygonGeometry::geometryWithPolygonPtr(nullptr), nullptr);
}

TEST(PolygonGeometry, BeginsWithoutRings) {
    EXPECT_EQ(MzPolygonGeometry().polygonGeometry()->count, 0u);
    const auto geometry = MzPolygonGeometry::initWithCapacity(64);
    EXPECT_EQ(geometry->geometryData().size(), 64u);
    EXPECT_EQ(geometry->polygonGeometry()->count, 0u);
    EXPECT_EQ(geometry->polygonGeometry()->rings, nullptr);
}

TEST(PolygonGeometry, HoldsTheCoordinatesOfItsWKB) {
    for (const std::uint8_t order : {kBig, kLittle}) {
        const auto wkb = data(WkbWriter().polygon(order, kTwoRings).bytes());
        const auto geometry = MzPolygonGeometry::initWithWKBData(wkb);
        ASSERT_NE(geometry, nullptr);
        expectRings(geometry->polygonGeometry(), kTwoRings);
        EXPECT_EQ(geometry->wkbData(), wkb);
    }
    EXPECT_EQ(MzPolygonGeometry::initWithWKBData(data(WkbWriter().lineString(1, {}).bytes())),
              nullptr);
}

TEST(PolygonGeometry, HasNoEncodingWhenMadeInMemory) {
    EXPECT_EQ(polygon(kTwoRings)->wkbData(), nullptr);
}

TEST(PolygonGeometry, HasOneLeafAroundAllRings) {
    const auto geometry = polygon({square(0, 0, 4), square(3, 3, 5)});
    ASSERT_EQ(geometry->leafNodes().size(), 1u);
    EXPECT_TRUE(MzEqualRects(geometry->leafNodes()[0]->bounds(), {{0, 0}, {8, 8}}));
    EXPECT_EQ(geometry->leafNodes()[0]->object(), geometry.get());
    EXPECT_TRUE(polygon({})->leafNodes().empty());
    EXPECT_TRUE(polygon({{}})->leafNodes().empty());
    EXPECT_EQ(polygon({{}, square(1, 1, 1)})->leafNodes().size(), 1u);
}

TEST(PolygonGeometry, IsCulledByItsTransformedBoundsOnly) {
    const auto geometry = polygon({square(0, 0, 4)});
    const MzPolygonGeometry::TransformedBounds zeros{};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_TRUE(MzEqualPoints(geometry->transformedBounds()[i], zeros[i]));
    }
    EXPECT_FALSE(geometry->mbrInsertsectsRect({{1, 1}, {2, 2}}));
    EXPECT_TRUE(geometry->mbrInsertsectsRect({{-1, -1}, {2, 2}}));
    geometry->setTransformedBounds({{{10, 20}, {30, -99}, {-99, 40}, {-99, -99}}});
    EXPECT_TRUE(geometry->mbrInsertsectsRect({{29, 39}, {5, 5}}));
    EXPECT_TRUE(geometry->mbrInsertsectsRect({{5, 15}, {6, 6}}));
    EXPECT_FALSE(geometry->mbrInsertsectsRect({{5, 15}, {5, 6}}));
    EXPECT_FALSE(geometry->mbrInsertsectsRect({{30, 25}, {5, 5}}));
    EXPECT_FALSE(geometry->mbrInsertsectsRect({{15, 15}, {5, 5}}));
    EXPECT_FALSE(geometry->mbrInsertsectsRect({{15, 40}, {5, 5}}));
}

TEST(PolygonGeometry, ContainsPointsByLeavesThenByCrossings) {
    EXPECT_TRUE(contains({square(0, 0, 1)}, {0.5, 0.5}));
    EXPECT_FALSE(contains({square(0, 0, 1)}, {2, 0.5}));
    EXPECT_TRUE(contains({{{0, 0}, {1, 0}, {1, 4}, {0, 4}}}, {0.5, 3}));
    // On the upper border the crossings say yes, the half-open leaf no.
    OwnedPolygon owned({square(0, 0, 1)});
    const MzPolygon record = owned.record();
    EXPECT_TRUE(crossingTest(&record, 0.5, 1));
    EXPECT_FALSE(contains({square(0, 0, 1)}, {0.5, 1}));
    // Within the leaf, but the crossings of the slanting edge say no.
    EXPECT_FALSE(contains({{{0, 0}, {4, 0}, {0, 4}, {0, 0}}}, {1, 2}));
}

TEST(PolygonGeometry, ContainsNothingButPoints) {
    const auto geometry = polygon({square(0, 0, 4)});
    MzPoint point{2, 2};
    const auto points = MzMultiPointGeometry::initWithMultiPoint({1, &point});
    EXPECT_FALSE(geometry->contains(points.get()));
    EXPECT_FALSE(geometry->contains(geometry.get()));
    EXPECT_FALSE(geometry->contains(nullptr));
}

TEST(PolygonGeometry, HasTheCentroidOfItsGreatestRing) {
    Points clockwise = square(10, 10, 6);
    std::ranges::reverse(clockwise);
    const auto geometry = polygon({square(0, 0, 2), clockwise, square(50, 50, 1)});
    ASSERT_NE(geometry->centroid(), nullptr);
    EXPECT_EQ(geometry->centroid()->x, 13);
    EXPECT_EQ(geometry->centroid()->y, 13);
    EXPECT_EQ(geometry->centroid(), geometry->centroid());
}

TEST(PolygonGeometry, PrefersTheEarlierOfEqualRings) {
    EXPECT_EQ(polygon({square(0, 0, 2), square(10, 10, 2)})->centroid()->x, 1);
}

TEST(PolygonGeometry, HasNoCentroidWithoutAnArea) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(polygon({})->centroid(), nullptr);
    EXPECT_EQ(polygon({{{0, 0}, {1, 1}, {2, 2}, {0, 0}}})->centroid(), nullptr);
    EXPECT_EQ(polygon({{{0, nan}, {1, 1}, {2, 2}, {0, nan}}})->centroid(), nullptr);
    const Points invalid{{0, nan}, {1, 1}, {2, 2}, {0, nan}};
    EXPECT_EQ(polygon({invalid, square(0, 0, 2), invalid})->centroid()->x, 1);
}

TEST(PolygonGeometry, ForgetsWhatItDerivedWhenSet) {
    const MzClippingRegion region = doublingRegion(kTen);
    const auto geometry =
        MzPolygonGeometry::initWithWKBData(data(WkbWriter().polygon(kBig, kTwoRings).bytes()));
    geometry->leafNodes();
    EXPECT_EQ(geometry->centroid()->x, 2);
    const MzPolygon* clipped = geometry->clippedPolygonWithRegion(&region);
    EXPECT_EQ(clipped->count, 2u);
    OwnedPolygon other({square(5, 5, 2)});
    geometry->setPolygonGeometry(other.record());
    EXPECT_EQ(geometry->wkbData(), nullptr);
    EXPECT_EQ(geometry->leafNodes()[0]->bounds().origin.x, 5);
    EXPECT_EQ(geometry->centroid()->x, 6);
    EXPECT_EQ(clipped->count, 0u);
    EXPECT_EQ(clipped->rings, nullptr);
}

TEST(PolygonGeometry, CanBeSetFromItsOwnRecord) {
    const auto geometry = polygon({square(0, 0, 4), square(1, 1, 2), square(5, 5, 1)});
    geometry->setPolygonGeometry(*geometry->polygonGeometry());
    EXPECT_EQ(geometry->polygonGeometry()->count, 3u);
    geometry->setPolygonGeometry({2, geometry->polygonGeometry()->rings + 1});
    expectRings(geometry->polygonGeometry(), {square(1, 1, 2), square(5, 5, 1)});
}

TEST(PolygonGeometry, TakesNullArraysAsEmpty) {
    MzLinearRing ring{4000000000u, nullptr};
    const auto geometry = MzPolygonGeometry::initWithPolygon({1, &ring});
    EXPECT_EQ(geometry->polygonGeometry()->count, 1u);
    EXPECT_EQ(geometry->polygonGeometry()->rings[0].count, 0u);
    EXPECT_EQ(geometry->geometryData().size(), 32u);
    EXPECT_EQ(MzPolygonGeometry::initWithPolygon({9, nullptr})->polygonGeometry()->count, 0u);
}

TEST(PolygonGeometry, TakesArraysTakenAwayAsEmpty) {
    const MzClippingRegion region = doublingRegion(kTen);
    const auto geometry = polygon(kTwoRings);
    geometry->polygonGeometry()->rings[0] = {4000000000u, nullptr};
    EXPECT_EQ(geometry->clippedPolygonWithRegion(&region)->rings[0].count, 0u);
    EXPECT_TRUE(MzEqualRects(geometry->leafNodes()[0]->bounds(), {{1, 1}, {2, 2}}));
    geometry->polygonGeometry()->rings = nullptr;
    EXPECT_EQ(geometry->clippedPolygonWithRegion(&region)->count, 0u);
    EXPECT_EQ(geometry->centroid(), nullptr);
}

TEST(PolygonGeometry, IsProjectedRingByRing) {
    const Rings rings{{{10, 60}, {11, 60}, {11, 61}, {10, 60}}, {{10.2, 60.1}, {10.3, 60.2}}};
    const auto utm = MzMapProjection::mapProjectionWithUTMZone(33);
    const auto geometry = polygon(rings);
    const auto projected =
        std::dynamic_pointer_cast<MzPolygonGeometry>(geometry->geometryWithProjection(utm));
    ASSERT_NE(projected, nullptr);
    ASSERT_EQ(projected->polygonGeometry()->count, 2u);
    for (std::size_t ring = 0; ring < rings.size(); ++ring) {
        const auto points = pointsOf(&projected->polygonGeometry()->rings[ring]);
        ASSERT_EQ(points.size(), rings[ring].size());
        for (std::size_t i = 0; i < points.size(); ++i) {
            EXPECT_TRUE(MzEqualPoints(
                points[i], utm->projectedCoordinateForLongitudeLatitude(rings[ring][i])));
        }
    }
    expectRings(geometry->polygonGeometry(), rings);
    EXPECT_TRUE(geometry->projectedGeometries().empty());
    EXPECT_EQ(geometry->geometryWithProjection(nullptr), nullptr);
}

TEST(PolygonGeometry, SharesOneProjectedCopyAmongEqualSRIDs) {
    const auto utm = MzMapProjection::mapProjectionWithUTMZone(33);
    const auto geometry = polygon(kTwoRings);
    const auto projected = geometry->geometryWithProjection(utm);
    EXPECT_EQ(geometry->geometryWithProjection(MzMapProjection::mapProjectionWithUTMZone(33)),
              projected);
    const auto plain = MzMapProjection::mapProjectionWithPlateCarree();
    EXPECT_NE(geometry->geometryWithProjection(plain), projected);
    EXPECT_NE(geometry->geometryWithProjection(utm), projected);
}

TEST(PolygonGeometry, ProjectsAtFirstWhateverTheSRID) {
    const auto unnumbered = std::make_shared<MzMapProjection>();
    ASSERT_EQ(unnumbered->srid(), 0);
    EXPECT_NE(polygon(kTwoRings)->geometryWithProjection(unnumbered), nullptr);
}

TEST(PolygonGeometry, KeepsItsProjectedCopyWhenSet) {
    const auto plain = MzMapProjection::mapProjectionWithPlateCarree();
    const auto geometry = polygon(kTwoRings);
    const auto projected = geometry->geometryWithProjection(plain);
    geometry->setPolygonGeometry({0, nullptr});
    EXPECT_EQ(geometry->geometryWithProjection(plain), projected);
}

TEST(PolygonGeometry, KeepsEveryRingWhenClipped) {
    const MzClippingRegion region = doublingRegion(kTen);
    const auto geometry = polygon({square(1, 1, 4), square(50, 50, 1), square(2, 2, 1)});
    const MzPolygon* clipped = geometry->clippedPolygonWithRegion(&region);
    expectRings(clipped, {square(2, 2, 8), {}, square(4, 4, 2)});
    const MzLinearRing* rings = clipped->rings;
    EXPECT_EQ(geometry->clippedPolygonWithRegion(&region)->rings, rings);
    expectRings(geometry->clippedPolygonWithRegion(nullptr), {{}, {}, {}});
    EXPECT_EQ(polygon({})->clippedPolygonWithRegion(&region)->count, 0u);
}

}  // namespace
}  // namespace mezalith
