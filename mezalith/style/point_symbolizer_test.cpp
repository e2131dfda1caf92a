// SPDX-License-Identifier: MIT
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/cairo/pictures.hpp>
#include <mezalith/platform/keyed_store.hpp>
#include <mezalith/platform/observation_recorder.hpp>
#include <mezalith/style/null_port.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/testing.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <sstream>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using platform::Color;
using platform::Shadow;
using testing::drawn;
using testing::Lines;
using testing::multiPoint;
using testing::only;
using testing::Points;
using testing::TestDrawContext;

constexpr std::array<double, 4> kPattern{4, 1, 2, 1};
constexpr double kPi = std::numbers::pi;

/// Doubles every coordinate.
class DoublingProjection : public MzMapProjection {
  public:
    MzPoint projectedCoordinateForLongitudeLatitude(MzPoint point) const override {
        return {2 * point.x, 2 * point.y};
    }
    void projectCoordinates(std::span<const MzPoint> source,
                            std::span<MzPoint> destination) const override {
        std::ranges::transform(source, destination.begin(), [this](MzPoint point) {
            return projectedCoordinateForLongitudeLatitude(point);
        });
    }
};

Lines symbolized(MzPointSymbolizer& point, double scaleFactor) {
    platform::RecordingPort port;
    const platform::GraphicsContext current(&port);
    point.symbolizeInContext(&port, scaleFactor);
    return port.lines();
}

Lines outline(const MzPointSymbolizer& point, double scaleFactor) {
    platform::RecordingPort port;
    point.drawSymbolInContext(&port, scaleFactor);
    return port.lines();
}

MzPointSymbolizer& shaped(MzPointSymbolizer& point, std::int32_t type, float rotation = 0) {
    point.setSymbolType(type);
    point.setSymbolRotation(rotation);
    return point;
}

Lines operations(const Lines& lines) {
    Lines names;
    for (const std::string& line : lines) names.push_back(line.substr(0, line.find(' ')));
    return names;
}

/// The vertices of moveToPoint and addLineToPoint lines.
Points vertices(const Lines& lines) {
    Points points;
    for (const std::string& line : lines) {
        std::istringstream words(line);
        std::string operation;
        MzPoint point{};
        if (words >> operation >> point.x >> point.y) points.push_back(point);
    }
    return points;
}

void expectNear(const Points& actual, const Points& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
        EXPECT_NEAR(actual[i].x, expected[i].x, 1e-6) << "vertex " << i;
        EXPECT_NEAR(actual[i].y, expected[i].y, 1e-6) << "vertex " << i;
    }
}

void expectSame(const Points& actual, const Points& expected) {
    ASSERT_EQ(actual.size(), expected.size());
    for (std::size_t i = 0; i < actual.size(); ++i) {
        EXPECT_EQ(actual[i].x, expected[i].x) << "vertex " << i;
        EXPECT_EQ(actual[i].y, expected[i].y) << "vertex " << i;
    }
}

MzPoint polar(double radius, double angle) {
    return {radius * std::sin(angle), radius * std::cos(angle)};
}

/// A symbolizer without a default left.
std::shared_ptr<MzPointSymbolizer> unusual() {
    auto point = std::make_shared<MzPointSymbolizer>();
    point->setShouldStroke(true);
    point->setShouldFill(false);
    point->setStrokeColor(Color::colorWithDeviceRed(1, 0.5, 0, 0.1));
    point->setFillColor(Color::colorWithCalibratedWhite(0.5, 0.75));
    point->setStrokeWidth(3);
    point->setLineJoin(2);
    point->setLineCap(0);
    point->setLineDashOffset(0.5);
    point->setLineDash(kPattern.data(), 4);
    point->setIsDashed(true);
    point->setSymbolType(4);
    point->setSymbolSize(7);
    point->setSymbolRotation(30);
    point->setSymbolOpacity(0.5F);
    point->setShouldShadow(true);
    point->setShadowOffsetWidth(-4);
    point->setShadowBlurRadius(9);
    return point;
}

// --- defaults

TEST(PointSymbolizer, BeginsAsACyanCircleWithABlackOutline) {
    const MzPointSymbolizer point;
    EXPECT_TRUE(point.shouldStroke());
    EXPECT_EQ(point.strokeColor()->description(), "0 0 0 1");
    EXPECT_EQ(point.strokeWidth(), 0.5F);
    EXPECT_TRUE(point.shouldFill());
    EXPECT_EQ(point.fillColor()->description(), "0 1 1 1");
    EXPECT_EQ(point.lineJoin(), 1U);
    EXPECT_EQ(point.lineCap(), 1U);
    EXPECT_EQ(point.lineDashOffset(), 0);
    EXPECT_EQ(point.lineDashCount(), 0U);
    EXPECT_TRUE(point.lineDash().empty());
    EXPECT_FALSE(point.isDashed());
    EXPECT_EQ(point.symbolType(), 1);
    EXPECT_EQ(point.symbolSize(), 4);
    EXPECT_EQ(point.symbolRotation(), 0);
    EXPECT_EQ(point.symbolOpacity(), 1);
    EXPECT_FALSE(point.shouldShadow());
    EXPECT_EQ(point.shadowOffsetWidth(), 1.5);
    EXPECT_EQ(point.shadowOffsetHeight(), 1.5);
    EXPECT_EQ(point.shadowBlurRadius(), 1);
    EXPECT_EQ(point.shadowColor()->description(), Shadow::defaultColor()->description());
    EXPECT_EQ(point.theLayer(), nullptr);
}

// --- points

