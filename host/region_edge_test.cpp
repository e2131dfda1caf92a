// SPDX-License-Identifier: MIT
#include "host/region_edge.hpp"

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

using Steps = std::vector<RegionEdge::Step>;

constexpr unsigned kSeed = 20261121;

Steps stepsOf(const RegionEdge& edge, MzPoint p, MzPoint q) {
    Steps steps;
    edge.addSteps(p, q, steps);
    return steps;
}

TEST(RegionEdge, PartsASegmentAtTheMeridianOppositeOfTheMiddle) {
    const RegionEdge edge(MzProjectionRegion::band(0, 180 - 1e-9, -90, 90));
    Steps inside;
    for (const auto& step : stepsOf(edge, {170, 10}, {190, 20})) {
        if (step.isInside) inside.push_back(step);
    }
    ASSERT_EQ(inside.size(), 2u);
    EXPECT_NEAR(inside[0].to.x, 180, 1e-8);
    EXPECT_NEAR(inside[0].to.y, 15, 1e-8);
    EXPECT_NEAR(inside[1].from.x, -180, 1e-8);
    EXPECT_NEAR(inside[1].to.x, -170, 1e-8);
}

TEST(RegionEdge, BringsLongitudesIntoTheBand) {
    const RegionEdge edge(MzProjectionRegion::band(150, 180 - 1e-9, -90, 90));
    const Steps steps = stepsOf(edge, {-179, 60}, {-170, 61});
    ASSERT_EQ(steps.size(), 1u);
    EXPECT_TRUE(steps[0].isInside);
    EXPECT_EQ(steps[0].from.x, 181);
    EXPECT_EQ(steps[0].to.x, 190);
}

TEST(RegionEdge, LeavesOutWhatIsBeyondABand) {
    const RegionEdge edge(MzProjectionRegion::band(15, 70, -80, 80));
    const Steps across = stepsOf(edge, {-100, 0}, {100, 0});
    ASSERT_EQ(across.size(), 3u);
    EXPECT_FALSE(across[0].isInside);
    EXPECT_TRUE(across[1].isInside);
    EXPECT_EQ(across[1].from.x, -55);
    EXPECT_EQ(across[1].to.x, 85);
    EXPECT_FALSE(across[2].isInside);
    const Steps north = stepsOf(edge, {15, 70}, {15, 90});
    ASSERT_EQ(north.size(), 2u);
    EXPECT_EQ(north[0].to.y, 80);
}

TEST(RegionEdge, PartsASegmentAtACap) {
    const RegionEdge edge(MzProjectionRegion::cap({0, 90}, 30));
    const Steps steps = stepsOf(edge, {40, 50}, {40, 70});
    ASSERT_EQ(steps.size(), 2u);
    EXPECT_FALSE(steps[0].isInside);
    EXPECT_NEAR(steps[1].from.y, 60, 1e-9);
    // Through it and out again within one segment.
    const RegionEdge small(MzProjectionRegion::cap({10, 0}, 5));
    EXPECT_EQ(stepsOf(small, {-50, 0}, {70, 1}).size(), 3u);
}

/// A world with a gap in the north at 40 west and one in the south at 100 east.
MzProjectionRegion interrupted() {
    MzProjectionRegion region = MzProjectionRegion::band(0, 180 - 1e-9, -90, 90);
    region.gaps = {{100, -10, false}, {-40, 0, true}};
    return region;
}

TEST(RegionEdge, PartsASegmentAtAGap) {
    const RegionEdge edge(interrupted());
    const Steps across = stepsOf(edge, {-50, 30}, {-30, 50});
    ASSERT_EQ(across.size(), 3u);
    EXPECT_TRUE(across[0].isInside);
    EXPECT_LT(across[0].to.x, -40);
    EXPECT_NEAR(across[0].to.x, -40, 1e-5);
    EXPECT_NEAR(across[0].to.y, 40, 1e-5);
    EXPECT_FALSE(across[1].isInside);
    EXPECT_GT(across[2].from.x, -40);
    EXPECT_FALSE(edge.goesOn(across[0].to, across[2].from));
    // A turn further on the globe, and before the gap begins.
    EXPECT_EQ(stepsOf(edge, {310, 30}, {330, 30}).size(), 3u);
    for (const auto& step : stepsOf(edge, {-50, -30}, {-30, -30})) EXPECT_TRUE(step.isInside);
    for (const auto& step : stepsOf(edge, {90, -5}, {110, -5})) EXPECT_TRUE(step.isInside);
    EXPECT_EQ(stepsOf(edge, {90, -15}, {110, -15}).size(), 3u);
    for (const auto& step : stepsOf(edge, {-40, 5}, {-40, 60})) EXPECT_FALSE(step.isInside);
}

TEST(RegionEdge, LeadsIntoGapsAndOut) {
    const RegionEdge edge(interrupted());
    EXPECT_NEAR(edge.length(), 2 * (360 + 180) + 2 * 80 + 2 * 90, 1e-4);
    const double south = edge.positionOf({100 - 3e-6, -50}),
                 north = edge.positionOf({100 + 3e-6, -50});
    EXPECT_NEAR(south, 280 + 40, 1e-4);
    EXPECT_NEAR(north, 280 + 80 + 40, 1e-4);
    std::vector<MzPoint> points;
    edge.addPointsBetween(south, north, points);
    EXPECT_TRUE(std::ranges::any_of(points, [](MzPoint p) { return p.y == -10; }));
    for (const MzPoint p : points) EXPECT_NEAR(p.x, 100, 1e-5);
}

/// Positions lead to points, and back.
TEST(RegionEdge, CountsPositionsAllAround) {
    for (const auto& region :
         {MzProjectionRegion::band(150, 180 - 1e-9, -90, 90),
          MzProjectionRegion::band(15, 70, -80, 84), interrupted(),
          MzProjectionRegion::cap({0, 90}, 60), MzProjectionRegion::cap({-100, 40}, 89.9),
          MzProjectionRegion::cap({10, -52}, 179)}) {
        const RegionEdge edge(region);
        std::mt19937_64 random{kSeed};
        std::uniform_real_distribution<double> position{0, edge.length()};
        for (int i = 0; i < 1000; ++i) {
            const double there = position(random);
            const double back = edge.positionOf(edge.pointAt(there));
            ASSERT_NEAR(std::remainder(back - there, edge.length()), 0, 1e-5) << "seed " << kSeed;
        }
        std::vector<MzPoint> all, part, reversed;
        edge.addPointsBetween(-1, edge.length(), all);
        EXPECT_GE(all.size(), static_cast<std::size_t>(edge.length() / 0.5));
        edge.addPointsBetween(10.2, 20.7, part);
        edge.addPointsBetween(20.7, 10.2, reversed);
        ASSERT_EQ(part.size(), 21u);
        EXPECT_EQ(part.front().x, reversed.back().x);
        EXPECT_EQ(part.front().y, reversed.back().y);
    }
}

TEST(RegionEdge, TellsWhatGoesOn) {
    const RegionEdge band(MzProjectionRegion::band(0, 180 - 1e-9, -90, 90));
    EXPECT_TRUE(band.goesOn({10, 20}, {10, 20}));
    EXPECT_FALSE(band.goesOn({180, 20}, {-180, 20}));
    EXPECT_FALSE(band.goesOn({10, 20}, {10, 21}));
    const RegionEdge cap(MzProjectionRegion::cap({0, 90}, 60));
    EXPECT_TRUE(cap.goesOn({180, 70}, {-180, 70}));
    EXPECT_TRUE(cap.goesOn({180, 90}, {12, 90}));
}

}  // namespace
}  // namespace mezalith::host
