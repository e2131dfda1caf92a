// SPDX-License-Identifier: MIT
#include <mezalith/platform/recording_port.hpp>

#include <array>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using Lines = std::vector<std::string>;

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(RecordingPort, WritesOneLinePerOperation) {
    RecordingPort port;
    port.saveState();
    port.translate(1.5, -2);
    port.rotate(0.25);
    port.scale(2, 3);
    port.concat({1, 2, 3, 4, 5, 6});
    port.setLineWidth(0.1);
    port.setLineCap(LineCap::Round);
    port.setLineJoin(LineJoin::Bevel);
    port.setRGBStrokeColor(1, 0.5, 0.25, 0.125);
    port.setRGBFillColor(0, 0.5, 1, 1);
    port.setShadow({1.5, 2.5}, 0.5);
    port.beginPath();
    port.moveToPoint(0, 0.5);
    port.addLineToPoint(10, 0.5);
    port.addCurveToPoint(1, 2, 3, 4, 5, 6);
    port.addArcToPoint(1, 2, 3, 4, 5);
    port.addEllipseInRect({{1, 2}, {3, 4}});
    port.closeSubpath();
    port.clipEvenOdd();
    port.drawPath(PathDrawingMode::EvenOddFillStroke);
    port.restoreState();
    EXPECT_EQ(port.text(), R"(saveState
translate 1.5 -2
rotate 0.25
scale 2 3
concat 1 2 3 4 5 6
setLineWidth 0.1
setLineCap 1
setLineJoin 2
setRGBStrokeColor 1 0.5 0.25 0.125
setRGBFillColor 0 0.5 1 1
setShadow 1.5 2.5 0.5
beginPath
moveToPoint 0 0.5
addLineToPoint 10 0.5
addCurveToPoint 1 2 3 4 5 6
addArcToPoint 1 2 3 4 5
addEllipseInRect 1 2 3 4
closeSubpath
clipEvenOdd
drawPath 4
restoreState
)");
}

TEST(RecordingPort, WritesColorsInDeviceRGB) {
    RecordingPort port;
    port.setStrokeColor(Color::cyanColor().get());
    port.setFillColor(Color::colorWithCalibratedWhite(0.5, 0.25).get());
    port.setStrokeColor(nullptr);
    port.setFillColor(Color::colorWithPatternName("hatch").get());
    port.setShadowWithColor({1, 2}, 3, Color::colorWithDeviceCyan(0, 1, 0, 0, 0.5).get());
    port.setShadowWithColor({0, 0}, 0, nullptr);
    EXPECT_EQ(port.lines(),
              (Lines{"setStrokeColor 0 1 1 1", "setFillColor 0.5 0.5 0.5 0.25",
                     "setStrokeColor none", "setFillColor none",
                     "setShadowWithColor 1 2 3 1 0 1 0.5", "setShadowWithColor 0 0 0 none"}));
}

TEST(RecordingPort, WritesDashes) {
    RecordingPort port;
    port.setLineDash(0, {});
    port.setLineDash(2, std::array{4.0, 1.5});
    EXPECT_EQ(port.lines(), (Lines{"setLineDash 0 solid", "setLineDash 2 [4 1.5]"}));
}

TEST(RecordingPort, WritesASpanOfPointsVertexByVertex) {
    RecordingPort port;
    port.addLines({});
    port.addLines(std::array{MzPoint{1, 2}});
    port.addLines(std::array{MzPoint{3, 4}, MzPoint{5, 6}, MzPoint{7, 8}});
    EXPECT_EQ(port.lines(), (Lines{"moveToPoint 1 2", "moveToPoint 3 4", "addLineToPoint 5 6",
                                   "addLineToPoint 7 8"}));
}

TEST(RecordingPort, WritesWhatOtherPortsIgnore) {
    RecordingPort port;
    port.moveToPoint(std::nan(""), -infinity);
    port.setLineCap(static_cast<LineCap>(~std::uint64_t{0}));
    port.setLineJoin(static_cast<LineJoin>(99));
    port.drawPath(static_cast<PathDrawingMode>(-7));
    EXPECT_EQ(port.lines(), (Lines{"moveToPoint nan -inf", "setLineCap 18446744073709551615",
                                   "setLineJoin 99", "drawPath -7"}));
}

