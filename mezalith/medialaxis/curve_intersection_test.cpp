// SPDX-License-Identifier: MIT
#include "mezalith/medialaxis/preferred_root.hpp"
#include "mezalith/medialaxis/test_support.hpp"
#include "mezalith/medialaxis/truncated_logarithm.hpp"
#include <mezalith/medialaxis/curve_intersection.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using test::Random;
using test::uniform;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::uint64_t kSeed = 20261121;
constexpr int kInputs = 100000;

struct Answers {
    double t1, s1, t2, s2;
};

struct Ray {
    MzPoint start;
    MzPoint direction;
};

struct Parabola {
    MzPoint start;
    MzPoint direction;
    MzPoint quadratic;
};

// y = x².
constexpr Parabola kUnit{{0, 0}, {1, 0}, {0, 1}};

Answers both(const Ray& ray, const Parabola& parabola) {
    Answers a{7, 7, 7, 7};
    MzRayParabolaIntersectionBothAnswers(&a.t1, &a.s1, &a.t2, &a.s2, ray.start, ray.direction,
                                         parabola.start, parabola.direction, parabola.quadratic);
    return a;
}

void expectAnswers(const Answers& a, double t1, double s1, double t2, double s2) {
    EXPECT_EQ(a.t1, t1);
    EXPECT_EQ(a.s1, s1);
    EXPECT_EQ(a.t2, t2);
    EXPECT_EQ(a.s2, s2);
}

TEST(CurveIntersection, OfRaysGivesTheParametersOnBoth) {
    double t1 = 0;
    double t2 = 0;
    MzRayRayIntersection(&t1, &t2, {0, 0}, {1, 0}, {2, -1}, {0, 0.5});
    EXPECT_EQ(t1, 2);
    EXPECT_EQ(t2, 2);
    MzRayRayIntersection(&t1, &t2, {3, 0}, {1, 0}, {2, -1}, {0, -1});
    EXPECT_EQ(t1, -1);
    EXPECT_EQ(t2, -1);
}

TEST(CurveIntersection, OfParallelRaysIsNowhere) {
    double t1 = 0;
    double t2 = 0;
    MzRayRayIntersection(&t1, &t2, {0, 0}, {1, 2}, {2, -1}, {-2, -4});
    EXPECT_EQ(t1, kInfinity);
    EXPECT_EQ(t2, kInfinity);
}

TEST(CurveIntersection, OfRaysAgreesWithADirectSolution) {
    Random random(kSeed);
    for (int i = 0; i < kInputs; ++i) {
        const auto point = [&] { return MzPoint{uniform(random, -9, 9), uniform(random, -9, 9)}; };
        const MzPoint a = point(), u = point(), b = point(), v = point();
        double t1 = 0;
        double t2 = 0;
        MzRayRayIntersection(&t1, &t2, a, u, b, v);
        const long double det =
            static_cast<long double>(u.x) * v.y - static_cast<long double>(u.y) * v.x;
        const long double dx = b.x - a.x, dy = b.y - a.y;
        const double bound = 1e-13 * 400 / std::abs(static_cast<double>(det));
        ASSERT_NEAR(t1, static_cast<double>((dx * v.y - dy * v.x) / det),
                    bound * (1 + std::abs(t1)));
        ASSERT_NEAR(t2, static_cast<double>((dx * u.y - dy * u.x) / det),
                    bound * (1 + std::abs(t2)));
    }
}

TEST(CurveIntersection, FindsTheParabolaOfASegmentAndAPoint) {
    double focalDistance = 0;
    MzPoint vertex{};
    MzParabolaCoefficientsForSegmentPoint(&focalDistance, &vertex, {-2, 0}, {1, 0}, {3, 4});
    EXPECT_EQ(focalDistance, 2);
    EXPECT_EQ(vertex.x, 3);
    EXPECT_EQ(vertex.y, 2);
}

TEST(CurveIntersection, PutsTheVertexHalfwayToTheSegmentsLine) {
    Random random(kSeed);
    for (int i = 0; i < kInputs; ++i) {
        const MzPoint start{uniform(random, -9, 9), uniform(random, -9, 9)};
        const MzPoint point{uniform(random, -9, 9), uniform(random, -9, 9)};
        const double angle = uniform(random, 0, 6.28);
        const MzPoint along{std::cos(angle), std::sin(angle)};
        double focalDistance = 0;
        MzPoint vertex{};
        MzParabolaCoefficientsForSegmentPoint(&focalDistance, &vertex, start, along, point);
        const double toLine = along.x * (point.y - start.y) - along.y * (point.x - start.x);
        ASSERT_NEAR(focalDistance, std::abs(toLine) / 2, 1e-13);
        ASSERT_NEAR(vertex.x, point.x + along.y * toLine / 2, 1e-13);
        ASSERT_NEAR(vertex.y, point.y - along.x * toLine / 2, 1e-13);
    }
}

