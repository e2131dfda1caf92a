// SPDX-License-Identifier: MIT
#include "mezalith/medialaxis/test_support.hpp"
#include <mezalith/medialaxis/medial_axis.hpp>
#include <mezalith/medialaxis/polygon_skeleton.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <memory>
#include <numbers>
#include <utility>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using test::Points;
using test::Rings;
using test::square;

std::shared_ptr<MzMedialAxis> axisOf(Points points) {
    const test::LogLines quiet;
    const auto ring = test::recordOf<MzLinearRing>(points);
    return MzMedialAxis::medialAxisFromRing(&ring);
}

std::shared_ptr<MzPolygonSkeleton> skeletonOf(const Rings& rings) {
    test::OwnedPolygon owned(rings);
    const MzPolygon polygon = owned.record();
    return MzPolygonSkeleton::skeletonFromPolygon(&polygon);
}

/// How far clearances may be off: 2^-29 of the polygon's size.
constexpr double kOff = 0x1p-29;

// An L with the reflex corner at (4, 4.5).
const Points kL{{1, 1}, {9, 1}, {9, 4.5}, {4, 4.5}, {4, 9}, {1, 9}, {1, 1}};
// Of the circle that touches the two longest sides and the reflex corner: r² - 13 r + 21.25 = 0.
const double kDeepestOfL = 6.5 - std::sqrt(21.0);

// --- medial axis

TEST(ChoosingMedialAxis, TheSettledOneDoesNotSeeHoles) {
    const Rings rings{square(1, 1, 10), square(5, 5, 2)};
    const auto settled = axisOf(rings[0]);
    EXPECT_NEAR(settled->mostInteriorNode()->point().x, 6, 1e-9) << "in the hole";
    EXPECT_NEAR(settled->mostInteriorNode()->point().y, 6, 1e-9);
    const auto skeleton = skeletonOf(rings);
    ASSERT_NE(skeleton, nullptr);
    EXPECT_NEAR(skeleton->deepestNode().clearance, 4 / (1 + std::numbers::sqrt2 / 2), 10 * kOff);
}

TEST(ChoosingMedialAxis, TheSettledOneDoesNotConvergeFromAReflexVertexOn) {
    Points turned = kL;
    turned.pop_back();
    std::ranges::rotate(turned, turned.begin() + 3);
    turned.push_back(turned.front());
    EXPECT_TRUE(axisOf(kL)->isConverged());
    EXPECT_FALSE(axisOf(turned)->isConverged());
    for (const Points& ring : {kL, turned}) {
        const auto skeleton = skeletonOf({ring});
        EXPECT_NEAR(skeleton->deepestNode().clearance, kDeepestOfL, 8 * kOff);
    }
}

TEST(ChoosingMedialAxis, TheSettledOneDoesNotConvergeUnderAQuarterOfAUnit) {
    for (const double size : {8.0, 0.25, 0.2, 0.08}) {
        const Points ring = test::placed(kL, size / 8, {0, 0});
        EXPECT_EQ(axisOf(ring)->isConverged(), size >= 0.25) << size;
        EXPECT_NEAR(skeletonOf({ring})->deepestNode().clearance, kDeepestOfL * size / 8,
                    size * kOff);
    }
}

TEST(ChoosingMedialAxis, TheSettledOneLosesEdgesThatEndAtACoordinateOf0) {
    const auto atZero = axisOf(square(0, 0, 5)), atOne = axisOf(square(1, 1, 5));
    EXPECT_EQ(atZero->nodes().size(), 2u);
    EXPECT_EQ(atOne->nodes().size(), 6u);
    EXPECT_NEAR(atZero->mostInteriorNode()->distance(), 5, 1e-9);
    EXPECT_NEAR(atOne->mostInteriorNode()->distance(), 2.5, 1e-9);
    for (const double corner : {0.0, 1.0}) {
        const auto skeleton = skeletonOf({square(corner, corner, 5)});
        EXPECT_EQ(skeleton->nodes().size(), 5u);
        EXPECT_NEAR(skeleton->deepestNode().clearance, 2.5, 5 * kOff);
    }
}

/// Teeth of which every one may meet every other.
Points comb(int teeth) { return test::placed(test::combRing(teeth, 3), 10, {50, 70}); }

