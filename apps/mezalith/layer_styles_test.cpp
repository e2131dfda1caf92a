// SPDX-License-Identifier: MIT
#include "apps/mezalith/layer_styles.hpp"

#include "host/failure.hpp"
#include "host/failure_of.hpp"
#include <mezalith/style/image_symbolizer.hpp>
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

using host::Form;

std::string usageErrorOf(const StyleTexts& texts, const std::vector<std::string>& layers) {
    try {
        LayerStyles(texts).checkLayers(layers);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "no error";
}

template <typename Symbolizer>
std::shared_ptr<Symbolizer> symbolizerOf(const std::shared_ptr<MzStyle>& style) {
    if (style->rules().size() != 1 || style->rules()[0]->symbolizers().size() != 1) return nullptr;
    return std::dynamic_pointer_cast<Symbolizer>(style->rules()[0]->symbolizers()[0]);
}

TEST(LayerStyles, HaveQuietDefaults) {
    const LayerStyles styles({});
    EXPECT_NE(styles.paint("a", Form::Area).fill, nullptr);
    EXPECT_EQ(styles.paint("a", Form::Area).width, 0.5);
    EXPECT_EQ(styles.paint("a", Form::Line).fill, nullptr);
    EXPECT_NE(styles.paint("a", Form::Line).stroke, nullptr);
    EXPECT_NE(styles.paint("a", Form::Points).fill, nullptr);
}

TEST(LayerStyles, PreferWhatIsSaidOfTheLayer) {
    const LayerStyles styles({.fill = {"sea:none", "#fff", "sea:#123456", "#eee"},
                              .width = {"3", "rivers:0.25"},
                              .dash = {"rivers:4,2", "rivers:none", "1,2,3"}});
    EXPECT_EQ(styles.paint("sea", Form::Area).fill->components()[0], 0x12 / 255.0);
    EXPECT_EQ(styles.paint("land", Form::Area).fill->components()[0], 0xee / 255.0);
    EXPECT_EQ(styles.paint("rivers", Form::Line).width, 0.25);
    EXPECT_EQ(styles.paint("land", Form::Line).width, 3);
    EXPECT_TRUE(styles.paint("rivers", Form::Line).dash.empty());
    EXPECT_EQ(styles.paint("land", Form::Line).dash, (std::vector<double>{1, 2, 3}));
}

TEST(LayerStyles, MakeAPolygonSymbolizerOfAnAreasPaint) {
    LayerStyles styles({.fill = {"#11223380"}, .stroke = {"none"}, .width = {"2"}});
    const auto symbolizer = symbolizerOf<MzPolygonSymbolizer>(styles.style("land", Form::Area));
    ASSERT_NE(symbolizer, nullptr);
    EXPECT_TRUE(symbolizer->shouldFill());
    EXPECT_FALSE(symbolizer->shouldStroke());
    EXPECT_FLOAT_EQ(symbolizer->fillOpacity(), 128.0F / 255);
    EXPECT_EQ(styles.style("land", Form::Area), styles.style("land", Form::Area));
    EXPECT_NE(styles.style("land", Form::Area), styles.style("sea", Form::Area));
}

TEST(LayerStyles, MakeALineSymbolizerOfALinesPaint) {
    LayerStyles styles({.stroke = {"red"}, .width = {"1.5"}, .dash = {"4,2"}});
    const auto symbolizer = symbolizerOf<MzLineSymbolizer>(styles.style("rivers", Form::Line));
    ASSERT_NE(symbolizer, nullptr);
    EXPECT_FLOAT_EQ(symbolizer->strokeWidth(), 1.5F);
    EXPECT_TRUE(symbolizer->isDashed());
    EXPECT_EQ(symbolizer->lineDashCount(), 2u);
    EXPECT_EQ(symbolizer->lineCap(), 0u);
    EXPECT_EQ(symbolizer->strokeOpacity(), 1);
}

TEST(LayerStyles, DrawNoLineWithoutColourOrWidth) {
    LayerStyles styles({.stroke = {"a:none"}, .width = {"b:0"}});
    for (const char* layer : {"a", "b"}) {
        EXPECT_TRUE(styles.style(layer, Form::Line)->rules()[0]->symbolizers().empty());
    }
}

TEST(LayerStyles, MakeAMarkerOfAPointsPaint) {
    LayerStyles styles({.fill = {"none"}, .stroke = {"blue"}});
    const auto symbolizer = symbolizerOf<MzPointSymbolizer>(styles.style("towns", Form::Points));
    ASSERT_NE(symbolizer, nullptr);
    EXPECT_FALSE(symbolizer->shouldFill());
    EXPECT_TRUE(symbolizer->shouldStroke());
}

const std::string kIcon = MEZALITH_SOURCE_DIR "/data/map/icons/harbor.jpg";  // 64 x 64

TEST(LayerStyles, PutAPictureInPlaceOfMarkers) {
    LayerStyles styles({.icon = {kIcon, "land=" MEZALITH_SOURCE_DIR "/data/map/icons/airport.svg"},
                        .iconSize = {"ports:16"}});
    const auto natural = symbolizerOf<MzImageSymbolizer>(styles.style("towns", Form::Points));
    const auto sized = symbolizerOf<MzImageSymbolizer>(styles.style("ports", Form::Points));
    const auto vector = symbolizerOf<MzImageSymbolizer>(styles.style("land", Form::Points));
    ASSERT_TRUE(natural && sized && vector);
    EXPECT_EQ(natural->size().width, 64);
    EXPECT_EQ(sized->size().width, 16);
    EXPECT_EQ(sized->size().height, 16);
    EXPECT_EQ(vector->size().width, 15);
    EXPECT_EQ(natural->image(), sized->image());
    EXPECT_EQ(sized->hotSpot().x, 0.5);
    EXPECT_EQ(sized->hotSpot().y, 0.5);
    EXPECT_NE(symbolizerOf<MzPolygonSymbolizer>(styles.style("land", Form::Area)), nullptr);
}

TEST(LayerStyles, ReachAsFarAsTheFarthestFormOfALayer) {
    const std::vector<Form> lines{Form::Line}, both{Form::Line, Form::Points};
    LayerStyles styles({.width = {"rivers:60"}});
    EXPECT_LT(styles.reach("sea", lines, 1), 10);
    EXPECT_GT(styles.reach("sea", both, 1), styles.reach("sea", lines, 1));
    EXPECT_GE(styles.reach("rivers", lines, 1), 30);
    EXPECT_GE(styles.reach("rivers", lines, 4), 120);
    EXPECT_EQ(LayerStyles({.width = {"1e6"}}).reach("sea", lines, 1), 2000);
    EXPECT_EQ(styles.reach("sea", {}, 1), 0);
}

TEST(LayerStyles, SayWhatIsWrongWithPictures) {
    const std::string bad = MEZALITH_SOURCE_DIR "/README.md";
    EXPECT_EQ(testing::failureOf([&] { LayerStyles({.icon = {bad}}); }).find(bad + ": "), 0u);
    EXPECT_EQ(testing::failureOf([] { LayerStyles({.icon = {"a=no.png"}}); }),
              "no.png: No such file or directory");
    EXPECT_EQ(usageErrorOf({.icon = {"land=" + kIcon}}, {"sea"}),
              "--icon: no layer \"land\" on the map");
    EXPECT_EQ(usageErrorOf({.iconSize = {"0"}}, {}), "--icon-size: 0 is no size");
}

const std::string kDocument = MEZALITH_SOURCE_DIR "/tests/data/bad/archive/ok-style.json";
const std::string kBytes = MEZALITH_SOURCE_DIR "/tests/data/bad/archive/ok-style.cbor";

TEST(LayerStyles, AreDocumentsWhereTheyAreGiven) {
    LayerStyles styles({.fill = {"sea:#fff"}, .style = {kDocument, "land=" + kBytes}});
    EXPECT_EQ(styles.style("rivers", Form::Line)->name(), "base");
    EXPECT_EQ(styles.style("rivers", Form::Line), styles.style("lakes", Form::Area));
    EXPECT_NE(styles.style("rivers", Form::Line), styles.style("land", Form::Area));
    EXPECT_EQ(styles.style("land", Form::Area)->name(), "base");
}

TEST(LayerStyles, SayWhatIsWrongWithDocuments) {
    EXPECT_EQ(usageErrorOf({.style = {"land=" + kDocument}}, {"sea"}),
              "--style: no layer \"land\" on the map");
    EXPECT_EQ(usageErrorOf({.style = {"style.xml"}}, {}),
              "style.xml: a style document ends in .json or .cbor");
    EXPECT_EQ(usageErrorOf({.fill = {"#fff"}, .style = {kDocument}}, {}),
              "--fill: --style " + kDocument + " says all of the same layers");
    EXPECT_EQ(usageErrorOf({.width = {"land:2"}, .style = {kDocument}}, {"land"}), "no error");
    EXPECT_THROW(LayerStyles({.style = {MEZALITH_SOURCE_DIR "/tests/data/bad/archive/null.json"}}),
                 host::Failure);
}

TEST(LayerStyles, SayWhatIsWrong) {
    EXPECT_EQ(usageErrorOf({.fill = {"land:greenish"}}, {"land"}),
              "--fill: \"greenish\" is not a colour");
    EXPECT_EQ(usageErrorOf({.width = {"-1"}}, {}), "--width: -1 is less than 0");
    EXPECT_EQ(usageErrorOf({.dash = {"land:4,"}}, {"land"}), "--dash: \"\" is not a number");
    EXPECT_EQ(usageErrorOf({.stroke = {"rivrs:blue"}}, {"land", "rivers"}),
              "--stroke: no layer \"rivrs\" on the map");
    EXPECT_EQ(usageErrorOf({.stroke = {"rivers:blue"}}, {"land", "rivers"}), "no error");
}

}  // namespace
}  // namespace mezalith::app
