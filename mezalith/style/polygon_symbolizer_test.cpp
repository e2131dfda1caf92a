// SPDX-License-Identifier: MIT
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/keyed_store.hpp>
#include <mezalith/platform/observation_recorder.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>
#include <mezalith/style/testing.hpp>

#include <algorithm>
#include <array>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using platform::Color;
using testing::drawn;
using testing::Lines;
using testing::only;
using testing::Rings;
using testing::TestDrawContext;

constexpr std::array<double, 4> kPattern{4, 1, 2, 1};
const Rings kTriangle{{{0, 0}, {9, 0}, {9, 9}}};

Lines symbolized(MzPolygonSymbolizer& polygon, double scaleFactor) {
    platform::RecordingPort port;
    polygon.symbolizeInContext(&port, scaleFactor);
    return port.lines();
}

/// A symbolizer without a default left.
std::shared_ptr<MzPolygonSymbolizer> unusual() {
    auto polygon = std::make_shared<MzPolygonSymbolizer>();
    polygon->setShouldFill(true);
    polygon->setShouldStroke(false);
    polygon->setFillColor(Color::colorWithDeviceRed(1, 0.5, 0, 0.25));
    polygon->setStrokeColor(Color::colorWithCalibratedWhite(0.5, 1));
    polygon->setFillOpacity(0.75F);
    polygon->setStrokeOpacity(0.5F);
    polygon->setStrokeWidth(3);
    polygon->setLineJoin(2);
    polygon->setLineCap(0);
    polygon->setLineDashOffset(0.5);
    polygon->setLineDash(kPattern.data(), 4);
    polygon->setIsDashed(true);
    return polygon;
}

// --- defaults

TEST(PolygonSymbolizer, BeginsAsACyanOutline) {
    const MzPolygonSymbolizer polygon;
    EXPECT_FALSE(polygon.shouldFill());
    EXPECT_TRUE(polygon.shouldStroke());
    EXPECT_EQ(polygon.fillColor()->description(), "0 1 1 1");
    EXPECT_EQ(polygon.strokeColor()->description(), "0 1 1 1");
    EXPECT_EQ(polygon.fillOpacity(), 1);
    EXPECT_EQ(polygon.strokeOpacity(), 1);
    EXPECT_EQ(polygon.strokeWidth(), 2);
    EXPECT_EQ(polygon.lineJoin(), 1U);
    EXPECT_EQ(polygon.lineCap(), 1U);
    EXPECT_EQ(polygon.lineDashOffset(), 0);
    EXPECT_EQ(polygon.lineDashCount(), 0U);
    EXPECT_TRUE(polygon.lineDash().empty());
    EXPECT_FALSE(polygon.isDashed());
}

// --- what is drawn

TEST(PolygonSymbolizer, StrokesTheOutlineTwoPointsTimesScaleWide) {
    MzPolygonSymbolizer polygon;
    TestDrawContext context;
    context.factor = 3;
    EXPECT_EQ(drawn(polygon, testing::polygon(kTriangle, context), context),
              (Lines{"beginPath", "moveToPoint 0 0", "addLineToPoint 9 0", "addLineToPoint 9 9",
                     "closeSubpath", "setLineCap 1", "setLineJoin 1", "setLineWidth 6",
                     "setLineDash 0 solid", "setStrokeColor 0 1 1 1", "drawPath 2"}));
}

TEST(PolygonSymbolizer, ClipsAndDrawsNothingWithoutFillAndStroke) {
    MzPolygonSymbolizer polygon;
    polygon.setShouldStroke(false);
    TestDrawContext context;
    const auto single = testing::polygon(kTriangle, context);
    EXPECT_EQ(drawn(polygon, single, context), Lines{});
    EXPECT_EQ(drawn(polygon, testing::multiPolygon({kTriangle}), context), Lines{});
    EXPECT_EQ(context.regionRequests, 2) << "asked for more than to cull";
}

TEST(PolygonSymbolizer, KeepsHolesOpenWhateverTheirDirection) {
    MzPolygonSymbolizer polygon;
    polygon.setShouldFill(true);
    polygon.setShouldStroke(false);
    TestDrawContext context;
    const testing::Points outer{{0, 0}, {9, 0}, {9, 9}, {0, 9}};
    testing::Points hole{{3, 3}, {6, 3}, {6, 6}, {3, 6}};
    for (int direction = 0; direction < 2; ++direction) {
        const Lines lines = drawn(polygon, testing::polygon({outer, hole}, context), context);
        EXPECT_EQ(only("beginPath", lines).size(), 1U);
        EXPECT_EQ(only("closeSubpath", lines).size(), 2U);
        EXPECT_EQ(only("drawPath", lines), Lines{"drawPath 1"});
        std::ranges::reverse(hole);
    }
}

