// SPDX-License-Identifier: MIT
#include <mezalith/platform/path_dashing.hpp>

#include <array>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr DeviceBox everything{-1e6, -1e6, 1e6, 1e6};

using Lengths = std::vector<double>;

/// The pieces of a path along the x axis as pairs of from and to.
Lengths rangesOf(const DevicePath& path) {
    Lengths ranges;
    for (const DevicePolyline& line : flattenedPath(path, 1, everything)) {
        ranges.push_back(line.points.front().x);
        ranges.push_back(line.points.back().x);
    }
    return ranges;
}

Lengths dashesOfLine(double from, double to, const DashPattern& pattern, const DeviceBox& box) {
    const std::array lines{DevicePolyline{{{from, 0}, {to, 0}}, false}};
    return rangesOf(dashedPath(lines, pattern, box));
}

void expectNear(const Lengths& actual, const Lengths& expected, double tolerance = 1e-9) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
        EXPECT_NEAR(actual[i], expected[i], tolerance) << i;
    }
}

TEST(MakeDashPattern, ScalesLengthsAndPhase) {
    const DashPattern pattern = makeDashPattern(1, std::array{4.0, 2.0}, 3);
    EXPECT_EQ(pattern.lengths, (Lengths{12, 6}));
    EXPECT_EQ(pattern.phase, 3);
    EXPECT_EQ(dashPeriod(pattern), 18);
}

TEST(MakeDashPattern, RepeatsAListOfOddLength) {
    EXPECT_EQ(makeDashPattern(0, std::array{1.0, 2.0, 3.0}, 1).lengths,
              (Lengths{1, 2, 3, 1, 2, 3}));
}

TEST(MakeDashPattern, IsSolidForLengthsThatAreNone) {
    for (const Lengths& lengths : {Lengths{}, Lengths{0, 0}, Lengths{4, -1},
                                   Lengths{std::nan(""), 2}, Lengths{infinity, 2}, Lengths{0}}) {
        EXPECT_TRUE(makeDashPattern(0, lengths, 1).isSolid());
    }
    EXPECT_TRUE(makeDashPattern(0, std::array{1e-300, 1e-300}, 1e-300).isSolid());
}

TEST(MakeDashPattern, BringsThePhaseIntoOnePeriod) {
    const std::array lengths{4.0, 2.0};
    EXPECT_EQ(makeDashPattern(13, lengths, 1).phase, 1);
    EXPECT_EQ(makeDashPattern(-1, lengths, 1).phase, 5);
    EXPECT_EQ(makeDashPattern(6, lengths, 1).phase, 0);
    EXPECT_EQ(makeDashPattern(infinity, lengths, 1).phase, 0);
    EXPECT_EQ(makeDashPattern(std::nan(""), lengths, 1).phase, 0);
}

TEST(MakeDashPattern, CutsEndlessLengthsAfterWhatCanBeSeen) {
    const DashPattern long1 = makeDashPattern(1e300 - 1e290, std::array{1e300, 5.0}, 1);
    EXPECT_EQ(long1.lengths, (Lengths{longestDash, 5}));
    const DashPattern nearEnd = makeDashPattern(1e20 - 32768, std::array{1e20, 5.0}, 1);
    EXPECT_EQ(nearEnd.phase, longestDash - 32768);
    const DashPattern overflown = makeDashPattern(3, std::array{1e308, 1e308}, 10);
    EXPECT_EQ(overflown.lengths, (Lengths{longestDash, longestDash}));
    EXPECT_EQ(overflown.phase, 0);
}

TEST(DashedPath, PaintsEverySecondLength) {
    const DashPattern pattern = makeDashPattern(0, std::array{4.0, 1.0}, 1);
    expectNear(dashesOfLine(0, 12, pattern, everything), {0, 4, 5, 9, 10, 12});
}