TEST(RecordingPort, NumbersLayersAndMarksWhatIsDrawnIntoThem) {
    RecordingPort port;
    const auto first = port.createLayer({9, 9});
    const auto second = port.createLayer({4, 2});
    first->port()->moveToPoint(1, 1);
    second->port()->drawPath(PathDrawingMode::Fill);
    port.drawLayerAtPoint(second.get(), {3, 4});
    port.drawLayerAtPoint(first.get(), {0, 0});
    EXPECT_EQ(port.lines(),
              (Lines{"createLayer 1 9 9", "createLayer 2 4 2", "layer 1: moveToPoint 1 1",
                     "layer 2: drawPath 0", "drawLayerAtPoint 2 3 4", "drawLayerAtPoint 1 0 0"}));
    EXPECT_EQ(second->size().width, 4);
    EXPECT_EQ(second->size().height, 2);
}

TEST(RecordingPort, NumbersLayersOfLayersInTheSameRow) {
    RecordingPort port;
    const auto outer = port.createLayer({9, 9});
    const auto inner = outer->port()->createLayer({3, 3});
    inner->port()->beginPath();
    outer->port()->drawLayerAtPoint(inner.get(), {1, 1});
    EXPECT_EQ(port.lines(), (Lines{"createLayer 1 9 9", "layer 1: createLayer 2 3 3",
                                   "layer 2: beginPath", "layer 1: drawLayerAtPoint 2 1 1"}));
}

TEST(RecordingPort, RefusesLayersWithoutAPositiveBoundedSize) {
    RecordingPort port;
    EXPECT_EQ(port.createLayer({0, 1}), nullptr);
    EXPECT_EQ(port.createLayer({1, -1}), nullptr);
    EXPECT_EQ(port.createLayer({std::nan(""), 1}), nullptr);
    EXPECT_EQ(port.createLayer({1, infinity}), nullptr);
    EXPECT_EQ(port.createLayer({16385, 1}), nullptr);
    EXPECT_NE(port.createLayer({16384, 0.5}), nullptr);
    EXPECT_EQ(port.lines().front(), "createLayer none 0 1");
    EXPECT_EQ(port.lines().back(), "createLayer 1 16384 0.5");
}

TEST(RecordingPort, WritesAnAbsentLayerAsNone) {
    RecordingPort port;
    port.drawLayerAtPoint(nullptr, {1, 2});
    EXPECT_EQ(port.lines(), Lines{"drawLayerAtPoint none 1 2"});
}

TEST(RecordingPort, WritesImagesByTheirNaturalSize) {
    RecordingPort port;
    const auto image = Image::imageWithBitmap({2, 1, {1, 2}});
    port.drawImageInRect(image.get(), {{-1, 0.5}, {20, 10}});
    port.drawImageInRect(nullptr, {{0, 0}, {1, 1}});
    EXPECT_EQ(port.lines(),
              (Lines{"drawImageInRect 2x1 -1 0.5 20 10", "drawImageInRect none 0 0 1 1"}));
}

TEST(RecordingPort, ALayerMayOutliveItsPort) {
    std::shared_ptr<Layer> layer;
    {
        RecordingPort port;
        layer = port.createLayer({1, 1});
    }
    layer->port()->beginPath();
    EXPECT_EQ(dynamic_cast<RecordingPort*>(layer->port())->lines().back(), "layer 1: beginPath");
}

TEST(RecordingPort, ClearsLinesButNotTheNumberOfLayers) {
    RecordingPort port;
    const auto first = port.createLayer({1, 1});
    port.clear();
    EXPECT_TRUE(port.lines().empty());
    EXPECT_EQ(port.text(), "");
    const auto second = port.createLayer({1, 1});
    EXPECT_EQ(port.lines(), Lines{"createLayer 2 1 1"});
}

}  // namespace
}  // namespace mezalith::platform
