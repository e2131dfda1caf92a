// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/index/box.hpp>
#include <mezalith/index/indexable.hpp>
#include <mezalith/index/packed_search.hpp>
#include <mezalith/index/tree_node.hpp>
#include <mezalith/platform/object.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <queue>
#include <span>
#include <type_traits>
#include <vector>

namespace mezalith {

class MzMapProjection;

/// A tree of bounding boxes that finds everything in it, built once from a list and never changed:
/// the counterpart of `MzRTree`. What it finds are items: places in the list it was built over.
///
/// It is one block of bytes, packed along a Hilbert curve after Kamel and Faloutsos: "On Packing
/// R-trees" (1993), with about 38 bytes a box. The block can be written to a file as it is, and
/// such a file, mapped into memory, be searched at once.
///
/// Boxes and windows include their borders, so that points and flat boxes are found. An empty box
/// (see MzBox) is never found and an empty window finds nothing. Infinite sides are allowed.
///
/// Every query may run in any number of threads at once.
class MEZALITH_EXPORT MzPackedRTree final : public platform::Object {
  public:
    struct Options {
        /// Boxes to a node: 8, 16, 32 or 64; any other number counts as the next of these.
        std::uint32_t nodeSize = 16;
        /// Those of the processor are used up to here: for tests and measurements.
        detail::PackedInstructions instructions = detail::PackedInstructions::AVX512;
    };
    struct Neighbour {
        std::uint32_t item;
        double distance;
        friend bool operator==(const Neighbour&, const Neighbour&) = default;
    };

    /// An empty tree.
    MzPackedRTree();
    ~MzPackedRTree() override;
    MzPackedRTree(const MzPackedRTree&) = delete;
    MzPackedRTree& operator=(const MzPackedRTree&) = delete;

    /// Over boxes in any one plane. Null for more than 2^32 - 1 of them and when there is no
    /// memory.
    static std::shared_ptr<MzPackedRTree> initWithBoxes(std::span<const MzBox> boxes,
                                                        const Options& options = defaults());
    /// Over the bounds of leaves; null leaves are never found.
    static std::shared_ptr<MzPackedRTree> initWithLeaves(
        std::span<const std::shared_ptr<MzTreeLeafNode>> leaves,
        const Options& options = defaults());
    /// Over the bounds of the objects' geometries, a box for each piece: in longitude and latitude,
    /// or, given a projection, in its plane, where windows are then in projected units. An object
    /// is an item, met once for each of its pieces. Nulls have no pieces. Objects are not kept.
    static std::shared_ptr<MzPackedRTree> initWithSpatialObjects(
        std::span<MzIndexable* const> objects,
        const std::shared_ptr<MzMapProjection>& projection = nullptr,
        const Options& options = defaults());

    /// A tree in a block of bytes that another tree answered as its `block`. The bytes are used
    /// where they are and must not change: `owner`, which is kept, may see to it. Null unless they
    /// are a whole block of this version, begin at an address that 8 divides, and name items below
    /// `itemLimit` only. Whatever else the bytes say, no query reads outside of them.
    /// Cost: a look at each item's number, and at none of the boxes.
    static std::shared_ptr<MzPackedRTree> initWithBlock(std::span<const std::byte> bytes,
                                                        std::shared_ptr<const void> owner = nullptr,
                                                        const Options& options = defaults());

    /// The whole tree, in little-endian order, to be written out as it is. Owned by the tree.
    std::span<const std::byte> block() const { return block_; }

    /// How many boxes can be found.
    std::size_t count() const { return static_cast<std::size_t>(nodes_.count); }
    /// The length of the list it was built over: items are below.
    std::size_t itemLimit() const { return itemLimit_; }
    std::uint32_t nodeSize() const { return static_cast<std::uint32_t>(nodes_.nodeSize()); }
    /// Around all boxes; empty when there are none.
    const MzBox& bounds() const { return bounds_; }

