// SPDX-License-Identifier: MIT
#include <mezalith/geometry/affine_transform.hpp>

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

MzAffineTransform mapToPixels() {
    MzAffineTransform transform;
    transform.translateXBy(1200, 600);
    transform.scaleXBy(6.5, 6.75);
    transform.rotateByDegrees(12);
    return transform;
}

// Runs `map(source, destination)` over as many seeded points as the state asks for.
template <typename Map>
void measure(benchmark::State& state, Map map) {
    const std::vector<MzPoint> source = seededPoints(state.range(0));
    std::vector<MzPoint> destination(source.size());
    for (auto _ : state) {
        map(source, destination);
        benchmark::DoNotOptimize(destination.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    state.SetBytesProcessed(state.iterations() * state.range(0) *
                            static_cast<std::int64_t>(sizeof(MzPoint)));
}

void transformPoints(benchmark::State& state) {
    const MzAffineTransform transform = mapToPixels();
    measure(state, [&](const auto& source, auto& destination) {
        transform.transformPoints(source, destination);
    });
}

void transformPointByPoint(benchmark::State& state) {
    const MzAffineTransform transform = mapToPixels();
    measure(state, [&](const auto& source, auto& destination) {
        for (std::size_t i = 0; i < source.size(); ++i) {
            destination[i] = transform.transformPoint(source[i]);
        }
    });
}

void bareLoop(benchmark::State& state) {
    const platform::AffineTransform t = mapToPixels().transformStruct();
    measure(state, [t](const auto& source, auto& destination) {
        for (std::size_t i = 0; i < source.size(); ++i) {
            const auto [x, y] = source[i];
            destination[i] = {t.m11 * x + t.m21 * y + t.tX, t.m12 * x + t.m22 * y + t.tY};
        }
    });
}

void copyOnly(benchmark::State& state) {
    measure(state, [](const auto& source, auto& destination) {
        std::memcpy(destination.data(), source.data(), source.size() * sizeof(MzPoint));
    });
}

// A feature, a layer, a map.
BENCHMARK(transformPoints)->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(transformPointByPoint)->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(bareLoop)->Arg(100)->Arg(10'000)->Arg(1'000'000);
BENCHMARK(copyOnly)->Arg(100)->Arg(10'000)->Arg(1'000'000);

}  // namespace
}  // namespace mezalith
