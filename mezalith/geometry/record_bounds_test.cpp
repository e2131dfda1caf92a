// SPDX-License-Identifier: MIT
#include <mezalith/geometry/record_bounds.hpp>
#include <mezalith/geometry/test_support.hpp>

#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(RecordBounds, AreTheSmallestRectangleAroundPoints) {
    const auto bounds = MzBoundsOfPoints(Points{{3, -1}, {-2, 5}, {0, 7}});
    ASSERT_TRUE(bounds);
    EXPECT_TRUE(MzEqualRects(*bounds, {{-2, -1}, {5, 8}}));
}

TEST(RecordBounds, OfOnePointHaveNoExtent) {
    const auto bounds = MzBoundsOfPoints(Points{{3, 4}});
    ASSERT_TRUE(bounds);
    EXPECT_TRUE(MzEqualRects(*bounds, {{3, 4}, {0, 0}}));
}

TEST(RecordBounds, OfNothingAreEmpty) {
    EXPECT_FALSE(MzBoundsOfPoints({}));
    EXPECT_FALSE(MzBoundsOfRings({}));
    const MzLinearRing withoutPoints{4000000000u, nullptr};
    EXPECT_FALSE(MzBoundsOfRings({&withoutPoints, 1}));
}

TEST(RecordBounds, HoldThePointsOfAllRings) {
    OwnedPolygon polygon({{}, square(0, 0, 1), square(5, 5, 2)});
    const auto bounds = MzBoundsOfRings(polygon.rings());
    ASSERT_TRUE(bounds);
    EXPECT_TRUE(MzEqualRects(*bounds, {{0, 0}, {7, 7}}));
}

TEST(RecordBounds, PassOverNaNsBehindTheFirstPoint) {
    const auto later = MzBoundsOfPoints(Points{{0, 0}, {kNaN, 9}, {4, kNaN}});
    ASSERT_TRUE(later);
    EXPECT_TRUE(MzEqualRects(*later, {{0, 0}, {4, 9}}));
    const auto first = MzBoundsOfPoints(Points{{kNaN, 0}, {1, 1}});
    ASSERT_TRUE(first);
    EXPECT_TRUE(std::isnan(first->origin.x));
    EXPECT_EQ(first->size.height, 1);
}

}  // namespace
}  // namespace mezalith