TEST(DashedPath, BeginsAtThePhase) {
    expectNear(dashesOfLine(0, 8, makeDashPattern(3, std::array{4.0, 1.0}, 1), everything),
               {0, 1, 2, 6, 7, 8});
    expectNear(dashesOfLine(0, 8, makeDashPattern(4.5, std::array{4.0, 1.0}, 1), everything),
               {0.5, 4.5, 5.5, 8});
}

TEST(DashedPath, GoesAroundCorners) {
    const std::array lines{DevicePolyline{{{0, 0}, {3, 0}, {3, 3}}, false}};
    const auto pieces = flattenedPath(
        dashedPath(lines, makeDashPattern(0, std::array{5.0, 10.0}, 1), everything), 1, everything);
    ASSERT_EQ(pieces.size(), 1);
    ASSERT_EQ(pieces[0].points.size(), 3);
    EXPECT_EQ(pieces[0].points[1].x, 3);
    EXPECT_NEAR(pieces[0].points[2].y, 2, 1e-12);
}

TEST(DashedPath, BeginsAnewWithEachSubpath) {
    const std::array lines{DevicePolyline{{{0, 0}, {6, 0}}, false},
                           DevicePolyline{{{100, 0}, {106, 0}}, false}};
    expectNear(rangesOf(dashedPath(lines, makeDashPattern(0, std::array{4.0, 1.0}, 1), everything)),
               {0, 4, 5, 6, 100, 104, 105, 106});
}

TEST(DashedPath, JoinsTheEndsOfARing) {
    const std::array ring{DevicePolyline{{{0, 0}, {4, 0}, {4, 4}, {0, 4}}, true}};
    const auto pieces = flattenedPath(
        dashedPath(ring, makeDashPattern(0, std::array{2.0, 3.0}, 1), everything), 1, everything);
    ASSERT_EQ(pieces.size(), 3);
    const auto& joined = pieces.back().points;
    ASSERT_EQ(joined.size(), 3);
    EXPECT_NEAR(joined[0].y, 1, 1e-12);
    EXPECT_EQ(joined[1].x, 0);
    EXPECT_EQ(joined[1].y, 0);
    EXPECT_NEAR(joined[2].x, 2, 1e-12);
}

TEST(DashedPath, ADashLongerThanARingClosesIt) {
    const std::array ring{DevicePolyline{{{0, 0}, {4, 0}, {4, 4}, {0, 4}}, true}};
    const auto pieces = flattenedPath(
        dashedPath(ring, makeDashPattern(0, std::array{20.0, 3.0}, 1), everything), 1, everything);
    ASSERT_EQ(pieces.size(), 1);
    EXPECT_TRUE(pieces[0].isClosed);
    EXPECT_EQ(pieces[0].points.size(), 4);
}

TEST(DashedPath, PaintsDotsForZeroLengths) {
    expectNear(dashesOfLine(0, 7, makeDashPattern(0, std::array{0.0, 3.0}, 1), everything),
               {0, 0, 3, 3, 6, 6});
}

TEST(DashedPath, SkipsWhatIsOutsideWithThePhaseKept) {
    const DashPattern pattern = makeDashPattern(1, std::array{4.0, 2.0}, 1);
    const DeviceBox window{1000.5, -1, 1013, 1};
    Lengths expected;
    for (double start = -1; start < 1013; start += 6) {
        if (start + 4 > 1000.5) {
            expected.push_back(std::max(start, 1000.5));
            expected.push_back(std::min(start + 4, 1013.0));
        }
    }
    expectNear(dashesOfLine(0, 1e6, pattern, window), expected, 1e-8);
}

TEST(DashedPath, TakesNoTimeForLinesOfAnyLength) {
    const DashPattern pattern = makeDashPattern(0, std::array{0.5, 0.5}, 1);
    const Lengths ranges = dashesOfLine(-1e300, 1e300, pattern, {0, -1, 100, 1});
    EXPECT_LE(ranges.size(), 2 * 102);
    EXPECT_TRUE(dashesOfLine(1e8, 1e300, pattern, {0, -1, 100, 1}).empty());
}

}  // namespace
}  // namespace mezalith::platform