TEST(PolygonSymbolizer, PaintsNothingInsideAHole) {
    MzPolygonSymbolizer polygon;
    polygon.setShouldFill(true);
    polygon.setShouldStroke(false);
    TestDrawContext context;
    const testing::Points outer{{0, 0}, {9, 0}, {9, 9}, {0, 9}};
    testing::Points hole{{3, 3}, {6, 3}, {6, 6}, {3, 6}};
    for (int direction = 0; direction < 2; ++direction) {
        const auto port = platform::CairoPort::pixelPort({9, 9});
        testing::drawInto(*port, polygon, testing::polygon({outer, hole}, context), context);
        EXPECT_EQ(port->pixelRow(4)[1], 0xFF00FFFFU);
        EXPECT_EQ(port->pixelRow(4)[4], 0U);
        std::ranges::reverse(hole);
    }
}

TEST(PolygonSymbolizer, DrawsNothingWhenEveryRingIsTooShort) {
    MzPolygonSymbolizer polygon;
    TestDrawContext context;
    EXPECT_EQ(
        drawn(polygon, testing::polygon({{{0, 0}, {9, 0}}, {{1, 1}, {2, 2}}}, context), context),
        Lines{});
}

TEST(PolygonSymbolizer, DrawsEachOfTwoPolygons) {
    MzPolygonSymbolizer polygon;
    TestDrawContext context;
    const Lines lines =
        drawn(polygon, testing::multiPolygon({kTriangle, {{{20, 0}, {29, 0}, {29, 9}}}}), context);
    EXPECT_EQ(only("beginPath", lines).size(), 2U);
    EXPECT_EQ(only("drawPath", lines), (Lines{"drawPath 2", "drawPath 2"}));
    const auto first = std::ranges::find(lines, "drawPath 2");
    ASSERT_NE(first, lines.end());
    EXPECT_EQ(*std::next(first), "beginPath");
}

TEST(PolygonSymbolizer, DrawsNoPointsAndNoLines) {
    MzPolygonSymbolizer polygon;
    TestDrawContext context;
    EXPECT_EQ(drawn(polygon, MzPointGeometry::initWithPoint({1, 1}), context), Lines{});
    EXPECT_EQ(drawn(polygon, testing::multiPoint({{0, 0}, {5, 5}, {9, 0}}), context), Lines{});
    std::array<MzPoint, 2> points{{{0, 0}, {5, 5}}};
    const auto lineString = MzLineStringGeometry::initWithLineString({2, points.data()});
    lineString->geometryWithProjection(context.projection);
    EXPECT_EQ(drawn(polygon, lineString, context), Lines{});
}

TEST(PolygonSymbolizer, DrawsSelectedPolygonsLikeOthers) {
    TestDrawContext context;
    const auto polygon = unusual();
    const auto geometry = testing::polygon(kTriangle, context);
    const Lines unselected = drawn(*polygon, geometry, context, false);
    EXPECT_FALSE(unselected.empty());
    EXPECT_EQ(drawn(*polygon, geometry, context, true), unselected);
}

TEST(PolygonSymbolizer, DrawsNothingOutsideTheRegionOrWithoutOne) {
    MzPolygonSymbolizer polygon;
    TestDrawContext context;
    EXPECT_EQ(drawn(polygon, testing::multiPolygon({{{{2000, 0}, {2009, 0}, {2009, 9}}}}), context),
              Lines{});
    context.region = nullptr;
    EXPECT_EQ(drawn(polygon, testing::multiPolygon({{{{-1, -1}, {1, -1}, {1, 1}}}}), context),
              Lines{});
}

TEST(PolygonSymbolizer, SurvivesWhateverIsMissing) {
    MzPolygonSymbolizer polygon;
    TestDrawContext context;
    testing::TestFeature feature(testing::polygon(kTriangle, context));
    polygon.drawSpatialObject(&feature, &context, false);
    platform::RecordingPort port;
    const platform::GraphicsContext current(&port);
    polygon.drawSpatialObject(nullptr, &context, false);
    polygon.drawSpatialObject(&feature, nullptr, false);
    polygon.symbolizeInContext(nullptr, 1);
    feature.geometryValue = nullptr;
    polygon.drawSpatialObject(&feature, &context, false);
    EXPECT_EQ(port.lines(), Lines{});
}

