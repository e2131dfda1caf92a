// SPDX-License-Identifier: MIT
#include <mezalith/platform/path_cutting.hpp>

#include <array>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

constexpr DeviceBox box{0, 0, 10, 10};
constexpr unsigned seed = 20240517;

std::vector<DevicePolyline> linesOf(const DevicePath& path) {
    return flattenedPath(path, 0.01, grownBox(box, 1e9));
}

DevicePath polygon(std::span<const MzPoint> points) {
    DevicePath path;
    path.addLines(points, {});
    path.close();
    return path;
}

DevicePath polyline(std::span<const MzPoint> points) {
    DevicePath path;
    path.addLines(points, {});
    return path;
}

/// How often the edges of a path, all subpaths closed, cross the ray from `p` to the right.
int crossings(const DevicePath& path, MzPoint p) {
    int count = 0;
    for (const DevicePolyline& line : linesOf(path)) {
        const auto& points = line.points;
        for (std::size_t i = 0; i < points.size(); ++i) {
            const MzPoint& a = points[i];
            const MzPoint& b = points[(i + 1) % points.size()];
            if ((a.y <= p.y) != (b.y <= p.y) &&
                a.x + (p.y - a.y) / (b.y - a.y) * (b.x - a.x) > p.x) {
                count += a.y < b.y ? 1 : -1;
            }
        }
    }
    return count;
}

TEST(FlattenedPath, KeepsLinesAsTheyAre) {
    DevicePath path;
    path.moveTo({1, 1});
    path.lineTo({2, 2});
    path.close();
    path.moveTo({3, 3});
    const auto lines = linesOf(path);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0].points.size(), 2);
    EXPECT_TRUE(lines[0].isClosed);
    EXPECT_EQ(lines[1].points.size(), 1);
    EXPECT_FALSE(lines[1].isClosed);
}

TEST(FlattenedPath, StaysWithinItsTolerance) {
    DevicePath path;
    path.addEllipse({{-100, -100}, {200, 200}}, {});
    for (const double tolerance : {1.0, 0.1, 0.01}) {
        const auto lines = flattenedPath(path, tolerance, {-200, -200, 200, 200});
        ASSERT_EQ(lines.size(), 1);
        const auto& points = lines[0].points;
        for (std::size_t i = 1; i < points.size(); ++i) {
            const MzPoint m = pointOnSegment(points[i - 1], points[i], 0.5);
            EXPECT_GE(std::hypot(m.x, m.y), 100 - tolerance - 0.03);
        }
        EXPECT_LT(static_cast<double>(points.size()), 200 / std::sqrt(tolerance));
    }
}

TEST(FlattenedPath, DoesNotRefineWhatLiesBesideTheBox) {
    DevicePath path;
    path.addEllipse({{1e6, 1e6}, {1e6, 1e6}}, {});
    EXPECT_EQ(flattenedPath(path, 0.01, box)[0].points.size(), 5);
}

TEST(FlattenedPath, EndsForCurvesOfAnySize) {
    DevicePath path;
    path.moveTo({-1e308, -1e308});
    path.curveTo({1e308, -1e308}, {-1e308, 1e308}, {1e308, 1e308});
    const auto lines = flattenedPath(path, 0.1, box);
    EXPECT_LT(lines[0].points.size(), 10000);
}

TEST(SegmentWithin, GivesThePartInsideTheBox) {
    const SegmentPart crossing = segmentWithin({-10, 5}, {30, 5}, box);
    EXPECT_DOUBLE_EQ(crossing.from, 0.25);
    EXPECT_DOUBLE_EQ(crossing.to, 0.5);
    const SegmentPart inside = segmentWithin({1, 1}, {9, 9}, box);
    EXPECT_EQ(inside.from, 0);
    EXPECT_EQ(inside.to, 1);
    EXPECT_TRUE(segmentWithin({-10, 5}, {5, 30}, box).isEmpty());
    EXPECT_TRUE(segmentWithin({-10, 11}, {30, 11}, box).isEmpty());
    EXPECT_FALSE(segmentWithin({-10, 10}, {30, 10}, box).isEmpty());
}

TEST(SegmentWithin, HoldsTheLargestNumbers) {
    const SegmentPart part = segmentWithin({-1e308, -1e308}, {1e308, 1e308}, box);
    EXPECT_DOUBLE_EQ(part.from, 0.5);
    EXPECT_DOUBLE_EQ(part.to, 0.5);
}

