// SPDX-License-Identifier: MIT
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/test_support.hpp>

#include <limits>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

const MzRect kTen{{0, 0}, {10, 10}};

MzData data(const Bytes& bytes) { return std::make_shared<const Bytes>(bytes); }

std::shared_ptr<MzMultiPointGeometry> multiPoint(Points points) {
    return MzMultiPointGeometry::initWithMultiPoint(recordOf<MzMultiPoint>(points));
}

TEST(MultiPointGeometry, CopiesTheRecordItIsMadeFrom) {
    Points points{{1, 2}, {3, 4}};
    const auto record = recordOf<MzMultiPoint>(points);
    const std::vector made{MzMultiPointGeometry::initWithMultiPoint(record),
                           MzMultiPointGeometry::initWithMultiPointPtr(&record),
                           MzMultiPointGeometry::geometryWithMultiPoint(record),
                           MzMultiPointGeometry::geometryWithMultiPointPtr(&record)};
    points[0] = {9, 9};
    for (const auto& geometry : made) {
        EXPECT_TRUE(sameBits(pointsOf(geometry->multiPointGeometry()), Points{{1, 2}, {3, 4}}));
        EXPECT_EQ(geometry->geometryData().size(), 48u);
        EXPECT_EQ(geometry->geometryType(), 4u);
        EXPECT_EQ(geometry->dimension(), 0);
    }
    EXPECT_EQ(MzMultiPointGeometry::initWithMultiPointPtr(nullptr), nullptr);
    EXPECT_EQ(MzMultiPointGeometry::geometryWithMultiPointPtr(nullptr), nullptr);
}

TEST(MultiPointGeometry, PutsItsArrayBehindTheHeader) {
    const auto geometry = MzMultiPointGeometry::initWithCapacity(16 + 3 * 16);
    const MzMultiPoint* record = geometry->multiPointGeometry();
    EXPECT_EQ(geometry->geometryData().size(), 64u);
    EXPECT_EQ(reinterpret_cast<const std::byte*>(record), geometry->geometryData().data());
    EXPECT_EQ(reinterpret_cast<const std::byte*>(record->points),
              geometry->geometryData().data() + 16);
    EXPECT_EQ(record->count, 0u);
    EXPECT_EQ(MzMultiPointGeometry::initWithCapacity(0)->geometryData().size(), 16u);
}

TEST(MultiPointGeometry, IsMadeFromItsWKBOnly) {
    const auto wkb = WkbWriter().multi(kLittle, 4, 2).point(kBig, {1, 2}).point(kOdd, {3, 4});
    const auto geometry = MzMultiPointGeometry::initWithWKBData(data(wkb.bytes()));
    ASSERT_NE(geometry, nullptr);
    EXPECT_TRUE(sameBits(pointsOf(geometry->multiPointGeometry()), Points{{1, 2}, {3, 4}}));
    EXPECT_EQ(MzMultiPointGeometry::initWithWKBData(data(WkbWriter().point(kBig, {}).bytes())),
              nullptr);
}

TEST(MultiPointGeometry, EncodesTwoPointsAs51Bytes) {
    const auto geometry = multiPoint({{1, 2}, {3, 4}});
    const MzData wkb = geometry->wkbData();
    ASSERT_NE(wkb, nullptr);
    EXPECT_EQ(wkb->size(), 51u);
    const auto expected =
        WkbWriter().multi(kLittle, 4, 2).point(kLittle, {1, 2}).point(kLittle, {3, 4});
    EXPECT_EQ(*wkb, expected.bytes());
    EXPECT_EQ(geometry->wkbData(), wkb);
    EXPECT_EQ(geometry->asBinary(), wkb);
}

TEST(MultiPointGeometry, HasOneLeafAroundItsPoints) {
    const auto geometry = multiPoint({{1, 7}, {-3, 4}, {0, 5}});
    ASSERT_EQ(geometry->leafNodes().size(), 1u);
    EXPECT_TRUE(MzEqualRects(geometry->leafNodes()[0]->bounds(), {{-3, 4}, {4, 3}}));
    EXPECT_EQ(geometry->leafNodes()[0]->object(), geometry.get());
    EXPECT_TRUE(multiPoint({})->leafNodes().empty());
}

