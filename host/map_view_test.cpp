// SPDX-License-Identifier: MIT
#include "host/map_view.hpp"

#include "host/data_source.hpp"
#include "host/failure.hpp"
#include "host/halves.hpp"
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/recording_port.hpp>
#include <mezalith/style/bubble_symbolizer.hpp>
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>
#include <mezalith/style/style.hpp>

#include <algorithm>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

using Points = std::vector<MzPoint>;

const auto kDegrees = MzMapProjection::mapProjectionWithPlateCarree();

ViewFrame worldFrame() {
    return {.projection = kDegrees, .area = {-180, -90, 180, 90}, .size = {1200, 600}};
}

template <typename Symbolizer>
std::shared_ptr<MzStyle> styleOf() {
    auto style = std::make_shared<MzStyle>();
    const auto rule = std::make_shared<MzRule>();
    rule->addSymbolizer(std::make_shared<Symbolizer>());
    style->addRule(rule);
    return style;
}

Feature polyline(Points points) {
    Feature feature(std::make_shared<FeatureRecord>(),
                    {Form::Line, MzMultiPointGeometry::initWithMultiPoint(
                                     {static_cast<std::uint32_t>(points.size()), points.data()})});
    feature.setStyle(styleOf<MzLineSymbolizer>());
    return feature;
}

Feature polygon(Points ring) {
    MzLinearRing record{static_cast<std::uint32_t>(ring.size()), ring.data()};
    Feature feature(std::make_shared<FeatureRecord>(),
                    {Form::Area, MzPolygonGeometry::initWithPolygon({1, &record})});
    feature.setStyle(styleOf<MzPolygonSymbolizer>());
    return feature;
}

std::vector<std::string> drawn(const ViewFrame& frame, const Feature& feature) {
    MapView view(frame);
    platform::RecordingPort port;
    const platform::GraphicsContext context(&port);
    view.draw(feature);
    std::vector<std::string> lines = port.lines();
    EXPECT_EQ(lines.front(), "saveState");
    EXPECT_EQ(lines.back(), "restoreState");
    return {lines.begin() + 1, lines.end() - 1};
}

TEST(MapView, ShowsTheWorldFromEdgeToEdge) {
    const MapView view(worldFrame());
    EXPECT_TRUE(MzEqualRects(view.projectedBounds(), {{-180, -90}, {360, 180}}));
    EXPECT_EQ(view.projectedUnitsPerPixel(), 0.3);
    const auto transform = view.projectedToPixelTransform();
    EXPECT_TRUE(MzEqualPoints(transform->transformPoint({-180, -90}), {0, 0}));
    EXPECT_NEAR(transform->transformPoint({180, 90}).x, 1200, 1e-9);
    EXPECT_NEAR(transform->transformPoint({180, 90}).y, 600, 1e-9);
}

TEST(MapView, KeepsProportionsWithTheAreaInTheMiddle) {
    ViewFrame frame = worldFrame();
    frame.size = {1200, 800};
    EXPECT_TRUE(MzEqualRects(MapView(frame).projectedBounds(), {{-180, -120}, {360, 240}}));
    frame.area = {0, 0, 1, 90};
    const MzRect tall = MapView(frame).projectedBounds();
    EXPECT_EQ(tall.size.height, 90);
    EXPECT_EQ(tall.origin.x + tall.size.width / 2, 0.5);
}

TEST(MapView, ScalesByTheStandardisedPixel) {
    const double metres = 6327000.0 * std::numbers::pi / 180 * 0.3;
    EXPECT_NEAR(MapView(worldFrame()).scaleDenominator(), metres / 0.00028, 1);
    const auto zone = MzMapProjection::mapProjectionWithUTMZone(33);
    const MapView view(
        {.projection = zone, .area = {14.99, 59.99, 15.01, 60.01}, .size = {100, 100}});
    EXPECT_NEAR(view.scaleDenominator(), view.projectedUnitsPerPixel() / 0.00028, 1e-6);
}

TEST(MapView, KeepsVerticesAFractionOfABackingPixelApart) {
    ViewFrame frame = worldFrame();
    frame.pixelRatio = 2;
    const MapView view(frame);
    EXPECT_EQ(view.clippingRegion()->minSpacing(), 0.5 / 2 * 0.3);
    EXPECT_TRUE(view.clippingRegion()->exact());
    frame.spacing = 0.25;
    EXPECT_EQ(MapView(frame).clippingRegion()->minSpacing(), 0.25 / 2 * 0.3);
    EXPECT_TRUE(MzEqualRects(view.clippingRegion()->clippingRect(),
                             {{-180 - 15, -90 - 15}, {360 + 30, 180 + 30}}));
}

