// SPDX-License-Identifier: MIT
#include <mezalith/projection/web_mercator_projection.hpp>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

constexpr unsigned kSeed = 20261121;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kHalf = 20037508.342789244;  // metres

bool sameBits(MzPoint a, MzPoint b) {
    return std::bit_cast<std::array<std::uint64_t, 2>>(a) ==
           std::bit_cast<std::array<std::uint64_t, 2>>(b);
}

TEST(WebMercatorProjection, DescribesItself) {
    const MzWebMercatorProjection mercator;
    EXPECT_EQ(mercator.srid(), 3857);
    EXPECT_EQ(mercator.name(), "Web Mercator");
    EXPECT_TRUE(mercator.isEquitorialCylindrical());
    EXPECT_TRUE(mercator.wrapsHorizontally());
    EXPECT_FALSE(mercator.isUTM());
    EXPECT_EQ(mercator.bounds().origin.x, -kHalf);
    EXPECT_EQ(mercator.bounds().size.height, 2 * kHalf);
    EXPECT_EQ(mercator.copy()->srid(), 3857);
    EXPECT_EQ(mercator.copy()->projectedCoordinateForLongitudeLatitude({180, 0}).x, kHalf);
}

TEST(WebMercatorProjection, IsASquareWithinItsRegion) {
    const MzWebMercatorProjection mercator;
    const MzProjectionRegion region = mercator.region();
    EXPECT_TRUE(region.holds({720, 85.05}));
    EXPECT_FALSE(region.holds({0, 85.06}));
    const MzPoint corner = mercator.projectedCoordinateForLongitudeLatitude({180, region.north});
    EXPECT_NEAR(corner.x, kHalf, 1e-8);
    EXPECT_NEAR(corner.y, kHalf, 1e-6);
}

TEST(WebMercatorProjection, ComesBackToWhereItWas) {
    const MzWebMercatorProjection mercator;
    std::mt19937_64 random{kSeed};
    std::uniform_real_distribution<double> longitude{-540, 540}, latitude{-89, 89};
    for (int i = 0; i < 20'000; ++i) {
        const MzPoint place{longitude(random), latitude(random)};
        const MzPoint back = mercator.longitudeLatitudeForProjectedCoordinate(
            mercator.projectedCoordinateForLongitudeLatitude(place));
        ASSERT_NEAR(back.x, place.x, 2e-13) << "seed " << kSeed;
        ASSERT_NEAR(back.y, place.y, 1e-13) << "seed " << kSeed;
    }
}

TEST(WebMercatorProjection, GoesOnBeyondTheAntimeridian) {
    const MzWebMercatorProjection mercator;
    EXPECT_NEAR(mercator.projectedCoordinateForLongitudeLatitude({190, 0}).x, kHalf * 190 / 180,
                1e-8);
    EXPECT_NEAR(mercator.longitudeLatitudeForProjectedCoordinate({kHalf * 2, 0}).x, 360, 1e-12);
}

TEST(WebMercatorProjection, HasThePolesAtInfinityAndNothingBeyond) {
    const MzWebMercatorProjection mercator;
    EXPECT_EQ(mercator.projectedCoordinateForLongitudeLatitude({0, 90}).y, kInfinity);
    EXPECT_EQ(mercator.projectedCoordinateForLongitudeLatitude({0, -90}).y, -kInfinity);
    EXPECT_TRUE(std::isnan(mercator.projectedCoordinateForLongitudeLatitude({0, 90.001}).y));
    EXPECT_TRUE(std::isnan(mercator.projectedCoordinateForLongitudeLatitude({0, kNaN}).y));
    EXPECT_TRUE(std::isnan(mercator.projectedCoordinateForLongitudeLatitude({kNaN, 0}).x));
    EXPECT_EQ(mercator.longitudeLatitudeForProjectedCoordinate({0, kInfinity}).y, 90);
    EXPECT_EQ(mercator.longitudeLatitudeForProjectedCoordinate({0, -1e300}).y, -90);
}

TEST(WebMercatorProjection, MeasuresTheParallel) {
    const MzWebMercatorProjection mercator;
    const double equator = mercator.metersPerProjectedUnitForLongitudeLatitude({0, 0});
    EXPECT_NEAR(equator, 6327000.0 / 6378137.0, 1e-9);
    EXPECT_NEAR(mercator.metersPerProjectedUnitForLongitudeLatitude({70, 60}), equator / 2, 1e-9);
}

TEST(WebMercatorProjection, ProjectsBatchesAsPointByPoint) {
    const MzWebMercatorProjection mercator;
    const std::vector<MzPoint> places{{15, -30}, {200, 80},    {kNaN, 1},
                                      {1, 90},   {-0.0, -0.0}, {1e300, -1e300}};
    std::vector<MzPoint> plane(places.size()), back(places.size());
    mercator.projectCoordinates(places, plane);
    mercator.unprojectCoordinates(places, back);
    for (std::size_t i = 0; i < places.size(); ++i) {
        const MzPoint p = places[i];
        EXPECT_TRUE(sameBits(plane[i], mercator.projectedCoordinateForLongitudeLatitude(p)));
        EXPECT_TRUE(sameBits(back[i], mercator.longitudeLatitudeForProjectedCoordinate(p)));
    }
    std::vector<MzPoint> fewer(1, MzPoint{-7, -7});
    mercator.projectCoordinates(places, fewer);
    EXPECT_NE(fewer[0].x, -7);
}

}  // namespace
}  // namespace mezalith
