// SPDX-License-Identifier: MIT
#include <mezalith/platform/hit_port.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using Drawing = std::function<void(GraphicsPort&)>;

bool isHit(const Drawing& draw, double x, double y, double tolerance = 0.01) {
    HitPort port({x, y}, tolerance);
    draw(port);
    return port.isHit();
}

void addRectangle(GraphicsPort& port, double x, double y, double width, double height) {
    port.addLines(std::array{MzPoint{x, y}, MzPoint{x + width, y}, MzPoint{x + width, y + height},
                             MzPoint{x, y + height}});
    port.closeSubpath();
}

void fillSquare(GraphicsPort& port) {
    addRectangle(port, 0, 0, 10, 10);
    port.drawPath(PathDrawingMode::Fill);
}

std::shared_ptr<const Image> blackImage() {
    Bitmap bitmap = Bitmap::bitmapWithSize(4, 2);
    for (std::uint32_t& pixel : bitmap.row(0)) pixel = 0xFF000000;  // the upper half
    return Image::imageWithBitmap(std::move(bitmap));
}

TEST(HitPort, HitsFillsByTheirRule) {
    const auto ring = [](PathDrawingMode mode) {
        return [mode](GraphicsPort& port) {
            addRectangle(port, 0, 0, 30, 30);
            addRectangle(port, 10, 10, 10, 10);
            port.setLineWidth(2);
            port.drawPath(mode);
        };
    };
    EXPECT_TRUE(isHit(ring(PathDrawingMode::Fill), 15, 15));
    EXPECT_FALSE(isHit(ring(PathDrawingMode::EvenOddFill), 15, 15));
    EXPECT_TRUE(isHit(ring(PathDrawingMode::EvenOddFill), 5, 15));
    EXPECT_FALSE(isHit(ring(PathDrawingMode::EvenOddFill), -0.5, 15));
    EXPECT_TRUE(isHit(ring(PathDrawingMode::EvenOddFillStroke), -0.5, 15));
    EXPECT_FALSE(isHit(ring(PathDrawingMode::Stroke), 5, 15));
    EXPECT_TRUE(isHit(ring(PathDrawingMode::Stroke), 10.5, 15));
}

TEST(HitPort, IsNotHitByWhatIsNotSeen) {
    EXPECT_FALSE(isHit(
        [](GraphicsPort& port) {
            port.setRGBFillColor(1, 0, 0, 0);
            port.setRGBStrokeColor(1, 0, 0, 0);
            addRectangle(port, 0, 0, 10, 10);
            port.drawPath(PathDrawingMode::FillStroke);
        },
        5, 5));
    EXPECT_FALSE(isHit(
        [](GraphicsPort& port) {
            port.setShadow({20, 0}, 4);
            fillSquare(port);
        },
        25, 5))
        << "a shadow is no hit";
}

TEST(HitPort, ForgetsHitsWhenCleared) {
    HitPort port({5, 5}, 1);
    fillSquare(port);
    EXPECT_TRUE(port.isHit());
    port.clear();
    EXPECT_FALSE(port.isHit());
    fillSquare(port);
    EXPECT_TRUE(port.isHit());
}

TEST(HitPort, AsksNowhereWithoutAFinitePlaceAndTolerance) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(isHit(fillSquare, std::nan(""), 5));
    EXPECT_FALSE(isHit(fillSquare, 5, infinity));
    EXPECT_FALSE(isHit(fillSquare, 5, 5, -1));
    EXPECT_FALSE(isHit(fillSquare, 5, 5, infinity));
    EXPECT_TRUE(isHit(fillSquare, 5, 5, 0));
    EXPECT_TRUE(isHit(fillSquare, 500, 5, 1e300));
}

