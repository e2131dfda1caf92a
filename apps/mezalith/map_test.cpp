// SPDX-License-Identifier: MIT
#include "apps/mezalith/map.hpp"

#include "apps/mezalith/arguments.hpp"
#include "host/failure_of.hpp"
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <algorithm>
#include <cmath>
#include <optional>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

const std::string kWorld = MEZALITH_SOURCE_DIR "/data/map/naturalearth-110m.gpkg";

MapTexts textsOf(const std::string& layer) {
    MapTexts texts;
    texts.sources = {kWorld + ":" + layer};
    texts.quiet = true;
    return texts;
}

Map loaded(const MapTexts& texts) {
    Map map(texts);
    map.load(1);
    return map;
}

std::size_t countOf(const Map& map) {
    std::size_t count = 0;
    for (const host::Layer& layer : map.layers()) count += layer.features.size();
    return count;
}

TEST(Map, HoldsTheLayersOfItsSourcesStyled) {
    MapTexts texts = textsOf("lakes");
    texts.sources.push_back(kWorld + ":land");
    texts.geodesics = {"0,0,10,10"};
    const Map map = loaded(texts);
    ASSERT_EQ(map.layers().size(), 3u);
    EXPECT_EQ(map.layers()[0].name, "lakes");
    EXPECT_EQ(map.layers()[1].name, "land");
    EXPECT_EQ(map.layers()[2].name, host::kGeodesicLayer);
    for (const host::Layer& layer : map.layers()) {
        EXPECT_FALSE(layer.features.empty());
        for (const auto& feature : layer.features) EXPECT_NE(feature->style(), nullptr);
    }
}

TEST(Map, TakesOnlyFeaturesThatMeetTheCondition) {
    MapTexts texts = textsOf("lakes");
    const std::size_t all = countOf(loaded(texts));
    texts.where = "name == 'Lake Superior'";
    Map superior = loaded(texts);
    EXPECT_EQ(countOf(superior), 1u);
    texts.where = "NOT name == 'Lake Superior'";
    EXPECT_EQ(countOf(loaded(texts)), all - 1);
    // The view is that of what is left.
    EXPECT_NEAR(superior.view().frame().area.centre().x, -88, 2);
}

TEST(Map, SelectsFeaturesThatMeetTheCondition) {
    MapTexts texts = textsOf("lakes");
    const auto selected = [&] {
        const Map map = loaded(texts);
        return std::ranges::count_if(map.layers()[0].features,
                                     [&](const auto& feature) { return map.isSelected(*feature); });
    };
    EXPECT_EQ(selected(), 0);
    texts.select = "name BEGINSWITH 'Lake Sup'";
    EXPECT_EQ(selected(), 1);
    texts.select = "TRUEPREDICATE";
    EXPECT_GT(selected(), 20);
}

TEST(Map, SaysWhenNothingIsLeft) {
    MapTexts texts = textsOf("lakes");
    texts.where = "FALSEPREDICATE";
    Map map(texts);
    EXPECT_EQ(testing::failureOf([&] { map.load(1); }),
              kWorld + ":lakes: there is nothing to draw");
}

TEST(Map, RefusesWhatIsNoCondition) {
    MapTexts texts = textsOf("lakes");
    texts.where = "";
    EXPECT_THROW(Map{texts}, UsageError);
    texts.where = std::nullopt;
    texts.select = "name";
    EXPECT_THROW(Map{texts}, UsageError);
}

#ifdef MEZALITH_WITH_PROJ
/// The side within the view that is longest of all that are drawn, view points.
struct LongestSide {
    double length = 0;
    MzPoint from{}, to{};
};

LongestSide longestSideOf(Map& map) {
    platform::RecordingPort port;
    const platform::GraphicsContext context(&port);
    for (const host::Layer& layer : map.layers()) {
        for (const auto& feature : layer.features) map.view().draw(*feature);
    }
    LongestSide longest;
    MzPoint last{};
    const MzRect view{{0, 0}, map.view().frame().size};
    for (const std::string& line : port.lines()) {
        std::istringstream words(line);
        std::string operation;
        MzPoint point{};
        if (!(words >> operation >> point.x >> point.y)) continue;
        if (operation == "addLineToPoint") {
            const double length = std::hypot(point.x - last.x, point.y - last.y);
            const MzPoint middle{(point.x + last.x) / 2, (point.y + last.y) / 2};
            if (length > longest.length && MzPointInRect(middle, view)) {
                longest = {length, last, point};
            }
        }
        last = point;
    }
    return longest;
}

/// No line across the map, whatever takes the world to the plane and wherever it is cut.
TEST(Map, DrawsNoLineAcrossTheWorld) {
    for (const char* projection :
         {"plate-carree", "epsg:3857", "epsg:32633", "epsg:3995", "epsg:3031", "epsg:3034",
          "+proj=eqearth", "+proj=eqearth +lon_0=180", "+proj=moll +lon_0=150",
          "+proj=robin +lon_0=-169", "+proj=igh", "+proj=healpix",
          "+proj=laea +lat_0=-17 +lon_0=180", "+proj=ortho +lat_0=60 +lon_0=170"}) {
        for (const MzSize size : {MzSize{900, 450}, MzSize{900, 300}}) {
            MapTexts texts;
            texts.sources = {MEZALITH_SOURCE_DIR "/data/map/naturalearth-50m.gpkg:land"};
            texts.view.projection = projection;
            texts.view.bbox = "-180,-90,180,90";
            texts.view.size = std::to_string(static_cast<int>(size.width)) + "x" +
                              std::to_string(static_cast<int>(size.height));
            texts.quiet = true;
            Map map = loaded(texts);
            const LongestSide side = longestSideOf(map);
            EXPECT_LT(side.length, 25) << projection << ": " << side.from.x << ' ' << side.from.y
                                       << " to " << side.to.x << ' ' << side.to.y;
        }
    }
}
#endif

}  // namespace
}  // namespace mezalith::app
