// SPDX-License-Identifier: MIT
#include <mezalith/geometry/projected_bounds.hpp>
#include <mezalith/index/hilbert_order.hpp>
#include <mezalith/index/packed_r_tree.hpp>
#include <mezalith/platform/system/large_block.hpp>

#include <bit>
#include <cstring>
#include <utility>

namespace mezalith {
namespace {

using detail::PackedNodes;

constexpr std::size_t kMostItems = 0xffffffff;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr MzBox kNoBox{kNaN, kNaN, kNaN, kNaN};
constexpr MzBox kNothing{kInf, kInf, -kInf, -kInf};

MzBox boxOf(const std::shared_ptr<MzTreeLeafNode>& leaf) {
    return leaf != nullptr ? MzBox::of(leaf->bounds()) : kNoBox;
}

// --- the block ------------------------------------------------------------
//
// The header, the nodes' boxes level by level from the top, the items' boxes, the items. All parts
// but the header are of whole nodes.

/// "mzprtre1" as this processor reads it: no other version, and not of another byte order.
constexpr std::uint64_t kMark = 0x31657274'72707a6d;
constexpr std::uint32_t kRepeats = 1;

struct Header {
    std::uint64_t mark = kMark;
    std::uint32_t nodeSize = 0;
    std::uint32_t flags = 0;
    std::uint64_t count = 0;
    std::uint64_t itemLimit = 0;
    MzBox bounds{};
};
static_assert(sizeof(Header) == 64);

/// How the levels of a tree lie in its block.
struct Layout {
    Layout(std::uint64_t count, unsigned shift) {
        nodes.count = count;
        nodes.shift = shift;
        while (count > 0 && (nodes.levels == 0 || nodesAt(nodes.levels - 1) > 1)) ++nodes.levels;
        for (int level = nodes.levels - 1; level >= 0; --level) place(level);
        items = size;
        if (count > 0) size += (nodesAt(0) << shift) * sizeof(std::uint32_t);
    }

    std::uint64_t nodesAt(int level) const { return nodes.slotsAt(level + 1); }
    /// Boxes in the level's nodes, those included that are none.
    std::uint64_t roomAt(int level) const { return nodesAt(level) << nodes.shift; }

    /// The nodes within a block that begins at `bytes`.
    PackedNodes within(const std::byte* bytes) const {
        PackedNodes placed = nodes;
        placed.items = reinterpret_cast<const std::uint32_t*>(bytes + items);
        placed.leaves = reinterpret_cast<const double*>(bytes + offset[0]);
        for (int level = 1; level < nodes.levels; ++level) {
            const auto i = static_cast<std::size_t>(level);
            placed.inner[i] = reinterpret_cast<const float*>(bytes + offset[i]);
        }
        return placed;
    }

    PackedNodes nodes;  ///< without addresses
    std::array<std::size_t, PackedNodes::kMostLevels> offset{};
    std::size_t items = 0;
    std::size_t size = sizeof(Header);

  private:
    void place(int level) {
        offset[static_cast<std::size_t>(level)] = size;
        size += roomAt(level) * 4 * (level == 0 ? sizeof(double) : sizeof(float));
    }
};

unsigned shiftFor(std::uint32_t nodeSize) {
    const std::uint32_t size = std::bit_ceil(std::clamp(nodeSize, 8U, 64U));
    return static_cast<unsigned>(std::countr_zero(size));
}

// --- building -------------------------------------------------------------

/// The least box around the boxes of one node; NaN ones count for nothing.
MzBox boxAround(const float* node, std::size_t size) {
    MzBox around = kNothing;
    for (std::size_t i = 0; i < size; ++i) {
        const MzBox box{node[i], node[size + i], node[2 * size + i], node[3 * size + i]};
        // In this order NaN loses.
        around.minX = box.minX < around.minX ? box.minX : around.minX;
        around.minY = box.minY < around.minY ? box.minY : around.minY;
        around.maxX = box.maxX > around.maxX ? box.maxX : around.maxX;
        around.maxY = box.maxY > around.maxY ? box.maxY : around.maxY;
    }
    return around;
}

void add(MzBox& around, const MzBox& box) {
    around = {std::min(around.minX, box.minX), std::min(around.minY, box.minY),
              std::max(around.maxX, box.maxX), std::max(around.maxY, box.maxY)};
}

/// Builds a tree into the memory of its block.
class Builder {
  public:
    Builder(const Layout& layout, std::byte* bytes)
        : layout_(layout), bytes_(bytes), size_(layout.nodes.nodeSize()) {}

