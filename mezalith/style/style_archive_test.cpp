// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/json/keyed_archive.hpp>
#include <mezalith/platform/observation_recorder.hpp>
#include <mezalith/platform/predicates/format_predicate.hpp>
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>
#include <mezalith/style/style_archive.hpp>
#include <mezalith/style/testing.hpp>

#include <algorithm>
#include <array>
#include <functional>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using platform::Color;
using testing::TestDrawContext;
using testing::TestFeature;

std::shared_ptr<MzStyle> throughText(const MzStyle& style) {
    const auto read = styleFromText(platform::archivedText(&style));
    EXPECT_EQ(read.error, "");
    return read.style;
}

std::shared_ptr<MzStyle> throughBytes(const MzStyle& style) {
    const auto read = styleFromBytes(platform::archivedBytes(&style));
    EXPECT_EQ(read.error, "");
    return read.style;
}

std::shared_ptr<MzStyle> styleOf(std::vector<std::shared_ptr<MzSymbolizer>> symbolizers) {
    const auto rule = std::make_shared<MzRule>();
    for (auto& symbolizer : symbolizers) rule->addSymbolizer(std::move(symbolizer));
    auto style = std::make_shared<MzStyle>();
    style->addRule(rule);
    return style;
}

void setDashes(MzStrokedSymbolizer& symbolizer) {
    constexpr std::array kDashes{7.5, 2.25, 0.1, 3.0};
    symbolizer.setLineDash(kDashes.data(), kDashes.size());
    symbolizer.setLineDashOffset(1.5);
    symbolizer.setIsDashed(true);
    symbolizer.setLineCap(0);
    symbolizer.setLineJoin(2);
}

std::shared_ptr<MzLineSymbolizer> dashedLine() {
    auto line = std::make_shared<MzLineSymbolizer>();
    setDashes(*line);
    line->setStrokeColor(Color::colorWithDeviceCyan(0.1, 0.7, 0.3, 0.2, 0.4));
    line->setStrokeWidth(3.3F);
    line->setStrokeOpacity(0.7F);
    return line;
}

std::shared_ptr<MzPolygonSymbolizer> filledPolygon() {
    auto polygon = std::make_shared<MzPolygonSymbolizer>();
    setDashes(*polygon);
    polygon->setShouldFill(true);
    polygon->setFillColor(Color::colorWithText("#7a9c33"));
    polygon->setFillOpacity(0.35F);
    polygon->setStrokeColor(Color::colorWithName("Firebrick"));
    return polygon;
}

std::shared_ptr<MzPointSymbolizer> marker(std::int32_t type) {
    auto point = std::make_shared<MzPointSymbolizer>();
    setDashes(*point);
    point->setSymbolType(type);
    point->setSymbolSize(20.7F);
    point->setSymbolRotation(11.1F);
    point->setFillColor(Color::colorWithCalibratedRed(0.123456789, 0.5, 1, 0.75));
    point->setShouldShadow(true);
    point->setShadowOffsetWidth(2.5);
    point->setShadowBlurRadius(1.7);
    point->setShadowColor(Color::colorWithText("#40206080"));
    return point;
}

/// The pixels of a feature drawn by the style, selected and not.
std::vector<std::uint32_t> pixelsOf(MzStyle& style, const std::shared_ptr<MzGeometry>& geometry,
                                    TestDrawContext& context) {
    const auto port = platform::CairoPort::pixelPort({120, 80}, 2);
    const platform::GraphicsContext current(port.get());
    TestFeature feature(geometry);
    style.drawSpatialObject(&feature, &context, true);
    style.drawSpatialObject(&feature, &context, false);
    std::vector<std::uint32_t> pixels;
    for (int row = 0; row < port->pixelHeight(); ++row) {
        const auto colors = port->pixelRow(row);
        pixels.insert(pixels.end(), colors.begin(), colors.end());
    }
    return pixels;
}

TEST(StyleArchive, DrawsTheSamePixelsAgain) {
    TestDrawContext context;
    context.factor = 1.3;
    const std::array<std::shared_ptr<MzGeometry>, 2> geometries{
        testing::multiPoint({{20, 20}, {100, 30}, {60, 70}}),
        testing::polygon({{{10, 10}, {110, 15}, {60, 75}}, {{50, 20}, {70, 20}, {60, 40}}},
                         context)};
    using Make = std::function<std::shared_ptr<MzStyle>()>;
    std::vector<Make> makers{[] { return styleOf({dashedLine()}); },
                             [] { return styleOf({filledPolygon()}); },
                             [] {
                                 return styleOf({marker(4), dashedLine(), filledPolygon()});
                             }};
    for (std::int32_t type = 0; type < 5; ++type) {
        makers.emplace_back([type] { return styleOf({marker(type)}); });
    }
    for (std::size_t i = 0; i < makers.size(); ++i) {
        std::ptrdiff_t painted = 0;
        for (const auto& geometry : geometries) {
            // A fresh style: one that has drawn keeps its markers' layers.
            const auto style = makers[i]();
            const auto text = throughText(*style);
            const auto bytes = throughBytes(*style);
            const auto pixels = pixelsOf(*style, geometry, context);
            painted += std::ranges::count_if(pixels, [](auto pixel) { return pixel != 0; });
            EXPECT_EQ(pixelsOf(*text, geometry, context), pixels) << i;
            EXPECT_EQ(pixelsOf(*bytes, geometry, context), pixels) << i;
        }
        EXPECT_GT(painted, 100) << i;
    }
}

