// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/cairo/pictures.hpp>

#include <numbers>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using namespace pictures;

TEST(CairoPort, IsATransparentPictureInWholePixels) {
    const auto port = CairoPort::pixelPort({10.2, 3}, 2);
    ASSERT_NE(port, nullptr);
    EXPECT_EQ(port->pixelWidth(), 21);
    EXPECT_EQ(port->pixelHeight(), 6);
    EXPECT_EQ(port->pixelRow(0).size(), 21);
    EXPECT_TRUE(port->pixelRow(-1).empty());
    EXPECT_TRUE(port->pixelRow(6).empty());
    EXPECT_TRUE(isEmpty(*port));
    EXPECT_TRUE(port->finish());
}

TEST(CairoPort, RefusesSizesThatArePossibleNowhere) {
    const auto ignore = [](std::span<const std::byte>) { return true; };
    for (const MzSize size : {MzSize{0, 1}, MzSize{1, -1}, MzSize{nan, 1}, MzSize{1, infinity}}) {
        EXPECT_EQ(CairoPort::pixelPort(size), nullptr);
        EXPECT_EQ(CairoPort::svgPort(size, ignore), nullptr);
        EXPECT_EQ(CairoPort::pdfPort(size, ignore), nullptr);
    }
    for (const double ratio : {0.0, -1.0, nan, infinity}) {
        EXPECT_EQ(CairoPort::pixelPort({1, 1}, ratio), nullptr);
        EXPECT_EQ(CairoPort::svgPort({1, 1}, ignore, ratio), nullptr);
    }
    EXPECT_EQ(CairoPort::pixelPort({32768, 1}), nullptr);
    EXPECT_EQ(CairoPort::pixelPort({16384, 1}, 2), nullptr);
    EXPECT_NE(CairoPort::pixelPort({32767, 1}), nullptr);
    EXPECT_EQ(CairoPort::pdfPort({14401, 1}, ignore), nullptr);
    EXPECT_EQ(CairoPort::pdfPort({1, 1}, ignore, 4.5), nullptr);
}

TEST(CairoPort, HasItsOriginAtTheLowerLeft) {
    const auto port = CairoPort::pixelPort({10, 10});
    port->setRGBFillColor(1, 0, 0, 1);
    fillRectangle(*port, 0, 0, 2, 1);
    EXPECT_EQ(at(*port, 0, 0), (Pixel{255, 255, 0, 0}));
    EXPECT_EQ(at(*port, 1, 0), (Pixel{255, 255, 0, 0}));
    EXPECT_EQ(alphaAt(*port, 2, 0), 0);
    EXPECT_EQ(alphaAt(*port, 0, 1), 0);
}

TEST(CairoPort, HasPixelRatioPixelsPerPoint) {
    const auto port = CairoPort::pixelPort({10, 10}, 3);
    fillRectangle(*port, 1, 2, 1, 1);
    EXPECT_EQ(alphaAt(*port, 2, 6), 0);
    EXPECT_EQ(alphaAt(*port, 3, 6), 255);
    EXPECT_EQ(alphaAt(*port, 5, 8), 255);
    EXPECT_EQ(alphaAt(*port, 6, 8), 0);
    EXPECT_EQ(alphaAt(*port, 5, 9), 0);
}

TEST(CairoPort, MixesColorsByAlpha) {
    const auto port = CairoPort::pixelPort({4, 4});
    port->setRGBFillColor(1, 1, 1, 1);
    fillRectangle(*port, 0, 0, 4, 4);
    port->setFillColor(Color::colorWithCalibratedRed(1, 0, 0, 0.5).get());
    fillRectangle(*port, 0, 0, 4, 4);
    EXPECT_EQ(at(*port, 2, 2), (Pixel{255, 255, 127, 127}));
}

