// SPDX-License-Identifier: MIT
#include <mezalith/projection/gauss_kruger.hpp>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

constexpr unsigned kSeed = 20261121;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(GaussKruger, ComesBackToWhereItWas) {
    std::mt19937_64 random{kSeed};
    std::uniform_real_distribution<double> longitude{-35, 35}, latitude{-90, 90};
    for (int i = 0; i < 50'000; ++i) {
        const MzPoint place{longitude(random), latitude(random)};
        const MzPoint back = MzInverseGaussKruger(MzGaussKruger(place, 0), 0);
        const double across = std::cos(place.y * 0.017453292519943295);
        ASSERT_NEAR(back.y, place.y, 1e-13) << "seed " << kSeed << ' ' << place.x;
        ASSERT_NEAR((back.x - place.x) * across, 0, 1e-13) << "seed " << kSeed << ' ' << place.y;
    }
}

TEST(GaussKruger, TakesLongitudesWholeTurnsApart) {
    const MzPoint near = MzGaussKruger({179, 20}, 177);
    const MzPoint turned = MzGaussKruger({-181, 20}, 177);
    EXPECT_EQ(turned.x, near.x);
    EXPECT_EQ(turned.y, near.y);
    EXPECT_NEAR(MzGaussKruger({-179, 20}, 177).x, 2 * near.x, 1e3);
}

TEST(GaussKruger, IsExactOnTheMeridianTheEquatorAndThePoles) {
    EXPECT_EQ(MzGaussKruger({15, 0}, 15).x, 0);
    EXPECT_EQ(MzGaussKruger({15, 0}, 15).y, 0);
    EXPECT_EQ(MzGaussKruger({15, 47}, 15).x, 0);
    EXPECT_EQ(MzGaussKruger({22, 0}, 15).y, 0);
    constexpr double kQuarter = 10'001'965.729312724;  // metres from the equator to a pole
    for (const double longitude : {15.0, 70.0, -40.0}) {
        EXPECT_NEAR(MzGaussKruger({longitude, 90}, 15).y, kQuarter, 1e-6);
        EXPECT_NEAR(MzGaussKruger({longitude, -90}, 15).y, -kQuarter, 1e-6);
        EXPECT_NEAR(MzGaussKruger({longitude, 90}, 15).x, 0, 1e-6);
    }
    EXPECT_NEAR(MzInverseGaussKruger({0, kQuarter}, 15).y, 90, 1e-11);
    EXPECT_NEAR(MzInverseGaussKruger({0, -kQuarter}, 15).y, -90, 1e-11);
}

TEST(GaussKruger, AnswersNaNForWhatIsNoPlace) {
    for (const MzPoint p : std::array<MzPoint, 5>{
             {{kNaN, 0}, {0, kNaN}, {kInfinity, 0}, {0, -kInfinity}, {0, 90.1}}}) {
        EXPECT_TRUE(std::isnan(MzGaussKruger(p, 15).x));
        EXPECT_TRUE(std::isnan(MzGaussKruger(p, 15).y));
    }
    EXPECT_TRUE(std::isnan(MzInverseGaussKruger({kNaN, 0}, 15).x));
    EXPECT_TRUE(std::isnan(MzInverseGaussKruger({0, kInfinity}, 15).y));
    for (const double far : {1e8, 1e300}) {  // beyond the plane: no crash, whatever it answers
        MzInverseGaussKruger({far, far}, 15);
    }
}

TEST(GaussKruger, TakesManyByTheSameArithmetic) {
    const std::vector<MzPoint> places{{15, 60}, {20, -60}, {14, 89.9}, {0, 0}};
    std::vector<MzPoint> plane(places.size()), back(places.size());
    MzGaussKruger(places, plane, 15, 0.5, {100, 200});
    MzInverseGaussKruger(plane, back, 15, 0.5, {100, 200});
    for (std::size_t i = 0; i < places.size(); ++i) {
        const MzPoint one = MzGaussKruger(places[i], 15);
        EXPECT_EQ(plane[i].x, 100 + 0.5 * one.x);
        EXPECT_EQ(plane[i].y, 200 + 0.5 * one.y);
        EXPECT_NEAR(back[i].x, places[i].x, 1e-12);
        EXPECT_NEAR(back[i].y, places[i].y, 1e-12);
    }
    std::vector<MzPoint> short1{{-7, -7}};
    MzGaussKruger(places, short1, 15, 1, {0, 0});
    MzGaussKruger(places, std::span<MzPoint>{}, 15, 1, {0, 0});
    EXPECT_NE(short1[0].x, -7);
}

}  // namespace
}  // namespace mezalith
