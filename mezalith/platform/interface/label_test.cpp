// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface/label.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

TEST(Label, IsAsLargeAsItsText) {
    const TextStyle style{.size = 20};
    const Label label("Oslo", style, Color::blackColor());
    EXPECT_TRUE(MzEqualRects(label.frame(), {{0, 0}, textOutline("Oslo", style).size}));
}

TEST(Label, FillsItsOutlinesInItsColor) {
    Label label("Oslo", {}, Color::colorWithText("#ff0000"));
    RecordingPort port;
    const GraphicsContext context(&port);
    label.drawRect(label.bounds());
    ASSERT_GT(port.lines().size(), 10U);
    EXPECT_EQ(port.lines()[0], "setFillColor 1 0 0 1");
    EXPECT_EQ(port.lines()[1], "beginPath");
    EXPECT_EQ(port.lines().back(), "drawPath 0");
}

TEST(Label, DrawsNothingWithoutAColorOrAPort) {
    Label visible("Oslo", {}, Color::blackColor());
    visible.drawRect(visible.bounds());
    const GraphicsContext nowhere(nullptr);
    visible.drawRect(visible.bounds());
    Label invisible("Oslo", {}, nullptr);
    RecordingPort port;
    const GraphicsContext context(&port);
    invisible.drawRect(invisible.bounds());
    EXPECT_TRUE(port.lines().empty());
    EXPECT_GT(invisible.frame().size.width, 0);
}

}  // namespace
}  // namespace mezalith::platform
