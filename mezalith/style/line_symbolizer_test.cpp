// SPDX-License-Identifier: MIT
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/platform/keyed_store.hpp>
#include <mezalith/platform/observation_recorder.hpp>
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/testing.hpp>

#include <array>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using platform::Color;
using testing::drawn;
using testing::Lines;
using testing::multiPoint;
using testing::only;
using testing::TestDrawContext;

constexpr std::array<double, 4> kPattern{4, 1, 2, 1};

Lines symbolized(MzLineSymbolizer& line, double scaleFactor) {
    platform::RecordingPort port;
    line.symbolizeInContext(&port, scaleFactor);
    return port.lines();
}

/// A symbolizer without a default left.
std::shared_ptr<MzLineSymbolizer> unusual() {
    auto line = std::make_shared<MzLineSymbolizer>();
    line->setStrokeColor(Color::colorWithDeviceRed(1, 0.5, 0, 0.25));
    line->setStrokeWidth(3);
    line->setStrokeOpacity(0.75F);
    line->setLineJoin(2);
    line->setLineCap(0);
    line->setLineDashOffset(0.5);
    line->setLineDash(kPattern.data(), 4);
    line->setIsDashed(true);
    line->setShouldShadow(true);
    line->setXShadowOffset(3);
    line->setYShadowOffset(-2);
    line->setShadowBlur(4);
    return line;
}

// --- defaults

TEST(LineSymbolizer, BeginsAsARoundCyanLineOfTwoPoints) {
    const MzLineSymbolizer line;
    EXPECT_EQ(line.strokeColor()->description(), "0 1 1 1");
    EXPECT_EQ(line.strokeWidth(), 2);
    EXPECT_EQ(line.strokeOpacity(), 1);
    EXPECT_EQ(line.lineJoin(), 1U);
    EXPECT_EQ(line.lineCap(), 1U);
    EXPECT_EQ(line.lineDashOffset(), 0);
    EXPECT_EQ(line.lineDashCount(), 0U);
    EXPECT_TRUE(line.lineDash().empty());
    EXPECT_FALSE(line.isDashed());
    EXPECT_FALSE(line.shouldShadow());
    EXPECT_EQ(line.xShadowOffset(), 1.5F);
    EXPECT_EQ(line.yShadowOffset(), 1.5F);
    EXPECT_EQ(line.shadowBlur(), 0.5F);
}

// --- what is drawn

TEST(LineSymbolizer, DrawsAMultiPointAsAConnectedPolyline) {
    MzLineSymbolizer line;
    TestDrawContext context;
    EXPECT_EQ(drawn(line, multiPoint({{0, 0}, {5, 5}, {9, 0}}), context),
              (Lines{"moveToPoint 0 0", "addLineToPoint 5 5", "addLineToPoint 9 0", "setLineCap 1",
                     "setLineJoin 1", "setLineWidth 2", "setLineDash 0 solid",
                     "setStrokeColor 0 1 1 1", "drawPath 2"}));
}

TEST(LineSymbolizer, DrawsNoPointsAndNoLineStrings) {
    MzLineSymbolizer line;
    TestDrawContext context;
    EXPECT_EQ(drawn(line, MzPointGeometry::initWithPoint({1, 1}), context), Lines{});
    std::array<MzPoint, 2> points{{{0, 0}, {5, 5}}};
    const auto lineString = MzLineStringGeometry::initWithLineString({2, points.data()});
    lineString->geometryWithProjection(context.projection);
    ASSERT_NE(lineString->geometryWithProjection(context.projection), nullptr);
    EXPECT_EQ(drawn(line, lineString, context), Lines{});
}

