// SPDX-License-Identifier: MIT
#include "host/view_cutter.hpp"

#include "host/antimeridian.hpp"
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

using Points = std::vector<MzPoint>;

/// A view of degrees as they are, clipped to the rectangle.
ViewCutter degreesCutter(MzRect rect) {
    return {MzMapProjection::mapProjectionWithPlateCarree(), BoundingBox::of(rect), 0.01};
}

Part line(Points points) {
    return {Form::Line, MzMultiPointGeometry::initWithMultiPoint(
                            {static_cast<std::uint32_t>(points.size()), points.data()})};
}

Part area(Points ring) {
    MzLinearRing record{static_cast<std::uint32_t>(ring.size()), ring.data()};
    return {Form::Area, MzPolygonGeometry::initWithPolygon({1, &record})};
}

Points pointsOfPiece(const std::shared_ptr<MzGeometry>& piece) {
    const auto* points = dynamic_cast<const MzMultiPointGeometry*>(piece.get());
    const auto run = pointsOf(points->multiPointGeometry());
    return {run.begin(), run.end()};
}

TEST(BoundsOf, CoversAllLeaves) {
    EXPECT_EQ(boundsOf(*line({{1, 2}, {-3, 5}}).geometry), (BoundingBox{-3, 2, 1, 5}));
    EXPECT_TRUE(boundsOf(*line({}).geometry).isEmpty());
}

TEST(SeenThrough, IsTheRectangleItselfInDegrees) {
    const BoundingBox box{-3, 4, 5, 60};
    EXPECT_EQ(seenThrough(*MzMapProjection::mapProjectionWithPlateCarree(), box), box);
}