TEST(PointSymbolizer, DrawsTheMarkerIntoALayerAndStampsIt) {
    MzPointSymbolizer point;
    TestDrawContext context;
    context.factor = 2;
    EXPECT_EQ(drawn(point, MzPointGeometry::initWithPoint({100, 200}), context),
              (Lines{"createLayer 1 9 9", "layer 1: saveState", "layer 1: translate 4.5 4.5",
                     "layer 1: setLineCap 1", "layer 1: setLineJoin 1", "layer 1: setLineWidth 1",
                     "layer 1: setLineDash 0 solid", "layer 1: setRGBFillColor 0 1 1 1",
                     "layer 1: setRGBStrokeColor 0 0 0 1", "layer 1: setShadowWithColor 0 0 0 none",
                     "layer 1: addEllipseInRect -4 -4 8 8", "layer 1: drawPath 4",
                     "layer 1: restoreState", "saveState", "setShadowWithColor 0 0 0 none",
                     "translate 95.5 195.5", "drawLayerAtPoint 1 0 0", "restoreState"}));
}

TEST(PointSymbolizer, PaintsTheMarkerAroundItsPoint) {
    MzPointSymbolizer point;
    point.setShouldStroke(false);
    point.setSymbolType(0);
    point.setSymbolSize(4);
    TestDrawContext context;
    const auto port = platform::CairoPort::pixelPort({20, 20});
    testing::drawInto(*port, point, MzPointGeometry::initWithPoint({14.5, 5.5}), context);
    EXPECT_EQ(port->pixelRow(14)[14], 0xFF00FFFFU);
    EXPECT_EQ(port->pixelRow(14)[11], 0U);
    EXPECT_EQ(port->pixelRow(14)[17], 0U);
    EXPECT_EQ(port->pixelRow(11)[14], 0U);
    EXPECT_EQ(port->pixelRow(17)[14], 0U);
}

// At whole pixels; between them a stamp is interpolated.
TEST(PointSymbolizer, StampsAsCrisplyAsItDrawsAtAPixelRatioOfTwo) {
    for (const std::int32_t type : {0, 1, 2, 3, 4}) {
        MzPointSymbolizer point;
        shaped(point, type, 30).setSymbolSize(15);
        point.setStrokeWidth(1);
        TestDrawContext context;
        const auto stamped = platform::CairoPort::pixelPort({40, 40}, 2);
        testing::drawInto(*stamped, point, MzPointGeometry::initWithPoint({19.5, 21}), context);
        const auto direct = platform::CairoPort::pixelPort({40, 40}, 2);
        const platform::GraphicsContext current(direct.get());
        direct->translate(19.5, 21);
        point.symbolizeInContext(direct.get(), 1);
        EXPECT_LE(platform::pictures::largestDifference(platform::pictures::pixelsOf(*stamped),
                                                        platform::pictures::pixelsOf(*direct)),
                  1)
            << "type " << type;
        EXPECT_FALSE(platform::pictures::isEmpty(*stamped));
    }
}

TEST(PointSymbolizer, KeepsTheBackingScaleInItsLayer) {
    MzPointSymbolizer point;
    TestDrawContext context;
    const auto port = platform::CairoPort::pixelPort({20, 20}, 2);
    testing::drawInto(*port, point, MzPointGeometry::initWithPoint({10, 10}), context);
    EXPECT_EQ(point.theLayer()->size().width, 9);
    EXPECT_EQ(dynamic_cast<platform::CairoPort*>(point.theLayer()->port())->pixelWidth(), 18);
}

TEST(PointSymbolizer, StampsTheLayerItHas) {
    MzPointSymbolizer point;
    TestDrawContext context;
    testing::TestFeature feature(MzPointGeometry::initWithPoint({0, 0}));
    platform::RecordingPort port;
    const platform::GraphicsContext current(&port);
    point.drawSpatialObject(&feature, &context, false);
    const auto layer = point.theLayer();
    EXPECT_NE(layer, nullptr);
    port.clear();
    point.drawSpatialObject(&feature, &context, false);
    EXPECT_EQ(point.theLayer(), layer);
    EXPECT_EQ(port.lines(),
              (Lines{"saveState", "setShadowWithColor 0 0 0 none", "translate -4.5 -4.5",
                     "drawLayerAtPoint 1 0 0", "restoreState"}));
}

TEST(PointSymbolizer, StampsEachPointOfAMultiPoint) {
    MzPointSymbolizer point;
    TestDrawContext context;
    const Lines lines = drawn(point, multiPoint({{10, 20}, {30, 40}}), context);
    const auto stamps = std::ranges::find(lines, "saveState");
    EXPECT_EQ(
        Lines(stamps, lines.end()),
        (Lines{"saveState", "setShadowWithColor 0 0 0 none", "saveState", "translate 5.5 15.5",
               "drawLayerAtPoint 1 0 0", "restoreState", "saveState", "translate 25.5 35.5",
               "drawLayerAtPoint 1 0 0", "restoreState", "restoreState"}));
}

TEST(PointSymbolizer, StampsNoPointOutsideTheRegion) {
    MzPointSymbolizer point;
    TestDrawContext context;
    EXPECT_EQ(drawn(point, MzPointGeometry::initWithPoint({2000, 0}), context), Lines{});
    const Lines lines = drawn(point, multiPoint({{10, 20}, {2000, 0}}), context);
    EXPECT_EQ(only("drawLayerAtPoint", lines).size(), 1U);
}

TEST(PointSymbolizer, RebuildsTheLayerAfterAChangeOfSize) {
    MzPointSymbolizer point;
    TestDrawContext context;
    const auto geometry = MzPointGeometry::initWithPoint({0, 0});
    EXPECT_EQ(only("createLayer", drawn(point, geometry, context)), Lines{"createLayer 1 9 9"});
    point.setSymbolSize(6);
    EXPECT_EQ(point.theLayer(), nullptr);
    EXPECT_EQ(only("createLayer", drawn(point, geometry, context)), Lines{"createLayer 1 13 13"});
}

