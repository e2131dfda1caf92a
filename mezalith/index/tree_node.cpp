// SPDX-License-Identifier: MIT
#include <mezalith/index/tree_node.hpp>

#include <iterator>

namespace mezalith {

std::shared_ptr<MzTreeNode> MzTreeNode::initWithBounds(MzRect bounds) {
    auto node = std::make_shared<MzTreeNode>();
    node->setBounds(bounds);
    return node;
}

std::shared_ptr<MzTreeNode> MzTreeNode::copyNode() const { return initWithBounds(bounds_); }

std::shared_ptr<MzTreeLeafNode> MzTreeLeafNode::initWithBounds(MzRect bounds,
                                                               platform::Object* object) {
    auto leaf = std::make_shared<MzTreeLeafNode>();
    leaf->setBounds(bounds);
    leaf->setObject(object);
    return leaf;
}

std::shared_ptr<MzTreeLeafNode> MzTreeLeafNode::copy() const {
    return std::static_pointer_cast<MzTreeLeafNode>(copyNode());
}

std::shared_ptr<MzTreeNode> MzTreeLeafNode::copyNode() const {
    return initWithBounds(bounds(), object_);
}

MzTreeInternalNode::~MzTreeInternalNode() {
    // A node about to go hands over its children first, so that its own destructor finds only
    // nulls.
    Nodes pending = std::move(nodes_);
    while (!pending.empty()) {
        const auto node = std::move(pending.back());
        pending.pop_back();
        if (node.use_count() != 1) continue;
        if (auto* inner = dynamic_cast<MzTreeInternalNode*>(node.get())) {
            pending.insert(pending.end(), std::move_iterator(inner->nodes_.begin()),
                           std::move_iterator(inner->nodes_.end()));
        }
    }
}

std::shared_ptr<MzTreeInternalNode> MzTreeInternalNode::initWithTreeNodes(Nodes nodes) {
    auto node = std::make_shared<MzTreeInternalNode>();
    MzRect bounds = MzZeroRect;
    for (const auto& child : nodes) {
        bounds = MzUnionRect(bounds, child ? child->bounds() : MzZeroRect);
    }
    node->setBounds(bounds);
    node->nodes_ = std::move(nodes);
    return node;
}

std::shared_ptr<MzTreeInternalNode> MzTreeInternalNode::copy() const {
    return std::static_pointer_cast<MzTreeInternalNode>(copyNode());
}

std::shared_ptr<MzTreeNode> MzTreeInternalNode::copyNode() const {
    auto node = std::make_shared<MzTreeInternalNode>();
    node->setBounds(bounds());
    node->nodes_ = nodes_;
    return node;
}

}  // namespace mezalith
