// SPDX-License-Identifier: MIT
#include <mezalith/geometry/geometry.hpp>
#include <mezalith/index/r_tree.hpp>

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace mezalith {

namespace {

constexpr std::uint64_t kMaxNodeSize = 8;

using Slice = std::span<std::shared_ptr<MzTreeNode>>;
using Center = double (*)(const MzTreeNode*);
using Compare = int (*)(const MzTreeNode*, const MzTreeNode*, const void*);

double centerX(const MzTreeNode* node) {
    if (node == nullptr) return 0;
    const MzRect bounds = node->bounds();
    return bounds.origin.x + bounds.size.width * 0.5;
}

double centerY(const MzTreeNode* node) {
    if (node == nullptr) return 0;
    const MzRect bounds = node->bounds();
    return bounds.origin.y + bounds.size.height * 0.5;
}

int ordering(double a, double b, bool descending) {
    const int ascending = (a > b) - (b > a);
    return descending ? -ascending : ascending;
}

/// Sorts by descending centres; those that are not a number, which have no order, come last.
void sortDescending(Slice nodes, Center center, Compare compare) {
    const auto isNumber = [&](const auto& node) { return !std::isnan(center(node.get())); };
    const auto numbersEnd = std::ranges::stable_partition(nodes, isNumber).begin();
    const bool descending = true;
    std::stable_sort(nodes.begin(), numbersEnd, [&](const auto& a, const auto& b) {
        return compare(a.get(), b.get(), &descending) < 0;
    });
}

}  // namespace

int centerXSort(const MzTreeNode* a, const MzTreeNode* b, const void* context) {
    return ordering(centerX(a), centerX(b), context != nullptr);
}

int centerYSort(const MzTreeNode* a, const MzTreeNode* b, const void* context) {
    return ordering(centerY(a), centerY(b), context != nullptr);
}

MzRTree::~MzRTree() = default;

std::shared_ptr<MzRTree> MzRTree::initWithSpatialObjects(std::span<MzIndexable* const> objects) {
    Nodes leaves;
    for (MzIndexable* object : objects) {
        const auto geometry = object != nullptr ? object->geometry() : nullptr;
        if (geometry == nullptr) continue;
        for (const auto& leaf : geometry->leafNodes()) {
            if (leaf == nullptr) continue;
            leaf->setObject(object);
            leaves.push_back(leaf);
        }
    }
    auto tree = std::make_shared<MzRTree>();
    tree->maxNodeSize_ = kMaxNodeSize;
    tree->rootNodes_ = tree->rootNodesForNodes(std::move(leaves));
    return tree;
}

MzRTree::Nodes MzRTree::rootNodesForNodes(Nodes nodes) const {
    if (nodes.size() < maxNodeSize_) return nodes;
    if (maxNodeSize_ < 2) throw std::length_error("MzRTree: nodes must hold at least two");
    const std::size_t count = nodes.size();
    Nodes level = packedLevel(std::move(nodes));
    if (level.size() == count) throw std::length_error("MzRTree: packing would never end");
    return rootNodesForNodes(std::move(level));
}

MzRTree::Nodes MzRTree::packedLevel(Nodes nodes) const {
    sortDescending(nodes, centerX, centerXSort);
    const double slices = static_cast<double>(nodes.size()) / static_cast<double>(maxNodeSize_);
    const auto length = static_cast<std::size_t>(std::ceil(std::sqrt(slices)));
    Nodes level;
    for (std::size_t start = 0; start < nodes.size(); start += length) {
        if (length > nodes.size() - start) throw std::out_of_range("MzRTree: slice beyond the end");
        packSlice(Slice(nodes).subspan(start, length), level);
    }
    return level;
}

void MzRTree::packSlice(Slice slice, Nodes& level) const {
    sortDescending(slice, centerY, centerYSort);
    for (std::size_t start = 0; start < slice.size(); start += maxNodeSize_) {
        const std::size_t left = slice.size() - start;
        // Settled: the last group of a slice leaves out the slice's last node.
        const Slice group = slice.subspan(start, left > maxNodeSize_ ? maxNodeSize_ : left - 1);
        level.push_back(MzTreeInternalNode::initWithTreeNodes({group.begin(), group.end()}));
    }
}

}  // namespace mezalith