TEST(LineSymbolizer, DrawsNoPolylineOfOnePointAndASegmentOfTwo) {
    MzLineSymbolizer line;
    TestDrawContext context;
    context.region->setClippingRect({{0, 0}, {10, 10}});
    EXPECT_EQ(drawn(line, multiPoint({{5, 5}}), context), Lines{});
    EXPECT_EQ(only("moveToPoint", drawn(line, multiPoint({{5, 5}, {15, 5}}), context)),
              Lines{"moveToPoint 5 5"});
    EXPECT_EQ(only("addLineToPoint", drawn(line, multiPoint({{5, 5}, {15, 5}}), context)),
              Lines{"addLineToPoint 10 5"});
}

TEST(LineSymbolizer, DrawsAndClosesRingsOfThreePoints) {
    MzLineSymbolizer line;
    TestDrawContext context;
    const auto polygon = testing::polygon(
        {{{0, 0}, {9, 0}, {9, 9}}, {{1, 1}, {2, 1}}, {{4, 1}, {5, 1}, {5, 2}}}, context);
    EXPECT_EQ(drawn(line, polygon, context),
              (Lines{"beginPath", "moveToPoint 0 0", "addLineToPoint 9 0", "addLineToPoint 9 9",
                     "closeSubpath", "moveToPoint 4 1", "addLineToPoint 5 1", "addLineToPoint 5 2",
                     "closeSubpath", "setLineCap 1", "setLineJoin 1", "setLineWidth 2",
                     "setLineDash 0 solid", "setStrokeColor 0 1 1 1", "drawPath 2"}));
}

TEST(LineSymbolizer, LeavesThePortAloneWhenAllRingsAreSkipped) {
    MzLineSymbolizer line;
    TestDrawContext context;
    EXPECT_EQ(drawn(line, testing::polygon({{{0, 0}, {9, 0}}, {{1, 1}, {2, 1}}}, context), context),
              Lines{});
}

TEST(LineSymbolizer, StrokesEachOfThreePolygons) {
    MzLineSymbolizer line;
    TestDrawContext context;
    const Lines lines = drawn(
        line,
        testing::multiPolygon(
            {{{{0, 0}, {1, 0}, {1, 1}}}, {{{2, 0}, {3, 0}, {3, 1}}}, {{{4, 0}, {5, 0}, {5, 1}}}}),
        context);
    EXPECT_EQ(only("beginPath", lines).size(), 3U);
    EXPECT_EQ(only("drawPath", lines), (Lines{"drawPath 2", "drawPath 2", "drawPath 2"}));
}

TEST(LineSymbolizer, DrawsSelectedLinesLikeOthers) {
    TestDrawContext context;
    const auto line = unusual();
    const auto geometry = multiPoint({{0, 0}, {5, 5}});
    EXPECT_EQ(drawn(*line, geometry, context, true), drawn(*line, geometry, context, false));
}

TEST(LineSymbolizer, DrawsWithTheScaleFactorOfTheContext) {
    MzLineSymbolizer line;
    TestDrawContext context;
    context.factor = 2;
    EXPECT_EQ(only("setLineWidth", drawn(line, multiPoint({{0, 0}, {5, 5}}), context)),
              Lines{"setLineWidth 4"});
}

TEST(LineSymbolizer, DrawsNothingOutsideTheRegionOrWithoutOne) {
    MzLineSymbolizer line;
    TestDrawContext context;
    EXPECT_EQ(drawn(line, multiPoint({{2000, 0}, {3000, 5}}), context), Lines{});
    context.region = nullptr;
    EXPECT_EQ(drawn(line, multiPoint({{-5, -5}, {5, 5}}), context), Lines{});
    EXPECT_EQ(drawn(line, testing::multiPolygon({{{{-1, -1}, {1, -1}, {1, 1}}}}), context),
              Lines{});
}