TEST(PointSymbolizer, AddsSizeAndWidthInSinglePrecision) {
    MzPointSymbolizer point;
    point.setSymbolSize(0.1F);
    point.setStrokeWidth(0.2F);
    TestDrawContext context;
    EXPECT_EQ(only("createLayer", drawn(point, MzPointGeometry::initWithPoint({0, 0}), context)),
              Lines{"createLayer 1 0.6000000238418579 0.6000000238418579"});
}

TEST(PointSymbolizer, StampsNothingWithoutALayer) {
    MzPointSymbolizer point;
    point.setSymbolSize(-1);
    TestDrawContext context;
    const Lines lines = drawn(point, MzPointGeometry::initWithPoint({0, 0}), context);
    EXPECT_EQ(point.theLayer(), nullptr);
    EXPECT_EQ(only("drawLayerAtPoint", lines), Lines{"drawLayerAtPoint none 0 0"});
    EXPECT_EQ(only("drawPath", lines), Lines{});
}

TEST(PointSymbolizer, StampsAnEmptyLayerForAnUnknownType) {
    MzPointSymbolizer point;
    point.setSymbolType(5);
    EXPECT_EQ(outline(point, 1), Lines{});
    TestDrawContext context;
    const Lines lines = drawn(point, MzPointGeometry::initWithPoint({0, 0}), context);
    EXPECT_EQ(only("createLayer", lines), Lines{"createLayer 1 9 9"});
    EXPECT_EQ(only("drawLayerAtPoint", lines), Lines{"drawLayerAtPoint 1 0 0"});
    EXPECT_EQ(only("layer 1: addEllipseInRect", lines), Lines{});
}

TEST(PointSymbolizer, DrawsNothingWithoutFillAndStroke) {
    MzPointSymbolizer point;
    point.setShouldFill(false);
    point.setShouldStroke(false);
    TestDrawContext context;
    EXPECT_EQ(drawn(point, MzPointGeometry::initWithPoint({0, 0}), context, true), Lines{});
    EXPECT_EQ(context.regionRequests, 0);
}

TEST(PointSymbolizer, SurvivesWhateverIsMissing) {
    MzPointSymbolizer point;
    TestDrawContext context;
    testing::TestFeature feature(MzPointGeometry::initWithPoint({0, 0}));
    point.drawSpatialObject(&feature, &context, true);
    EXPECT_EQ(point.theLayer(), nullptr);
    platform::RecordingPort port;
    const platform::GraphicsContext current(&port);
    point.drawSpatialObject(nullptr, &context, true);
    point.drawSpatialObject(&feature, nullptr, true);
    EXPECT_FALSE(point.isSpatialObject(&feature, {0, 0}, nullptr, false));
    EXPECT_FALSE(point.isSpatialObject(nullptr, {0, 0}, &context, false));
    point.symbolizeInContext(nullptr, 1);
    for (std::int32_t type = 0; type <= 5; ++type) {
        point.setSymbolType(type);
        point.drawSymbolInContext(nullptr, 1);
    }
    EXPECT_EQ(port.lines(), Lines{});
}

TEST(PointSymbolizer, StampsNothingWithoutARegion) {
    MzPointSymbolizer point;
    TestDrawContext context;
    context.region = nullptr;
    const Lines lines = drawn(point, multiPoint({{-5, -5}, {5, 5}}), context);
    EXPECT_EQ(only("drawLayerAtPoint", lines), Lines{});
}

// --- selected

TEST(PointSymbolizer, DrawsAHaloBeneathASelectedMarker) {
    MzPointSymbolizer point;
    TestDrawContext context;
    const auto geometry = MzPointGeometry::initWithPoint({100, 200});
    const Lines lines = drawn(point, geometry, context, true);
    const Lines halo{"createLayer 1 17 17",
                     "layer 1: saveState",
                     "layer 1: translate 8.5 8.5",
                     "layer 1: setLineCap 1",
                     "layer 1: setLineJoin 1",
                     "layer 1: setLineWidth 0.5",
                     "layer 1: setLineDash 0 solid",
                     "layer 1: setRGBFillColor 0 0 0 0.800000011920929",
                     "setShadowWithColor 3.5 1.5 1 0 0 0 0.3333333333333333",
                     "layer 1: addEllipseInRect -4 -4 8 8",
                     "layer 1: drawPath 1",
                     "layer 1: restoreState",
                     "saveState",
                     "setShadowWithColor 3.5 1.5 1 0 0 0 0.3333333333333333",
                     "translate 91.5 191.5",
                     "drawLayerAtPoint 1 0 0",
                     "restoreState"};
    ASSERT_GT(lines.size(), halo.size());
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + std::ssize(halo)), halo);
    EXPECT_EQ(lines[halo.size()], "createLayer 2 9 9");
    EXPECT_EQ(only("drawLayerAtPoint", lines),
              (Lines{"drawLayerAtPoint 1 0 0", "drawLayerAtPoint 2 0 0"}));
}

TEST(PointSymbolizer, KeepsItsOwnPropertiesWhenSelected) {
    MzPointSymbolizer point;
    const auto before = point.copy();
    TestDrawContext context;
    drawn(point, MzPointGeometry::initWithPoint({0, 0}), context, true);
    EXPECT_TRUE(point.isEqualToPointSymbolizer(before.get()));
    EXPECT_EQ(point.shadowOffsetWidth(), 1.5);
}

// --- polygons

