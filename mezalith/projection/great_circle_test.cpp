// SPDX-License-Identifier: MIT
#include <mezalith/projection/great_circle.hpp>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <string>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Real = long double;

constexpr unsigned seed = 20240229;
constexpr int rounds = 100'000;
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

Real radians(double degrees) { return degrees * std::numbers::pi_v<Real> / 180; }

/// A direction in space, as a reference in wider arithmetic that shares no formula with the unit.
struct Direction {
    Real x, y, z;
};

Direction operator+(Direction a, Direction b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
Direction operator*(Real k, Direction a) { return {k * a.x, k * a.y, k * a.z}; }

Direction directionOf(MzPoint p) {
    const Real lambda = radians(p.x), phi = radians(p.y);
    return {std::cos(phi) * std::cos(lambda), std::cos(phi) * std::sin(lambda), std::sin(phi)};
}

Direction eastAt(MzPoint p) {
    const Real lambda = radians(p.x);
    return {-std::sin(lambda), std::cos(lambda), 0};
}

Direction northAt(MzPoint p) {
    const Real lambda = radians(p.x), phi = radians(p.y);
    return {-std::sin(phi) * std::cos(lambda), -std::sin(phi) * std::sin(lambda), std::cos(phi)};
}

Direction destination(MzPoint start, double distance, double bearing) {
    const Real delta = distance / static_cast<Real>(MzEarthRadius), theta = radians(bearing);
    const Direction heading = std::cos(theta) * northAt(start) + std::sin(theta) * eastAt(start);
    return std::cos(delta) * directionOf(start) + std::sin(delta) * heading;
}

double metresApart(Direction a, Direction b) {
    const Real across =
        std::hypot(a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x);
    const Real along = a.x * b.x + a.y * b.y + a.z * b.z;
    return static_cast<double>(MzEarthRadius * std::atan2(across, along));
}

constexpr double halfTurn = MzEarthRadius * std::numbers::pi;
constexpr double upTo170Degrees = halfTurn * 170 / 180;

/// Pairs of all distances: anywhere, near each other, near antipodes.
class Pairs {
  public:
    struct Pair {
        MzPoint first, second;
    };

    Pair next() {
        const MzPoint first{longitude_(random_), latitude_(random_)};
        const double spread = std::pow(10, -7 * unit_(random_));
        switch (++turn_ % 3) {
            case 0:
                return {first, near(first.x, first.y, spread)};
            case 1:
                return {first, near(first.x + 180, -first.y, spread)};
            default:
                return {first, {longitude_(random_), latitude_(random_)}};
        }
    }

  private:
    MzPoint near(double x, double y, double spread) {
        const double dx = spread * (unit_(random_) - 0.5), dy = spread * (unit_(random_) - 0.5);
        return {x + dx, std::fmin(std::fmax(y + dy, -90), 90)};
    }

    std::mt19937_64 random_{seed};
    std::uniform_real_distribution<double> longitude_{-180, 180}, latitude_{-90, 90}, unit_{0, 1};
    int turn_ = 0;
};

std::string trace(const Pairs::Pair& pair) {
    return (testing::Message() << "seed " << seed << ", from " << pair.first.x << ' '
                               << pair.first.y << " to " << pair.second.x << ' ' << pair.second.y)
        .GetString();
}

// --- distance -------------------------------------------------------------

TEST(EarthDistance, IsZeroFromAPointToItself) {
    EXPECT_EQ(MzEarthDistance(10.75, 59.91, 10.75, 59.91), 0.0);
    EXPECT_EQ(MzEarthDistance(0, 90, 0, 90), 0.0);
}

TEST(EarthDistance, UsesASphereOf6327Kilometres) {
    EXPECT_NEAR(MzEarthDistance(0, 0, 1, 0), 6327000 * std::numbers::pi / 180, 1e-8);
    EXPECT_NEAR(MzEarthDistance(0, -45, 0, 45), 6327000 * std::numbers::pi / 2, 1e-7);
    EXPECT_NEAR(MzEarthDistance(0, 90, 77, 0), 6327000 * std::numbers::pi / 2, 1e-7);
}

TEST(EarthDistance, StaysWithinTheDocumentedError) {
    Pairs pairs;
    for (int i = 0; i < rounds; ++i) {
        const auto pair = pairs.next();
        const double exact = metresApart(directionOf(pair.first), directionOf(pair.second));
        const double distance =
            MzEarthDistance(pair.first.x, pair.first.y, pair.second.x, pair.second.y);
        if (std::isnan(distance)) {
            ASSERT_GT(exact, halfTurn - 0.5) << trace(pair);
            continue;
        }
        const double allowed = exact < 1e4 ? 1e-8 : exact < upTo170Degrees ? 1e-7 : 0.5;
        ASSERT_LE(std::abs(distance - exact), allowed) << trace(pair);
    }
}

TEST(EarthDistance, MayBeNaNForExactAntipodes) {
    int lost = 0;
    for (int latitude = -89; latitude < 90; ++latitude) {
        const double distance = MzEarthDistance(10, latitude, 190, -latitude);
        if (std::isnan(distance)) {
            ++lost;
        } else {
            EXPECT_NEAR(distance, halfTurn, 0.5) << latitude;
        }
    }
    EXPECT_GT(lost, 0);
    EXPECT_LT(lost, 60);
}

// --- destination ----------------------------------------------------------

TEST(PointWithDistanceAndBearing, StaysAtTheStartForDistanceZero) {
    for (const MzPoint start : {MzPoint{10.75, 59.91}, {0, 0}, {-180, -45}, {30, 90}}) {
        const MzPoint p = MzPointWithDistanceAndBearing(start, 0, 73);
        EXPECT_NEAR(p.x, start.x, 1e-12);
        EXPECT_NEAR(p.y, start.y, 1e-12);
    }
}

TEST(PointWithDistanceAndBearing, DoesNotNormaliseTheLongitude) {
    const double tenDegrees = 6327000 * std::numbers::pi / 18;
    EXPECT_NEAR(MzPointWithDistanceAndBearing({175, 0}, tenDegrees, 90).x, 185, 1e-12);
    EXPECT_NEAR(MzPointWithDistanceAndBearing({-175, 0}, tenDegrees, 270).x, -185, 1e-12);
    EXPECT_NEAR(MzPointWithDistanceAndBearing({175, 0}, tenDegrees, 0).y, 10, 1e-12);
}

TEST(PointWithDistanceAndBearing, StaysWithinTheDocumentedError) {
    std::mt19937_64 random{seed};
    std::uniform_real_distribution<double> longitude{-180, 180}, latitude{-90, 90};
    std::uniform_real_distribution<double> distance{0, 4e7}, bearing{0, 360};
    for (int i = 0; i < rounds; ++i) {
        const MzPoint start{longitude(random), latitude(random)};
        const double metres = distance(random), degrees = i % 5 == 0 ? 0 : bearing(random);
        const Direction exact = destination(start, metres, degrees);
        const MzPoint p = MzPointWithDistanceAndBearing(start, metres, degrees);
        const bool awayFromPoles = std::abs(start.y) < 89 && std::abs(p.y) < 89;
        ASSERT_LE(metresApart(exact, directionOf(p)), awayFromPoles ? 1e-7 : 0.5)
            << "seed " << seed << ", from " << start.x << ' ' << start.y << ' ' << metres << " m, "
            << degrees;
    }
}

TEST(PointWithDistanceAndBearing, MayGiveNaNOnArrivalAtAPole) {
    int lost = 0;
    for (int latitude = -89; latitude < 90; ++latitude) {
        const double toThePole = (90 - latitude) * std::numbers::pi / 180 * MzEarthRadius;
        const MzPoint p = MzPointWithDistanceAndBearing({5, latitude * 1.0}, toThePole, 0);
        if (std::isnan(p.y)) {
            ++lost;
        } else {
            EXPECT_NEAR(p.y, 90, 1e-5) << latitude;
        }
    }
    EXPECT_LT(lost, 60);
}

// --- bearing --------------------------------------------------------------

TEST(InitialBearing, PointsAlongTheMeridianAndTheEquator) {
    EXPECT_EQ(MzInitialBearingBetweenPoints(0, 0, 0, 1), 0.0);
    EXPECT_EQ(MzInitialBearingBetweenPoints(0, 0, 1, 0), 90.0);
    EXPECT_EQ(MzInitialBearingBetweenPoints(0, 0, 0, -1), 180.0);
    EXPECT_EQ(MzInitialBearingBetweenPoints(0, 0, -1, 0), 270.0);
    EXPECT_EQ(MzInitialBearingBetweenPoints(7, 7, 7, 7), 0.0);
}

TEST(InitialBearing, IsInItsRangeAndFollowsTheDestination) {
    std::mt19937_64 random{seed};
    std::uniform_real_distribution<double> longitude{-180, 180}, latitude{-80, 80};
    std::uniform_real_distribution<double> distance{1e4, 1e7}, bearing{0, 360};
    for (int i = 0; i < rounds; ++i) {
        const MzPoint start{longitude(random), latitude(random)};
        const double expected = bearing(random);
        const MzPoint end = MzPointWithDistanceAndBearing(start, distance(random), expected);
        const double answer = MzInitialBearingBetweenPoints(start.x, start.y, end.x, end.y);
        ASSERT_GE(answer, 0.0);
        ASSERT_LT(answer, 360.0);
        ASSERT_NEAR(std::remainder(answer - expected, 360), 0, 1e-9) << "seed " << seed;
    }
}

TEST(InitialBearing, IsNeverNegativeNor360) {
    const double tiny = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(MzInitialBearingBetweenPoints(0, 0, -tiny, 1), 0.0);
    EXPECT_EQ(MzInitialBearingBetweenPoints(0, 0, -1e-16, 1), 0.0);
    EXPECT_NEAR(MzInitialBearingBetweenPoints(0, 0, -1e-9, 1), 360, 1e-7);
}

// --- midpoint -------------------------------------------------------------

TEST(GeodesicMidpoint, LiesHalfwayOnKnownCircles) {
    const MzPoint onEquator = MzGeodesicMidpoint(10, 0, 50, 0);
    EXPECT_NEAR(onEquator.x, 30, 1e-12);
    EXPECT_EQ(onEquator.y, 0.0);
    const MzPoint overThePole = MzGeodesicMidpoint(0, 80, 180, 60);
    EXPECT_NEAR(overThePole.x, 180, 1e-12);
    EXPECT_NEAR(overThePole.y, 80, 1e-12);
}

TEST(GeodesicMidpoint, DoesNotNormaliseTheLongitude) {
    EXPECT_NEAR(MzGeodesicMidpoint(170, 0, 200, 0).x, 185, 1e-12);
    EXPECT_NEAR(MzGeodesicMidpoint(170, 0, -170, 0).x, 180, 1e-12);
    EXPECT_NEAR(MzGeodesicMidpoint(-170, 0, 170, 0).x, -180, 1e-12);
}

TEST(GeodesicMidpoint, StaysWithinTheDocumentedError) {
    Pairs pairs;
    for (int i = 0; i < rounds; ++i) {
        const auto pair = pairs.next();
        const Direction a = directionOf(pair.first), b = directionOf(pair.second);
        const MzPoint p =
            MzGeodesicMidpoint(pair.first.x, pair.first.y, pair.second.x, pair.second.y);
        ASSERT_LE(std::abs(p.x - pair.first.x), 180 + 1e-12) << trace(pair);
        if (metresApart(a, b) > upTo170Degrees) continue;
        ASSERT_LE(metresApart(a + b, directionOf(p)), 1e-7) << trace(pair);
    }
}

TEST(GeodesicMidpoint, AnswersSomethingBetweenAntipodes) {
    const MzPoint p = MzGeodesicMidpoint(20, 30, -160, -30);
    EXPECT_TRUE(std::isfinite(p.x));
    EXPECT_LE(std::abs(p.y), 90);
}

// --- degrees and radians --------------------------------------------------

constexpr double radiansPerDegree = 0.017453292519943295;
constexpr double degreesPerRadian = 57.29577951308232;
constexpr double pi = 3.141592653589793;

TEST(PointWithDistanceAndBearing, ComesBackToDegreesByOneFactor) {
    for (double x = -180; x <= 180; ++x) {
        const double radians = x * radiansPerDegree;
        EXPECT_EQ(MzPointWithDistanceAndBearing({x, 0}, 0, 0).x, radians * degreesPerRadian);
    }
}

TEST(GeodesicMidpoint, ComesBackToDegreesByHalfATurn) {
    for (double x = -180; x <= 180; ++x) {
        const double radians = x * radiansPerDegree;
        EXPECT_EQ(MzGeodesicMidpoint(x, 0, x, 0).x, radians * 180 / pi);
    }
}

TEST(InitialBearing, ComesBackToDegreesByHalfATurn) {
    for (double x = -179; x < 180; ++x) {
        const double lambda = x * radiansPerDegree, phi = 25 * radiansPerDegree;
        const double theta = std::atan2(std::sin(lambda) * std::cos(phi), std::sin(phi));
        EXPECT_EQ(MzInitialBearingBetweenPoints(0, 0, x, 25),
                  std::fmod(theta * 180 / pi + 360, 360));
    }
}

TEST(GreatCircle, PassesNaNThrough) {
    EXPECT_TRUE(std::isnan(MzEarthDistance(0, nan, 1, 1)));
    EXPECT_TRUE(std::isnan(MzPointWithDistanceAndBearing({0, 0}, nan, 0).y));
    EXPECT_TRUE(std::isnan(MzPointWithDistanceAndBearing({0, 0}, 1, nan).x));
    EXPECT_TRUE(std::isnan(MzInitialBearingBetweenPoints(0, 0, nan, 1)));
    EXPECT_TRUE(std::isnan(MzGeodesicMidpoint(0, nan, 1, 1).y));
}

}  // namespace
}  // namespace mezalith