TEST(CairoPort, KeepsItsColorWhenThereIsNoOther) {
    const auto port = CairoPort::pixelPort({4, 4});
    port->setRGBFillColor(0, 1, 0, 1);
    port->setFillColor(nullptr);
    port->setFillColor(Color::colorWithPatternName("hatch").get());
    fillRectangle(*port, 0, 0, 4, 4);
    EXPECT_EQ(at(*port, 2, 2), (Pixel{255, 0, 255, 0}));
    port->setRGBStrokeColor(0, 0, 1, 1);
    port->setStrokeColor(nullptr);
    strokeLine(*port, {0, 0.5}, {4, 0.5});
    EXPECT_EQ(at(*port, 2, 0), (Pixel{255, 0, 0, 255}));
}

TEST(CairoPort, TakesColorsOutOfRangeToTheNearest) {
    const auto port = CairoPort::pixelPort({4, 4});
    port->setRGBFillColor(7, -3, nan, 9);
    fillRectangle(*port, 0, 0, 4, 4);
    EXPECT_EQ(at(*port, 2, 2), (Pixel{255, 255, 0, 0}));
}

TEST(CairoPort, FillsByTheRuleOfTheMode) {
    struct Case {
        PathDrawingMode mode;
        bool sameWay;
        int inHole;
    };
    using enum PathDrawingMode;
    for (const auto& [mode, sameWay, inHole] :
         {Case{Fill, true, 255}, Case{Fill, false, 0}, Case{EvenOddFill, true, 0},
          Case{EvenOddFill, false, 0}, Case{FillStroke, true, 255},
          Case{EvenOddFillStroke, true, 0}, Case{EvenOddFillStroke, false, 0}}) {
        const auto port = CairoPort::pixelPort({20, 20});
        squareInSquare(*port, sameWay);
        port->drawPath(mode);
        EXPECT_EQ(alphaAt(*port, 10, 10), inHole) << static_cast<int>(mode) << sameWay;
        EXPECT_EQ(alphaAt(*port, 3, 10), 255);
    }
}

TEST(CairoPort, StrokesAfterItFills) {
    const auto port = CairoPort::pixelPort({20, 20});
    port->setRGBFillColor(1, 0, 0, 1);
    port->setRGBStrokeColor(0, 0, 1, 1);
    port->setLineWidth(2);
    for (const auto mode : {PathDrawingMode::FillStroke, PathDrawingMode::EvenOddFillStroke}) {
        rectangle(*port, 5, 5, 10, 10);
        port->drawPath(mode);
        EXPECT_EQ(at(*port, 5, 10), (Pixel{255, 0, 0, 255}));
        EXPECT_EQ(at(*port, 4, 10), (Pixel{255, 0, 0, 255}));
        EXPECT_EQ(at(*port, 3, 10), (Pixel{0, 0, 0, 0}));
        EXPECT_EQ(at(*port, 10, 10), (Pixel{255, 255, 0, 0}));
    }
}

TEST(CairoPort, AnUnknownModeDrawsNothingButTakesThePath) {
    const auto port = CairoPort::pixelPort({20, 20});
    rectangle(*port, 5, 5, 10, 10);
    port->drawPath(static_cast<PathDrawingMode>(5));
    port->drawPath(PathDrawingMode::Fill);
    EXPECT_TRUE(isEmpty(*port));
}

TEST(CairoPort, DrawingConsumesThePath) {
    const auto port = CairoPort::pixelPort({20, 20});
    port->setRGBFillColor(0, 0, 0, 0);
    fillRectangle(*port, 5, 5, 10, 10);
    port->setRGBFillColor(0, 0, 0, 1);
    port->drawPath(PathDrawingMode::Fill);
    EXPECT_TRUE(isEmpty(*port));
}

TEST(CairoPort, BeginningAPathDropsTheOneBefore) {
    const auto port = CairoPort::pixelPort({20, 20});
    rectangle(*port, 5, 5, 10, 10);
    port->beginPath();
    port->drawPath(PathDrawingMode::Fill);
    EXPECT_TRUE(isEmpty(*port));
}

