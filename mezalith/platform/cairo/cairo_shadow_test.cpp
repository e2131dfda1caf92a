// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/cairo/pictures.hpp>
#include <mezalith/platform/shadow.hpp>

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using namespace pictures;

TEST(CairoPort, CastsASharpShadowUpwardsForPositiveOffsets) {
    const auto port = CairoPort::pixelPort({30, 30}, 1);
    port->setRGBFillColor(1, 0, 0, 1);
    port->setShadowWithColor({4, 6}, 0, Color::colorWithDeviceRed(0, 0, 1, 1).get());
    fillRectangle(*port, 10, 10, 5, 5);
    EXPECT_EQ(at(*port, 12, 12), (Pixel{255, 255, 0, 0}));
    EXPECT_EQ(at(*port, 18, 20), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(at(*port, 19, 20), (Pixel{0, 0, 0, 0}));
    EXPECT_EQ(at(*port, 18, 21), (Pixel{0, 0, 0, 0}));
}

TEST(CairoPort, CastsAShadowInBlackAtAThirdOfItsAlpha) {
    const auto port = CairoPort::pixelPort({30, 30});
    port->setRGBFillColor(1, 1, 1, 0.6);
    port->setShadow({15, 0}, 0);
    fillRectangle(*port, 0, 0, 10, 10);
    EXPECT_EQ(at(*port, 20, 5), (Pixel{51, 0, 0, 0}));
}

TEST(CairoPort, ShadowsDoNotFollowTheTransform) {
    const auto port = CairoPort::pixelPort({40, 40}, 2);
    port->translate(20, 20);
    port->rotate(std::numbers::pi / 2);
    port->scale(3, 3);
    port->setShadow({5, 0}, 0);
    fillRectangle(*port, -0.5, -0.5, 1, 1);
    EXPECT_EQ(alphaAt(*port, 2 * 26, 2 * 20), 85);
    EXPECT_EQ(alphaAt(*port, 2 * 24, 2 * 20), 85);
    EXPECT_EQ(alphaAt(*port, 2 * 27, 2 * 20), 0);
    EXPECT_EQ(alphaAt(*port, 2 * 20, 2 * 26), 0);
}

/// The alpha of the shadow of a half plane at `distance` points from its edge.
double expectedShadow(double distance, double blur) {
    return 255 * 0.5 * std::erfc(distance / (blur / 2 * std::numbers::sqrt2));
}

TEST(CairoPort, BlursAShadowByTheGaussianOfHalfItsBlur) {
    for (const double ratio : {1.0, 2.0}) {
        for (const double blur : {1.0, 4.0, 12.0, 60.0, 200.0}) {
            const auto port = CairoPort::pixelPort({100, 300}, ratio);
            port->setShadowWithColor({1200, 0}, blur, Color::blackColor().get());
            fillRectangle(*port, -2000, -1000, 850, 2300);
            for (int x = 0; x < port->pixelWidth(); x += 5) {
                const double distance = (x + 0.5) / ratio - 50;
                EXPECT_NEAR(alphaAt(*port, x, port->pixelHeight() / 2),
                            expectedShadow(distance, blur), 2.5)
                    << ratio << ' ' << blur << ' ' << x;
            }
        }
    }
}

TEST(CairoPort, CastsNoShadowFartherThanItsReach) {
    for (const MzSize offset : {MzSize{0, 0}, {3.5, 1.5}, {-20, 9.3}}) {
        for (const double blur : {0.0, 1.0, 7.0, 30.0}) {
            const auto port = CairoPort::pixelPort({200, 200});
            port->setShadowWithColor(offset, blur, Color::blackColor().get());
            fillRectangle(*port, 99, 99, 2, 2);
            double farthest = 0;
            for (int y = 0; y < 200; ++y) {
                for (int x = 0; x < 200; ++x) {
                    if (alphaAt(*port, x, y) == 0) continue;
                    // From the nearest corner of the pixel to that of the square.
                    const double dx = std::max(std::abs(x + 0.5 - 100) - 1.5, 0.0);
                    const double dy = std::max(std::abs(y + 0.5 - 100) - 1.5, 0.0);
                    farthest = std::max(farthest, std::hypot(dx, dy));
                }
            }
            EXPECT_LE(farthest, shadowReach(offset, blur)) << offset.width << ' ' << blur;
            EXPECT_GE(farthest, std::hypot(offset.width, offset.height) - 2) << blur;
        }
    }
}

TEST(CairoPort, AShadowIsTheSameToTheEdgesOfThePicture) {
    const auto port = CairoPort::pixelPort({50, 50});
    port->setShadowWithColor({1000, 0}, 80, Color::blackColor().get());
    fillRectangle(*port, -2000, -1000, 2000, 2100);
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(alphaAt(*port, 0, i), 255);
        EXPECT_EQ(alphaAt(*port, 49, i), 255);
        EXPECT_EQ(alphaAt(*port, i, 0), 255);
        EXPECT_EQ(alphaAt(*port, i, 49), 255);
    }
}

