// SPDX-License-Identifier: MIT
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/test_support.hpp>

#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

using Members = std::vector<Rings>;

const MzRect kTen{{0, 0}, {10, 10}};
const Members kThreeMembers{{square(0, 0, 4), square(1, 1, 2)}, {}, {square(6, 6, 2)}};

MzData data(const Bytes& bytes) { return std::make_shared<const Bytes>(bytes); }

std::shared_ptr<MzMultiPolygonGeometry> multiPolygon(const Members& members) {
    return MzMultiPolygonGeometry::initWithMultiPolygon(OwnedMultiPolygon(members).record());
}

bool contains(const Members& members, MzPoint point) {
    return multiPolygon(members)->contains(MzPointGeometry::initWithPoint(point).get());
}

void expectMembers(const MzMultiPolygon* record, const Members& expected) {
    ASSERT_EQ(record->count, expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const MzPolygon& polygon = record->polygons[i];
        ASSERT_EQ(polygon.count, expected[i].size()) << "member " << i;
        for (std::size_t k = 0; k < expected[i].size(); ++k) {
            EXPECT_TRUE(sameBits(pointsOf(&polygon.rings[k]), expected[i][k]))
                << "member " << i << " ring " << k;
        }
    }
}

TEST(MultiPolygonGeometry, CopiesTheRecordItIsMadeFrom) {
    OwnedMultiPolygon owned(kThreeMembers);
    const MzMultiPolygon record = owned.record();
    const std::vector made{MzMultiPolygonGeometry::initWithMultiPolygon(record),
                           MzMultiPolygonGeometry::initWithMultiPolygonPtr(&record),
                           MzMultiPolygonGeometry::geometryWithMultiPolygon(record)};
    owned.polygons()[0].rings[0].points[0] = {9, 9};
    for (const auto& geometry : made) {
        expectMembers(geometry->multiPolygonGeometry(), kThreeMembers);
        EXPECT_EQ(geometry->geometryData().size(), sizeOfMzMultiPolygon(&record));
        EXPECT_EQ(geometry->geometryType(), 6u);
        EXPECT_EQ(geometry->dimension(), 2);
    }
    EXPECT_EQ(MzMultiPolygonGeometry::initWithMultiPolygonPtr(nullptr), nullptr);
}

TEST(MultiPolygonGeometry, BeginsWithoutMembers) {
    EXPECT_EQ(MzMultiPolygonGeometry().multiPolygonGeometry()->count, 0u);
    const auto geometry = MzMultiPolygonGeometry::initWithCapacity(64);
    EXPECT_EQ(geometry->geometryData().size(), 64u);
    EXPECT_EQ(geometry->multiPolygonGeometry()->count, 0u);
}

TEST(MultiPolygonGeometry, HoldsTheCoordinatesOfItsWKB) {
    WkbWriter wkb;
    wkb.multi(kBig, 6, 3).polygon(kLittle, kThreeMembers[0]).polygon(kBig, kThreeMembers[1]);
    wkb.polygon(kOdd, kThreeMembers[2]);
    const auto bytes = data(wkb.bytes());
    const auto geometry = MzMultiPolygonGeometry::initWithWKBData(bytes);
    ASSERT_NE(geometry, nullptr);
    expectMembers(geometry->multiPolygonGeometry(), kThreeMembers);
    EXPECT_EQ(geometry->wkbData(), bytes);
    EXPECT_EQ(MzMultiPolygonGeometry::initWithWKBData(data(WkbWriter().polygon(1, {}).bytes())),
              nullptr);
}

TEST(MultiPolygonGeometry, EncodesTheCountedBytes) {
    const auto geometry = multiPolygon({{square(0, 0, 1), square(2, 2, 1)}, {square(5, 5, 1)}});
    const MzData wkb = geometry->wkbData();
    ASSERT_NE(wkb, nullptr);
    EXPECT_EQ(wkb->size(), 9u + 2 * (9 + 8));
    const Bytes head(wkb->begin(), wkb->begin() + 22);
    EXPECT_EQ(head, bytesOf({1, 6, 0, 0, 0, 2, 0, 0, 0, 1, 3, 0, 0, 0, 2, 0, 0, 0, 5, 0, 0, 0}));
    EXPECT_EQ(geometry->wkbData(), wkb);
}

TEST(MultiPolygonGeometry, HasALeafForEachMemberWithPoints) {
    const auto geometry = multiPolygon({{square(0, 0, 4), square(3, 3, 5)}, {}, {square(6, 6, 2)}});
    ASSERT_EQ(geometry->leafNodes().size(), 2u);
    EXPECT_TRUE(MzEqualRects(geometry->leafNodes()[0]->bounds(), {{0, 0}, {8, 8}}));
    EXPECT_TRUE(MzEqualRects(geometry->leafNodes()[1]->bounds(), {{6, 6}, {2, 2}}));
    EXPECT_EQ(geometry->leafNodes()[1]->object(), geometry.get());
    EXPECT_TRUE(multiPolygon({})->leafNodes().empty());
    EXPECT_TRUE(multiPolygon({{{}}})->leafNodes().empty());
}

TEST(MultiPolygonGeometry, IsCulledByItsLeaves) {
    const auto geometry = multiPolygon(kThreeMembers);
    EXPECT_TRUE(geometry->mbrInsertsectsRect({{3, 3}, {0.5, 0.5}}));
    EXPECT_TRUE(geometry->mbrInsertsectsRect({{7, 7}, {0.5, 0.5}}));
    EXPECT_FALSE(geometry->mbrInsertsectsRect({{4.5, 4.5}, {1, 1}}));
}

