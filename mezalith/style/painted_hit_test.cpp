// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/image.hpp>
#include <mezalith/platform/interface_file.hpp>
#include <mezalith/style/bubble_symbolizer.hpp>
#include <mezalith/style/image_symbolizer.hpp>
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>
#include <mezalith/style/style.hpp>
#include <mezalith/style/testing.hpp>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

/// The settled hit tests beside what answers by what is drawn.
namespace mezalith {
namespace {

using testing::multiPoint;
using testing::polygon;
using testing::TestDrawContext;
using testing::TestFeature;

constexpr unsigned kSeed = 20240622;

/// A symbolizer, a geometry and a view; place and tolerance are view points.
struct Drawn {
    std::shared_ptr<MzSymbolizer> symbolizer;
    std::shared_ptr<MzGeometry> geometry;
    TestDrawContext& context;

    bool paintsAt(double x, double y, double tolerance = 0.1, bool selected = false) const {
        TestFeature feature(geometry);
        return symbolizer->paintsAtPoint(&feature, {x, y}, tolerance, &context, selected);
    }
    bool isHitAt(double x, double y) const {
        TestFeature feature(geometry);
        return symbolizer->isSpatialObject(&feature, {x, y}, &context, false);
    }
};

std::shared_ptr<MzGeometry> pointAt(double x, double y) {
    return MzPointGeometry::initWithPoint({x, y});
}

std::shared_ptr<const platform::Image> blackImage() {
    platform::Bitmap bitmap = platform::Bitmap::bitmapWithSize(8, 8);
    std::ranges::fill(bitmap.pixels, 0xFF000000);
    return platform::Image::imageWithBitmap(std::move(bitmap));
}

TEST(PaintedHit, FindsLinesAsTheyAreDrawn) {
    TestDrawContext context;
    const auto line = std::make_shared<MzLineSymbolizer>();
    line->setStrokeWidth(6);
    line->setLineCap(0);
    const Drawn drawn{line, multiPoint({{0, 0}, {100, 0}, {100, 100}}), context};
    EXPECT_FALSE(drawn.isHitAt(50, 0)) << "settled";
    EXPECT_TRUE(drawn.paintsAt(50, 2.8));
    EXPECT_FALSE(drawn.paintsAt(50, 3.2));
    EXPECT_TRUE(drawn.paintsAt(50, 4.8, 2));
    EXPECT_FALSE(drawn.paintsAt(-0.2, 0));
    EXPECT_FALSE(drawn.paintsAt(50, 50));
    const std::array dashes{10.0, 20.0};
    line->setLineDash(dashes.data(), 2);
    line->setIsDashed(true);
    EXPECT_TRUE(drawn.paintsAt(35, 0));
    EXPECT_FALSE(drawn.paintsAt(20, 0));
    context.factor = 2;
    EXPECT_TRUE(drawn.paintsAt(19, 5.8));
    EXPECT_FALSE(drawn.paintsAt(35, 0));
    line->setStrokeOpacity(0);
    EXPECT_FALSE(drawn.paintsAt(19, 0));
}

TEST(PaintedHit, FindsAreasButNotTheirHoles) {
    TestDrawContext context;
    const auto area = std::make_shared<MzPolygonSymbolizer>();
    const Drawn drawn{area,
                      polygon({{{0, 0}, {90, 0}, {90, 90}, {0, 90}, {0, 0}},
                               {{30, 30}, {60, 30}, {60, 60}, {30, 60}, {30, 30}}},
                              context),
                      context};
    EXPECT_FALSE(drawn.isHitAt(15, 15)) << "settled";
    EXPECT_FALSE(drawn.paintsAt(15, 15)) << "an outline";
    EXPECT_TRUE(drawn.paintsAt(0.9, 15));
    area->setShouldFill(true);
    EXPECT_TRUE(drawn.paintsAt(15, 15));
    EXPECT_FALSE(drawn.paintsAt(45, 45));
    EXPECT_TRUE(drawn.paintsAt(45, 45, 14.5)) << "the outline is a point wide inside";
    EXPECT_FALSE(drawn.paintsAt(45, 45, 13.5));
    EXPECT_FALSE(drawn.paintsAt(95, 45));
}

TEST(PaintedHit, FindsMarkersByTheirShapeAndHalosOfSelectedOnes) {
    TestDrawContext context;
    const auto marker = std::make_shared<MzPointSymbolizer>();
    const Drawn drawn{marker, pointAt(100, 100), context};
    EXPECT_TRUE(drawn.isHitAt(103, 101)) << "settled: a diamond larger than the marker";
    EXPECT_FALSE(drawn.paintsAt(103, 101));
    EXPECT_TRUE(drawn.paintsAt(101.5, 101.5));
    EXPECT_FALSE(drawn.paintsAt(103.5, 100));
    EXPECT_TRUE(drawn.paintsAt(103.5, 100, 0.1, true));
    marker->setSymbolType(3);
    marker->setSymbolSize(20);
    EXPECT_TRUE(drawn.paintsAt(109, 100));
    EXPECT_FALSE(drawn.paintsAt(105, 105));
    marker->setSymbolRotation(45);
    EXPECT_TRUE(drawn.paintsAt(105, 105));
    EXPECT_FALSE(drawn.paintsAt(109, 100));
}

TEST(PaintedHit, FindsMarkersOfAreasAndOfSeveralPoints) {
    TestDrawContext context;
    const auto marker = std::make_shared<MzPointSymbolizer>();
    const Drawn area{marker, polygon({{{0, 0}, {90, 0}, {90, 90}, {0, 90}, {0, 0}}}, context),
                     context};
    EXPECT_FALSE(area.isHitAt(45, 45)) << "settled";
    EXPECT_TRUE(area.paintsAt(45, 45));
    EXPECT_FALSE(area.paintsAt(40, 45));
    const Drawn several{marker, multiPoint({{10, 10}, {50, 50}}), context};
    EXPECT_TRUE(several.paintsAt(50, 50));
    EXPECT_FALSE(several.paintsAt(30, 30));
}

TEST(PaintedHit, FindsPicturesTurnedAsTheyAre) {
    TestDrawContext context;
    const auto icon =
        MzImageSymbolizer::initWithImage(blackImage(), {0, 0.5}, std::numbers::pi / 2, {40, 8});
    const Drawn drawn{icon, pointAt(100, 100), context};
    EXPECT_TRUE(drawn.isHitAt(130, 100)) << "settled: as if it were not turned";
    EXPECT_FALSE(drawn.isHitAt(100, 130));
    EXPECT_FALSE(drawn.paintsAt(130, 100));
    EXPECT_TRUE(drawn.paintsAt(100, 130));
    EXPECT_FALSE(drawn.paintsAt(106, 130));
}

TEST(PaintedHit, KeepsTheLayersThatPortsHaveMade) {
    TestDrawContext context;
    const auto marker = std::make_shared<MzPointSymbolizer>();
    const auto icon = MzImageSymbolizer::initWithImage(blackImage(), {0.5, 0.5}, 0, {20, 20});
    const Drawn first{marker, pointAt(50, 50), context};
    const Drawn second{icon, pointAt(50, 50), context};
    EXPECT_TRUE(first.paintsAt(50, 50));
    EXPECT_TRUE(second.paintsAt(50, 50));
    EXPECT_EQ(marker->theLayer(), nullptr);
    EXPECT_EQ(icon->layer(), nullptr);
    const auto port = platform::CairoPort::pixelPort({100, 100});
    testing::drawInto(*port, *marker, pointAt(50, 50), context);
    testing::drawInto(*port, *icon, pointAt(50, 50), context);
    const auto layers = std::pair(marker->theLayer(), icon->layer());
    EXPECT_TRUE(first.paintsAt(50, 50, 0.1, true));
    EXPECT_TRUE(second.paintsAt(50, 50));
    EXPECT_NE(layers.first, nullptr);
    EXPECT_EQ(std::pair(marker->theLayer(), icon->layer()), layers);
}

TEST(PaintedHit, FindsBubblesWhereTheyAreShownAndShowsNone) {
    platform::InterfaceFile::setLoader("painted", [](const platform::InterfaceOwner&) {
        return std::make_shared<platform::View>(MzRect{{0, 0}, {80, 40}});
    });
    TestDrawContext context;
    const auto bubble = MzBubbleSymbolizer::initWithNib("painted", {});
    const Drawn drawn{bubble, pointAt(100, 100), context};
    EXPECT_FALSE(drawn.paintsAt(110, 150));
    EXPECT_EQ(bubble->bubbleView()->superview(), nullptr);
    TestFeature feature(drawn.geometry);
    bubble->drawSpatialObject(&feature, &context, false);
    EXPECT_TRUE(drawn.paintsAt(110, 150));
    EXPECT_FALSE(drawn.paintsAt(76, 102)) << "beside the stem";
    EXPECT_FALSE(drawn.paintsAt(300, 150));
    bubble->removeView();
    EXPECT_FALSE(drawn.paintsAt(110, 150));
    platform::InterfaceFile::setLoader("painted", nullptr);
}

TEST(PaintedHit, IsNothingWhereNothingIsDrawn) {
    TestDrawContext context;
    MzPointSymbolizer marker;
    TestFeature feature(pointAt(0, 0));
    EXPECT_FALSE(marker.paintsAtPoint(nullptr, {0, 0}, 1, &context, false));
    EXPECT_FALSE(marker.paintsAtPoint(&feature, {0, 0}, 1, nullptr, false));
    EXPECT_FALSE(marker.paintsAtPoint(&feature, {std::nan(""), 0}, 1, &context, false));
    EXPECT_TRUE(marker.paintsAtPoint(&feature, {0, 0}, 1, &context, false));
    MzSymbolizer base;
    EXPECT_FALSE(base.paintsAtPoint(&feature, {0, 0}, 1, &context, false));
    EXPECT_EQ(base.paintReach(1), std::numeric_limits<double>::infinity());
}

std::shared_ptr<MzRule> ruleOf(std::vector<std::shared_ptr<MzSymbolizer>> symbolizers) {
    auto rule = std::make_shared<MzRule>();
    for (auto& symbolizer : symbolizers) rule->addSymbolizer(std::move(symbolizer));
    return rule;
}

std::shared_ptr<MzLineSymbolizer> lineOf(float width) {
    auto line = std::make_shared<MzLineSymbolizer>();
    line->setStrokeWidth(width);
    return line;
}

TEST(PaintedHit, IsTheSymbolizerThatIsDrawnLast) {
    TestDrawContext context;
    MzStyle style;
    style.addRule(ruleOf({lineOf(2), lineOf(10)}));
    style.addRule(ruleOf({lineOf(20)}));
    TestFeature feature(multiPoint({{0, 0}, {100, 0}}));
    const auto hitAt = [&](double y, bool selected = false) {
        const auto hit =
            style.paintedHitOfSpatialObject(&feature, {50, y}, 0.1, &context, selected);
        return hit ? std::pair(hit->ruleIndex, hit->symbolizerIndex)
                   : std::pair<std::size_t, std::size_t>(9, 9);
    };
    using Places = std::pair<std::size_t, std::size_t>;
    EXPECT_EQ(hitAt(0), Places(0, 0));
    EXPECT_EQ(hitAt(3), Places(0, 1));
    EXPECT_EQ(hitAt(8), Places(1, 0));
    EXPECT_EQ(hitAt(12), Places(9, 9));
    EXPECT_EQ(style.paintReach(2), 20);
    style.rules()[0]->setFilterType(2);
    EXPECT_EQ(hitAt(0), Places(1, 0)) << "an else rule, after one that applied";
    style.rules()[1]->setSelectionFilter(1);
    EXPECT_EQ(hitAt(0), Places(0, 0));
    EXPECT_EQ(hitAt(0, true), Places(1, 0));
    EXPECT_FALSE(style.paintedHitOfSpatialObject(nullptr, {50, 0}, 1, &context, false));
}

TEST(PaintedHit, ReachesAsFarAsShadowsDo) {
    const auto line = lineOf(10);
    line->setXShadowOffset(3);
    line->setYShadowOffset(4);
    line->setShadowBlur(2);
    EXPECT_EQ(line->paintReach(2), 10);
    line->setShouldShadow(true);
    EXPECT_EQ(line->paintReach(2), 10 + platform::shadowReach({6, 8}, 2));
    MzPointSymbolizer marker;
    const double withHalo = marker.paintReach(1);
    EXPECT_GT(withHalo, platform::shadowReach({3.5, 1.5}, 1));
    marker.setShouldShadow(true);
    EXPECT_EQ(marker.paintReach(1), withHalo) << "a lesser shadow than that of the halo";
    marker.setShadowOffsetWidth(100);
    EXPECT_GT(marker.paintReach(1), 100);
    marker.setShadow(nullptr);
    EXPECT_EQ(marker.paintReach(1), withHalo);
}

/// Whatever a marker, an icon or a line looks like, nothing is painted farther away than it says.
TEST(PaintedHit, IsNoFartherAwayThanTheReach) {
    std::mt19937_64 random(kSeed);
    const auto number = [&](double from, double to) {
        return std::uniform_real_distribution(from, to)(random);
    };
    int within = 0;
    for (int round = 0; round < 100; ++round) {
        TestDrawContext context;
        context.factor = number(0.5, 3);
        const auto marker = std::make_shared<MzPointSymbolizer>();
        marker->setSymbolType(round % 5);
        marker->setSymbolSize(static_cast<float>(number(1, 20)));
        marker->setSymbolRotation(static_cast<float>(number(0, 360)));
        marker->setStrokeWidth(static_cast<float>(number(0, 6)));
        marker->setLineJoin(static_cast<std::uint64_t>(round % 3));
        const auto line = lineOf(static_cast<float>(number(1, 9)));
        line->setLineCap(static_cast<std::uint64_t>(round % 3));
        const auto icon =
            MzImageSymbolizer::initWithImage(blackImage(), {number(-1, 2), number(-1, 2)},
                                             number(0, 7), {number(1, 30), number(1, 30)});
        const std::array<Drawn, 3> all{{{marker, pointAt(0, 0), context},
                                        {line, multiPoint({{0, 0}, {0.5, 0.5}}), context},
                                        {icon, pointAt(0, 0), context}}};
        for (const Drawn& drawn : all) {
            const double reach = drawn.symbolizer->paintReach(context.factor);
            for (int i = 0; i < 20; ++i) {
                const double angle = number(0, 7), away = reach + 1 + 0.2 + i;
                const bool selected = i % 2 != 0;
                ASSERT_FALSE(
                    drawn.paintsAt(away * std::cos(angle), away * std::sin(angle), 0.1, selected))
                    << "round " << round << " by " << away;
            }
            within += drawn.paintsAt(0, 0, reach) ? 1 : 0;
        }
    }
    EXPECT_GT(within, 250) << "all but icons that are far from their place";
}

}  // namespace
}  // namespace mezalith
