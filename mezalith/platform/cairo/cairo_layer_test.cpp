// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/cairo/pictures.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <numbers>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using namespace pictures;

/// A marker of 20 by 20 points around (10, 10).
void marker(GraphicsPort& port) {
    port.saveState();
    port.translate(10, 10);
    port.rotate(0.3);
    port.setRGBFillColor(1, 0.5, 0, 0.8);
    port.setRGBStrokeColor(0, 0, 0.5, 1);
    port.setLineWidth(1.5);
    port.addEllipseInRect({{-5, -8}, {10, 16}});
    port.drawPath(PathDrawingMode::EvenOddFillStroke);
    port.restoreState();
}

TEST(CairoPort, StampsALayerAsItDrawsDirectly) {
    for (const double ratio : {1.0, 2.0}) {
        const auto direct = drawn({60, 40}, ratio, [](GraphicsPort& port) {
            for (const double x : {3.0, 17.0, 33.0}) {
                port.saveState();
                port.translate(x, 12);
                marker(port);
                port.restoreState();
            }
        });
        const auto stamped = drawn({60, 40}, ratio, [](GraphicsPort& port) {
            const auto layer = port.createLayer({20, 20});
            marker(*layer->port());
            for (const double x : {3.0, 17.0, 33.0}) {
                port.drawLayerAtPoint(layer.get(), {x, 12});
            }
        });
        // Overlapping half-transparent colours are rounded once or twice.
        EXPECT_LE(largestDifference(direct, stamped), 1) << ratio;
    }
}

TEST(CairoPort, StampsUnderTheTransform) {
    const auto port = CairoPort::pixelPort({60, 60}, 2);
    const auto layer = port->createLayer({10, 5});
    fillRectangle(*layer->port(), 0, 0, 5, 5);
    port->translate(30, 30);
    port->rotate(std::numbers::pi / 2);
    port->scale(2, 2);
    port->drawLayerAtPoint(layer.get(), {1, 0});
    // (1..6, 0..5) becomes (20..30, 32..42).
    EXPECT_EQ(alphaAt(*port, 2 * 25, 2 * 37), 255);
    EXPECT_EQ(alphaAt(*port, 2 * 21, 2 * 33), 255);
    EXPECT_EQ(alphaAt(*port, 2 * 25, 2 * 31), 0);
    EXPECT_EQ(alphaAt(*port, 2 * 25, 2 * 44), 0);
    EXPECT_EQ(alphaAt(*port, 2 * 31, 2 * 37), 0);
}

TEST(CairoPort, ALayerHasItsSizeAndWholePixels) {
    const auto port = CairoPort::pixelPort({10, 10}, 1.5);
    const auto layer = port->createLayer({5, 9.1});
    EXPECT_EQ(layer->size().width, 5);
    EXPECT_EQ(layer->size().height, 9.1);
    const auto* picture = dynamic_cast<CairoPort*>(layer->port());
    EXPECT_EQ(picture->pixelWidth(), 8);
    EXPECT_EQ(picture->pixelHeight(), 14);
    fillRectangle(*layer->port(), 0, 0, 1, 1);
    EXPECT_EQ(alphaAt(*picture, 0, 0), 255);
}

TEST(CairoPort, RefusesLayersWithoutAPositiveBoundedSize) {
    const auto port = CairoPort::pixelPort({10, 10}, 2);
    for (const MzSize size : {MzSize{0, 1}, MzSize{1, -1}, MzSize{nan, 1}, MzSize{1, infinity},
                              MzSize{8193, 1}, MzSize{1, 8192.5}}) {
        EXPECT_EQ(port->createLayer(size), nullptr);
    }
    EXPECT_NE(port->createLayer({8192, 1}), nullptr);
}

TEST(CairoPort, DrawsNothingForNoLayerAnotherKindOrItself) {
    const auto port = CairoPort::pixelPort({20, 20});
    RecordingPort other;
    const auto otherLayer = other.createLayer({5, 5});
    port->drawLayerAtPoint(nullptr, {0, 0});
    port->drawLayerAtPoint(otherLayer.get(), {0, 0});
    EXPECT_TRUE(isEmpty(*port));
    const auto layer = port->createLayer({20, 20});
    fillRectangle(*layer->port(), 0, 0, 5, 5);
    layer->port()->drawLayerAtPoint(layer.get(), {10, 10});
    port->drawLayerAtPoint(layer.get(), {0, 0});
    EXPECT_EQ(alphaAt(*port, 2, 2), 255);
    EXPECT_EQ(alphaAt(*port, 12, 12), 0);
}

TEST(CairoPort, ALayerMayOutliveItsPort) {
    std::shared_ptr<Layer> layer;
    {
        const auto port = CairoPort::pixelPort({20, 20});
        layer = port->createLayer({5, 5});
    }
    fillRectangle(*layer->port(), 0, 0, 5, 5);
    const auto port = CairoPort::pixelPort({20, 20});
    port->drawLayerAtPoint(layer.get(), {3, 3});
    EXPECT_EQ(alphaAt(*port, 5, 5), 255);
}

TEST(CairoPort, ALayerCastsAShadowOfItsShape) {
    const auto port = CairoPort::pixelPort({60, 60});
    const auto layer = port->createLayer({20, 20});
    layer->port()->setRGBFillColor(1, 1, 0, 1);
    fillRectangle(*layer->port(), 5, 5, 10, 10);
    for (const double blur : {0.0, 1.0}) {
        port->setShadowWithColor({20, 20}, blur, Color::colorWithDeviceRed(0, 0, 1, 1).get());
        port->drawLayerAtPoint(layer.get(), {0, 0});
        EXPECT_EQ(at(*port, 10, 10), (Pixel{255, 255, 255, 0}));
        EXPECT_EQ(at(*port, 30, 30), (Pixel{255, 0, 0, 255}));
        EXPECT_EQ(at(*port, 22, 22), (Pixel{0, 0, 0, 0}));
    }
}

TEST(CairoPort, StampsHarmlesslyUnderAnyTransform) {
    const auto port = CairoPort::pixelPort({20, 20});
    const auto layer = port->createLayer({5, 5});
    marker(*layer->port());
    for (const AffineTransform& t :
         {AffineTransform{0, 0, 0, 0, 0, 0}, AffineTransform{1e30, 0, 0, 1e30, 0, 0},
          AffineTransform{1e-9, 0, 0, 1e-9, 3, 3}, AffineTransform{1, 1, 1, 1, 0, 0},
          AffineTransform{nan, 0, 0, 1, 0, 0}, AffineTransform{1, 0, 0, 1, 1e300, infinity},
          AffineTransform{9000, 0, 0, 9000, -20000, -20000},
          AffineTransform{0.0002, 0, 0, 9000, 10, 0}, AffineTransform{1, 0, 0, 1, 1e300, -1e300}}) {
        for (const bool hasShadow : {false, true}) {
            port->saveState();
            if (hasShadow) {
                port->setShadow({1, 1}, 3);
            }
            port->concat(t);
            port->drawLayerAtPoint(layer.get(), {0, 0});
            port->restoreState();
        }
    }
    EXPECT_EQ(port->error(), std::nullopt);
}

}  // namespace
}  // namespace mezalith::platform