TEST(SeenThrough, HoldsEveryPlaceThatAZoneTakesThere) {
    const auto zone = MzMapProjection::mapProjectionWithUTMZone(33);
    std::mt19937 random{7};
    std::uniform_real_distribution<double> longitude{-54, 84}, latitude{-89, 89};
    const std::vector<BoundingBox> rectangles{{400'000, 6'000'000, 700'000, 6'300'000},
                                              {-500'000, 5'000'000, 1'500'000, 8'000'000},
                                              {300'000, -700'000, 900'000, 700'000},
                                              {-2'000'000, 1'000'000, 3'000'000, 9'000'000},
                                              {0, 9'000'000, 1'000'000, 11'000'000}};
    for (const BoundingBox& rectangle : rectangles) {
        const BoundingBox seen = seenThrough(*zone, rectangle);
        for (int i = 0; i < 200'000; ++i) {
            const MzPoint place{longitude(random), latitude(random)};
            const MzPoint p = zone->projectedCoordinateForLongitudeLatitude(place);
            if (!rectangle.meets({p.x, p.y, p.x, p.y})) continue;
            ASSERT_TRUE(seen.meets({place.x, place.y, place.x, place.y})) << place.x << place.y;
        }
    }
    const BoundingBox near = seenThrough(*zone, rectangles[0]);
    EXPECT_GT(near.minX, 13);
    EXPECT_LT(near.maxX, 19);
    EXPECT_EQ(seenThrough(*zone, rectangles[4]), (BoundingBox{-55, -90, 85, 90}));
}

TEST(ViewCutter, LeavesAloneWhatIsInside) {
    const ViewCutter cutter = degreesCutter({{0, 0}, {10, 10}});
    for (const Part& part : {line({{1, 1}, {9, 9}}), area({{1, 1}, {9, 1}, {9, 9}, {1, 1}}),
                             Part{Form::Points, MzPointGeometry::initWithPoint({3, 3})}}) {
        const auto pieces = cutter.cut(part);
        ASSERT_EQ(pieces.size(), 1u);
        EXPECT_EQ(pieces[0], part.geometry);
    }
}

TEST(ViewCutter, LeavesAloneWhatLeavesTheView) {
    const ViewCutter cutter = degreesCutter({{0, 0}, {10, 10}});
    for (const Part& part : {line({{5, 5}, {15, 5}, {15, 9}, {5, 9}}),
                             area({{-5, 4}, {15, 4}, {15, 20}, {-5, 20}, {-5, 4}})}) {
        const auto pieces = cutter.cut(part);
        ASSERT_EQ(pieces.size(), 1u);
        EXPECT_EQ(pieces[0], part.geometry);
    }
}

TEST(ViewCutter, LeavesOutWhatIsElsewhere) {
    const ViewCutter cutter = degreesCutter({{0, 0}, {10, 10}});
    EXPECT_TRUE(cutter.cut(line({{20, 20}, {30, 30}})).empty());
    EXPECT_TRUE(cutter.cut(area({{20, 0}, {30, 0}, {30, 9}, {20, 0}})).empty());
    EXPECT_TRUE(cutter.cut(line({})).empty());
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(cutter.cut(line({{nan, nan}, {nan, nan}})).empty());
}

TEST(ViewCutter, ShowsTheGlobeAgainBeyondTheAntimeridian) {
    const ViewCutter cutter = degreesCutter({{170, -20}, {20, 20}});
    const auto pieces = cutter.cut(area({{-180, -5}, {-175, -5}, {-175, -1}, {-180, -5}}));
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_EQ(boundsOf(*pieces[0]), (BoundingBox{180, -5, 185, -1}));
    const ViewCutter zone60{
        MzMapProjection::mapProjectionWithUTMZone(60), {-1e7, -1e7, 1e7, 1e7}, 1000};
    const auto moved = zone60.cut(line({{-179, 1}, {-178, 2}}));
    ASSERT_EQ(moved.size(), 1u);
    EXPECT_EQ(boundsOf(*moved[0]), (BoundingBox{181, 1, 182, 2}));
}

TEST(ViewCutter, CutsOffWhatAZoneCannotReach) {
    const ViewCutter cutter{
        MzMapProjection::mapProjectionWithUTMZone(33), {-2e7, -1e7, 2e7, 1e7}, 1000};
    const auto world = cutter.cut(area({{-180, 0}, {180, 0}, {180, 80}, {-180, 80}, {-180, 0}}));
    ASSERT_EQ(world.size(), 1u);
    EXPECT_EQ(boundsOf(*world[0]), (BoundingBox{-55, 0, 85, 80}));
    Points towns{{10, 60}, {170, 60}, {-170, -40}};
    const auto points =
        cutter.cut({Form::Points, MzMultiPointGeometry::initWithMultiPoint({3, towns.data()})});
    ASSERT_EQ(points.size(), 1u);
    EXPECT_EQ(pointsOfPiece(points[0]).size(), 1u);
}

Part twoHalves() {
    Points west{{175, -20}, {180, -20}, {180, -10}, {175, -10}, {175, -20}};
    Points east{{-180, -20}, {-178, -20}, {-178, -10}, {-180, -10}, {-180, -20}};
    std::array<MzLinearRing, 2> rings{{{5, west.data()}, {5, east.data()}}};
    std::array<MzPolygon, 2> polygons{{{1, &rings[0]}, {1, &rings[1]}}};
    return {Form::Area, MzMultiPolygonGeometry::initWithMultiPolygon({2, polygons.data()})};
}

TEST(ViewCutter, JoinsHalvesWhereTheViewShowsBoth) {
    const auto pieces = degreesCutter({{170, -20}, {20, 20}}).cut(twoHalves());
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_NEAR(boundsOf(*pieces[0]).minX, 175, 1e-9);
    EXPECT_NEAR(boundsOf(*pieces[0]).maxX, 182, 1e-9);
    const auto* joined = dynamic_cast<const MzPolygonGeometry*>(pieces[0].get());
    ASSERT_NE(joined, nullptr);
    ASSERT_EQ(joined->polygonGeometry()->count, 1u);
    for (const MzPoint p : pointsOf(&joined->polygonGeometry()->rings[0])) {
        EXPECT_TRUE(p.x != 180 || p.y == -20 || p.y == -10);
    }
}

bool hasSideAlongAntimeridian(MzGeometry& geometry) {
    const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(&geometry);
    for (const MzLinearRing& ring : ringsOf(polygon->polygonGeometry())) {
        const auto points = pointsOf(&ring);
        for (std::size_t i = 1; i < points.size(); ++i) {
            if (isAlongAntimeridian(points[i - 1], points[i])) return true;
        }
    }
    return false;
}

TEST(ViewCutter, JoinsHalvesInEveryTurnThatAWideViewShows) {
    const auto pieces = degreesCutter({{-270, -90}, {540, 180}}).cut(twoHalves());
    ASSERT_EQ(pieces.size(), 2u);
    BoundingBox all;
    for (const auto& piece : pieces) {
        EXPECT_NEAR(boundsOf(*piece).width(), 7, 1e-9);
        EXPECT_FALSE(hasSideAlongAntimeridian(*piece));
        all.add(boundsOf(*piece));
    }
    EXPECT_NEAR(all.minX, 175 - 360, 1e-9);
    EXPECT_NEAR(all.maxX, 182, 1e-9);
}

TEST(ViewCutter, ShowsWhatSurroundsAPoleOnceAndWithoutItsCutInAWideView) {
    const Part continent = area(
        {{-180, -90}, {180, -90}, {180, -70}, {60, -65}, {-60, -75}, {-180, -70}, {-180, -90}});
    const auto pieces = degreesCutter({{-270, -100}, {540, 180}}).cut(continent);
    ASSERT_EQ(pieces.size(), 1u);
    const BoundingBox box = boundsOf(*pieces[0]);
    EXPECT_NEAR(box.minX, -540, 1e-6);
    EXPECT_NEAR(box.maxX, 540, 1e-6);
    EXPECT_NEAR(box.maxY, -65, 1e-9);
    const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(pieces[0].get());
    ASSERT_EQ(polygon->polygonGeometry()->count, 1u);
    for (const MzPoint p : pointsOf(&polygon->polygonGeometry()->rings[0])) {
        const bool isOnCut = std::abs(std::abs(p.x) - 180) < 1e-6;
        EXPECT_TRUE(!isOnCut || p.y >= -70 - 1e-9 || p.y < -89.9) << p.x << ' ' << p.y;
    }
}

TEST(ViewCutter, LeavesHalvesToAMapThatIsCutBetweenThem) {
    const Part halves = twoHalves();
    const auto pieces = degreesCutter({{-180, -90}, {360, 180}}).cut(halves);
    ASSERT_EQ(pieces.size(), 3u);  // and once more on both sides
    EXPECT_EQ(pieces[2], halves.geometry);
}

TEST(ViewCutter, TellsTheOutlineOfWhatItShowsOfTheGlobe) {
    EXPECT_TRUE(degreesCutter({{0, 0}, {10, 10}}).outline().empty());
    const GlobeRings strip = degreesCutter({{0, -100}, {50, 200}}).outline();
    ASSERT_EQ(strip.size(), 1u);
    EXPECT_EQ(strip[0][0].y, -90 + 0.0);
    const auto zone = MzMapProjection::mapProjectionWithUTMZone(33);
    const ViewCutter near{zone, {400'000, 6'000'000, 700'000, 6'300'000}, 100};
    EXPECT_TRUE(near.outline().empty());
    const ViewCutter world{zone, {-2e7, -1.2e7, 2e7, 1.2e7}, 1000};
    ASSERT_EQ(world.outline().size(), 1u);
    BoundingBox box;
    box.add(world.outline()[0]);
    EXPECT_NEAR(box.maxY, 10e6, 3e5);
    EXPECT_NEAR(box.centre().x, 500'000, 1);
}

}  // namespace
}  // namespace mezalith::host
