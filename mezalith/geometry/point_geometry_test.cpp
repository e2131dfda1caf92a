// SPDX-License-Identifier: MIT
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/test_support.hpp>

#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

MzData data(const Bytes& bytes) { return std::make_shared<const Bytes>(bytes); }

TEST(PointGeometry, IsMadeFromAPoint) {
    const MzPoint point{3, 4};
    for (const auto& geometry :
         {MzPointGeometry::initWithPoint(point), MzPointGeometry::initWithNSPoint(point),
          MzPointGeometry::initWithPointPtr(&point), MzPointGeometry::geometryWithPoint(point),
          MzPointGeometry::geometryWithPointPtr(&point)}) {
        ASSERT_NE(geometry, nullptr);
        EXPECT_EQ(geometry->x(), 3);
        EXPECT_EQ(geometry->y(), 4);
        EXPECT_TRUE(MzEqualPoints(geometry->asNSPoint(), point));
        EXPECT_NE(geometry->pointGeometry(), &point);
        EXPECT_EQ(geometry->geometryData().size(), 16u);
        EXPECT_EQ(geometry->geometryType(), 1u);
        EXPECT_EQ(geometry->dimension(), 0);
    }
    EXPECT_EQ(MzPointGeometry::initWithPointPtr(nullptr), nullptr);
    EXPECT_EQ(MzPointGeometry::geometryWithPointPtr(nullptr), nullptr);
}

TEST(PointGeometry, BeginsAtTheOrigin) {
    EXPECT_EQ(MzPointGeometry().x(), 0);
    EXPECT_EQ(MzPointGeometry::initWithCapacity(0)->y(), 0);
    EXPECT_EQ(MzPointGeometry::initWithCapacity(0)->geometryData().size(), 16u);
    EXPECT_EQ(MzPointGeometry::initWithCapacity(100)->geometryData().size(), 100u);
}

TEST(PointGeometry, IsMadeFromItsWKBOnly) {
    const auto point =
        MzPointGeometry::initWithWKBData(data(WkbWriter().point(kBig, {3, 4}).bytes()));
    ASSERT_NE(point, nullptr);
    EXPECT_TRUE(MzEqualPoints(point->asNSPoint(), {3, 4}));
    EXPECT_EQ(MzPointGeometry::initWithWKBData(data(WkbWriter().multi(kBig, 4, 0).bytes())),
              nullptr);
    EXPECT_EQ(MzPointGeometry::initWithWKBData(nullptr), nullptr);
}

TEST(PointGeometry, HasOneLeafOfNoExtent) {
    const auto point = MzPointGeometry::initWithPoint({3, 4});
    ASSERT_EQ(point->leafNodes().size(), 1u);
    EXPECT_TRUE(MzEqualRects(point->leafNodes()[0]->bounds(), {{3, 4}, {0, 0}}));
    EXPECT_EQ(point->leafNodes()[0]->object(), point.get());
    EXPECT_TRUE(point->mbrInsertsectsRect({{0, 0}, {10, 10}}));
    EXPECT_FALSE(point->mbrInsertsectsRect({{5, 5}, {10, 10}}));
    point->leafNodes()[0]->setBounds({{6, 6}, {1, 1}});
    EXPECT_TRUE(point->mbrInsertsectsRect({{5, 5}, {10, 10}})) << "by the leaf that there is";
}

TEST(PointGeometry, HasNoEncodingWhenMadeInMemory) {
    EXPECT_EQ(MzPointGeometry::initWithPoint({3, 4})->wkbData(), nullptr);
}

TEST(PointGeometry, ForgetsBytesAndLeavesWhenSet) {
    const auto bytes = data(WkbWriter().point(kLittle, {3, 4}).bytes());
    const auto point = MzPointGeometry::initWithWKBData(bytes);
    EXPECT_EQ(point->wkbData(), bytes);
    point->leafNodes();
    point->setPointGeometry({5, 6});
    EXPECT_EQ(point->wkbData(), nullptr);
    EXPECT_EQ(point->leafNodes()[0]->bounds().origin.x, 5);
    point->setPointGeometry(*point->pointGeometry());
    EXPECT_EQ(point->y(), 6);
}

TEST(PointGeometry, IsProjectedOncePerProjectionObject) {
    const auto utm = MzMapProjection::mapProjectionWithUTMZone(33);
    const auto point = MzPointGeometry::initWithPoint({10.75, 59.91});
    const auto projected = point->geometryWithProjection(utm);
    ASSERT_NE(projected, nullptr);
    EXPECT_EQ(projected->geometryType(), 1u);
    const MzPoint expected = utm->projectedCoordinateForLongitudeLatitude({10.75, 59.91});
    EXPECT_TRUE(MzEqualPoints(std::dynamic_pointer_cast<MzPointGeometry>(projected)->asNSPoint(),
                              expected));
    EXPECT_EQ(point->geometryWithProjection(utm), projected);
    EXPECT_NE(point->geometryWithProjection(MzMapProjection::mapProjectionWithUTMZone(33)),
              projected);
    EXPECT_EQ(point->projectedGeometries().size(), 2u);
    EXPECT_EQ(point->geometryWithProjection(nullptr), nullptr);
}

TEST(PointGeometry, KeepsProjectedCopiesWhenSet) {
    const auto plain = MzMapProjection::mapProjectionWithPlateCarree();
    const auto point = MzPointGeometry::initWithPoint({3, 4});
    const auto projected = point->geometryWithProjection(plain);
    point->setPointGeometry({5, 6});
    EXPECT_EQ(point->geometryWithProjection(plain), projected);
}

TEST(PointGeometry, IsClippedByTheHalfOpenRectangle) {
    const MzClippingRegion region = doublingRegion({{0, 0}, {10, 10}});
    const auto inside = MzPointGeometry::initWithPoint({0, 4});
    const MzPoint* clipped = inside->clippedPointWithRegion(&region);
    ASSERT_NE(clipped, nullptr);
    EXPECT_TRUE(MzEqualPoints(*clipped, {0, 8}));
    EXPECT_EQ(inside->x(), 0);
    EXPECT_EQ(inside->y(), 4);
    EXPECT_NE(MzPointGeometry::initWithPoint({4, 0})->clippedPointWithRegion(&region), nullptr);
    EXPECT_EQ(MzPointGeometry::initWithPoint({10, 4})->clippedPointWithRegion(&region), nullptr);
    EXPECT_EQ(MzPointGeometry::initWithPoint({4, 10})->clippedPointWithRegion(&region), nullptr);
    EXPECT_EQ(inside->clippedPointWithRegion(nullptr), nullptr);
}

TEST(PointGeometry, IsClippedToTheOriginWithoutATransform) {
    MzClippingRegion region;
    region.setClippingRect({{0, 0}, {10, 10}});
    const auto point = MzPointGeometry::initWithPoint({3, 4});
    const MzPoint* clipped = point->clippedPointWithRegion(&region);
    ASSERT_NE(clipped, nullptr);
    EXPECT_TRUE(MzEqualPoints(*clipped, {0, 0}));
}

}  // namespace
}  // namespace mezalith
