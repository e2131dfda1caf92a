// SPDX-License-Identifier: MIT
#include "host/view_cutter.hpp"

#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

using Points = std::vector<MzPoint>;

std::shared_ptr<MzClippingRegion> region(MzRect rect) {
    auto region = std::make_shared<MzClippingRegion>();
    region->setClippingRect(rect);
    region->setTransform(MzAffineTransform::transform());
    return region;
}

/// A view of degrees as they are, clipped to the rectangle.
ViewCutter degreesCutter(MzRect rect) {
    return {MzMapProjection::mapProjectionWithPlateCarree(), region(rect)};
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

Points ringOfPiece(const std::shared_ptr<MzGeometry>& piece) {
    const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(piece.get());
    const auto run = pointsOf(&polygon->polygonGeometry()->rings[0]);
    return {run.begin(), run.end()};
}

TEST(BoundsOf, CoversAllLeaves) {
    EXPECT_EQ(boundsOf(*line({{1, 2}, {-3, 5}}).geometry), (BoundingBox{-3, 2, 1, 5}));
    EXPECT_TRUE(boundsOf(*line({}).geometry).isEmpty());
}

TEST(ReachOf, IsLimitedForZonesOnly) {
    EXPECT_EQ(reachOf(*MzMapProjection::mapProjectionWithUTMZone(33)).minX, -55);
    EXPECT_EQ(reachOf(*MzMapProjection::mapProjectionWithUTMZone(33)).maxX, 85);
    EXPECT_EQ(reachOf(*MzMapProjection::mapProjectionWithPlateCarree()).maxX,
              std::numeric_limits<double>::infinity());
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
    EXPECT_EQ(seenThrough(*zone, rectangles[4]), reachOf(*zone));
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

TEST(ViewCutter, LeavesOutWhatIsElsewhere) {
    const ViewCutter cutter = degreesCutter({{0, 0}, {10, 10}});
    EXPECT_TRUE(cutter.cut(line({{20, 20}, {30, 30}})).empty());
    EXPECT_TRUE(cutter.cut(area({{20, 0}, {30, 0}, {30, 9}, {20, 0}})).empty());
    EXPECT_TRUE(cutter.cut(line({})).empty());
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(cutter.cut(line({{nan, nan}, {nan, nan}})).empty());
}

TEST(ViewCutter, CutsALineWhereItLeaves) {
    const ViewCutter cutter = degreesCutter({{0, 0}, {10, 10}});
    const auto pieces = cutter.cut(line({{5, 5}, {15, 5}, {30, 8}, {15, 9}, {5, 9}}));
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pointsOfPiece(pieces[0]).size(), 2u);
    EXPECT_EQ(pointsOfPiece(pieces[1]).front().x, 15);
    EXPECT_EQ(pointsOfPiece(pieces[1]).back().x, 5);
}

TEST(ViewCutter, GivesASegmentThatPassesThroughToItself) {
    const ViewCutter cutter = degreesCutter({{0, 0}, {10, 10}});
    const auto pieces = cutter.cut(line({{-5, 5}, {15, 5}, {-5, 6}}));
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_EQ(pointsOfPiece(pieces[0]).size(), 2u);
    EXPECT_EQ(pointsOfPiece(pieces[1]).size(), 2u);
}

TEST(ViewCutter, PutsAVertexIntoASideThatPassesThrough) {
    const ViewCutter cutter = degreesCutter({{0, 0}, {10, 10}});
    const auto pieces = cutter.cut(area({{-5, 4}, {15, 4}, {15, 20}, {-5, 20}, {-5, 4}}));
    ASSERT_EQ(pieces.size(), 1u);
    const Points ring = ringOfPiece(pieces[0]);
    ASSERT_EQ(ring.size(), 6u);
    const auto isMiddle = [](MzPoint point) { return point.x == 5 && point.y == 4; };
    EXPECT_EQ(std::ranges::count_if(ring, isMiddle), 1);
}

TEST(ViewCutter, ShowsTheGlobeAgainBeyondTheAntimeridian) {
    const ViewCutter cutter = degreesCutter({{170, -20}, {20, 20}});
    const auto pieces = cutter.cut(area({{-180, -5}, {-175, -5}, {-175, -1}, {-180, -5}}));
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_EQ(boundsOf(*pieces[0]), (BoundingBox{180, -5, 185, -1}));
    const ViewCutter zone60{MzMapProjection::mapProjectionWithUTMZone(60),
                            region({{-1e7, -1e7}, {2e7, 2e7}})};
    const auto moved = zone60.cut(line({{-179, 1}, {-178, 2}}));
    ASSERT_EQ(moved.size(), 1u);
    EXPECT_EQ(boundsOf(*moved[0]), (BoundingBox{181, 1, 182, 2}));
}

TEST(ViewCutter, CutsOffWhatAZoneCannotReach) {
    const ViewCutter cutter{MzMapProjection::mapProjectionWithUTMZone(33),
                            region({{-2e7, -1e7}, {4e7, 2e7}})};
    const auto world = cutter.cut(area({{-180, 0}, {180, 0}, {180, 80}, {-180, 80}, {-180, 0}}));
    ASSERT_EQ(world.size(), 1u);
    EXPECT_EQ(boundsOf(*world[0]), (BoundingBox{-55, 0, 85, 80}));
    Points towns{{10, 60}, {170, 60}, {-170, -40}};
    const auto points =
        cutter.cut({Form::Points, MzMultiPointGeometry::initWithMultiPoint({3, towns.data()})});
    ASSERT_EQ(points.size(), 1u);
    EXPECT_EQ(pointsOfPiece(points[0]).size(), 1u);
}

// --- laws, with the library's clippers behind

constexpr unsigned kSeed = 20240607;
constexpr MzRect kRect{{0, 0}, {10, 10}};

Points randomPoints(std::mt19937_64& random, int count) {
    std::uniform_real_distribution<double> coordinate{-10, 20};
    Points points;
    for (int i = 0; i < count; ++i) points.push_back({coordinate(random), coordinate(random)});
    return points;
}

double distanceToSegment(MzPoint point, MzPoint a, MzPoint b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double length = dx * dx + dy * dy;
    const double along = ((point.x - a.x) * dx + (point.y - a.y) * dy) / length;
    const double t = std::clamp(along, 0.0, 1.0);
    return std::hypot(point.x - a.x - t * dx, point.y - a.y - t * dy);
}

double distanceToLine(MzPoint point, const Points& line) {
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t i = 1; i < line.size(); ++i) {
        nearest = std::min(nearest, distanceToSegment(point, line[i - 1], line[i]));
    }
    return nearest;
}

