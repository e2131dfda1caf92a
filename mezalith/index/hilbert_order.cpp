// SPDX-License-Identifier: MIT
#include <mezalith/index/hilbert_order.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace mezalith::detail {
namespace {

using Words = std::span<std::uint64_t>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr MzBox kNothing{kInfinity, kInfinity, -kInfinity, -kInfinity};

// --- keys -----------------------------------------------------------------

constexpr int kAxisBits = 12;

/// Four steps down the curve at once. How a square is passed is told by two bits: 1 for x and y
/// exchanged, 2 for both counted backwards. An entry has the eight bits of the key and above them
/// how the small square is passed.
constexpr std::array<std::uint16_t, 1024> kFourSteps = [] {
    std::array<std::uint16_t, 1024> table{};
    for (unsigned entry = 0; entry < table.size(); ++entry) {
        unsigned swapped = entry >> 8 & 1, flipped = entry >> 9, key = 0;
        for (unsigned bit = 4; bit-- > 0;) {
            const unsigned a = (entry >> (4 + bit) & 1) ^ flipped;
            const unsigned b = (entry >> bit & 1) ^ flipped;
            const unsigned x = swapped != 0 ? b : a, y = swapped != 0 ? a : b;
            key = key << 2 | ((3 * x) ^ y);
            flipped ^= x & ~y & 1;
            swapped ^= ~y & 1;
        }
        table[entry] = static_cast<std::uint16_t>(key | swapped << 8 | flipped << 9);
    }
    return table;
}();

std::uint32_t keyOf(std::uint32_t x, std::uint32_t y) {
    std::uint32_t key = 0, state = 0;
    for (int shift = kAxisBits - 4; shift >= 0; shift -= 4) {
        const std::uint32_t entry =
            kFourSteps[state << 8 | (x >> shift & 15) << 4 | (y >> shift & 15)];
        key = key << 8 | (entry & 0xff);
        state = entry >> 8;
    }
    return key;
}

MzPoint centreOf(const MzBox& box) {
    return {(box.minX + box.maxX) * 0.5, (box.minY + box.maxY) * 0.5};
}

void addCentre(MzBox& extent, const MzBox& box) {
    const MzPoint p = centreOf(box);
    if (!std::isfinite(p.x) || !std::isfinite(p.y)) return;
    extent = {std::min(extent.minX, p.x), std::min(extent.minY, p.y), std::max(extent.maxX, p.x),
              std::max(extent.maxY, p.y)};
}

/// The cells of a curve over an extent.
class Grid {
  public:
    explicit Grid(const MzBox& extent)
        : extent_(extent),
          perX_(factor(extent.maxX - extent.minX)),
          perY_(factor(extent.maxY - extent.minY)) {}

    /// A box's word: the key of its centre and the index.
    std::uint64_t word(const MzBox& box, std::uint64_t index) const {
        const MzPoint p = centreOf(box);
        const std::uint32_t key =
            keyOf(cell((p.x - extent_.minX) * perX_), cell((p.y - extent_.minY) * perY_));
        return std::uint64_t{key} << 32 | index;
    }

  private:
    static constexpr double kLast = (1 << kAxisBits) - 1;

    static double factor(double width) {
        const double cells = (kLast + 1) / width;
        return std::isfinite(cells) ? cells : 0;
    }
    /// NaN is in the first cell.
    static std::uint32_t cell(double place) {
        return place > 0 ? static_cast<std::uint32_t>(std::min(place, kLast)) : 0;
    }

