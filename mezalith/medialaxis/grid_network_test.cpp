// SPDX-License-Identifier: MIT
#include "mezalith/medialaxis/disjoint_sets.hpp"
#include "mezalith/medialaxis/test_support.hpp"
#include <mezalith/medialaxis/grid_network.hpp>
#include <mezalith/medialaxis/outline_sweep.hpp>

#include <gtest/gtest.h>

namespace mezalith::detail {
namespace {

TEST(GridNetwork, OfASquareIsFourArcs) {
    const auto network = gridNetworkOf(test::outlineOf({test::square(0, 0, 4)}));
    ASSERT_TRUE(network);
    EXPECT_EQ(network->nodes.size(), 5u);
    EXPECT_EQ(network->arcs.size(), 4u);
}

TEST(GridNetwork, OfNothingIsNothing) {
    const auto network = gridNetworkOf({});
    ASSERT_TRUE(network);
    EXPECT_TRUE(network->nodes.empty());
    EXPECT_FALSE(deepestNodeOf({}));
}

TEST(GridNetwork, FindsTheDeepestNodeOfTheNetwork) {
    test::Random random(20261121);
    for (int i = 0; i < 50; ++i) {
        const GridOutline outline = test::outlineOf({test::starRing(random, 5 + i, 0.4)});
        const auto network = gridNetworkOf(outline);
        const auto deepest = deepestNodeOf(outline);
        ASSERT_TRUE(network && deepest);
        double greatest = 0;
        for (const GridNode& node : network->nodes) greatest = std::max(greatest, node.clearance);
        EXPECT_NEAR(deepest->clearance, greatest, 0.01);
    }
}

// With its sides the wrong way round, the inside has no end.
TEST(GridNetwork, GivesNoAnswerWhereTheDiagramDoesNotEnd) {
    GridOutline outline = test::outlineOf({test::plusRing(0.4)});
    for (GridSegment& s : outline.segments) s.isInteriorAbove = !s.isInteriorAbove;
    EXPECT_FALSE(gridNetworkOf(outline));
}

// Coordinates of 33 bits' difference, of which the builder makes a vertex far outside.
TEST(GridNetwork, GivesNoAnswerWhereTheDiagramIsWrong) {
    GridOutline outline;
    outline.segments = {
        {{-1476395008, -2013265920}, {671088640, 134217728}, false},
        {{-1476395008, -2013265920}, {1476395008, 671088640}, false},
        {{-1476395008, -1744830464}, {671088640, 134217728}, false},
        {{-1476395008, -1744830464}, {1476395008, 2013265920}, false},
        {{1476395008, 671088640}, {1476395008, 2013265920}, false},
    };
    ASSERT_TRUE(findSides(outline.segments).areFound);
    EXPECT_FALSE(gridNetworkOf(outline));
}

// The ring of which that is the outline.
TEST(GridNetwork, IsRightOnTheGridThatOutlinesAreBroughtOnto) {
    const GridOutline outline = test::outlineOf({{{8, 8}, {0, 0}, {10, 11}, {15, 11}, {1, 0}}});
    const auto network = gridNetworkOf(outline);
    ASSERT_TRUE(network);
    EXPECT_EQ(network->nodes.size(), 8u);
    double greatest = 0;
    for (const GridNode& node : network->nodes) greatest = std::max(greatest, node.clearance);
    EXPECT_NEAR(greatest * outline.step, 1.4998406393925605, 1e-8);
}

TEST(GridNetwork, JoinsDisjointSetsOnce) {
    DisjointSets sets(4);
    EXPECT_TRUE(sets.join(0, 1));
    EXPECT_TRUE(sets.join(3, 2));
    EXPECT_FALSE(sets.join(1, 0));
    EXPECT_NE(sets.find(0), sets.find(3));
    EXPECT_TRUE(sets.join(1, 2));
    EXPECT_EQ(sets.find(3), 0u);
}

}  // namespace
}  // namespace mezalith::detail