TEST(StyleArchive, SharesWhatWasShared) {
    const auto shared = dashedLine();
    const auto style = styleOf({shared, filledPolygon()});
    const auto second = std::make_shared<MzRule>();
    second->addSymbolizer(shared);
    style->addRule(second);
    for (const auto& read : {throughText(*style), throughBytes(*style)}) {
        ASSERT_EQ(read->rules().size(), 2U);
        EXPECT_EQ(read->rules()[0]->symbolizers()[0], read->rules()[1]->symbolizers()[0]);
        EXPECT_NE(read->rules()[0]->symbolizers()[1], read->rules()[1]->symbolizers()[0]);
        testing::ObservationRecorder recorder;
        read->addObserver(&recorder, MzDrawPropertyKey, 1);
        std::dynamic_pointer_cast<MzLineSymbolizer>(read->rules()[0]->symbolizers()[0])
            ->setStrokeWidth(1);
        EXPECT_EQ(recorder.lines.size(), 2U);
    }
}

TEST(StyleArchive, IsTheSameTextAgain) {
    const auto style = styleOf({marker(3), dashedLine(), filledPolygon(), dashedLine()});
    style->setName("name");
    style->setTitle("A \"title\"");
    style->setAbstract("two\nlines");
    style->rules()[0]->setMinScaleDenominator(0.1);
    style->rules()[0]->setSelectionFilter(2);
    const std::string text = platform::archivedText(style.get());
    EXPECT_EQ(platform::archivedText(throughText(*style).get()), text);
    EXPECT_EQ(platform::archivedText(throughBytes(*style).get()), text);
    EXPECT_EQ(platform::archivedBytes(throughText(*style).get()),
              platform::archivedBytes(style.get()));
}

TEST(StyleArchive, MayBeWhatAPersonWrites) {
    const auto read = styleFromText(R"({
        "format": "mezalith archive", "version": 1,
        "root": {
            "rules": [{
                "class": "MzRule",
                "filterType": 0,
                "symbolizers": [{
                    "class": "MzLineSymbolizer",
                    "strokeColor": "slategray", "strokeWidth": 1.5, "strokeOpacity": 1,
                    "lineJoin": 1, "lineCap": 0,
                    "isDashed": true, "lineDashCount": 2, "lineDash": [6, 3]
                }]
            }]
        }
    })");
    ASSERT_NE(read.style, nullptr) << read.error;
    EXPECT_EQ(read.style->name(), "");
    EXPECT_EQ(read.style->rules()[0]->name(), "");
    const auto line =
        std::dynamic_pointer_cast<MzLineSymbolizer>(read.style->rules()[0]->symbolizers()[0]);
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(std::vector<double>(line->lineDash().begin(), line->lineDash().end()),
              (std::vector<double>{6, 3}));
    EXPECT_EQ(line->lineDashOffset(), 0);
}

TEST(StyleArchive, KeepsStatesThatOnlyProgramsMake) {
    const auto line = dashedLine();
    line->setLineDash(nullptr, 0);
    const auto longer = dashedLine();
    longer->setLineDashCount(9);
    const auto colorless = std::make_shared<MzPolygonSymbolizer>();
    colorless->setFillColor(nullptr);
    colorless->setLineJoin(99);
    const auto read = throughText(*styleOf({line, longer, colorless}));
    const auto& symbolizers = read->rules()[0]->symbolizers();
    const auto at = [&](std::size_t i) {
        return std::dynamic_pointer_cast<MzStrokedSymbolizer>(symbolizers[i]);
    };
    EXPECT_EQ(at(0)->lineDashCount(), 4U);
    EXPECT_TRUE(at(0)->lineDash().empty());
    EXPECT_EQ(at(1)->lineDashCount(), 4U);
    EXPECT_EQ(at(1)->lineDash().size(), 4U);
    EXPECT_EQ(at(2)->lineJoin(), 99U);
}

TEST(StyleArchive, HoldsClassesOfStylesOnly) {
    const auto& classes = styleArchiveClasses();
    for (const char* name : {"Color", "Shadow", "MzStyle", "MzRule", "MzLineSymbolizer",
                             "MzPolygonSymbolizer", "MzPointSymbolizer"}) {
        EXPECT_TRUE(classes.contains(name)) << name;
    }
    EXPECT_FALSE(classes.contains("MzImageSymbolizer"));
}

TEST(StyleArchive, KeepsTheFiltersOfRules) {
    const auto style = styleOf({dashedLine()});
    const MzRule& rule = *style->rules()[0];
    style->rules()[0]->setFilterType(1);
    style->rules()[0]->setFilter(platform::FormatPredicate::predicateWithFormat(
        "kind = 'city' && name LIKE[c] '*\\u00e5*' AND population > 1e6"));
    const std::string text = platform::archivedText(style.get());
    EXPECT_NE(text.find(R"("filter": "kind == \"city\" AND name LIKE[c] \"*å*\")"),
              std::string::npos)
        << text;
    for (const auto& read : {throughText(*style), throughBytes(*style)}) {
        ASSERT_NE(read, nullptr);
        const auto filter = read->rules()[0]->filter();
        ASSERT_NE(filter, nullptr);
        EXPECT_EQ(filter->predicateFormat(), rule.filter()->predicateFormat());
        TestFeature feature(nullptr);
        feature.kindName = "city";
        feature.properties = {{"name", std::string("MÅLØY")}, {"population", 2e6}};
        EXPECT_TRUE(filter->evaluateWithObject(&feature));
        feature.kindName = "town";
        EXPECT_FALSE(filter->evaluateWithObject(&feature));
    }
}

}  // namespace
}  // namespace mezalith
