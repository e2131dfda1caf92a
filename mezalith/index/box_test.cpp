// SPDX-License-Identifier: MIT
#include <mezalith/index/box.hpp>

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(Box, IsEmptyOnlyWithoutAPoint) {
    EXPECT_FALSE(MzBox::of(MzPoint{3, 4}).isEmpty());
    EXPECT_FALSE((MzBox{0, 0, 0, 5}).isEmpty());
    EXPECT_FALSE((MzBox{-infinity, -infinity, infinity, infinity}).isEmpty());
    EXPECT_TRUE((MzBox{1, 0, 0, 1}).isEmpty());
    EXPECT_TRUE((MzBox{0, 1, 1, 0}).isEmpty());
    for (const MzBox& box :
         {MzBox{NAN, 0, 1, 1}, MzBox{0, NAN, 1, 1}, MzBox{0, 0, NAN, 1}, MzBox{0, 0, 1, NAN}}) {
        EXPECT_TRUE(box.isEmpty());
    }
}

TEST(Box, CoversARectangle) {
    EXPECT_EQ(MzBox::of(MzRect{{1, 2}, {3, 4}}), (MzBox{1, 2, 4, 6}));
    EXPECT_TRUE(MzBox::of(MzRect{{1, 2}, {-3, 4}}).isEmpty());
    EXPECT_TRUE(MzBox::of(MzRect{{1, 2}, {3, NAN}}).isEmpty());
}

TEST(Box, MeetsWhatTouchesIt) {
    const MzBox box{0, 0, 2, 2};
    EXPECT_TRUE(box.meets({2, 2, 3, 3}));
    EXPECT_TRUE(box.meets({-1, -1, 0, 0}));
    EXPECT_TRUE(box.meets({1, -5, 1, 5}));
    EXPECT_FALSE(box.meets({2.5, 0, 3, 2}));
    EXPECT_FALSE(box.meets({-3, 0, -0.5, 2}));
    EXPECT_FALSE(box.meets({0, 2.5, 2, 3}));
    EXPECT_FALSE(box.meets({0, -3, 2, -0.5}));
}

TEST(Box, HoldsWhatLiesWithin) {
    const MzBox box{0, 0, 2, 2};
    EXPECT_TRUE(box.holds(box));
    EXPECT_TRUE(box.holds({1, 1, 1, 2}));
    for (const MzBox& other :
         {MzBox{-1, 0, 2, 2}, MzBox{0, -1, 2, 2}, MzBox{0, 0, 3, 2}, MzBox{0, 0, 2, 3}}) {
        EXPECT_FALSE(box.holds(other));
    }
}

}  // namespace
}  // namespace mezalith
