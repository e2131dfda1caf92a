// SPDX-License-Identifier: MIT
#include <mezalith/platform/recording_port.hpp>
#include <mezalith/style/bubble_view.hpp>

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Lines = std::vector<std::string>;

TEST(BubbleView, FillsTheBubbleInWhiteAndStrokesItInDarkGrey) {
    MzBubbleView view({{0, 0}, {222, 147}});
    view.setBubbleRect({{1, 26}, {220, 120}});
    view.setStemOrigin({25, 0});
    platform::RecordingPort port;
    const platform::GraphicsContext context(&port);
    view.drawRect({{3, 4}, {5, 6}});
    const Lines bubble{"beginPath",
                       "moveToPoint 111 146",
                       "addArcToPoint 1 146 1 26 15",
                       "addArcToPoint 1 26 50 26 15",
                       "addLineToPoint 50 26",
                       "addLineToPoint 25 0",
                       "addLineToPoint 80 26",
                       "addArcToPoint 80 26 221 26 15",
                       "addArcToPoint 221 26 221 146 15",
                       "addArcToPoint 221 146 1 146 15",
                       "closeSubpath"};
    Lines expected{"setStrokeColor 0.3333333333333333 0.3333333333333333 0.3333333333333333 1",
                   "setFillColor 1 1 1 1"};
    expected.insert(expected.end(), bubble.begin(), bubble.end());
    expected.insert(expected.end(), {"drawPath 0", "saveState", "setLineWidth 1", "setLineCap 0",
                                     "setLineJoin 0", "setLineDash 0 solid"});
    expected.insert(expected.end(), bubble.begin(), bubble.end());
    expected.insert(expected.end(), {"drawPath 2", "restoreState"});
    EXPECT_EQ(port.lines(), expected);
}

TEST(BubbleView, DrawsNoBodyAtFirst) {
    MzBubbleView view;
    EXPECT_TRUE(MzEqualRects(view.bubbleRect(), MzZeroRect));
    EXPECT_TRUE(MzEqualPoints(view.stemOrigin(), {0, 0}));
    platform::RecordingPort port;
    const platform::GraphicsContext context(&port);
    view.drawRect(view.bounds());
    EXPECT_EQ(port.lines().size(), 2U);
}

TEST(BubbleView, DrawsNothingWithoutAPort) {
    MzBubbleView view({{0, 0}, {222, 147}});
    view.setBubbleRect({{1, 26}, {220, 120}});
    view.drawRect(view.bounds());
    const platform::GraphicsContext nowhere(nullptr);
    view.drawRect(view.bounds());
    platform::RecordingPort port;
    const platform::GraphicsContext context(&port);
    view.setStemOrigin({std::nan(""), 0});
    view.drawRect(view.bounds());
    for (const std::string& line : port.lines()) {
        EXPECT_EQ(line.find("nan"), std::string::npos) << line;
    }
}

}  // namespace
}  // namespace mezalith
