// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/cairo/pictures.hpp>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using namespace pictures;

TEST(CairoPort, LeavesOutCoordinatesThatAreNotFinite) {
    const auto port = CairoPort::pixelPort({20, 20});
    port->moveToPoint(nan, 0);
    port->addLineToPoint(5, 5);
    port->addLineToPoint(infinity, 5);
    port->addLineToPoint(15, 5);
    port->addCurveToPoint(nan, 0, 1, 1, 2, 2);
    port->addLineToPoint(15, 15);
    port->addEllipseInRect({{nan, 0}, {5, 5}});
    port->addEllipseInRect({{0, 0}, {infinity, 5}});
    port->closeSubpath();
    port->drawPath(PathDrawingMode::EvenOddFill);
    EXPECT_EQ(alphaAt(*port, 13, 8), 255);
    EXPECT_EQ(alphaAt(*port, 3, 3), 0);
    port->beginPath();
    port->moveToPoint(0, 0);
    port->addArcToPoint(10, 0, 10, 10, infinity);
    port->addArcToPoint(nan, 0, 10, 10, 3);
    port->addArcToPoint(10, 10, 0, 10, nan);
    port->drawPath(PathDrawingMode::Stroke);
    EXPECT_EQ(port->error(), std::nullopt);
}

TEST(CairoPort, KeepsTheSlopeOfLinesThatLeaveItFarBehind) {
    for (const double reach : {1e5, 1e7, 1e12, 1e200}) {
        const auto port = CairoPort::pixelPort({200, 100});
        port->setLineWidth(2);
        strokeLine(*port, {0, 0}, {reach, reach / 2});
        strokeLine(*port, {0, 0}, {-reach, -reach / 2});
        for (int x = 5; x < 195; x += 10) {
            EXPECT_EQ(alphaAt(*port, x, x / 2), 255) << reach << ' ' << x;
            EXPECT_EQ(alphaAt(*port, x, x / 2 + 3), 0) << reach << ' ' << x;
        }
    }
}

TEST(CairoPort, KeepsTheDashesOfLinesThatLeaveItFarBehind) {
    const auto port = CairoPort::pixelPort({60, 4});
    port->setLineWidth(2);
    port->setLineDash(2, std::array{4.0, 2.0});
    strokeLine(*port, {-600000, 2}, {1e9, 2});
    for (int x = 0; x < 60; ++x) {
        EXPECT_EQ(alphaAt(*port, x, 2), (x + 2) % 6 < 4 ? 255 : 0) << x;
    }
}

TEST(CairoPort, KeepsDashesOfFarLinesUnderAPenThatIsNotRound) {
    const auto port = CairoPort::pixelPort({60, 10});
    port->scale(2, 1);
    port->setLineWidth(2);
    port->setLineDash(1, std::array{2.0, 1.0});
    strokeLine(*port, {-300000, 5}, {1e9, 5});
    for (int x = 0; x < 60; ++x) {
        EXPECT_EQ(alphaAt(*port, x, 5), (x + 2) % 6 < 4 ? 255 : 0) << x;
    }
}

TEST(CairoPort, KeepsAreasWhoseCornersLieFarBehind) {
    for (const double reach : {1e5, 1e7, 1e12, 1e200}) {
        const auto port = CairoPort::pixelPort({40, 40});
        port->addLines(std::array{MzPoint{0, 0}, MzPoint{reach, reach}, MzPoint{reach, -reach}});
        port->drawPath(PathDrawingMode::EvenOddFill);
        EXPECT_EQ(alphaAt(*port, 30, 28), 255) << reach;
        EXPECT_EQ(alphaAt(*port, 30, 32), 0) << reach;
        rectangle(*port, -reach, -reach, 2 * reach, 2 * reach);
        rectangle(*port, 35, 5, 3, 3);
        port->drawPath(PathDrawingMode::EvenOddFill);
        EXPECT_EQ(alphaAt(*port, 2, 38), 255) << reach;
    }
}

TEST(CairoPort, KeepsCurvesThatLeaveItFarBehind) {
    const auto port = CairoPort::pixelPort({40, 40});
    const double radius = 1e7;
    port->addEllipseInRect({{20 - 2 * radius, 20 - radius}, {2 * radius, 2 * radius}});
    port->drawPath(PathDrawingMode::Fill);
    for (int y = 0; y < 40; y += 5) {
        EXPECT_EQ(alphaAt(*port, 18, y), 255);
        EXPECT_EQ(alphaAt(*port, 21, y), 0);
    }
}

TEST(CairoPort, AVeryWideLineCoversAll) {
    const auto port = CairoPort::pixelPort({40, 40});
    port->setLineWidth(1e300);
    strokeLine(*port, {-5000, 20}, {5000, 20});
    EXPECT_EQ(alphaAt(*port, 0, 0), 255);
    EXPECT_EQ(alphaAt(*port, 39, 39), 255);
}

}  // namespace
}  // namespace mezalith::platform
