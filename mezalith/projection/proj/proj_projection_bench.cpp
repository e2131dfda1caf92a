// SPDX-License-Identifier: MIT
#include <mezalith/projection/proj/proj_projection.hpp>
#include <mezalith/projection/utm_projection.hpp>
#include <mezalith/projection/web_mercator_projection.hpp>

#include <random>
#include <vector>

#include <benchmark/benchmark.h>

namespace mezalith {
namespace {

/// Points within UTM zone 33, the same in every run.
std::vector<MzPoint> sample(benchmark::State& state) {
    std::mt19937_64 random{1};
    std::uniform_real_distribution<double> longitude{12, 18}, latitude{0, 84};
    std::vector<MzPoint> points(static_cast<std::size_t>(state.range(0)));
    for (MzPoint& p : points) p = {longitude(random), latitude(random)};
    return points;
}

void project(benchmark::State& state, const std::shared_ptr<MzMapProjection>& projection) {
    const std::vector<MzPoint> source = sample(state);
    std::vector<MzPoint> destination(source.size());
    for ([[maybe_unused]] auto _ : state) {
        projection->projectCoordinates(source, destination);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Each beside our own formulas as the baseline.
void UTMByProj(benchmark::State& state) {
    project(state, MzProjProjection::initWithText("epsg:32633"));
}
void UTMByOurOwn(benchmark::State& state) {
    project(state, MzUTMProjection::initWithZone(33, MzUTMProjection::Hemisphere::North));
}
void WebMercatorByProj(benchmark::State& state) {
    project(state, MzProjProjection::initWithText("epsg:3857"));
}
void WebMercatorByOurOwn(benchmark::State& state) {
    project(state, std::make_shared<MzWebMercatorProjection>());
}
void Making(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(MzProjProjection::initWithText("epsg:25833"));
    }
}

BENCHMARK(UTMByProj)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(UTMByOurOwn)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(WebMercatorByProj)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(WebMercatorByOurOwn)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(Making);

}  // namespace
}  // namespace mezalith