TEST(CutArea, CutsAtASideAndKeepsTheSlope) {
    const DevicePath cut =
        cutArea(polygon(std::array{MzPoint{5, 0}, MzPoint{25, 10}, MzPoint{5, 10}}), box, 0.1);
    const auto lines = linesOf(cut);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].isClosed);
    ASSERT_EQ(lines[0].points.size(), 4);
    EXPECT_DOUBLE_EQ(lines[0].points[1].x, 10);
    EXPECT_DOUBLE_EQ(lines[0].points[1].y, 2.5);
}

TEST(CutArea, OfAPathAroundTheBoxIsTheBox) {
    const DevicePath cut = cutArea(
        polygon(std::array{MzPoint{-9e9, -9e9}, MzPoint{9e9, -9e9}, MzPoint{0, 1e300}}), box, 0.1);
    EXPECT_EQ(cut.bounds(), box);
    EXPECT_EQ(crossings(cut, {0.01, 9.99}), crossings(cut, {9.99, 0.01}));
    EXPECT_NE(crossings(cut, {5, 5}), 0);
}

TEST(CutArea, OfAPathBesideTheBoxIsNothing) {
    EXPECT_TRUE(
        cutArea(polygon(std::array{MzPoint{11, 0}, MzPoint{20, 0}, MzPoint{20, 10}}), box, 0.1)
            .isEmpty());
}

TEST(CutArea, KeepsWindingNumbersInsideTheBox) {
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> coordinate(-30, 40);
    std::uniform_real_distribution<double> inside(0, 10);
    for (int round = 0; round < 300; ++round) {
        std::vector<MzPoint> points(static_cast<std::size_t>(3 + round % 12));
        for (MzPoint& point : points) {
            point = {coordinate(random), coordinate(random)};
        }
        const DevicePath whole = polyline(points);
        const DevicePath cut = cutArea(whole, box, 0.1);
        EXPECT_TRUE(cut.isEmpty() || grownBox(box, 1e-9).contains(cut.bounds()));
        for (int i = 0; i < 20; ++i) {
            const MzPoint p{inside(random), inside(random)};
            ASSERT_EQ(crossings(cut, p), crossings(whole, p)) << "seed " << seed << ' ' << round;
        }
    }
}

TEST(CutOutline, CutsLinesWhereTheyLeaveAndComeBack) {
    const DevicePath cut =
        cutOutline(polyline(std::array{MzPoint{-1e9, -0.5e9}, MzPoint{1e9, 0.5e9}}), box, 0.1);
    const auto lines = linesOf(cut);
    ASSERT_EQ(lines.size(), 1);
    EXPECT_NEAR(lines[0].points[0].y, 0, 1e-6);
    EXPECT_NEAR(lines[0].points[1].x, 10, 1e-6);
    EXPECT_NEAR(lines[0].points[1].y, 5, 1e-6);
}

TEST(CutOutline, JoinsNothingAlongTheSides) {
    const auto lines = linesOf(cutOutline(
        polyline(std::array{MzPoint{5, 5}, MzPoint{15, 5}, MzPoint{15, 8}, MzPoint{5, 8}}), box,
        0.1));
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0].points.back().x, 10);
    EXPECT_EQ(lines[0].points.back().y, 5);
    EXPECT_EQ(lines[1].points.front().y, 8);
}

TEST(CutOutline, KeepsWhatLiesInside) {
    const std::array points{MzPoint{1, 1}, MzPoint{9, 1}, MzPoint{9, 9}};
    const auto ring = linesOf(cutOutline(polygon(points), box, 0.1));
    ASSERT_EQ(ring.size(), 1);
    EXPECT_TRUE(ring[0].isClosed);
    EXPECT_EQ(ring[0].points.size(), 3);
    const auto open = linesOf(cutOutline(polyline(points), box, 0.1));
    ASSERT_EQ(open.size(), 1);
    EXPECT_FALSE(open[0].isClosed);
    EXPECT_EQ(open[0].points.size(), 3);
}

TEST(CutOutline, KeepsTheCornerWhereARingBegins) {
    const auto lines = linesOf(cutOutline(
        polygon(std::array{MzPoint{5, 5}, MzPoint{20, 5}, MzPoint{20, 20}, MzPoint{5, 20}}), box,
        0.1));
    ASSERT_EQ(lines.size(), 1);
    ASSERT_EQ(lines[0].points.size(), 3);
    EXPECT_EQ(lines[0].points[1].x, 5);
    EXPECT_EQ(lines[0].points[1].y, 5);
    EXPECT_FALSE(lines[0].isClosed);
}

TEST(CutOutline, OfALineThroughACornerOnlyIsHarmless) {
    const DevicePath cut =
        cutOutline(polyline(std::array{MzPoint{-5, 5}, MzPoint{5, 15}}), box, 0.1);
    EXPECT_LE(cut.points().size(), 2);
}

}  // namespace
}  // namespace mezalith::platform
