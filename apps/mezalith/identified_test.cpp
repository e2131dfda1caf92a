// SPDX-License-Identifier: MIT
#include "apps/mezalith/identified.hpp"

#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/style/bubble_symbolizer.hpp>
#include <mezalith/style/image_symbolizer.hpp>
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>

#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

host::Feature feature(platform::Dictionary attributes) {
    return {std::make_shared<const host::FeatureRecord>(
                host::FeatureRecord{7, "places", std::move(attributes)}),
            {host::Form::Points, MzPointGeometry::initWithPoint({0, 0})}};
}

MzStyleHit hitOf(std::shared_ptr<MzSymbolizer> symbolizer) {
    auto rule = std::make_shared<MzRule>();
    rule->setName("Large \"cities\"");
    return {std::move(rule), 2, std::move(symbolizer), 1};
}

TEST(Identified, IsTheFeatureTheRuleAndTheSymbolizer) {
    const auto hit = hitOf(std::make_shared<MzPointSymbolizer>());
    const auto oslo = feature({{"name", std::string("Oslo")}, {"pop", std::int64_t{709037}}});
    EXPECT_EQ(identifiedText(oslo, hit),
              R"(layer places id 7 name "Oslo" rule 2 "Large \"cities\"" symbolizer 1 point )"
              R"(attributes {"name":"Oslo","pop":709037})");
    EXPECT_EQ(identifiedJson(oslo, hit), R"({"layer":"places","id":7,"name":"Oslo",)"
                                         R"("rule":{"index":2,"name":"Large \"cities\""},)"
                                         R"("symbolizer":{"index":1,"type":"point"},)"
                                         R"("attributes":{"name":"Oslo","pop":709037}})");
}

TEST(Identified, HasAttributesOfEveryType) {
    const auto hit = hitOf(std::make_shared<MzPointSymbolizer>());
    const std::string json =
        identifiedJson(feature({{"a", true},
                                {"b", std::monostate{}},
                                {"c", 0.5},
                                {"d", std::nan("")},
                                {"e", std::numeric_limits<std::int64_t>::min()},
                                {"f", std::string("\xC3\xA5\xFF\n")}}),
                       hit);
    EXPECT_NE(json.find(R"("attributes":{"a":true,"b":null,"c":0.5,"d":null,)"
                        R"("e":-9223372036854775808,"f":"å�\n"}})"),
              std::string::npos)
        << json;
}

TEST(Identified, NamesTheKindsOfSymbolizers) {
    const auto typeOf = [](std::shared_ptr<MzSymbolizer> symbolizer) {
        const std::string json = identifiedJson(feature({}), hitOf(std::move(symbolizer)));
        const std::size_t begin = json.find("\"type\":\"") + 8;
        return json.substr(begin, json.find('"', begin) - begin);
    };
    EXPECT_EQ(typeOf(std::make_shared<MzPointSymbolizer>()), "point");
    EXPECT_EQ(typeOf(std::make_shared<MzLineSymbolizer>()), "line");
    EXPECT_EQ(typeOf(std::make_shared<MzPolygonSymbolizer>()), "polygon");
    EXPECT_EQ(typeOf(std::make_shared<MzImageSymbolizer>()), "image");
    EXPECT_EQ(typeOf(std::make_shared<MzBubbleSymbolizer>()), "bubble");
}

}  // namespace
}  // namespace mezalith::app