    /// Gives up and answers no when some boxes are empty.
    bool build(std::span<const MzBox> boxes) {
        if (sortItems(boxes) < boxes.size()) return false;
        placeLeaves(boxes);
        for (int level = 1; level + 1 < layout_.nodes.levels; ++level) placeNodes(level);
        return true;
    }
    /// Around all boxes.
    const MzBox& bounds() const { return bounds_; }
    /// The places of all items, those included that are none.
    std::span<std::uint32_t> items() {
        return {reinterpret_cast<std::uint32_t*>(bytes_ + layout_.items), layout_.roomAt(0)};
    }

  private:
    template <typename Number>
    Number* boxesAt(int level) {
        return reinterpret_cast<Number*>(bytes_ + layout_.offset[static_cast<std::size_t>(level)]);
    }

    /// The boxes' place serves for sorting until they come.
    std::size_t sortItems(std::span<const MzBox> boxes) {
        auto* const words = boxesAt<std::uint64_t>(0);
        const std::span order(words, boxes.size());
        const std::size_t count =
            detail::orderAlongHilbertCurve(boxes, order, {words + boxes.size(), boxes.size()});
        const std::span all = items();
        for (std::size_t i = 0; i < count; ++i) all[i] = static_cast<std::uint32_t>(order[i]);
        std::ranges::fill(all.subspan(count), 0);
        return count;
    }

    void placeLeaves(std::span<const MzBox> boxes) {
        const std::span all = items();
        const auto count = static_cast<std::size_t>(layout_.nodes.count);
        auto* node = boxesAt<double>(0);
        for (std::size_t first = 0; first < all.size(); first += size_, node += 4 * size_) {
            const std::size_t soon = std::min(first + 2 * size_, all.size() - size_);
            MzBox around = kNothing;
            for (std::size_t i = 0; i < size_; ++i) {
                __builtin_prefetch(&boxes[all[soon + i]]);
                const bool isBox = first + i < count;
                const MzBox& box = isBox ? boxes[all[first + i]] : kNoBox;
                put(node, i, box);
                if (isBox) add(around, box);
            }
            add(bounds_, around);
            placeAbove(0, first / size_, around);
        }
        closeAbove(0);
    }

    /// Puts the bounds of the level's nodes into the level above.
    void placeNodes(int level) {
        const float* node = boxesAt<float>(level);
        for (std::uint64_t i = 0; i < layout_.nodesAt(level); ++i, node += 4 * size_) {
            placeAbove(level, i, boxAround(node, size_));
        }
        closeAbove(level);
    }

    void placeAbove(int level, std::uint64_t slot, const MzBox& box) {
        if (level + 1 == layout_.nodes.levels) return;
        const unsigned shift = layout_.nodes.shift;
        float* const node = boxesAt<float>(level + 1) + (slot >> shift << shift) * 4;
        put(node, slot & (size_ - 1), rounded(box));
    }

    void closeAbove(int level) {
        if (level + 1 == layout_.nodes.levels) return;
        for (auto i = layout_.nodesAt(level); i < layout_.roomAt(level + 1); ++i) {
            placeAbove(level, i, kNoBox);
        }
    }

    template <typename Number>
    void put(Number* node, std::size_t i, const MzBox& box) {
        node[i] = static_cast<Number>(box.minX);
        node[size_ + i] = static_cast<Number>(box.minY);
        node[2 * size_ + i] = static_cast<Number>(box.maxX);
        node[3 * size_ + i] = static_cast<Number>(box.maxY);
    }

    static MzBox rounded(const MzBox& box) {
        return {detail::roundedDown(box.minX), detail::roundedDown(box.minY),
                detail::roundedUp(box.maxX), detail::roundedUp(box.maxY)};
    }