TEST(ViewCutter, MakesLinesThatAreDrawnWhereTheyAre) {
    std::mt19937_64 random{kSeed};
    const ViewCutter cutter = degreesCutter(kRect);
    const auto clip = region(kRect);
    for (int round = 0; round < 2000; ++round) {
        const Points points = randomPoints(random, 8);
        for (const auto& piece : cutter.cut(line(points))) {
            auto* polyline = static_cast<MzMultiPointGeometry*>(piece.get());
            const auto drawn = pointsOf(polyline->clippedLineStringWithRegion(clip.get()));
            for (std::size_t i = 1; i < drawn.size(); ++i) {
                const MzPoint middle{(drawn[i - 1].x + drawn[i].x) / 2,
                                     (drawn[i - 1].y + drawn[i].y) / 2};
                ASSERT_LT(distanceToLine(middle, points), 1e-9) << "seed " << kSeed << " " << round;
            }
        }
    }
}

bool isInside(std::span<const MzPoint> ring, MzPoint point) {
    bool inside = false;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const MzPoint a = ring[i == 0 ? ring.size() - 1 : i - 1];
        const MzPoint b = ring[i];
        const bool crosses = (a.y > point.y) != (b.y > point.y);
        const double x = a.x + (point.y - a.y) / (b.y - a.y) * (b.x - a.x);
        if (crosses && point.x < x) inside = !inside;
    }
    return inside;
}

TEST(ViewCutter, MakesRingsThatAreFilledWhereTheyAre) {
    std::mt19937_64 random{kSeed};
    std::uniform_real_distribution<double> within{0.01, 9.99};
    const ViewCutter cutter = degreesCutter(kRect);
    const auto clip = region(kRect);
    for (int round = 0; round < 2000; ++round) {
        Points ring = randomPoints(random, 7);
        ring.push_back(ring.front());
        const auto pieces = cutter.cut(area(ring));
        for (int sample = 0; sample < 50; ++sample) {
            const MzPoint point{within(random), within(random)};
            if (distanceToLine(point, ring) < 1e-6) continue;
            bool drawn = false;
            for (const auto& piece : pieces) {
                auto* polygon = static_cast<MzPolygonGeometry*>(piece.get());
                const MzPolygon* clipped = polygon->clippedPolygonWithRegion(clip.get());
                drawn = drawn != isInside(pointsOf(&clipped->rings[0]), point);
            }
            ASSERT_EQ(drawn, isInside(ring, point)) << "seed " << kSeed << " round " << round;
        }
    }
}

}  // namespace
}  // namespace mezalith::host
