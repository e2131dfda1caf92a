// SPDX-License-Identifier: MIT
#include <mezalith/platform/area_touch.hpp>

#include <array>
#include <cmath>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

constexpr unsigned seed = 20240618;

void addSquare(DevicePath& path, double from, double to, bool turned = false) {
    if (turned) {
        path.addLines(
            std::array{MzPoint{from, from}, MzPoint{from, to}, MzPoint{to, to}, MzPoint{to, from}},
            {});
    } else {
        path.addLines(
            std::array{MzPoint{from, from}, MzPoint{to, from}, MzPoint{to, to}, MzPoint{from, to}},
            {});
    }
    path.close();
}

Touch touchAt(const DevicePath& path, FillRule rule, double x, double y, double radius) {
    return touchOfArea(path, rule, {{x, y}, radius});
}

TEST(TouchOfArea, TellsWhetherTheDiscIsWhollyInside) {
    DevicePath path;
    addSquare(path, 0, 10);
    for (const FillRule rule : {FillRule::Winding, FillRule::EvenOdd}) {
        EXPECT_EQ(touchAt(path, rule, 5, 5, 2), Touch::Wholly);
        EXPECT_EQ(touchAt(path, rule, 9, 5, 2), Touch::Partly);
        EXPECT_EQ(touchAt(path, rule, 11, 5, 2), Touch::Partly);
        EXPECT_EQ(touchAt(path, rule, 13, 5, 2), Touch::Apart);
        EXPECT_EQ(touchAt(path, rule, -3, 5, 2), Touch::Apart);
        EXPECT_EQ(touchAt(path, rule, 11, 11, 1.4), Touch::Apart);
        EXPECT_EQ(touchAt(path, rule, 11, 11, 1.5), Touch::Partly);
        EXPECT_EQ(touchAt(path, rule, 5, 5, 0), Touch::Wholly);
        EXPECT_EQ(touchAt(path, rule, 5, 11, 0), Touch::Apart);
    }
}

TEST(TouchOfArea, LeavesHolesByTheRule) {
    DevicePath same, other;
    addSquare(same, 0, 20);
    addSquare(same, 5, 15);
    addSquare(other, 0, 20);
    addSquare(other, 5, 15, true);
    EXPECT_EQ(touchAt(same, FillRule::EvenOdd, 10, 10, 2), Touch::Apart);
    EXPECT_EQ(touchAt(other, FillRule::EvenOdd, 10, 10, 2), Touch::Apart);
    EXPECT_EQ(touchAt(same, FillRule::Winding, 10, 10, 2), Touch::Wholly);
    EXPECT_EQ(touchAt(other, FillRule::Winding, 10, 10, 2), Touch::Apart);
    EXPECT_EQ(touchAt(other, FillRule::Winding, 10, 10, 5), Touch::Partly);
    EXPECT_EQ(touchAt(same, FillRule::Winding, 5, 10, 1), Touch::Partly);
}

TEST(TouchOfArea, DoesNotCountSidesWithNothingFilledNextToThem) {
    DevicePath twice, spike;
    addSquare(twice, 0, 10);
    addSquare(twice, 0, 10);
    EXPECT_EQ(touchAt(twice, FillRule::EvenOdd, 0, 5, 1), Touch::Apart);
    EXPECT_EQ(touchAt(twice, FillRule::Winding, 0, 5, 1), Touch::Partly);
    spike.addLines(
        std::array{MzPoint{0, 0}, MzPoint{10, 0}, MzPoint{0, 0}, MzPoint{0, -9}, MzPoint{-9, -9}},
        {});
    EXPECT_EQ(touchAt(spike, FillRule::Winding, 8, 0.5, 1), Touch::Apart);
    EXPECT_EQ(touchAt(spike, FillRule::Winding, -0.5, -5, 1), Touch::Partly);
    DevicePath point;
    point.moveTo({3, 3});
    point.close();
    EXPECT_EQ(touchAt(point, FillRule::Winding, 3, 3, 1), Touch::Apart);
    EXPECT_EQ(touchAt({}, FillRule::Winding, 3, 3, 1), Touch::Apart);
}

