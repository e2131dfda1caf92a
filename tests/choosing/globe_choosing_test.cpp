// SPDX-License-Identifier: MIT
#include <mezalith/projection/geodesic_geometry.hpp>
#include <mezalith/projection/geodesic_line.hpp>
#include <mezalith/projection/great_circle.hpp>
#include <mezalith/projection/transverse_mercator.hpp>
#include <mezalith/projection/utm_projection.hpp>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <span>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

constexpr MzPoint kOslo{10.75, 59.91}, kTokyo{139.69, 35.69};
constexpr MzPoint kAuckland{174.76, -36.85}, kSantiago{-70.65, -33.45};

// --- a great circle to be drawn

double longestStep(std::span<const MzPoint> points) {
    double longest = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        longest = std::max(longest, MzGeodesicDistance(points[i - 1], points[i]));
    }
    return longest;
}

TEST(ChoosingAGreatCircleToBeDrawn, SettledPointsLieUpToThreeResolutionsApart) {
    const double resolution = MzGeodesicDistance(kOslo, kTokyo) / 2.9999;
    const auto settled = MzGeodesicGeometry::initWithStart(kOslo, kTokyo, resolution);
    const auto points = pointsOf(settled->multiPointGeometry());
    EXPECT_EQ(points.size(), 2u);
    EXPECT_NEAR(longestStep(points), 2.9999 * resolution, 1e-6);
    EXPECT_LE(longestStep(MzGeodesicPoints(kOslo, kTokyo, resolution)), resolution + 1e-6);
}

TEST(ChoosingAGreatCircleToBeDrawn, SettledLongitudesFallBackAtTheEnd) {
    const auto geometry = MzGeodesicGeometry::initWithStart(kAuckland, kSantiago, 50e3);
    const auto settled = pointsOf(geometry->multiPointGeometry());
    EXPECT_NEAR(settled[settled.size() - 2].x, 288.75, 0.01);
    EXPECT_EQ(settled.back().x, -70.65);
    const auto unwrapped = MzGeodesicPoints(kAuckland, kSantiago, 50e3);
    EXPECT_NEAR(unwrapped.back().x, 289.35, 1e-9);
}

TEST(ChoosingAGreatCircleToBeDrawn, TheCounterpartPartsTheLineAtTheEdgeOfTheMap) {
    const auto map = MzMapProjection::mapProjectionWithPlateCarree();
    const auto lines = MzGeodesicLines(kAuckland, kSantiago, 50e3, map.get());
    ASSERT_EQ(lines.size(), 2u);
    const auto first = pointsOf(lines[0]->multiPointGeometry());
    const auto second = pointsOf(lines[1]->multiPointGeometry());
    EXPECT_EQ(first.back().x, 180);
    EXPECT_EQ(second.front().x, -180);
    EXPECT_EQ(first.back().y, second.front().y);
    EXPECT_TRUE(std::ranges::is_sorted(first, {}, &MzPoint::x));
    EXPECT_TRUE(std::ranges::is_sorted(second, {}, &MzPoint::x));
}

TEST(ChoosingAGreatCircleToBeDrawn, TheCounterpartPartsTheLineAtThePoles) {
    const auto geometry = MzGeodesicGeometry::initWithStart({0, 80}, {180, 60}, 50e3);
    const auto settled = pointsOf(geometry->multiPointGeometry());
    EXPECT_NEAR(settled[16].y, 90, 1e-9);
    EXPECT_NEAR(settled[16].x, 90, 1e-9) << "on neither of its meridians";
    const auto lines = MzGeodesicLines({0, 80}, {180, 60}, 50e3, nullptr);
    ASSERT_EQ(lines.size(), 2u);
    for (const MzPoint p : pointsOf(lines[0]->multiPointGeometry())) EXPECT_NEAR(p.x, 0, 1e-9);
    for (const MzPoint p : pointsOf(lines[1]->multiPointGeometry())) EXPECT_NEAR(p.x, 180, 1e-9);
}

// --- great-circle distance

constexpr double kHalfTurn = MzEarthRadius * std::numbers::pi;

// How many there are hangs on the last digits of the sine.
TEST(ChoosingGreatCircleDistance, TheSettledOneIsNaNForSomeAntipodes) {
    int none = 0;
    for (int latitude = -89; latitude < 90; ++latitude) {
        none += std::isnan(MzEarthDistance(10, latitude, 190, -latitude)) ? 1 : 0;
        EXPECT_NEAR(MzGeodesicDistance({10, 1.0 * latitude}, {190, -1.0 * latitude}), kHalfTurn,
                    1e-8);
    }
    EXPECT_GE(none, 1);
    EXPECT_LE(none, 30);
}

