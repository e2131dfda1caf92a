// SPDX-License-Identifier: MIT
#include <mezalith/platform/touch.hpp>

#include <array>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

constexpr unsigned seed = 20240617;

TEST(ChordWithin, IsThePartOfASegmentInTheDisc) {
    const Disc disc{{0, 0}, 5};
    const auto chord = chordWithin({-10, 3}, {10, 3}, disc);
    ASSERT_TRUE(chord);
    EXPECT_NEAR(chord->nearest.x, 0, 1e-12);
    EXPECT_NEAR(chord->nearest.y, 3, 1e-12);
    EXPECT_NEAR(chord->middle.x, 0, 1e-12);
    const auto half = chordWithin({1, 3}, {10, 3}, disc);
    ASSERT_TRUE(half);
    EXPECT_NEAR(half->nearest.x, 1, 1e-12);
    EXPECT_NEAR(half->middle.x, 2.5, 1e-12);
}

TEST(ChordWithin, CountsTheBorderAndNothingBeyond) {
    EXPECT_TRUE(chordWithin({-10, 5}, {10, 5}, {{0, 0}, 5}));
    EXPECT_FALSE(chordWithin({-10, 5.001}, {10, 5.001}, {{0, 0}, 5}));
    EXPECT_FALSE(chordWithin({5.001, 0}, {9, 0}, {{0, 0}, 5}));
    EXPECT_FALSE(chordWithin({4, 4}, {9, 4}, {{0, 0}, 5}));
    EXPECT_TRUE(chordWithin({3, 3}, {3, 3}, {{0, 0}, 5}));
    EXPECT_TRUE(chordWithin({-10, 0}, {10, 0}, {{0, 0}, 0}));
}

TEST(ChordWithin, TakesCoordinatesOfAnySize) {
    EXPECT_TRUE(chordWithin({-1e308, 0.5}, {1e308, 0.5}, {{0, 0}, 1}));
    EXPECT_FALSE(chordWithin({-1e308, 1.5}, {1e308, 1.5}, {{0, 0}, 1}));
    EXPECT_FALSE(chordWithin({1e300, 0}, {1e308, 0}, {{0, 0}, 1}));
}

TEST(TouchesConvex, IsTheSameWhicheverWayTheCornersRun) {
    const std::array square{MzPoint{0, 0}, MzPoint{4, 0}, MzPoint{4, 4}, MzPoint{0, 4}};
    const std::array turned{MzPoint{0, 4}, MzPoint{4, 4}, MzPoint{4, 0}, MzPoint{0, 0}};
    for (const auto& corners : {square, turned}) {
        EXPECT_TRUE(touchesConvex(corners, {{2, 2}, 0.1}));
        EXPECT_TRUE(touchesConvex(corners, {{5, 2}, 1}));
        EXPECT_FALSE(touchesConvex(corners, {{5, 2}, 0.9}));
        EXPECT_FALSE(touchesConvex(corners, {{5, 5}, 1.4}));
        EXPECT_TRUE(touchesConvex(corners, {{5, 5}, 1.42}));
    }
}

TEST(TouchesConvex, KnowsNoInsideWhereThereIsNone) {
    const std::array line{MzPoint{0, 0}, MzPoint{4, 0}, MzPoint{2, 0}};
    EXPECT_TRUE(touchesConvex(line, {{3, 0.5}, 0.5}));
    EXPECT_FALSE(touchesConvex(line, {{6, 0}, 0.5}));
}

TEST(TouchesConvex, IsWhatManyPointsOfTheDiscSay) {
    std::mt19937_64 random(seed);
    std::uniform_real_distribution<double> place(0, 10);
    for (int round = 0; round < 2000; ++round) {
        const std::array corners{MzPoint{place(random), place(random)},
                                 MzPoint{place(random), place(random)},
                                 MzPoint{place(random), place(random)}};
        const Disc disc{{place(random), place(random)}, place(random) / 5};
        const auto anyPointInside = [&](double radius) {
            for (int i = 0; i < 400; ++i) {
                const double angle = i * 2.399963;
                const double away = radius * std::sqrt((i + 0.5) / 400);
                const MzPoint p{disc.center.x + away * std::cos(angle),
                                disc.center.y + away * std::sin(angle)};
                if (touchesConvex(corners, {p, 0})) return true;
            }
            return false;
        };
        if (anyPointInside(disc.radius)) {
            ASSERT_TRUE(touchesConvex(corners, disc)) << "round " << round;
        }
        // Points are apart by less than a tenth of the radius.
        if (!touchesConvex(corners, disc)) {
            ASSERT_FALSE(anyPointInside(disc.radius * 0.999)) << "round " << round;
        }
    }
}

}  // namespace
}  // namespace mezalith::platform