TEST(PointSymbolizer, DrawsTheMarkerAtTheCentroidOfAPolygon) {
    MzPointSymbolizer point;
    TestDrawContext context;
    const auto square = testing::polygon({{{0, 0}, {20, 0}, {20, 20}, {0, 20}}}, context);
    const Lines lines = drawn(point, square, context);
    const auto marker = std::ranges::find(lines, "saveState");
    EXPECT_EQ(Lines(marker, lines.end()),
              (Lines{"saveState", "translate 10 10", "setLineCap 1", "setLineJoin 1",
                     "setLineWidth 0.5", "setLineDash 0 solid", "setRGBFillColor 0 1 1 1",
                     "setRGBStrokeColor 0 0 0 1", "setShadowWithColor 0 0 0 none",
                     "addEllipseInRect -2 -2 4 4", "drawPath 4", "restoreState"}));
    EXPECT_EQ(only("createLayer", lines).size(), 1U);
}

TEST(PointSymbolizer, TakesTheCentroidOfTheProjectedPolygon) {
    MzPointSymbolizer point;
    TestDrawContext context;
    context.projection = std::make_shared<DoublingProjection>();
    const auto square = testing::polygon({{{0, 0}, {20, 0}, {20, 20}, {0, 20}}}, context);
    EXPECT_EQ(only("translate", drawn(point, square, context)), Lines{"translate 20 20"});
}

TEST(PointSymbolizer, DrawsNoMarkerWithoutACentroidOrOutsideTheRegion) {
    MzPointSymbolizer point;
    TestDrawContext context;
    EXPECT_EQ(
        only("drawPath", drawn(point, testing::polygon({{{0, 0}, {1, 1}}}, context), context)),
        Lines{});
    const auto far = testing::polygon({{{0, 0}, {9000, 0}, {9000, 9000}, {0, 9000}}}, context);
    EXPECT_EQ(only("drawPath", drawn(point, far, context)), Lines{});
}

TEST(PointSymbolizer, DrawsNoMarkersOnOtherGeometries) {
    MzPointSymbolizer point;
    TestDrawContext context;
    const Lines lines =
        drawn(point, testing::multiPolygon({{{{0, 0}, {20, 0}, {20, 20}}}}), context);
    EXPECT_EQ(only("drawLayerAtPoint", lines), Lines{});
    EXPECT_EQ(only("drawPath", lines), Lines{});
}

// --- hits

TEST(PointSymbolizer, IsHitWithinAManhattanDistance) {
    MzPointSymbolizer point;
    TestDrawContext context;
    testing::TestFeature feature(MzPointGeometry::initWithPoint({100, 200}));
    const auto hit = [&](double dx, double dy) {
        return point.isSpatialObject(&feature, {100 + dx, 200 + dy}, &context, false);
    };
    EXPECT_TRUE(hit(3, 1));
    EXPECT_FALSE(hit(3, 1.25));
    EXPECT_TRUE(hit(4.2, 0));
    EXPECT_TRUE(hit(-3, -1));
    EXPECT_FALSE(hit(-3, -1.25));
}

TEST(PointSymbolizer, IsHitWhateverTheScaleFactorAndSelection) {
    MzPointSymbolizer point;
    TestDrawContext context;
    context.factor = 10;
    testing::TestFeature feature(MzPointGeometry::initWithPoint({0, 0}));
    EXPECT_FALSE(point.isSpatialObject(&feature, {5, 0}, &context, true));
    EXPECT_TRUE(point.isSpatialObject(&feature, {4.2, 0}, &context, true));
}

TEST(PointSymbolizer, IsHitAtAnyPointOfAMultiPoint) {
    MzPointSymbolizer point;
    TestDrawContext context;
    testing::TestFeature feature(multiPoint({{0, 0}, {50, 50}}));
    EXPECT_TRUE(point.isSpatialObject(&feature, {51, 52}, &context, false));
    EXPECT_TRUE(point.isSpatialObject(&feature, {1, 1}, &context, false));
    EXPECT_FALSE(point.isSpatialObject(&feature, {25, 25}, &context, false));
}

TEST(PointSymbolizer, IsNotHitWhenCulledOrInvisible) {
    MzPointSymbolizer point;
    TestDrawContext context;
    testing::TestFeature outside(MzPointGeometry::initWithPoint({2000, 0}));
    EXPECT_FALSE(point.isSpatialObject(&outside, {2000, 0}, &context, false));
    testing::TestFeature inside(MzPointGeometry::initWithPoint({0, 0}));
    EXPECT_TRUE(point.isSpatialObject(&inside, {0, 0}, &context, false));
    point.setShouldFill(false);
    EXPECT_TRUE(point.isSpatialObject(&inside, {0, 0}, &context, false));
    point.setShouldStroke(false);
    EXPECT_FALSE(point.isSpatialObject(&inside, {0, 0}, &context, false));
}

TEST(PointSymbolizer, IsNeverHitOnAPolygon) {
    MzPointSymbolizer point;
    TestDrawContext context;
    testing::TestFeature feature(testing::polygon({{{0, 0}, {20, 0}, {20, 20}, {0, 20}}}, context));
    EXPECT_FALSE(point.isSpatialObject(&feature, {10, 10}, &context, false));
}

// --- shapes

TEST(PointSymbolizer, DrawsACircleOfTheSymbolsDiameter) {
    MzPointSymbolizer point;
    EXPECT_EQ(outline(shaped(point, 1, 30), 3), Lines{"addEllipseInRect -6 -6 12 12"});
}

TEST(PointSymbolizer, DrawsASquareWithCornersOnTheDiagonals) {
    MzPointSymbolizer point;
    const Lines lines = outline(shaped(point, 0), 1);
    EXPECT_EQ(operations(lines), (Lines{"moveToPoint", "addLineToPoint", "addLineToPoint",
                                        "addLineToPoint", "closeSubpath"}));
    const double half = std::sqrt(2.0);
    expectNear(vertices(lines), {{half, half}, {half, -half}, {-half, -half}, {-half, half}});
}