    /// Calls `visitor(item)` for each box that shares a point with `window`, in the order of the
    /// tree. A visitor that answers bool ends the search by false; false is answered then.
    template <typename Visitor>
    bool visitWindow(const MzBox& window, Visitor&& visitor) const {
        return visitBeyond(window, kNone, visitor);
    }
    /// The same for boxes that hold the point.
    template <typename Visitor>
    bool visitPoint(MzPoint point, Visitor&& visitor) const {
        return visitBeyond(MzBox::of(point), kNone, visitor);
    }
    /// The same in a world that repeats in x every `period` units (360 for degrees): a box is met
    /// once if it shares a point with the window or any of its repetitions up to 64 periods away.
    /// A window with minX above maxX begins at minX and runs on through the seam, as does one that
    /// reaches over it; one as wide as the period takes in all x.
    template <typename Visitor>
    bool visitWrapping(const MzBox& window, double period, Visitor&& visitor) const {
        double beyond = kNone;
        for (const MzBox& piece : repetitions(window, period)) {
            if (!visitBeyond(piece, beyond, visitor)) return false;
            beyond = piece.maxX;
        }
        return true;
    }
    /// The same for boxes that share a point with a region of any shape. `region.mayMeet(box)` says
    /// false only where no point of the box is in the region, and then of every box within it;
    /// `region.holds(box)` true only where all of it is; `region.meets(box)` is exact.
    template <typename Region, typename Visitor>
    bool visitRegion(const Region& region, Visitor&& visitor) const;

    /// The items met by the queries above, each once, in ascending order: that in which features
    /// are drawn.
    std::vector<std::uint32_t> itemsInWindow(const MzBox& window) const;
    std::vector<std::uint32_t> itemsAtPoint(MzPoint point) const;
    std::vector<std::uint32_t> itemsWrapping(const MzBox& window, double period) const;
    template <typename Region>
    std::vector<std::uint32_t> itemsInRegion(const Region& region) const {
        std::vector<std::uint32_t> items;
        visitRegion(region, [&](std::uint32_t item) { items.push_back(item); });
        return sortedOnce(std::move(items));
    }
    /// Appends the items in the window in the order of the tree, once for each box.
    void appendItemsInWindow(const MzBox& window, std::vector<std::uint32_t>& items) const;

    /// The `count` items whose boxes are nearest to the point in the plane, no farther than
    /// `limit`: by distance, at the same distance by number.
    std::vector<Neighbour> nearest(MzPoint point, std::size_t count,
                                   double limit = kInfinity) const;
    /// The same by any distance: `toItem(item, box)` answers how far an item is, and `toBox(box)`
    /// nothing that is more than for any item in the box. NaN leaves out what it is answered for.
    template <typename ToBox, typename ToItem>
    std::vector<Neighbour> nearest(std::size_t count, ToBox&& toBox, ToItem&& toItem,
                                   double limit = kInfinity) const;

  private:
    class Nearest;
    struct Waiting {
        double distance;
        std::uint64_t node;
        int level;
        bool operator<(const Waiting& other) const { return distance > other.distance; }
    };

    static constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    static constexpr double kInfinity = std::numeric_limits<double>::infinity();

    static Options defaults() { return {}; }
    /// Which items boxes stand for: the place in the list where `items` is empty.
    struct Origin {
        std::span<const std::uint32_t> items;
        std::size_t itemLimit;
        bool repeats;
    };
    static std::shared_ptr<MzPackedRTree> build(std::span<const MzBox> boxes, const Origin& origin,
                                                const Options& options);
    static std::shared_ptr<MzPackedRTree> buildWithoutEmpty(std::span<const MzBox> boxes,
                                                            const Origin& origin,
                                                            const Options& options);
    static std::shared_ptr<MzPackedRTree> make(std::span<const std::byte> bytes,
                                               std::shared_ptr<const void> owner,
                                               const Options& options);
    static std::vector<std::uint32_t> sortedOnce(std::vector<std::uint32_t> items);
    std::vector<MzBox> repetitions(MzBox window, double period) const;

    template <typename Visitor>
    static bool goesOn(Visitor& visitor, std::uint32_t item) {
        if constexpr (std::is_same_v<std::invoke_result_t<Visitor&, std::uint32_t>, bool>) {
            return visitor(item);
        } else {
            visitor(item);
            return true;
        }
    }
    template <typename Visitor>
    static bool visitRun(std::span<const std::uint32_t> run, Visitor& visitor) {
        for (const std::uint32_t item : run) {
            if (!goesOn(visitor, item)) return false;
        }
        return true;
    }
    template <typename Visitor>
    bool visitBeyond(const MzBox& window, double beyond, Visitor& visitor) const {
        detail::PackedSearch search(nodes_, step_, window, beyond);
        for (auto run = search.next(); !run.empty(); run = search.next()) {
            if (!visitRun(run, visitor)) return false;
        }
        return true;
    }
    template <typename Region, typename Visitor>
    bool visitNode(const Region& region, Visitor& visitor, std::uint64_t node, int level) const;

