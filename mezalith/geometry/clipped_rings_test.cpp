// SPDX-License-Identifier: MIT
#include <mezalith/geometry/clipped_rings.hpp>
#include <mezalith/geometry/test_support.hpp>

#include <limits>

#include <gtest/gtest.h>

namespace mezalith::detail {
namespace {

using namespace test;

const MzRect kTen{{0, 0}, {10, 10}};

TEST(ClippedRings, KeepTheirPlacesWhenNothingIsLeft) {
    OwnedPolygon polygon({square(1, 1, 2), square(50, 50, 1), square(4, 4, 1)});
    const MzClippingRegion region = doublingRegion(kTen);
    ClippedRings clipped;
    clipped.append(polygon.rings(), &region);
    const auto rings = clipped.finish();
    ASSERT_EQ(rings.size(), 3u);
    EXPECT_TRUE(sameBits(pointsOf(&rings[0]), square(2, 2, 4)));
    EXPECT_EQ(rings[1].count, 0u);
    EXPECT_TRUE(sameBits(pointsOf(&rings[2]), square(8, 8, 2)));
}

TEST(ClippedRings, LieBehindOneAnother) {
    OwnedPolygon polygon({square(1, 1, 2), square(4, 4, 1)});
    const MzClippingRegion region = doublingRegion(kTen);
    ClippedRings clipped;
    clipped.append(polygon.rings(), &region);
    const auto rings = clipped.finish();
    EXPECT_EQ(rings[1].points, rings[0].points + 5);
}

TEST(ClippedRings, CloseAlongTheCornersOfTheRegion) {
    OwnedPolygon polygon({{{-5, -5}, {15, -5}, {15, 15}, {-5, 15}, {-5, -5}}});
    const MzClippingRegion region = doublingRegion(kTen);
    ClippedRings clipped;
    clipped.append(polygon.rings(), &region);
    const Points corners{{0, 0}, {20, 0}, {20, 20}, {0, 20}};
    EXPECT_TRUE(sameBits(pointsOf(&clipped.finish()[0]), corners));
}

TEST(ClippedRings, KeepTheirMemoryFromPassToPass) {
    OwnedPolygon polygon({square(1, 1, 2), square(4, 4, 1)});
    const MzClippingRegion region = doublingRegion(kTen);
    ClippedRings clipped;
    clipped.append(polygon.rings(), &region);
    const auto first = clipped.finish();
    const MzPoint* points = first[0].points;
    const MzLinearRing* place = first.data();
    for (int pass = 0; pass < 3; ++pass) {
        clipped.clear();
        clipped.append(polygon.rings(), &region);
        const auto rings = clipped.finish();
        ASSERT_EQ(rings.size(), 2u);
        EXPECT_EQ(rings.data(), place);
        EXPECT_EQ(rings[0].points, points);
    }
}

TEST(ClippedRings, HaveRoomForWhatARingCanGrowTo) {
    // To and fro across the bottom and the right side, from beyond a corner to beyond another: two
    // crossings and two corners a segment.
    Points zigzag;
    for (int i = 0; i < 400; ++i) zigzag.push_back(i % 2 == 0 ? MzPoint{-2, -7} : MzPoint{17, 12});
    OwnedPolygon polygon({zigzag, zigzag});
    const MzClippingRegion region = doublingRegion(kTen);
    ClippedRings clipped;
    clipped.append(polygon.rings(), &region);
    const auto rings = clipped.finish();
    ASSERT_EQ(rings.size(), 2u);
    EXPECT_EQ(rings[0].count, 4u * 399);
    EXPECT_TRUE(sameBits(pointsOf(&rings[0]), pointsOf(&rings[1])));
}

TEST(ClippedRings, TakePointsThatAreNoNumbers) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    OwnedPolygon polygon({{{nan, nan}, {nan, 3}, {3, nan}}, square(1, 1, 2)});
    const MzClippingRegion region = doublingRegion(kTen);
    ClippedRings clipped;
    clipped.append(polygon.rings(), &region);
    EXPECT_LE(clipped.finish()[0].count, 8u);
    EXPECT_TRUE(sameBits(pointsOf(&clipped.finish()[1]), square(2, 2, 4)));
}

TEST(ClippedRings, AreEmptyWithoutARegionOrAnArray) {
    OwnedPolygon polygon({square(1, 1, 2), square(4, 4, 1)});
    ClippedRings clipped;
    clipped.append(polygon.rings(), nullptr);
    ASSERT_EQ(clipped.finish().size(), 2u);
    EXPECT_EQ(clipped.finish()[0].count, 0u);
    EXPECT_EQ(clipped.finish()[1].count, 0u);

    polygon.rings()[0] = {4000000000u, nullptr};
    const MzClippingRegion region = doublingRegion(kTen);
    clipped.clear();
    clipped.append(polygon.rings(), &region);
    EXPECT_EQ(clipped.finish()[0].count, 0u);
    EXPECT_EQ(clipped.finish()[1].count, 5u);
}

TEST(ClippedRings, AreNoneAtFirst) {
    ClippedRings clipped;
    EXPECT_TRUE(clipped.finish().empty());
}

}  // namespace
}  // namespace mezalith::detail
