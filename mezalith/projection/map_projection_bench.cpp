// SPDX-License-Identifier: MIT
#include <mezalith/projection/map_projection.hpp>
#include <mezalith/projection/utm_projection.hpp>
#include <mezalith/projection/web_mercator_projection.hpp>

#include <cstring>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

namespace mezalith {
namespace {

/// Points within the zone of the benchmark, the same in every run.
std::vector<MzPoint> sample(benchmark::State& state) {
    std::mt19937_64 random{1};
    std::uniform_real_distribution<double> longitude{12, 18}, latitude{-80, 84};
    std::vector<MzPoint> points(static_cast<std::size_t>(state.range(0)));
    for (MzPoint& p : points) p = {longitude(random), latitude(random)};
    return points;
}

std::shared_ptr<MzMapProjection> zone33() { return MzMapProjection::mapProjectionWithUTMZone(33); }

void countPoints(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Memcpy(benchmark::State& state) {
    const std::vector<MzPoint> source = sample(state);
    std::vector<MzPoint> destination(source.size());
    for ([[maybe_unused]] auto _ : state) {
        std::memcpy(destination.data(), source.data(), source.size() * sizeof(MzPoint));
        benchmark::ClobberMemory();
    }
    countPoints(state);
}

void projectBatch(benchmark::State& state, const std::shared_ptr<MzMapProjection>& projection) {
    const std::vector<MzPoint> source = sample(state);
    std::vector<MzPoint> destination(source.size());
    for ([[maybe_unused]] auto _ : state) {
        projection->projectCoordinates(source, destination);
        benchmark::ClobberMemory();
    }
    countPoints(state);
}

void projectOneByOne(benchmark::State& state, const std::shared_ptr<MzMapProjection>& projection) {
    const std::vector<MzPoint> source = sample(state);
    std::vector<MzPoint> destination(source.size());
    for ([[maybe_unused]] auto _ : state) {
        for (std::size_t i = 0; i < source.size(); ++i) {
            destination[i] = projection->projectedCoordinateForLongitudeLatitude(source[i]);
        }
        benchmark::ClobberMemory();
    }
    countPoints(state);
}

void unprojectBatch(benchmark::State& state, const std::shared_ptr<MzMapProjection>& projection) {
    std::vector<MzPoint> source = sample(state);
    projection->projectCoordinates(source, source);
    std::vector<MzPoint> destination(source.size());
    for ([[maybe_unused]] auto _ : state) {
        projection->unprojectCoordinates(source, destination);
        benchmark::ClobberMemory();
    }
    countPoints(state);
}

void PlateCarreeOneByOne(benchmark::State& state) {
    projectOneByOne(state, MzMapProjection::mapProjectionWithPlateCarree());
}
void PlateCarreeBatch(benchmark::State& state) {
    projectBatch(state, MzMapProjection::mapProjectionWithPlateCarree());
}
void UTMOneByOne(benchmark::State& state) { projectOneByOne(state, zone33()); }
void UTMBatch(benchmark::State& state) { projectBatch(state, zone33()); }
void UTMInverseBatch(benchmark::State& state) { unprojectBatch(state, zone33()); }
std::shared_ptr<MzMapProjection> north33() {
    return MzUTMProjection::initWithZone(33, MzUTMProjection::Hemisphere::North);
}
void CounterpartUTMBatch(benchmark::State& state) { projectBatch(state, north33()); }
void CounterpartUTMInverseBatch(benchmark::State& state) { unprojectBatch(state, north33()); }
void WebMercatorBatch(benchmark::State& state) {
    projectBatch(state, std::make_shared<MzWebMercatorProjection>());
}
void WebMercatorInverseBatch(benchmark::State& state) {
    unprojectBatch(state, std::make_shared<MzWebMercatorProjection>());
}

BENCHMARK(Memcpy)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(PlateCarreeOneByOne)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(PlateCarreeBatch)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(UTMOneByOne)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(UTMBatch)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(UTMInverseBatch)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(CounterpartUTMBatch)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(CounterpartUTMInverseBatch)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(WebMercatorBatch)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(WebMercatorInverseBatch)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);

}  // namespace
}  // namespace mezalith
