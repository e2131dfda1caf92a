// SPDX-License-Identifier: MIT
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/observation_recorder.hpp>
#include <mezalith/style/image_symbolizer.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/testing.hpp>

#include <array>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using platform::CairoPort;
using platform::Image;
using testing::drawn;
using testing::Lines;
using testing::only;
using testing::TestDrawContext;

constexpr std::uint32_t kRed = 0xFFFF0000;
constexpr std::uint32_t kBlue = 0xFF0000FF;

/// Red above, blue below.
std::shared_ptr<const Image> flag() { return Image::imageWithBitmap({1, 2, {kRed, kBlue}}); }

std::shared_ptr<MzGeometry> place(double x, double y) {
    return MzPointGeometry::initWithPoint({x, y});
}

/// Twenty view points square, centred.
std::shared_ptr<MzImageSymbolizer> centred(double rotation = 0) {
    return MzImageSymbolizer::initWithImage(flag(), {0.5, 0.5}, rotation, {20, 20});
}

bool isHit(MzSymbolizer& symbolizer, std::shared_ptr<MzGeometry> geometry, MzPoint point) {
    TestDrawContext context;
    testing::TestFeature feature(std::move(geometry));
    return symbolizer.isSpatialObject(&feature, point, &context, false);
}

/// A port of 200 by 200 points with one drawing of the symbolizer at a point.
std::unique_ptr<CairoPort> pictureOf(MzSymbolizer& symbolizer, MzPoint point) {
    TestDrawContext context;
    auto port = CairoPort::pixelPort({200, 200});
    testing::drawInto(*port, symbolizer, place(point.x, point.y), context);
    return port;
}

std::uint32_t pixelAt(const CairoPort& port, int x, int y) {
    return port.pixelRow(port.pixelHeight() - 1 - y)[static_cast<std::size_t>(x)];
}

// --- making

TEST(ImageSymbolizer, KeepsWhatItIsMadeOf) {
    const auto image = flag();
    const auto symbolizer = MzImageSymbolizer::initWithImage(image, {0.25, 0.75}, 2, {20, 10});
    EXPECT_EQ(symbolizer->image(), image);
    EXPECT_EQ(symbolizer->hotSpot().x, 0.25);
    EXPECT_EQ(symbolizer->hotSpot().y, 0.75);
    EXPECT_EQ(symbolizer->rotation(), 2);
    EXPECT_EQ(symbolizer->size().width, 20);
    EXPECT_EQ(symbolizer->size().height, 10);
    EXPECT_EQ(symbolizer->layer(), nullptr);
    EXPECT_EQ(symbolizer->symbolizerType(), 14561U);
}

TEST(ImageSymbolizer, MadeWithoutASizeHasNone) {
    const auto symbolizer = MzImageSymbolizer::initWithImage(flag(), {0.5, 0.5}, 1);
    EXPECT_EQ(symbolizer->size().width, 0);
    EXPECT_EQ(symbolizer->size().height, 0);
    EXPECT_EQ(symbolizer->rotation(), 1);
    EXPECT_NE(symbolizer->image(), nullptr);
}

TEST(ImageSymbolizer, MadeWithoutASizeShowsNothingAndIsNeverHit) {
    const auto symbolizer = MzImageSymbolizer::initWithImage(flag(), {0.5, 0.5}, 0);
    const auto port = pictureOf(*symbolizer, {100, 100});
    for (int row = 0; row < 200; ++row) {
        for (const std::uint32_t pixel : port->pixelRow(row)) ASSERT_EQ(pixel, 0U);
    }
    EXPECT_EQ(symbolizer->layer(), nullptr);
    EXPECT_FALSE(isHit(*symbolizer, place(100, 100), {100, 100}));
}

TEST(ImageSymbolizer, ShowsItsPictureOnceItHasASize) {
    const auto symbolizer = MzImageSymbolizer::initWithImage(flag(), {0.5, 0.5}, 0);
    pictureOf(*symbolizer, {100, 100});
    symbolizer->setSize({20, 20});
    EXPECT_EQ(pixelAt(*pictureOf(*symbolizer, {100, 100}), 100, 105), kRed);
}

// --- drawing