TEST(CairoPort, ThePathIsNotPartOfTheSavedState) {
    const auto port = CairoPort::pixelPort({20, 20});
    rectangle(*port, 0, 0, 5, 5);
    port->saveState();
    rectangle(*port, 10, 10, 5, 5);
    port->restoreState();
    port->drawPath(PathDrawingMode::Fill);
    EXPECT_EQ(alphaAt(*port, 2, 2), 255);
    EXPECT_EQ(alphaAt(*port, 12, 12), 255);
}

TEST(CairoPort, AllElseIsPartOfTheSavedState) {
    const Drawing line = [](GraphicsPort& port) { strokeLine(port, {3, 10}, {17, 12}); };
    const Drawing area = [](GraphicsPort& port) { fillRectangle(port, 4, 4, 6, 6); };
    const std::vector<Drawing> changes{
        [](GraphicsPort& port) { port.translate(3, 1); },
        [](GraphicsPort& port) { port.setLineWidth(7); },
        [](GraphicsPort& port) { port.setLineCap(LineCap::Square); },
        [](GraphicsPort& port) { port.setLineJoin(LineJoin::Bevel); },
        [](GraphicsPort& port) {
            port.setLineDash(0, std::array{2.0, 2.0});
        },
        [](GraphicsPort& port) { port.setRGBStrokeColor(1, 0, 0, 1); },
        [](GraphicsPort& port) { port.setRGBFillColor(0, 1, 0, 1); },
        [](GraphicsPort& port) {
            port.setShadow({2, 2}, 2);
        },
        [](GraphicsPort& port) {
            rectangle(port, 0, 0, 5, 5);
            port.clipEvenOdd();
        }};
    const Drawing both = [&](GraphicsPort& port) {
        line(port);
        area(port);
    };
    const auto plain = drawn({20, 20}, 1, both);
    for (const Drawing& change : changes) {
        EXPECT_EQ(drawn({20, 20}, 1,
                        [&](GraphicsPort& port) {
                            port.saveState();
                            change(port);
                            port.restoreState();
                            both(port);
                        }),
                  plain);
    }
}

TEST(CairoPort, RestoringWithoutASavedStateDoesNothing) {
    const auto port = CairoPort::pixelPort({20, 20});
    port->translate(5, 5);
    port->restoreState();
    fillRectangle(*port, 0, 0, 5, 5);
    EXPECT_EQ(alphaAt(*port, 7, 7), 255);
    EXPECT_EQ(alphaAt(*port, 2, 2), 0);
}

TEST(CairoPort, TransformsArePrependedAndTurnCounterClockwise) {
    const auto port = CairoPort::pixelPort({20, 20});
    port->translate(10, 10);
    port->rotate(std::numbers::pi / 2);
    port->scale(2, 1);
    port->concat({1, 0, 0, 1, 1, 0});
    // (0..1, 0..2) becomes (1..2, 0..2), (2..4, 0..2), (-2..0, 2..4), (8..10, 12..14).
    fillRectangle(*port, 0, 0, 1, 2);
    EXPECT_EQ(alphaAt(*port, 8, 12), 255);
    EXPECT_EQ(alphaAt(*port, 9, 13), 255);
    EXPECT_EQ(alphaAt(*port, 7, 12), 0);
    EXPECT_EQ(alphaAt(*port, 10, 12), 0);
    EXPECT_EQ(alphaAt(*port, 9, 11), 0);
    EXPECT_EQ(alphaAt(*port, 9, 14), 0);
}

TEST(CairoPort, MapsPointsWhenTheyAreAddedAndWidthsWhenTheyAreDrawn) {
    const auto port = CairoPort::pixelPort({20, 20});
    port->setLineWidth(1);
    port->addLines(std::array{MzPoint{2, 10}, MzPoint{18, 10}});
    port->scale(1, 4);
    port->drawPath(PathDrawingMode::Stroke);
    EXPECT_EQ(alphaAt(*port, 10, 11), 255);
    EXPECT_EQ(alphaAt(*port, 10, 8), 255);
    EXPECT_EQ(alphaAt(*port, 10, 12), 0);
    EXPECT_EQ(alphaAt(*port, 10, 7), 0);
}

