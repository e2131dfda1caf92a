// SPDX-License-Identifier: MIT
#include <mezalith/index/tree_node.hpp>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

class Feature : public platform::Object {};

constexpr MzRect kLeft{{0, 0}, {1, 2}};
constexpr MzRect kRight{{10, 20}, {3, 4}};

// A chain of internal nodes, each the only child of the one above.
std::shared_ptr<MzTreeInternalNode> chain(std::shared_ptr<MzTreeNode> bottom, int depth) {
    auto top = MzTreeInternalNode::initWithTreeNodes({std::move(bottom)});
    while (--depth > 0) top = MzTreeInternalNode::initWithTreeNodes({std::move(top)});
    return top;
}

TEST(TreeNode, HoldsItsBounds) {
    const auto node = MzTreeNode::initWithBounds(kLeft);
    EXPECT_TRUE(MzEqualRects(node->bounds(), kLeft));
    node->setBounds(kRight);
    EXPECT_TRUE(MzEqualRects(node->bounds(), kRight));
    EXPECT_FALSE(node->isLeaf());
    EXPECT_TRUE(MzEqualRects(MzTreeNode().bounds(), MzZeroRect));
}

TEST(TreeNode, CopyHasTheSameBounds) {
    const auto node = MzTreeNode::initWithBounds(kRight);
    const auto copy = node->copy();
    EXPECT_NE(copy, node);
    EXPECT_TRUE(MzEqualRects(copy->bounds(), kRight));
}

TEST(TreeLeafNode, RefersToItsObjectAndCanBeRepointed) {
    Feature one, two;
    const auto leaf = MzTreeLeafNode::initWithBounds(kLeft, &one);
    EXPECT_TRUE(leaf->isLeaf());
    EXPECT_TRUE(MzEqualRects(leaf->bounds(), kLeft));
    EXPECT_EQ(leaf->object(), &one);
    leaf->setObject(&two);
    EXPECT_EQ(leaf->object(), &two);
    EXPECT_EQ(MzTreeLeafNode().object(), nullptr);
}

TEST(TreeLeafNode, CopyRefersToTheSameObject) {
    Feature feature;
    const auto copy = MzTreeLeafNode::initWithBounds(kLeft, &feature)->copy();
    EXPECT_TRUE(MzEqualRects(copy->bounds(), kLeft));
    EXPECT_EQ(copy->object(), &feature);
}

TEST(TreeLeafNode, CopyThroughTheBaseKeepsTheClass) {
    Feature feature;
    const std::shared_ptr<MzTreeNode> leaf = MzTreeLeafNode::initWithBounds(kLeft, &feature);
    const auto copy = std::dynamic_pointer_cast<MzTreeLeafNode>(leaf->copy());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->object(), &feature);
}

TEST(TreeInternalNode, WithoutChildrenHasTheZeroRectangle) {
    const auto node = MzTreeInternalNode::initWithTreeNodes({});
    EXPECT_TRUE(MzEqualRects(node->bounds(), MzZeroRect));
    EXPECT_TRUE(node->nodes().empty());
    EXPECT_FALSE(node->isLeaf());
}

TEST(TreeInternalNode, SpansDisjointChildren) {
    const auto left = MzTreeNode::initWithBounds(kLeft);
    const auto right = MzTreeNode::initWithBounds(kRight);
    const auto node = MzTreeInternalNode::initWithTreeNodes({left, right});
    EXPECT_TRUE(MzEqualRects(node->bounds(), {{0, 0}, {13, 24}}));
    EXPECT_EQ(node->nodes(), (MzTreeInternalNode::Nodes{left, right}));
}

TEST(TreeInternalNode, CountsNullAndEmptyChildrenForNothing) {
    const auto right = MzTreeNode::initWithBounds(kRight);
    const auto point = MzTreeNode::initWithBounds({{-50, -50}, {0, 0}});
    const auto node = MzTreeInternalNode::initWithTreeNodes({nullptr, point, right});
    EXPECT_TRUE(MzEqualRects(node->bounds(), kRight));
    EXPECT_EQ(node->nodes().size(), 3u);
    EXPECT_TRUE(
        MzEqualRects(MzTreeInternalNode::initWithTreeNodes({nullptr})->bounds(), MzZeroRect));
}

TEST(TreeInternalNode, CopySharesItsChildren) {
    const auto node = MzTreeInternalNode::initWithTreeNodes({MzTreeNode::initWithBounds(kLeft)});
    const auto copy = node->copy();
    EXPECT_TRUE(MzEqualRects(copy->bounds(), kLeft));
    EXPECT_EQ(copy->nodes(), node->nodes());
    node->setNodes({});
    EXPECT_EQ(copy->nodes().size(), 1u);
}

TEST(TreeInternalNode, CopyThroughTheBaseKeepsTheClass) {
    const std::shared_ptr<MzTreeNode> node =
        MzTreeInternalNode::initWithTreeNodes({MzTreeNode::initWithBounds(kLeft)});
    const auto copy = std::dynamic_pointer_cast<MzTreeInternalNode>(node->copy());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->nodes().size(), 1u);
}

TEST(TreeInternalNode, ReleasesADeepChainWithoutRecursion) {
    const std::shared_ptr<MzTreeNode> bottom = MzTreeNode::initWithBounds(kLeft);
    auto top = chain(bottom, 200'000);
    EXPECT_EQ(bottom.use_count(), 2);
    top.reset();
    EXPECT_EQ(bottom.use_count(), 1);
}

TEST(TreeInternalNode, KeepsWhatOthersStillHold) {
    const auto shared =
        MzTreeInternalNode::initWithTreeNodes({MzTreeNode::initWithBounds(kRight), nullptr});
    chain(shared, 3).reset();
    EXPECT_EQ(shared.use_count(), 1);
    ASSERT_EQ(shared->nodes().size(), 2u);
    EXPECT_TRUE(MzEqualRects(shared->nodes().front()->bounds(), kRight));
}

TEST(TreeInternalNode, ReleasesANodeHeldTwiceByTheSameTree) {
    const std::shared_ptr<MzTreeNode> bottom = MzTreeNode::initWithBounds(kLeft);
    std::shared_ptr<MzTreeNode> twice = MzTreeInternalNode::initWithTreeNodes({bottom});
    auto top = MzTreeInternalNode::initWithTreeNodes({twice, twice, nullptr});
    const std::weak_ptr<MzTreeNode> watched = twice;
    twice.reset();
    EXPECT_FALSE(watched.expired());
    top.reset();
    EXPECT_TRUE(watched.expired());
    EXPECT_EQ(bottom.use_count(), 1);
}

}  // namespace
}  // namespace mezalith