TEST(MultiPointGeometry, TakesANullArrayAsEmpty) {
    const auto geometry = MzMultiPointGeometry::initWithMultiPoint({4000000000u, nullptr});
    EXPECT_EQ(geometry->multiPointGeometry()->count, 0u);
    EXPECT_EQ(geometry->geometryData().size(), 16u);
    EXPECT_EQ(geometry->wkbData()->size(), 9u);
}

TEST(MultiPointGeometry, TakesAnArrayTakenAwayAsEmpty) {
    const MzClippingRegion region = doublingRegion(kTen);
    const auto geometry = multiPoint({{1, 2}, {3, 4}});
    *geometry->multiPointGeometry() = {4000000000u, nullptr};
    EXPECT_TRUE(geometry->leafNodes().empty());
    EXPECT_EQ(geometry->clippedMultiPointWithRegion(&region)->count, 0u);
    EXPECT_EQ(geometry->clippedLineStringWithRegion(&region)->count, 0u);
    const auto plain = MzMapProjection::mapProjectionWithPlateCarree();
    const auto projected =
        std::dynamic_pointer_cast<MzMultiPointGeometry>(geometry->geometryWithProjection(plain));
    EXPECT_EQ(projected->multiPointGeometry()->count, 0u);
}

TEST(MultiPointGeometry, LooksForLeavesAgainWhereThereWereNone) {
    const auto geometry = MzMultiPointGeometry::initWithCapacity(sizeof(MzMultiPoint) + 16);
    EXPECT_TRUE(geometry->leafNodes().empty());
    MzMultiPoint* const record = geometry->multiPointGeometry();
    record->count = 1;
    record->points[0] = {5, 6};
    ASSERT_EQ(geometry->leafNodes().size(), 1u);
    EXPECT_TRUE(MzEqualRects(geometry->leafNodes()[0]->bounds(), {{5, 6}, {0, 0}}));
}

TEST(MultiPointGeometry, HasNoEncodingUntilItIsGivenSomething) {
    MzMultiPointGeometry geometry;
    EXPECT_EQ(geometry.wkbData(), nullptr);
    geometry.setMultiPointGeometry({0, nullptr});
    EXPECT_EQ(geometry.wkbData()->size(), 9u);
}

TEST(MultiPointGeometry, ForgetsWhatItDerivedWhenSet) {
    const MzClippingRegion region = doublingRegion(kTen);
    const auto geometry = multiPoint({{1, 2}, {3, 4}});
    const MzData wkb = geometry->wkbData();
    geometry->leafNodes();
    const MzMultiPoint* points = geometry->clippedMultiPointWithRegion(&region);
    const MzLineString* line = geometry->clippedLineStringWithRegion(&region);
    EXPECT_EQ(points->count, 2u);
    EXPECT_EQ(line->count, 2u);
    Points other{{5, 6}};
    geometry->setMultiPointGeometry(recordOf<MzMultiPoint>(other));
    EXPECT_EQ(points->count, 0u);
    EXPECT_EQ(points->points, nullptr);
    EXPECT_EQ(line->count, 0u);
    EXPECT_EQ(line->points, nullptr);
    EXPECT_NE(geometry->wkbData(), wkb);
    EXPECT_EQ(geometry->wkbData()->size(), 30u);
    EXPECT_EQ(geometry->leafNodes()[0]->bounds().origin.x, 5);
}

TEST(MultiPointGeometry, CanBeSetFromItsOwnRecord) {
    const auto geometry = multiPoint({{1, 2}, {3, 4}, {5, 6}});
    const MzMultiPoint* own = geometry->multiPointGeometry();
    geometry->setMultiPointGeometry({2, own->points + 1});
    EXPECT_TRUE(sameBits(pointsOf(geometry->multiPointGeometry()), Points{{3, 4}, {5, 6}}));
}

