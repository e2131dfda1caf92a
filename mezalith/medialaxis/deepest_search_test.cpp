// SPDX-License-Identifier: MIT
#include "mezalith/medialaxis/test_support.hpp"
#include <mezalith/medialaxis/deepest_search.hpp>
#include <mezalith/medialaxis/grid_network.hpp>

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

namespace mezalith::detail {
namespace {

double deepestOfNetwork(const GridOutline& outline) {
    double greatest = 0;
    const auto network = gridNetworkOf(outline);
    for (const GridNode& node : network.value_or(GridNetwork{}).nodes) {
        greatest = std::max(greatest, node.clearance);
    }
    return greatest;
}

TEST(DeepestSearch, OfNothingFindsNothing) { EXPECT_TRUE(DeepestSearch({}).cells().empty()); }

TEST(DeepestSearch, LeavesSmallSquaresAroundTheMiddleOfASquare) {
    const GridOutline outline = test::outlineOf({test::square(0, 0, 4)});
    const DeepestSearch search(outline.segments);
    ASSERT_FALSE(search.cells().empty());
    for (const DeepCell& cell : search.cells()) {
        EXPECT_TRUE(cell.isInside);
        EXPECT_LE(cell.half, cell.clearance / 1024);
        EXPECT_EQ(search.segmentsOf(cell).size(), 4u);
    }
    EXPECT_EQ(search.segments().size(), 4u);
}

TEST(DeepestSearch, KnowsClearancesWithinItsSquaresOnly) {
    const GridOutline outline = test::outlineOf({test::square(0, 0, 4)});
    const DeepestSearch search(outline.segments);
    const DeepCell& cell = search.cells().front();
    const auto clearance = search.clearanceAt(cell.middle);
    ASSERT_TRUE(clearance);
    EXPECT_EQ(*clearance, cell.clearance);
    EXPECT_FALSE(search.clearanceAt({cell.middle.x + 0x1p20, cell.middle.y + 0x1p29}));
}

TEST(DeepestSearch, KeepsTheDeepestNodeInItsSquares) {
    test::Random random(20261121);
    for (int i = 0; i < 300; ++i) {
        const GridOutline outline =
            test::outlineOf({test::starRing(random, 5 + i, 0.2), test::starRing(random, 4, 0.02)});
        const auto found = deepestNodeOf(outline);
        ASSERT_TRUE(found) << i;
        const double deepest = deepestOfNetwork(outline);
        ASSERT_NEAR(found->clearance, deepest, 1) << i;
    }
}

TEST(DeepestSearch, LooksAtFewSegmentsOfMany) {
    test::Random random(7);
    const GridOutline outline = test::outlineOf({test::starRing(random, 2000, 0.5)});
    const DeepestSearch search(outline.segments);
    EXPECT_FALSE(search.cells().empty());
    EXPECT_LT(search.segments().size(), 40u);
}

// Everywhere along a canal is as deep.
TEST(DeepestSearch, GivesUpWhereThereIsNoSinglePlace) {
    test::Points canal;
    for (int i = 0; i <= 400; ++i) canal.push_back({i * 1.0, 0.001 * (i % 2)});
    for (int i = 400; i >= 0; --i) canal.push_back({i * 1.0, 1 + 0.001 * (i % 2)});
    const GridOutline outline = test::outlineOf({canal});
    const auto found = deepestNodeOf(outline);
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->clearance, deepestOfNetwork(outline), 1);
}

TEST(DeepestSearch, StaysOutOfHoles) {
    const GridOutline outline = test::outlineOf({test::square(0, 0, 10), test::square(3, 3, 6)});
    const auto found = deepestNodeOf(outline);
    ASSERT_TRUE(found);
    EXPECT_NEAR(found->clearance * outline.step, deepestOfNetwork(outline) * outline.step, 1e-8);
    const MzPoint place = outline.placeOf(found->x, found->y);
    EXPECT_TRUE(place.x < 3 || place.y < 3) << place.x << ' ' << place.y;
}

}  // namespace
}  // namespace mezalith::detail
