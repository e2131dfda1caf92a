// SPDX-License-Identifier: MIT
#include <mezalith/projection/geodesic_geometry.hpp>
#include <mezalith/projection/geodesic_line.hpp>
#include <mezalith/projection/great_circle.hpp>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <span>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

constexpr MzPoint oslo{10.75, 59.91}, tokyo{139.69, 35.69};
constexpr MzPoint auckland{174.76, -36.85}, santiago{-70.65, -33.45};
constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double halfCircumference = std::numbers::pi * MzEarthRadius;
constexpr unsigned kSeed = 20261121;

using Line = std::vector<MzPoint>;

MzPoint anyPlace(std::mt19937& random) {
    std::uniform_real_distribution<double> longitude{-180, 180}, height{-1, 1};
    return {longitude(random), std::asin(height(random)) * 180 / std::numbers::pi};
}

std::vector<Line> linesOf(MzPoint start, MzPoint end, double resolution,
                          const MzMapProjection* projection) {
    std::vector<Line> lines;
    for (const auto& geometry : MzGeodesicLines(start, end, resolution, projection)) {
        const auto points = pointsOf(geometry->multiPointGeometry());
        lines.emplace_back(points.begin(), points.end());
    }
    return lines;
}

std::vector<Line> onPlateCarree(MzPoint start, MzPoint end, double resolution = 50'000) {
    return linesOf(start, end, resolution, MzMapProjection::mapProjectionWithPlateCarree().get());
}

double longestStep(const Line& line) {
    double longest = 0;
    for (std::size_t i = 1; i < line.size(); ++i) {
        longest = std::max(longest, MzGeodesicDistance(line[i - 1], line[i]));
    }
    return longest;
}

/// The widest jump between neighbours on the map, degrees.
double widestJump(const Line& line) {
    double widest = 0;
    for (std::size_t i = 1; i < line.size(); ++i) {
        widest = std::max(widest, std::hypot(line[i].x - line[i - 1].x, line[i].y - line[i - 1].y));
    }
    return widest;
}

void expectPoint(MzPoint actual, double x, double y, double tolerance = 0) {
    EXPECT_NEAR(actual.x, x, tolerance);
    EXPECT_NEAR(actual.y, y, tolerance);
}

// --- distances ------------------------------------------------------------

TEST(GeodesicDistance, IsHalfTheCircumferenceBetweenAntipodes) {
    std::mt19937 random{kSeed};
    for (int i = 0; i < 10'000; ++i) {
        const MzPoint p = anyPlace(random);
        ASSERT_NEAR(MzGeodesicDistance(p, {p.x + 180, -p.y}), halfCircumference, 1e-8);
        ASSERT_LE(MzGeodesicDistance(p, {p.x + 180, -p.y}), halfCircumference);
    }
    EXPECT_NEAR(MzGeodesicDistance({0, 90}, {77, -90}), halfCircumference, 1e-8);
}

TEST(GeodesicDistance, IsThatOfTheHaversineElsewhere) {
    std::mt19937 random{kSeed};
    for (int i = 0; i < 10'000; ++i) {
        const MzPoint a = anyPlace(random), b = anyPlace(random);
        const double expected = MzEarthDistance(a.x, a.y, b.x, b.y);
        if (expected > 0.94 * halfCircumference) continue;
        ASSERT_NEAR(MzGeodesicDistance(a, b), expected, 1e-7);
        ASSERT_EQ(MzGeodesicDistance(a, a), 0);
    }
}

TEST(GeodesicDistance, IsNoNumberForPlacesThatAreNone) {
    for (const double bad : {nan, infinity, -infinity}) {
        EXPECT_TRUE(std::isnan(MzGeodesicDistance({bad, 0}, oslo)));
        EXPECT_TRUE(std::isnan(MzGeodesicDistance(oslo, {0, bad})));
    }
}

// --- points ---------------------------------------------------------------

