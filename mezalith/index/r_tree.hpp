// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/index/indexable.hpp>
#include <mezalith/index/tree_node.hpp>
#include <mezalith/platform/object.hpp>

#include <cstdint>
#include <memory>
#include <span>
#include <utility>

namespace mezalith {

/// A tree of bounding rectangles over the pieces of spatial objects, packed once by sorting and
/// slicing, in the manner of Leutenegger, Lopez and Edgington: "STR: A Simple and Efficient
/// Algorithm for R-Tree Packing" (1997).
///
/// It has no query: a host starts with every node of `rootNodes`, skips a node whose bounds miss
/// the area, takes the `object` of a leaf and descends into the `nodes` of any other. An object is
/// met once for each of its pieces. Bounds are in longitude and latitude.
///
/// Settled: of every slice the node sorted last is left out of the tree, and only some counts of
/// leaves can be packed at all: of 0 to 200 these are 0 to 7, 10, 12, 14, 20, 24, 28, 36, 42, 60,
/// 72, 80, 96, 112, 140 and 180. `MzPackedRTree` finds everything.
class MEZALITH_EXPORT MzRTree : public platform::Object {
  public:
    using Nodes = MzTreeInternalNode::Nodes;

    /// An empty tree that packs nothing: its `maxNodeSize` is 0.
    MzRTree() = default;
    ~MzRTree() override;

    /// Packs the leaves of the objects' geometries into nodes of at most 8. Points each leaf, which
    /// the geometry and the tree share, at its object; objects are not owned and must live as long
    /// as the tree is used. Null objects and geometries have no leaves. Throws as
    /// `rootNodesForNodes` does, when the leaves are already pointed at the objects.
    static std::shared_ptr<MzRTree> initWithSpatialObjects(std::span<MzIndexable* const> objects);

    /// The number of nodes that are not packed any further, and the most that a node holds.
    std::uint64_t maxNodeSize() const { return maxNodeSize_; }
    void setMaxNodeSize(std::uint64_t size) { maxNodeSize_ = size; }

    /// The tree's top level.
    const Nodes& rootNodes() const { return rootNodes_; }
    void setRootNodes(Nodes nodes) { rootNodes_ = std::move(nodes); }

    /// The top level over `nodes`, which itself comes back when it has fewer than `maxNodeSize`
    /// nodes. Each level sorts by descending x of the centres, in input order where they are equal,
    /// and cuts into slices of ceil(sqrt(count / maxNodeSize)) nodes; each slice is sorted likewise
    /// by y and cut into nodes. Centres that are not a number come last.
    ///
    /// Throws std::out_of_range when the last slice of a level is not full, and std::length_error
    /// when a level comes out as long as it went in or `maxNodeSize` is under 2: packing would
    /// never end.
    Nodes rootNodesForNodes(Nodes nodes) const;

  private:
    Nodes packedLevel(Nodes nodes) const;
    void packSlice(std::span<std::shared_ptr<MzTreeNode>> slice, Nodes& level) const;

    std::uint64_t maxNodeSize_ = 0;
    Nodes rootNodes_;
};

/// How two nodes compare by the x or y of their centres: with a non-null `context`, which is not
/// read, descending: -1 when `a` has the greater centre, +1 when `b` has, else 0; with null the
/// other way round. A null node's centre is 0.
MEZALITH_EXPORT int centerXSort(const MzTreeNode* a, const MzTreeNode* b, const void* context);
MEZALITH_EXPORT int centerYSort(const MzTreeNode* a, const MzTreeNode* b, const void* context);

}  // namespace mezalith
