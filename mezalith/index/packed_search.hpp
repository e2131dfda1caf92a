// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/index/box.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace mezalith::detail {

/// The instructions with which nodes are compared, 16 boxes at a time.
enum class PackedInstructions { Portable, AVX2, AVX512 };

/// The best that this processor has.
MEZALITH_EXPORT PackedInstructions bestInstructions();

/// Where the parts of a packed tree lie. A node holds `nodeSize` boxes as four arrays: all minX,
/// all minY, all maxX, all maxY; the boxes of nodes in single precision, rounded outwards. Node n
/// of a level has the nodes, or at level 0 the items, from n * nodeSize on; where there are no
/// more, its boxes are NaN, which nothing meets. The top level has one node.
struct PackedNodes {
    static constexpr int kMostLevels = 11;

    const double* leaves = nullptr;
    std::array<const float*, kMostLevels> inner{};  ///< by level; none at level 0
    const std::uint32_t* items = nullptr;
    std::uint64_t count = 0;  ///< of items
    int levels = 0;           ///< 0 when there are none
    unsigned shift = 4;       ///< nodeSize is 2 to the power of it

    std::uint64_t nodeSize() const { return std::uint64_t{1} << shift; }
    /// How many boxes the nodes of a level hold together.
    std::uint64_t slotsAt(int level) const {
        std::uint64_t slots = count;
        for (int below = 0; below < level; ++below) slots = (slots + nodeSize() - 1) >> shift;
        return slots;
    }
    /// The items of a node of the level and of all nodes below it.
    std::span<const std::uint32_t> itemsBelow(std::uint64_t node, int level) const {
        const unsigned below = shift * static_cast<unsigned>(level + 1);
        const std::uint64_t first = node << below;
        const std::uint64_t end = std::min(first + (std::uint64_t{1} << below), count);
        return {items + first, static_cast<std::size_t>(end - first)};
    }
    /// The box of the item at `slot`.
    MzBox leafBox(std::uint64_t slot) const { return boxIn(leaves, slot); }
    /// The box of the node at `slot` of the nodes of `level`, as the node above holds it.
    MzBox nodeBox(int level, std::uint64_t slot) const {
        return boxIn(inner[static_cast<std::size_t>(level) + 1], slot);
    }

  private:
    template <typename Number>
    MzBox boxIn(const Number* boxes, std::uint64_t slot) const {
        const std::uint64_t size = nodeSize();
        const Number* box = boxes + (slot >> shift) * size * 4 + (slot & (size - 1));
        return {box[0], box[size], box[2 * size], box[3 * size]};
    }
};

/// The number of single precision next below `number`, which is above minus infinity.
inline float nextBelow(float number) {
    const auto bits = std::bit_cast<std::int32_t>(number);
    if (number == 0) return -std::numeric_limits<float>::denorm_min();
    return std::bit_cast<float>(number > 0 ? bits - 1 : bits + 1);
}
/// The number of single precision nearest to `value` that is not above it.
inline float roundedDown(double value) {
    const auto nearest = static_cast<float>(value);
    return static_cast<double>(nearest) > value ? nextBelow(nearest) : nearest;
}
/// The same that is not below it.
inline float roundedUp(double value) { return -roundedDown(-value); }

/// A window rounded to single precision both ways, for comparison with the boxes of nodes.
struct PackedWindow {
    float minXBelow, minYBelow, maxXAbove, maxYAbove;  ///< what a box must reach to meet the window
    float minXAbove, minYAbove, maxXBelow, maxYBelow;  ///< what it must keep to lie within

    explicit PackedWindow(const MzBox& w)
        : minXBelow(roundedDown(w.minX)),
          minYBelow(roundedDown(w.minY)),
          maxXAbove(roundedUp(w.maxX)),
          maxYAbove(roundedUp(w.maxY)),
          minXAbove(roundedUp(w.minX)),
          minYAbove(roundedUp(w.minY)),
          maxXBelow(roundedDown(w.maxX)),
          maxYBelow(roundedDown(w.maxY)) {}
};

/// One search for the items whose boxes meet a window, answered in runs. It lives on the stack of
/// whoever searches; the tree must outlive it.
struct PackedSearch {
    using Step = void (*)(PackedSearch&);

    /// Nodes of one level side by side that are to be opened.
    struct Frame {
        std::uint64_t meets;   ///< which of them, bit by bit
        std::uint64_t inside;  ///< and of these, which lie within the window
        std::uint64_t first;
        int level;
    };

    static constexpr std::size_t kRoom = 512;

    /// What takes a search on to its next run.
    MEZALITH_EXPORT static Step stepFor(PackedInstructions instructions, unsigned shift);

    /// Nothing is found in an empty window. Items with minX <= `beyond` are left out; none are for
    /// NaN.
    PackedSearch(const PackedNodes& tree, Step stepper, const MzBox& area, double beyond)
        : nodes(tree), step(stepper), window(area), rounded(area), after(beyond) {
        if (nodes.levels == 0 || window.isEmpty()) return;
        frames[0] = {1, 0, 0, nodes.levels - 1};
        depth = 0;
    }

    /// The next run of items; empty at the end. Valid until the next call.
    std::span<const std::uint32_t> next() {
        if (depth < 0 && pending.empty()) return {};
        step(*this);
        return found;
    }

    const PackedNodes& nodes;
    const Step step;
    const MzBox window;
    const PackedWindow rounded;
    const double after;
    std::span<const std::uint32_t> found;
    std::span<const std::uint32_t> pending;  ///< a run that is found but not yet answered
    int depth = -1;                          ///< of the frames, the last that is open
    std::array<Frame, PackedNodes::kMostLevels> frames;
    std::array<std::uint32_t, kRoom> buffer;
};

}  // namespace mezalith::detail
