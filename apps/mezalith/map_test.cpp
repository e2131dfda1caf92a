// SPDX-License-Identifier: MIT
#include "apps/mezalith/map.hpp"

#include "apps/mezalith/arguments.hpp"
#include "host/failure_of.hpp"

#include <algorithm>
#include <optional>
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

}  // namespace
}  // namespace mezalith::app