TEST(ImageSymbolizer, DrawsThePictureIntoALayerAndStampsIt) {
    const auto symbolizer = MzImageSymbolizer::initWithImage(flag(), {0.5, 0.25}, 1.5, {20, 10});
    TestDrawContext context;
    context.factor = 3;
    EXPECT_EQ(drawn(*symbolizer, place(100, 50), context),
              (Lines{"saveState", "translate 100 50", "rotate 1.5", "createLayer 1 20 10",
                     "layer 1: drawImageInRect 1x2 0 0 20 10", "drawLayerAtPoint 1 -10 -2.5",
                     "restoreState"}));
}

TEST(ImageSymbolizer, StampsTheLayerItHas) {
    const auto symbolizer = centred();
    TestDrawContext context;
    platform::RecordingPort port;
    testing::drawInto(port, *symbolizer, place(1, 2), context);
    const auto layer = symbolizer->layer();
    port.clear();
    testing::drawInto(port, *symbolizer, place(3, 4), context);
    EXPECT_EQ(port.lines(), (Lines{"saveState", "translate 3 4", "rotate 0",
                                   "drawLayerAtPoint 1 -10 -10", "restoreState"}));
    EXPECT_EQ(symbolizer->layer(), layer);
}

TEST(ImageSymbolizer, DrawsSelectedObjectsLikeOthers) {
    TestDrawContext context;
    EXPECT_EQ(drawn(*centred(), place(1, 2), context, true),
              drawn(*centred(), place(1, 2), context, false));
}

TEST(ImageSymbolizer, CoversItsRectangleAroundTheHotSpot) {
    const auto port = pictureOf(*centred(), {100, 100});
    EXPECT_EQ(pixelAt(*port, 90, 90), kBlue);
    EXPECT_EQ(pixelAt(*port, 109, 90), kBlue);
    EXPECT_EQ(pixelAt(*port, 90, 109), kRed);
    EXPECT_EQ(pixelAt(*port, 109, 109), kRed);
    for (const auto& [x, y] : {std::pair{89, 100}, {110, 100}, {100, 89}, {100, 110}}) {
        EXPECT_EQ(pixelAt(*port, x, y), 0U) << x << ' ' << y;
    }
}

TEST(ImageSymbolizer, TurnsThePictureAboutTheHotSpot) {
    const auto symbolizer =
        MzImageSymbolizer::initWithImage(flag(), {0, 0}, std::numbers::pi / 2, {20, 10});
    const auto port = pictureOf(*symbolizer, {100, 100});
    // (100..120, 100..110) becomes (90..100, 100..120), what was above at the left.
    EXPECT_EQ(pixelAt(*port, 92, 110), kRed);
    EXPECT_EQ(pixelAt(*port, 98, 110), kBlue);
    EXPECT_EQ(pixelAt(*port, 105, 105), 0U);
    EXPECT_EQ(pixelAt(*port, 92, 98), 0U);
}

TEST(ImageSymbolizer, StaysCrispAtAPixelRatioOfTwo) {
    // A picture of as many pixels as it covers: each of them shows unchanged.
    const auto fine = Image::imageWithBitmap({4, 1, {kRed, kBlue, kRed, kBlue}});
    const auto symbolizer = MzImageSymbolizer::initWithImage(fine, {0, 0}, 0, {2, 1});
    TestDrawContext context;
    const auto port = CairoPort::pixelPort({10, 10}, 2);
    testing::drawInto(*port, *symbolizer, place(3, 3), context);
    EXPECT_EQ(pixelAt(*port, 6, 6), kRed);
    EXPECT_EQ(pixelAt(*port, 7, 6), kBlue);
    EXPECT_EQ(pixelAt(*port, 8, 7), kRed);
    EXPECT_EQ(pixelAt(*port, 9, 7), kBlue);
}

TEST(ImageSymbolizer, DrawsNoOtherGeometries) {
    const auto symbolizer = centred();
    TestDrawContext context;
    std::array<MzPoint, 2> points{{{0, 0}, {5, 5}}};
    const testing::Rings square{{{0, 0}, {20, 0}, {20, 20}, {0, 20}}};
    const std::vector<std::shared_ptr<MzGeometry>> geometries{
        testing::multiPoint({{10, 20}, {30, 40}}),
        MzLineStringGeometry::initWithLineString({2, points.data()}),
        testing::polygon(square, context), testing::multiPolygon({square})};
    for (const auto& geometry : geometries) {
        EXPECT_EQ(drawn(*symbolizer, geometry, context), Lines{}) << geometry->geometryType();
        EXPECT_FALSE(isHit(*symbolizer, geometry, {10, 20})) << geometry->geometryType();
    }
}

