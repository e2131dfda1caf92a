// SPDX-License-Identifier: MIT
#include <mezalith/clipping/outcode_clipping.hpp>

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

namespace mezalith {
namespace {

constexpr double pixelsPerUnit = 2.5;

/// A ragged coast around (0, 0) with radii from 80 to 100, closed, the same in every run.
std::vector<MzPoint> coast(benchmark::State& state) {
    std::mt19937_64 random{1};
    std::uniform_real_distribution<double> radius{80, 100};
    std::vector<MzPoint> points(static_cast<std::size_t>(state.range(0)));
    const double step = 2 * std::numbers::pi / static_cast<double>(points.size() - 1);
    for (std::size_t i = 0; i < points.size(); ++i) {
        const double angle = step * static_cast<double>(i), r = radius(random);
        points[i] = {r * std::cos(angle), r * std::sin(angle)};
    }
    points.back() = points.front();
    return points;
}

std::shared_ptr<MzAffineTransform> toPixels() {
    auto transform = MzAffineTransform::transform();
    transform->translateXBy(400, 300);
    transform->scaleBy(pixelsPerUnit);
    return transform;
}

MzClippingRegion regionOf(MzRect rect) {
    MzClippingRegion region;
    region.setClippingRect(rect);
    region.setTransform(toPixels());
    region.setMinSpacing(2 / pixelsPerUnit);
    return region;
}

MzClippingRegion allOfIt() { return regionOf({{-150, -150}, {300, 300}}); }
MzClippingRegion partOfIt() { return regionOf({{-20, 10}, {150, 150}}); }
MzClippingRegion noneOfIt() { return regionOf({{200, 200}, {50, 50}}); }

void countPoints(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// What the vertices cost when nothing is clipped.
void BareTransform(benchmark::State& state) {
    const std::vector<MzPoint> source = coast(state);
    std::vector<MzPoint> destination(source.size());
    const auto transform = toPixels();
    for ([[maybe_unused]] auto _ : state) {
        transform->transformPoints(source, destination);
        benchmark::ClobberMemory();
    }
    countPoints(state);
}

template <typename Record>
void clip(benchmark::State& state, const MzClippingRegion& region, std::size_t capacity,
          void (*clipper)(const Record*, Record*, const MzClippingRegion*)) {
    std::vector<MzPoint> source = coast(state), room(capacity);
    const Record from{static_cast<std::uint32_t>(source.size()), source.data()};
    Record to{0, room.data()};
    for ([[maybe_unused]] auto _ : state) {
        clipper(&from, &to, &region);
        benchmark::DoNotOptimize(to.count);
        benchmark::ClobberMemory();
    }
    countPoints(state);
}

void points(benchmark::State& state, const MzClippingRegion& region) {
    const auto count = static_cast<std::uint32_t>(state.range(0));
    clip<MzMultiPoint>(state, region, MzClippedMultiPointCapacity(count), MzClipMultiPoint);
}

void line(benchmark::State& state, const MzClippingRegion& region) {
    const auto count = static_cast<std::uint32_t>(state.range(0));
    clip<MzLineString>(state, region, MzClippedLineStringCapacity(count), MzClipLineString);
}

void ring(benchmark::State& state, const MzClippingRegion& region) {
    const auto count = static_cast<std::uint32_t>(state.range(0));
    clip<MzLinearRing>(state, region, MzClippedLinearRingCapacity(count), MzClipLinearRing);
}

MzClippingRegion exactly(MzClippingRegion region) {
    region.setExact(true);
    return region;
}

void PointsAllInView(benchmark::State& state) { points(state, allOfIt()); }
void PointsPartInView(benchmark::State& state) { points(state, partOfIt()); }
void LineAllInView(benchmark::State& state) { line(state, allOfIt()); }
void LinePartInView(benchmark::State& state) { line(state, partOfIt()); }
void LineOutOfView(benchmark::State& state) { line(state, noneOfIt()); }
void RingAllInView(benchmark::State& state) { ring(state, allOfIt()); }
void RingPartInView(benchmark::State& state) { ring(state, partOfIt()); }
void RingOutOfView(benchmark::State& state) { ring(state, noneOfIt()); }
void ExactPointsAllInView(benchmark::State& state) { points(state, exactly(allOfIt())); }
void ExactPointsPartInView(benchmark::State& state) { points(state, exactly(partOfIt())); }
void ExactLineAllInView(benchmark::State& state) { line(state, exactly(allOfIt())); }
void ExactLinePartInView(benchmark::State& state) { line(state, exactly(partOfIt())); }
void ExactLineOutOfView(benchmark::State& state) { line(state, exactly(noneOfIt())); }
void ExactRingAllInView(benchmark::State& state) { ring(state, exactly(allOfIt())); }
void ExactRingPartInView(benchmark::State& state) { ring(state, exactly(partOfIt())); }
void ExactRingOutOfView(benchmark::State& state) { ring(state, exactly(noneOfIt())); }

BENCHMARK(BareTransform)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(PointsAllInView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(PointsPartInView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(LineAllInView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(LinePartInView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(LineOutOfView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(RingAllInView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(RingPartInView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(RingOutOfView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(ExactPointsAllInView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(ExactPointsPartInView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(ExactLineAllInView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(ExactLinePartInView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(ExactLineOutOfView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(ExactRingAllInView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(ExactRingPartInView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);
BENCHMARK(ExactRingOutOfView)->RangeMultiplier(64)->Range(1 << 6, 1 << 18);

}  // namespace
}  // namespace mezalith
