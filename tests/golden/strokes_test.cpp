// SPDX-License-Identifier: MIT
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>
#include <mezalith/style/testing.hpp>
#include <tests/golden/golden.hpp>

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

namespace mezalith::golden {
namespace {

using platform::Color;
using platform::GraphicsPort;
using testing::Points;
using testing::TestDrawContext;

const auto kInk = Color::colorWithDeviceRed(0.12, 0.2, 0.35, 1);

std::shared_ptr<MzLineSymbolizer> line(std::uint64_t join, std::uint64_t cap) {
    auto line = std::make_shared<MzLineSymbolizer>();
    line->setStrokeColor(kInk);
    line->setStrokeWidth(8);
    line->setLineJoin(join);
    line->setLineCap(cap);
    return line;
}

std::shared_ptr<MzLineSymbolizer> dashed(std::uint64_t cap, const std::vector<double>& pattern,
                                         double offset = 0) {
    auto dashed = line(1, cap);
    dashed->setStrokeWidth(4);
    dashed->setLineDash(pattern.data(), pattern.size());
    dashed->setLineDashOffset(offset);
    dashed->setIsDashed(true);
    return dashed;
}

void draw(GraphicsPort& port, MzSymbolizer& symbolizer, std::shared_ptr<MzGeometry> geometry,
          TestDrawContext& context) {
    testing::drawInto(port, symbolizer, std::move(geometry), context);
}

void drawLine(GraphicsPort& port, MzSymbolizer& symbolizer, Points points) {
    TestDrawContext context;
    draw(port, symbolizer, testing::multiPoint(std::move(points)), context);
}

/// A sharp corner with its ends below, 40 points wide.
Points corner(double x, double y) { return {{x + 8, y + 8}, {x + 20, y + 28}, {x + 32, y + 8}}; }

std::string recordedText(MzSymbolizer& symbolizer) {
    platform::RecordingPort port;
    drawLine(port, symbolizer, corner(0, 0));
    return port.text();
}

TEST(GoldenStrokes, JoinsAndCaps) {
    std::string text;
    for (const std::uint64_t join : {0, 1, 2}) {
        for (const std::uint64_t cap : {0, 1, 2}) {
            text += recordedText(*line(join, cap));
        }
    }
    EXPECT_TRUE(matchesText("joins-caps", text));
    const auto picture = pictureOf({120, 120}, 2, [](GraphicsPort& port) {
        for (const std::uint64_t join : {0, 1, 2}) {
            for (const std::uint64_t cap : {0, 1, 2}) {
                drawLine(port, *line(join, cap),
                         corner(40.0 * double(cap), 80 - 40.0 * double(join)));
            }
        }
    });
    EXPECT_TRUE(matchesPicture("joins-caps", picture));
}

TEST(GoldenStrokes, Dashes) {
    const std::vector symbolizers{dashed(0, {12, 4}), dashed(0, {12, 4}, 8),    dashed(1, {8, 8}),
                                  dashed(2, {0, 8}),  dashed(0, {12, 3, 3, 3}), dashed(0, {9})};
    std::string text;
    for (const auto& symbolizer : symbolizers) {
        text += recordedText(*symbolizer);
    }
    EXPECT_TRUE(matchesText("dashes", text));
    const auto picture = pictureOf({120, 66}, 2, [&](GraphicsPort& port) {
        double y = 60;
        for (const auto& symbolizer : symbolizers) {
            drawLine(port, *symbolizer, {{10, y}, {110, y}});
            y -= 10;
        }
    });
    EXPECT_TRUE(matchesPicture("dashes", picture));
}

TEST(GoldenStrokes, ALinesShadow) {
    const auto shadowed = line(1, 1);
    shadowed->setStrokeColor(Color::colorWithDeviceRed(0.8, 0.2, 0.15, 1));
    shadowed->setShouldShadow(true);
    shadowed->setXShadowOffset(5);
    shadowed->setYShadowOffset(-4);
    shadowed->setShadowBlur(3);
    EXPECT_TRUE(matchesText("line-shadow", recordedText(*shadowed)));
    const auto picture = pictureOf(
        {50, 48}, 2, [&](GraphicsPort& port) { drawLine(port, *shadowed, corner(2, 6)); });
    EXPECT_TRUE(matchesPicture("line-shadow", picture));
}

/// A square at x with a square hole that runs the same way round or the other.
std::shared_ptr<MzGeometry> squareWithHole(double x, bool sameWay, const TestDrawContext& context) {
    const Points outer{{x + 6, 6}, {x + 42, 6}, {x + 42, 42}, {x + 6, 42}};
    Points hole{{x + 16, 16}, {x + 32, 16}, {x + 32, 32}, {x + 16, 32}};
    if (!sameWay) {
        std::ranges::reverse(hole);
    }
    return testing::polygon({outer, hole}, context);
}

TEST(GoldenStrokes, AHoleStaysOpenWhicheverWayItRuns) {
    MzPolygonSymbolizer polygon;
    polygon.setShouldFill(true);
    polygon.setFillColor(Color::colorWithDeviceRed(0.6, 0.78, 0.55, 1));
    polygon.setStrokeColor(kInk);
    TestDrawContext context;
    platform::RecordingPort recorder;
    for (const bool sameWay : {true, false}) {
        draw(recorder, polygon, squareWithHole(0, sameWay, context), context);
    }
    EXPECT_TRUE(matchesText("hole", recorder.text()));
    const auto picture = pictureOf({96, 48}, 2, [&](GraphicsPort& port) {
        draw(port, polygon, squareWithHole(0, true, context), context);
        draw(port, polygon, squareWithHole(48, false, context), context);
    });
    EXPECT_TRUE(matchesPicture("hole", picture));
}

}  // namespace
}  // namespace mezalith::golden