TEST(CurveIntersection, OfRayAndParabolaGivesTheSmallerParameterFirst) {
    // Crossing at x = -1 and x = 2, which is y = x + 2.
    expectAnswers(both({{0, 2}, {1, 1}}, kUnit), 2, 2, -1, -1);
    expectAnswers(both({{0, 2}, {-1, -1}}, kUnit), 1, -1, -2, 2);
}

TEST(CurveIntersection, OfALevelRayLeavesTheLinearTermOut) {
    expectAnswers(both({{0, 4}, {1, 0}}, kUnit), -2, -2, 2, 2);
}

TEST(CurveIntersection, OfAnUprightRayLeavesTheQuadraticTermOut) {
    expectAnswers(both({{5, 0}, {0, 1}}, kUnit), 25, 5, 25, 5);
}

TEST(CurveIntersection, OfATangentIsTheStart) {
    expectAnswers(both({{-3, 0}, {1, 0}}, kUnit), 3, 0, 3, 0);
    expectAnswers(both({{0, -3}, {0, 1}}, kUnit), 3, 0, 3, 0);
}

TEST(CurveIntersection, IsNowhereBelowTheParabola) {
    expectAnswers(both({{0, -1}, {1, 0}}, kUnit), kInfinity, kInfinity, kInfinity, kInfinity);
}

TEST(CurveIntersection, TakesTinyDiscriminantsForZero) {
    // 1e-8 below the tangent at x = 1: a discriminant of -4e-8.
    const Answers a = both({{1, 1 - 1e-8}, {1, 2}}, kUnit);
    EXPECT_NEAR(a.s1, 1, 1e-12);
    EXPECT_EQ(a.s1, a.s2);
    // Without a linear term the square of the root is negative, whatever the discriminant became.
    expectAnswers(both({{0, -1e-4}, {1, 0}}, {{0, 0}, {1, 0}, {0, 1e-4}}), kInfinity, kInfinity,
                  kInfinity, kInfinity);
}

// --- which coefficients vanish beside the others

/// The roots of quadratic·s² + linear·s + constant, as a ray along x finds them.
Answers rootsOf(double quadratic, double linear, double constant) {
    return both({{0, 0}, {1, 0}}, {{0, constant}, {1, linear}, {0, quadratic}});
}

TEST(CurveIntersection, LeavesTheQuadraticTermOutBesideBothOthersAboveSevenOrders) {
    expectAnswers(rootsOf(1e-8, 1, 1), -1, -1, -1, -1);
    EXPECT_NE(rootsOf(1.1e-8, 1, 1).s1, rootsOf(1.1e-8, 1, 1).s2);
    EXPECT_NE(rootsOf(1e-7, 1, 1).s1, rootsOf(1e-7, 1, 1).s2);
}

TEST(CurveIntersection, LeavesTheLinearTermOutBesideBothOthersAboveSevenOrders) {
    expectAnswers(rootsOf(1, 1e-8, -4), -2, -2, 2, 2);
    EXPECT_NE(rootsOf(1, 1e-7, -4).s2, 2);
}

TEST(CurveIntersection, HasBothRootsAtTheStartWhereOneTermOutweighsTheOthers) {
    // The other two stand apart too, but the greatest decides.
    expectAnswers(rootsOf(1e-8, 1, 1e-16), 0, 0, 0, 0);
    expectAnswers(rootsOf(1, 1e-8, 1e-16), 0, 0, 0, 0);
    expectAnswers(rootsOf(1, 1e-8, 1e-8), 0, 0, 0, 0);
    EXPECT_NE(rootsOf(1, 1e-7, -1e-8).s2, 0);
    EXPECT_NE(rootsOf(1e-8, 1, 1e-7).s1, 0);
}

TEST(CurveIntersection, HasOneRootUpToADiscriminantOf1e7) {
    expectAnswers(rootsOf(1, 2, 1 - 2.4e-8), -1, -1, -1, -1);
    expectAnswers(rootsOf(1, 2, 1 + 2.4e-8), -1, -1, -1, -1);
    EXPECT_NE(rootsOf(1, 2, 1 - 2.6e-8).s1, -1);
    EXPECT_EQ(rootsOf(1, 2, 1 + 2.6e-8).s1, kInfinity);
}

TEST(CurveIntersection, OfARayAlongNegativeXHasNoFiniteRayParameter) {
    const Answers a = both({{5, 4}, {-1, 0}}, kUnit);
    EXPECT_EQ(a.s1, -2);
    EXPECT_EQ(a.s2, 2);
    EXPECT_FALSE(std::isfinite(a.t1));
    EXPECT_FALSE(std::isfinite(a.t2));
}

TEST(CurveIntersection, MeasuresAlongYWhereXHardlyGrows) {
    const Parabola steep{{0, 0}, {1, 0}, {0, 1e7}};
    expectAnswers(both({{0, 4e7}, {1e-7, 0}}, steep), -2e7, -2, 2e7, 2);
    EXPECT_FALSE(std::isfinite(both({{0, 4e7}, {0.99e-7, 0}}, steep).t1));
}

