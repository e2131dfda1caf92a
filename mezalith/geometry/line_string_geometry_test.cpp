// SPDX-License-Identifier: MIT
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/test_support.hpp>

#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

MzData data(const Bytes& bytes) { return std::make_shared<const Bytes>(bytes); }

std::shared_ptr<MzLineStringGeometry> lineString(Points points) {
    return MzLineStringGeometry::initWithLineString(recordOf<MzLineString>(points));
}

TEST(LineStringGeometry, CopiesTheRecordItIsMadeFrom) {
    Points points{{1, 2}, {3, 4}};
    const auto record = recordOf<MzLineString>(points);
    const std::vector made{MzLineStringGeometry::initWithLineString(record),
                           MzLineStringGeometry::initWithLineStringPtr(&record),
                           MzLineStringGeometry::geometryWithLineString(record)};
    points[0] = {9, 9};
    for (const auto& geometry : made) {
        EXPECT_TRUE(sameBits(pointsOf(geometry->lineStringGeometry()), Points{{1, 2}, {3, 4}}));
        EXPECT_EQ(geometry->geometryData().size(), 48u);
        EXPECT_EQ(geometry->geometryType(), 2u);
        EXPECT_EQ(geometry->dimension(), 1);
    }
    EXPECT_EQ(MzLineStringGeometry::initWithLineStringPtr(nullptr), nullptr);
}

TEST(LineStringGeometry, PutsItsArrayBehindTheHeader) {
    const auto geometry = MzLineStringGeometry::initWithCapacity(16 + 3 * 16);
    EXPECT_EQ(geometry->geometryData().size(), 64u);
    EXPECT_EQ(reinterpret_cast<const std::byte*>(geometry->lineStringGeometry()->points),
              geometry->geometryData().data() + 16);
    EXPECT_EQ(geometry->lineStringGeometry()->count, 0u);
    EXPECT_EQ(MzLineStringGeometry().lineStringGeometry()->count, 0u);
}

TEST(LineStringGeometry, HoldsTheCoordinatesOfItsWKB) {
    const auto wkb = data(WkbWriter().lineString(kBig, {{1, 2}, {3, 4}}).bytes());
    const auto geometry = MzLineStringGeometry::initWithWKBData(wkb);
    ASSERT_NE(geometry, nullptr);
    EXPECT_TRUE(sameBits(pointsOf(geometry->lineStringGeometry()), Points{{1, 2}, {3, 4}}));
    EXPECT_EQ(geometry->wkbData(), wkb);
    EXPECT_EQ(MzLineStringGeometry::initWithWKBData(data(WkbWriter().polygon(1, {}).bytes())),
              nullptr);
}

TEST(LineStringGeometry, HasNoEncodingWhenMadeInMemory) {
    EXPECT_EQ(lineString({{1, 2}, {3, 4}})->wkbData(), nullptr);
}

TEST(LineStringGeometry, HasOneLeafAroundItsPoints) {
    const auto geometry = lineString({{1, 7}, {-3, 4}});
    ASSERT_EQ(geometry->leafNodes().size(), 1u);
    EXPECT_TRUE(MzEqualRects(geometry->leafNodes()[0]->bounds(), {{-3, 4}, {4, 3}}));
    EXPECT_TRUE(lineString({})->leafNodes().empty());
    EXPECT_TRUE(
        MzLineStringGeometry::initWithLineString({4000000000u, nullptr})->leafNodes().empty());
}

TEST(LineStringGeometry, ForgetsBytesAndLeavesWhenSet) {
    const auto geometry = MzLineStringGeometry::initWithWKBData(
        data(WkbWriter().lineString(kBig, {{1, 2}, {3, 4}}).bytes()));
    geometry->leafNodes();
    geometry->setLineStringGeometry({1, geometry->lineStringGeometry()->points + 1});
    EXPECT_TRUE(sameBits(pointsOf(geometry->lineStringGeometry()), Points{{3, 4}}));
    EXPECT_EQ(geometry->wkbData(), nullptr);
    EXPECT_EQ(geometry->leafNodes()[0]->bounds().origin.x, 3);
}

TEST(LineStringGeometry, AnswersItsProjectedCopyFromTheSecondCallOn) {
    const Points points{{10.75, 59.91}, {5.32, 60.39}};
    const auto utm = MzMapProjection::mapProjectionWithUTMZone(33);
    const auto geometry = lineString(points);
    EXPECT_EQ(geometry->geometryWithProjection(utm), nullptr);
    const auto projected =
        std::dynamic_pointer_cast<MzLineStringGeometry>(geometry->geometryWithProjection(utm));
    ASSERT_NE(projected, nullptr);
    EXPECT_EQ(geometry->geometryWithProjection(utm), projected);
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_TRUE(MzEqualPoints(projected->lineStringGeometry()->points[i],
                                  utm->projectedCoordinateForLongitudeLatitude(points[i])));
    }
    const auto other = MzMapProjection::mapProjectionWithUTMZone(33);
    EXPECT_EQ(geometry->geometryWithProjection(other), nullptr);
    EXPECT_NE(geometry->geometryWithProjection(other), projected);
    EXPECT_EQ(geometry->geometryWithProjection(nullptr), nullptr);
    EXPECT_EQ(geometry->geometryWithProjection(nullptr), nullptr);
}

}  // namespace
}  // namespace mezalith
