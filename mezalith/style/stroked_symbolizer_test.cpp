// SPDX-License-Identifier: MIT
#include <mezalith/platform/keyed_store.hpp>
#include <mezalith/platform/observation_recorder.hpp>
#include <mezalith/style/stroked_symbolizer.hpp>
#include <mezalith/style/testing.hpp>

#include <array>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using platform::Color;
using testing::Lines;
using testing::TestDrawContext;

/// Draws polygons and writes the scale factor as the line width.
class Probe : public MzStrokedSymbolizer {
  public:
    using MzStrokedSymbolizer::colorWithOpacity;
    using MzStrokedSymbolizer::decodeColor;
    using MzStrokedSymbolizer::drawEvenOddPath;
    using MzStrokedSymbolizer::stroke_;

    void drawSpatialObject(MzSpatialObjectDrawAdditions* object, MzDrawContext* context,
                           bool) override {
        drawPolygons(*visibleGeometry(object, context), *context, *currentGraphicsPort());
    }
    void symbolizeInContext(platform::GraphicsPort* port, double scaleFactor) override {
        port->setLineWidth(scaleFactor);
    }
    std::string_view archiveClassName() const override { return "Probe"; }
    void encodeWithCoder(platform::KeyedArchiver&) const override {}
};

constexpr std::array<double, 4> kPattern{4, 1, 2, 1};

std::vector<double> dashOf(const MzStrokedSymbolizer& symbolizer) {
    return {symbolizer.lineDash().begin(), symbolizer.lineDash().end()};
}

// --- properties

TEST(StrokedSymbolizer, KeepsItsPropertiesInItsStroke) {
    Probe probe;
    probe.setStrokeWidth(3);
    probe.setLineJoin(2);
    probe.setLineCap(0);
    probe.setLineDashOffset(0.5);
    probe.setLineDashCount(7);
    probe.setIsDashed(true);
    EXPECT_EQ(probe.strokeWidth(), 3);
    EXPECT_EQ(probe.lineJoin(), 2U);
    EXPECT_EQ(probe.lineCap(), 0U);
    EXPECT_EQ(probe.lineDashOffset(), 0.5);
    EXPECT_EQ(probe.lineDashCount(), 7U);
    EXPECT_TRUE(probe.isDashed());
    EXPECT_EQ(probe.stroke_.strokeWidth, 3);
    EXPECT_TRUE(probe.stroke_.isDashed);
}

TEST(StrokedSymbolizer, AnnouncesItsPropertiesByName) {
    Probe probe;
    testing::ObservationRecorder log;
    log.observe(probe, {"strokeWidth", "lineJoin", "lineCap", "lineDashOffset", "lineDashCount",
                        "isDashed"});
    probe.setStrokeWidth(3);
    probe.setLineJoin(2);
    probe.setLineCap(0);
    probe.setLineDashOffset(0.5);
    probe.setLineDashCount(7);
    probe.setIsDashed(true);
    EXPECT_EQ(log.lines,
              (Lines{"will strokeWidth", "did strokeWidth", "will lineJoin", "did lineJoin",
                     "will lineCap", "did lineCap", "will lineDashOffset", "did lineDashOffset",
                     "will lineDashCount", "did lineDashCount", "will isDashed", "did isDashed"}));
}

// --- the dash pattern

TEST(StrokedSymbolizer, KeepsACopyOfThePatternAndItsCount) {
    Probe probe;
    std::vector<double> pattern{4, 1};
    probe.setLineDash(pattern.data(), pattern.size());
    pattern[0] = 99;
    EXPECT_EQ(dashOf(probe), (std::vector<double>{4, 1}));
    EXPECT_EQ(probe.lineDashCount(), 2U);
}

TEST(StrokedSymbolizer, LeavesTheCountWhenThePatternIsTakenAway) {
    Probe probe;
    testing::ObservationRecorder log;
    probe.setLineDash(kPattern.data(), 4);
    log.observe(probe, {"lineDashCount", "lineDash"});
    probe.setLineDash(nullptr, 0);
    EXPECT_EQ(probe.lineDashCount(), 4U);
    EXPECT_TRUE(probe.lineDash().empty());
    probe.setLineDash(kPattern.data(), 4);
    log.lines.clear();
    probe.setLineDash(kPattern.data(), 0);
    EXPECT_EQ(probe.lineDashCount(), 4U);
    EXPECT_TRUE(probe.lineDash().empty());
    probe.setLineDash(nullptr, 3);
    EXPECT_EQ(probe.lineDashCount(), 4U);
    EXPECT_EQ(log.lines, Lines{});
}

TEST(StrokedSymbolizer, AnnouncesANewPatternThroughItsCountOnly) {
    Probe probe;
    testing::ObservationRecorder log;
    log.observe(probe, {"lineDash", "lineDashCount"});
    probe.setLineDash(kPattern.data(), 4);
    EXPECT_EQ(log.lines, (Lines{"will lineDashCount", "did lineDashCount"}));
    log.lines.clear();
    probe.setLineDash(std::vector<double>{9, 8, 7, 6}.data(), 4);
    EXPECT_EQ(dashOf(probe), (std::vector<double>{9, 8, 7, 6}));
    EXPECT_EQ(log.lines, Lines{}) << "of the same length";
}

