// SPDX-License-Identifier: MIT
#include <mezalith/geometry/polygon_functions.hpp>
#include <mezalith/geometry/test_support.hpp>

#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

bool inside(const Rings& rings, double x, double y) {
    OwnedPolygon polygon(rings);
    const MzPolygon record = polygon.record();
    return crossingTest(&record, x, y);
}

std::optional<MzPoint> centroid(Points points, double* area) {
    const auto ring = recordOf<MzLinearRing>(points);
    return MzCentroid(&ring, area);
}

TEST(CrossingTest, FindsPointsInASquare) {
    EXPECT_TRUE(inside({square(0, 0, 4)}, 2, 2));
    EXPECT_FALSE(inside({square(0, 0, 4)}, 5, 2));
    EXPECT_FALSE(inside({square(0, 0, 4)}, -1, 2));
    EXPECT_FALSE(inside({square(0, 0, 4)}, 2, 5));
    EXPECT_FALSE(inside({square(0, 0, 4)}, 2, -1));
}

TEST(CrossingTest, KeepsTheMixedTermOfTheIntercept) {
    // The slanting edge from (4, 0) to (0, 4) has the intercept 0 - (4 - 0)(0 - 2)/(0 - 4) = -2.
    EXPECT_FALSE(inside({{{0, 0}, {4, 0}, {0, 4}, {0, 0}}}, 1, 2));
    // From (4, 0) to (1, 4) past (2, 1): 1 - (4 - 1)(1 - 1)/(0 - 4) = 1, which misses.
    EXPECT_FALSE(inside({{{0, 0}, {4, 0}, {1, 4}, {0, 0}}}, 2, 1));
    // From (5, 0) to (3, 4) past (4, 2): 3 - (5 - 3)(3 - 2)/(0 - 4) = 3.5, which misses as well.
    EXPECT_FALSE(inside({{{0, 0}, {5, 0}, {3, 4}, {0, 0}}}, 4, 2));
    // From (8, 0) to (3, 4) past (4, 1): 3 - (8 - 3)(3 - 1)/(0 - 4) = 5.5, which counts.
    EXPECT_TRUE(inside({{{0, 0}, {8, 0}, {3, 4}, {0, 0}}}, 4, 1));
    EXPECT_TRUE(inside({{{0, 0}, {8, 0}, {3, 4}, {0, 0}}}, 5.5, 1));
    EXPECT_FALSE(inside({{{0, 0}, {8, 0}, {3, 4}, {0, 0}}}, 5.75, 1));
}

TEST(CrossingTest, TakesTheUpperAndRightBordersAsInside) {
    EXPECT_TRUE(inside({square(0, 0, 4)}, 2, 4));
    EXPECT_FALSE(inside({square(0, 0, 4)}, 2, 0));
    EXPECT_TRUE(inside({square(0, 0, 4)}, 4, 2));
    EXPECT_FALSE(inside({square(0, 0, 4)}, 0, 2));
}

TEST(CrossingTest, TakesAnEndRightAboveOrBelowThePointAsBeside) {
    // From (4, 0) to (3, 2) past (4, 1) the ends differ: 3 - (4 - 3)(3 - 1)/(0 - 2) = 4 counts.
    EXPECT_TRUE(inside({{{4, 0}, {3, 2}, {0, 0}}}, 4, 1));
    // From (4, 0) to (8, 2) they do not, and (0, 2) to (4, 0) takes back what that counts.
    EXPECT_FALSE(inside({{{4, 0}, {8, 2}, {0, 2}}}, 4, 1));
}

TEST(CrossingTest, AddsTheWindingOfAllRings) {
    Points hole = square(1, 1, 2);
    std::ranges::reverse(hole);
    EXPECT_FALSE(inside({square(0, 0, 4), hole}, 2, 2));
    EXPECT_TRUE(inside({square(0, 0, 4), hole}, 3.5, 2));
    EXPECT_TRUE(inside({square(0, 0, 4), square(1, 1, 2)}, 2, 2));
}

TEST(CrossingTest, DoesNotNeedTheClosingPoint) {
    EXPECT_TRUE(inside({{{0, 0}, {4, 0}, {4, 4}, {0, 4}}}, 2, 2));
    EXPECT_FALSE(inside({{{0, 0}, {4, 0}, {4, 4}, {0, 4}}}, 6, 2));
}

TEST(CrossingTest, IsFalseWithoutRingsOrPoints) {
    EXPECT_FALSE(inside({}, 0, 0));
    EXPECT_FALSE(inside({{}}, 0, 0));
    EXPECT_FALSE(crossingTest(nullptr, 0, 0));
    MzLinearRing ring{4000000000u, nullptr};
    const MzPolygon withoutPoints{1, &ring};
    EXPECT_FALSE(crossingTest(&withoutPoints, 0, 0));
    const MzPolygon withoutRings{4000000000u, nullptr};
    EXPECT_FALSE(crossingTest(&withoutRings, 0, 0));
}

TEST(CrossingTest, IsFalseForNaN) {
    EXPECT_FALSE(inside({square(0, 0, 4)}, 2, kNaN));
    EXPECT_FALSE(inside({square(0, 0, 4)}, kNaN, 2));
}

TEST(Centroid, NeedsThreePoints) {
    double area = 7;
    EXPECT_FALSE(centroid({{0, 0}, {1, 1}}, &area));
    EXPECT_FALSE(centroid({}, &area));
    EXPECT_FALSE(MzCentroid(nullptr, &area));
    const MzLinearRing withoutPoints{5, nullptr};
    EXPECT_FALSE(MzCentroid(&withoutPoints, &area));
    EXPECT_EQ(area, 7);
}

TEST(Centroid, SignsTheAreaByTheDirection) {
    double area = 0;
    const auto counterClockwise = centroid({{0, 0}, {2, 0}, {2, 2}, {0, 2}}, &area);
    ASSERT_TRUE(counterClockwise);
    EXPECT_EQ(area, 4);
    EXPECT_EQ(counterClockwise->x, 1);
    EXPECT_EQ(counterClockwise->y, 1);
    const auto clockwise = centroid({{0, 0}, {0, 2}, {2, 2}, {2, 0}}, &area);
    ASSERT_TRUE(clockwise);
    EXPECT_EQ(area, -4);
    EXPECT_EQ(clockwise->x, 1);
    EXPECT_EQ(clockwise->y, 1);
}

TEST(Centroid, IsTheSameWithTheClosingPoint) {
    double area = 0;
    const auto closed = centroid({{0, 0}, {6, 0}, {0, 3}, {0, 0}}, &area);
    ASSERT_TRUE(closed);
    EXPECT_EQ(area, 9);
    EXPECT_EQ(closed->x, 2);
    EXPECT_EQ(closed->y, 1);
}

TEST(Centroid, IsEmptyForAnAreaOfZero) {
    double area = 7;
    EXPECT_FALSE(centroid({{0, 0}, {1, 1}, {2, 2}, {0, 0}}, &area));
    EXPECT_EQ(area, 0);
}

TEST(Centroid, NeedsNoPlaceForTheArea) { EXPECT_TRUE(centroid({{0, 0}, {2, 0}, {2, 2}}, nullptr)); }

}  // namespace
}  // namespace mezalith