TEST(CairoPort, ASpanOfPointsDrawsAsItsVertices) {
    std::vector<MzPoint> points;
    for (int i = 0; i < 50; ++i) {
        points.push_back({50 + 40 * std::cos(i * 2.4), 50 + 0.8 * i * std::sin(i * 2.4)});
    }
    points[20].x = nan;
    const auto span = drawn({100, 100}, 1.5, [&](GraphicsPort& port) {
        port.addLines(points);
        port.drawPath(PathDrawingMode::EvenOddFillStroke);
    });
    const auto single = drawn({100, 100}, 1.5, [&](GraphicsPort& port) {
        port.moveToPoint(points[0].x, points[0].y);
        for (std::size_t i = 1; i < points.size(); ++i) {
            port.addLineToPoint(points[i].x, points[i].y);
        }
        port.drawPath(PathDrawingMode::EvenOddFillStroke);
    });
    EXPECT_EQ(span, single);
}

TEST(CairoPort, DrawsCurvesEllipsesAndArcs) {
    const auto port = CairoPort::pixelPort({30, 30});
    port->addEllipseInRect({{1, 1}, {8, 8}});
    port->drawPath(PathDrawingMode::Fill);
    EXPECT_EQ(alphaAt(*port, 4, 4), 255);
    EXPECT_LT(alphaAt(*port, 1, 1), 30);
    port->moveToPoint(10, 20);
    port->addCurveToPoint(10, 30, 20, 30, 20, 20);
    port->drawPath(PathDrawingMode::Fill);
    EXPECT_EQ(alphaAt(*port, 15, 26), 255);
    EXPECT_EQ(alphaAt(*port, 15, 28), 0);
    port->moveToPoint(20, 1);
    port->addArcToPoint(28, 1, 28, 9, 8);
    port->addLineToPoint(20, 9);
    port->drawPath(PathDrawingMode::Fill);
    EXPECT_EQ(alphaAt(*port, 21, 2), 255);
    EXPECT_LT(alphaAt(*port, 27, 1), 30);
}

TEST(CairoPort, ClipsByTheEvenOddRule) {
    const auto port = CairoPort::pixelPort({20, 20});
    squareInSquare(*port, true);
    port->clipEvenOdd();
    port->drawPath(PathDrawingMode::Fill);
    fillRectangle(*port, 0, 0, 20, 10);
    EXPECT_EQ(alphaAt(*port, 3, 3), 255);
    EXPECT_EQ(alphaAt(*port, 10, 8), 0);
    EXPECT_EQ(alphaAt(*port, 0, 3), 0);
    EXPECT_EQ(alphaAt(*port, 3, 12), 0);
}

TEST(CairoPort, ClipsMeet) {
    const auto port = CairoPort::pixelPort({20, 20});
    rectangle(*port, 0, 0, 12, 20);
    port->clipEvenOdd();
    rectangle(*port, 8, -1e9, 1e9, 2e9);
    port->clipEvenOdd();
    fillRectangle(*port, 0, 0, 20, 20);
    EXPECT_EQ(alphaAt(*port, 7, 5), 0);
    EXPECT_EQ(alphaAt(*port, 8, 5), 255);
    EXPECT_EQ(alphaAt(*port, 11, 5), 255);
    EXPECT_EQ(alphaAt(*port, 12, 5), 0);
}

TEST(CairoPort, AnEmptyClipHidesEverything) {
    const auto port = CairoPort::pixelPort({20, 20});
    port->clipEvenOdd();
    port->setShadow({1, 1}, 3);
    fillRectangle(*port, 0, 0, 20, 20);
    EXPECT_TRUE(isEmpty(*port));
}

}  // namespace
}  // namespace mezalith::platform
