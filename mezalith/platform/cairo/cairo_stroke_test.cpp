// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/cairo/pictures.hpp>

#include <tuple>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using namespace pictures;

TEST(CairoPort, CapsLinesAsTold) {
    for (const auto& [cap, beyondEnd, corner] :
         {std::tuple{LineCap::Butt, 0, 0}, std::tuple{LineCap::Round, 255, 60},
          std::tuple{LineCap::Square, 255, 255}}) {
        const auto port = CairoPort::pixelPort({30, 20});
        port->setLineWidth(8);
        port->setLineCap(cap);
        port->setLineCap(static_cast<LineCap>(3));
        strokeLine(*port, {10, 10}, {20, 10});
        EXPECT_EQ(alphaAt(*port, 22, 10), beyondEnd);
        EXPECT_NEAR(alphaAt(*port, 23, 13), corner, 60);
        EXPECT_EQ(alphaAt(*port, 24, 10), 0);
    }
}

TEST(CairoPort, JoinsLinesAsTold) {
    for (const auto& [join, tip, shoulder] :
         {std::tuple{LineJoin::Miter, 255, 255}, std::tuple{LineJoin::Round, 0, 255},
          std::tuple{LineJoin::Bevel, 0, 0}}) {
        const auto port = CairoPort::pixelPort({40, 40});
        port->setLineWidth(12);
        port->setLineJoin(join);
        port->setLineJoin(static_cast<LineJoin>(77));
        port->addLines(std::array{MzPoint{5, 20}, MzPoint{20, 20}, MzPoint{20, 5}});
        port->drawPath(PathDrawingMode::Stroke);
        EXPECT_EQ(alphaAt(*port, 25, 25), tip);
        EXPECT_EQ(alphaAt(*port, 23, 23), shoulder);
    }
}

TEST(CairoPort, PaintsDashes) {
    const auto port = CairoPort::pixelPort({40, 4});
    port->setLineWidth(2);
    port->setLineDash(3, std::array{4.0, 2.0});
    strokeLine(*port, {0, 2}, {40, 2});
    for (int x = 0; x < 40; ++x) {
        EXPECT_EQ(alphaAt(*port, x, 2), (x + 3) % 6 < 4 ? 255 : 0) << x;
    }
}

TEST(CairoPort, AnOddDashPatternAlternates) {
    const auto port = CairoPort::pixelPort({40, 4});
    port->setLineWidth(2);
    port->setLineDash(0, std::array{3.0});
    strokeLine(*port, {0, 2}, {40, 2});
    for (int x = 0; x < 40; ++x) {
        EXPECT_EQ(alphaAt(*port, x, 2), x % 6 < 3 ? 255 : 0) << x;
    }
}

TEST(CairoPort, DashesFollowTheTransform) {
    const auto port = CairoPort::pixelPort({40, 4}, 2);
    port->setLineWidth(2);
    port->scale(2, 2);
    port->setLineDash(1, std::array{2.0, 1.0});
    strokeLine(*port, {0, 1}, {20, 1});
    for (int x = 0; x < 80; ++x) {
        EXPECT_EQ(alphaAt(*port, x, 4), (x + 4) % 12 < 8 ? 255 : 0) << x;
    }
}

TEST(CairoPort, ADashPatternThatIsNoneIsSolid) {
    const Drawing line = [](GraphicsPort& port) { strokeLine(port, {2, 5}, {18, 6}); };
    const auto solid = drawn({20, 10}, 1, line);
    for (const std::vector<double>& lengths :
         {std::vector<double>{}, {0, 0}, {3, -1}, {nan}, {infinity, 2}, {0.001, 0.001}}) {
        EXPECT_EQ(drawn({20, 10}, 1,
                        [&](GraphicsPort& port) {
                            port.setLineDash(0, std::array{2.0, 2.0});
                            port.setLineDash(1, lengths);
                            line(port);
                        }),
                  solid);
    }
}

TEST(CairoPort, AWidthThatIsNoneDrawsNothing) {
    const auto port = CairoPort::pixelPort({20, 20});
    for (const double width : {0.0, -3.0, nan}) {
        port->setLineWidth(width);
        strokeLine(*port, {0, 10}, {20, 10});
        EXPECT_TRUE(isEmpty(*port));
    }
    port->setLineWidth(infinity);
    strokeLine(*port, {0, 10}, {20, 10});
    EXPECT_EQ(alphaAt(*port, 10, 19), 255);
}

TEST(CairoPort, AFlatTransformStrokesNothingAndDoesNoHarm) {
    const auto port = CairoPort::pixelPort({20, 20});
    for (const AffineTransform& flat :
         {AffineTransform{0, 0, 0, 0, 0, 0}, AffineTransform{1, 0, 0, 0, 0, 5},
          AffineTransform{1, 1, 1, 1, 0, 0}, AffineTransform{nan, 0, 0, 1, 0, 0},
          AffineTransform{infinity, 0, 0, 1, 0, 0}, AffineTransform{1e-200, 0, 0, 1e200, 0, 0}}) {
        port->saveState();
        port->addLines(std::array{MzPoint{2, 2}, MzPoint{18, 18}});
        port->concat(flat);
        port->drawPath(PathDrawingMode::Stroke);
        port->restoreState();
    }
    EXPECT_TRUE(isEmpty(*port));
    strokeLine(*port, {0, 10}, {20, 10});
    EXPECT_FALSE(isEmpty(*port));
    EXPECT_EQ(port->error(), std::nullopt);
}

}  // namespace
}  // namespace mezalith::platform