    const Layout& layout_;
    std::byte* bytes_;
    std::size_t size_;
    MzBox bounds_ = kNothing;
};

// --- foreign blocks -------------------------------------------------------

/// Whether the places of a level behind its last box are none.
template <typename Number>
bool isClosed(const Layout& layout, int level, const Number* boxes) {
    const std::uint64_t size = layout.nodes.nodeSize();
    for (std::uint64_t i = layout.nodes.slotsAt(level); i < layout.roomAt(level); ++i) {
        const Number minX = boxes[i / size * size * 4 + i % size];
        if (!std::isnan(minX)) return false;
    }
    return true;
}

bool isSound(const Layout& layout, const PackedNodes& nodes, std::uint64_t itemLimit) {
    if (nodes.levels == 0) return true;
    if (!isClosed(layout, 0, nodes.leaves)) return false;
    for (int level = 1; level < nodes.levels; ++level) {
        if (!isClosed(layout, level, nodes.inner[static_cast<std::size_t>(level)])) return false;
    }
    const std::span items(nodes.items, static_cast<std::size_t>(nodes.count));
    return std::uint64_t{*std::ranges::max_element(items)} < itemLimit;
}

/// What of the header can be told to be wrong by itself.
bool isPossible(const Header& header) {
    return header.mark == kMark && std::has_single_bit(header.nodeSize) && header.nodeSize >= 8 &&
           header.nodeSize <= 64 && header.count <= kMostItems && header.itemLimit <= kMostItems;
}

}  // namespace

MzPackedRTree::MzPackedRTree()
    : step_(detail::PackedSearch::stepFor(detail::PackedInstructions::Portable, nodes_.shift)),
      bounds_(kNothing) {}

MzPackedRTree::~MzPackedRTree() = default;

std::shared_ptr<MzPackedRTree> MzPackedRTree::initWithBoxes(std::span<const MzBox> boxes,
                                                            const Options& options) {
    return build(boxes, {{}, boxes.size(), false}, options);
}

std::shared_ptr<MzPackedRTree> MzPackedRTree::initWithLeaves(
    std::span<const std::shared_ptr<MzTreeLeafNode>> leaves, const Options& options) {
    std::vector<MzBox> boxes;
    boxes.reserve(leaves.size());
    for (const auto& leaf : leaves) {
        boxes.push_back(boxOf(leaf));
    }
    return build(boxes, {{}, boxes.size(), false}, options);
}

std::shared_ptr<MzPackedRTree> MzPackedRTree::initWithSpatialObjects(
    std::span<MzIndexable* const> objects, const std::shared_ptr<MzMapProjection>& projection,
    const Options& options) {
    std::vector<MzBox> boxes;
    std::vector<std::uint32_t> items;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        auto geometry = objects[i] != nullptr ? objects[i]->geometry() : nullptr;
        if (projection != nullptr) geometry = MzProjectedCopy(geometry.get(), projection);
        if (geometry == nullptr) continue;
        for (const auto& leaf : geometry->leafNodes()) {
            boxes.push_back(boxOf(leaf));
            items.push_back(static_cast<std::uint32_t>(i));
        }
    }
    return build(boxes, {items, objects.size(), true}, options);
}

std::shared_ptr<MzPackedRTree> MzPackedRTree::build(std::span<const MzBox> boxes,
                                                    const Origin& origin, const Options& options) {
    if (boxes.size() > kMostItems || origin.itemLimit > kMostItems) return nullptr;
    const Layout layout(boxes.size(), shiftFor(options.nodeSize));
    const std::shared_ptr<std::byte> bytes = platform::largeBlock(layout.size);
    if (bytes == nullptr) return nullptr;
    Header header{.nodeSize = std::uint32_t{1} << layout.nodes.shift,
                  .flags = origin.repeats ? kRepeats : 0,
                  .count = boxes.size(),
                  .itemLimit = origin.itemLimit,
                  .bounds = kNothing};
    if (!boxes.empty()) {
        Builder builder(layout, bytes.get());
        if (!builder.build(boxes)) return buildWithoutEmpty(boxes, origin, options);
        header.bounds = builder.bounds();
        if (!origin.items.empty()) {
            for (std::uint32_t& item : builder.items()) item = origin.items[item];
        }
    }
    std::memcpy(bytes.get(), &header, sizeof header);
    return make({bytes.get(), layout.size}, bytes, options);
}

std::shared_ptr<MzPackedRTree> MzPackedRTree::buildWithoutEmpty(std::span<const MzBox> boxes,
                                                                const Origin& origin,
                                                                const Options& options) {
    std::vector<MzBox> kept;
    std::vector<std::uint32_t> items;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        if (boxes[i].isEmpty()) continue;
        kept.push_back(boxes[i]);
        items.push_back(origin.items.empty() ? static_cast<std::uint32_t>(i) : origin.items[i]);
    }
    return build(kept, {items, origin.itemLimit, origin.repeats}, options);
}

