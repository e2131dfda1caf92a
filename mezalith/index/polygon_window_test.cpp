// SPDX-License-Identifier: MIT
#include <mezalith/index/polygon_window.hpp>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Ring = std::vector<MzPoint>;
using Items = std::vector<std::uint32_t>;

MzPolygonWindow windowOf(std::vector<Ring> rings) {
    std::vector<MzLinearRing> records;
    for (Ring& ring : rings) {
        records.push_back({static_cast<std::uint32_t>(ring.size()), ring.data()});
    }
    return MzPolygonWindow({static_cast<std::uint32_t>(records.size()), records.data()});
}

Ring square(double low, double high) {
    return {{low, low}, {high, low}, {high, high}, {low, high}, {low, low}};
}

/// A star of many points, its sides in all directions.
Ring star(int points) {
    Ring ring;
    for (int i = 0; i < points; ++i) {
        const double angle = 2 * std::numbers::pi * i / points;
        const double radius = i % 2 == 0 ? 80 : 30;
        ring.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    ring.push_back(ring.front());
    return ring;
}

std::vector<MzBox> boxesOver(double width, double size, std::size_t count) {
    std::mt19937_64 random{11};
    std::uniform_real_distribution<double> place{-width, width}, side{0, size};
    std::vector<MzBox> boxes(count);
    for (MzBox& box : boxes) {
        const MzPoint p{place(random), place(random)};
        box = {p.x, p.y, p.x + side(random), p.y + side(random)};
    }
    return boxes;
}

TEST(PolygonWindow, MeetsWhatLiesInsideAcrossAndOnItsBorder) {
    const auto window = windowOf({square(0, 10)});
    EXPECT_TRUE(window.meets({4, 4, 5, 5}));
    EXPECT_TRUE(window.meets({-5, 4, 15, 5}));
    EXPECT_TRUE(window.meets({-5, -5, 15, 15}));
    EXPECT_TRUE(window.meets({10, 10, 12, 12}));
    EXPECT_TRUE(window.meets({-1, 3, 0, 3}));
    EXPECT_TRUE(window.meets(MzBox::of(MzPoint{10, 5})));
    EXPECT_FALSE(window.meets({10.5, 0, 11, 10}));
    EXPECT_FALSE(window.meets({-3, -3, -1, -1}));
}

TEST(PolygonWindow, LeavesOutWhatLiesInAHole) {
    const auto window = windowOf({square(0, 10), square(3, 7)});
    EXPECT_FALSE(window.meets({4, 4, 6, 6}));
    EXPECT_TRUE(window.meets({4, 4, 7, 6}));
    EXPECT_TRUE(window.meets({1, 1, 2, 2}));
    EXPECT_FALSE(window.mayMeet({4, 4, 6, 6}));
    EXPECT_TRUE(window.holds({1, 1, 2, 2}));
    EXPECT_FALSE(window.holds({1, 1, 9, 9}));
}

TEST(PolygonWindow, TellsASlantingSideFromItsBox) {
    const auto window = windowOf({{{0, 0}, {10, 0}, {10, 10}}});
    EXPECT_FALSE(window.meets({1, 8, 2, 9}));
    EXPECT_TRUE(window.meets({5, 5, 5, 6}));
    EXPECT_TRUE(window.mayMeet({1, 8, 2, 9}));
    EXPECT_FALSE(window.holds({8, 1, 9, 2}));
}

TEST(PolygonWindow, CountsEachCornerOfItsOutlineOnce) {
    // Level with the corners of a diamond and of teeth.
    const auto diamond = windowOf({{{-5, 0}, {0, -5}, {5, 0}, {0, 5}, {-5, 0}}});
    EXPECT_TRUE(diamond.meets(MzBox::of(MzPoint{0, 0})));
    EXPECT_FALSE(diamond.meets(MzBox::of(MzPoint{-6, 0})));
    EXPECT_FALSE(diamond.meets(MzBox::of(MzPoint{-1, 5})));
    const auto teeth = windowOf({{{0, 0}, {8, 0}, {8, 4}, {6, 2}, {4, 4}, {2, 2}, {0, 4}}});
    EXPECT_FALSE(teeth.meets(MzBox::of(MzPoint{-1, 2})));
    EXPECT_TRUE(teeth.meets(MzBox::of(MzPoint{1, 2})));
    EXPECT_FALSE(teeth.meets(MzBox::of(MzPoint{2, 3})));
    EXPECT_FALSE(teeth.meets(MzBox::of(MzPoint{-1, 4})));
}

TEST(PolygonWindow, HoldsNothingWithoutRings) {
    EXPECT_FALSE(MzPolygonWindow({0, nullptr}).meets({-1, -1, 1, 1}));
    EXPECT_FALSE(windowOf({{}}).meets({-1, -1, 1, 1}));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(windowOf({{{nan, nan}, {nan, 1}}}).meets({-1, -1, 1, 1}));
    EXPECT_TRUE(windowOf({{{0, 0}, {nan, 5}, {4, 0}, {4, 4}}}).meets({2, 1, 3, 1}));
    EXPECT_TRUE(windowOf({{{1, 1}}}).meets({0, 0, 1, 1}));
}

TEST(PolygonWindow, FindsThroughATreeWhatItMeetsBoxByBox) {
    for (const int points : {3, 4, 11, 200, 2000}) {
        const auto window = windowOf({star(points), square(-10, 10)});
        for (const double size : {0.0, 0.5, 20.0}) {
            const auto boxes = boxesOver(90, size, 4000);
            Items expected;
            for (std::uint32_t i = 0; i < boxes.size(); ++i) {
                if (window.meets(boxes[i])) expected.push_back(i);
            }
            EXPECT_EQ(MzPackedRTree::initWithBoxes(boxes)->itemsInRegion(window), expected);
            EXPECT_FALSE(expected.empty());
            EXPECT_LT(expected.size(), boxes.size());
        }
    }
}

TEST(PolygonWindow, EndsASearchWhenTheVisitorSaysSo) {
    const auto tree = MzPackedRTree::initWithBoxes(boxesOver(90, 1, 4000));
    int visits = 0;
    EXPECT_FALSE(tree->visitRegion(windowOf({square(-100, 100)}),
                                   [&](std::uint32_t) { return ++visits < 10; }));
    EXPECT_EQ(visits, 10);
    EXPECT_FALSE(tree->visitRegion(windowOf({star(9)}), [](std::uint32_t) { return false; }));
    EXPECT_TRUE(
        MzPackedRTree().visitRegion(windowOf({square(0, 1)}), [](std::uint32_t) { return false; }));
}

}  // namespace
}  // namespace mezalith
