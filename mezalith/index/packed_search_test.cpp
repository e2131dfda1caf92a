// SPDX-License-Identifier: MIT
#include <mezalith/index/packed_search.hpp>

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace mezalith::detail {
namespace {

TEST(RoundedDown, IsTheNextNumberNotAbove) {
    std::mt19937_64 random{3};
    std::uniform_real_distribution<double> exponent{-50, 50}, sign{-1, 1};
    for (int i = 0; i < 100'000; ++i) {
        const double value = std::copysign(std::pow(2, exponent(random)), sign(random));
        const float down = roundedDown(value), up = roundedUp(value);
        ASSERT_LE(double{down}, value);
        ASSERT_GE(double{up}, value);
        ASSERT_LE(up, std::nextafter(down, std::numeric_limits<float>::infinity()));
    }
}

TEST(RoundedDown, KeepsWhatIsExact) {
    for (const double value : {0.0, -0.0, 1.0, -1.5, 180.0, -180.0, 0.25}) {
        EXPECT_EQ(double{roundedDown(value)}, value);
        EXPECT_EQ(double{roundedUp(value)}, value);
    }
}

TEST(RoundedDown, StaysOnItsSideAtTheEnds) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    constexpr double most = std::numeric_limits<float>::max();
    EXPECT_EQ(double{roundedDown(1e300)}, most);
    EXPECT_EQ(double{roundedUp(1e300)}, infinity);
    EXPECT_EQ(double{roundedDown(-1e300)}, -infinity);
    EXPECT_EQ(double{roundedUp(-1e300)}, -most);
    EXPECT_EQ(double{roundedDown(infinity)}, infinity);
    EXPECT_EQ(double{roundedUp(-infinity)}, -infinity);
    EXPECT_LT(roundedDown(-1e-300), 0);
    EXPECT_EQ(roundedDown(1e-300), 0);
    EXPECT_GT(roundedUp(1e-300), 0);
    EXPECT_TRUE(std::isnan(roundedDown(std::nan(""))));
}

TEST(PackedNodes, CountSlotsAndItemsLevelByLevel) {
    PackedNodes nodes;
    nodes.count = 16 * 16 + 1;
    EXPECT_EQ(nodes.slotsAt(0), 257u);
    EXPECT_EQ(nodes.slotsAt(1), 17u);
    EXPECT_EQ(nodes.slotsAt(2), 2u);
    EXPECT_EQ(nodes.itemsBelow(15, 0).size(), 16u);
    EXPECT_EQ(nodes.itemsBelow(16, 0).size(), 1u);
    EXPECT_EQ(nodes.itemsBelow(0, 1).size(), 256u);
    EXPECT_EQ(nodes.itemsBelow(1, 1).size(), 1u);
}

TEST(PackedSearch, AnswersNothingOfNothing) {
    const PackedNodes none;
    PackedSearch search(none, nullptr, {0, 0, 1, 1}, std::nan(""));
    EXPECT_TRUE(search.next().empty());
}

TEST(PackedSearch, FindsInOneNodeWhatMeetsAndLiesBeyond) {
    for (const auto instructions :
         {PackedInstructions::Portable, PackedInstructions::AVX2, PackedInstructions::AVX512}) {
        std::vector<double> boxes(64, std::nan(""));
        std::vector<std::uint32_t> items(16);
        for (std::size_t i = 0; i < 5; ++i) {
            const auto x = static_cast<double>(i);
            boxes[i] = x;
            boxes[16 + i] = 0;
            boxes[32 + i] = x + 1;
            boxes[48 + i] = 1;
            items[i] = static_cast<std::uint32_t>(i * 10);
        }
        PackedNodes nodes;
        nodes.leaves = boxes.data();
        nodes.items = items.data();
        nodes.count = 5;
        nodes.levels = 1;
        const auto step = PackedSearch::stepFor(instructions, 4);
        PackedSearch search(nodes, step, {1.5, 0.5, 3, 0.5}, std::nan(""));
        const auto found = search.next();
        EXPECT_EQ(std::vector(found.begin(), found.end()),
                  (std::vector<std::uint32_t>{10, 20, 30}));
        EXPECT_TRUE(search.next().empty());
        PackedSearch beyond(nodes, step, {1.5, 0.5, 3, 0.5}, 1);
        const auto after = beyond.next();
        EXPECT_EQ(std::vector(after.begin(), after.end()), (std::vector<std::uint32_t>{20, 30}));
    }
}

}  // namespace
}  // namespace mezalith::detail