TEST(HitPort, IsHitOnlyWhereTheClipLetsItShow) {
    const auto clipped = [](GraphicsPort& port) {
        port.saveState();
        addRectangle(port, 0, 0, 5, 10);
        port.clipEvenOdd();
        fillSquare(port);
        port.restoreState();
    };
    EXPECT_TRUE(isHit(clipped, 2, 5, 1));
    EXPECT_FALSE(isHit(clipped, 8, 5, 1));
    EXPECT_TRUE(isHit(clipped, 6, 5, 1.5));
    EXPECT_TRUE(isHit([&](GraphicsPort& port) { clipped(port), fillSquare(port); }, 8, 5, 1));
    EXPECT_FALSE(isHit(
        [](GraphicsPort& port) {
            port.clipEvenOdd();
            fillSquare(port);
        },
        5, 5))
        << "clipped to nothing";
}

TEST(HitPort, IsNotHitWhereClipAndShapeTouchTheDiscInDifferentPlaces) {
    const auto apartBy = [](double gap) {
        return [gap](GraphicsPort& port) {
            addRectangle(port, 0, 0, 4, 10);
            port.clipEvenOdd();
            addRectangle(port, 4 + gap, 0, 4, 10);
            port.drawPath(PathDrawingMode::Fill);
        };
    };
    EXPECT_FALSE(isHit(apartBy(0.6), 5, 5, 2));
    EXPECT_FALSE(isHit(apartBy(3), 5, 5, 20));
    EXPECT_TRUE(isHit(apartBy(-0.1), 5, 5, 2));
}

TEST(HitPort, StampsLayersAtPlacesAndTurnsThem) {
    const auto stamped = [](GraphicsPort& port) {
        const auto layer = port.createLayer({20, 10});
        fillSquare(*layer->port());
        layer->port()->setRGBFillColor(0, 0, 0, 0);
        addRectangle(*layer->port(), 10, 0, 10, 10);
        layer->port()->drawPath(PathDrawingMode::Fill);
        port.translate(100, 100);
        port.rotate(std::numbers::pi / 2);
        port.drawLayerAtPoint(layer.get(), {5, 0});
    };
    EXPECT_TRUE(isHit(stamped, 95, 110));
    EXPECT_FALSE(isHit(stamped, 95, 104));
    EXPECT_FALSE(isHit(stamped, 95, 118)) << "clear";
    EXPECT_FALSE(isHit(stamped, 101, 110));
    EXPECT_TRUE(isHit(stamped, 101, 110, 1.1));
}

TEST(HitPort, ShowsNothingOutsideOfALayer) {
    const auto stamped = [](GraphicsPort& port) {
        const auto layer = port.createLayer({9.5, 10});
        layer->port()->setLineWidth(40);
        layer->port()->addLines(std::array{MzPoint{-20, 5}, MzPoint{40, 5}});
        layer->port()->drawPath(PathDrawingMode::Stroke);
        port.drawLayerAtPoint(layer.get(), {100, 100});
    };
    EXPECT_TRUE(isHit(stamped, 109.9, 105)) << "whole pixels";
    EXPECT_FALSE(isHit(stamped, 110.5, 105, 0.1));
    EXPECT_FALSE(isHit(stamped, 105, 99, 0.5));
    EXPECT_TRUE(isHit(stamped, 105, 99, 1.5));
}

TEST(HitPort, KeepsTheClipsAndStatesOfALayer) {
    const auto stamped = [](GraphicsPort& port) {
        const auto layer = port.createLayer({20, 20});
        GraphicsPort& inner = *layer->port();
        inner.saveState();
        addRectangle(inner, 0, 0, 5, 20);
        inner.clipEvenOdd();
        fillSquare(inner);
        inner.restoreState();
        inner.setLineWidth(2);
        inner.setLineDash(0, std::array{5.0, 5.0});
        inner.addLines(std::array{MzPoint{0, 15}, MzPoint{20, 15}});
        inner.drawPath(PathDrawingMode::Stroke);
        port.scale(2, 2);
        port.drawLayerAtPoint(layer.get(), {0, 0});
    };
    EXPECT_TRUE(isHit(stamped, 9, 5));
    EXPECT_FALSE(isHit(stamped, 11, 5));
    EXPECT_TRUE(isHit(stamped, 9, 31.9));
    EXPECT_FALSE(isHit(stamped, 9, 32.1));
    EXPECT_FALSE(isHit(stamped, 15, 30));
    EXPECT_TRUE(isHit(stamped, 25, 30));
}

