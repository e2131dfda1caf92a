// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface_file.hpp>
#include <mezalith/platform/recording_port.hpp>
#include <mezalith/style/bubble_symbolizer.hpp>
#include <mezalith/style/round_rect.hpp>
#include <mezalith/style/testing.hpp>
#include <tests/golden/golden.hpp>

#include <string>

#include <gtest/gtest.h>

namespace mezalith::golden {
namespace {

using platform::Color;
using platform::GraphicsPort;
using platform::InterfaceFile;
using platform::InterfaceOwner;
using platform::View;
using testing::TestDrawContext;

/// A content of one colour.
class Swatch : public View {
  public:
    Swatch() : View({{0, 0}, {90, 24}}) {}
    void drawRect(MzRect) override {
        GraphicsPort& port = *platform::GraphicsContext::current()->graphicsPort();
        port.setRGBFillColor(0.2, 0.45, 0.65, 1);
        platform::BezierPath all;
        all.appendRect(bounds());
        all.fill(port);
    }
};

/// A bubble with a swatch whose stem points at `place`, drawn by the view that holds it.
void drawBubble(GraphicsPort& port, MzPoint place) {
    InterfaceFile::setLoader("swatch",
                             [](const InterfaceOwner&) { return std::make_shared<Swatch>(); });
    TestDrawContext context;
    context.view.setFrame({{0, 0}, {160, 120}});
    const auto bubble = MzBubbleSymbolizer::initWithNib("swatch", {});
    testing::drawInto(port, *bubble, MzPointGeometry::initWithPoint(place), context);
    const platform::GraphicsContext current(&port);
    context.view.display();
    InterfaceFile::setLoader("swatch", nullptr);
}

TEST(GoldenBubbles, ABubblePointsAtAPlace) {
    platform::RecordingPort recorder;
    drawBubble(recorder, {30, 20});
    EXPECT_TRUE(matchesText("bubble", recorder.text()));
    EXPECT_TRUE(matchesPicture("bubble", pictureOf({160, 120}, 2, [](auto& port) {
                                   drawBubble(port, {30, 20});
                               })));
}

TEST(GoldenBubbles, EachRoundedShape) {
    const auto picture = pictureOf({330, 140}, 1, [](GraphicsPort& port) {
        port.setRGBFillColor(0.96, 0.75, 0.2, 1);
        port.setRGBStrokeColor(0.12, 0.2, 0.35, 1);
        const platform::BezierPath shapes[] = {
            bezierPathWithRoundedRect({{10, 10}, {60, 40}}, 12),
            bezierPathWithTopRoundedRect({{10, 80}, {60, 40}}, 12),
            bezierPathWithCartoonBubbleInRect({{90, 5}, {40, 130}}, 15),
            bezierPathWithCartoonBubbleInRect({{200, 60}, {120, 60}}, {210, 20}, 30)};
        for (const auto& shape : shapes) {
            shape.fill(port);
            shape.stroke(port);
        }
    });
    EXPECT_TRUE(matchesPicture("round-rects", picture));
}

}  // namespace
}  // namespace mezalith::golden