TEST(StrokedSymbolizer, TakesItsOwnPatternAgain) {
    Probe probe;
    probe.setLineDash(kPattern.data(), 4);
    probe.setLineDash(probe.lineDash().data(), 2);
    EXPECT_EQ(dashOf(probe), (std::vector<double>{4, 1}));
}

// --- paths of polygons

TEST(StrokedSymbolizer, MakesOnePathOfAllRings) {
    TestDrawContext context;
    context.factor = 3;
    Probe probe;
    EXPECT_EQ(
        testing::drawn(
            probe,
            testing::polygon({{{0, 0}, {9, 0}, {9, 9}, {0, 0}}, {{4, 1}, {5, 1}, {5, 2}, {4, 1}}},
                             context),
            context),
        (Lines{"beginPath", "moveToPoint 0 0", "addLineToPoint 9 0", "addLineToPoint 9 9",
               "addLineToPoint 0 0", "closeSubpath", "moveToPoint 4 1", "addLineToPoint 5 1",
               "addLineToPoint 5 2", "addLineToPoint 4 1", "closeSubpath", "setLineWidth 3"}));
}

TEST(StrokedSymbolizer, LeavesOutRingsOfTwoPointsAndBeginsAtTheFirstUsed) {
    TestDrawContext context;
    Probe probe;
    EXPECT_EQ(
        testing::drawn(probe,
                       testing::polygon({{{0, 0}, {9, 0}}, {}, {{4, 1}, {5, 1}, {5, 2}}}, context),
                       context),
        (Lines{"beginPath", "moveToPoint 4 1", "addLineToPoint 5 1", "addLineToPoint 5 2",
               "closeSubpath", "setLineWidth 1"}));
}

TEST(StrokedSymbolizer, DrawsNoPolygonWithoutAUsableRing) {
    TestDrawContext context;
    Probe probe;
    EXPECT_EQ(
        testing::drawn(probe, testing::polygon({{{0, 0}, {9, 0}}, {{1, 1}}}, context), context),
        Lines{});
    EXPECT_EQ(testing::drawn(probe, testing::polygon({}, context), context), Lines{});
}

TEST(StrokedSymbolizer, DrawsEachMemberOfAMultiPolygonByItself) {
    TestDrawContext context;
    Probe probe;
    EXPECT_EQ(
        testing::drawn(
            probe,
            testing::multiPolygon(
                {{{{0, 0}, {1, 0}, {1, 1}}}, {{{0, 0}, {1, 0}}}, {{{4, 1}, {5, 1}, {5, 2}}}}),
            context),
        (Lines{"beginPath", "moveToPoint 0 0", "addLineToPoint 1 0", "addLineToPoint 1 1",
               "closeSubpath", "setLineWidth 1", "beginPath", "moveToPoint 4 1",
               "addLineToPoint 5 1", "addLineToPoint 5 2", "closeSubpath", "setLineWidth 1"}));
}

TEST(StrokedSymbolizer, MakesNoPolygonsOfOtherGeometries) {
    TestDrawContext context;
    Probe probe;
    EXPECT_EQ(testing::drawn(probe, testing::multiPoint({{0, 0}, {1, 0}, {1, 1}}), context),
              Lines{});
    EXPECT_EQ(testing::drawn(probe, MzPointGeometry::initWithPoint({0, 0}), context), Lines{});
}

TEST(StrokedSymbolizer, DrawsTheClippedRings) {
    TestDrawContext context;
    context.region->setClippingRect({{0, 0}, {10, 10}});
    Probe probe;
    EXPECT_EQ(
        testing::drawn(
            probe, testing::polygon({{{-5, -5}, {15, -5}, {15, 15}, {-5, 15}, {-5, -5}}}, context),
            context),
        (Lines{"beginPath", "moveToPoint 0 0", "addLineToPoint 10 0", "addLineToPoint 10 10",
               "addLineToPoint 0 10", "closeSubpath", "setLineWidth 1"}));
}

// --- helpers

TEST(StrokedSymbolizer, DrawsAPathByTheEvenOddRule) {
    platform::RecordingPort port;
    Probe::drawEvenOddPath(port, true, true);
    Probe::drawEvenOddPath(port, true, false);
    Probe::drawEvenOddPath(port, false, true);
    Probe::drawEvenOddPath(port, false, false);
    EXPECT_EQ(port.lines(), (Lines{"drawPath 4", "drawPath 1", "drawPath 2"}));
}

TEST(StrokedSymbolizer, ReplacesTheAlphaOfAColor) {
    const auto red = Color::colorWithCalibratedRed(1, 0, 0, 0.5);
    EXPECT_EQ(Probe::colorWithOpacity(red, 0.25)->description(), "1 0 0 0.25");
    EXPECT_EQ(Probe::colorWithOpacity(red, 0.5), red);
    EXPECT_EQ(Probe::colorWithOpacity(nullptr, 1), nullptr);
}

TEST(StrokedSymbolizer, DecodesColorsOnly) {
    const auto red = Color::colorWithCalibratedRed(1, 0, 0, 0.5);
    const Probe probe;
    testing::KeyedStore store;
    store.encodeObject(red.get(), "color");
    store.encodeObject(&probe, "probe");
    EXPECT_EQ(Probe::decodeColor(store, "color").get(), red.get());
    EXPECT_EQ(Probe::decodeColor(store, "probe"), nullptr);
    EXPECT_EQ(Probe::decodeColor(store, "absent"), nullptr);
}

}  // namespace
}  // namespace mezalith
