// SPDX-License-Identifier: MIT
#include "host/hit_finder.hpp"

#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/text_file.hpp>
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>
#include <mezalith/style/style_archive.hpp>

#include <array>
#include <fstream>
#include <map>
#include <random>
#include <sstream>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

using platform::Color;

constexpr unsigned kSeed = 20240625;

ViewFrame worldFrame() {
    return {.projection = MzMapProjection::mapProjectionWithPlateCarree(),
            .area = {-180, -90, 180, 90},
            .size = {1200, 600}};  // 3.33 points a degree
}

std::shared_ptr<MzStyle> styleOf(std::shared_ptr<MzSymbolizer> symbolizer) {
    const auto rule = std::make_shared<MzRule>();
    rule->addSymbolizer(std::move(symbolizer));
    auto style = std::make_shared<MzStyle>();
    style->addRule(rule);
    return style;
}

std::shared_ptr<Feature> lineOf(std::int64_t id, std::vector<MzPoint> points) {
    auto feature = std::make_shared<Feature>(
        std::make_shared<FeatureRecord>(FeatureRecord{id, "lines", {}}),
        Part{Form::Line, MzMultiPointGeometry::initWithMultiPoint(
                             {static_cast<std::uint32_t>(points.size()), points.data()})});
    feature->setStyle(styleOf(std::make_shared<MzLineSymbolizer>()));
    return feature;
}

std::vector<std::int64_t> idsOf(const std::vector<FeatureHit>& hits) {
    std::vector<std::int64_t> ids;
    for (const FeatureHit& hit : hits) ids.push_back(hit.feature->record()->id);
    return ids;
}

using Ids = std::vector<std::int64_t>;

TEST(HitFinder, TellsTheTopmostFirst) {
    MapView view(worldFrame());
    std::vector<Layer> layers(2);
    layers[0].features = {lineOf(1, {{0, 0}, {30, 0}}), lineOf(2, {{10, -10}, {10, 10}})};
    layers[1].features = {lineOf(3, {{0, -10}, {20, 10}})};
    HitFinder finder(view, layers);
    EXPECT_EQ(idsOf(finder.at({633, 300}, 0.5)), (Ids{3, 2, 1}));
    EXPECT_EQ(idsOf(finder.at({620, 300}, 0.5)), Ids{1});
    EXPECT_EQ(idsOf(finder.at({620, 303}, 1.5)), Ids{});
    EXPECT_EQ(idsOf(finder.at({620, 303}, 2.5)), Ids{1});
    EXPECT_EQ(finder.at({633, 300}, 0.5)[1].style.symbolizer->symbolizerType(), 1U);
}

TEST(HitFinder, TellsARecordOnceAndAsksWhoIsSelected) {
    MapView view(worldFrame());
    std::vector<Layer> layers(1);
    const auto one = lineOf(1, {{0, 0}, {30, 0}});
    const auto other = one->withGeometry(lineOf(1, {{10, -10}, {10, 10}})->geometry());
    layers[0].features = {one, other};
    HitFinder finder(view, layers);
    const auto hits = finder.at({633, 300}, 0.5);
    ASSERT_EQ(hits.size(), 1U);
    EXPECT_EQ(hits[0].feature, other);
    one->style()->rules()[0]->setSelectionFilter(1);
    EXPECT_TRUE(finder.at({633, 300}, 0.5).empty());
    EXPECT_EQ(finder.at({633, 300}, 0.5, [](const Feature&) { return true; }).size(), 1U);
}

TEST(HitFinder, FindsLinesAsAZoneBendsThem) {
    ViewFrame frame = worldFrame();
    frame.projection = MzMapProjection::mapProjectionWithUTMZone(33);
    frame.area = {0, 55, 30, 70};
    MapView view(frame);
    std::vector<Layer> layers(1);
    layers[0].features = {lineOf(1, {{3, 64}, {27, 64}})};
    const auto pixel = [&](MzPoint place) {
        const MzPoint projected = frame.projection->projectedCoordinateForLongitudeLatitude(place);
        return MzPoint{
            (projected.x - view.projectedBounds().origin.x) / view.projectedUnitsPerPixel(),
            (projected.y - view.projectedBounds().origin.y) / view.projectedUnitsPerPixel()};
    };
    const MzPoint a = pixel({3, 64}), b = pixel({27, 64});
    const MzPoint straight{(a.x + b.x) / 2, (a.y + b.y) / 2};
    EXPECT_GT(std::abs(straight.y - pixel({15, 64}).y), 10);
    HitFinder finder(view, layers);
    EXPECT_EQ(idsOf(finder.at(pixel({15, 64}), 1)), Ids{1});
    EXPECT_EQ(idsOf(finder.at(straight, 1)), Ids{});
}

TEST(HitFinder, FindsNothingOffTheGlobe) {
    ViewFrame frame = worldFrame();
    frame.size = {1200, 1000};  // the north pole is at 800
    MapView view(frame);
    const auto line = std::make_shared<MzLineSymbolizer>();
    line->setStrokeWidth(100);
    std::vector<Layer> layers(1);
    layers[0].features = {lineOf(1, {{-100, 85}, {100, 85}})};
    layers[0].features[0]->setStyle(styleOf(line));
    HitFinder finder(view, layers);
    EXPECT_EQ(idsOf(finder.at({600, 790}, 1)), Ids{1});
    EXPECT_EQ(idsOf(finder.at({600, 820}, 1)), Ids{});
}

// --- real maps

std::shared_ptr<const Color> colorOf(std::uint32_t id) {
    const auto channel = [&](int shift) { return ((id >> shift) & 255) / 255.0; };
    return Color::colorWithDeviceRed(channel(16), channel(8), channel(0), 1);
}