TEST(MultiPointGeometry, IsProjectedOncePerProjectionObject) {
    const Points points{{10.75, 59.91}, {5.32, 60.39}, {18.95, 69.65}};
    const auto utm = MzMapProjection::mapProjectionWithUTMZone(33);
    const auto geometry = multiPoint(points);
    const auto projected =
        std::dynamic_pointer_cast<MzMultiPointGeometry>(geometry->geometryWithProjection(utm));
    ASSERT_NE(projected, nullptr);
    ASSERT_EQ(projected->multiPointGeometry()->count, 3u);
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_TRUE(MzEqualPoints(projected->multiPointGeometry()->points[i],
                                  utm->projectedCoordinateForLongitudeLatitude(points[i])));
    }
    EXPECT_TRUE(sameBits(pointsOf(geometry->multiPointGeometry()), points));
    EXPECT_EQ(geometry->geometryWithProjection(utm), projected);
    geometry->setMultiPointGeometry({0, nullptr});
    EXPECT_EQ(geometry->geometryWithProjection(utm), projected);
    EXPECT_EQ(geometry->geometryWithProjection(nullptr), nullptr);
}

TEST(MultiPointGeometry, IsClippedAsPointsAndAsALineIndependently) {
    const MzClippingRegion region = doublingRegion(kTen);
    const auto geometry = multiPoint({{5, 5}, {15, 5}, {6, 5}});
    const MzMultiPoint* points = geometry->clippedMultiPointWithRegion(&region);
    const MzLineString* line = geometry->clippedLineStringWithRegion(&region);
    EXPECT_TRUE(sameBits(pointsOf(points), Points{{10, 10}, {12, 10}}));
    EXPECT_TRUE(sameBits(pointsOf(line), Points{{10, 10}, {20, 10}, {20, 10}, {12, 10}}));
}

TEST(MultiPointGeometry, KeepsTheMemoryOfClippedRecords) {
    const MzClippingRegion region = doublingRegion(kTen);
    const auto geometry = multiPoint({{5, 5}, {15, 5}, {6, 5}});
    const MzPoint* points = geometry->clippedMultiPointWithRegion(&region)->points;
    const MzPoint* line = geometry->clippedLineStringWithRegion(&region)->points;
    EXPECT_EQ(geometry->clippedMultiPointWithRegion(&region)->points, points);
    EXPECT_EQ(geometry->clippedLineStringWithRegion(&region)->points, line);
    EXPECT_EQ(geometry->clippedMultiPointWithRegion(nullptr)->count, 0u);
    EXPECT_EQ(geometry->clippedLineStringWithRegion(nullptr)->count, 0u);
}

TEST(MultiPointGeometry, HasRoomForLinesThatGrowWhenClipped) {
    Points zigzag;
    for (int i = 0; i < 200; ++i) zigzag.push_back({i % 2 == 0 ? -5.0 : 15.0, 1 + i * 0.01});
    zigzag.push_back({std::numeric_limits<double>::quiet_NaN(), 0});
    const MzClippingRegion region = doublingRegion(kTen);
    const auto geometry = multiPoint(zigzag);
    EXPECT_GE(geometry->clippedLineStringWithRegion(&region)->count, 2u * 199);
}

TEST(MultiPointGeometry, FindsRoomForACountRaisedByItsUser) {
    const MzClippingRegion region = doublingRegion(kTen);
    const auto geometry = MzMultiPointGeometry::initWithCapacity(16 + 1000 * 16);
    EXPECT_EQ(geometry->clippedMultiPointWithRegion(&region)->count, 0u);
    geometry->multiPointGeometry()->count = 1000;
    EXPECT_EQ(geometry->clippedMultiPointWithRegion(&region)->count, 1000u);
    EXPECT_EQ(geometry->clippedLineStringWithRegion(&region)->count, 1000u);
}

}  // namespace
}  // namespace mezalith
