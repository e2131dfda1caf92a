// SPDX-License-Identifier: MIT
#include "mezalith/geometry/test_support.hpp"
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/index/packed_r_tree.hpp>
#include <mezalith/index/polygon_window.hpp>
#include <mezalith/index/r_tree.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <stdexcept>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Items = std::vector<std::uint32_t>;

/// A point on a diagonal.
struct Place : MzIndexable {
    explicit Place(double x) : point(MzPointGeometry::geometryWithPoint({x, x})) {}
    std::shared_ptr<MzGeometry> geometry() const override { return point; }
    std::shared_ptr<MzGeometry> point;
};

struct Diagonal {
    explicit Diagonal(int count) {
        for (int i = 0; i < count; ++i) places.emplace_back(i);
        for (Place& place : places) objects.push_back(&place);
    }
    std::vector<Place> places;
    std::vector<MzIndexable*> objects;
};

/// As its user walks it.
std::size_t leavesBelow(const MzRTree::Nodes& nodes) {
    std::size_t count = 0;
    for (const auto& node : nodes) {
        const auto* inner = dynamic_cast<const MzTreeInternalNode*>(node.get());
        count += inner == nullptr ? 1 : leavesBelow(inner->nodes());
    }
    return count;
}

bool canBeSettled(const Diagonal& diagonal) {
    try {
        (void)MzRTree::initWithSpatialObjects(diagonal.objects);
        return true;
    } catch (const std::out_of_range&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
}

TEST(ChoosingAnIndexOverFeatures, TheSettledOneHas5Of10Points) {
    const Diagonal ten(10);
    EXPECT_EQ(leavesBelow(MzRTree::initWithSpatialObjects(ten.objects)->rootNodes()), 5u);
    const auto tree = MzPackedRTree::initWithSpatialObjects(ten.objects);
    EXPECT_EQ(tree->itemsInWindow({-1, -1, 11, 11}).size(), 10u);
}

TEST(ChoosingAnIndexOverFeatures, TheSettledOneThrowsFor178OfTheCountsUpTo200) {
    int thrown = 0;
    for (int count = 0; count <= 200; ++count) {
        const Diagonal diagonal(count);
        thrown += canBeSettled(diagonal) ? 0 : 1;
        const auto tree = MzPackedRTree::initWithSpatialObjects(diagonal.objects);
        ASSERT_EQ(tree->itemsInWindow({-1, -1, 201, 201}).size(), diagonal.places.size());
    }
    EXPECT_EQ(thrown, 178);
}

TEST(ChoosingAnIndexOverFeatures, TheCounterpartFindsByAnyQuestion) {
    const Diagonal ten(10);
    const auto tree = MzPackedRTree::initWithSpatialObjects(ten.objects);
    EXPECT_EQ(tree->itemsInWindow({1.5, 0, 3, 3}), (Items{2, 3}));
    EXPECT_EQ(tree->itemsAtPoint({4, 4}), Items{4});
    test::OwnedPolygon owned({{{0, 0}, {9, 0}, {9, 5}, {0, 0}}});
    EXPECT_TRUE(tree->itemsInRegion(MzPolygonWindow(owned.record())) == Items{0});
    const auto nearest = tree->nearest({6.4, 6.4}, 2);
    ASSERT_EQ(nearest.size(), 2u);
    EXPECT_EQ(nearest[0].item, 6u);
    EXPECT_EQ(nearest[1].item, 7u);
    const auto least = [](const MzBox& box) { return std::abs(box.minX - 10); };
    const auto byX = tree->nearest(
        1, [](const MzBox&) { return 0.0; },
        [&](std::uint32_t, const MzBox& box) { return least(box); });
    ASSERT_EQ(byX.size(), 1u);
    EXPECT_EQ(byX[0].item, 9u);
}

TEST(ChoosingAnIndexOverFeatures, TheCounterpartFindsAcrossThe180thMeridian) {
    const std::vector<MzBox> boxes{MzBox::of(MzPoint{-179, 0}), MzBox::of(MzPoint{179, 0}),
                                   MzBox::of(MzPoint{0, 0})};
    const auto tree = MzPackedRTree::initWithBoxes(boxes);
    EXPECT_EQ(tree->itemsWrapping({178, -1, -178, 1}, 360), (Items{0, 1}));
    EXPECT_EQ(tree->itemsInWindow({178, -1, 182, 1}), Items{1});
}

TEST(ChoosingAnIndexOverFeatures, TheCounterpartIsOneBlockOfBytes) {
    const Diagonal ten(10);
    const auto built = MzPackedRTree::initWithSpatialObjects(ten.objects);
    const auto bytes = built->block();
    std::vector<std::uint64_t> copy((bytes.size() + 7) / 8);  // where 8 divides the address
    const auto room = std::as_writable_bytes(std::span(copy)).first(bytes.size());
    std::ranges::copy(bytes, room.begin());
    const auto tree = MzPackedRTree::initWithBlock(room);
    ASSERT_NE(tree, nullptr);
    EXPECT_EQ(tree->itemsInWindow({1.5, 0, 3, 3}), (Items{2, 3}));
}

}  // namespace
}  // namespace mezalith
