// SPDX-License-Identifier: MIT
#include "host/zero_lines.hpp"

#include <cmath>
#include <functional>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

using Function = std::function<double(double, double)>;

double everywhere(double, double) { return 1; }

/// The square from -2 to 2, in steps of 4 / `cells`.
SampledGrid sampled(std::size_t cells, const Function& value, const Function& side = everywhere) {
    SampledGrid grid;
    for (std::size_t i = 0; i <= cells; ++i) {
        grid.xs.push_back(-2 + 4.0 * static_cast<double>(i) / static_cast<double>(cells));
    }
    grid.ys = grid.xs;
    for (const double y : grid.ys) {
        for (const double x : grid.xs) {
            grid.values.push_back(value(x, y));
            grid.sides.push_back(side(x, y));
        }
    }
    return grid;
}

TEST(ZeroLines, RunFromEdgeToEdge) {
    const auto lines = zeroLines(sampled(8, [](double x, double y) { return x - y / 4 - 0.1; }));
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_GE(lines[0].size(), 9U);
    EXPECT_EQ(std::abs(lines[0].front().y), 2);
    EXPECT_EQ(lines[0].back().y, -lines[0].front().y);
    for (const MzPoint p : lines[0]) EXPECT_NEAR(p.x - p.y / 4, 0.1, 1e-12);
}

TEST(ZeroLines, CloseToRings) {
    const auto lines = zeroLines(sampled(64, [](double x, double y) { return x * x + y * y - 1; }));
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_TRUE(MzEqualPoints(lines[0].front(), lines[0].back()));
    EXPECT_GT(lines[0].size(), 100U);
    double area = 0;
    for (std::size_t i = 1; i < lines[0].size(); ++i) {
        const MzPoint a = lines[0][i - 1], b = lines[0][i];
        area += (a.x * b.y - b.x * a.y) / 2;
        EXPECT_NEAR(std::hypot(b.x, b.y), 1, 1e-3);
    }
    EXPECT_NEAR(std::abs(area), 3.14159, 0.01);
}

TEST(ZeroLines, EndWhereTheSideTurns) {
    const auto lines = zeroLines(sampled(
        32, [](double x, double y) { return x * x + y * y - 1; },
        [](double x, double) { return x; }));
    ASSERT_EQ(lines.size(), 1U);
    for (const MzPoint p : lines[0]) EXPECT_GT(p.x, 0);
    EXPECT_NEAR(std::abs(lines[0].front().y), 1, 0.02);
    EXPECT_NEAR(lines[0].front().y, -lines[0].back().y, 0.02);
}

TEST(ZeroLines, PassEachOtherInASaddle) {
    // Above the saddle's mean the lines run one way, below it the other.
    const auto saddle = [](double shift) {
        return zeroLines(sampled(1, [shift](double x, double y) { return x * y + shift; }));
    };
    for (const double shift : {0.5, -0.5}) {
        const auto lines = saddle(shift);
        ASSERT_EQ(lines.size(), 2U);
        for (const auto& line : lines) {
            ASSERT_EQ(line.size(), 2U);
            const double middle = (line[0].x + line[1].x) * (line[0].y + line[1].y);
            EXPECT_EQ(middle<0, shift> 0);
        }
    }
}

TEST(ZeroLines, StopAtWhatIsNotFinite) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const auto lines = zeroLines(
        sampled(9, [nan](double x, double y) { return std::abs(x) < 0.3 ? nan : y - 0.1; }));
    ASSERT_EQ(lines.size(), 2U);
    for (const auto& line : lines) EXPECT_EQ(line.size(), 4U);
}

TEST(ZeroLines, AreNotThereWithoutASignOrAGrid) {
    EXPECT_TRUE(zeroLines(sampled(4, everywhere)).empty());
    EXPECT_TRUE(zeroLines({}).empty());
    EXPECT_TRUE(zeroLines({{0, 1}, {0, 1}, {1, -1, 1}, {1, 1, 1, 1}}).empty());
    EXPECT_TRUE(zeroLines({{0, 1}, {0}, {1, -1}, {1, 1}}).empty());
}

}  // namespace
}  // namespace mezalith::host
