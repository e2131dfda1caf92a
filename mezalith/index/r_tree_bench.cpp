// SPDX-License-Identifier: MIT
#include <mezalith/index/r_tree.hpp>

#include <algorithm>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

namespace mezalith {
namespace {

/// Leaves scattered over the world, the same in every run.
MzRTree::Nodes sample(benchmark::State& state) {
    std::mt19937_64 random{1};
    std::uniform_real_distribution<double> longitude{-180, 180}, latitude{-90, 90};
    MzRTree::Nodes leaves(static_cast<std::size_t>(state.range(0)));
    for (auto& leaf : leaves) {
        leaf = MzTreeLeafNode::initWithBounds({{longitude(random), latitude(random)}, {0.1, 0.1}},
                                              nullptr);
    }
    return leaves;
}

void countLeaves(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void SortByX(benchmark::State& state) {
    const MzRTree::Nodes leaves = sample(state);
    for ([[maybe_unused]] auto _ : state) {
        MzRTree::Nodes sorted = leaves;
        std::ranges::stable_sort(sorted, {}, [](const auto& n) { return n->bounds().origin.x; });
        benchmark::DoNotOptimize(sorted);
    }
    countLeaves(state);
}

void Pack(benchmark::State& state) {
    const MzRTree::Nodes leaves = sample(state);
    MzRTree tree;
    tree.setMaxNodeSize(8);
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(tree.rootNodesForNodes(leaves));
    }
    countLeaves(state);
}

// Counts of leaves that can be packed at all.
BENCHMARK(SortByX)->Arg(180)->Arg(1080)->Arg(14112);
BENCHMARK(Pack)->Arg(180)->Arg(1080)->Arg(14112);

}  // namespace
}  // namespace mezalith
