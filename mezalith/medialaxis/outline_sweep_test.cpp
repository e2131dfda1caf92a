// SPDX-License-Identifier: MIT
#include "mezalith/medialaxis/test_support.hpp"
#include <mezalith/medialaxis/outline_sweep.hpp>

#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::detail {
namespace {

GridSegment segment(GridPoint a, GridPoint b) { return {std::min(a, b), std::max(a, b), false}; }

GridSegments ringOf(const std::vector<GridPoint>& points) {
    GridSegments segments;
    for (std::size_t i = 0; i < points.size(); ++i) {
        segments.push_back(segment(points[i], points[(i + 1) % points.size()]));
    }
    return segments;
}

GridSegments together(GridSegments a, const GridSegments& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const GridSegments kSquare = ringOf({{0, 0}, {8, 0}, {8, 8}, {0, 8}});

bool areFound(GridSegments segments) { return findSides(segments).areFound; }

TEST(OutlineSweep, FindsTheInsideOfASquare) {
    GridSegments square = kSquare;
    const Sides sides = findSides(square);
    EXPECT_TRUE(sides.areFound);
    EXPECT_FALSE(sides.isTouching);
    EXPECT_TRUE(square[0].isInteriorAbove);   // the lower side
    EXPECT_TRUE(square[1].isInteriorAbove);   // the right one, upwards
    EXPECT_FALSE(square[2].isInteriorAbove);  // the upper one
    EXPECT_FALSE(square[3].isInteriorAbove);  // the left one
}

TEST(OutlineSweep, TurnsTheSidesOfAHoleRound) {
    GridSegments all = together(kSquare, ringOf({{2, 2}, {6, 2}, {4, 6}}));
    ASSERT_TRUE(findSides(all).areFound);
    EXPECT_FALSE(all[4].isInteriorAbove);
    EXPECT_TRUE(all[5].isInteriorAbove);
    EXPECT_TRUE(all[6].isInteriorAbove);
}

TEST(OutlineSweep, AllowsCommonEnds) {
    GridSegments touching = together(kSquare, ringOf({{0, 8}, {3, 5}, {5, 5}}));
    const Sides sides = findSides(touching);
    EXPECT_TRUE(sides.areFound);
    EXPECT_TRUE(sides.isTouching);
}

TEST(OutlineSweep, RefusesCrossings) {
    EXPECT_FALSE(areFound(ringOf({{0, 0}, {8, 8}, {8, 0}, {0, 8}})));
    EXPECT_FALSE(areFound(together(kSquare, ringOf({{4, 4}, {12, 4}, {12, 12}, {4, 12}}))));
}

TEST(OutlineSweep, RefusesEndsOnSegments) {
    EXPECT_FALSE(areFound(together(kSquare, ringOf({{0, 4}, {4, 3}, {4, 5}}))));
    EXPECT_FALSE(areFound(together(kSquare, ringOf({{8, 4}, {4, 3}, {4, 5}}))));
    EXPECT_FALSE(areFound(together(kSquare, ringOf({{4, 0}, {3, 3}, {5, 3}}))));
    EXPECT_FALSE(areFound(together(kSquare, ringOf({{4, 8}, {3, 3}, {5, 3}}))));
}

TEST(OutlineSweep, RefusesSegmentsAlongOneAnother) {
    EXPECT_FALSE(areFound(together(kSquare, kSquare)));
    EXPECT_FALSE(areFound(together(kSquare, ringOf({{2, 0}, {6, 0}, {4, 4}}))));
    EXPECT_FALSE(areFound(together(kSquare, ringOf({{0, 0}, {4, 0}, {4, 4}}))));
    EXPECT_FALSE(areFound(together(kSquare, ringOf({{8, 2}, {8, 6}, {12, 4}}))));
}

TEST(OutlineSweep, IsExactAtTheEndsOfTheGrid) {
    constexpr std::int32_t kEnd = 2147483647;
    // One step to the side of the diagonal, and on it.
    const GridSegments diagonal = ringOf({{-kEnd, -kEnd}, {kEnd, kEnd}, {-kEnd, kEnd}});
    EXPECT_TRUE(areFound(together(diagonal, ringOf({{1, 0}, {9, 2}, {9, 4}}))));
    EXPECT_FALSE(areFound(together(diagonal, ringOf({{1, 1}, {9, 2}, {9, 4}}))));
    EXPECT_FALSE(areFound(together(diagonal, ringOf({{0, 1}, {9, 2}, {9, 4}}))));
}

TEST(OutlineSweep, AgreesWithTestingAllPairs) {
    test::Random random(20261121);
    int clean = 0;
    for (int i = 0; i < 20000; ++i) {
        GridSegments segments;
        const int rings = 1 + static_cast<int>(random() % 2);
        for (int ring = 0; ring < rings; ++ring) {
            std::vector<GridPoint> points(3 + random() % 3);
            for (GridPoint& p : points) {
                p = {static_cast<std::int32_t>(random() % 9),
                     static_cast<std::int32_t>(random() % 9)};
            }
            const GridSegments more = ringOf(points);
            segments.insert(segments.end(), more.begin(), more.end());
        }
        std::erase_if(segments, [](const GridSegment& s) { return s.low == s.high; });
        bool meeting = false;
        for (std::size_t a = 0; a < segments.size(); ++a) {
            for (std::size_t b = 0; b < a; ++b) {
                meeting = meeting || isMeeting(segments[a], segments[b]);
            }
        }
        clean += meeting ? 0 : 1;
        ASSERT_EQ(findSides(segments).areFound, !meeting) << i;
    }
    EXPECT_GT(clean, 1000);
}

}  // namespace
}  // namespace mezalith::detail