TEST(CurveIntersection, OfRandomRaysAndParabolasLiesOnBoth) {
    Random random(kSeed);
    int met = 0;
    for (int i = 0; i < kInputs; ++i) {
        const auto point = [&] { return MzPoint{uniform(random, -9, 9), uniform(random, -9, 9)}; };
        const Ray ray{point(), point()};
        const Parabola parabola{point(), point(), point()};
        const auto& [r, d, q] = std::array{ray.direction, parabola.direction, parabola.quadratic};
        const double a = q.x * r.y - q.y * r.x, b = d.x * r.y - d.y * r.x;
        const double c =
            (parabola.start.x - ray.start.x) * r.y - (parabola.start.y - ray.start.y) * r.x;
        const double discriminant = b * b - 4 * a * c;
        if (std::abs(discriminant) < 1e-3 || std::abs(a) < 1e-2) continue;
        const Answers answers = both(ray, parabola);
        if (discriminant < 0) {
            ASSERT_EQ(answers.s1, kInfinity);
            ASSERT_EQ(answers.t2, kInfinity);
            continue;
        }
        ++met;
        const long double root = std::sqrt(static_cast<long double>(discriminant));
        const double expected[2] = {static_cast<double>((-b - root) / (2.0L * a)),
                                    static_cast<double>((-b + root) / (2.0L * a))};
        const double tolerance = 1e-6 * (1 + std::abs(expected[0]) + std::abs(expected[1]));
        ASSERT_NEAR(answers.s1, expected[0], tolerance);
        ASSERT_NEAR(answers.s2, expected[1], tolerance);
        const double along = r.x < 1e-7 ? r.y : r.x;
        const auto on = [&](double s, double t) {
            const double x = parabola.start.x + d.x * s + q.x * s * s - ray.start.x - r.x * t;
            const double y = parabola.start.y + d.y * s + q.y * s * s - ray.start.y - r.y * t;
            return std::hypot(x, y);
        };
        const double size = 400 * (1 + expected[0] * expected[0] + expected[1] * expected[1]);
        ASSERT_LT(on(answers.s1, answers.t1), 1e-6 * size / std::min(1.0, std::abs(along)));
        ASSERT_LT(on(answers.s2, answers.t2), 1e-6 * size / std::min(1.0, std::abs(along)));
    }
    EXPECT_GT(met, kInputs / 2);
}

TEST(CurveIntersection, PicksTheRootByTheParabolasParameters) {
    double t = 0;
    double s = 0;
    MzRayParabolaIntersection(&t, &s, {0, 2}, {1, 1}, kUnit.start, kUnit.direction,
                              kUnit.quadratic);
    EXPECT_EQ(t, 2);
    EXPECT_EQ(s, 2);
    // Both negative: the one closer to zero.
    MzRayParabolaIntersection(&t, &s, {0, -2}, {-1, 3}, kUnit.start, kUnit.direction,
                              kUnit.quadratic);
    EXPECT_EQ(s, -1);
    EXPECT_EQ(t, 1);
    MzRayParabolaIntersection(&t, &s, {0, -1}, {1, 0}, kUnit.start, kUnit.direction,
                              kUnit.quadratic);
    EXPECT_EQ(t, kInfinity);
    EXPECT_EQ(s, kInfinity);
}

TEST(CurveIntersection, PrefersTheSmallestPositiveRootThenTheNegativeOneClosestToZero) {
    using detail::prefersFirstRoot;
    EXPECT_TRUE(prefersFirstRoot(1, -1));
    EXPECT_FALSE(prefersFirstRoot(-1, 1));
    EXPECT_TRUE(prefersFirstRoot(1, 2));
    EXPECT_FALSE(prefersFirstRoot(2, 1));
    EXPECT_TRUE(prefersFirstRoot(-1, -2));
    EXPECT_FALSE(prefersFirstRoot(-2, -1));
    EXPECT_TRUE(prefersFirstRoot(1, kInfinity));
    EXPECT_FALSE(prefersFirstRoot(1, 1));
    EXPECT_FALSE(prefersFirstRoot(-1, -1));
    EXPECT_FALSE(prefersFirstRoot(0, 0));
    EXPECT_FALSE(prefersFirstRoot(1, 0));
    EXPECT_FALSE(prefersFirstRoot(kInfinity, kInfinity));
    EXPECT_FALSE(prefersFirstRoot(kNaN, -1));
    EXPECT_FALSE(prefersFirstRoot(1, kNaN));
}

TEST(CurveIntersection, TruncatesLogarithmsTowardZero) {
    using detail::truncatedLogarithm;
    constexpr std::int64_t kLeast = std::numeric_limits<std::int64_t>::min();
    EXPECT_EQ(truncatedLogarithm(999), 2);
    EXPECT_EQ(truncatedLogarithm(0.5), 0);
    EXPECT_EQ(truncatedLogarithm(0.05), -1);
    EXPECT_EQ(truncatedLogarithm(0), kLeast);
    EXPECT_EQ(truncatedLogarithm(kInfinity), kLeast);
    EXPECT_EQ(truncatedLogarithm(kNaN), kLeast);
}

}  // namespace
}  // namespace mezalith
