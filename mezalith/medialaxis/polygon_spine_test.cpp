// SPDX-License-Identifier: MIT
#include "mezalith/medialaxis/test_support.hpp"
#include <mezalith/medialaxis/polygon_spine.hpp>

#include <cmath>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using test::Rings;

std::vector<MzSkeletonNode> spineOf(const Rings& rings, double ratio, std::size_t count = 129) {
    test::OwnedPolygon owned(rings);
    const MzPolygon polygon = owned.record();
    const auto skeleton = MzPolygonSkeleton::skeletonFromPolygon(&polygon);
    if (skeleton == nullptr) return {};
    return MzSpineOfPolygon(&polygon, skeleton->prunedByRatio(ratio).get(), count);
}

TEST(PolygonSpine, OfARectangleRunsAlongItsMiddle) {
    const auto spine = spineOf({{{0, 0}, {10, 0}, {10, 4}, {0, 4}, {0, 0}}}, 1.5, 7);
    ASSERT_EQ(spine.size(), 7u);
    const bool isLeftFirst = spine.front().point.x < spine.back().point.x;
    for (std::size_t i = 0; i < spine.size(); ++i) {
        const double along = static_cast<double>(isLeftFirst ? i : 6 - i);
        EXPECT_NEAR(spine[i].point.x, 2 + along, 1e-9);
        EXPECT_NEAR(spine[i].point.y, 2, 1e-9);
        EXPECT_NEAR(spine[i].clearance, 2, 1e-9);
    }
}

TEST(PolygonSpine, OfWhatIsRoundIsItsMiddle) {
    const auto spine = spineOf({test::square(0, 0, 4)}, 1.5);
    ASSERT_EQ(spine.size(), 1u);
    EXPECT_EQ(spine[0].point.x, 2);
    EXPECT_EQ(spine[0].clearance, 2);
}

TEST(PolygonSpine, GoesRoundAHoleOnItsWiderSide) {
    // The hole is nearer to the lower side.
    const auto spine =
        spineOf({{{0, 0}, {30, 0}, {30, 10}, {0, 10}}, {{13, 1}, {17, 1}, {17, 4}, {13, 4}}}, 1.5);
    ASSERT_FALSE(spine.empty());
    for (const MzSkeletonNode& node : spine) {
        if (node.point.x > 13 && node.point.x < 17) {
            EXPECT_GT(node.point.y, 4);
        }
    }
}

TEST(PolygonSpine, OfASkeletonWithoutTwoEndsGoesRoundToo) {
    const Rings oneEnd{{{1, 1}, {11, 1}, {11, 5}, {1, 5}}, {{7, 2}, {9, 2}, {9, 4}, {7, 4}}};
    EXPECT_EQ(spineOf(oneEnd, 2).size(), 129u);
    EXPECT_EQ(spineOf({test::square(0, 0, 9), test::square(3, 4, 3)}, 2).size(), 129u);
}

TEST(PolygonSpine, LiesInsideAndKnowsItsRoom) {
    test::Random random(20261121);
    for (int i = 0; i < 40; ++i) {
        const Rings rings = i % 2 == 0 ? Rings{test::spiralRing(10 + i)}
                                       : Rings{test::starRing(random, 10 + i, 0.3)};
        const auto spine = spineOf(rings, 2);
        ASSERT_FALSE(spine.empty());
        for (const MzSkeletonNode& node : spine) {
            EXPECT_TRUE(node.clearance < 1e-9 || test::isInside(node.point, rings)) << i;
            EXPECT_NEAR(node.clearance, test::distanceToRings(node.point, rings), 1e-12);
        }
    }
}

TEST(PolygonSpine, IsSmooth) {
    const auto spine = spineOf({test::spiralRing(30)}, 2);
    for (std::size_t i = 2; i < spine.size(); ++i) {
        const MzPoint a = spine[i - 2].point, b = spine[i - 1].point, c = spine[i].point;
        const double turn = std::atan2((b.x - a.x) * (c.y - b.y) - (b.y - a.y) * (c.x - b.x),
                                       (b.x - a.x) * (c.x - b.x) + (b.y - a.y) * (c.y - b.y));
        EXPECT_LT(std::abs(turn), 0.5);
    }
}

TEST(PolygonSpine, OfNothingIsNothing) {
    EXPECT_TRUE(MzSpineOfPolygon(nullptr, nullptr).empty());
    const MzPolygonSkeleton empty;
    const MzPolygon polygon{0, nullptr};
    EXPECT_TRUE(MzSpineOfPolygon(&polygon, &empty).empty());
}

}  // namespace
}  // namespace mezalith
