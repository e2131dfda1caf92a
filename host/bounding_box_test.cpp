// SPDX-License-Identifier: MIT
#include "host/bounding_box.hpp"

#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

TEST(BoundingBox, IsEmptyAtFirst) {
    const BoundingBox box;
    EXPECT_TRUE(box.isEmpty());
    EXPECT_EQ(box.width(), 0);
    EXPECT_EQ(box.height(), 0);
    EXPECT_TRUE(MzEqualRects(box.rect(), MzZeroRect));
}

TEST(BoundingBox, OfOnePointIsNotEmpty) {
    BoundingBox box;
    box.add(MzPoint{3, 4});
    EXPECT_FALSE(box.isEmpty());
    EXPECT_EQ(box, (BoundingBox{3, 4, 3, 4}));
}

TEST(BoundingBox, GrowsAroundPointsAndBoxes) {
    BoundingBox box;
    const std::vector<MzPoint> points{{1, 2}, {-3, 5}};
    box.add(points);
    box.add(BoundingBox{0, -1, 2, 0});
    box.add(BoundingBox{});
    EXPECT_EQ(box, (BoundingBox{-3, -1, 2, 5}));
    EXPECT_TRUE(MzEqualRects(box.rect(), {{-3, -1}, {5, 6}}));
    EXPECT_EQ(box.centre().x, -0.5);
    EXPECT_EQ(box.centre().y, 2);
}

TEST(BoundingBox, LeavesOutWhatIsNotFinite) {
    BoundingBox box;
    box.add(MzPoint{std::nan(""), 1});
    box.add(MzPoint{1, std::numeric_limits<double>::infinity()});
    EXPECT_TRUE(box.isEmpty());
}

TEST(BoundingBox, MeetsWhatItTouches) {
    const BoundingBox box{0, 0, 1, 1};
    EXPECT_TRUE(box.meets({1, 1, 2, 2}));
    EXPECT_FALSE(box.meets({1.5, 0, 2, 1}));
    EXPECT_FALSE(box.meets({0, 1.5, 1, 2}));
    EXPECT_FALSE(box.meets({-2, 0, -1, 1}));
    EXPECT_FALSE(box.meets({0, -2, 1, -1}));
    EXPECT_FALSE(box.meets(BoundingBox{}));
}

TEST(BoundingBox, HoldsItselfAndTheEmptyBox) {
    const BoundingBox box{0, 0, 2, 2};
    EXPECT_TRUE(box.holds(box));
    EXPECT_TRUE(box.holds(BoundingBox{}));
    for (const BoundingBox& other : {BoundingBox{-1, 0, 1, 1}, BoundingBox{0, -1, 1, 1},
                                     BoundingBox{0, 0, 3, 1}, BoundingBox{0, 0, 1, 3}}) {
        EXPECT_FALSE(box.holds(other));
    }
}

TEST(BoundingBox, MovesAndComesFromARectangle) {
    EXPECT_EQ(BoundingBox::of({{1, 2}, {3, 4}}), (BoundingBox{1, 2, 4, 6}));
    EXPECT_EQ((BoundingBox{1, 2, 4, 6}.movedBy(10, -1)), (BoundingBox{11, 1, 14, 5}));
}

TEST(OutlineOf, RunsAlongAllSides) {
    BoundingBox around;
    for (const MzPoint p : outlineOf({1, 2, 5, 10}, 4)) {
        EXPECT_TRUE(p.x == 1 || p.x == 5 || p.y == 2 || p.y == 10);
        around.add(p);
    }
    EXPECT_EQ(around, (BoundingBox{1, 2, 5, 10}));
    EXPECT_EQ(outlineOf({1, 2, 5, 10}, 4).size(), 20u);
}

}  // namespace
}  // namespace mezalith::host
