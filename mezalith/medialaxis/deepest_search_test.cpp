// SPDX-License-Identifier: MIT
#include "mezalith/medialaxis/test_support.hpp"
#include <mezalith/medialaxis/deepest_search.hpp>
#include <mezalith/medialaxis/grid_network.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>

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
    for (int i = 0; i < 300; i += 3) {
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

// One room is as deep as the other, and beside each a point is found that lies outside.
TEST(DeepestSearch, GivesUpOnManyRoomsBesideALongOutline) {
    test::Rings rings;
    for (int i = 1; i < 1024; ++i) rings.push_back(test::square(1.3 * (i % 32), 1.3 * (i / 32), 1));
    test::Points fringe{{0, 0.001}, {0, 0}, {0.001, 0}};
    constexpr int kPoints = 64000;
    for (int i = 1; i < kPoints; ++i) {
        fringe.push_back({i % 2 == 0 ? 0.001 : 0.00099, 0.001 * i / kPoints});
    }
    rings.push_back(fringe);
    const GridOutline outline = test::outlineOf(rings);
    const DeepestSearch search(outline.segments);
    EXPECT_TRUE(search.cells().empty());
    EXPECT_TRUE(search.segments().empty());
    EXPECT_FALSE(search.clearanceAt({0, 0}));
}

// From as wide as long to thinner than a step, also along diagonals, where squares touch the
// deepest point's circle with a corner.
TEST(DeepestSearch, FindsTheDeepestNodeOfThinAndTurnedOutlines) {
    test::Random random(20261121);
    for (int i = 0; i < 300; ++i) {
        const double angle = i % 3 == 0 ? std::numbers::pi / 4 : i % 3 == 1 ? std::atan(0.5) : 0;
        const double c = std::cos(angle), s = std::sin(angle), thin = std::ldexp(1.0, -(i % 34));
        test::Points ring = test::starRing(random, 5 + i % 9, 0.3);
        for (MzPoint& p : ring) p = {c * p.x - s * thin * p.y, s * p.x + c * thin * p.y};
        const GridOutline outline = test::outlineOf({ring});
        const auto found = deepestNodeOf(outline);
        const double deepest = deepestOfNetwork(outline);
        ASSERT_NEAR(found ? found->clearance : 0, deepest, 0.1) << i;
    }
}

TEST(DeepestSearch, ReachesTheEndsOfTheGrid) {
    constexpr std::int32_t kEnd = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kStart = std::numeric_limits<std::int32_t>::min();
    const GridSegments segments{{{kStart, kStart}, {kStart, kEnd}, false},
                                {{kStart, kStart}, {kEnd, kStart}, true},
                                {{kStart, kEnd}, {kEnd, kEnd}, false},
                                {{kEnd, kStart}, {kEnd, kEnd}, true}};
    const DeepestSearch search(segments);
    ASSERT_FALSE(search.cells().empty());
    EXPECT_EQ(search.clearanceAt({-0.5, -0.5}), 0x1p31 - 0.5);
    double deepest = 0;
    for (const DeepCell& cell : search.cells()) deepest = std::max(deepest, cell.clearance);
    EXPECT_NEAR(deepest, 0x1p31 - 0.5, 0x1p31 / 1024);
}

// Nothing that a polygon can have, but an end there must be.
TEST(DeepestSearch, EndsOnSegmentsThatEncloseNothing) {
    const GridSegment upright{{0, 0}, {0, 9}, true}, level{{0, 0}, {1 << 30, 0}, true};
    const GridSegment needle{{0, 0}, {1 << 30, 1}, false}, nothing{{5, 5}, {5, 5}, true};
    for (const GridSegments& segments : {GridSegments{upright},
                                         {level},
                                         {upright, level},
                                         {level, needle},
                                         {level, level},
                                         {nothing},
                                         {nothing, upright}}) {
        const DeepestSearch search(segments);
        for (const DeepCell& cell : search.cells()) EXPECT_GT(cell.count, 0u);
        EXPECT_LE(search.segments().size(), segments.size());
    }
}

TEST(DeepestSearch, PassesOverSegmentsOfNoLength) {
    GridOutline outline = test::outlineOf({test::square(0, 0, 4)});
    const auto before = deepestNodeOf(outline);
    outline.segments.push_back({{7, 7}, {7, 7}, true});
    const DeepestSearch search(outline.segments);
    ASSERT_FALSE(search.cells().empty());
    EXPECT_EQ(search.segments().size(), 4u);
    ASSERT_TRUE(before);
    EXPECT_EQ(search.clearanceAt({before->x, before->y}), before->clearance);
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