TEST(MapView, ClipsFartherOutWhereSymbolsAreScaled) {
    ViewFrame frame = worldFrame();
    frame.scaleFactor = 3;
    EXPECT_TRUE(MzEqualRects(MapView(frame).clippingRegion()->clippingRect(),
                             {{-180 - 45, -90 - 45}, {360 + 90, 180 + 90}}));
    frame.scaleFactor = 0.5;
    EXPECT_TRUE(MzEqualRects(MapView(frame).clippingRegion()->clippingRect(),
                             {{-180 - 15, -90 - 15}, {360 + 30, 180 + 30}}));
}

TEST(MapView, ClipsFartherOutWhereWhatIsDrawnReachesFarther) {
    ViewFrame frame{.projection = kDegrees, .area = {0, 0, 40, 20}, .size = {400, 200}};
    frame.reach = 20;
    EXPECT_TRUE(
        MzEqualRects(MapView(frame).clippingRegion()->clippingRect(), {{-5, -5}, {50, 30}}));
    frame.reach = 90;
    EXPECT_TRUE(
        MzEqualRects(MapView(frame).clippingRegion()->clippingRect(), {{-9, -9}, {58, 38}}));
}

TEST(MapView, DrawsWhatReachesIntoTheViewAndNothingFarther) {
    ViewFrame frame{.projection = kDegrees, .area = {0, 0, 40, 20}, .size = {400, 200}};
    const auto isDrawn = [&frame](double x) {
        const Feature place(std::make_shared<FeatureRecord>(),
                            {Form::Points, MzPointGeometry::initWithPoint({x, 10})});
        return !MapView(frame).projectedBoxes(place).empty();
    };
    EXPECT_TRUE(isDrawn(-4.9));
    EXPECT_FALSE(isDrawn(-5.5));
    frame.reach = 20;
    EXPECT_TRUE(isDrawn(-2));
    EXPECT_FALSE(isDrawn(-2.5));
    frame.reach = 90;
    EXPECT_TRUE(isDrawn(-9));
    frame.reach = 0;
    EXPECT_TRUE(isDrawn(0));
    EXPECT_FALSE(isDrawn(-0.5));
}

TEST(MapView, ProjectsTheAreasOutline) {
    const auto zone = MzMapProjection::mapProjectionWithUTMZone(33);
    const BoundingBox extent = projectedArea(*zone, {4, 58, 26, 71});
    // Parallels rise towards the sides: the lowest point is on the meridian, the highest aside.
    EXPECT_EQ(extent.minY, zone->projectedCoordinateForLongitudeLatitude({15, 58}).y);
    EXPECT_EQ(extent.maxY, zone->projectedCoordinateForLongitudeLatitude({4, 71}).y);
    EXPECT_EQ(extent.minX, zone->projectedCoordinateForLongitudeLatitude({4, 58}).x);
    EXPECT_TRUE(projectedArea(*zone, {100, 0, 110, 10}).isEmpty());
}

TEST(MapView, ShowsASinglePlaceClosely) {
    const MapView view({.projection = kDegrees, .area = {10, 60, 10, 60}, .size = {100, 50}});
    EXPECT_EQ(view.projectedUnitsPerPixel(), kDegrees->maximumResolution());
}

TEST(MapView, RefusesWhatCannotBeShown) {
    const auto zone = MzMapProjection::mapProjectionWithUTMZone(33);
    EXPECT_THROW(MapView({.projection = zone, .area = {150, 0, 160, 10}}), Failure);
    EXPECT_THROW(MapView({.projection = kDegrees, .area = {}}), Failure);
    EXPECT_THROW(MapView({.projection = kDegrees, .area = {-1e308, 0, 1e308, 10}}), Failure);
}

TEST(MapView, DrawsPolygonsByTheBoundsItFillsIn) {
    const auto lines = drawn(worldFrame(), polygon({{0, 0}, {30, 0}, {30, 30}, {0, 0}}));
    EXPECT_NE(std::ranges::find(lines, "moveToPoint 600 300"), lines.end());
    EXPECT_NE(std::ranges::find(lines, "drawPath 2"), lines.end());
}

TEST(MapView, DrawsNothingOfWhatIsElsewhere) {
    ViewFrame frame = worldFrame();
    frame.area = {0, 0, 36, 18};
    EXPECT_TRUE(drawn(frame, polygon({{60, 50}, {70, 50}, {70, 60}, {60, 50}})).empty());
    EXPECT_TRUE(drawn(frame, polyline({{60, 50}, {70, 50}})).empty());
}