    detail::PackedNodes nodes_;
    detail::PackedSearch::Step step_;
    std::size_t itemLimit_ = 0;
    bool repeats_ = false;  ///< whether an item may have several boxes
    MzBox bounds_;
    std::span<const std::byte> block_;
    std::shared_ptr<const void> owner_;
};

template <typename Region, typename Visitor>
bool MzPackedRTree::visitRegion(const Region& region, Visitor&& visitor) const {
    return nodes_.levels == 0 || visitNode(region, visitor, 0, nodes_.levels - 1);
}

template <typename Region, typename Visitor>
bool MzPackedRTree::visitNode(const Region& region, Visitor& visitor, std::uint64_t node,
                              int level) const {
    const std::uint64_t first = node << nodes_.shift;
    const std::uint64_t end = std::min(first + nodes_.nodeSize(), nodes_.slotsAt(level));
    for (std::uint64_t slot = first; slot < end; ++slot) {
        if (level == 0) {
            if (region.meets(nodes_.leafBox(slot)) && !goesOn(visitor, nodes_.items[slot])) {
                return false;
            }
            continue;
        }
        const MzBox box = nodes_.nodeBox(level - 1, slot);
        if (!region.mayMeet(box)) continue;
        const bool all = region.holds(box);
        if (all && !visitRun(nodes_.itemsBelow(slot, level - 1), visitor)) return false;
        if (!all && !visitNode(region, visitor, slot, level - 1)) return false;
    }
    return true;
}

/// The best neighbours so far.
class MzPackedRTree::Nearest {
  public:
    Nearest(std::size_t count, double limit, bool repeats)
        : count_(count), limit_(limit), repeats_(repeats) {}

    /// Whether something at this distance would be kept.
    bool wants(double distance) const {
        return distance <= limit_ &&
               (found_.size() < count_ || distance <= found_.front().distance);
    }
    void add(const Neighbour& next) {
        if (!wants(next.distance)) return;
        if (repeats_ && replaces(next)) return;
        if (found_.size() == count_) {
            if (!isBefore(next, found_.front())) return;
            std::ranges::pop_heap(found_, isBefore);
            found_.pop_back();
        }
        found_.push_back(next);
        std::ranges::push_heap(found_, isBefore);
    }
    std::vector<Neighbour> finish() {
        std::ranges::sort(found_, isBefore);
        return std::move(found_);
    }

  private:
    static bool isBefore(const Neighbour& a, const Neighbour& b) {
        return a.distance < b.distance || (a.distance == b.distance && a.item < b.item);
    }
    /// Whether another piece of the same item is there, which then keeps the shorter distance.
    bool replaces(const Neighbour& next) {
        const auto same = std::ranges::find(found_, next.item, &Neighbour::item);
        if (same == found_.end()) return false;
        if (next.distance < same->distance) {
            same->distance = next.distance;
            std::ranges::make_heap(found_, isBefore);
        }
        return true;
    }

    std::size_t count_;
    double limit_;
    bool repeats_;
    std::vector<Neighbour> found_;  ///< a heap, the farthest first
};

template <typename ToBox, typename ToItem>
std::vector<MzPackedRTree::Neighbour> MzPackedRTree::nearest(std::size_t count, ToBox&& toBox,
                                                             ToItem&& toItem, double limit) const {
    if (nodes_.levels == 0 || count == 0) return {};
    Nearest found(count, limit, repeats_);
    std::priority_queue<Waiting> waiting;
    waiting.push({-kInfinity, 0, nodes_.levels - 1});
    while (!waiting.empty() && found.wants(waiting.top().distance)) {
        const auto [distance, node, level] = waiting.top();
        waiting.pop();
        const std::uint64_t first = node << nodes_.shift;
        const std::uint64_t end = std::min(first + nodes_.nodeSize(), nodes_.slotsAt(level));
        for (std::uint64_t slot = first; slot < end; ++slot) {
            if (level == 0) {
                const std::uint32_t item = nodes_.items[slot];
                found.add({item, toItem(item, nodes_.leafBox(slot))});
            } else {
                const double toNode = toBox(nodes_.nodeBox(level - 1, slot));
                if (found.wants(toNode)) waiting.push({toNode, slot, level - 1});
            }
        }
    }
    return found.finish();
}

}  // namespace mezalith
