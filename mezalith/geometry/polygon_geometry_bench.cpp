// SPDX-License-Identifier: MIT
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/geometry/test_support.hpp>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <numbers>
#include <random>
#include <span>
#include <vector>

#include <benchmark/benchmark.h>

namespace mezalith {
namespace {

using namespace test;

constexpr unsigned kSeed = 20240229;

/// A rough circle of `count` points around 12 E, 62 N, of some three degrees.
Points coastline(std::int64_t count) {
    std::mt19937_64 random{kSeed};
    std::uniform_real_distribution<double> roughness{0.95, 1.05};
    Points points;
    for (std::int64_t i = 0; i < count; ++i) {
        const double angle =
            2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(count);
        const double radius = 3 * roughness(random);
        points.push_back({12 + radius * std::cos(angle), 62 + radius * std::sin(angle)});
    }
    points.back() = points.front();
    return points;
}

void countPoints(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// --- decoding

void makePolygon(benchmark::State& state, std::uint8_t order) {
    const auto wkb = std::make_shared<const Bytes>(
        WkbWriter().polygon(order, {coastline(state.range(0))}).bytes());
    for (auto _ : state) {
        benchmark::DoNotOptimize(MzGeometry::geometryWithWKBData(wkb));
    }
    countPoints(state);
}

void BM_MakePolygonOfLittleEndianWKB(benchmark::State& state) { makePolygon(state, kLittle); }

void BM_MakePolygonOfBigEndianWKB(benchmark::State& state) { makePolygon(state, kBig); }

/// What cannot be saved: zeroed memory for the block, and the bytes copied into it.
void BM_CopyWKB(benchmark::State& state) {
    const Bytes wkb = WkbWriter().polygon(kLittle, {coastline(state.range(0))}).bytes();
    for (auto _ : state) {
        Bytes block(wkb.size());
        std::memcpy(block.data(), wkb.data(), wkb.size());
        benchmark::DoNotOptimize(block.data());
        benchmark::ClobberMemory();
    }
    countPoints(state);
}

// --- projection

void projectPolygon(benchmark::State& state, const std::shared_ptr<MzMapProjection>& projection) {
    const auto geometry =
        MzPolygonGeometry::initWithPolygon(OwnedPolygon({coastline(state.range(0))}).record());
    std::int64_t srid = 0;
    for (auto _ : state) {
        projection->setSrid(++srid);  // as another projection, past the cached copy
        benchmark::DoNotOptimize(geometry->geometryWithProjection(projection));
    }
    countPoints(state);
}

void BM_ProjectPolygonToPlateCarree(benchmark::State& state) {
    projectPolygon(state, MzMapProjection::mapProjectionWithPlateCarree());
}

void BM_ProjectPolygonToUTM(benchmark::State& state) {
    projectPolygon(state, MzMapProjection::mapProjectionWithUTMZone(33));
}

void BM_ProjectBarePointsToUTM(benchmark::State& state) {
    const Points source = coastline(state.range(0));
    Points destination(source.size());
    const auto projection = MzMapProjection::mapProjectionWithUTMZone(33);
    for (auto _ : state) {
        projection->projectCoordinates(source, destination);
        benchmark::DoNotOptimize(destination.data());
        benchmark::ClobberMemory();
    }
    countPoints(state);
}

// --- clipping

void BM_ClipPolygon(benchmark::State& state) {
    const MzClippingRegion region = doublingRegion({{11, 61}, {3, 3}});
    const auto geometry =
        MzPolygonGeometry::initWithPolygon(OwnedPolygon({coastline(state.range(0))}).record());
    for (auto _ : state) {
        benchmark::DoNotOptimize(geometry->clippedPolygonWithRegion(&region));
        benchmark::ClobberMemory();
    }
    countPoints(state);
}

BENCHMARK(BM_CopyWKB)->Arg(1 << 6)->Arg(1 << 12)->Arg(1 << 18);
BENCHMARK(BM_MakePolygonOfLittleEndianWKB)->Arg(1 << 6)->Arg(1 << 12)->Arg(1 << 18);
BENCHMARK(BM_MakePolygonOfBigEndianWKB)->Arg(1 << 6)->Arg(1 << 12)->Arg(1 << 18);
BENCHMARK(BM_ProjectBarePointsToUTM)->Arg(1 << 6)->Arg(1 << 12)->Arg(1 << 18);
BENCHMARK(BM_ProjectPolygonToUTM)->Arg(1 << 6)->Arg(1 << 12)->Arg(1 << 18);
BENCHMARK(BM_ProjectPolygonToPlateCarree)->Arg(1 << 6)->Arg(1 << 12)->Arg(1 << 18);
BENCHMARK(BM_ClipPolygon)->Arg(1 << 6)->Arg(1 << 12)->Arg(1 << 18);

}  // namespace
}  // namespace mezalith
