// SPDX-License-Identifier: MIT
#include "apps/mezalith/caption.hpp"

#include <mezalith/platform/recording_port.hpp>

#include <algorithm>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

using platform::RecordingPort;

std::ptrdiff_t linesWith(const RecordingPort& port, const std::string& text) {
    return std::ranges::count_if(port.lines(),
                                 [&](const std::string& line) { return line.starts_with(text); });
}

TEST(Caption, HasABoxAroundItsCentre) {
    const MzRect box = captionBox({.text = "180", .centre = {100, 50}, .size = 20});
    EXPECT_NEAR(box.origin.x + box.size.width / 2, 100, 1e-9);
    EXPECT_NEAR(box.origin.y + box.size.height / 2, 50, 1e-9);
    EXPECT_GT(box.size.width, 20);
    EXPECT_LT(box.size.width, 80);
    EXPECT_GT(box.size.height, 15);
    EXPECT_LT(box.size.height, 40);
    EXPECT_GT(captionBox({.text = "1800", .size = 20}).size.width, box.size.width);
}

TEST(Caption, IsFilledInItsColourAboveItsHalo) {
    const auto color = platform::Color::colorWithDeviceRed(1, 0, 0.5, 1);
    RecordingPort plain;
    drawCaption(plain, {.text = "8", .color = color});
    EXPECT_EQ(linesWith(plain, "setFillColor 1 0 0.5 1"), 1);
    EXPECT_EQ(linesWith(plain, "drawPath"), 1);
    RecordingPort halo;
    drawCaption(halo, {.text = "8", .color = color, .halo = platform::Color::whiteColor()});
    EXPECT_EQ(linesWith(halo, "setStrokeColor 1 1 1 1"), 1);
    EXPECT_EQ(linesWith(halo, "drawPath 2"), 1);
    EXPECT_EQ(linesWith(halo, "drawPath"), 2);
}

TEST(Caption, LeavesThePortAsItWas) {
    RecordingPort port;
    drawCaption(port, {.text = "8", .halo = platform::Color::whiteColor()});
    EXPECT_EQ(port.lines().front(), "saveState");
    EXPECT_EQ(port.lines().back(), "restoreState");
}

}  // namespace
}  // namespace mezalith::app