TEST(MultiPolygonGeometry, ContainsPointsOfAnyMember) {
    EXPECT_TRUE(contains(kThreeMembers, {2, 2}));
    EXPECT_TRUE(contains(kThreeMembers, {7, 7}));
    EXPECT_FALSE(contains(kThreeMembers, {5, 5}));
    EXPECT_FALSE(contains({}, {0, 0}));
    EXPECT_TRUE(contains({{{{0, 0}, {1, 0}, {1, 4}, {0, 4}}}}, {0.5, 3}));
    // Within a leaf, but the crossings of the slanting edge say no.
    EXPECT_FALSE(contains({{{{0, 0}, {4, 0}, {0, 4}, {0, 0}}}}, {1, 2}));
    // The crossings say yes, but no half-open leaf holds the border.
    EXPECT_FALSE(contains({{square(0, 0, 1)}}, {0.5, 1}));
    EXPECT_TRUE(contains({{square(0, 0, 1)}, {square(0, 1, 1)}}, {0.5, 1}));
}

TEST(MultiPolygonGeometry, ContainsNothingButPoints) {
    const auto geometry = multiPolygon(kThreeMembers);
    EXPECT_FALSE(geometry->contains(geometry.get()));
    EXPECT_FALSE(geometry->contains(nullptr));
}

TEST(MultiPolygonGeometry, ForgetsWhatItDerivedWhenSet) {
    const MzClippingRegion region = doublingRegion(kTen);
    const auto geometry = multiPolygon(kThreeMembers);
    const MzData wkb = geometry->wkbData();
    geometry->leafNodes();
    const MzMultiPolygon* clipped = geometry->clippedMultiPolygonWithRegion(&region);
    EXPECT_EQ(clipped->count, 3u);
    OwnedMultiPolygon other({{square(5, 5, 2)}});
    geometry->setMultiPolygonGeometry(other.record());
    EXPECT_EQ(clipped->count, 0u);
    EXPECT_EQ(clipped->polygons, nullptr);
    EXPECT_NE(geometry->wkbData(), wkb);
    ASSERT_EQ(geometry->leafNodes().size(), 1u);
    EXPECT_EQ(geometry->leafNodes()[0]->bounds().origin.x, 5);
}

TEST(MultiPolygonGeometry, CanBeSetFromItsOwnRecord) {
    const auto geometry = multiPolygon(kThreeMembers);
    geometry->setMultiPolygonGeometry(*geometry->multiPolygonGeometry());
    expectMembers(geometry->multiPolygonGeometry(), kThreeMembers);
    geometry->setMultiPolygonGeometry({1, geometry->multiPolygonGeometry()->polygons + 2});
    expectMembers(geometry->multiPolygonGeometry(), {kThreeMembers[2]});
}

TEST(MultiPolygonGeometry, TakesNullArraysAsEmpty) {
    const MzClippingRegion region = doublingRegion(kTen);
    MzPolygon member{4000000000u, nullptr};
    const auto geometry = MzMultiPolygonGeometry::initWithMultiPolygon({1, &member});
    EXPECT_EQ(geometry->multiPolygonGeometry()->polygons[0].count, 0u);
    EXPECT_EQ(geometry->clippedMultiPolygonWithRegion(&region)->count, 1u);
    *geometry->multiPolygonGeometry() = {4000000000u, nullptr};
    EXPECT_TRUE(geometry->leafNodes().empty());
    EXPECT_EQ(geometry->clippedMultiPolygonWithRegion(&region)->count, 0u);
    EXPECT_EQ(geometry->wkbData()->size(), 9u);
}

TEST(MultiPolygonGeometry, IsProjectedOncePerProjectionObject) {
    const Members members{{{{10, 60}, {11, 60}, {11, 61}, {10, 60}}}, {{{12, 62}}, {{13, 63}}}};
    const auto utm = MzMapProjection::mapProjectionWithUTMZone(33);
    const auto geometry = multiPolygon(members);
    const auto projected =
        std::dynamic_pointer_cast<MzMultiPolygonGeometry>(geometry->geometryWithProjection(utm));
    ASSERT_NE(projected, nullptr);
    Members expected = members;
    for (Rings& rings : expected) {
        for (Points& ring : rings) {
            for (MzPoint& p : ring) p = utm->projectedCoordinateForLongitudeLatitude(p);
        }
    }
    expectMembers(projected->multiPolygonGeometry(), expected);
    expectMembers(geometry->multiPolygonGeometry(), members);
    EXPECT_EQ(geometry->geometryWithProjection(utm), projected);
    geometry->setMultiPolygonGeometry({0, nullptr});
    EXPECT_EQ(geometry->geometryWithProjection(utm), projected);
    EXPECT_EQ(geometry->geometryWithProjection(nullptr), nullptr);
}

TEST(MultiPolygonGeometry, KeepsEveryMemberAndRingWhenClipped) {
    const MzClippingRegion region = doublingRegion(kTen);
    const auto geometry =
        multiPolygon({{square(50, 50, 1), square(1, 1, 2)}, {}, {square(6, 6, 2)}});
    const MzMultiPolygon* clipped = geometry->clippedMultiPolygonWithRegion(&region);
    expectMembers(clipped, {{{}, square(2, 2, 4)}, {}, {square(12, 12, 4)}});
    const MzPolygon* polygons = clipped->polygons;
    const MzPoint* points = clipped->polygons[2].rings[0].points;
    geometry->clippedMultiPolygonWithRegion(&region);
    EXPECT_EQ(clipped->polygons, polygons);
    EXPECT_EQ(clipped->polygons[2].rings[0].points, points);
    expectMembers(geometry->clippedMultiPolygonWithRegion(nullptr), {{{}, {}}, {}, {{}}});
}

}  // namespace
}  // namespace mezalith
