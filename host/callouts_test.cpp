// SPDX-License-Identifier: MIT
#include "host/callouts.hpp"

#include "host/failure.hpp"
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/platform/predicates/format_predicate.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <algorithm>
#include <array>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

using platform::FormatPredicate;
using platform::InterfaceDocument;
using Points = std::vector<MzPoint>;

std::shared_ptr<MzGeometry> points(Points run) {
    return MzMultiPointGeometry::initWithMultiPoint(
        {static_cast<std::uint32_t>(run.size()), run.data()});
}

Feature city(const std::string& name, MzPoint point) {
    auto record = std::make_shared<FeatureRecord>();
    record->layer = "places";
    record->attributes["name"] = name;
    return {record, {Form::Points, MzPointGeometry::initWithPoint(point)}};
}

MapView world() {
    return MapView({.projection = MzMapProjection::mapProjectionWithPlateCarree(),
                    .area = {-180, -90, 180, 90},
                    .size = {1200, 600}});
}

Callouts callouts(const std::string& condition) {
    return {FormatPredicate::predicateWithFormat(condition), Callouts::defaultCard()};
}

TEST(CalloutPlace, IsThePointOrTheFirstOfSeveral) {
    const auto place = calloutPlace({Form::Points, MzPointGeometry::initWithPoint({1, 2})});
    EXPECT_TRUE(MzEqualPoints(*place, {1, 2}));
    EXPECT_TRUE(MzEqualPoints(*calloutPlace({Form::Points, points({{3, 4}, {5, 6}})}), {3, 4}));
}

TEST(CalloutPlace, IsTheMiddleVertexOfALine) {
    EXPECT_TRUE(
        MzEqualPoints(*calloutPlace({Form::Line, points({{0, 0}, {3, 4}, {9, 9}})}), {3, 4}));
}

TEST(CalloutPlace, IsTheCentroidOfTheLargestArea) {
    Points small{{0, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}};
    Points large{{10, 10}, {14, 10}, {14, 14}, {10, 14}, {10, 10}};
    std::array<MzLinearRing, 2> rings{{{5, small.data()}, {5, large.data()}}};
    const auto polygon = MzPolygonGeometry::initWithPolygon({1, rings.data()});
    EXPECT_TRUE(MzEqualPoints(*calloutPlace({Form::Area, polygon}), {0.5, 0.5}));
    std::array<MzPolygon, 2> polygons{{{1, &rings[0]}, {1, &rings[1]}}};
    const auto both = MzMultiPolygonGeometry::initWithMultiPolygon({2, polygons.data()});
    EXPECT_TRUE(MzEqualPoints(*calloutPlace({Form::Area, both}), {12, 12}));
}

TEST(CalloutPlace, IsNowhereForNothing) {
    EXPECT_FALSE(calloutPlace({Form::Points, points({})}).has_value());
    EXPECT_FALSE(calloutPlace({Form::Area, MzPolygonGeometry::initWithPolygon({0, nullptr})}));
}

TEST(Callouts, PointAtTheFeaturesThatMeetTheCondition) {
    MapView view = world();
    Callouts shown = callouts("name == 'Null Island'");
    shown.show(city("Null Island", {30, 0}), view);
    shown.show(city("Oslo", {10.7, 59.9}), view);
    EXPECT_EQ(shown.count(), 1U);
    ASSERT_EQ(view.subviews().subviews().size(), 1U);
    const platform::View& bubble = *view.subviews().subviews()[0];
    EXPECT_TRUE(MzEqualPoints(bubble.frame().origin, {675, 300}));
    platform::RecordingPort port;
    const platform::GraphicsContext context(&port);
    view.drawSubviews();
    // The bubble, the name and the layer.
    EXPECT_EQ(std::ranges::count(port.lines(), "drawPath 0"), 3);
}

TEST(Callouts, ShowNothingOfFeaturesOutOfSight) {
    MapView view(
        {.projection = MzMapProjection::mapProjectionWithPlateCarree(), .area = {0, 0, 36, 18}});
    Callouts shown = callouts("TRUEPREDICATE");
    shown.show(city("Oslo", {10.7, 59.9}), view);
    EXPECT_EQ(shown.count(), 0U);
    EXPECT_TRUE(view.subviews().subviews().empty());
}

TEST(Callouts, RefuseToHideTheMap) {
    MapView view = world();
    Callouts shown = callouts("TRUEPREDICATE");
    for (std::size_t i = 0; i < Callouts::kMost; ++i) shown.show(city("Oslo", {10, 59}), view);
    EXPECT_EQ(shown.count(), Callouts::kMost);
    EXPECT_THROW(shown.show(city("Oslo", {10, 59}), view), Failure);
}

TEST(Callouts, ShowTheCardThatIsGiven) {
    MapView view = world();
    const auto card = InterfaceDocument::documentWithText(
        R"({"format": "mezalith interface", "version": 1, "content":
            {"column": [{"label": "{name}"}, {"label": "{name}"}, {"label": "{name}"}]}})",
        nullptr);
    Callouts shown(FormatPredicate::predicateWithFormat("TRUEPREDICATE"), card);
    shown.show(city("Oslo", {10, 59}), view);
    const auto& bubble = view.subviews().subviews().at(0);
    EXPECT_EQ(bubble->subviews().at(0)->subviews().size(), 3U);
}

}  // namespace
}  // namespace mezalith::host