TEST(PointSymbolizer, DrawsATriangleWithItsApexOnTop) {
    MzPointSymbolizer point;
    const Lines lines = outline(shaped(point, 2), 1);
    EXPECT_EQ(operations(lines),
              (Lines{"moveToPoint", "addLineToPoint", "addLineToPoint", "closeSubpath"}));
    EXPECT_EQ(lines.front(), "moveToPoint 0 2");
    const double side = std::sqrt(3.0);
    expectNear(vertices(lines), {{0, 2}, {side, -1}, {-side, -1}});
}

TEST(PointSymbolizer, DrawsAStarOfTenVertices) {
    MzPointSymbolizer point;
    const Lines lines = outline(shaped(point, 4), 1);
    EXPECT_EQ(lines.size(), 11U);
    EXPECT_EQ(lines.front(), "moveToPoint 0 2");
    EXPECT_EQ(lines.back(), "closeSubpath");
    Points expected;
    for (int i = 0; i < 10; ++i) expected.push_back(polar(i % 2 == 0 ? 2 : 0.7, i * kPi / 5));
    expectNear(vertices(lines), expected);
}

TEST(PointSymbolizer, TurnsShapesClockwise) {
    MzPointSymbolizer point;
    expectNear(vertices(outline(shaped(point, 2, 90), 1)),
               {{2, 0}, {-1, -std::sqrt(3.0)}, {-1, std::sqrt(3.0)}});
    EXPECT_EQ(vertices(outline(shaped(point, 0, 45), 1)).front().x, polar(2, kPi / 2).x);
}

TEST(PointSymbolizer, RoundsAllAnglesButTheFirst) {
    MzPointSymbolizer point;
    const double turn = 10 * kPi / 180;
    Points square;
    Points star;
    for (int i = 0; i < 4; ++i) {
        const double angle = turn + kPi / 4 + i * 2 * kPi * 0.25;
        square.push_back(polar(2, i == 0 ? angle : static_cast<float>(angle)));
    }
    const double inner = double{1.0F - 0.65F} * 2;
    for (int i = 0; i < 10; ++i) {
        const double angle = turn + i * 2 * kPi / 10;
        star.push_back(polar(i % 2 == 0 ? 2 : inner, i == 0 ? angle : static_cast<float>(angle)));
    }
    expectSame(vertices(outline(shaped(point, 0, 10), 1)), square);
    expectSame(vertices(outline(shaped(point, 4, 10), 1)), star);
}

TEST(PointSymbolizer, DrawsACrossOfTwoOpenSegments) {
    MzPointSymbolizer point;
    const Lines lines = outline(shaped(point, 3), 1);
    EXPECT_EQ(operations(lines),
              (Lines{"moveToPoint", "addLineToPoint", "moveToPoint", "addLineToPoint"}));
    expectSame(vertices(lines), {{0, 2}, {0, -2}, {2, 0}, {-2, 0}});
}

TEST(PointSymbolizer, TurnsACross) {
    MzPointSymbolizer point;
    expectNear(vertices(outline(shaped(point, 3, 90), 1)), {{2, 0}, {-2, 0}, {0, -2}, {0, 2}});
    const double sine = std::sin(30 * kPi / -180);
    const double cosine = std::cos(30 * kPi / -180);
    expectSame(vertices(outline(shaped(point, 3, 30), 1)), {{-2 * sine, 2 * cosine},
                                                            {2 * sine, -2 * cosine},
                                                            {2 * cosine, 2 * sine},
                                                            {-2 * cosine, -2 * sine}});
}

// --- state and drawing modes

TEST(PointSymbolizer, ScalesItsStroke) {
    const auto point = unusual();
    point->setShouldShadow(false);
    const Lines lines = symbolized(*point, 2);
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 6),
              (Lines{"setLineCap 0", "setLineJoin 2", "setLineWidth 6", "setLineDash 1 [8 2 4 2]",
                     "setRGBStrokeColor 1 0.5 0 0.1", "setShadowWithColor 0 0 0 none"}));
    EXPECT_EQ(lines.back(), "drawPath 2");
}

TEST(PointSymbolizer, FillsOnly) {
    MzPointSymbolizer point;
    point.setShouldStroke(false);
    const Lines lines = symbolized(point, 1);
    EXPECT_EQ(only("setRGBStrokeColor", lines), Lines{});
    EXPECT_EQ(lines.back(), "drawPath 1");
}

TEST(PointSymbolizer, AddsAnOutlineThatIsNotDrawnWithoutFillAndStroke) {
    MzPointSymbolizer point;
    point.setShouldStroke(false);
    point.setShouldFill(false);
    EXPECT_EQ(symbolized(point, 1),
              (Lines{"setLineCap 1", "setLineJoin 1", "setLineWidth 0.5", "setLineDash 0 solid",
                     "setShadowWithColor 0 0 0 none", "addEllipseInRect -2 -2 4 4"}));
}

TEST(PointSymbolizer, CastsAShadowOfTheFillOnly) {
    MzPointSymbolizer point;
    point.setShouldShadow(true);
    EXPECT_EQ(symbolized(point, 1),
              (Lines{"setLineCap 1", "setLineJoin 1", "setLineWidth 0.5", "setLineDash 0 solid",
                     "setRGBFillColor 0 1 1 1", "setRGBStrokeColor 0 0 0 1", "saveState",
                     "setShadowWithColor 1.5 1.5 1 0 0 0 0.3333333333333333",
                     "addEllipseInRect -2 -2 4 4", "drawPath 1", "restoreState",
                     "addEllipseInRect -2 -2 4 4", "drawPath 2"}));
}

TEST(PointSymbolizer, CastsAShadowOfAFillOrStrokeAlone) {
    MzPointSymbolizer point;
    point.setShouldShadow(true);
    point.setShouldStroke(false);
    const Lines lines = symbolized(point, 1);
    EXPECT_EQ(Lines(lines.end() - 3, lines.end()),
              (Lines{"setShadowWithColor 1.5 1.5 1 0 0 0 0.3333333333333333",
                     "addEllipseInRect -2 -2 4 4", "drawPath 1"}));
}