TEST(ImageSymbolizer, DrawsNothingOutsideTheRegionOrWithoutOne) {
    const auto symbolizer = centred();
    TestDrawContext context;
    EXPECT_EQ(drawn(*symbolizer, place(2000, 0), context), Lines{});
    context.region = nullptr;
    EXPECT_EQ(drawn(*symbolizer, place(0, 0), context), Lines{});
}

TEST(ImageSymbolizer, SurvivesWhateverIsMissing) {
    const auto symbolizer = centred();
    TestDrawContext context;
    testing::TestFeature feature(place(0, 0));
    symbolizer->drawSpatialObject(&feature, &context, false);
    EXPECT_EQ(symbolizer->layerForContext(nullptr), nullptr);
    platform::RecordingPort port;
    const platform::GraphicsContext current(&port);
    symbolizer->drawSpatialObject(nullptr, &context, false);
    symbolizer->drawSpatialObject(&feature, nullptr, false);
    EXPECT_FALSE(symbolizer->isSpatialObject(nullptr, {0, 0}, &context, false));
    EXPECT_FALSE(symbolizer->isSpatialObject(&feature, {0, 0}, nullptr, false));
    feature.geometryValue = nullptr;
    EXPECT_FALSE(symbolizer->isSpatialObject(&feature, {0, 0}, &context, false));
    EXPECT_EQ(port.lines(), Lines{});
}

TEST(ImageSymbolizer, DrawsAnEmptyLayerWithoutAPicture) {
    MzImageSymbolizer symbolizer;
    symbolizer.setSize({5, 5});
    TestDrawContext context;
    const Lines lines = drawn(symbolizer, place(0, 0), context);
    EXPECT_EQ(only("layer 1: drawImageInRect", lines),
              Lines{"layer 1: drawImageInRect none 0 0 5 5"});
    EXPECT_EQ(only("drawLayerAtPoint", lines), Lines{"drawLayerAtPoint 1 0 0"});
}

TEST(ImageSymbolizer, SurvivesNumbersThatAreNone) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const auto symbolizer = MzImageSymbolizer::initWithImage(flag(), {nan, nan}, nan, {20, 20});
    const auto port = pictureOf(*symbolizer, {100, 100});
    EXPECT_EQ(port->error(), std::nullopt);
    EXPECT_EQ(pixelAt(*port, 100, 100), 0U);
    EXPECT_FALSE(isHit(*symbolizer, place(100, 100), {100, 100}));
}

// --- the layer

TEST(ImageSymbolizer, MakesItsLayerForAPortOnce) {
    const auto symbolizer = centred();
    platform::RecordingPort first;
    platform::RecordingPort second;
    const auto layer = symbolizer->layerForContext(&first);
    EXPECT_NE(layer, nullptr);
    EXPECT_EQ(symbolizer->layer(), layer);
    EXPECT_EQ(symbolizer->layerForContext(&second), layer);
    EXPECT_EQ(second.lines(), Lines{});
    EXPECT_EQ(first.lines(),
              (Lines{"createLayer 1 20 20", "layer 1: drawImageInRect 1x2 0 0 20 20"}));
}

TEST(ImageSymbolizer, KeepsItsLayerWhateverChanges) {
    const auto symbolizer = centred();
    platform::RecordingPort port;
    const auto layer = symbolizer->layerForContext(&port);
    symbolizer->setImage(flag());
    symbolizer->setSize({40, 40});
    symbolizer->setRotation(1);
    symbolizer->setHotSpot({0, 0});
    EXPECT_EQ(symbolizer->layerForContext(&port), layer);
    EXPECT_EQ(layer->size().width, 20);
    symbolizer->setLayer(nullptr);
    EXPECT_NE(symbolizer->layerForContext(&port), layer);
}

TEST(ImageSymbolizer, KeepsItsOldRenderingAfterAChangeOfSizeWhileHitsFollow) {
    const auto symbolizer = centred();
    pictureOf(*symbolizer, {100, 100});
    symbolizer->setSize({60, 60});
    const auto port = pictureOf(*symbolizer, {100, 100});
    // The layer is 20 points square still, its corner where that of the new size would be.
    EXPECT_EQ(pixelAt(*port, 70, 70), kBlue);
    EXPECT_EQ(pixelAt(*port, 89, 89), kRed);
    EXPECT_EQ(pixelAt(*port, 91, 91), 0U);
    EXPECT_TRUE(isHit(*symbolizer, place(100, 100), {129, 129}));
    EXPECT_FALSE(isHit(*symbolizer, place(100, 100), {131, 100}));
}

