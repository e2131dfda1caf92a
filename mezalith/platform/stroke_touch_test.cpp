// SPDX-License-Identifier: MIT
#include <mezalith/platform/stroke_touch.hpp>

#include <array>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

/// A stroke to be asked.
struct Stroke {
    DevicePath path;
    StrokeStyle style;
    AffineTransform transform;

    Stroke(std::initializer_list<MzPoint> points, double width, LineCap cap = LineCap::Butt,
           LineJoin join = LineJoin::Miter) {
        path.addLines(std::vector(points), {});
        style.width = width;
        style.cap = cap;
        style.join = join;
    }

    bool at(double x, double y, double radius = 0.01) const {
        const auto pen = makePen(style, transform, 32768);
        return pen && touchesStroke(path, *pen, {{x, y}, radius});
    }
};

TEST(TouchesStroke, HasTheWidthOfThePen) {
    const Stroke line({{0, 0}, {100, 0}}, 10);
    EXPECT_TRUE(line.at(50, 4.98));
    EXPECT_FALSE(line.at(50, 5.02));
    EXPECT_TRUE(line.at(50, 7, 2));
    EXPECT_FALSE(line.at(50, 7, 1.99));
}

TEST(TouchesStroke, EndsByItsCap) {
    const Stroke butt({{0, 0}, {100, 0}}, 10, LineCap::Butt);
    const Stroke round({{0, 0}, {100, 0}}, 10, LineCap::Round);
    const Stroke square({{0, 0}, {100, 0}}, 10, LineCap::Square);
    for (const double side : {-0.02, 100.02}) {
        const double out = side < 0 ? -1 : 1;
        EXPECT_FALSE(butt.at(side, 0));
        EXPECT_TRUE(round.at(side + out * 4.9, 0));
        EXPECT_FALSE(round.at(side + out * 5.1, 0));
        EXPECT_FALSE(round.at(side + out * 4, 4));
        EXPECT_TRUE(square.at(side + out * 4.9, 4.9));
        EXPECT_FALSE(square.at(side + out * 5.1, 0));
    }
}

TEST(TouchesStroke, JoinsAsItsJoinSays) {
    const auto corner = [](LineJoin join) {
        return Stroke({{0, 0}, {100, 0}, {100, 100}}, 10, LineCap::Butt, join);
    };
    const Stroke miter = corner(LineJoin::Miter);
    const Stroke round = corner(LineJoin::Round);
    const Stroke bevel = corner(LineJoin::Bevel);
    EXPECT_TRUE(miter.at(104.9, -4.9));
    EXPECT_FALSE(round.at(104.9, -4.9));
    EXPECT_TRUE(round.at(103.5, -3.5));
    EXPECT_FALSE(round.at(103.6, -3.6));
    EXPECT_FALSE(bevel.at(103.5, -3.5));
    EXPECT_TRUE(bevel.at(102.4, -2.4));
    EXPECT_FALSE(bevel.at(102.6, -2.6));
    EXPECT_FALSE(miter.at(94, 6));
}

TEST(TouchesStroke, CutsLongMitresOff) {
    // A turn by 180 - 11 degrees is within the limit of ten widths, by 180 - 12 it is not.
    const auto spike = [](double degrees) {
        const double angle = degrees * std::acos(-1.0) / 180;
        return Stroke({{0, 0}, {100, 0}, {100 - 80 * std::cos(angle), 80 * std::sin(angle)}}, 10);
    };
    EXPECT_TRUE(spike(12).at(130, 0, 2));
    EXPECT_FALSE(spike(11).at(130, 0, 20));
}

TEST(TouchesStroke, ClosesRingsWithAJoin) {
    Stroke open({{0, 0}, {100, 0}, {100, 100}, {0, 100}, {0, 0}}, 10);
    EXPECT_FALSE(open.at(-4, -4));
    open.path.close();
    EXPECT_TRUE(open.at(-4.9, -4.9));
    Stroke triangle({{0, 0}, {100, 0}, {0, 100}}, 10, LineCap::Round);
    triangle.path.close();
    EXPECT_TRUE(triangle.at(0, 50));
    EXPECT_TRUE(triangle.at(-4.9, -4.9));
    EXPECT_FALSE(triangle.at(30, 30));
}

TEST(TouchesStroke, DrawsPlacesAsDotsWithRoundCapsOnly) {
    for (const bool closed : {false, true}) {
        Stroke round({{5, 5}, {5, 5}}, 10, LineCap::Round);
        Stroke square({{5, 5}, {5, 5}}, 10, LineCap::Square);
        if (closed) {
            round.path.close();
            square.path.close();
        }
        EXPECT_TRUE(round.at(5, 9.9));
        EXPECT_TRUE(round.at(1.6, 1.6));
        EXPECT_FALSE(round.at(1, 1));
        EXPECT_FALSE(square.at(5, 5));
    }
    const Stroke moved({{5, 5}}, 10, LineCap::Round);
    EXPECT_FALSE(moved.at(5, 5));
}

TEST(TouchesStroke, LeavesGapsBetweenDashes) {
    Stroke line({{0, 0}, {100, 0}}, 4);
    line.style.dashLengths = {10, 20};
    EXPECT_TRUE(line.at(9.9, 0));
    EXPECT_FALSE(line.at(10.1, 0));
    EXPECT_TRUE(line.at(30.1, 0));
    EXPECT_FALSE(line.at(29.9, 0));
    line.style.dashPhase = 5;
    EXPECT_FALSE(line.at(5.1, 0));
    EXPECT_TRUE(line.at(25.1, 0));
    line.style.cap = LineCap::Round;
    EXPECT_TRUE(line.at(6.9, 0));
    EXPECT_FALSE(line.at(6.9, 1.9));
    line.style.cap = LineCap::Square;
    EXPECT_TRUE(line.at(6.9, 1.9));
}