TEST(PolygonSymbolizer, IsNeverHit) {
    MzPolygonSymbolizer polygon;
    polygon.setShouldFill(true);
    TestDrawContext context;
    testing::TestFeature feature(testing::polygon(kTriangle, context));
    EXPECT_FALSE(polygon.isSpatialObject(&feature, {6, 3}, &context, true));
    EXPECT_FALSE(polygon.isSpatialObject(&feature, {0, 0}, &context, false));
}

// --- how it is drawn

TEST(PolygonSymbolizer, FillsAndStrokesInOneGo) {
    const auto polygon = unusual();
    polygon->setShouldStroke(true);
    EXPECT_EQ(symbolized(*polygon, 2),
              (Lines{"setLineCap 0", "setLineJoin 2", "setLineWidth 6", "setLineDash 1 [8 2 4 2]",
                     "setFillColor 1 0.5 0 0.75", "setStrokeColor 0.5 0.5 0.5 0.5", "drawPath 4"}));
}

TEST(PolygonSymbolizer, FillsOnly) {
    EXPECT_EQ(symbolized(*unusual(), 1),
              (Lines{"setLineCap 0", "setLineJoin 2", "setLineWidth 3", "setLineDash 0.5 [4 1 2 1]",
                     "setFillColor 1 0.5 0 0.75", "drawPath 1"}));
}

TEST(PolygonSymbolizer, SetsTheStrokeStateEvenWhenNothingIsDrawn) {
    MzPolygonSymbolizer polygon;
    polygon.setShouldStroke(false);
    EXPECT_EQ(symbolized(polygon, 1),
              (Lines{"setLineCap 1", "setLineJoin 1", "setLineWidth 2", "setLineDash 0 solid"}));
}

TEST(PolygonSymbolizer, DrawsInThePortsColorsWithoutItsOwn) {
    MzPolygonSymbolizer polygon;
    polygon.setShouldFill(true);
    polygon.setFillColor(nullptr);
    polygon.setStrokeColor(nullptr);
    const Lines lines = symbolized(polygon, 1);
    EXPECT_EQ(only("setFillColor", lines), Lines{"setFillColor none"});
    EXPECT_EQ(only("setStrokeColor", lines), Lines{"setStrokeColor none"});
    EXPECT_EQ(lines.back(), "drawPath 4");
}

// --- changes

TEST(PolygonSymbolizer, ListsWhatAffectsItsDrawing) {
    EXPECT_EQ(MzPolygonSymbolizer().drawPropertyKeyPaths(),
              (Lines{"shouldFill", "fillColor", "fillOpacity", "shouldStroke", "strokeColor",
                     "strokeOpacity", "strokeWidth", "lineJoin", "lineCap", "lineDashOffset",
                     "lineDashCount", "isDashed"}));
}

TEST(PolygonSymbolizer, AnnouncesItsPropertiesByName) {
    MzPolygonSymbolizer polygon;
    testing::ObservationRecorder log;
    log.observe(polygon, {"shouldFill", "fillColor", "fillOpacity", "shouldStroke", "strokeColor",
                          "strokeOpacity"});
    polygon.setShouldFill(true);
    polygon.setFillColor(nullptr);
    polygon.setFillOpacity(0.5F);
    polygon.setShouldStroke(true);
    polygon.setStrokeColor(nullptr);
    polygon.setStrokeOpacity(0.5F);
    EXPECT_EQ(log.lines, (Lines{"will shouldFill", "did shouldFill", "will fillColor",
                                "did fillColor", "will fillOpacity", "did fillOpacity",
                                "will shouldStroke", "did shouldStroke", "will strokeColor",
                                "did strokeColor", "will strokeOpacity", "did strokeOpacity"}));
}

// --- comparison

TEST(PolygonSymbolizer, IsEqualWhenOnlyDashesDiffer) {
    const auto polygon = unusual();
    const auto other = polygon->copy();
    const std::array<double, 4> otherPattern{9, 9, 9, 9};
    other->setLineDash(otherPattern.data(), 4);
    other->setIsDashed(false);
    EXPECT_TRUE(polygon->isEqualToPolygonSymbolizer(other.get()));
    EXPECT_TRUE(polygon->isEqualToSymbolizer(other.get()));
}

