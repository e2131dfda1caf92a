// SPDX-License-Identifier: MIT
#include "host/longitude_cut.hpp"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

using Points = std::vector<MzPoint>;
constexpr double kInfinity = std::numeric_limits<double>::infinity();

void expectEqual(const Points& points, const Points& wanted) {
    ASSERT_EQ(points.size(), wanted.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        EXPECT_EQ(points[i].x, wanted[i].x) << i;
        EXPECT_EQ(points[i].y, wanted[i].y) << i;
    }
}

double areaOf(const Points& ring) {
    double twice = 0;
    for (std::size_t i = 1; i < ring.size(); ++i) {
        twice += ring[i - 1].x * ring[i].y - ring[i].x * ring[i - 1].y;
    }
    return std::abs(twice) / 2;
}

TEST(LineBetween, KeepsALineInside) {
    const Points line{{0, 0}, {1, 5}, {2, 0}};
    const auto pieces = lineBetween(line, -1, 3);
    ASSERT_EQ(pieces.size(), 1u);
    expectEqual(pieces[0], line);
}

TEST(LineBetween, CutsAtBothLimits) {
    const auto pieces = lineBetween(Points{{-10, 0}, {10, 20}}, -5, 5);
    ASSERT_EQ(pieces.size(), 1u);
    expectEqual(pieces[0], {{-5, 5}, {5, 15}});
}

TEST(LineBetween, GivesOnePieceForEachVisit) {
    const auto pieces = lineBetween(Points{{0, 0}, {4, 0}, {4, 2}, {0, 2}}, -1, 2);
    ASSERT_EQ(pieces.size(), 2u);
    expectEqual(pieces[0], {{0, 0}, {2, 0}});
    expectEqual(pieces[1], {{2, 2}, {0, 2}});
}

TEST(LineBetween, IsEmptyOutsideAndForSinglePoints) {
    EXPECT_TRUE(lineBetween(Points{{5, 0}, {6, 0}}, 0, 1).empty());
    EXPECT_TRUE(lineBetween(Points{{0, 0}}, 0, 1).empty());
    EXPECT_TRUE(lineBetween(Points{}, 0, 1).empty());
}

TEST(LineBetween, LeavesOutWhatIsNotFinite) {
    const auto pieces = lineBetween(Points{{0, 0}, {std::nan(""), 1}, {1, 1}, {kInfinity, 0}},
                                    -kInfinity, kInfinity);
    ASSERT_EQ(pieces.size(), 1u);
    expectEqual(pieces[0], {{0, 0}, {1, 1}});
}

TEST(RingBetween, KeepsARingInsideClosed) {
    const Points ring{{0, 0}, {2, 0}, {2, 2}, {0, 0}};
    const Points closed{{2, 2}, {0, 0}, {2, 0}, {2, 2}};
    expectEqual(ringBetween(ring, -kInfinity, kInfinity), closed);
    expectEqual(ringBetween(Points{{0, 0}, {2, 0}, {2, 2}}, -1, 3), closed);
}

TEST(RingBetween, CutsASquareToItsMiddle) {
    const Points cut = ringBetween(Points{{0, 0}, {9, 0}, {9, 9}, {0, 9}, {0, 0}}, 3, 6);
    EXPECT_EQ(areaOf(cut), 27);
    for (const MzPoint& point : cut) {
        EXPECT_GE(point.x, 3);
        EXPECT_LE(point.x, 6);
    }
}

TEST(RingBetween, KeepsTheAreaOfACombInside) {
    // Two teeth reach west of the limit; what hangs together only there stays joined along it.
    const Points comb{{0, 0}, {10, 0}, {10, 5}, {0, 5}, {0, 4}, {8, 4}, {8, 1}, {0, 1}, {0, 0}};
    EXPECT_EQ(areaOf(ringBetween(comb, 5, 20)), 5 + 5 + 6);
}

TEST(RingBetween, StepsAlongTheLimits) {
    const Points cut = ringBetween(Points{{0, 0.5}, {9, 0.5}, {9, 3}, {0, 3}, {0, 0.5}}, 5, 20);
    expectEqual(cut, {{5, 3}, {5, 2}, {5, 1}, {5, 0.5}, {9, 0.5}, {9, 3}, {5, 3}});
}

TEST(RingBetween, StepsNoFartherThanThePoles) {
    const Points cut = ringBetween(Points{{0, -1e300}, {9, -1e300}, {9, 1e300}, {0, 1e300}}, 5, 20);
    EXPECT_EQ(cut.size(), 5u + 179u);
}

TEST(RingBetween, IsEmptyOutside) {
    EXPECT_TRUE(ringBetween(Points{{0, 0}, {1, 0}, {1, 1}, {0, 0}}, 5, 6).empty());
    EXPECT_TRUE(ringBetween(Points{}, 5, 6).empty());
    EXPECT_TRUE(ringBetween(Points{{5.5, 0}, {5.6, 0}}, 5, 6).empty());
}

}  // namespace
}  // namespace mezalith::host
