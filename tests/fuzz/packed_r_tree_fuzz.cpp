// SPDX-License-Identifier: MIT
#include <mezalith/index/packed_r_tree.hpp>
#include <mezalith/index/polygon_window.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

// Takes any bytes for the block of a tree and asks everything of it; then takes them for boxes,
// builds a tree over them and breaks one byte of its block.

namespace mezalith {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

void require(bool holds) {
    if (!holds) std::abort();
}

/// The bytes at an address fit for a block, with nothing behind them.
std::unique_ptr<std::byte[]> copyOf(std::span<const std::byte> bytes) {
    auto copy = std::make_unique<std::byte[]>(bytes.size());
    std::memcpy(copy.get(), bytes.data(), bytes.size());
    return copy;
}

void ask(const MzPackedRTree& tree) {
    const auto check = [&](std::uint32_t item) { require(item < tree.itemLimit()); };
    const std::array<MzBox, 4> windows{{{-kInfinity, -kInfinity, kInfinity, kInfinity},
                                        {-10, -10, 10, 10},
                                        {0, 0, 0, 0},
                                        tree.bounds()}};
    for (const MzBox& window : windows) {
        tree.visitWindow(window, check);
        tree.visitWrapping(window, 360, check);
    }
    for (const auto& found : tree.nearest({1, 2}, 5)) check(found.item);
    std::array<MzPoint, 3> triangle{{{-50, -50}, {60, -40}, {0, 70}}};
    MzLinearRing ring{3, triangle.data()};
    tree.visitRegion(MzPolygonWindow({1, &ring}), check);
}

void askOfBlock(std::span<const std::byte> bytes) {
    const auto copy = copyOf(bytes);
    for (const auto instructions :
         {detail::PackedInstructions::Portable, detail::PackedInstructions::AVX512}) {
        const auto tree =
            MzPackedRTree::initWithBlock({copy.get(), bytes.size()}, nullptr, {16, instructions});
        if (tree != nullptr) ask(*tree);
    }
}

void fuzz(std::span<const std::byte> bytes) {
    askOfBlock(bytes);
    if (bytes.size() < 4) return;
    const auto nodeSize = static_cast<std::uint32_t>(bytes[0]);
    const std::size_t place =
        static_cast<std::size_t>(bytes[1]) << 8 | static_cast<std::size_t>(bytes[2]);
    std::vector<MzBox> boxes((bytes.size() - 4) / sizeof(MzBox));
    if (!boxes.empty()) std::memcpy(boxes.data(), bytes.data() + 4, boxes.size() * sizeof(MzBox));
    const auto tree = MzPackedRTree::initWithBoxes(boxes, {.nodeSize = nodeSize});
    require(tree != nullptr);
    ask(*tree);
    std::size_t found = 0;
    for (const MzBox& box : boxes) found += box.isEmpty() ? 0 : 1;
    require(tree->itemsInWindow({-kInfinity, -kInfinity, kInfinity, kInfinity}).size() == found);
    const auto broken = copyOf(tree->block());
    broken[place % tree->block().size()] ^= bytes[3];
    askOfBlock({broken.get(), tree->block().size()});
}

}  // namespace
}  // namespace mezalith

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mezalith::fuzz(std::as_bytes(std::span(data, size)));
    return 0;
}