TEST(TouchOfArea, SeesThinAreasAndTipsOfNeedles) {
    DevicePath thin, needle;
    thin.addLines(std::array{MzPoint{0, 0}, MzPoint{50, 0}, MzPoint{50, 0.02}, MzPoint{0, 0.02}},
                  {});
    EXPECT_EQ(touchAt(thin, FillRule::EvenOdd, 25, 0.5, 0.7), Touch::Partly);
    needle.addLines(std::array{MzPoint{0, 0}, MzPoint{0, 2}, MzPoint{50, 1}}, {});
    EXPECT_EQ(touchAt(needle, FillRule::EvenOdd, 50.2, 1, 1), Touch::Partly);
    EXPECT_EQ(touchAt(needle, FillRule::EvenOdd, 51.2, 1, 1), Touch::Apart);
}

TEST(TouchOfArea, ClosesSubpathsAndFollowsCurves) {
    DevicePath open, circle;
    open.addLines(std::array{MzPoint{0, 0}, MzPoint{10, 0}, MzPoint{10, 10}}, {});
    EXPECT_EQ(touchAt(open, FillRule::Winding, 7, 3, 1), Touch::Wholly);
    EXPECT_EQ(touchAt(open, FillRule::Winding, 3, 7, 1), Touch::Apart);
    circle.addEllipse({{0, 0}, {100, 100}}, {});
    for (int degrees = 0; degrees < 360; degrees += 7) {
        const double x = std::cos(degrees * std::acos(-1.0) / 180);
        const double y = std::sin(degrees * std::acos(-1.0) / 180);
        EXPECT_EQ(touchAt(circle, FillRule::Winding, 50 + 51.9 * x, 50 + 51.9 * y, 2),
                  Touch::Partly);
        EXPECT_EQ(touchAt(circle, FillRule::Winding, 50 + 52.1 * x, 50 + 52.1 * y, 2),
                  Touch::Apart);
        EXPECT_EQ(touchAt(circle, FillRule::Winding, 50 + 47.9 * x, 50 + 47.9 * y, 2),
                  Touch::Wholly);
    }
}

TEST(TouchOfArea, TakesSidesThatBeginFarAway) {
    DevicePath path;
    path.addLines(std::array{MzPoint{-1e9, -1e9}, MzPoint{1e9, -1e9}, MzPoint{0, 5}}, {});
    EXPECT_EQ(touchAt(path, FillRule::EvenOdd, 0, 4, 0.1), Touch::Wholly);
    EXPECT_EQ(touchAt(path, FillRule::EvenOdd, 0, 6, 0.5), Touch::Apart);
    EXPECT_EQ(touchAt(path, FillRule::EvenOdd, 0, 6, 1.1), Touch::Partly);
}

/// Random polygons that cross themselves: what the discs of no radius within a disc say.
TEST(TouchOfArea, IsWhatManyPointsOfTheDiscSay) {
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> place(0, 10);
    int partly = 0;
    for (int round = 0; round < 1000; ++round) {
        std::vector<MzPoint> points(7);
        for (MzPoint& point : points) point = {place(random), place(random)};
        DevicePath path;
        path.addLines(points, {});
        const FillRule rule = round % 2 != 0 ? FillRule::EvenOdd : FillRule::Winding;
        const Disc disc{{place(random), place(random)}, place(random) / 5 + 0.1};
        int inside = 0;
        for (int i = 0; i < 200; ++i) {
            const double away = disc.radius * std::sqrt((i + 0.5) / 200);
            const MzPoint p{disc.center.x + away * std::cos(i * 2.399963),
                            disc.center.y + away * std::sin(i * 2.399963)};
            inside += touchOfArea(path, rule, {p, 0}) == Touch::Wholly ? 1 : 0;
        }
        const Touch touch = touchOfArea(path, rule, disc);
        partly += touch == Touch::Partly ? 1 : 0;
        ASSERT_TRUE(touch != Touch::Apart || inside == 0) << "round " << round;
        ASSERT_TRUE(touch != Touch::Wholly || inside == 200) << "round " << round;
        // Apart from what is smaller than the points are apart.
        const Touch well = touchOfArea(path, rule, {disc.center, disc.radius * 0.5});
        ASSERT_TRUE(well != Touch::Wholly || inside > 0) << "round " << round;
    }
    EXPECT_GT(partly, 300);
}

}  // namespace
}  // namespace mezalith::platform