TEST(GeodesicPoints, AreNeverFartherApartThanTheResolution) {
    std::mt19937 random{kSeed};
    for (int i = 0; i < 300; ++i) {
        const MzPoint a = anyPlace(random), b = anyPlace(random);
        const Line line = MzGeodesicPoints(a, b, 30'000);
        ASSERT_LE(longestStep(line), 30'000 + 1e-6);
        const double distance = MzGeodesicDistance(a, b);
        ASSERT_EQ(line.size(), static_cast<std::size_t>(std::ceil(distance / 30'000)) + 1);
        const double step = distance / static_cast<double>(line.size() - 1);
        for (std::size_t j = 1; j < line.size(); ++j) {
            ASSERT_NEAR(MzGeodesicDistance(a, line[j]), step * static_cast<double>(j), 1e-6);
        }
    }
}

TEST(GeodesicPoints, KeepTheResolutionWhereTheSampledGeometryDoesNot) {
    const double distance = MzGeodesicDistance(oslo, tokyo);
    const double resolution = distance / 2.9;
    EXPECT_EQ(
        MzGeodesicGeometry::initWithStart(oslo, tokyo, resolution)->multiPointGeometry()->count,
        2u);
    EXPECT_EQ(MzGeodesicPoints(oslo, tokyo, resolution).size(), 4u);
}

TEST(GeodesicPoints, LieWhereBisectionPutsThem) {
    const Line line = MzGeodesicPoints(oslo, tokyo, MzGeodesicDistance(oslo, tokyo) / 3.99);
    ASSERT_EQ(line.size(), 5u);
    const MzPoint middle = MzGeodesicMidpoint(oslo.x, oslo.y, tokyo.x, tokyo.y);
    const MzPoint quarter = MzGeodesicMidpoint(oslo.x, oslo.y, middle.x, middle.y);
    expectPoint(line[2], middle.x, middle.y, 1e-11);
    expectPoint(line[1], quarter.x, quarter.y, 1e-11);
}

TEST(GeodesicPoints, BeginAndEndAsGiven) {
    const Line line = MzGeodesicPoints(oslo, tokyo, 1e6);
    expectPoint(line.front(), oslo.x, oslo.y);
    expectPoint(line.back(), tokyo.x, tokyo.y);
    const Line turned = MzGeodesicPoints({oslo.x + 720, oslo.y}, tokyo, 1e6);
    expectPoint(turned.front(), oslo.x + 720, oslo.y);
    expectPoint(turned.back(), tokyo.x + 720, tokyo.y);
}

TEST(GeodesicPoints, RunOnBeyondThe180thMeridianToTheirEnd) {
    const Line line = MzGeodesicPoints(auckland, santiago, 50'000);
    for (std::size_t i = 1; i < line.size(); ++i) ASSERT_GT(line[i].x, line[i - 1].x);
    expectPoint(line.back(), santiago.x + 360, santiago.y);
    const Line back = MzGeodesicPoints(santiago, auckland, 50'000);
    for (std::size_t i = 1; i < back.size(); ++i) ASSERT_LT(back[i].x, back[i - 1].x);
    expectPoint(back.back(), auckland.x - 360, auckland.y);
}

TEST(GeodesicPoints, AreTheTwoEndsForAResolutionThatIsNone) {
    for (const double resolution : {nan, 0.0, -0.0, -1000.0, infinity, -infinity, 1e9}) {
        EXPECT_EQ(MzGeodesicPoints(oslo, tokyo, resolution).size(), 2u) << resolution;
    }
    EXPECT_EQ(MzGeodesicPoints(oslo, oslo, 1000).size(), 2u);
}

TEST(GeodesicPoints, AreNoneWhereThereIsNoLineOrTooLongAOne) {
    for (const double bad : {nan, infinity, -infinity}) {
        EXPECT_TRUE(MzGeodesicPoints({bad, 0}, oslo, 1000).empty());
        EXPECT_TRUE(MzGeodesicPoints(oslo, {0, bad}, 1000).empty());
        EXPECT_TRUE(MzGeodesicLines({bad, 0}, oslo, 1000, nullptr).empty());
    }
    const double distance = MzGeodesicDistance(oslo, tokyo);
    const auto most = static_cast<double>(MzGeodesicMaxPoints);
    EXPECT_TRUE(MzGeodesicPoints(oslo, tokyo, distance / (most + 2)).empty());
    EXPECT_TRUE(MzGeodesicPoints(oslo, tokyo, std::numeric_limits<double>::denorm_min()).empty());
}

TEST(GeodesicPoints, KeepToTheMeridian) {
    for (const double longitude : {180.0, -180.0, 13.7, 0.0}) {
        for (const MzPoint& p : MzGeodesicPoints({longitude, -80}, {longitude, 80}, 100'000)) {
            ASSERT_EQ(p.x, longitude);
        }
    }
}

TEST(GeodesicPoints, GoNorthBetweenAntipodes) {
    const Line line = MzGeodesicPoints({20, 30}, {-160, -30}, 500'000);
    ASSERT_EQ(line.size(), 41u);
    EXPECT_GT(line[1].y, line[0].y);
    for (std::size_t i = 1; i < line.size(); ++i) {
        ASSERT_NEAR(MzGeodesicDistance(line[i - 1], line[i]), halfCircumference / 40, 1e-5);
    }
}

// --- lines ----------------------------------------------------------------

TEST(GeodesicLines, DrawOsloToTokyoInOnePiece) {
    const auto lines = onPlateCarree(oslo, tokyo);
    ASSERT_EQ(lines.size(), 1u);
    expectPoint(lines[0].front(), oslo.x, oslo.y);
    expectPoint(lines[0].back(), tokyo.x, tokyo.y);
    EXPECT_LT(widestJump(lines[0]), 2);
}

TEST(GeodesicLines, PartAucklandToSantiagoAtThe180thMeridian) {
    const auto lines = onPlateCarree(auckland, santiago);
    ASSERT_EQ(lines.size(), 2u);
    expectPoint(lines[0].front(), auckland.x, auckland.y);
    EXPECT_EQ(lines[0].back().x, 180);
    EXPECT_EQ(lines[1].front().x, -180);
    EXPECT_EQ(lines[0].back().y, lines[1].front().y);
    expectPoint(lines[1].back(), santiago.x, santiago.y, 1e-12);
    for (const Line& line : lines) {
        EXPECT_LT(widestJump(line), 2);
        for (const MzPoint& p : line) ASSERT_LE(std::abs(p.x), 180);
    }
    // The edge's point lies on the way.
    const MzPoint edge = lines[0].back();
    EXPECT_NEAR(MzGeodesicDistance(auckland, edge) + MzGeodesicDistance(edge, santiago),
                MzGeodesicDistance(auckland, santiago), 1e-5);
}

TEST(GeodesicLines, PartWestwardsToo) {
    const auto there = onPlateCarree(auckland, santiago), back = onPlateCarree(santiago, auckland);
    ASSERT_EQ(back.size(), 2u);
    EXPECT_EQ(back[0].back().x, -180);
    EXPECT_EQ(back[1].front().x, 180);
    EXPECT_NEAR(back[0].back().y, there[0].back().y, 1e-10);
}

TEST(GeodesicLines, StayWholeWithoutAProjectionThatWraps) {
    const auto zone = MzMapProjection::mapProjectionWithUTMZone(60);
    const MzMapProjection* const projections[] = {nullptr, zone.get()};
    for (const MzMapProjection* projection : projections) {
        const auto lines = linesOf(auckland, santiago, 50'000, projection);
        ASSERT_EQ(lines.size(), 1u);
        EXPECT_EQ(lines[0].back().x, santiago.x + 360);
    }
}

TEST(GeodesicLines, ComeIntoTheBoundsFromWherever) {
    const auto lines =
        onPlateCarree({auckland.x + 360, auckland.y}, {santiago.x - 720, santiago.y});
    ASSERT_EQ(lines.size(), 2u);
    expectPoint(lines[0].front(), auckland.x, auckland.y, 1e-12);
    expectPoint(lines[1].back(), santiago.x, santiago.y, 1e-12);
}

TEST(GeodesicLines, PartWhereAPointLiesOnTheEdge) {
    const auto lines =
        onPlateCarree({170, 0}, {-170, 0}, MzGeodesicDistance({0, 0}, {10, 0}) + 1e-3);
    ASSERT_EQ(lines.size(), 2u);
    expectPoint(lines[0].back(), 180, 0, 1e-12);
    expectPoint(lines[1].front(), -180, 0, 1e-12);
    const auto leaving = onPlateCarree({180, 0}, {170, 0});
    ASSERT_EQ(leaving.size(), 1u);
    EXPECT_EQ(leaving[0].front().x, 180);
    const auto arriving = onPlateCarree({-170, 0}, {180, 0});
    ASSERT_EQ(arriving.size(), 1u);
    EXPECT_EQ(arriving[0].back().x, -180);
}

TEST(GeodesicLines, StayOnOneSideAlongTheEdge) {
    EXPECT_EQ(onPlateCarree({180, -80}, {180, 80}).size(), 1u);
    EXPECT_EQ(onPlateCarree({-180, -80}, {180, 80}).size(), 1u);
}

TEST(GeodesicLines, PartAtThePoleOnBothMeridians) {
    for (const double resolution : {100'000.0, 123'456.0, 1e9}) {
        const auto lines = onPlateCarree({10, 60}, {-170, 70}, resolution);
        ASSERT_EQ(lines.size(), 2u);
        EXPECT_NEAR(lines[0].back().x, 10, 1e-9);
        EXPECT_NEAR(lines[0].back().y, 90, 1e-9);
        EXPECT_NEAR(lines[1].front().x, -170, 1e-9);
        EXPECT_NEAR(lines[1].front().y, 90, 1e-9);
        for (const Line& line : lines) {
            for (const MzPoint& p : line) ASSERT_NEAR(p.x, line.front().x, 1e-9);
        }
    }
    const auto south = linesOf({10, -80}, {190, -80}, 100'000, nullptr);
    ASSERT_EQ(south.size(), 2u);
    EXPECT_EQ(south[0].back().y, -90);
}

TEST(GeodesicLines, KeepTheResolutionInEveryPart) {
    std::mt19937 random{kSeed};
    for (int i = 0; i < 300; ++i) {
        const MzPoint a = anyPlace(random), b = anyPlace(random);
        double total = 0;
        for (const Line& line : onPlateCarree(a, b, 40'000)) {
            ASSERT_GE(line.size(), 2u);
            ASSERT_LE(longestStep(line), 40'000 + 1e-6);
            for (std::size_t j = 1; j < line.size(); ++j) {
                ASSERT_LE(std::abs(line[j].x), 180);
                total += MzGeodesicDistance(line[j - 1], line[j]);
            }
        }
        ASSERT_NEAR(total, MzGeodesicDistance(a, b), 1e-3);
    }
}

TEST(GeodesicLines, DrawAPointToItselfAsALineOfNoLength) {
    const auto lines = onPlateCarree(oslo, oslo);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].size(), 2u);
}

}  // namespace
}  // namespace mezalith
