// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface/button.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <algorithm>
#include <memory>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

TEST(Button, FramesItsTitle) {
    const Button button("More", {}, {});
    const MzSize title = textOutline("More", {}).size;
    ASSERT_EQ(button.subviews().size(), 1U);
    EXPECT_TRUE(MzEqualRects(button.frame(), {{0, 0}, {title.width + 18, title.height + 6}}));
    EXPECT_TRUE(MzEqualRects(button.subviews()[0]->frame(), {{9, 3}, title}));
}

TEST(Button, DrawsItsFrame) {
    Button button("More", {}, {});
    button.drawRect(button.bounds());
    RecordingPort port;
    const GraphicsContext context(&port);
    button.drawRect(button.bounds());
    EXPECT_NE(std::ranges::find(port.lines(), "moveToPoint 0.5 0.5"), port.lines().end());
    EXPECT_EQ(port.lines().back(), "restoreState");
}

TEST(Button, IsClickedByThePrimaryButton) {
    int clicks = 0;
    Button button("More", {}, [&] { ++clicks; });
    button.mouseDown({.buttonNumber = 0});
    button.mouseDown({.buttonNumber = 1});
    button.performClick();
    EXPECT_EQ(clicks, 2);
    const Button idle("More", {}, {});
    idle.performClick();
}

TEST(Button, MayEndWithItsClick) {
    std::unique_ptr<Button> button;
    const auto witness = std::make_shared<int>(0);
    button = std::make_unique<Button>("Close", TextStyle{}, [&button, witness] {
        button.reset();
        ++*witness;
    });
    button->performClick();
    EXPECT_EQ(button, nullptr);
    EXPECT_EQ(*witness, 1);
}

}  // namespace
}  // namespace mezalith::platform