TEST(PointSymbolizer, SetsShadowsOnTheViewAlsoWhileDrawingTheLayer) {
    MzPointSymbolizer point;
    point.setShouldShadow(true);
    TestDrawContext context;
    const Lines lines = drawn(point, MzPointGeometry::initWithPoint({0, 0}), context);
    EXPECT_EQ(only("setShadowWithColor", lines).size(), 2U);
    EXPECT_EQ(only("layer 1: setShadowWithColor", lines), Lines{});
    EXPECT_LT(std::ranges::find(lines, "setShadowWithColor 1.5 1.5 1 0 0 0 0.3333333333333333"),
              std::ranges::find(lines, "layer 1: drawPath 1"));
}

TEST(PointSymbolizer, DrawsTransparentlyWithoutAColor) {
    MzPointSymbolizer point;
    point.setFillColor(nullptr);
    point.setStrokeColor(Color::colorWithPatternName("dots"));
    const Lines lines = symbolized(point, 1);
    EXPECT_EQ(only("setRGBFillColor", lines), Lines{"setRGBFillColor 0 0 0 0"});
    EXPECT_EQ(only("setRGBStrokeColor", lines), Lines{"setRGBStrokeColor 0 0 0 0"});
}

TEST(PointSymbolizer, CastsNoShadowWithoutOne) {
    MzPointSymbolizer point;
    point.setShadow(nullptr);
    point.setShouldShadow(true);
    EXPECT_EQ(only("setShadowWithColor", symbolized(point, 1)), Lines{});
}

// --- derived properties

TEST(PointSymbolizer, KeepsOpacitiesInItsColors) {
    MzPointSymbolizer point;
    point.setStrokeOpacity(0.25);
    point.setFillOpacity(0.75);
    EXPECT_EQ(point.strokeColor()->description(), "0 0 0 0.25");
    EXPECT_EQ(point.fillColor()->description(), "0 1 1 0.75");
    EXPECT_EQ(point.strokeOpacity(), 0.25);
    EXPECT_EQ(point.fillOpacity(), 0.75);
}

TEST(PointSymbolizer, HasNoOpacityWithoutAColor) {
    MzPointSymbolizer point;
    point.setFillColor(nullptr);
    point.setFillOpacity(0.5);
    EXPECT_EQ(point.fillColor(), nullptr);
    EXPECT_EQ(point.fillOpacity(), 0);
}

TEST(PointSymbolizer, AnnouncesColorAndOpacityTogether) {
    MzPointSymbolizer point;
    testing::ObservationRecorder log;
    log.observe(point, {"strokeColor", "strokeOpacity", "fillColor", "fillOpacity"});
    point.setStrokeColor(Color::blackColor());
    point.setStrokeOpacity(0.5);
    point.setFillColor(Color::blackColor());
    point.setFillOpacity(0.5);
    EXPECT_EQ(
        log.lines,
        (Lines{"will strokeColor", "will strokeOpacity", "did strokeOpacity", "did strokeColor",
               "will strokeOpacity", "will strokeColor", "did strokeColor", "did strokeOpacity",
               "will fillColor", "will fillOpacity", "did fillOpacity", "did fillColor",
               "will fillOpacity", "will fillColor", "did fillColor", "did fillOpacity"}));
}

TEST(PointSymbolizer, AnnouncesAShadowWithItsParts) {
    MzPointSymbolizer point;
    testing::ObservationRecorder log;
    log.observe(point, {"shadow", "shadowOffsetWidth", "shadowOffsetHeight", "shadowBlurRadius",
                        "shadowColor"});
    point.setShadow(std::make_shared<Shadow>());
    EXPECT_EQ(log.lines, (Lines{"will shadow", "will shadowOffsetWidth", "will shadowOffsetHeight",
                                "will shadowBlurRadius", "will shadowColor", "did shadowColor",
                                "did shadowBlurRadius", "did shadowOffsetHeight",
                                "did shadowOffsetWidth", "did shadow"}));
}

TEST(PointSymbolizer, AnnouncesThePartsOfAShadowWithIt) {
    MzPointSymbolizer point;
    testing::ObservationRecorder log;
    log.observe(point, {"shadow", "shadowOffsetWidth", "shadowOffsetHeight", "shadowBlurRadius",
                        "shadowColor"});
    const auto expectAnnounced = [&](const std::string& key) {
        EXPECT_EQ(log.lines, (Lines{"will " + key, "will shadow", "did shadow", "did " + key}));
        log.lines.clear();
    };
    point.setShadowOffsetWidth(7);
    expectAnnounced("shadowOffsetWidth");
    point.setShadowOffsetHeight(8);
    expectAnnounced("shadowOffsetHeight");
    point.setShadowBlurRadius(9);
    expectAnnounced("shadowBlurRadius");
    point.setShadowColor(Color::cyanColor());
    expectAnnounced("shadowColor");
    EXPECT_EQ(point.shadow()->offset.width, 7);
    EXPECT_EQ(point.shadow()->offset.height, 8);
    EXPECT_EQ(point.shadowOffsetWidth(), 7);
    EXPECT_EQ(point.shadowOffsetHeight(), 8);
    EXPECT_EQ(point.shadowBlurRadius(), 9);
    EXPECT_EQ(point.shadowColor().get(), point.shadow()->color.get());
}

TEST(PointSymbolizer, KeepsACopyOfItsShadow) {
    MzPointSymbolizer point;
    const auto shadow = std::make_shared<Shadow>();
    point.setShadow(shadow);
    shadow->offset.width = 99;
    EXPECT_EQ(point.shadowOffsetWidth(), 0);
    point.setShadowOffsetWidth(5);
    EXPECT_EQ(shadow->offset.width, 99);
}

