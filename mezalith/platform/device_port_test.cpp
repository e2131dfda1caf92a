// SPDX-License-Identifier: MIT
#include <mezalith/platform/device_port.hpp>

#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// Notes what it is told to draw.
class NotingPort final : public DevicePort {
  public:
    NotingPort() : DevicePort({2, 0, 0, -2, 0, 100}) {}

    using DevicePort::state;
    std::vector<std::string> notes;
    DevicePath last;  ///< the path that was drawn or clipped to last

    std::shared_ptr<Layer> createLayer(MzSize) override { return nullptr; }
    void drawLayerAtPoint(const Layer*, MzPoint) override {}
    void drawImageInRect(const Image*, MzRect) override {}

  private:
    void saveClip() override { notes.emplace_back("save"); }
    void restoreClip() override { notes.emplace_back("restore"); }
    void clipTo(const DevicePath& path) override { note("clip", path); }
    void fill(const DevicePath& path, FillRule rule) override {
        note(rule == FillRule::EvenOdd ? "even-odd" : "winding", path);
    }
    void stroke(const DevicePath& path) override { note("stroke", path); }

    void note(const char* text, const DevicePath& path) {
        notes.emplace_back(text);
        last = path;
    }
};

using Notes = std::vector<std::string>;

Notes drawn(PathDrawingMode mode) {
    NotingPort port;
    port.addLines(std::array{MzPoint{0, 0}, MzPoint{1, 0}});
    port.drawPath(mode);
    port.drawPath(PathDrawingMode::Stroke);
    EXPECT_TRUE(port.last.isEmpty()) << "drawing consumes the path";
    port.notes.pop_back();
    return port.notes;
}

TEST(DevicePort, DrawsInTheOrderOfTheMode) {
    EXPECT_EQ(drawn(PathDrawingMode::Fill), Notes{"winding"});
    EXPECT_EQ(drawn(PathDrawingMode::EvenOddFill), Notes{"even-odd"});
    EXPECT_EQ(drawn(PathDrawingMode::Stroke), Notes{"stroke"});
    EXPECT_EQ(drawn(PathDrawingMode::FillStroke), (Notes{"winding", "stroke"}));
    EXPECT_EQ(drawn(PathDrawingMode::EvenOddFillStroke), (Notes{"even-odd", "stroke"}));
    EXPECT_EQ(drawn(PathDrawingMode{5}), Notes{});
}

TEST(DevicePort, MapsPointsByTheTransformAtTheMomentTheyAreAdded) {
    NotingPort port;
    port.moveToPoint(1, 1);
    port.translate(10, 0);
    port.rotate(std::acos(-1.0) / 2);
    port.addLineToPoint(1, 0);
    port.scale(3, 1);
    port.concat({1, 0, 0, 1, 1, 0});
    port.addLineToPoint(0, 0);
    port.clipEvenOdd();
    const auto points = port.last.points();
    ASSERT_EQ(points.size(), 3);
    EXPECT_NEAR(points[0].x, 2, 1e-12);
    EXPECT_NEAR(points[0].y, 98, 1e-12);
    EXPECT_NEAR(points[1].x, 20, 1e-12);
    EXPECT_NEAR(points[1].y, 98, 1e-12);
    EXPECT_NEAR(points[2].x, 20, 1e-12);
    EXPECT_NEAR(points[2].y, 94, 1e-12);
}

TEST(DevicePort, SavesAndRestoresAllButThePath) {
    NotingPort port;
    port.restoreState();
    EXPECT_EQ(port.notes, Notes{});
    port.saveState();
    port.setLineWidth(7);
    port.setLineCap(LineCap::Round);
    port.setLineJoin(LineJoin::Bevel);
    port.setLineDash(1, std::array{2.0, 3.0});
    port.setRGBFillColor(1, 0, 0, 0.5);
    port.setStrokeColor(Color::cyanColor().get());
    port.setShadow({1, 2}, 3);
    port.translate(5, 5);
    EXPECT_EQ(port.state().stroke.dashLengths, (std::vector<double>{2, 3}));
    EXPECT_EQ(port.state().fillColor.alpha, 0.5);
    EXPECT_EQ(port.state().strokeColor.blue, 1);
    EXPECT_EQ(port.state().shadow->blur, 3);
    port.restoreState();
    EXPECT_EQ(port.state().stroke.width, 1);
    EXPECT_EQ(port.state().stroke.cap, LineCap::Butt);
    EXPECT_EQ(port.state().stroke.join, LineJoin::Miter);
    EXPECT_TRUE(port.state().stroke.dashLengths.empty());
    EXPECT_EQ(port.state().fillColor.alpha, 1);
    EXPECT_FALSE(port.state().shadow);
    EXPECT_EQ(port.state().transform.tX, 0);
    EXPECT_EQ(port.notes, (Notes{"save", "restore"}));
}

TEST(DevicePort, LeavesItsStateWithUnknownCapsJoinsAndColours) {
    NotingPort port;
    port.setLineCap(LineCap{7});
    port.setLineJoin(LineJoin{7});
    port.setFillColor(nullptr);
    port.setStrokeColor(nullptr);
    EXPECT_EQ(port.state().stroke.cap, LineCap::Butt);
    EXPECT_EQ(port.state().stroke.join, LineJoin::Miter);
    EXPECT_EQ(port.state().fillColor.alpha, 1);
    port.setRGBFillColor(2, -1, std::nan(""), 2);
    EXPECT_EQ(port.state().fillColor.red, 1);
    EXPECT_EQ(port.state().fillColor.green, 0);
    EXPECT_EQ(port.state().fillColor.blue, 0);
    EXPECT_EQ(port.state().fillColor.alpha, 1);
}

TEST(DevicePort, HasNoShadowThatCouldNotBeSeen) {
    NotingPort port;
    port.setShadow({1, 1}, 1);
    EXPECT_TRUE(port.state().shadow);
    port.setShadowWithColor({1, 1}, 1, nullptr);
    EXPECT_FALSE(port.state().shadow);
    port.setShadowWithColor({1, 1}, 1, Color::cyanColor()->colorWithAlphaComponent(0).get());
    EXPECT_FALSE(port.state().shadow);
    port.setShadow({1, 1}, std::nan(""));
    EXPECT_FALSE(port.state().shadow);
}

TEST(IsSizeUpTo, WantsBothSidesPositiveAndWithinBounds) {
    EXPECT_TRUE(isSizeUpTo({1, 2}, 2));
    EXPECT_FALSE(isSizeUpTo({1, 2.5}, 2));
    EXPECT_FALSE(isSizeUpTo({0, 1}, 2));
    EXPECT_FALSE(isSizeUpTo({-1, 1}, 2));
    EXPECT_FALSE(isSizeUpTo({std::nan(""), 1}, infinity));
}

}  // namespace
}  // namespace mezalith::platform
