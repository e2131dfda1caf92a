// SPDX-License-Identifier: MIT
#include <mezalith/index/packed_r_tree.hpp>

#include <cmath>
#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/geometry.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <boost/iterator/function_output_iterator.hpp>
#include <geos/index/strtree/TemplateSTRtree.h>

// Building an index over boxes and asking it for those in a window: the packed tree, Boost's tree,
// packed, GEOS's tree, and a look at every box.

namespace mezalith {
namespace {

/// Boxes over the world, sides up to a tenth of a degree, the same in every run.
const std::vector<MzBox>& boxesFor(const benchmark::State& state) {
    static std::vector<MzBox> boxes;
    if (boxes.size() == static_cast<std::size_t>(state.range(0))) return boxes;
    std::mt19937_64 random{1};
    std::uniform_real_distribution<double> longitude{-180, 180}, latitude{-90, 90}, side{0, 0.1};
    boxes.resize(static_cast<std::size_t>(state.range(0)));
    for (MzBox& box : boxes) {
        const MzPoint p{longitude(random), latitude(random)};
        box = {p.x, p.y, p.x + side(random), p.y + side(random)};
    }
    return boxes;
}

/// Windows of as many hundredths of a percent of the world's area as `range(1)` says.
std::vector<MzBox> windowsFor(const benchmark::State& state) {
    const double share = std::sqrt(static_cast<double>(state.range(1)) / 10'000);
    const double width = 360 * share, height = 180 * share;
    std::mt19937_64 random{2};
    std::uniform_real_distribution<double> west{-180, 180 - width}, south{-90, 90 - height};
    std::vector<MzBox> windows(1024);
    for (MzBox& window : windows) {
        const MzPoint p{west(random), south(random)};
        window = {p.x, p.y, p.x + width, p.y + height};
    }
    return windows;
}

// --- the indexes ----------------------------------------------------------

struct Packed {
    explicit Packed(const std::vector<MzBox>& boxes) : tree(MzPackedRTree::initWithBoxes(boxes)) {}

    template <typename Visitor>
    void query(const MzBox& window, Visitor&& visitor) const {
        tree->visitWindow(window, visitor);
    }
    double bytes() const { return static_cast<double>(tree->block().size()); }

    std::shared_ptr<MzPackedRTree> tree;
};

namespace bg = boost::geometry;

struct Boost {
    using Box = bg::model::box<bg::model::point<double, 2, bg::cs::cartesian>>;
    using Value = std::pair<Box, std::uint32_t>;

    static Box boxOf(const MzBox& box) { return {{box.minX, box.minY}, {box.maxX, box.maxY}}; }
    static std::vector<Value> valuesOf(const std::vector<MzBox>& boxes) {
        std::vector<Value> values;
        values.reserve(boxes.size());
        for (std::uint32_t i = 0; i < boxes.size(); ++i) values.emplace_back(boxOf(boxes[i]), i);
        return values;
    }

    explicit Boost(const std::vector<MzBox>& boxes) : tree(valuesOf(boxes)) {}

    template <typename Visitor>
    void query(const MzBox& window, Visitor&& visitor) const {
        const auto take = [&](const Value& value) { visitor(value.second); };
        tree.query(bg::index::intersects(boxOf(window)),
                   boost::make_function_output_iterator(take));
    }

    bg::index::rtree<Value, bg::index::linear<16>> tree;
};

struct Geos {
    explicit Geos(const std::vector<MzBox>& boxes) : tree(10, boxes.size()) {
        for (std::uint32_t i = 0; i < boxes.size(); ++i) tree.insert(envelopeOf(boxes[i]), i);
        tree.build();
    }

    static geos::geom::Envelope envelopeOf(const MzBox& box) {
        return {box.minX, box.maxX, box.minY, box.maxY};
    }
    template <typename Visitor>
    void query(const MzBox& window, Visitor&& visitor) {
        tree.query(envelopeOf(window), [&](std::uint32_t item) { visitor(item); });
    }

    geos::index::strtree::TemplateSTRtree<std::uint32_t> tree;
};

struct Scan {
    explicit Scan(const std::vector<MzBox>& list) : boxes(list) {}

    template <typename Visitor>
    void query(const MzBox& window, Visitor&& visitor) const {
        for (std::uint32_t i = 0; i < boxes.size(); ++i) {
            if (boxes[i].meets(window)) visitor(i);
        }
    }

    const std::vector<MzBox>& boxes;
};

// --- the measurements -----------------------------------------------------

template <typename Index>
void Build(benchmark::State& state) {
    const std::vector<MzBox>& boxes = boxesFor(state);
    for ([[maybe_unused]] auto _ : state) {
        Index index(boxes);
        benchmark::DoNotOptimize(index);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <typename Index>
void Query(benchmark::State& state) {
    Index index(boxesFor(state));
    const std::vector<MzBox> windows = windowsFor(state);
    std::uint64_t sum = 0, found = 0;
    std::size_t i = 0;
    for ([[maybe_unused]] auto _ : state) {
        index.query(windows[i++ % windows.size()], [&](std::uint32_t item) {
            sum += item;
            ++found;
        });
    }
    benchmark::DoNotOptimize(sum);
    state.counters["found"] = static_cast<double>(found) / static_cast<double>(state.iterations());
    if constexpr (requires { index.bytes(); }) {
        state.counters["bytes/box"] = index.bytes() / static_cast<double>(state.range(0));
    }
}

const std::vector<std::int64_t> kSizes{10'000, 100'000, 1'000'000};

BENCHMARK(Build<Packed>)->ArgsProduct({kSizes})->Unit(benchmark::kMicrosecond);
BENCHMARK(Build<Boost>)->ArgsProduct({kSizes})->Unit(benchmark::kMicrosecond);
BENCHMARK(Build<Geos>)->ArgsProduct({kSizes})->Unit(benchmark::kMicrosecond);
BENCHMARK(Query<Packed>)->ArgsProduct({kSizes, {1, 100}});
BENCHMARK(Query<Boost>)->ArgsProduct({kSizes, {1, 100}});
BENCHMARK(Query<Geos>)->ArgsProduct({kSizes, {1, 100}});
BENCHMARK(Query<Scan>)->ArgsProduct({kSizes, {1, 100}});

}  // namespace
}  // namespace mezalith
