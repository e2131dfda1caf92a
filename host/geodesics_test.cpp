// SPDX-License-Identifier: MIT
#include "host/geodesics.hpp"

#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/projection/geodesic_line.hpp>

#include <array>
#include <span>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

constexpr MzPoint kAuckland{174.76, -36.85}, kSantiago{-70.65, -33.45};

MapView viewOf(BoundingBox area) {
    return MapView({.projection = MzMapProjection::mapProjectionWithPlateCarree(), .area = area});
}

std::span<MzPoint> pointsOfFeature(const Feature& feature) {
    const auto* line = dynamic_cast<const MzMultiPointGeometry*>(feature.geometry().get());
    return pointsOf(line->multiPointGeometry());
}

TEST(GeodesicLayer, HoldsALineForEachPair) {
    const std::array<Ends, 2> lines{{{kAuckland, kSantiago}, {{0, 0}, {10, 10}}}};
    const Layer layer = geodesicLayer(lines, viewOf({-180, -90, 180, 90}));
    EXPECT_EQ(layer.name, "geodesic");
    ASSERT_EQ(layer.features.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(layer.features[i]->record()->id, static_cast<std::int64_t>(i) + 1);
        EXPECT_EQ(layer.features[i]->form(), Form::Line);
    }
    EXPECT_EQ(pointsOfFeature(*layer.features[0]).back().x, kSantiago.x + 360);
}

TEST(GeodesicLayer, IsFinerTheCloserTheView) {
    const std::array<Ends, 1> line{{{kAuckland, kSantiago}}};
    const double length = MzGeodesicDistance(kAuckland, kSantiago);
    const auto spacing = [&](BoundingBox area) {
        const Layer layer = geodesicLayer(line, viewOf(area));
        return length / static_cast<double>(pointsOfFeature(*layer.features[0]).size() - 1);
    };
    EXPECT_NEAR(spacing({-180, -90, 180, 90}), 50'000, 500);
    EXPECT_NEAR(spacing({-10, -5, 10, 5}), 7360, 10);
    EXPECT_NEAR(spacing({0, 0, 0.01, 0.01}), 1000, 1);
}

TEST(GeodesicLayer, PartsALineOverThePole) {
    const std::array<Ends, 1> line{{{{10, 60}, {-170, 60}}}};
    const Layer layer = geodesicLayer(line, viewOf({-180, -90, 180, 90}));
    ASSERT_EQ(layer.features.size(), 2u);
    EXPECT_EQ(layer.features[0]->record(), layer.features[1]->record());
}

}  // namespace
}  // namespace mezalith::host