TEST(LineSymbolizer, SurvivesWhateverIsMissing) {
    MzLineSymbolizer line;
    TestDrawContext context;
    testing::TestFeature feature(multiPoint({{0, 0}, {5, 5}}));
    line.drawSpatialObject(&feature, &context, false);
    platform::RecordingPort port;
    const platform::GraphicsContext current(&port);
    line.drawSpatialObject(nullptr, &context, false);
    line.drawSpatialObject(&feature, nullptr, false);
    line.symbolizeInContext(nullptr, 1);
    feature.geometryValue = nullptr;
    line.drawSpatialObject(&feature, &context, false);
    EXPECT_EQ(port.lines(), Lines{});
}

TEST(LineSymbolizer, IsNeverHit) {
    MzLineSymbolizer line;
    TestDrawContext context;
    testing::TestFeature feature(multiPoint({{0, 0}, {5, 5}}));
    EXPECT_FALSE(line.isSpatialObject(&feature, {0, 0}, &context, true));
}

// --- how it is drawn

TEST(LineSymbolizer, DoublesAllButTheBlurAtScaleFactorTwo) {
    MzLineSymbolizer line;
    line.setLineDash(kPattern.data(), 2);
    line.setLineDashOffset(3);
    line.setIsDashed(true);
    line.setShouldShadow(true);
    EXPECT_EQ(symbolized(line, 2),
              (Lines{"setLineCap 1", "setLineJoin 1", "setLineWidth 4", "setLineDash 6 [8 2]",
                     "setStrokeColor 0 1 1 1", "setShadow 3 3 0.5", "drawPath 2"}));
}

TEST(LineSymbolizer, HasItsOwnShadowOffsets) {
    EXPECT_EQ(only("setShadow", symbolized(*unusual(), 2)), Lines{"setShadow 6 -4 4"});
}

TEST(LineSymbolizer, IsSolidWhenDashedWithoutEntries) {
    MzLineSymbolizer line;
    line.setIsDashed(true);
    EXPECT_EQ(only("setLineDash", symbolized(line, 2)), Lines{"setLineDash 0 solid"});
}

TEST(LineSymbolizer, LeavesTheCountOfAPatternThatIsTakenAway) {
    MzLineSymbolizer line;
    line.setIsDashed(true);
    line.setLineDash(kPattern.data(), 4);
    line.setLineDash(nullptr, 0);
    EXPECT_EQ(line.lineDashCount(), 4U);
    EXPECT_TRUE(line.lineDash().empty());
    EXPECT_EQ(only("setLineDash", symbolized(line, 2)), Lines{"setLineDash 0 solid"});
}

TEST(LineSymbolizer, ReplacesTheAlphaOfItsColor) {
    MzLineSymbolizer line;
    line.setStrokeColor(Color::colorWithCalibratedRed(1, 0, 0, 0.5));
    EXPECT_EQ(only("setStrokeColor", symbolized(line, 1)), Lines{"setStrokeColor 1 0 0 1"});
    line.setStrokeOpacity(0.25F);
    EXPECT_EQ(only("setStrokeColor", symbolized(line, 1)), Lines{"setStrokeColor 1 0 0 0.25"});
}

TEST(LineSymbolizer, StrokesInThePortsColorWithoutOne) {
    MzLineSymbolizer line;
    line.setStrokeColor(nullptr);
    EXPECT_EQ(symbolized(line, 1),
              (Lines{"setLineCap 1", "setLineJoin 1", "setLineWidth 2", "setLineDash 0 solid",
                     "setStrokeColor none", "drawPath 2"}));
}

// --- changes

TEST(LineSymbolizer, ListsWhatAffectsItsDrawing) {
    EXPECT_EQ(MzLineSymbolizer().drawPropertyKeyPaths(),
              (Lines{"strokeColor", "strokeOpacity", "strokeWidth", "lineJoin", "lineCap",
                     "lineDashOffset", "lineDashCount", "isDashed", "shouldShadow", "xShadowOffset",
                     "yShadowOffset", "shadowBlur"}));
}

