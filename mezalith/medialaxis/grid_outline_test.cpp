// SPDX-License-Identifier: MIT
#include "mezalith/medialaxis/test_support.hpp"
#include <mezalith/medialaxis/grid_outline.hpp>

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith::detail {
namespace {

TEST(GridOutline, TurnIsExact) {
    constexpr std::int32_t kEnd = 2147483647;
    EXPECT_EQ(turn({0, 0}, {1, 0}, {1, 1}), 1);
    EXPECT_EQ(turn({0, 0}, {1, 0}, {1, -1}), -1);
    EXPECT_EQ(turn({-kEnd, -kEnd}, {0, 0}, {kEnd, kEnd}), 0);
    EXPECT_EQ(turn({-kEnd, -kEnd}, {kEnd, kEnd}, {kEnd - 1, kEnd}), 1);
    EXPECT_EQ(turn({-kEnd, -kEnd}, {kEnd - 1, kEnd - 2}, {kEnd, kEnd - 1}), 1);
    EXPECT_EQ(turn({-kEnd, -kEnd}, {kEnd - 2, kEnd - 1}, {kEnd - 1, kEnd}), -1);
}

TEST(GridOutline, KnowsWhatMeets) {
    const auto meeting = [](GridPoint a, GridPoint b, GridPoint c, GridPoint d) {
        return isMeeting({a, b, false}, {c, d, false});
    };
    EXPECT_TRUE(meeting({0, 0}, {4, 4}, {0, 4}, {4, 0}));
    EXPECT_TRUE(meeting({0, 0}, {4, 0}, {2, 0}, {4, 4}));
    EXPECT_TRUE(meeting({0, 0}, {4, 0}, {2, 0}, {6, 0}));
    EXPECT_TRUE(meeting({0, 0}, {4, 0}, {0, 0}, {4, 0}));
    EXPECT_FALSE(meeting({0, 0}, {4, 0}, {4, 0}, {6, 0}));
    EXPECT_FALSE(meeting({0, 0}, {4, 0}, {0, 0}, {4, 4}));
    EXPECT_FALSE(meeting({0, 0}, {4, 0}, {5, 0}, {6, 0}));
    EXPECT_FALSE(meeting({0, 0}, {4, 0}, {0, 1}, {4, 1}));
    EXPECT_FALSE(meeting({0, 0}, {4, 0}, {5, -1}, {6, 4}));
}

TEST(GridOutline, HasAtLeast2To30StepsOverThePolygon) {
    for (const double size : {1e-200, 1e-6, 0.99, 1.0, 3.0, 1e7, 1e308}) {
        const GridOutline outline = test::outlineOf({test::square(0, 0, size)});
        EXPECT_GE(size / outline.step, 0x1p30) << size;
        EXPECT_LE(size / outline.step, 0x1p31) << size;
        EXPECT_EQ(outline.segments.size(), 4u);
    }
}

TEST(GridOutline, KeepsWholeNumbersExact) {
    const GridOutline outline = test::outlineOf({{{1, 1}, {9, 1}, {9, 4}, {4, 9}}});
    int found = 0;
    for (const GridSegment& s : outline.segments) {
        const MzPoint p = outline.placeOf(s.low.x, s.low.y);
        found += (p.x == 1 && p.y == 1) || (p.x == 4 && p.y == 9) || (p.x == 9 && p.y == 1) ? 1 : 0;
    }
    EXPECT_EQ(found, 4);
}

TEST(GridOutline, LeavesOutWhatSaysNothing) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const test::Rings odd{{{0, 0},
                           {0, 0},
                           {2, 0},
                           {nan, 1},
                           {4, 0},
                           {4, 0},
                           {4, infinity},
                           {4, 4},
                           {2, 4},
                           {0, 4},
                           {0, 2},
                           {0, 0},
                           {0, 0}},
                          {{1, 1}, {2, 2}},
                          {}};
    EXPECT_EQ(test::outlineOf(odd).segments.size(), 4u);
}

TEST(GridOutline, DropsCornersThatAreStraightAtTheSeamToo) {
    EXPECT_EQ(test::outlineOf({{{2, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}, {1, 0}}}).segments.size(),
              4u);
    EXPECT_EQ(test::outlineOf({{{2, 0}, {4, 0}, {4, 4}, {0, 4}, {0, 0}, {2, 0}}}).segments.size(),
              4u);
}

TEST(GridOutline, OfNothingIsEmpty) {
    EXPECT_TRUE(gridOutlineOf(nullptr).segments.empty());
    EXPECT_TRUE(test::outlineOf({}).segments.empty());
    EXPECT_TRUE(test::outlineOf({{{1, 1}, {1, 1}, {1, 1}}}).segments.empty());
    EXPECT_TRUE(test::outlineOf({{{0, 0}, {4, 4}, {2, 2}, {0, 0}}}).segments.empty());
    EXPECT_TRUE(test::outlineOf({test::square(0, 0, 4), test::square(0, 0, 4)}).segments.empty());
}

TEST(GridOutline, PartsRingsThatCross) {
    EXPECT_EQ(test::outlineOf({{{0, 0}, {4, 4}, {4, 0}, {0, 4}}}).segments.size(), 6u);
    EXPECT_EQ(test::outlineOf({test::square(0, 0, 4), test::square(2, 1, 4)}).segments.size(), 12u);
    // A spike of no width.
    EXPECT_EQ(
        test::outlineOf({{{0, 0}, {4, 0}, {4, 2}, {8, 2}, {4, 2}, {4, 4}, {0, 4}}}).segments.size(),
        5u);
}

}  // namespace
}  // namespace mezalith::detail
