// SPDX-License-Identifier: MIT
#include "host/antimeridian.hpp"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

/// A closed box.
GlobeRing box(double west, double south, double east, double north) {
    return {{west, south}, {east, south}, {east, north}, {west, north}, {west, south}};
}

/// Twice the area in the plane, with its sign.
double doubleArea(const GlobeRing& ring) {
    double sum = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const MzPoint a = ring[i == 0 ? ring.size() - 1 : i - 1], b = ring[i];
        sum += a.x * b.y - b.x * a.y;
    }
    return sum;
}

bool hasSideAlong(const GlobeRings& rings, double longitude) {
    for (const GlobeRing& ring : rings) {
        for (std::size_t i = 1; i < ring.size(); ++i) {
            if (ring[i].x == longitude && ring[i - 1].x == longitude) return true;
        }
    }
    return false;
}

TEST(Antimeridian, LeavesAloneWhatDoesNotTouchIt) {
    const std::vector<GlobeRings> polygons{{box(0, 0, 10, 10), box(2, 2, 3, 3)},
                                           {box(170, 0, 179, 5)}};
    const JoinedPolygons globe = joinedAcrossAntimeridian(polygons);
    EXPECT_EQ(globe.apart.size(), 2u);
    EXPECT_TRUE(globe.joined.empty());
    EXPECT_TRUE(globe.joinedFrom.empty());
    EXPECT_FALSE(touchesAntimeridian(polygons[0]));
}

TEST(Antimeridian, IsWhereLongSidesStrayAThousandthFromIt) {
    EXPECT_TRUE(isAlongAntimeridian({180, 1}, {180, 2}));
    EXPECT_TRUE(isAlongAntimeridian({-180, 1}, {-180, 1}));
    EXPECT_TRUE(isAlongAntimeridian({540, 1}, {540, 2}));
    EXPECT_FALSE(isAlongAntimeridian({180, 1}, {-180, 2}));
    EXPECT_FALSE(isAlongAntimeridian({179, 1}, {179, 2}));
    EXPECT_TRUE(isAlongAntimeridian({-180, 71.1}, {-179.99995, 71.2}));
    EXPECT_FALSE(isAlongAntimeridian({-180, 71.1}, {-179.99995, 71.14}));
    EXPECT_FALSE(isAlongAntimeridian({-180, 71.1}, {-179.9998, 75}));
    EXPECT_FALSE(isAlongAntimeridian({-179.99995, 5}, {-179.99995, 5.00001}));
}

TEST(Antimeridian, JoinsHalvesWhoseCoordinatesAreRounded) {
    const JoinedPolygons globe = joinedAcrossAntimeridian(
        {{box(175, 70, 180, 72)},
         {{{-178, 70}, {-178, 72}, {-180, 72}, {-179.99995, 71.5}, {-180, 70}, {-178, 70}}}});
    ASSERT_EQ(globe.joined.size(), 1u);
    EXPECT_FALSE(hasSideAlong(globe.joined, 180));
    EXPECT_NEAR(std::abs(doubleArea(globe.joined[0])), 2 * (2.0 * 7), 1e-3);
}

TEST(Antimeridian, ClosesOneHalfWhoseCoordinatesAreRounded) {
    const JoinedPolygons globe = joinedAcrossAntimeridian({{{{-179.5, -16},
                                                             {-179.5, -17},
                                                             {-180, -17},
                                                             {-179.99995, -16.5},
                                                             {-179.99995, -16},
                                                             {-179.5, -16}}}});
    ASSERT_EQ(globe.joined.size(), 1u);
    const GlobeRing& ring = globe.joined[0];
    EXPECT_EQ(std::remainder(ring.back().x - ring.front().x, 360), 0);
    EXPECT_NEAR(ring.back().y, ring.front().y, 1e-9);
    EXPECT_NEAR(std::abs(doubleArea(ring)), 2 * 0.5, 1e-3);
}

TEST(Antimeridian, JoinsTwoHalvesOfAnIsland) {
    const JoinedPolygons globe = joinedAcrossAntimeridian(
        {{box(175, -20, 180, -10)}, {box(0, 0, 1, 1)}, {box(-180, -20, -178, -10)}});
    EXPECT_EQ(globe.apart.size(), 1u);
    ASSERT_EQ(globe.joined.size(), 1u);
    EXPECT_EQ(globe.joinedFrom.size(), 2u);
    EXPECT_FALSE(hasSideAlong(globe.joined, 180));
    EXPECT_FALSE(hasSideAlong(globe.joined, -180));
    EXPECT_NEAR(std::abs(doubleArea(globe.joined[0])), 2 * 7 * 10, 1e-9);
}