/// A copy that draws in one colour what it draws at all.
std::shared_ptr<MzSymbolizer> tinted(const MzSymbolizer& symbolizer,
                                     const std::shared_ptr<const Color>& color) {
    const auto copy = symbolizer.copy();
    if (auto* line = dynamic_cast<MzLineSymbolizer*>(copy.get())) {
        line->setStrokeColor(color);
        line->setStrokeOpacity(1);
    } else if (auto* area = dynamic_cast<MzPolygonSymbolizer*>(copy.get())) {
        area->setStrokeColor(color);
        area->setStrokeOpacity(1);
        area->setFillColor(color);
        area->setFillOpacity(1);
    } else if (auto* marker = dynamic_cast<MzPointSymbolizer*>(copy.get())) {
        marker->setStrokeColor(color);
        marker->setFillColor(color);
    }
    return copy;
}

std::shared_ptr<MzStyle> tinted(const MzStyle& style, const std::shared_ptr<const Color>& color) {
    auto copy = std::make_shared<MzStyle>();
    for (const auto& rule : style.rules()) {
        auto copied = rule->copy();
        MzRule::Symbolizers symbolizers;
        for (const auto& symbolizer : rule->symbolizers()) {
            symbolizers.push_back(tinted(*symbolizer, color));
        }
        copied->setSymbolizers(symbolizers);
        copy->addRule(copied);
    }
    return copy;
}

std::shared_ptr<MzStyle> topographic(const std::string& layer) {
    std::ifstream file(MEZALITH_SOURCE_DIR "/data/styles/topographic/" + layer + ".json");
    std::ostringstream text;
    text << file.rdbuf();
    const UnarchivedStyle read = styleFromText(text.str());
    EXPECT_TRUE(read.style) << layer << ": " << read.error;
    return read.style;
}

/// Layers in their styles, each feature in a colour of its own, that of its number in `drawn`.
std::vector<Layer> tintedLayers(std::vector<std::shared_ptr<Feature>>& drawn) {
    std::vector<Layer> layers;
    for (const char* name : {"land", "glaciers", "lakes", "rivers", "borders", "places"}) {
        const std::string file = MEZALITH_SOURCE_DIR "/data/map/naturalearth-50m.gpkg:";
        layers.push_back(DataSource(file + name).read(0));
        const auto style = topographic(name);
        for (const auto& feature : layers.back().features) {
            drawn.push_back(feature);
            feature->setStyle(tinted(*style, colorOf(static_cast<std::uint32_t>(drawn.size()))));
        }
    }
    return layers;
}

/// The number of the colour around a pixel; none where it is not the same all around.
std::optional<std::uint32_t> numberAt(const platform::CairoPort& port, int x, int y) {
    const std::uint32_t pixel = port.pixelRow(y)[static_cast<std::size_t>(x)];
    for (int row = y - 1; row <= y + 1; ++row) {
        for (int column = x - 1; column <= x + 1; ++column) {
            if (port.pixelRow(row)[static_cast<std::size_t>(column)] != pixel) return std::nullopt;
        }
    }
    return pixel & 0xFFFFFF;
}

/// Looks at `pixels` pixels of the map.
void compareWithPicture(ViewFrame frame, int pixels) {
    frame.size = {300, 200};
    frame.pixelRatio = 4;
    std::vector<std::shared_ptr<Feature>> drawn;
    const std::vector<Layer> layers = tintedLayers(drawn);
    MapView view(frame);
    const auto port = platform::CairoPort::pixelPort(frame.size, frame.pixelRatio);
    const platform::GraphicsContext context(port.get());
    for (const auto& feature : drawn) view.draw(*feature);
    HitFinder finder(view, layers);
    std::mt19937_64 random(kSeed);
    std::map<std::uint32_t, int> kinds;
    for (int i = 0; i < pixels; ++i) {
        const int x = std::uniform_int_distribution(2, 1197)(random);
        const int y = std::uniform_int_distribution(2, 797)(random);
        const auto number = numberAt(*port, x, y);
        if (!number) continue;
        const MzPoint point{(x + 0.5) / 4, (800 - y - 0.5) / 4};
        const auto hits = finder.at(point, 0.12);
        const auto& expected = *number > 0 ? drawn.at(*number - 1)->record() : nullptr;
        const auto found = hits.empty() ? nullptr : hits[0].feature->record();
        ASSERT_EQ(found, expected)
            << "at " << point.x << ' ' << point.y << ": "
            << (found ? found->layer + ' ' + std::to_string(found->id) : "nothing") << ", not "
            << (expected ? expected->layer + ' ' + std::to_string(expected->id) : "nothing");
        kinds[hits.empty() ? 99 : hits[0].style.symbolizer->symbolizerType()] += 1;
    }
    EXPECT_GT(kinds[0] + kinds[1], pixels / 100) << "markers and lines";
    EXPECT_GT(kinds[2], pixels / 8) << "areas";
    EXPECT_GT(kinds[99], pixels / 10) << "nothing";
}

#ifdef NDEBUG
constexpr int kPixels = 4000;
#else
constexpr int kPixels = 400;
#endif

TEST(HitFinder, AgreesWithThePictureOfEurope) {
    ViewFrame frame = worldFrame();
    frame.area = {-10, 40, 30, 62};
    compareWithPicture(frame, kPixels);
}

TEST(HitFinder, AgreesWithThePictureOfAZone) {
    ViewFrame frame = worldFrame();
    frame.projection = MzMapProjection::mapProjectionWithUTMZone(33);
    frame.area = {0, 50, 30, 71};
    compareWithPicture(frame, kPixels / 4);
}

}  // namespace
}  // namespace mezalith::host