TEST(MapView, DrawsALineThatComesBackAlongTheBorderOutOfSight) {
    ViewFrame frame = worldFrame();
    frame.area = {0, 0, 36, 18};  // 33.3 points a degree
    auto lines = drawn(frame, polyline({{30, 9}, {60, 9}, {60, 12}, {30, 12}}));
    std::erase_if(
        lines, [](const std::string& line) { return line.find("ToPoint ") == std::string::npos; });
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[1], "addLineToPoint 1250 300");
    EXPECT_TRUE(lines[2].starts_with("addLineToPoint 1250 "));
}

TEST(MapView, FillsWhatPassesThroughFromSideToSide) {
    ViewFrame frame = worldFrame();
    frame.area = {0, 0, 36, 18};
    auto lines = drawn(frame, polygon({{-50, 3}, {80, 3}, {80, 9}, {-50, 9}, {-50, 3}}));
    std::erase_if(
        lines, [](const std::string& line) { return line.find("ToPoint ") == std::string::npos; });
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_TRUE(lines[0].starts_with("moveToPoint -50 "));
    EXPECT_TRUE(lines[1].starts_with("addLineToPoint 1250 "));
    EXPECT_TRUE(lines[2].starts_with("addLineToPoint 1250 "));
    EXPECT_TRUE(lines[3].starts_with("addLineToPoint -50 "));
}

Feature place(MzPoint point) {
    Feature feature(std::make_shared<FeatureRecord>(),
                    {Form::Points, MzPointGeometry::initWithPoint(point)});
    feature.setStyle(styleOf<MzPointSymbolizer>());
    return feature;
}

/// Square degrees within a ring.
double areaOf(const MzLinearRing& ring) {
    const auto points = pointsOf(&ring);
    double sum = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        sum += points[i - 1].x * points[i].y - points[i].x * points[i - 1].y;
    }
    return std::abs(sum) / 2;
}

/// Square degrees within an outline and not within its holes.
double areaOf(const MzPolygon& polygon) {
    const auto rings = ringsOf(&polygon);
    double area = 2 * areaOf(rings.front());
    for (const MzLinearRing& ring : rings) area -= areaOf(ring);
    return area;
}

double areaOf(const Layer& layer) {
    double area = 0;
    for (const auto& feature : layer.features) {
        const auto geometry = feature->geometry();
        if (auto* single = dynamic_cast<MzPolygonGeometry*>(geometry.get())) {
            area += areaOf(*single->polygonGeometry());
        } else if (auto* several = dynamic_cast<MzMultiPolygonGeometry*>(geometry.get())) {
            for (const auto& member : polygonsOf(several->multiPolygonGeometry())) {
                area += areaOf(member);
            }
        }
    }
    return area;
}

/// How much of the frame's picture is painted when the layer is drawn filled.
double paintedShare(const ViewFrame& frame, const Layer& layer) {
    MapView view(frame);
    const auto port = platform::CairoPort::pixelPort(frame.size);
    const platform::GraphicsContext context(port.get());
    for (const auto& feature : layer.features) view.draw(*feature);
    double painted = 0;
    for (int y = 0; y < port->pixelHeight(); ++y) {
        for (const std::uint32_t pixel : port->pixelRow(y)) painted += (pixel >> 24) / 255.0;
    }
    return painted / (frame.size.width * frame.size.height);
}

TEST(MapView, FillsTheLandOfTheWorldAsOftenAsItShowsIt) {
    const auto style = styleOf<MzPolygonSymbolizer>();
    auto& symbolizer =
        static_cast<MzPolygonSymbolizer&>(*style->rules().front()->symbolizers().front());
    symbolizer.setShouldFill(true);
    symbolizer.setShouldStroke(false);
    Layer layer = DataSource(MEZALITH_SOURCE_DIR "/data/map/naturalearth-110m.gpkg:land").read(0);
    const double share = areaOf(layer) / (360 * 180);
    for (const auto& feature : layer.features) feature->setStyle(style);
    joinHalves(layer.features);
    ViewFrame frame = worldFrame();
    EXPECT_NEAR(paintedShare(frame, layer), share, 1e-3);
    frame.area = {-20, -90, 340, 90};
    EXPECT_NEAR(paintedShare(frame, layer), share, 1e-3);
    frame = {.projection = kDegrees, .area = {-540, -90, 540, 90}, .size = {1800, 300}};
    EXPECT_NEAR(paintedShare(frame, layer), share, 1e-3);
}