TEST(ChoosingGreatCircleDistance, TheSettledOneLosesAPlace11CentimetresFromTheAntipode) {
    constexpr MzPoint kStart{0, 0}, kEnd{179.999999, 0};
    const double exact = kHalfTurn * (179.999999 / 180);
    EXPECT_NEAR(kHalfTurn - exact, 0.11, 0.001);
    EXPECT_NEAR(MzEarthDistance(kStart.x, kStart.y, kEnd.x, kEnd.y), kHalfTurn, 1e-8);
    EXPECT_NEAR(MzGeodesicDistance(kStart, kEnd), exact, 1.1e-8);
}

// --- UTM

using Hemisphere = MzUTMProjection::Hemisphere;

/// The zone that the settled functions choose.
std::uint32_t settledZoneOf(MzPoint point) {
    std::uint32_t zone = 0;
    double x = 0, y = 0;
    LatitudeLongitudeToUTM(&zone, &x, &y, point.y, point.x);
    return zone;
}

TEST(ChoosingUTM, SettledZonesGoBeyond60AndKnowNoExceptions) {
    EXPECT_EQ(settledZoneOf({180, 10}), 61u);
    EXPECT_EQ(MzUTMZoneOf({180, 10}), 1u);
    EXPECT_EQ(settledZoneOf({-186.5, 10}), 4294967295u);
    EXPECT_EQ(MzUTMZoneOf({-186.5, 10}), 59u);
    EXPECT_EQ(settledZoneOf({5.32, 60.39}), 31u) << "Bergen";
    EXPECT_EQ(MzUTMZoneOf({5.32, 60.39}), 32u);
    EXPECT_EQ(settledZoneOf({21, 78}), 34u) << "Svalbard";
    EXPECT_EQ(MzUTMZoneOf({21, 78}), 35u);
}

TEST(ChoosingUTM, TheSettledOneIsMillionsOfKilometresOffBeyondTheSeam) {
    const auto settled = MzUTMZoneProjection::initWithZone(60);
    const auto right = MzUTMProjection::initWithZone(60, Hemisphere::South);
    const MzPoint lost = settled->projectedCoordinateForLongitudeLatitude({-179.9, -17});
    EXPECT_NEAR(std::hypot(lost.x, lost.y), 92e9, 0.1e9);
    const MzPoint there = right->projectedCoordinateForLongitudeLatitude({-179.9, -17});
    EXPECT_NEAR(there.x, 830'108, 0.5);
    EXPECT_NEAR(there.y, 8'117'832, 0.5);
}

TEST(ChoosingUTM, SettledNorthingsOfTheSouthAreBelowZeroUnderANorthernSRID) {
    constexpr MzPoint kSuva{178.4, -18.1};
    const auto settled = MzUTMZoneProjection::initWithZone(60);
    const auto right = MzUTMProjection::initWithZone(60, Hemisphere::South);
    const double northing = settled->projectedCoordinateForLongitudeLatitude(kSuva).y;
    EXPECT_NEAR(northing, -2'001'812, 0.5);
    EXPECT_NEAR(right->projectedCoordinateForLongitudeLatitude(kSuva).y, northing + 10e6, 0.01);
    EXPECT_EQ(settled->srid(), 32660);
    EXPECT_EQ(right->srid(), 32760);
    EXPECT_FALSE(settled->isUTM());
    EXPECT_TRUE(right->isUTM());
}

TEST(ChoosingUTM, TheSettledOneDriftsByKilometresFarFromItsMeridian) {
    const auto settled = MzUTMZoneProjection::initWithZone(33);
    const auto right = MzUTMProjection::initWithZone(33, Hemisphere::North);
    const auto apart = [&](MzPoint p) {
        return right->projectedCoordinateForLongitudeLatitude(p).x -
               settled->projectedCoordinateForLongitudeLatitude(p).x;
    };
    EXPECT_NEAR(apart({60, 0}), 4267, 1);
    EXPECT_NEAR(apart({18, 60}), 0, 0.001) << "none within the zone";
}

TEST(ChoosingUTM, ASettledCopyProjectsForZone0) {
    const auto settled = MzUTMZoneProjection::initWithZone(33);
    const auto right = MzUTMProjection::initWithZone(33, Hemisphere::North);
    const auto zone0 = MzUTMZoneProjection::initWithZone(0);
    EXPECT_EQ(settled->copy()->projectedCoordinateForLongitudeLatitude({15, 0}).x,
              zone0->projectedCoordinateForLongitudeLatitude({15, 0}).x);
    EXPECT_EQ(right->copy()->projectedCoordinateForLongitudeLatitude({15, 0}).x, 500'000);
}

TEST(ChoosingUTM, TheCounterpartTakesLongitudesWholeTurnsApart) {
    const auto settled = MzUTMZoneProjection::initWithZone(33);
    const auto right = MzUTMProjection::initWithZone(33, Hemisphere::North);
    EXPECT_EQ(right->projectedCoordinateForLongitudeLatitude({375, 45}).x, 500'000);
    EXPECT_LT(settled->projectedCoordinateForLongitudeLatitude({375, 45}).x, -11e9);
}

}  // namespace
}  // namespace mezalith
