// SPDX-License-Identifier: MIT
#include <mezalith/geometry/wkb_encoder.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

namespace mezalith {
namespace {

constexpr unsigned kSeed = 20240229;

std::vector<MzPoint> seededPoints(std::int64_t count) {
    std::mt19937_64 random{kSeed};
    std::uniform_real_distribution<double> longitude{-180, 180}, latitude{-90, 90};
    std::vector<MzPoint> points(static_cast<std::size_t>(count));
    for (MzPoint& point : points) point = {longitude(random), latitude(random)};
    return points;
}

/// A new buffer of the same size, filled without headers.
void BM_CopyPoints(benchmark::State& state) {
    const auto points = seededPoints(state.range(0));
    for (auto _ : state) {
        auto* buffer = static_cast<std::byte*>(std::malloc(21 * points.size()));
        std::memcpy(buffer, points.data(), 16 * points.size());
        benchmark::DoNotOptimize(buffer);
        benchmark::ClobberMemory();
        std::free(buffer);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_EncodePoints(benchmark::State& state) {
    const auto points = seededPoints(state.range(0));
    const auto count = static_cast<std::uint32_t>(points.size());
    for (auto _ : state) {
        std::uint64_t length = 0;
        std::byte* buffer = wkbPointToData(points.data(), count, nullptr, &length);
        benchmark::DoNotOptimize(buffer);
        benchmark::ClobberMemory();
        std::free(buffer);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(BM_CopyPoints)->Arg(1 << 6)->Arg(1 << 12)->Arg(1 << 18);
BENCHMARK(BM_EncodePoints)->Arg(1 << 6)->Arg(1 << 12)->Arg(1 << 18);

}  // namespace
}  // namespace mezalith
