// SPDX-License-Identifier: MIT
#include "mezalith/medialaxis/disjoint_sets.hpp"
#include "mezalith/medialaxis/test_support.hpp"
#include <mezalith/medialaxis/skeleton_branches.hpp>

#include <algorithm>
#include <cmath>
#include <memory>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using test::Rings;
using Skeleton = std::shared_ptr<MzPolygonSkeleton>;

Skeleton skeletonOf(const Rings& rings) {
    test::OwnedPolygon owned(rings);
    const MzPolygon polygon = owned.record();
    return MzPolygonSkeleton::skeletonFromPolygon(&polygon);
}

const Rings kRectangle{{{0, 0}, {10, 0}, {10, 4}, {0, 4}, {0, 0}}};

TEST(SkeletonBranches, OfARectangleAreItsCorners) {
    const Skeleton skeleton = skeletonOf(kRectangle);
    EXPECT_EQ(skeleton->arcs().size(), 5u);
    EXPECT_EQ(skeleton->prunedByRatio(1)->arcs().size(), 5u);
    // A branch into a right angle reaches √2 times as far as the outline is.
    EXPECT_EQ(skeleton->prunedByRatio(1.41)->arcs().size(), 5u);
    const Skeleton pruned = skeleton->prunedByRatio(1.42);
    ASSERT_EQ(pruned->arcs().size(), 1u);
    EXPECT_EQ(pruned->nodes().size(), 2u);
    EXPECT_EQ(pruned->nodes()[0].clearance, 2);
    EXPECT_EQ(pruned->tolerance(), skeleton->tolerance());
}

TEST(SkeletonBranches, GoByLengthToo) {
    const Skeleton skeleton = skeletonOf(kRectangle);
    const double corner = 2 * std::sqrt(2) - 2;
    EXPECT_EQ(skeleton->prunedByLength(corner - 1e-6)->arcs().size(), 5u);
    EXPECT_EQ(skeleton->prunedByLength(corner + 1e-6)->arcs().size(), 1u);
}

TEST(SkeletonBranches, LeaveTheMiddleWhateverGoes) {
    const Skeleton square = skeletonOf({test::square(0, 0, 4)})->prunedByRatio(100);
    ASSERT_EQ(square->nodes().size(), 1u);
    EXPECT_EQ(square->deepestNode().clearance, 2);
    EXPECT_EQ(skeletonOf(kRectangle)->prunedByRatio(1e9)->nodes().size(), 1u);
}

TEST(SkeletonBranches, LeaveTheWayRoundAHole) {
    const Skeleton ring = skeletonOf({test::square(0, 0, 10), test::square(4, 4, 2)});
    const Skeleton pruned = ring->prunedByRatio(1e9);
    EXPECT_EQ(pruned->arcs().size(), pruned->nodes().size());
    EXPECT_GE(pruned->arcs().size(), 8u);
    for (const MzSkeletonNode& node : pruned->nodes()) EXPECT_GT(node.clearance, 1.9);
}

TEST(SkeletonBranches, HangOnTheEndThatBurnsLonger) {
    // A T whose stem is longer than its arms: the middle lies in the stem.
    const Skeleton t =
        skeletonOf({{{0, 0}, {1, 0}, {1, 20}, {4, 20}, {4, 21}, {-3, 21}, {-3, 20}, {0, 20}}});
    const detail::SkeletonBranches branches(*t);
    ASSERT_EQ(branches.middles().size(), 1u);
    const MzPoint middle = t->nodes()[branches.middles()[0]].point;
    EXPECT_NEAR(middle.x, 0.5, 0.6);
    EXPECT_LT(middle.y, 21);
    // What stays at a ratio of 4 is the whole of stem and arms, not their corners.
    const Skeleton pruned = t->prunedByRatio(4);
    double low = 1e9, left = 1e9, right = -1e9;
    for (const MzSkeletonNode& node : pruned->nodes()) {
        low = std::min(low, node.point.y);
        left = std::min(left, node.point.x);
        right = std::max(right, node.point.x);
    }
    EXPECT_NEAR(low, 0.5, 1e-6);
    EXPECT_NEAR(left, -2.5, 1e-6);
    EXPECT_NEAR(right, 3.5, 1e-6);
}

TEST(SkeletonBranches, LeaveRandomSkeletonsConnected) {
    test::Random random(20261121);
    for (int i = 0; i < 60; ++i) {
        const Skeleton skeleton = skeletonOf({test::starRing(random, 10 + i, 0.3)});
        std::size_t before = skeleton->arcs().size();
        for (const double ratio : {1.0, 1.2, 1.6, 3.0, 10.0}) {
            const Skeleton pruned = skeleton->prunedByRatio(ratio);
            EXPECT_LE(pruned->arcs().size(), before);
            before = pruned->arcs().size();
            EXPECT_EQ(pruned->arcs().size() + 1, pruned->nodes().size());
            detail::DisjointSets sets(pruned->nodes().size());
            for (const MzSkeletonArc& arc : pruned->arcs())
                EXPECT_TRUE(sets.join(arc.start, arc.end));
        }
    }
}

}  // namespace
}  // namespace mezalith