TEST(CairoPort, AShadowAppearsThoughWhatCastsItDoesNot) {
    const auto port = CairoPort::pixelPort({50, 50});
    port->setShadowWithColor({0, 100}, 4, Color::blackColor().get());
    fillRectangle(*port, 10, -90, 30, 30);
    EXPECT_EQ(alphaAt(*port, 25, 25), 255);
}

TEST(CairoPort, ShadowsAreClippedAndCastByWhatIsClipped) {
    const auto port = CairoPort::pixelPort({50, 50});
    rectangle(*port, 20, 0, 10, 50);
    port->clipEvenOdd();
    port->setShadowWithColor({20, 0}, 2, Color::blackColor().get());
    fillRectangle(*port, 0, 0, 10, 50);
    EXPECT_EQ(alphaAt(*port, 25, 25), 255);
    EXPECT_EQ(alphaAt(*port, 19, 25), 0);
    EXPECT_EQ(alphaAt(*port, 30, 25), 0);
}

TEST(CairoPort, FillAndStrokeCastTheirOwnShadows) {
    const auto port = CairoPort::pixelPort({60, 60});
    port->setRGBFillColor(1, 1, 1, 1);
    port->setRGBStrokeColor(1, 0, 0, 1);
    port->setLineWidth(2);
    port->setShadowWithColor({5, 0}, 0, Color::colorWithDeviceRed(0, 0, 1, 1).get());
    rectangle(*port, 10, 10, 30, 30);
    port->drawPath(PathDrawingMode::EvenOddFillStroke);
    EXPECT_EQ(at(*port, 15, 25), (Pixel{255, 0, 0, 255}));
    EXPECT_EQ(at(*port, 25, 25), (Pixel{255, 255, 255, 255}));
    EXPECT_EQ(at(*port, 44, 25), (Pixel{255, 0, 0, 255}));
}

TEST(CairoPort, ShadowsAreSwitchedOffByNoColor) {
    const auto port = CairoPort::pixelPort({30, 30});
    port->setShadow({10, 0}, 2);
    port->setShadowWithColor({0, 0}, 0, nullptr);
    fillRectangle(*port, 0, 0, 10, 10);
    EXPECT_EQ(alphaAt(*port, 15, 5), 0);
    for (const MzSize offset : {MzSize{nan, 0}, MzSize{0, infinity}, MzSize{1e300, 0}}) {
        port->setShadow(offset, 2);
        fillRectangle(*port, 0, 0, 10, 10);
    }
    port->setShadow({1, 1}, nan);
    fillRectangle(*port, 0, 0, 10, 10);
    EXPECT_EQ(alphaAt(*port, 10, 10), 0);
    port->setShadow({10, 0}, -5);
    fillRectangle(*port, 0, 0, 10, 10);
    EXPECT_EQ(alphaAt(*port, 15, 5), 85);
    port->setShadow({0, 0}, infinity);
    fillRectangle(*port, 0, 0, 10, 10);
    EXPECT_EQ(port->error(), std::nullopt);
}

}  // namespace
}  // namespace mezalith::platform