TEST(LineSymbolizer, AnnouncesItsPropertiesByName) {
    MzLineSymbolizer line;
    testing::ObservationRecorder log;
    log.observe(line, {"strokeColor", "strokeOpacity", "shouldShadow", "xShadowOffset",
                       "yShadowOffset", "shadowBlur"});
    line.setStrokeColor(nullptr);
    line.setStrokeOpacity(0.5F);
    line.setShouldShadow(true);
    line.setXShadowOffset(1);
    line.setYShadowOffset(1);
    line.setShadowBlur(1);
    EXPECT_EQ(log.lines, (Lines{"will strokeColor", "did strokeColor", "will strokeOpacity",
                                "did strokeOpacity", "will shouldShadow", "did shouldShadow",
                                "will xShadowOffset", "did xShadowOffset", "will yShadowOffset",
                                "did yShadowOffset", "will shadowBlur", "did shadowBlur"}));
}

TEST(LineSymbolizer, AnnouncesThatItsDrawingChanged) {
    MzLineSymbolizer line;
    testing::ObservationRecorder log;
    log.observe(line, {MzDrawPropertyKey});
    line.setStrokeColor(nullptr);
    EXPECT_EQ(log.lines, (Lines{"will drawProperty", "did drawProperty"}));
    log.lines.clear();
    line.setLineDash(kPattern.data(), 4);
    EXPECT_EQ(log.lines, (Lines{"will drawProperty", "did drawProperty"}));
    log.lines.clear();
    line.setLineDash(nullptr, 0);
    EXPECT_EQ(log.lines, Lines{});
}

// --- comparison

TEST(LineSymbolizer, IsEqualWhenOnlyShadowOrDashEntriesDiffer) {
    const auto line = unusual();
    const auto other = line->copy();
    EXPECT_FALSE(other->shouldShadow());
    const std::array<double, 4> otherPattern{9, 9, 9, 9};
    other->setLineDash(otherPattern.data(), 4);
    other->setIsDashed(false);
    EXPECT_TRUE(line->isEqualToLineSymbolizer(other.get()));
    EXPECT_TRUE(line->isEqualToSymbolizer(other.get()));
}

TEST(LineSymbolizer, IsUnequalInWidthJoinCapDashOpacityOrColor) {
    const auto line = unusual();
    const auto differs = [&](auto change) {
        const auto other = line->copy();
        change(*other);
        return !line->isEqualToLineSymbolizer(other.get());
    };
    EXPECT_FALSE(differs([](MzLineSymbolizer&) {}));
    EXPECT_TRUE(differs([](MzLineSymbolizer& l) { l.setStrokeWidth(4); }));
    EXPECT_TRUE(differs([](MzLineSymbolizer& l) { l.setLineJoin(1); }));
    EXPECT_TRUE(differs([](MzLineSymbolizer& l) { l.setLineCap(1); }));
    EXPECT_TRUE(differs([](MzLineSymbolizer& l) { l.setLineDashOffset(1); }));
    EXPECT_TRUE(differs([](MzLineSymbolizer& l) { l.setLineDashCount(3); }));
    EXPECT_TRUE(differs([](MzLineSymbolizer& l) { l.setStrokeOpacity(1); }));
    EXPECT_TRUE(differs([](MzLineSymbolizer& l) { l.setStrokeColor(Color::blackColor()); }));
    EXPECT_TRUE(differs([](MzLineSymbolizer& l) { l.setStrokeColor(nullptr); }));
    EXPECT_FALSE(line->isEqualToLineSymbolizer(nullptr));
}

TEST(LineSymbolizer, ComparesColorsAsCalibratedRGB) {
    MzLineSymbolizer line;
    MzLineSymbolizer other;
    other.setStrokeColor(Color::colorWithDeviceRed(0, 1, 1, 1));
    EXPECT_TRUE(line.isEqualToLineSymbolizer(&other));
    line.setStrokeColor(Color::colorWithPatternName("dots"));
    EXPECT_FALSE(line.isEqualToLineSymbolizer(&line));
}

