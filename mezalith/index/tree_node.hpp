// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/object.hpp>

#include <memory>
#include <utility>
#include <vector>

namespace mezalith {

/// A node of a tree of bounding rectangles.
class MEZALITH_EXPORT MzTreeNode : public platform::Object {
  public:
    MzTreeNode() = default;
    static std::shared_ptr<MzTreeNode> initWithBounds(MzRect bounds);

    /// In the units of whoever built the node.
    MzRect bounds() const { return bounds_; }
    void setBounds(MzRect bounds) { bounds_ = bounds; }
    virtual bool isLeaf() const { return false; }

    /// A new node of the receiver's own class with the same bounds.
    std::shared_ptr<MzTreeNode> copy() const { return copyNode(); }

  protected:
    virtual std::shared_ptr<MzTreeNode> copyNode() const;

  private:
    MzRect bounds_ = MzZeroRect;
};

/// One indexed piece of a geometry.
class MEZALITH_EXPORT MzTreeLeafNode : public MzTreeNode {
  public:
    MzTreeLeafNode() = default;
    static std::shared_ptr<MzTreeLeafNode> initWithBounds(MzRect bounds, platform::Object* object);

    /// What the piece belongs to: the geometry at first, the spatial object once a tree was built.
    /// Not owned; whoever holds the leaf keeps it alive.
    platform::Object* object() const { return object_; }
    void setObject(platform::Object* object) { object_ = object; }
    bool isLeaf() const override { return true; }
    std::shared_ptr<MzTreeLeafNode> copy() const;

  protected:
    std::shared_ptr<MzTreeNode> copyNode() const override;

  private:
    platform::Object* object_ = nullptr;
};

/// A node over other nodes, in packing order.
class MEZALITH_EXPORT MzTreeInternalNode : public MzTreeNode {
  public:
    using Nodes = std::vector<std::shared_ptr<MzTreeNode>>;

    MzTreeInternalNode() = default;
    MzTreeInternalNode(const MzTreeInternalNode&) = delete;
    MzTreeInternalNode& operator=(const MzTreeInternalNode&) = delete;
    /// Releases the children without recursion, however deep the tree.
    ~MzTreeInternalNode() override;
    /// Bounds are the union of the children's; a null child counts as the zero rectangle, and
    /// empty rectangles vanish in a union.
    static std::shared_ptr<MzTreeInternalNode> initWithTreeNodes(Nodes nodes);

    const Nodes& nodes() const { return nodes_; }
    void setNodes(Nodes nodes) { nodes_ = std::move(nodes); }
    /// The copy shares its children with the receiver.
    std::shared_ptr<MzTreeInternalNode> copy() const;

  protected:
    std::shared_ptr<MzTreeNode> copyNode() const override;

  private:
    Nodes nodes_;
};

}  // namespace mezalith