TEST(PointSymbolizer, HasNoPartsOfAShadowThatIsNotThere) {
    MzPointSymbolizer point;
    point.setShadow(nullptr);
    point.setShadowOffsetWidth(5);
    EXPECT_EQ(point.shadow(), nullptr);
    EXPECT_EQ(point.shadowOffsetWidth(), 0);
    EXPECT_EQ(point.shadowOffsetHeight(), 0);
    EXPECT_EQ(point.shadowBlurRadius(), 0);
    EXPECT_EQ(point.shadowColor(), nullptr);
}

// --- changes

TEST(PointSymbolizer, ListsWhatAffectsItsDrawing) {
    EXPECT_EQ(
        MzPointSymbolizer().drawPropertyKeyPaths(),
        (Lines{"shouldStroke", "shouldFill", "strokeColor", "fillColor", "strokeWidth", "lineJoin",
               "lineCap", "lineDashOffset", "lineDashCount", "isDashed", "symbolType",
               "symbolOpacity", "symbolRotation", "symbolSize", "shouldShadow", "shadow"}));
}

TEST(PointSymbolizer, DropsItsLayerOnAnyDrawPropertyChange) {
    using Change = std::function<void(MzPointSymbolizer&)>;
    const std::vector<Change> changes{[](auto& p) { p.setShouldStroke(true); },
                                      [](auto& p) { p.setShouldFill(true); },
                                      [](auto& p) { p.setStrokeColor(nullptr); },
                                      [](auto& p) { p.setStrokeOpacity(0.5); },
                                      [](auto& p) { p.setFillColor(nullptr); },
                                      [](auto& p) { p.setFillOpacity(0.5); },
                                      [](auto& p) { p.setStrokeWidth(1); },
                                      [](auto& p) { p.setLineJoin(0); },
                                      [](auto& p) { p.setLineCap(0); },
                                      [](auto& p) { p.setLineDashOffset(1); },
                                      [](auto& p) { p.setLineDashCount(1); },
                                      [](auto& p) { p.setLineDash(kPattern.data(), 4); },
                                      [](auto& p) { p.setIsDashed(true); },
                                      [](auto& p) { p.setSymbolType(2); },
                                      [](auto& p) { p.setSymbolOpacity(0.5F); },
                                      [](auto& p) { p.setSymbolRotation(45); },
                                      [](auto& p) { p.setSymbolSize(9); },
                                      [](auto& p) { p.setShouldShadow(true); },
                                      [](auto& p) { p.setShadow(nullptr); },
                                      [](auto& p) { p.setShadowOffsetWidth(4); },
                                      [](auto& p) { p.setShadowColor(nullptr); }};
    platform::RecordingPort port;
    for (std::size_t i = 0; i < changes.size(); ++i) {
        const auto decoded = MzPointSymbolizer::initWithCoder(testing::KeyedStore());
        MzPointSymbolizer fresh;
        for (MzPointSymbolizer* point : {decoded.get(), &fresh}) {
            point->setTheLayer(port.createLayer({9, 9}));
            ASSERT_NE(point->theLayer(), nullptr);
            changes[i](*point);
            EXPECT_EQ(point->theLayer(), nullptr) << "change " << i;
        }
    }
}

TEST(PointSymbolizer, KeepsItsLayerWhenThePatternIsTakenAway) {
    MzPointSymbolizer point;
    platform::RecordingPort port;
    point.setLineDash(kPattern.data(), 4);
    point.setTheLayer(port.createLayer({9, 9}));
    point.setLineDash(nullptr, 0);
    EXPECT_NE(point.theLayer(), nullptr);
}

TEST(PointSymbolizer, AnnouncesThatItsDrawingChangedAroundDroppingTheLayer) {
    class LayerWatcher : public platform::Observer {
      public:
        bool lastSeen = true;
        int announcements = 0;
        void observeValueForKey(const std::string&, platform::Observable* object,
                                const platform::Change&, std::int64_t) override {
            lastSeen = dynamic_cast<MzPointSymbolizer*>(object)->theLayer() != nullptr;
            ++announcements;
        }
    };
    MzPointSymbolizer point;
    platform::RecordingPort port;
    point.setTheLayer(port.createLayer({9, 9}));
    LayerWatcher watcher;
    point.addObserver(&watcher, MzDrawPropertyKey, 0);
    point.setSymbolSize(5);
    EXPECT_EQ(watcher.announcements, 2) << "once for the size, once for the layer";
    EXPECT_FALSE(watcher.lastSeen);
}

// --- comparison

TEST(PointSymbolizer, IsEqualWhenOnlyShadowOrDashEntriesDiffer) {
    const auto point = unusual();
    const auto other = point->copy();
    EXPECT_FALSE(other->shouldShadow());
    const std::array<double, 4> otherPattern{9, 9, 9, 9};
    other->setLineDash(otherPattern.data(), 4);
    EXPECT_TRUE(point->isEqualToPointSymbolizer(other.get()));
    EXPECT_TRUE(point->isEqualToSymbolizer(other.get()));
}