    MzBox extent_;
    double perX_, perY_;
};

// --- sorting --------------------------------------------------------------

/// Keys have three digits of eight bits: few enough places to write to at a time for the caches of
/// memory addresses.
constexpr std::size_t kDigits = 3;
using Counts = std::array<std::array<std::uint32_t, 256>, kDigits>;

std::size_t digitOf(std::uint64_t word, std::size_t number) {
    return word >> (32 + number * 8) & 255;
}

void count(Counts& counts, std::uint64_t word) {
    for (std::size_t i = 0; i < kDigits; ++i) ++counts[i][digitOf(word, i)];
}

void scatter(Words from, Words to, Counts& counts, std::size_t number) {
    std::uint32_t place = 0;
    for (std::uint32_t& value : counts[number]) place += std::exchange(value, place);
    for (const std::uint64_t word : from) to[counts[number][digitOf(word, number)]++] = word;
}

/// Up to so many words are sorted sooner by comparing them.
constexpr std::size_t kFew = 1024;

/// Sorts words whose lower halves ascend from one place to another; both are used.
void sortWords(Words from, Words to, Counts& counts) {
    scatter(from, to, counts, 0);
    scatter(to, from, counts, 1);
    scatter(from, to, counts, 2);
}

// --- order ----------------------------------------------------------------

/// More boxes than this in one cell have a curve of their own.
constexpr std::size_t kCrowd = 32;

void orderCrowds(std::span<const MzBox> boxes, Words words, Words scratch, const MzBox& above);

/// Orders the boxes of one cell of a curve over `above`.
void orderCrowd(std::span<const MzBox> boxes, Words crowd, Words scratch, const MzBox& above) {
    MzBox extent = kNothing;
    for (std::uint64_t& word : crowd) {
        word &= std::numeric_limits<std::uint32_t>::max();
        addCentre(extent, boxes[word]);
    }
    // Boxes of one centre, or too far apart for numbers, would stay in one cell for ever.
    if (extent == above) return;
    const Grid grid(extent);
    if (crowd.size() <= kFew) {
        for (std::uint64_t& word : crowd) word = grid.word(boxes[word], word);
        std::ranges::sort(crowd);
    } else {
        Counts counts{};
        for (std::size_t i = 0; i < crowd.size(); ++i) {
            count(counts, scratch[i] = grid.word(boxes[crowd[i]], crowd[i]));
        }
        sortWords(scratch, crowd, counts);
    }
    orderCrowds(boxes, crowd, scratch, extent);
}

void orderCrowds(std::span<const MzBox> boxes, Words words, Words scratch, const MzBox& above) {
    for (std::size_t begin = 0, end = 0; begin < words.size(); begin = end) {
        const std::uint64_t key = words[begin] >> 32;
        while (end < words.size() && words[end] >> 32 == key) ++end;
        if (end - begin > kCrowd) {
            orderCrowd(boxes, words.subspan(begin, end - begin),
                       scratch.subspan(begin, end - begin), above);
        }
    }
}

/// The extent of the centres, or of some thousands spread over the list: what lies beyond comes
/// into the cells at the border, a crowd there.
MzBox sampledExtent(std::span<const MzBox> boxes) {
    constexpr std::size_t kSample = 4096;
    constexpr std::uint64_t kGoldenRatio = 0x9e3779b9;  // of 2^32: no grid of places repeats it
    MzBox extent = kNothing;
    for (std::size_t i = 0; i < std::min(boxes.size(), kSample); ++i) {
        const std::size_t spread = (i * kGoldenRatio & 0xffffffff) * boxes.size() >> 32;
        const MzBox& box = boxes[boxes.size() <= kSample ? i : spread];
        if (!box.isEmpty()) addCentre(extent, box);
    }
    return extent;
}

}  // namespace

std::uint32_t hilbertKey(std::uint32_t x, std::uint32_t y) { return keyOf(x, y); }

std::size_t orderAlongHilbertCurve(std::span<const MzBox> boxes, Words order, Words scratch) {
    const MzBox extent = sampledExtent(boxes);
    const Grid grid(extent);
    Counts counts{};
    std::size_t used = 0;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        __builtin_prefetch(boxes.data() + std::min(i + 64, boxes.size() - 1));
        if (!boxes[i].isEmpty()) count(counts, scratch[used++] = grid.word(boxes[i], i));
    }
    sortWords(scratch.first(used), order.first(used), counts);
    orderCrowds(boxes, order.first(used), scratch, extent);
    return used;
}

}  // namespace mezalith::detail
