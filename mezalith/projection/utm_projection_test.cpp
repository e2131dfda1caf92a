// SPDX-License-Identifier: MIT
#include <mezalith/projection/utm_projection.hpp>

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Hemisphere = MzUTMProjection::Hemisphere;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

bool sameBits(MzPoint a, MzPoint b) {
    return std::bit_cast<std::array<std::uint64_t, 2>>(a) ==
           std::bit_cast<std::array<std::uint64_t, 2>>(b);
}

// --- zones ----------------------------------------------------------------

TEST(UTMZoneOf, NormalisesLongitudes) {
    EXPECT_EQ(MzUTMZoneOf({-180, 0}), 1u);
    EXPECT_EQ(MzUTMZoneOf({180, 0}), 1u);
    EXPECT_EQ(MzUTMZoneOf({179.999, 0}), 60u);
    EXPECT_EQ(MzUTMZoneOf({-187, 0}), 59u);
    EXPECT_EQ(MzUTMZoneOf({375, 0}), 33u);
    EXPECT_EQ(MzUTMZoneOf({0, 0}), 31u);
    EXPECT_EQ(MzUTMZoneOf({-1e-9, 0}), 30u);
}

TEST(UTMZoneOf, KnowsTheExceptions) {
    EXPECT_EQ(MzUTMZoneOf({3, 56}), 32u);
    EXPECT_EQ(MzUTMZoneOf({2.999, 60}), 31u);
    EXPECT_EQ(MzUTMZoneOf({5.32, 60.39}), 32u);  // Bergen
    EXPECT_EQ(MzUTMZoneOf({5, 55.999}), 31u);
    EXPECT_EQ(MzUTMZoneOf({5, 64}), 31u);
    EXPECT_EQ(MzUTMZoneOf({8.999, 72}), 31u);
    EXPECT_EQ(MzUTMZoneOf({9, 72}), 33u);
    EXPECT_EQ(MzUTMZoneOf({15.63, 78.22}), 33u);  // Longyearbyen
    EXPECT_EQ(MzUTMZoneOf({21, 78}), 35u);
    EXPECT_EQ(MzUTMZoneOf({33, 78}), 37u);
    EXPECT_EQ(MzUTMZoneOf({41.999, 78}), 37u);
    EXPECT_EQ(MzUTMZoneOf({42, 78}), 38u);
    EXPECT_EQ(MzUTMZoneOf({-0.001, 78}), 30u);
    EXPECT_EQ(MzUTMZoneOf({7, 71.999}), 32u);
}

TEST(UTMZoneOf, AnswersNoneWhereThereIsNone) {
    for (const MzPoint p : std::array<MzPoint, 6>{
             {{0, 84}, {0, -80.001}, {kNaN, 0}, {0, kNaN}, {kInfinity, 0}, {0, 90}}}) {
        EXPECT_EQ(MzUTMZoneOf(p), 0u);
        EXPECT_EQ(MzUTMProjection::initWithLongitudeLatitude(p), nullptr);
    }
}

// --- what an object says of itself ------------------------------------------

TEST(UTMProjection, DescribesBothHemispheres) {
    const auto north = MzUTMProjection::initWithZone(33, Hemisphere::North);
    EXPECT_EQ(north->srid(), 32633);
    EXPECT_EQ(north->name(), "UTM Zone 33N");
    EXPECT_TRUE(north->isUTM());
    EXPECT_FALSE(north->isEquitorialCylindrical());
    EXPECT_EQ(north->utmZone(), 33u);
    EXPECT_EQ(north->region().centre.x, 15);
    EXPECT_TRUE(MzEqualRects(north->areaOfUse(), {{12, 0}, {6, 84}}));
    const auto south = MzUTMProjection::initWithZone(19, Hemisphere::South);
    EXPECT_EQ(south->srid(), 32719);
    EXPECT_EQ(south->name(), "UTM Zone 19S");
    EXPECT_TRUE(MzEqualRects(south->areaOfUse(), {{-72, -80}, {6, 80}}));
    EXPECT_EQ(south->metersPerProjectedUnitForLongitudeLatitude({0, 0}), 1.0);
}

