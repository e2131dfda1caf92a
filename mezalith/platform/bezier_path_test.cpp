// SPDX-License-Identifier: MIT
#include <mezalith/platform/bezier_path.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using Lines = std::vector<std::string>;

Lines recorded(const BezierPath& path) {
    RecordingPort port;
    path.addTo(port);
    return port.lines();
}

TEST(BezierPath, IsEmptyAndDrawsNothingAtFirst) {
    const BezierPath path;
    RecordingPort port;
    path.fill(port);
    path.stroke(port);
    EXPECT_TRUE(path.isEmpty());
    EXPECT_EQ(path.lineWidth(), 1);
    EXPECT_TRUE(port.lines().empty());
}

TEST(BezierPath, ReplaysItsOperationsInTheirOrder) {
    BezierPath path;
    path.moveToPoint({1, 2});
    path.lineToPoint({3, 4});
    path.curveToPoint({9, 10}, {5, 6}, {7, 8});
    path.appendArcFromPoint({11, 12}, {13, 14}, 15);
    path.closePath();
    EXPECT_FALSE(path.isEmpty());
    EXPECT_EQ(recorded(path),
              (Lines{"moveToPoint 1 2", "addLineToPoint 3 4", "addCurveToPoint 5 6 7 8 9 10",
                     "addArcToPoint 11 12 13 14 15", "closeSubpath"}));
}

TEST(BezierPath, AppendsARectangleCounterClockwise) {
    BezierPath path;
    path.appendRect({{1, 2}, {10, 20}});
    EXPECT_EQ(recorded(path),
              (Lines{"moveToPoint 1 2", "addLineToPoint 11 2", "addLineToPoint 11 22",
                     "addLineToPoint 1 22", "closeSubpath"}));
}

TEST(BezierPath, LeavesOutWhatIsNotFinite) {
    const double nan = std::nan("");
    const double infinity = std::numeric_limits<double>::infinity();
    BezierPath path;
    path.moveToPoint({nan, 0});
    path.lineToPoint({0, infinity});
    path.curveToPoint({0, 0}, {0, 0}, {-infinity, 0});
    path.curveToPoint({nan, 0}, {0, 0}, {0, 0});
    path.appendArcFromPoint({nan, 0}, {0, 0}, 1);
    path.appendArcFromPoint({0, 0}, {0, nan}, 1);
    path.appendArcFromPoint({0, 0}, {1, 0}, infinity);
    path.appendArcFromPoint({0, 0}, {1, 0}, nan);
    EXPECT_TRUE(path.isEmpty());
}

TEST(BezierPath, FillsByTheNonZeroRule) {
    BezierPath path;
    path.moveToPoint({1, 2});
    path.lineToPoint({3, 4});
    RecordingPort port;
    path.fill(port);
    EXPECT_EQ(port.lines(),
              (Lines{"beginPath", "moveToPoint 1 2", "addLineToPoint 3 4", "drawPath 0"}));
}

TEST(BezierPath, StrokesWithItsOwnWidthAndLeavesThePortsAsItWas) {
    BezierPath path;
    path.moveToPoint({1, 2});
    path.lineToPoint({3, 4});
    path.setLineWidth(0.125);
    RecordingPort port;
    path.stroke(port);
    EXPECT_EQ(port.lines(),
              (Lines{"saveState", "setLineWidth 0.125", "setLineCap 0", "setLineJoin 0",
                     "setLineDash 0 solid", "beginPath", "moveToPoint 1 2", "addLineToPoint 3 4",
                     "drawPath 2", "restoreState"}));
}

TEST(BezierPath, IsCopiedAsAValue) {
    BezierPath path;
    path.moveToPoint({1, 2});
    const BezierPath copy = path;
    path.lineToPoint({3, 4});
    EXPECT_EQ(recorded(copy), (Lines{"moveToPoint 1 2"}));
}

}  // namespace
}  // namespace mezalith::platform