double least(const GlobeRing& ring) { return std::ranges::min(ring, {}, &MzPoint::x).x; }
double greatest(const GlobeRing& ring) { return std::ranges::max(ring, {}, &MzPoint::x).x; }

TEST(Antimeridian, JoinsAContinentWithTheHolesOfBothItsHalves) {
    const GlobeRings west{box(-180, 0, -100, 3), box(-120, 1, -119, 2)};
    const GlobeRings east{{{180, 0}, {180, 3}, {0, 3}, {0, 0}, {180, 0}}, box(50, 1, 51, 2)};
    for (const auto& halves : {std::vector{west, east}, std::vector{east, west}}) {
        const JoinedPolygons globe = joinedAcrossAntimeridian(halves);
        ASSERT_EQ(globe.joined.size(), 3u);
        const GlobeRing& outline = globe.joined[2];
        EXPECT_EQ(least(outline), 0);
        EXPECT_EQ(greatest(outline), 260);
        for (const std::size_t hole : {0, 1}) {
            EXPECT_LT(least(outline), least(globe.joined[hole]));
            EXPECT_LT(greatest(globe.joined[hole]), greatest(outline));
        }
    }
}

TEST(Antimeridian, JoinsHalvesWithOtherPointsOnTheCut) {
    GlobeRing east = box(-180, -20, -178, -10);
    east.insert(east.end() - 1, {-180, -15});
    const JoinedPolygons globe = joinedAcrossAntimeridian({{box(175, -20, 180, -10)}, {east}});
    ASSERT_EQ(globe.joined.size(), 1u);
    EXPECT_FALSE(hasSideAlong(globe.joined, 180));
    EXPECT_NEAR(std::abs(doubleArea(globe.joined[0])), 2 * 7 * 10, 1e-9);
}

TEST(Antimeridian, KeepsTheSideWhereOnlyOneHalfHasLand) {
    const JoinedPolygons globe =
        joinedAcrossAntimeridian({{box(175, -20, 180, 0)}, {box(-180, -20, -178, -10)}});
    ASSERT_EQ(globe.joined.size(), 1u);
    EXPECT_NEAR(std::abs(doubleArea(globe.joined[0])), 2 * (5 * 20 + 2 * 10), 1e-9);
    const JoinedPolygons alone = joinedAcrossAntimeridian({{box(175, -20, 180, 0)}});
    ASSERT_EQ(alone.joined.size(), 1u);
    EXPECT_NEAR(std::abs(doubleArea(alone.joined[0])), 2 * 5 * 20, 1e-9);
}

TEST(Antimeridian, FreesAContinentAroundAPoleOfItsFrame) {
    const GlobeRing antarctica{{-180, -84}, {-90, -70}, {0, -75},    {90, -66},
                               {180, -84},  {180, -90}, {-180, -90}, {-180, -84}};
    const JoinedPolygons globe = joinedAcrossAntimeridian({{antarctica}});
    ASSERT_EQ(globe.joined.size(), 1u);
    ASSERT_EQ(globe.joined[0].size(), 5u);
    for (const MzPoint p : globe.joined[0]) EXPECT_GE(p.y, -84);
    EXPECT_EQ(std::abs(globe.joined[0].back().x - globe.joined[0].front().x), 360);
}

TEST(Antimeridian, LeavesNoRingOfTheWholeWorld) {
    const JoinedPolygons globe = joinedAcrossAntimeridian({{box(-180, -90, 180, 90)}});
    EXPECT_TRUE(globe.joined.empty());
    EXPECT_EQ(globe.joinedFrom.size(), 1u);
}

TEST(Antimeridian, MakesTwoRingsOfABeltAroundTheGlobe) {
    const JoinedPolygons globe = joinedAcrossAntimeridian({{box(-180, -60, 180, 60)}});
    ASSERT_EQ(globe.joined.size(), 2u);
    for (const GlobeRing& ring : globe.joined) EXPECT_EQ(ring.size(), 2u);
}

TEST(Antimeridian, JoinsAWedgeAtThePole) {
    const JoinedPolygons globe =
        joinedAcrossAntimeridian({{{{20, -90}, {45, -90}, {45, -60}, {20, -60}, {20, -90}}}});
    ASSERT_EQ(globe.joined.size(), 1u);
    EXPECT_EQ(globe.joined[0].size(), 4u);
}

TEST(Antimeridian, KeepsHolesAndIslandsOfWhatItJoins) {
    const JoinedPolygons globe = joinedAcrossAntimeridian(
        {{box(170, 0, 180, 10), box(172, 2, 174, 4)}, {box(-180, 0, -170, 10)}});
    ASSERT_EQ(globe.joined.size(), 2u);
    EXPECT_NEAR(std::abs(doubleArea(globe.joined[0])), 2 * 2 * 2, 1e-9);
}

}  // namespace
}  // namespace mezalith::host