TEST(PointSymbolizer, IsUnequalInAnythingElse) {
    const auto point = unusual();
    const auto differs = [&](auto change) {
        const auto other = point->copy();
        change(*other);
        return !point->isEqualToPointSymbolizer(other.get());
    };
    EXPECT_FALSE(differs([](auto&) {}));
    EXPECT_TRUE(differs([](auto& p) { p.setShouldStroke(false); }));
    EXPECT_TRUE(differs([](auto& p) { p.setShouldFill(true); }));
    EXPECT_TRUE(differs([](auto& p) { p.setStrokeWidth(4); }));
    EXPECT_TRUE(differs([](auto& p) { p.setIsDashed(false); }));
    EXPECT_TRUE(differs([](auto& p) { p.setSymbolType(1); }));
    EXPECT_TRUE(differs([](auto& p) { p.setSymbolOpacity(1); }));
    EXPECT_TRUE(differs([](auto& p) { p.setSymbolRotation(0); }));
    EXPECT_TRUE(differs([](auto& p) { p.setSymbolSize(8); }));
    EXPECT_TRUE(differs([](auto& p) { p.setStrokeOpacity(0.2); }));
    EXPECT_TRUE(differs([](auto& p) { p.setFillOpacity(0.2); }));
    EXPECT_TRUE(differs([](auto& p) { p.setStrokeColor(Color::cyanColor()); }));
    EXPECT_TRUE(differs([](auto& p) { p.setFillColor(Color::cyanColor()); }));
    EXPECT_TRUE(differs([](auto& p) { p.setFillColor(nullptr); }));
    EXPECT_FALSE(point->isEqualToPointSymbolizer(nullptr));
}

// --- copies

TEST(PointSymbolizer, CopiesAllButShadowAndLayer) {
    const auto point = unusual();
    platform::RecordingPort port;
    point->setTheLayer(port.createLayer({9, 9}));
    const auto copy = point->copy();
    EXPECT_TRUE(copy->isEqualToPointSymbolizer(point.get()));
    EXPECT_EQ(copy->strokeOpacity(), 0.1);
    EXPECT_EQ(copy->lineDash().size(), 4U);
    EXPECT_FALSE(copy->shouldShadow());
    EXPECT_EQ(copy->shadowOffsetWidth(), 1.5);
    EXPECT_EQ(copy->shadowOffsetHeight(), 1.5);
    EXPECT_EQ(copy->shadowBlurRadius(), 1);
    EXPECT_EQ(copy->theLayer(), nullptr);
}

TEST(PointSymbolizer, CopiesItsDashCountAlsoWithoutAPattern) {
    const auto point = unusual();
    point->setLineDash(nullptr, 0);
    EXPECT_EQ(point->copy()->lineDashCount(), 4U);
}

// --- archives

TEST(PointSymbolizer, WritesAndReadsItsKeysInOrder) {
    const auto point = unusual();
    testing::KeyedStore store;
    point->encodeWithCoder(store);
    const Lines keys{"shouldStroke",  "shouldFill",     "strokeColor",   "fillColor",
                     "strokeWidth",   "lineJoin",       "lineCap",       "lineDashOffset",
                     "lineDashCount", "isDashed",       "lineDash",      "symbolType",
                     "symbolSize",    "symbolRotation", "symbolOpacity", "shouldShadow",
                     "shadow"};
    const Lines types{"bool", "bool",  "object", "object", "float", "int",   "int",  "float", "int",
                      "bool", "bytes", "int",    "float",  "float", "float", "bool", "object"};
    Lines layout;
    for (std::size_t i = 0; i < keys.size(); ++i) layout.push_back(types[i] + " " + keys[i]);
    EXPECT_EQ(store.layout(), layout);
    EXPECT_EQ(point->archiveClassName(), "MzPointSymbolizer");
    const auto decoded = MzPointSymbolizer::initWithCoder(store);
    EXPECT_EQ(store.asked(), keys);
    EXPECT_TRUE(decoded->isEqualToPointSymbolizer(point.get()));
    EXPECT_EQ(decoded->lineDash().size(), 4U);
    EXPECT_TRUE(decoded->shouldShadow());
    EXPECT_EQ(decoded->shadowOffsetWidth(), -4);
    EXPECT_EQ(decoded->shadowBlurRadius(), 9);
}

TEST(PointSymbolizer, DecodesAnEmptyArchiveToZeros) {
    const auto point = MzPointSymbolizer::initWithCoder(testing::KeyedStore());
    EXPECT_FALSE(point->shouldStroke());
    EXPECT_FALSE(point->shouldFill());
    EXPECT_EQ(point->strokeColor(), nullptr);
    EXPECT_EQ(point->fillColor(), nullptr);
    EXPECT_EQ(point->strokeWidth(), 0);
    EXPECT_EQ(point->symbolType(), 0);
    EXPECT_EQ(point->symbolSize(), 0);
    EXPECT_EQ(point->symbolOpacity(), 0);
    EXPECT_EQ(point->shadow(), nullptr);
}

// --- ports that cannot do everything

class PortlessLayer : public platform::Layer {
  public:
    MzSize size() const override { return {9, 9}; }
    platform::GraphicsPort* port() override { return nullptr; }
};

class PortlessLayersPort : public testing::NullPort {
  public:
    int layers = 0;
    int stamps = 0;
    std::shared_ptr<platform::Layer> createLayer(MzSize) override {
        ++layers;
        return std::make_shared<PortlessLayer>();
    }
    void drawLayerAtPoint(const platform::Layer* layer, MzPoint) override {
        stamps += layer != nullptr ? 1 : 0;
    }
};

TEST(PointSymbolizer, DrawsOnPortsWithoutLayers) {
    TestDrawContext context;
    MzPointSymbolizer point;
    testing::NullPort none;
    testing::drawInto(none, point, testing::multiPoint({{1, 2}, {3, 4}}), context, true);
    EXPECT_EQ(point.theLayer(), nullptr);
    PortlessLayersPort portless;
    testing::drawInto(portless, point, testing::multiPoint({{1, 2}, {3, 4}}), context);
    testing::drawInto(portless, point, testing::multiPoint({{1, 2}}), context);
    EXPECT_NE(point.theLayer(), nullptr);
    EXPECT_EQ(portless.layers, 1);
    EXPECT_EQ(portless.stamps, 3);
}

}  // namespace
}  // namespace mezalith