TEST(TouchesStroke, KnowsHowLongCurvesAreThatLieElsewhere) {
    Stroke circle({}, 2);
    circle.path.addEllipse({{0, 0}, {100, 100}}, {});
    circle.style.dashLengths = {10, 10};
    const auto isPaintedAt = [&](double length) {
        return circle.at(50 + 50 * std::cos(length / 50), 50 + 50 * std::sin(length / 50));
    };
    for (double length = 0.5; length < 310; length += 10) {
        const bool isOn = std::fmod(length, 20) < 10;
        EXPECT_EQ(isPaintedAt(length + 1), isOn) << length;
        EXPECT_EQ(isPaintedAt(length + 8), isOn) << length;
    }
}

TEST(TouchesStroke, ShowsDashesOfNoLengthByTheirCaps) {
    Stroke line({{0, 0}, {30, 40}}, 8);
    line.style.dashLengths = {0, 20};
    EXPECT_FALSE(line.at(12, 16));
    line.style.cap = LineCap::Round;
    EXPECT_TRUE(line.at(12, 16));
    EXPECT_TRUE(line.at(12 + 2.3, 16 + 3.1));
    EXPECT_FALSE(line.at(12 + 2.5, 16 + 3.3));
    // A corner of the square, which runs with the line.
    EXPECT_FALSE(line.at(12 + 2.3 - 3.1, 16 + 3.1 + 2.3));
    line.style.cap = LineCap::Square;
    EXPECT_TRUE(line.at(12 + 2.3 - 3.1, 16 + 3.1 + 2.3));
    EXPECT_FALSE(line.at(12 + 5.2, 16));
}

TEST(TouchesStroke, CarriesDashesRoundCorners) {
    Stroke ring({{0, 0}, {40, 0}, {40, 40}, {0, 40}}, 4);
    ring.path.close();
    ring.style.dashLengths = {30, 20};
    // Painted: 0-30, 50-80, 100-130, 150-160 and on.
    EXPECT_FALSE(ring.at(35, 0));
    EXPECT_TRUE(ring.at(40, 11));
    EXPECT_TRUE(ring.at(41.9, 39.9));
    EXPECT_FALSE(ring.at(41.9, 41.9)) << "ends at the corner";
    EXPECT_FALSE(ring.at(30, 40));
    EXPECT_TRUE(ring.at(-1.9, -1.9)) << "the last dash goes on in the first";
}

TEST(TouchesStroke, FollowsCurvesWithRoundTurns) {
    for (const std::vector<double>& dashes : {std::vector<double>{}, {1000, 1}}) {
        // Out to x = 75 and back, where the curve turns on the spot.
        Stroke curve({{0, 0}}, 10, LineCap::Butt, LineJoin::Miter);
        curve.path.curveTo({100, 0}, {100, 0}, {0, 0});
        curve.style.dashLengths = dashes;
        EXPECT_TRUE(curve.at(60, 4.9));
        EXPECT_TRUE(curve.at(79.8, 0));
        EXPECT_FALSE(curve.at(80.2, 0));
        EXPECT_FALSE(curve.at(79, 4));
    }
    Stroke mixed({{0, 0}, {50, 0}, {50, 50}}, 10);
    mixed.path.curveTo({50, 80}, {80, 80}, {80, 50});
    mixed.style.dashLengths = {1000, 1};
    EXPECT_TRUE(mixed.at(54.9, -4.9)) << "a corner between lines is a mitre still";
}

TEST(TouchesStroke, JoinsCurvesInTheirOwnDirection) {
    // Sets out straight back, which no mitre joins, and turns at once.
    Stroke curve({{0, 0}, {50, 0}}, 10);
    curve.path.curveTo({49.5, 0}, {50, 2}, {20, 80});
    EXPECT_FALSE(curve.at(60, -2, 4));
    EXPECT_TRUE(curve.at(53, 3));
}

TEST(TouchesStroke, HasThePensShapeUnderTheTransform) {
    Stroke line({{0, 0}, {100, 0}}, 10, LineCap::Round);
    line.transform = {1, 0, 0, 3, 0, 0};
    EXPECT_TRUE(line.at(50, 14.9));
    EXPECT_FALSE(line.at(50, 15.1));
    EXPECT_TRUE(line.at(104.9, 0));
    EXPECT_FALSE(line.at(105.1, 0));
    EXPECT_TRUE(line.at(50, 20, 5.1));
    EXPECT_FALSE(line.at(50, 20, 4.9));
    line.transform = {2, 0, 0, 2, 0, 0};
    EXPECT_TRUE(line.at(50, 9.9));
    EXPECT_FALSE(line.at(50, 10.1));
    line.transform = {1, 0, 0, 0, 0, 0};
    EXPECT_FALSE(line.at(50, 0));
}

TEST(TouchesStroke, TakesLinesThatBeginFarAway) {
    const Stroke line({{-1e9, 0}, {1e9, 0}}, 10);
    EXPECT_TRUE(line.at(50, 4.9));
    EXPECT_FALSE(line.at(50, 5.1));
    Stroke dashed({{-1e9, 0}, {1e9, 0}}, 4);
    dashed.style.dashLengths = {10, 10};
    EXPECT_NE(dashed.at(5, 0), dashed.at(15, 0));
}

}  // namespace
}  // namespace mezalith::platform
