// SPDX-License-Identifier: MIT
#include <mezalith/geometry/orientation.hpp>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

__extension__ using Wide = __int128;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Orientation, IsThatOfTheTurn) {
    EXPECT_EQ(MzOrientation({0, 0}, {1, 0}, {1, 1}), 1);
    EXPECT_EQ(MzOrientation({0, 0}, {1, 0}, {1, -1}), -1);
    EXPECT_EQ(MzOrientation({0, 0}, {1, 0}, {5, 0}), 0);
    EXPECT_EQ(MzOrientation({3, 3}, {3, 3}, {3, 3}), 0);
}

// Around (12, 12) the plain formula gives wrong signs for half of these points.
TEST(Orientation, SeesAStepOfOneLastDigit) {
    const double step = 0x1p-53;
    for (int i = 0; i < 64; ++i) {
        for (int j = 0; j < 64; ++j) {
            const MzPoint near{0.5 + i * step, 0.5 + j * step};
            EXPECT_EQ(MzOrientation(near, {12, 12}, {24, 24}), (i < j) - (j < i)) << i << ' ' << j;
        }
    }
}

Wide turnOf(const std::array<std::int64_t, 6>& c) {
    return Wide{c[2] - c[0]} * (c[5] - c[1]) - Wide{c[3] - c[1]} * (c[4] - c[0]);
}

// Whole numbers up to 2^50 along one line, give or take one.
TEST(Orientation, AgreesWithWholeNumbersAtAnyScale) {
    std::mt19937_64 random(20261121);
    std::uniform_int_distribution<std::int64_t> any(-(std::int64_t{1} << 20), 1 << 20);
    std::uniform_int_distribution<std::int64_t> nudge(-1, 1);
    int straight = 0;
    for (int i = 0; i < 100000; ++i) {
        const std::int64_t dx = any(random), dy = any(random);
        const std::int64_t s = any(random), t = any(random), x = any(random), y = any(random);
        const std::array<std::int64_t, 6> c{
            x, y, x + s * dx, y + s * dy, x + t * dx + nudge(random), y + t * dy + nudge(random)};
        const Wide exact = turnOf(c);
        const int expected = (exact > 0) - (exact < 0);
        straight += expected == 0 ? 1 : 0;
        const double scale = std::ldexp(1.0, static_cast<int>(i % 1600) - 800);
        const auto at = [&](std::size_t k) {
            return MzPoint{static_cast<double>(c[k]) * scale,
                           static_cast<double>(c[k + 1]) * scale};
        };
        ASSERT_EQ(MzOrientation(at(0), at(2), at(4)), expected) << "case " << i;
    }
    EXPECT_GT(straight, 1000);
}

TEST(Orientation, NeitherOverflowsNorVanishes) {
    const double huge = std::numeric_limits<double>::max();
    EXPECT_EQ(MzOrientation({-huge, -huge}, {huge, -huge}, {huge, huge}), 1);
    EXPECT_EQ(MzOrientation({-huge, -huge}, {0, 0}, {huge, huge}), 0);
    const double tiny = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(MzOrientation({0, 0}, {tiny, 0}, {tiny, tiny}), 1);
    EXPECT_EQ(MzOrientation({0, 0}, {tiny, tiny}, {3 * tiny, 3 * tiny}), 0);
}

TEST(Orientation, OfWhatIsNotFiniteIsNone) {
    EXPECT_EQ(MzOrientation({0, 0}, {1, 0}, {1, kInfinity}), 0);
    EXPECT_EQ(MzOrientation({0, std::nan("")}, {1, 0}, {1, 1}), 0);
}

}  // namespace
}  // namespace mezalith