TEST(MapView, TellsWhatAClickHits) {
    MapView view(worldFrame());
    Feature oslo = place({10.5, 60});  // 3.33 points a degree: at (635, 500)
    const auto hit = view.hit(oslo, {636, 501}, 1);
    ASSERT_TRUE(hit);
    EXPECT_EQ(hit->rule, oslo.style()->rules()[0]);
    EXPECT_EQ(hit->symbolizer, oslo.style()->rules()[0]->symbolizers()[0]);
    EXPECT_FALSE(view.hit(oslo, {660, 500}, 1));
    oslo.style()->rules()[0]->setSelectionFilter(1);
    EXPECT_FALSE(view.hit(oslo, {636, 501}, 1));
    EXPECT_TRUE(view.hit(oslo, {636, 501}, 1, true));
    oslo.setStyle(nullptr);
    EXPECT_FALSE(view.hit(oslo, {636, 501}, 1));
}

TEST(MapView, HitsWhatTheGlobeShowsAgain) {
    ViewFrame frame = worldFrame();
    frame.area = {170, -10, 190, 0};  // 60 points a degree
    MapView view(frame);
    EXPECT_TRUE(view.hit(place({-175, -5}), {900, 300}, 1));
    EXPECT_FALSE(view.hit(place({-165, -5}), {900, 300}, 1));
}

TEST(MapView, HitsLinesAndAreasAsTheyAreDrawn) {
    MapView view(worldFrame());
    Feature line = polyline({{0, 0}, {30, 0}});
    EXPECT_TRUE(view.hit(line, {650, 300.5}, 0.1)) << "a point wide to either side";
    EXPECT_FALSE(view.hit(line, {650, 302}, 0.5));
    EXPECT_TRUE(view.hit(line, {650, 302}, 1.5));
    Feature area = polygon({{0, 0}, {30, 0}, {30, 30}, {0, 0}});
    EXPECT_TRUE(view.hit(area, {650, 300}, 0.1));
    EXPECT_FALSE(view.hit(area, {670, 320}, 0.1)) << "not filled";
}

TEST(MapView, SaysWhereAFeatureIsDrawn) {
    ViewFrame frame = worldFrame();
    frame.area = {170, -10, 190, 0};
    const MapView view(frame);
    const auto boxes = view.projectedBoxes(polyline({{-175, -5}, {-173, -4}}));
    ASSERT_EQ(boxes.size(), 1U);
    EXPECT_NEAR(boxes[0].minX, 185, 1e-9);
    EXPECT_NEAR(boxes[0].maxY, -4, 1e-9);
    EXPECT_TRUE(view.projectedBoxes(polyline({{-165, -5}, {-163, -4}})).empty());
    const BoundingBox around = view.projectedAround({900, 300}, 30);  // 60 points a degree
    EXPECT_NEAR(around.minX, 184.5, 1e-9);
    EXPECT_NEAR(around.maxX, 185.5, 1e-9);
    EXPECT_NEAR(around.minY, -5.5, 1e-9);
}

TEST(MapView, HandsItsScaleFactorOn) {
    ViewFrame frame = worldFrame();
    frame.scaleFactor = 3;
    const auto lines = drawn(frame, polyline({{0, 0}, {30, 0}}));
    EXPECT_NE(std::ranges::find(lines, "setLineWidth 6"), lines.end());
}

/// A place with a callout that is nothing but its bubble.
Feature place(MzPoint point, const std::shared_ptr<MzBubbleSymbolizer>& callout) {
    Feature feature(std::make_shared<FeatureRecord>(),
                    {Form::Points, MzPointGeometry::initWithPoint(point)});
    auto style = std::make_shared<MzStyle>();
    const auto rule = std::make_shared<MzRule>();
    rule->addSymbolizer(callout);
    style->addRule(rule);
    feature.setStyle(style);
    return feature;
}

TEST(MapView, ShowsCalloutsOverEverything) {
    MapView view(worldFrame());
    platform::RecordingPort port;
    const platform::GraphicsContext context(&port);
    view.draw(place({30, 0}, MzBubbleSymbolizer::initWithNib("none", {})));
    EXPECT_EQ(port.lines(), (std::vector<std::string>{"saveState", "restoreState"}));
    view.drawSubviews();
    EXPECT_TRUE(MzEqualRects(view.subviews().frame(), {{0, 0}, {1200, 600}}));
    EXPECT_NE(std::ranges::find(port.lines(), "translate 675 300"), port.lines().end());
}

TEST(MapView, ShowsACalloutWhereTheFeatureIsRatherThanACopyBeyondTheEdge) {
    MapView view(worldFrame());
    platform::RecordingPort port;
    const platform::GraphicsContext context(&port);
    const auto callout = MzBubbleSymbolizer::initWithNib("none", {});
    view.draw(place({-177, 0}, callout));
    EXPECT_EQ(callout->bubbleView()->frame().origin.x, 10 - 25);
    view.draw(place({183, 0}, callout));
    EXPECT_EQ(callout->bubbleView()->frame().origin.x, 1210 - 25);
}

}  // namespace
}  // namespace mezalith::host
