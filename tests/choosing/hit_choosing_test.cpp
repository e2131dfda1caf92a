// SPDX-License-Identifier: MIT
#include <mezalith/platform/image.hpp>
#include <mezalith/style/image_symbolizer.hpp>
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>
#include <mezalith/style/style.hpp>
#include <mezalith/style/testing.hpp>

#include <array>
#include <cstddef>
#include <memory>
#include <numbers>
#include <utility>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using testing::TestDrawContext;
using testing::TestFeature;

constexpr double kTolerance = 1e-3;

/// A symbolizer on a geometry, asked both ways.
struct Drawn {
    std::shared_ptr<MzSymbolizer> symbolizer;
    std::shared_ptr<MzGeometry> geometry;
    TestDrawContext& context;

    bool settled(double x, double y, bool selected = false) const {
        TestFeature feature(geometry);
        return symbolizer->isSpatialObject(&feature, {x, y}, &context, selected);
    }
    bool paints(double x, double y, bool selected = false, double tolerance = kTolerance) const {
        TestFeature feature(geometry);
        return symbolizer->paintsAtPoint(&feature, {x, y}, tolerance, &context, selected);
    }
};

std::shared_ptr<MzGeometry> pointAt(double x, double y) {
    return MzPointGeometry::initWithPoint({x, y});
}

/// A square of 90 with a hole in its middle.
std::shared_ptr<MzGeometry> frame(const TestDrawContext& context) {
    return testing::polygon({{{0, 0}, {90, 0}, {90, 90}, {0, 90}, {0, 0}},
                             {{30, 30}, {60, 30}, {60, 60}, {30, 60}, {30, 30}}},
                            context);
}

TEST(ChoosingWhatAClickHits, TheSettledOnesNeverHitLines) {
    TestDrawContext context;
    const auto line = std::make_shared<MzLineSymbolizer>();
    line->setStrokeWidth(6);
    const Drawn drawn{line, testing::multiPoint({{0, 0}, {100, 0}}), context};
    EXPECT_FALSE(drawn.settled(50, 0));
    EXPECT_TRUE(drawn.paints(50, 2.9));
    EXPECT_FALSE(drawn.paints(50, 3.1));
    EXPECT_TRUE(drawn.paints(50, 4.9, false, 2));
    const std::array dashes{10.0, 20.0};
    line->setLineDash(dashes.data(), 2);
    line->setIsDashed(true);
    EXPECT_TRUE(drawn.paints(35, 0));
    EXPECT_FALSE(drawn.paints(20, 0)) << "between dashes";
}

TEST(ChoosingWhatAClickHits, TheSettledOnesNeverHitAreasNorTheirMarkers) {
    TestDrawContext context;
    const auto area = std::make_shared<MzPolygonSymbolizer>();
    area->setShouldFill(true);
    const Drawn filled{area, frame(context), context};
    EXPECT_FALSE(filled.settled(15, 15));
    EXPECT_TRUE(filled.paints(15, 15));
    EXPECT_FALSE(filled.paints(45, 45)) << "a hole";
    const Drawn marked{std::make_shared<MzPointSymbolizer>(), frame(context), context};
    EXPECT_FALSE(marked.settled(45, 45));
    EXPECT_TRUE(marked.paints(45, 45));
}

TEST(ChoosingWhatAClickHits, TheSettledDiamondReaches425AndTheMarker225) {
    TestDrawContext context;
    const Drawn drawn{std::make_shared<MzPointSymbolizer>(), pointAt(0, 0), context};
    EXPECT_TRUE(drawn.settled(3, 1)) << "3 right and 1 above";
    EXPECT_FALSE(drawn.paints(3, 1));
    EXPECT_TRUE(drawn.settled(4.24, 0));
    EXPECT_FALSE(drawn.settled(4.26, 0));
    EXPECT_FALSE(drawn.settled(3, 1.3)) << "a diamond";
    EXPECT_TRUE(drawn.paints(2.24, 0));
    EXPECT_FALSE(drawn.paints(2.26, 0));
    EXPECT_EQ(drawn.settled(4.26, 0, true), drawn.settled(4.26, 0)) << "selected or not";
    EXPECT_TRUE(drawn.paints(3.5, 0, true)) << "the halo";
    context.factor = 2;
    EXPECT_FALSE(drawn.settled(4.26, 0)) << "at any scale factor";
    EXPECT_TRUE(drawn.paints(4.49, 0));
    EXPECT_FALSE(drawn.paints(4.51, 0));
}

std::shared_ptr<const platform::Image> halfBlackImage() {
    platform::Bitmap bitmap = platform::Bitmap::bitmapWithSize(8, 8);
    for (std::size_t i = 0; i < bitmap.pixels.size(); ++i) {
        if (i % 8 < 4) bitmap.pixels[i] = 0xFF000000;
    }
    return platform::Image::imageWithBitmap(std::move(bitmap));
}

TEST(ChoosingWhatAClickHits, OfATurnedPictureTheSettledOneHitsTheRectangleBeforeTheTurn) {
    TestDrawContext context;
    const auto icon =
        MzImageSymbolizer::initWithImage(halfBlackImage(), {0, 0.5}, std::numbers::pi / 2, {40, 8});
    const Drawn drawn{icon, pointAt(0, 0), context};
    EXPECT_TRUE(drawn.settled(15, 0));
    EXPECT_FALSE(drawn.paints(15, 0));
    EXPECT_FALSE(drawn.settled(0, 15));
    EXPECT_TRUE(drawn.paints(0, 15));
    EXPECT_TRUE(drawn.settled(30, 0));
    EXPECT_FALSE(drawn.paints(0, 30)) << "transparent";
}

TEST(ChoosingWhatAClickHits, TheSettledOneAnswersTheBottomFirst) {
    TestDrawContext context;
    MzStyle style;
    for (int i = 0; i < 2; ++i) {
        const auto rule = std::make_shared<MzRule>();
        rule->addSymbolizer(std::make_shared<MzPointSymbolizer>());
        style.addRule(rule);
    }
    TestFeature feature(pointAt(0, 0));
    const auto settled = style.hitOfSpatialObject(&feature, {0, 0}, &context, false);
    const auto painted =
        style.paintedHitOfSpatialObject(&feature, {0, 0}, kTolerance, &context, false);
    ASSERT_TRUE(settled && painted);
    EXPECT_EQ(settled->ruleIndex, 1u) << "which is drawn first";
    EXPECT_EQ(painted->ruleIndex, 0u) << "which is drawn last, on top";
}

}  // namespace
}  // namespace mezalith
