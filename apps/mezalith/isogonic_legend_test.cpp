// SPDX-License-Identifier: MIT
#include "apps/mezalith/isogonic_legend.hpp"

#include <mezalith/platform/recording_port.hpp>

#include <algorithm>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

struct Drawn {
    std::ptrdiff_t pieces;
    std::ptrdiff_t texts;
    std::string all;
};

Drawn drawn(const std::vector<double>& levels, double width) {
    platform::RecordingPort port;
    drawLegend(port, width, 1, "Title", levels, IsogonicStyle(levels));
    const auto count = [&](const std::string& start) {
        return std::ranges::count_if(
            port.lines(), [&](const std::string& line) { return line.starts_with(start); });
    };
    return {count("drawPath 2"), count("drawPath 0"), port.text()};
}

TEST(IsogonicLegend, HasALineAndAnAngleForEachLevel) {
    const Drawn legend = drawn({-20, -10, 0, 10, 20}, 600);
    EXPECT_EQ(legend.pieces, 5);
    EXPECT_EQ(legend.texts, 1 + 5);
}

TEST(IsogonicLegend, WritesFewerAnglesWhereThereIsLittleRoom) {
    const std::vector<double> levels = isogonicLevels(-180, 180, std::nullopt);
    const Drawn legend = drawn(levels, 400);
    EXPECT_EQ(legend.pieces, 20);
    EXPECT_EQ(legend.texts, 1 + 10);
}

TEST(IsogonicLegend, IsATitleAloneWithoutLevels) {
    const Drawn legend = drawn({}, 600);
    EXPECT_EQ(legend.pieces, 0);
    EXPECT_EQ(legend.texts, 1);
}

TEST(IsogonicLegend, GrowsWithTheScaleFactor) {
    platform::RecordingPort port;
    drawLegend(port, 600, 2, "Title", {0}, IsogonicStyle({0}));
    EXPECT_NE(port.text().find("scale 2 2\n"), std::string::npos);
    EXPECT_EQ(port.lines().front(), "saveState");
    EXPECT_EQ(port.lines().back(), "restoreState");
}

}  // namespace
}  // namespace mezalith::app