TEST(ChoosingMedialAxis, TheSettledMeetingsGrowWithTheSquare) {
    const auto less = axisOf(comb(32)), more = axisOf(comb(64));
    EXPECT_NEAR(static_cast<double>(less->loops()), 3'660, 50);
    EXPECT_NEAR(static_cast<double>(more->loops()), 13'700, 150);
    const auto skeleton = skeletonOf({comb(32)}), larger = skeletonOf({comb(64)});
    EXPECT_LT(larger->nodes().size(), 2.1 * static_cast<double>(skeleton->nodes().size()));
}

TEST(ChoosingMedialAxis, TheCounterpartTakesUnclosedTouchingAndCrossingRings) {
    Points open = square(1, 1, 4);
    open.pop_back();
    EXPECT_NEAR(skeletonOf({open})->deepestNode().clearance, 2, 4 * kOff);
    const Points bowTie{{0, 0}, {4, 4}, {4, 0}, {0, 4}, {0, 0}};
    const auto crossing = skeletonOf({bowTie});
    ASSERT_NE(crossing, nullptr);
    // The circle in a triangle of base 4 and height 2.
    EXPECT_NEAR(crossing->deepestNode().clearance, 2 * (std::numbers::sqrt2 - 1), 4 * kOff);
    const auto touching = skeletonOf({square(0, 0, 4), square(0, 0, 2)});
    ASSERT_NE(touching, nullptr);
    EXPECT_NEAR(touching->deepestNode().clearance, 4 - 2 * std::numbers::sqrt2, 4 * kOff);
}

/// Of one without a way round a hole.
std::size_t networksOf(const MzPolygonSkeleton& skeleton) {
    return skeleton.nodes().size() - skeleton.arcs().size();
}

TEST(ChoosingMedialAxis, TheCounterpartGivesOneNetworkForEachConnectedInside) {
    EXPECT_EQ(networksOf(*skeletonOf({kL})), 1u);
    EXPECT_EQ(networksOf(*skeletonOf({square(0, 0, 4), square(9, 9, 2)})), 2u);
    EXPECT_EQ(networksOf(*skeletonOf({square(0, 0, 4), square(1, 1, 1)})), 0u) << "one way round";
}

TEST(ChoosingMedialAxis, TheCounterpartsClearancesAreTrueAndItCanBePruned) {
    test::Random random(20261121);
    const Rings rings{test::starRing(random, 40, 0.5)};
    const auto skeleton = skeletonOf(rings);
    ASSERT_NE(skeleton, nullptr);
    for (const MzSkeletonNode& node : skeleton->nodes()) {
        EXPECT_NEAR(node.clearance, test::distanceToRings(node.point, rings), 2 * kOff);
    }
    EXPECT_EQ(skeletonOf({square(1, 1, 5)})->arcs().size(), 4u);
    EXPECT_EQ(skeletonOf({square(1, 1, 5)})->prunedByRatio(1.5)->arcs().size(), 0u);
}

// --- deepest point

// Walls of 8 by 4 under a roof that rises by 4 more.
const Points kHouse{{1, 1}, {9, 1}, {9, 5}, {5, 9}, {1, 5}, {1, 1}};

TEST(ChoosingDeepestPoint, TheSettledRootHasTheDistanceOfAnotherPoint) {
    const auto axis = axisOf(kHouse);
    ASSERT_TRUE(axis->isConverged());
    const MzMedialAxisNode* settled = axis->mostInteriorNode();
    ASSERT_NE(settled, nullptr);
    EXPECT_EQ(settled, axis->nodes().front().get());
    EXPECT_NEAR(settled->point().x, 3.83, 0.005);
    EXPECT_NEAR(settled->point().y, 3.83, 0.005);
    EXPECT_NEAR(settled->distance(), 3.31, 0.005);
    EXPECT_NEAR(test::distanceToRing(settled->point(), kHouse), 2.83, 0.005);
    test::OwnedPolygon owned({kHouse});
    const MzPolygon polygon = owned.record();
    const auto deepest = MzDeepestPoint(&polygon);
    ASSERT_TRUE(deepest);
    const double radius = 8 / (1 + std::numbers::sqrt2);  // touches the floor and the roof
    EXPECT_NEAR(deepest->point.x, 5, 1e-7);
    EXPECT_NEAR(deepest->point.y, 1 + radius, 1e-7);
    EXPECT_NEAR(deepest->clearance, radius, 8 * kOff);
    EXPECT_NEAR(test::distanceToRing(deepest->point, kHouse), radius, 8 * kOff);
}

}  // namespace
}  // namespace mezalith
