// SPDX-License-Identifier: MIT
#include <mezalith/geometry/geometry.hpp>
#include <mezalith/index/r_tree.hpp>

#include <cmath>
#include <limits>
#include <map>
#include <set>
#include <stdexcept>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith {
namespace {

using Nodes = MzRTree::Nodes;

/// A geometry of as many pieces as it is given bounds.
class PiecesGeometry : public MzGeometry {
  public:
    explicit PiecesGeometry(std::vector<MzRect> pieces) : pieces_(std::move(pieces)) {}

  protected:
    Leaves makeLeafNodes() override {
        Leaves leaves;
        for (const MzRect piece : pieces_) {
            leaves.push_back(MzTreeLeafNode::initWithBounds(piece, this));
        }
        return leaves;
    }

  private:
    std::vector<MzRect> pieces_;
};

struct Feature : MzIndexable {
    explicit Feature(std::shared_ptr<MzGeometry> itsGeometry) : stored(std::move(itsGeometry)) {}
    std::shared_ptr<MzGeometry> geometry() const override { return stored; }
    std::shared_ptr<MzGeometry> stored;
};

MzRect at(double x, double y) { return {{x, y}, {1, 1}}; }

/// Squares on a diagonal.
std::vector<MzRect> diagonal(std::size_t count) {
    std::vector<MzRect> rects;
    for (std::size_t i = 0; i < count; ++i) {
        rects.push_back(at(static_cast<double>(i), static_cast<double>(i)));
    }
    return rects;
}

std::shared_ptr<MzRTree> treeOver(Feature& feature) {
    MzIndexable* const objects[] = {&feature};
    return MzRTree::initWithSpatialObjects(objects);
}

std::shared_ptr<MzRTree> treeOver(std::vector<MzRect> pieces) {
    Feature feature(std::make_shared<PiecesGeometry>(std::move(pieces)));
    return treeOver(feature);
}

Nodes leavesAt(const std::vector<MzRect>& rects) {
    Nodes nodes;
    for (const MzRect rect : rects) nodes.push_back(MzTreeLeafNode::initWithBounds(rect, nullptr));
    return nodes;
}

Nodes childrenOf(const MzTreeNode& node) {
    const auto* internal = dynamic_cast<const MzTreeInternalNode*>(&node);
    return internal != nullptr ? internal->nodes() : Nodes{};
}

void collectLeaves(const Nodes& nodes, Nodes& leaves) {
    for (const auto& node : nodes) {
        if (node->isLeaf()) leaves.push_back(node);
        collectLeaves(childrenOf(*node), leaves);
    }
}

Nodes reachableLeaves(const Nodes& roots) {
    Nodes leaves;
    collectLeaves(roots, leaves);
    return leaves;
}

// --- which counts can be packed --------------------------------------------------------------

TEST(RTree, IsEmptyWithoutObjects) {
    EXPECT_TRUE(MzRTree::initWithSpatialObjects({})->rootNodes().empty());
}

TEST(RTree, HasNoLeavesForNullObjectsNullGeometriesAndEmptyOnes) {
    Feature nothing(nullptr), empty(std::make_shared<MzGeometry>());
    MzIndexable* const objects[] = {nullptr, &nothing, &empty};
    EXPECT_TRUE(MzRTree::initWithSpatialObjects(objects)->rootNodes().empty());
}

TEST(RTree, LeavesOutLeavesThatAreNull) {
    class Gap : public MzGeometry {
        Leaves makeLeafNodes() override { return {nullptr, leafWithBounds({{0, 0}, {1, 1}})}; }
    };
    Feature feature(std::make_shared<Gap>());
    EXPECT_EQ(treeOver(feature)->rootNodes(), Nodes{feature.stored->leafNodes()[1]});
}

TEST(RTree, KeepsFewerThanEightLeavesAsTheyAre) {
    for (std::size_t count = 1; count < 8; ++count) {
        Feature feature(std::make_shared<PiecesGeometry>(diagonal(count)));
        const auto tree = treeOver(feature);
        const auto& leaves = feature.stored->leafNodes();
        EXPECT_EQ(tree->rootNodes(), Nodes(leaves.begin(), leaves.end()));
    }
}

TEST(RTree, CutsTenLeavesIntoFiveNodesOfOne) {
    std::vector<MzRect> rects;
    for (int i = 0; i < 10; ++i) rects.push_back(at(i / 2, i % 2));
    const auto tree = treeOver(rects);
    ASSERT_EQ(tree->rootNodes().size(), 5U);
    for (std::size_t i = 0; i < 5; ++i) {
        const MzTreeNode& node = *tree->rootNodes()[i];
        EXPECT_FALSE(node.isLeaf());
        EXPECT_EQ(childrenOf(node).size(), 1U);
        EXPECT_EQ(node.bounds().origin.x, 4.0 - static_cast<double>(i));
        EXPECT_EQ(node.bounds().origin.y, 1);  // the lower one of the slice is left out
    }
}

TEST(RTree, FailsOnNineLeaves) { EXPECT_THROW(treeOver(diagonal(9)), std::out_of_range); }

TEST(RTree, DoesNotPackEightLeavesForEver) {
    EXPECT_THROW(treeOver(diagonal(8)), std::length_error);
}

TEST(RTree, PacksExactlyTheseCountsAndReachesThatManyLeaves) {
    std::map<std::size_t, std::size_t> packed{{10, 5},  {12, 6},  {14, 7},   {20, 5},   {24, 6},
                                              {28, 7},  {36, 12}, {42, 14},  {60, 10},  {72, 12},
                                              {80, 15}, {96, 18}, {112, 21}, {140, 28}, {180, 48}};
    for (std::size_t count = 0; count < 8; ++count) packed[count] = count;
    const std::set<std::size_t> endless{8, 16, 32, 48, 128, 160};
    for (std::size_t count = 0; count <= 200; ++count) {
        SCOPED_TRACE(count);
        if (packed.contains(count)) {
            EXPECT_EQ(reachableLeaves(treeOver(diagonal(count))->rootNodes()).size(),
                      packed[count]);
        } else if (endless.contains(count)) {
            EXPECT_THROW(treeOver(diagonal(count)), std::length_error);
        } else {
            EXPECT_THROW(treeOver(diagonal(count)), std::out_of_range);
        }
    }
}

TEST(RTree, PacksNothingIntoNodesOfLessThanTwo) {
    MzRTree tree;
    EXPECT_EQ(tree.maxNodeSize(), 0U);
    EXPECT_THROW(tree.rootNodesForNodes({}), std::length_error);
    tree.setMaxNodeSize(1);
    EXPECT_TRUE(tree.rootNodesForNodes({}).empty());
    for (const std::size_t count : {1U, 2U, 3U, 9U}) {
        EXPECT_THROW(tree.rootNodesForNodes(leavesAt(diagonal(count))), std::length_error);
    }
}

TEST(RTree, FindsNodesOfTwoEndlessOnlyWhenItGetsThere) {
    MzRTree tree;
    tree.setMaxNodeSize(2);
    EXPECT_THROW(tree.rootNodesForNodes(leavesAt(diagonal(2))), std::length_error);
    EXPECT_THROW(tree.rootNodesForNodes(leavesAt(diagonal(3))), std::out_of_range);
}

// --- how they are packed ---------------------------------------------------------------------

TEST(RTree, PointsTheLeavesItSharesWithTheGeometriesAtTheirObjects) {
    Feature first(std::make_shared<PiecesGeometry>(diagonal(2)));
    Feature second(std::make_shared<PiecesGeometry>(diagonal(3)));
    EXPECT_EQ(first.stored->leafNodes()[0]->object(), first.stored.get());
    MzIndexable* const objects[] = {&first, &second};
    const auto tree = MzRTree::initWithSpatialObjects(objects);
    EXPECT_EQ(tree->maxNodeSize(), 8U);
    ASSERT_EQ(tree->rootNodes().size(), 5U);
    for (std::size_t i = 0; i < 5; ++i) {
        const Feature& owner = i < 2 ? first : second;
        const auto& leaf = owner.stored->leafNodes()[i < 2 ? i : i - 2];
        EXPECT_EQ(tree->rootNodes()[i], leaf);
        EXPECT_EQ(leaf->object(), &owner);
    }
}

TEST(RTree, PointsTheLeavesAtTheirObjectsBeforeItFails) {
    Feature feature(std::make_shared<PiecesGeometry>(diagonal(9)));
    EXPECT_THROW(treeOver(feature), std::out_of_range);
    for (const auto& leaf : feature.stored->leafNodes()) EXPECT_EQ(leaf->object(), &feature);
}

TEST(RTree, SortsByDescendingXAndTheSlicesByDescendingY) {
    MzRTree tree;
    tree.setMaxNodeSize(4);
    // Twelve nodes: slices of two, of which the one with the smaller y is left out.
    Nodes nodes;
    for (int i = 0; i < 12; ++i)
        nodes.push_back(MzTreeLeafNode::initWithBounds(at(i, -i), nullptr));
    const Nodes level =
        tree.rootNodesForNodes({nodes[3], nodes[8], nodes[0], nodes[11], nodes[5], nodes[10],
                                nodes[1], nodes[2], nodes[7], nodes[4], nodes[9], nodes[6]});
    // Six nodes again: slices of two.
    ASSERT_EQ(level.size(), 3U);
    EXPECT_EQ(reachableLeaves(level), (Nodes{nodes[8], nodes[4], nodes[0]}));
}

TEST(RTree, CutsALongSliceIntoFullNodesAndOneThatLeavesOutTheLast) {
    MzRTree tree;
    tree.setMaxNodeSize(4);
    const Nodes nodes = leavesAt(std::vector<MzRect>(144, at(0, 0)));
    const Nodes level = tree.rootNodesForNodes(nodes);
    EXPECT_EQ(level.size(), 3U);
    // Slices of six make a node of four and one of one. Of the 48 nodes, slices of four make nodes
    // of three; of these 12 and then of 6, slices of two keep the first.
    Nodes expected;
    for (const std::size_t slice : {0U, 48U, 96U}) {
        for (const std::size_t i : {0U, 1U, 2U, 3U, 4U, 6U, 7U, 8U, 9U}) {
            expected.push_back(nodes[slice + i]);
        }
    }
    EXPECT_EQ(reachableLeaves(level), expected);
}

TEST(RTree, KeepsTheOrderOfEqualCentres) {
    MzRTree tree;
    tree.setMaxNodeSize(8);
    const Nodes nodes = leavesAt(std::vector<MzRect>(10, at(0, 0)));
    EXPECT_EQ(reachableLeaves(tree.rootNodesForNodes(nodes)),
              (Nodes{nodes[0], nodes[2], nodes[4], nodes[6], nodes[8]}));
}

TEST(RTree, SortsCentresThatAreNoNumberLast) {
    MzRTree tree;
    tree.setMaxNodeSize(8);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    std::vector<MzRect> rects(10, at(nan, nan));
    rects[4] = at(1, nan);
    rects[7] = at(2, 5);
    const Nodes nodes = leavesAt(rects);
    EXPECT_EQ(reachableLeaves(tree.rootNodesForNodes(nodes)),
              (Nodes{nodes[7], nodes[0], nodes[2], nodes[5], nodes[8]}));
}

TEST(RTree, PacksNullNodesAsIfCentredAtZero) {
    MzRTree tree;
    tree.setMaxNodeSize(3);
    const Nodes level = tree.rootNodesForNodes({nullptr, MzTreeNode::initWithBounds(at(-5, -3)),
                                                MzTreeNode::initWithBounds(at(5, 0)), nullptr});
    ASSERT_EQ(level.size(), 2U);
    EXPECT_EQ(level[0]->bounds().origin.x, 5);
    EXPECT_EQ(childrenOf(*level[1]), Nodes{nullptr});
}

TEST(RTree, CoversItsPiecesWithTheBoundsAboveThem) {
    const auto covers = [](const auto& self, const MzTreeNode& node) -> bool {
        MzRect bounds = MzZeroRect;
        for (const auto& child : childrenOf(node)) {
            bounds = MzUnionRect(bounds, child->bounds());
            if (!self(self, *child)) return false;
        }
        return node.isLeaf() || MzEqualRects(bounds, node.bounds());
    };
    EXPECT_TRUE(rc::check("a node's bounds are the union of its children's", [&] {
        const auto count = *rc::gen::element<std::size_t>(10, 20, 36, 60, 80, 112, 140, 180);
        const auto coordinate = rc::gen::inRange(-1000, 1000);
        std::vector<MzRect> rects;
        for (std::size_t i = 0; i < count; ++i) rects.push_back(at(*coordinate, *coordinate));
        const auto tree = treeOver(rects);
        const Nodes leaves = reachableLeaves(tree->rootNodes());
        RC_ASSERT(std::set(leaves.begin(), leaves.end()).size() == leaves.size());
        for (const auto& node : tree->rootNodes()) RC_ASSERT(covers(covers, *node));
    }));
}

TEST(RTree, LetsItsTopLevelBeReplaced) {
    MzRTree tree;
    const Nodes nodes = leavesAt(diagonal(3));
    tree.setRootNodes(nodes);
    EXPECT_EQ(tree.rootNodes(), nodes);
}

// --- comparators -----------------------------------------------------------------------------

TEST(CenterSort, ComparesCentresDescendingWithAContextAndAscendingWithout) {
    const auto low = MzTreeNode::initWithBounds({{0, 10}, {2, 0}});   // centre (1, 10)
    const auto high = MzTreeNode::initWithBounds({{-1, 0}, {6, 4}});  // centre (2, 2)
    const int context = 0;
    EXPECT_EQ(centerXSort(low.get(), high.get(), &context), 1);
    EXPECT_EQ(centerXSort(high.get(), low.get(), &context), -1);
    EXPECT_EQ(centerXSort(low.get(), high.get(), nullptr), -1);
    EXPECT_EQ(centerXSort(high.get(), low.get(), nullptr), 1);
    EXPECT_EQ(centerYSort(low.get(), high.get(), &context), -1);
    EXPECT_EQ(centerYSort(high.get(), low.get(), &context), 1);
    EXPECT_EQ(centerYSort(low.get(), high.get(), nullptr), 1);
    EXPECT_EQ(centerYSort(high.get(), low.get(), nullptr), -1);
}

TEST(CenterSort, TakesEqualCentresAndNumbersWithoutOrderForEqual) {
    const auto narrow = MzTreeNode::initWithBounds({{1, 1}, {0, 0}});
    const auto wide = MzTreeNode::initWithBounds({{0, 0}, {2, 2}});
    const auto unknown = MzTreeNode::initWithBounds({{std::nan(""), std::nan("")}, {1, 1}});
    for (const auto compare : {centerXSort, centerYSort}) {
        EXPECT_EQ(compare(narrow.get(), wide.get(), nullptr), 0);
        EXPECT_EQ(compare(narrow.get(), wide.get(), &compare), 0);
        EXPECT_EQ(compare(unknown.get(), wide.get(), &compare), 0);
        EXPECT_EQ(compare(wide.get(), unknown.get(), nullptr), 0);
    }
}

TEST(CenterSort, TakesZeroForTheCentreOfNull) {
    const auto right = MzTreeNode::initWithBounds(at(1, 1));
    const auto left = MzTreeNode::initWithBounds(at(-2, -2));
    const auto middle = MzTreeNode::initWithBounds({{-1, -1}, {2, 2}});
    for (const auto compare : {centerXSort, centerYSort}) {
        EXPECT_EQ(compare(nullptr, right.get(), nullptr), -1);
        EXPECT_EQ(compare(nullptr, left.get(), nullptr), 1);
        EXPECT_EQ(compare(middle.get(), nullptr, nullptr), 0);
        EXPECT_EQ(compare(nullptr, nullptr, nullptr), 0);
    }
}

}  // namespace
}  // namespace mezalith