TEST(LineSymbolizer, IsUnequalToItselfWithANaN) {
    MzLineSymbolizer line;
    line.setStrokeWidth(std::numeric_limits<float>::quiet_NaN());
    EXPECT_FALSE(line.isEqualToLineSymbolizer(&line));
}

// --- copies

TEST(LineSymbolizer, CopiesAllButTheShadow) {
    const auto line = unusual();
    const auto copy = line->copy();
    EXPECT_EQ(copy->strokeColor().get(), line->strokeColor().get());
    EXPECT_EQ(copy->strokeOpacity(), 0.75F);
    EXPECT_EQ(copy->strokeWidth(), 3);
    EXPECT_TRUE(copy->isDashed());
    EXPECT_EQ(copy->lineDashCount(), 4U);
    EXPECT_EQ(copy->lineDash().size(), 4U);
    EXPECT_FALSE(copy->shouldShadow());
    EXPECT_EQ(copy->xShadowOffset(), 1.5F);
    EXPECT_EQ(copy->yShadowOffset(), 1.5F);
    EXPECT_EQ(copy->shadowBlur(), 0.5F);
}

TEST(LineSymbolizer, CopiesNoDashCountWithoutAPattern) {
    const auto line = unusual();
    line->setLineDash(nullptr, 0);
    EXPECT_EQ(line->copy()->lineDashCount(), 0U);
}

// --- archives

TEST(LineSymbolizer, WritesItsKeysInOrder) {
    testing::KeyedStore store;
    unusual()->encodeWithCoder(store);
    EXPECT_EQ(store.layout(),
              (Lines{"object strokeColor", "float strokeWidth", "float strokeOpacity",
                     "int lineJoin", "int lineCap", "float lineDashOffset", "int lineDashCount",
                     "bool isDashed", "bytes lineDash"}));
    EXPECT_EQ(unusual()->archiveClassName(), "MzLineSymbolizer");
}

TEST(LineSymbolizer, LosesItsShadowInAnArchive) {
    const auto line = unusual();
    testing::KeyedStore store;
    line->encodeWithCoder(store);
    const auto decoded = MzLineSymbolizer::initWithCoder(store);
    EXPECT_TRUE(decoded->isEqualToLineSymbolizer(line.get()));
    EXPECT_EQ(decoded->strokeOpacity(), 0.75F);
    EXPECT_TRUE(decoded->isDashed());
    EXPECT_EQ(std::vector<double>(decoded->lineDash().begin(), decoded->lineDash().end()),
              std::vector<double>(kPattern.begin(), kPattern.end()));
    EXPECT_FALSE(decoded->shouldShadow());
    EXPECT_EQ(decoded->xShadowOffset(), 0);
    EXPECT_EQ(decoded->yShadowOffset(), 0);
    EXPECT_EQ(decoded->shadowBlur(), 0);
}

TEST(LineSymbolizer, DecodesAnEmptyArchiveToZeros) {
    const auto line = MzLineSymbolizer::initWithCoder(testing::KeyedStore());
    EXPECT_EQ(line->strokeColor(), nullptr);
    EXPECT_EQ(line->strokeWidth(), 0);
    EXPECT_EQ(line->strokeOpacity(), 0);
    EXPECT_EQ(line->lineJoin(), 0U);
    EXPECT_EQ(line->lineCap(), 0U);
    EXPECT_FALSE(line->isDashed());
}

TEST(LineSymbolizer, ReadsItsKeysInOrder) {
    const testing::KeyedStore store;
    MzLineSymbolizer::initWithCoder(store);
    EXPECT_EQ(store.asked(),
              (Lines{"strokeColor", "strokeWidth", "strokeOpacity", "lineJoin", "lineCap",
                     "lineDashOffset", "lineDashCount", "isDashed", "lineDash"}));
}

}  // namespace
}  // namespace mezalith
