// SPDX-License-Identifier: MIT
#include <mezalith/platform/device_path.hpp>

#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <string>

#include <gtest/gtest.h>

namespace mezalith {

static void PrintTo(const MzPoint& point, std::ostream* stream) {
    *stream << '(' << point.x << ' ' << point.y << ')';
}

static bool operator==(const MzPoint& a, const MzPoint& b) { return a.x == b.x && a.y == b.y; }

}  // namespace mezalith

namespace mezalith::platform {
namespace {

using Points = std::vector<MzPoint>;

constexpr double infinity = std::numeric_limits<double>::infinity();
const double nan = std::nan("");

/// One letter per element.
std::string verbsOf(const DevicePath& path) {
    std::string text;
    for (const DevicePath::Verb verb : path.verbs()) {
        text += "MLCZ"[static_cast<int>(verb)];
    }
    return text;
}

Points pointsOf(const DevicePath& path) { return {path.points().begin(), path.points().end()}; }

TEST(DeviceBox, GrowsAndMeets) {
    EXPECT_EQ(grownBox({1, 2, 3, 4}, 0.5), (DeviceBox{0.5, 1.5, 3.5, 4.5}));
    EXPECT_EQ(commonBox({0, 0, 4, 4}, {2, -1, 9, 3}), (DeviceBox{2, 0, 4, 3}));
    EXPECT_TRUE(commonBox({0, 0, 1, 1}, {2, 0, 3, 1}).isEmpty());
    EXPECT_TRUE((DeviceBox{0, 0, nan, 1}).isEmpty());
    EXPECT_FALSE((DeviceBox{0, 0, 0, 1}).isEmpty());
    EXPECT_TRUE((DeviceBox{0, 0, 4, 4}).contains({0, 1, 4, 4}));
    EXPECT_FALSE((DeviceBox{0, 0, 4, 4}).contains({0, 1, 4.1, 4}));
}

TEST(DevicePath, HoldsItsElementsInOrder) {
    DevicePath path;
    EXPECT_TRUE(path.isEmpty());
    path.moveTo({1, 2});
    path.lineTo({3, 4});
    path.curveTo({5, 6}, {7, 8}, {9, 10});
    path.close();
    EXPECT_EQ(verbsOf(path), "MLCZ");
    EXPECT_EQ(pointsOf(path), (Points{{1, 2}, {3, 4}, {5, 6}, {7, 8}, {9, 10}}));
    EXPECT_EQ(path.bounds(), (DeviceBox{1, 2, 9, 10}));
    path.clear();
    EXPECT_TRUE(path.isEmpty());
    EXPECT_TRUE(path.bounds().isEmpty());
    EXPECT_EQ(path.currentPoint(), std::nullopt);
}

TEST(DevicePath, KeepsOnlyTheLastOfSeveralStarts) {
    DevicePath path;
    path.moveTo({1, 1});
    path.moveTo({2, 2});
    path.lineTo({3, 3});
    EXPECT_EQ(verbsOf(path), "ML");
    EXPECT_EQ(pointsOf(path), (Points{{2, 2}, {3, 3}}));
    DevicePath lines;
    lines.moveTo({1, 1});
    lines.addLines(std::array{MzPoint{2, 2}, MzPoint{3, 3}}, {});
    EXPECT_EQ(pointsOf(lines), pointsOf(path));
    EXPECT_EQ(verbsOf(lines), "ML");
}

TEST(DevicePath, BeginsASubpathWithTheFirstPointOfALineOrCurve) {
    DevicePath line;
    line.lineTo({1, 1});
    line.lineTo({2, 2});
    EXPECT_EQ(verbsOf(line), "ML");
    DevicePath curve;
    curve.curveTo({1, 1}, {2, 2}, {3, 3});
    EXPECT_EQ(verbsOf(curve), "MC");
    EXPECT_EQ(pointsOf(curve).front(), (MzPoint{1, 1}));
}

TEST(DevicePath, GoesOnFromTheStartAfterClosing) {
    DevicePath path;
    path.close();
    EXPECT_TRUE(path.isEmpty());
    path.moveTo({1, 1});
    path.lineTo({2, 2});
    path.close();
    path.close();
    EXPECT_EQ(path.currentPoint(), (MzPoint{1, 1}));
    path.lineTo({5, 5});
    EXPECT_EQ(verbsOf(path), "MLZML");
    EXPECT_EQ(pointsOf(path), (Points{{1, 1}, {2, 2}, {1, 1}, {5, 5}}));
    EXPECT_EQ(path.currentPoint(), (MzPoint{5, 5}));
}

TEST(DevicePath, LeavesOutWhatIsNotFinite) {
    DevicePath path;
    path.moveTo({0, 0});
    path.lineTo({nan, 1});
    path.lineTo({1, infinity});
    path.curveTo({1, 1}, {-infinity, 1}, {2, 2});
    path.lineTo({3, 3});
    EXPECT_EQ(pointsOf(path), (Points{{0, 0}, {3, 3}}));
}

TEST(DevicePath, DoesNotJoinAPointToTheSubpathBeforeALostStart) {
    DevicePath path;
    path.moveTo({0, 0});
    path.lineTo({1, 0});
    path.moveTo({nan, nan});
    EXPECT_EQ(path.currentPoint(), std::nullopt);
    path.close();
    path.lineTo({5, 5});
    path.lineTo({6, 6});
    EXPECT_EQ(verbsOf(path), "MLML");
    EXPECT_EQ(pointsOf(path), (Points{{0, 0}, {1, 0}, {5, 5}, {6, 6}}));
}

TEST(DevicePath, AddsASpanAsItAddsSinglePoints) {
    const AffineTransform transform{2, 0.5, -1, 3, 10, 20};
    for (const Points& points : {Points{}, Points{{1, 2}}, Points{{1, 2}, {3, 4}, {5, 6}},
                                 Points{{nan, 2}, {3, 4}, {5, 6}},
                                 Points{{1, 2}, {infinity, 4}, {5, 6}}, Points{{nan, nan}}}) {
        DevicePath span;
        DevicePath single;
        for (DevicePath* path : {&span, &single}) {
            path->moveTo({7, 7});
            path->lineTo({8, 8});
        }
        span.addLines(points, transform);
        for (std::size_t i = 0; i < points.size(); ++i) {
            const MzPoint mapped = transform.transformPoint(points[i]);
            i == 0 ? single.moveTo(mapped) : single.lineTo(mapped);
        }
        EXPECT_EQ(verbsOf(span), verbsOf(single));
        EXPECT_EQ(pointsOf(span), pointsOf(single));
        EXPECT_EQ(span.currentPoint(), single.currentPoint());
    }
}

TEST(DevicePath, AddsAnEllipseFromTheRightCounterClockwise) {
    DevicePath path;
    path.addEllipse({{-2, -1}, {4, 2}}, {});
    EXPECT_EQ(verbsOf(path), "MCCCCZ");
    EXPECT_EQ(path.points()[0], (MzPoint{2, 0}));
    EXPECT_EQ(path.points()[3], (MzPoint{0, 1}));
    EXPECT_EQ(path.points()[6], (MzPoint{-2, 0}));
    EXPECT_EQ(path.points()[9], (MzPoint{0, -1}));
    EXPECT_EQ(path.points()[12], (MzPoint{2, 0}));
}

MzPoint onCurve(std::span<const MzPoint> p, double t) {
    const double s = 1 - t;
    const double w[] = {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
    return {w[0] * p[0].x + w[1] * p[1].x + w[2] * p[2].x + w[3] * p[3].x,
            w[0] * p[0].y + w[1] * p[1].y + w[2] * p[2].y + w[3] * p[3].y};
}

TEST(DevicePath, DrawsACircleWithinItsTolerance) {
    DevicePath path;
    path.addEllipse({{-1, -1}, {2, 2}}, {});
    for (std::size_t quarter = 0; quarter < 4; ++quarter) {
        for (double t = 0; t <= 1; t += 0.125) {
            const MzPoint p = onCurve(path.points().subspan(3 * quarter, 4), t);
            EXPECT_NEAR(std::hypot(p.x, p.y), 1, 3e-4);
        }
    }
}

TEST(DevicePath, RoundsACornerByATangentArc) {
    DevicePath path;
    path.moveTo({0, 0});
    path.addArc({10, 0}, {10, 10}, 4, {});
    EXPECT_EQ(verbsOf(path), "MLCC");
    EXPECT_NEAR(path.points()[1].x, 6, 1e-12);
    EXPECT_NEAR(path.points()[1].y, 0, 1e-12);
    EXPECT_NEAR(path.points().back().x, 10, 1e-12);
    EXPECT_NEAR(path.points().back().y, 4, 1e-12);
    for (const std::size_t first : {1, 4}) {
        for (double t = 0; t <= 1; t += 0.125) {
            const MzPoint p = onCurve(path.points().subspan(first, 4), t);
            EXPECT_NEAR(std::hypot(p.x - 6, p.y - 4), 4, 4 * 3e-4);
        }
    }
}

TEST(DevicePath, RoundsASharpTurnByMoreThanAQuarter) {
    DevicePath path;
    path.moveTo({0, 0});
    path.addArc({10, 0}, {0, 1}, 0.1, {});
    const double angle = std::atan2(1, 10);
    const double tangent = 0.1 / std::tan(angle / 2);
    const MzPoint center{10 - tangent, 0.1};
    EXPECT_NEAR(path.points()[1].x, center.x, 1e-12);
    for (const std::size_t first : {1, 4}) {
        for (double t = 0; t <= 1; t += 0.125) {
            const MzPoint p = onCurve(path.points().subspan(first, 4), t);
            EXPECT_NEAR(std::hypot(p.x - center.x, p.y - center.y), 0.1, 0.1 * 3e-4);
        }
    }
}

TEST(DevicePath, AnArcIsRoundInTheSpaceOfItsTransform) {
    const AffineTransform transform{3, 0, 0, -2, 100, 50};
    DevicePath plain;
    plain.moveTo({0, 0});
    plain.addArc({10, 0}, {10, 10}, 4, {});
    plain.transform(transform);
    DevicePath mapped;
    mapped.moveTo(transform.transformPoint({0, 0}));
    mapped.addArc({10, 0}, {10, 10}, 4, transform);
    ASSERT_EQ(verbsOf(mapped), verbsOf(plain));
    for (std::size_t i = 0; i < plain.points().size(); ++i) {
        EXPECT_NEAR(mapped.points()[i].x, plain.points()[i].x, 1e-12);
        EXPECT_NEAR(mapped.points()[i].y, plain.points()[i].y, 1e-12);
    }
}

TEST(DevicePath, ReplacesAnImpossibleArcByALineToTheCorner) {
    struct Case {
        MzPoint end;
        double radius;
        AffineTransform transform;
    };
    for (const Case& c :
         {Case{{20, 0}, 4, {}}, Case{{0, 0}, 4, {}}, Case{{10, 0}, 4, {}}, Case{{10, 10}, 0, {}},
          Case{{10, 10}, -1, {}}, Case{{10, 10}, nan, {}}, Case{{10, 10}, infinity, {}},
          Case{{10, 10}, 4, {1, 0, 0, 0, 0, 0}}, Case{{nan, 10}, 4, {}}}) {
        DevicePath path;
        path.moveTo({0, 0});
        path.addArc({10, 0}, c.end, c.radius, c.transform);
        EXPECT_EQ(pointsOf(path), (Points{{0, 0}, {10, 0}})) << c.radius;
    }
    DevicePath empty;
    empty.addArc({10, 0}, {10, 10}, 4, {});
    EXPECT_EQ(verbsOf(empty), "M");
}

TEST(DevicePath, MapsAllItsPoints) {
    DevicePath path;
    path.moveTo({1, 1});
    path.lineTo({2, 1});
    path.close();
    path.transform({2, 0, 0, 3, 1, 1});
    EXPECT_EQ(pointsOf(path), (Points{{3, 4}, {5, 4}}));
    EXPECT_EQ(path.currentPoint(), (MzPoint{3, 4}));
}

}  // namespace
}  // namespace mezalith::platform