TEST(HitPort, StampsLayersInLayersAsTheyWereThen) {
    const auto nested = [](GraphicsPort& port) {
        const auto inner = port.createLayer({10, 10});
        const auto outer = inner->port()->createLayer({40, 40});
        addRectangle(*inner->port(), 0, 0, 5, 10);
        inner->port()->drawPath(PathDrawingMode::Fill);
        outer->port()->drawLayerAtPoint(inner.get(), {20, 0});
        fillSquare(*inner->port());
        outer->port()->drawLayerAtPoint(outer.get(), {0, 20});
        port.drawLayerAtPoint(outer.get(), {0, 0});
    };
    EXPECT_TRUE(isHit(nested, 22, 5));
    EXPECT_FALSE(isHit(nested, 28, 5)) << "was drawn later";
    EXPECT_FALSE(isHit(nested, 22, 25)) << "a layer is not drawn into itself";
}

TEST(HitPort, EndsWhereLayersNestTooDeeply) {
    HitPort port({5, 5}, 1);
    auto layer = port.createLayer({10, 10});
    fillSquare(*layer->port());
    for (int i = 0; i < 10; ++i) {
        const auto outer = port.createLayer({10, 10});
        outer->port()->drawLayerAtPoint(layer.get(), {0, 0});
        layer = outer;
    }
    port.drawLayerAtPoint(layer.get(), {0, 0});
    EXPECT_TRUE(port.isHit());
    port.clear();
    for (int i = 0; i < 100000; ++i) {
        const auto outer = port.createLayer({10, 10});
        outer->port()->drawLayerAtPoint(layer.get(), {0, 0});
        layer = outer;
    }
    port.drawLayerAtPoint(layer.get(), {0, 0});
    EXPECT_FALSE(port.isHit());
}

TEST(HitPort, DrawsImagesUprightWhereTheyAreNotTransparent) {
    const auto image = blackImage();
    const auto drawn = [&](GraphicsPort& port) {
        port.drawImageInRect(image.get(), {{10, 10}, {40, 20}});
    };
    EXPECT_TRUE(isHit(drawn, 30, 25));
    EXPECT_FALSE(isHit(drawn, 30, 14));
    EXPECT_FALSE(isHit(drawn, 30, 30.5, 0.2));
    const auto inLayer = [&](GraphicsPort& port) {
        const auto layer = port.createLayer({40, 20});
        layer->port()->drawImageInRect(image.get(), {{0, 0}, {40, 20}});
        port.translate(100, 100);
        port.rotate(std::numbers::pi);
        port.drawLayerAtPoint(layer.get(), {0, 0});
    };
    EXPECT_TRUE(isHit(inLayer, 80, 85));
    EXPECT_FALSE(isHit(inLayer, 80, 96));
}

TEST(HitPort, DrawsNothingForWhatOtherPortsRefuse) {
    HitPort port({5, 5}, 100);
    EXPECT_EQ(port.createLayer({0, 5}), nullptr);
    EXPECT_EQ(port.createLayer({5, std::nan("")}), nullptr);
    EXPECT_EQ(port.createLayer({16385, 5}), nullptr);
    RecordingPort recorder;
    const auto foreign = recorder.createLayer({10, 10});
    fillSquare(*foreign->port());
    port.drawLayerAtPoint(foreign.get(), {0, 0});
    port.drawLayerAtPoint(nullptr, {0, 0});
    port.drawImageInRect(nullptr, {{0, 0}, {10, 10}});
    port.drawImageInRect(blackImage().get(), {{0, 0}, {0, 10}});
    EXPECT_FALSE(port.isHit());
}

}  // namespace
}  // namespace mezalith::platform
