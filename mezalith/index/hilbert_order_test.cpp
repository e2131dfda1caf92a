// SPDX-License-Identifier: MIT
#include <mezalith/index/hilbert_order.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::detail {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

std::vector<std::uint32_t> orderOf(const std::vector<MzBox>& boxes) {
    std::vector<std::uint64_t> order(boxes.size()), scratch(boxes.size());
    order.resize(orderAlongHilbertCurve(boxes, order, scratch));
    return {order.begin(), order.end()};
}

std::vector<MzBox> pointsOver(double width, std::size_t count) {
    std::mt19937_64 random{5};
    std::uniform_real_distribution<double> place{0, width};
    std::vector<MzBox> boxes(count);
    for (MzBox& box : boxes) box = MzBox::of(MzPoint{place(random), place(random)});
    return boxes;
}

/// The length of the way through all centres.
double wayThrough(const std::vector<MzBox>& boxes, const std::vector<std::uint32_t>& order) {
    double length = 0;
    for (std::size_t i = 1; i < order.size(); ++i) {
        const MzBox &a = boxes[order[i - 1]], &b = boxes[order[i]];
        length += std::hypot(a.minX - b.minX, a.minY - b.minY);
    }
    return length;
}

bool isPermutation(std::vector<std::uint32_t> order, std::size_t count) {
    std::ranges::sort(order);
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (order[i] != i) return false;
    }
    return order.size() == count;
}

TEST(HilbertKey, RunsFromOneCornerToTheNext) {
    EXPECT_EQ(hilbertKey(0, 0), 0u);
    EXPECT_EQ(hilbertKey(4095, 0), (1u << 24) - 1);
    EXPECT_EQ(hilbertKey(0, 4095) >> 22, 1u);
    EXPECT_EQ(hilbertKey(4095, 4095) >> 22, 2u);
}

TEST(HilbertKey, GoesFromCellToNeighbouringCell) {
    for (const auto& [left, bottom] :
         std::vector<std::pair<std::uint32_t, std::uint32_t>>{{0, 0}, {1024, 3072}, {4032, 64}}) {
        std::vector<std::pair<std::uint32_t, MzPoint>> cells;
        for (std::uint32_t x = left; x < left + 64; ++x) {
            for (std::uint32_t y = bottom; y < bottom + 64; ++y) {
                cells.push_back({hilbertKey(x, y), {double(x), double(y)}});
            }
        }
        std::ranges::sort(cells, {}, &std::pair<std::uint32_t, MzPoint>::first);
        for (std::size_t i = 1; i < cells.size(); ++i) {
            ASSERT_EQ(cells[i].first, cells[i - 1].first + 1);
            ASSERT_EQ(std::abs(cells[i].second.x - cells[i - 1].second.x) +
                          std::abs(cells[i].second.y - cells[i - 1].second.y),
                      1);
        }
    }
}

TEST(HilbertOrder, HoldsEachBoxOnce) {
    for (const std::size_t count : {0u, 1u, 2u, 1000u, 1025u, 50'000u}) {
        EXPECT_TRUE(isPermutation(orderOf(pointsOver(1, count)), count)) << count;
    }
}

TEST(HilbertOrder, KeepsNeighboursTogether) {
    const auto boxes = pointsOver(1, 50'000);
    // In no order, the way through n random points of a unit square is some 0.5 n long.
    EXPECT_LT(wayThrough(boxes, orderOf(boxes)), std::sqrt(50'000));
}

TEST(HilbertOrder, KeepsNeighboursTogetherBesideAPlaceFarAway) {
    auto boxes = pointsOver(1, 50'000);
    boxes[17] = MzBox::of(MzPoint{1e12, -1e12});
    auto order = orderOf(boxes);
    EXPECT_TRUE(isPermutation(order, boxes.size()));
    std::erase(order, 17);
    EXPECT_LT(wayThrough(boxes, order), std::sqrt(50'000));
}

TEST(HilbertOrder, KeepsNeighboursTogetherWhereTheyCrowd) {
    auto boxes = pointsOver(1e-6, 20'000);
    for (const MzBox& box : pointsOver(1, 20'000)) boxes.push_back(box);
    const auto order = orderOf(boxes);
    EXPECT_TRUE(isPermutation(order, boxes.size()));
    EXPECT_LT(wayThrough(boxes, order), std::sqrt(20'000));
}

TEST(HilbertOrder, KeepsTheOrderOfEqualPlaces) {
    const auto order = orderOf(std::vector<MzBox>(5000, MzBox{1, 2, 3, 4}));
    EXPECT_TRUE(std::ranges::is_sorted(order));
    EXPECT_EQ(order.size(), 5000u);
}

TEST(HilbertOrder, LeavesOutEmptyBoxes) {
    std::vector<MzBox> boxes = pointsOver(1, 3000);
    boxes[0] = {NAN, 0, 0, 0};
    boxes[7] = {1, 1, 0, 0};
    boxes[2999] = {0, 0, 0, NAN};
    const auto order = orderOf(boxes);
    const std::set<std::uint32_t> there(order.begin(), order.end());
    EXPECT_EQ(there.size(), 2997u);
    for (const std::uint32_t empty : {0u, 7u, 2999u}) EXPECT_FALSE(there.contains(empty));
}

TEST(HilbertOrder, TakesBoxesWithoutACentre) {
    std::vector<MzBox> boxes = pointsOver(1, 3000);
    boxes[1] = {-infinity, -infinity, infinity, infinity};
    boxes[2] = {0, 0, infinity, 0};
    boxes[3] = {1.5e308, 1.5e308, 1.7e308, 1.7e308};
    boxes[4] = {-1.7e308, -1.7e308, -1.7e308, 1.7e308};
    EXPECT_TRUE(isPermutation(orderOf(boxes), boxes.size()));
}

}  // namespace
}  // namespace mezalith::detail