std::shared_ptr<MzPackedRTree> MzPackedRTree::make(std::span<const std::byte> bytes,
                                                   std::shared_ptr<const void> owner,
                                                   const Options& options) {
    Header header;
    std::memcpy(&header, bytes.data(), sizeof header);
    auto tree = std::make_shared<MzPackedRTree>();
    tree->nodes_ = Layout(header.count, shiftFor(header.nodeSize)).within(bytes.data());
    tree->step_ = detail::PackedSearch::stepFor(options.instructions, tree->nodes_.shift);
    tree->itemLimit_ = static_cast<std::size_t>(header.itemLimit);
    tree->repeats_ = (header.flags & kRepeats) != 0;
    tree->bounds_ = header.bounds;
    tree->block_ = bytes;
    tree->owner_ = std::move(owner);
    return tree;
}

std::shared_ptr<MzPackedRTree> MzPackedRTree::initWithBlock(std::span<const std::byte> bytes,
                                                            std::shared_ptr<const void> owner,
                                                            const Options& options) {
    Header header;
    if (bytes.size() < sizeof header || reinterpret_cast<std::uintptr_t>(bytes.data()) % 8 != 0) {
        return nullptr;
    }
    std::memcpy(&header, bytes.data(), sizeof header);
    if (!isPossible(header)) return nullptr;
    const Layout layout(header.count, shiftFor(header.nodeSize));
    if (layout.size != bytes.size()) return nullptr;
    if (!isSound(layout, layout.within(bytes.data()), header.itemLimit)) return nullptr;
    return make(bytes, std::move(owner), options);
}

// --- queries --------------------------------------------------------------

void MzPackedRTree::appendItemsInWindow(const MzBox& window,
                                        std::vector<std::uint32_t>& items) const {
    detail::PackedSearch search(nodes_, step_, window, kNone);
    for (auto run = search.next(); !run.empty(); run = search.next()) {
        items.insert(items.end(), run.begin(), run.end());
    }
}

std::vector<std::uint32_t> MzPackedRTree::sortedOnce(std::vector<std::uint32_t> items) {
    std::ranges::sort(items);
    const auto repeated = std::ranges::unique(items);
    items.erase(repeated.begin(), repeated.end());
    return items;
}

std::vector<std::uint32_t> MzPackedRTree::itemsInWindow(const MzBox& window) const {
    std::vector<std::uint32_t> items;
    appendItemsInWindow(window, items);
    return sortedOnce(std::move(items));
}

std::vector<std::uint32_t> MzPackedRTree::itemsAtPoint(MzPoint point) const {
    return itemsInWindow(MzBox::of(point));
}

std::vector<std::uint32_t> MzPackedRTree::itemsWrapping(const MzBox& window, double period) const {
    std::vector<std::uint32_t> items;
    visitWrapping(window, period, [&](std::uint32_t item) { items.push_back(item); });
    return sortedOnce(std::move(items));
}

std::vector<MzBox> MzPackedRTree::repetitions(MzBox window, double period) const {
    constexpr int kMostTurns = 64;
    if (period > 0 && window.minX > window.maxX) window.maxX += period;
    if (window.isEmpty() || bounds_.isEmpty()) return {};
    if (!(period > 0) || std::isinf(period)) return {window};
    const MzBox band{-kInf, window.minY, kInf, window.maxY};
    std::vector<MzBox> pieces;
    for (int turn = -kMostTurns; turn <= kMostTurns; ++turn) {
        const double shift = turn * period;
        const MzBox piece{window.minX + shift, window.minY, window.maxX + shift, window.maxY};
        if (!pieces.empty() && !(piece.minX > pieces.back().maxX)) return {band};
        if (piece.meets(bounds_)) pieces.push_back(piece);
    }
    return pieces;
}

std::vector<MzPackedRTree::Neighbour> MzPackedRTree::nearest(MzPoint point, std::size_t count,
                                                             double limit) const {
    const auto distance = [point](const MzBox& box) {
        const double dx = std::max({box.minX - point.x, point.x - box.maxX, 0.0});
        const double dy = std::max({box.minY - point.y, point.y - box.maxY, 0.0});
        // Unlike std::hypot, never less for a box within: each step rounds correctly.
        return std::sqrt(dx * dx + dy * dy);
    };
    return nearest(
        count, distance, [&](std::uint32_t, const MzBox& box) { return distance(box); }, limit);
}

}  // namespace mezalith