TEST(PolygonSymbolizer, IsUnequalInAnythingElse) {
    const auto polygon = unusual();
    const auto differs = [&](auto change) {
        const auto other = polygon->copy();
        change(*other);
        return !polygon->isEqualToPolygonSymbolizer(other.get());
    };
    EXPECT_FALSE(differs([](MzPolygonSymbolizer&) {}));
    EXPECT_TRUE(differs([](MzPolygonSymbolizer& p) { p.setShouldStroke(true); }));
    EXPECT_TRUE(differs([](MzPolygonSymbolizer& p) { p.setShouldFill(false); }));
    EXPECT_TRUE(differs([](MzPolygonSymbolizer& p) { p.setStrokeWidth(4); }));
    EXPECT_TRUE(differs([](MzPolygonSymbolizer& p) { p.setLineDashCount(3); }));
    EXPECT_TRUE(differs([](MzPolygonSymbolizer& p) { p.setStrokeOpacity(1); }));
    EXPECT_TRUE(differs([](MzPolygonSymbolizer& p) { p.setFillOpacity(1); }));
    EXPECT_TRUE(differs([](MzPolygonSymbolizer& p) { p.setStrokeColor(Color::cyanColor()); }));
    EXPECT_TRUE(differs([](MzPolygonSymbolizer& p) { p.setFillColor(Color::cyanColor()); }));
    EXPECT_TRUE(differs(
        [](MzPolygonSymbolizer& p) { p.setFillOpacity(std::numeric_limits<float>::quiet_NaN()); }));
    EXPECT_FALSE(polygon->isEqualToPolygonSymbolizer(nullptr));
}

// --- copies

TEST(PolygonSymbolizer, CopiesEverythingAndSharesColors) {
    const auto polygon = unusual();
    const auto copy = polygon->copy();
    EXPECT_TRUE(copy->isEqualToPolygonSymbolizer(polygon.get()));
    EXPECT_EQ(copy->fillColor().get(), polygon->fillColor().get());
    EXPECT_EQ(copy->strokeColor().get(), polygon->strokeColor().get());
    EXPECT_TRUE(copy->isDashed());
    EXPECT_EQ(copy->lineDash().size(), 4U);
    EXPECT_NE(copy->lineDash().data(), polygon->lineDash().data());
}

TEST(PolygonSymbolizer, CopiesItsDashCountAlsoWithoutAPattern) {
    const auto polygon = unusual();
    polygon->setLineDash(nullptr, 0);
    const auto copy = polygon->copy();
    EXPECT_EQ(copy->lineDashCount(), 4U);
    EXPECT_TRUE(copy->lineDash().empty());
}

// --- archives

TEST(PolygonSymbolizer, WritesAndReadsItsKeysInOrder) {
    const auto polygon = unusual();
    testing::KeyedStore store;
    polygon->encodeWithCoder(store);
    EXPECT_EQ(store.layout(),
              (Lines{"bool shouldStroke", "bool shouldFill", "object strokeColor",
                     "object fillColor", "float strokeOpacity", "float fillOpacity",
                     "float strokeWidth", "int lineJoin", "int lineCap", "float lineDashOffset",
                     "int lineDashCount", "bool isDashed", "bytes lineDash"}));
    EXPECT_EQ(polygon->archiveClassName(), "MzPolygonSymbolizer");
    const auto decoded = MzPolygonSymbolizer::initWithCoder(store);
    EXPECT_EQ(store.asked(),
              (Lines{"shouldStroke", "shouldFill", "strokeColor", "fillColor", "strokeOpacity",
                     "fillOpacity", "strokeWidth", "lineJoin", "lineCap", "lineDashOffset",
                     "lineDashCount", "isDashed", "lineDash"}));
    EXPECT_TRUE(decoded->isEqualToPolygonSymbolizer(polygon.get()));
    EXPECT_TRUE(decoded->isDashed());
    EXPECT_EQ(decoded->lineDash().size(), 4U);
}

TEST(PolygonSymbolizer, DecodesAnEmptyArchiveToZeros) {
    const auto polygon = MzPolygonSymbolizer::initWithCoder(testing::KeyedStore());
    EXPECT_FALSE(polygon->shouldFill());
    EXPECT_FALSE(polygon->shouldStroke());
    EXPECT_EQ(polygon->fillColor(), nullptr);
    EXPECT_EQ(polygon->strokeColor(), nullptr);
    EXPECT_EQ(polygon->fillOpacity(), 0);
    EXPECT_EQ(polygon->strokeOpacity(), 0);
    EXPECT_EQ(polygon->strokeWidth(), 0);
    EXPECT_EQ(polygon->lineJoin(), 0U);
}

}  // namespace
}  // namespace mezalith