// --- hits

TEST(ImageSymbolizer, IsHitInItsRectangle) {
    const auto symbolizer = centred();
    EXPECT_TRUE(isHit(*symbolizer, place(100, 100), {109, 95}));
    EXPECT_FALSE(isHit(*symbolizer, place(100, 100), {111, 95}));
    EXPECT_TRUE(isHit(*symbolizer, place(100, 100), {90, 90}));
    EXPECT_FALSE(isHit(*symbolizer, place(100, 100), {110, 100}));
    EXPECT_FALSE(isHit(*symbolizer, place(100, 100), {100, 110}));
    EXPECT_FALSE(isHit(*symbolizer, place(2000, 100), {2000, 100}));
}

TEST(ImageSymbolizer, IsHitWhereItWouldBeUnturned) {
    const auto symbolizer =
        MzImageSymbolizer::initWithImage(flag(), {0, 0}, std::numbers::pi / 2, {20, 10});
    EXPECT_TRUE(isHit(*symbolizer, place(100, 100), {115, 105}));
    EXPECT_FALSE(isHit(*symbolizer, place(100, 100), {95, 115}));
}

// --- comparison and copies

TEST(ImageSymbolizer, IsEqualWithTheSamePictureOnly) {
    const auto image = flag();
    const auto one = MzImageSymbolizer::initWithImage(image, {0, 0}, 0, {20, 20});
    const auto other = MzImageSymbolizer::initWithImage(image, {0.5, 1}, 3, {1, 2});
    EXPECT_TRUE(one->isEqualToSymbolizer(other.get()));
    EXPECT_TRUE(one->isEqualToSymbolizer(one.get()));
    other->setImage(flag());
    EXPECT_FALSE(one->isEqualToSymbolizer(other.get())) << "equal pixels, another picture";
    EXPECT_FALSE(one->isEqualToSymbolizer(nullptr));
    const MzPointSymbolizer point;
    EXPECT_FALSE(one->isEqualToSymbolizer(&point));
    EXPECT_FALSE(point.isEqualToSymbolizer(one.get()));
}

TEST(ImageSymbolizer, SharesPictureAndLayerWithItsCopy) {
    const auto symbolizer = MzImageSymbolizer::initWithImage(flag(), {0.25, 0.75}, 2, {20, 10});
    platform::RecordingPort port;
    symbolizer->layerForContext(&port);
    const auto copy = symbolizer->copy();
    EXPECT_NE(copy, symbolizer);
    EXPECT_EQ(copy->image(), symbolizer->image());
    EXPECT_EQ(copy->hotSpot().y, 0.75);
    EXPECT_EQ(copy->rotation(), 2);
    EXPECT_EQ(copy->size().width, 20);
    EXPECT_NE(copy->layer(), nullptr);
    EXPECT_EQ(copy->layer(), symbolizer->layer());
    EXPECT_TRUE(copy->isEqualToSymbolizer(symbolizer.get()));
}

TEST(ImageSymbolizer, ReleasesItsLayer) {
    std::weak_ptr<platform::Layer> layer;
    platform::RecordingPort port;
    {
        const auto symbolizer = centred();
        layer = symbolizer->layerForContext(&port);
        EXPECT_FALSE(layer.expired());
    }
    EXPECT_TRUE(layer.expired());
}

// --- changes

TEST(ImageSymbolizer, AnnouncesItsPropertiesButNoDrawing) {
    MzImageSymbolizer symbolizer;
    EXPECT_TRUE(symbolizer.drawPropertyKeyPaths().empty());
    testing::ObservationRecorder log;
    log.observe(symbolizer, {"image", "hotSpot", "rotation", "size", "layer", MzDrawPropertyKey});
    symbolizer.setImage(flag());
    symbolizer.setHotSpot({1, 1});
    symbolizer.setRotation(1);
    symbolizer.setSize({1, 1});
    symbolizer.setLayer(nullptr);
    EXPECT_EQ(log.lines,
              (Lines{"will image", "did image", "will hotSpot", "did hotSpot", "will rotation",
                     "did rotation", "will size", "did size", "will layer", "did layer"}));
}

}  // namespace
}  // namespace mezalith
