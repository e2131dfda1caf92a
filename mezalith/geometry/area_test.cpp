// SPDX-License-Identifier: MIT
#include "mezalith/geometry/test_support.hpp"
#include <mezalith/geometry/area.hpp>

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using test::square;

double signedArea(test::Points points) {
    const auto ring = test::recordOf<MzLinearRing>(points);
    return MzSignedArea(&ring);
}

int orientationOf(test::Points points) {
    const auto ring = test::recordOf<MzLinearRing>(points);
    return MzRingOrientation(&ring);
}

double areaOf(const test::Rings& rings) {
    test::OwnedPolygon owned(rings);
    const MzPolygon polygon = owned.record();
    return MzArea(&polygon);
}

test::Points reversed(test::Points points) {
    std::ranges::reverse(points);
    return points;
}

TEST(SignedArea, IsPositiveCounterclockwise) {
    EXPECT_EQ(signedArea(square(3, -2, 4)), 16);
    EXPECT_EQ(signedArea(reversed(square(3, -2, 4))), -16);
}

TEST(SignedArea, NeedsNoClosedRing) { EXPECT_EQ(signedArea({{0, 0}, {4, 0}, {4, 4}, {0, 4}}), 16); }

TEST(SignedArea, KeepsItsDigitsFarFromTheOrigin) {
    EXPECT_EQ(signedArea(square(6.5e15, 6.5e15, 2)), 4);
    EXPECT_EQ(signedArea({{1e9, 1e9}, {1e9 + 0.5, 1e9}, {1e9, 1e9 + 0.25}}), 0.0625);
}

TEST(SignedArea, OfWhatHasNoInsideIsZero) {
    EXPECT_EQ(signedArea({}), 0);
    EXPECT_EQ(signedArea({{1, 1}, {2, 5}}), 0);
    EXPECT_EQ(signedArea({{0, 0}, {2, 2}, {1, 1}}), 0);
    EXPECT_EQ(MzSignedArea(nullptr), 0);
}

TEST(SignedArea, OfWhatIsNotFiniteIsNotANumber) {
    EXPECT_TRUE(std::isnan(signedArea({{0, 0}, {1, 0}, {std::nan(""), 1}})));
    EXPECT_TRUE(
        std::isnan(signedArea({{0, 0}, {1, 0}, {std::numeric_limits<double>::infinity(), 1}})));
}

TEST(Area, TakesHolesAwayHoweverTheyRun) {
    EXPECT_EQ(areaOf({square(0, 0, 10), square(4, 4, 2)}), 96);
    EXPECT_EQ(areaOf({square(0, 0, 10), reversed(square(4, 4, 2))}), 96);
    EXPECT_EQ(areaOf({reversed(square(0, 0, 10)), square(4, 4, 2), square(1, 1, 1)}), 95);
}

TEST(Area, AddsMembers) {
    test::OwnedMultiPolygon owned({{square(0, 0, 2)}, {square(5, 5, 3), square(6, 6, 1)}});
    const MzMultiPolygon polygons = owned.record();
    EXPECT_EQ(MzArea(&polygons), 12);
}

TEST(Area, OfNothingIsZero) {
    EXPECT_EQ(MzArea(static_cast<const MzPolygon*>(nullptr)), 0);
    EXPECT_EQ(MzArea(static_cast<const MzMultiPolygon*>(nullptr)), 0);
    EXPECT_EQ(areaOf({}), 0);
}

TEST(RingOrientation, IsWhichWayTheRingRuns) {
    EXPECT_EQ(orientationOf(square(0, 0, 1)), 1);
    EXPECT_EQ(orientationOf(reversed(square(0, 0, 1))), -1);
    EXPECT_EQ(orientationOf({{0, 0}, {5, 5}, {10, 0}, {5, 1}}), -1);
}

TEST(RingOrientation, PassesRepeatedPointsOver) {
    EXPECT_EQ(orientationOf({{0, 0}, {0, 0}, {1, 0}, {1, 0}, {1, 1}, {0, 0}, {0, 0}}), 1);
}

TEST(RingOrientation, OfALowestCornerThatIsASpikeIsThatOfTheArea) {
    EXPECT_EQ(orientationOf({{0, 0}, {4, 0}, {2, 0}, {2, -3}, {2, 0}, {0, 4}, {0, 0}}), 1);
    EXPECT_EQ(orientationOf({{0, 0}, {2, 2}, {1, 1}, {0, 0}}), 0);
}

TEST(RingOrientation, SeesASliverOfOneLastDigit) {
    const double above = std::nextafter(0.5, 1);
    EXPECT_EQ(orientationOf({{0, 0}, {24, 24}, {0.5, above}, {0, 0}}), 1);
    EXPECT_EQ(orientationOf({{0, 0}, {24, 24}, {above, 0.5}, {0, 0}}), -1);
}

TEST(RingOrientation, OfWhatHasNoInsideIsNone) {
    EXPECT_EQ(orientationOf({}), 0);
    EXPECT_EQ(orientationOf({{1, 1}, {1, 1}, {1, 1}}), 0);
    EXPECT_EQ(MzRingOrientation(nullptr), 0);
}

}  // namespace
}  // namespace mezalith
