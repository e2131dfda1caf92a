// SPDX-License-Identifier: MIT
#include "host/halves.hpp"

#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/style/style.hpp>

#include <cstdint>
#include <utility>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

using Features = std::vector<std::shared_ptr<Feature>>;

std::shared_ptr<MzGeometry> polygon(std::vector<MzPoint> ring) {
    MzLinearRing record{static_cast<std::uint32_t>(ring.size()), ring.data()};
    return MzPolygonGeometry::initWithPolygon({1, &record});
}

/// A box, its corners from the south-west on.
std::shared_ptr<MzGeometry> box(double west, double south, double east, double north) {
    return polygon({{west, south}, {east, south}, {east, north}, {west, north}, {west, south}});
}

std::shared_ptr<Feature> feature(std::int64_t id, std::shared_ptr<MzGeometry> geometry,
                                 const char* name = "Land", Form form = Form::Area) {
    FeatureRecord record{id, "land", {{"name", std::string(name)}}};
    return std::make_shared<Feature>(std::make_shared<const FeatureRecord>(std::move(record)),
                                     Part{form, std::move(geometry)});
}

std::vector<std::int64_t> idsOf(const Features& features) {
    std::vector<std::int64_t> ids;
    for (const auto& feature : features) ids.push_back(feature->record()->id);
    return ids;
}

std::uint32_t polygonsIn(const Feature& feature) {
    const auto* polygons = dynamic_cast<const MzMultiPolygonGeometry*>(feature.geometry().get());
    return polygons != nullptr ? polygons->multiPolygonGeometry()->count : 0;
}

TEST(JoinHalves, MakesOneFeatureOfTwoThatMeetAtTheEdge) {
    Features features{feature(1, box(0, 0, 1, 1)), feature(2, box(-180, 60, -170, 70)),
                      feature(3, box(5, 5, 6, 6)), feature(4, box(170, 62, 180, 72))};
    joinHalves(features);
    EXPECT_EQ(idsOf(features), (std::vector<std::int64_t>{1, 2, 3}));
    EXPECT_EQ(polygonsIn(*features[0]), 0u);
    ASSERT_EQ(polygonsIn(*features[1]), 2u);
    const auto* joined = dynamic_cast<const MzMultiPolygonGeometry*>(features[1]->geometry().get());
    const auto polygons = polygonsOf(joined->multiPolygonGeometry());
    EXPECT_EQ(polygons[0].rings[0].points[1].x, -170);
    EXPECT_EQ(polygons[1].rings[0].points[0].x, 170);
}

TEST(JoinHalves, JoinsAllThatHangTogether) {
    Features features{feature(1, box(170, 0, 180, 10)), feature(2, box(-180, 8, -170, 20)),
                      feature(3, box(175, 15, 180, 30)), feature(4, box(-180, 40, -170, 50))};
    joinHalves(features);
    EXPECT_EQ(idsOf(features), (std::vector<std::int64_t>{1, 4}));
    EXPECT_EQ(polygonsIn(*features[0]), 3u);
}

TEST(JoinHalves, LeavesWhatOnlyTouchesInAPoint) {
    Features features{feature(1, box(170, 0, 180, 10)), feature(2, box(-180, 10, -170, 20))};
    joinHalves(features);
    EXPECT_EQ(features.size(), 2u);
    features = {feature(1, polygon({{170, 0}, {180, 5}, {170, 10}, {170, 0}})),
                feature(2, box(-180, 0, -170, 20))};
    joinHalves(features);
    EXPECT_EQ(features.size(), 2u);
}

TEST(JoinHalves, LeavesNeighboursOnOneSideOfTheEdge) {
    Features features{feature(1, box(170, 0, 180, 10)), feature(2, box(175, 0, 180, 10))};
    joinHalves(features);
    EXPECT_EQ(features.size(), 2u);
}

TEST(JoinHalves, LeavesWhatHasABorderThere) {
    Features features{feature(1, box(170, 0, 180, 10), "Fiji"),
                      feature(2, box(-180, 0, -170, 10), "Tonga")};
    joinHalves(features);
    EXPECT_EQ(features.size(), 2u);
}

TEST(JoinHalves, LeavesWhatIsDrawnInAnotherStyle) {
    Features features{feature(1, box(170, 0, 180, 10)), feature(2, box(-180, 0, -170, 10))};
    features[0]->setStyle(std::make_shared<MzStyle>());
    joinHalves(features);
    EXPECT_EQ(features.size(), 2u);
    features[1]->setStyle(features[0]->style());
    joinHalves(features);
    ASSERT_EQ(features.size(), 1u);
    EXPECT_NE(features[0]->style(), nullptr);
}

TEST(JoinHalves, LeavesLinesAlongTheEdge) {
    std::vector<MzPoint> east{{180, 0}, {180, 10}}, west{{-180, 0}, {-180, 10}};
    const auto line = [](std::vector<MzPoint>& points) {
        return MzMultiPointGeometry::initWithMultiPoint({2, points.data()});
    };
    Features features{feature(1, line(east), "Line", Form::Line),
                      feature(2, line(west), "Line", Form::Line)};
    joinHalves(features);
    EXPECT_EQ(features.size(), 2u);
}

TEST(JoinHalves, TakesNoFeatures) {
    Features features;
    joinHalves(features);
    EXPECT_TRUE(features.empty());
}

}  // namespace
}  // namespace mezalith::host