TEST(UTMProjection, BoundsHoldTheZone) {
    for (const auto hemisphere : {Hemisphere::North, Hemisphere::South}) {
        const auto zone = MzUTMProjection::initWithZone(33, hemisphere);
        const MzRect area = zone->areaOfUse(), bounds = zone->bounds();
        for (const MzPoint p : std::array<MzPoint, 4>{{{area.origin.x, 0},
                                                       {area.origin.x + 6, 0},
                                                       {15, area.origin.y},
                                                       {15, area.origin.y + area.size.height}}}) {
            const MzPoint plane = zone->projectedCoordinateForLongitudeLatitude(p);
            EXPECT_GE(plane.x, bounds.origin.x - 1);
            EXPECT_LE(plane.x, bounds.origin.x + bounds.size.width + 1);
            EXPECT_GE(plane.y, bounds.origin.y - 2000);
            EXPECT_LE(plane.y, bounds.origin.y + bounds.size.height + 2000);
        }
    }
}

TEST(UTMProjection, ThereAreZones1To60) {
    for (const std::uint32_t zone : {0u, 61u, 4294967295u}) {
        EXPECT_EQ(MzUTMProjection::initWithZone(zone, Hemisphere::North), nullptr);
    }
    EXPECT_NE(MzUTMProjection::initWithZone(1, Hemisphere::South), nullptr);
    EXPECT_NE(MzUTMProjection::initWithZone(60, Hemisphere::North), nullptr);
}

TEST(UTMProjection, IsMadeForAPlace) {
    EXPECT_EQ(MzUTMProjection::initWithLongitudeLatitude({5.32, 60.39})->srid(), 32632);
    EXPECT_EQ(MzUTMProjection::initWithLongitudeLatitude({-70.6, -33.4})->srid(), 32719);
    EXPECT_EQ(MzUTMProjection::initWithLongitudeLatitude({0, 0})->srid(), 32631);
    EXPECT_EQ(MzUTMProjection::initWithLongitudeLatitude({178.4, -18.1})->srid(), 32760);
}

TEST(UTMProjection, CopiesWithItsZone) {
    const auto south = MzUTMProjection::initWithZone(19, Hemisphere::South);
    const auto copy = south->copy();
    EXPECT_TRUE(sameBits(copy->projectedCoordinateForLongitudeLatitude({-70, -33}),
                         south->projectedCoordinateForLongitudeLatitude({-70, -33})));
    EXPECT_EQ(copy->srid(), 32719);
}

// --- points -----------------------------------------------------------------

TEST(UTMProjection, AddsTheFalseOrigin) {
    const auto north = MzUTMProjection::initWithZone(33, Hemisphere::North);
    const auto south = MzUTMProjection::initWithZone(33, Hemisphere::South);
    EXPECT_TRUE(sameBits(north->projectedCoordinateForLongitudeLatitude({15, 0}), {500'000, 0}));
    EXPECT_TRUE(
        sameBits(south->projectedCoordinateForLongitudeLatitude({15, 0}), {500'000, 10'000'000}));
}

TEST(UTMProjection, GoesOnAcrossTheAntimeridian) {
    const auto zone = MzUTMProjection::initWithZone(60, Hemisphere::South);
    const MzPoint west = zone->projectedCoordinateForLongitudeLatitude({179.9, -17});
    const MzPoint east = zone->projectedCoordinateForLongitudeLatitude({-179.9, -17});
    EXPECT_NEAR(east.x - west.x, 21'300, 100);
    const MzPoint turned = zone->projectedCoordinateForLongitudeLatitude({180.1, -17});
    EXPECT_NEAR(east.x, turned.x, 1e-8);
    EXPECT_NEAR(east.y, turned.y, 1e-8);
}

TEST(UTMProjection, ProjectsBatchesAsPointByPoint) {
    const auto zone = MzUTMProjection::initWithZone(33, Hemisphere::South);
    const std::vector<MzPoint> places{{15, -30},   {20, 80},        {kNaN, 1}, {1, kInfinity},
                                      {-0.0, 0.0}, {1e300, -1e300}, {15, 90},  {500'000, 1e7}};
    std::vector<MzPoint> plane(places.size()), back(places.size());
    zone->projectCoordinates(places, plane);
    zone->unprojectCoordinates(places, back);
    for (std::size_t i = 0; i < places.size(); ++i) {
        EXPECT_TRUE(sameBits(plane[i], zone->projectedCoordinateForLongitudeLatitude(places[i])));
        EXPECT_TRUE(sameBits(back[i], zone->longitudeLatitudeForProjectedCoordinate(places[i])));
    }
    EXPECT_TRUE(std::isnan(plane[2].x) && std::isnan(plane[3].y) && std::isnan(plane[5].x));
}

}  // namespace
}  // namespace mezalith
