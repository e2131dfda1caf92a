// SPDX-License-Identifier: MIT
#include <mezalith/geometry/wkb.hpp>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

namespace mezalith {
namespace {

std::vector<std::byte> randomBytes(std::size_t size) {
    std::mt19937_64 random{1};
    std::vector<std::byte> bytes(size);
    for (std::byte& byte : bytes) byte = static_cast<std::byte>(random());
    return bytes;
}

std::uint32_t pointCount(const benchmark::State& state) {
    return static_cast<std::uint32_t>(state.range(0));
}

void countPoints(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * state.range(0) * 16);
}

// The pairs begin at an odd address, as they do in most files.
void decodePairs(benchmark::State& state, int order) {
    const auto bytes = randomBytes(16 * pointCount(state) + 1);
    std::vector<MzPoint> points(pointCount(state));
    for (auto _ : state) {
        const std::byte* cursor = bytes.data() + 1;
        pointToMzPoint(&cursor, pointCount(state), points.data(), order);
        benchmark::DoNotOptimize(points.data());
        benchmark::ClobberMemory();
    }
    countPoints(state);
}

void BM_CopyPairs(benchmark::State& state) {
    const auto bytes = randomBytes(16 * pointCount(state) + 1);
    std::vector<MzPoint> points(pointCount(state));
    for (auto _ : state) {
        std::memcpy(points.data(), bytes.data() + 1, 16 * points.size());
        benchmark::DoNotOptimize(points.data());
        benchmark::ClobberMemory();
    }
    countPoints(state);
}

void BM_DecodeLittleEndianPairs(benchmark::State& state) { decodePairs(state, wkbLittleEndian); }

void BM_DecodeBigEndianPairs(benchmark::State& state) { decodePairs(state, wkbBigEndian); }

void BM_DecodePointElements(benchmark::State& state) {
    const auto bytes = randomBytes(21 * pointCount(state));
    std::vector<MzPoint> points(pointCount(state));
    for (auto _ : state) {
        const std::byte* cursor = bytes.data();
        wkbPointToMzPoint(&cursor, pointCount(state), points.data());
        benchmark::DoNotOptimize(points.data());
        benchmark::ClobberMemory();
    }
    countPoints(state);
}

BENCHMARK(BM_CopyPairs)->Arg(1 << 6)->Arg(1 << 12)->Arg(1 << 18);
BENCHMARK(BM_DecodeLittleEndianPairs)->Arg(1 << 6)->Arg(1 << 12)->Arg(1 << 18);
BENCHMARK(BM_DecodeBigEndianPairs)->Arg(1 << 6)->Arg(1 << 12)->Arg(1 << 18);
BENCHMARK(BM_DecodePointElements)->Arg(1 << 6)->Arg(1 << 12)->Arg(1 << 18);

}  // namespace
}  // namespace mezalith
