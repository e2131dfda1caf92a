// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/bare_stamps.hpp>
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/testing.hpp>

#include <random>

#include <benchmark/benchmark.h>

namespace mezalith {
namespace {

using platform::CairoPort;
using platform::GraphicsContext;
using testing::Points;
using testing::TestDrawContext;
using testing::TestFeature;

constexpr MzSize kView{990, 990};
constexpr double kRatio = 2;

/// The same random places of the view in every run.
Points places(std::int64_t count) {
    std::mt19937_64 random(3);
    std::uniform_real_distribution<double> coordinate(5, kView.width - 5);
    Points points(static_cast<std::size_t>(count));
    for (MzPoint& point : points) point = {coordinate(random), coordinate(random)};
    return points;
}

/// As it is by default: a cyan circle with an outline, four points wide.
void BM_PointSymbolizerMultiPoint(benchmark::State& state) {
    const auto port = CairoPort::pixelPort(kView, kRatio);
    const GraphicsContext current(port.get());
    MzPointSymbolizer point;
    TestDrawContext context;
    TestFeature feature(testing::multiPoint(places(state.range(0))));
    for ([[maybe_unused]] auto _ : state) point.drawSpatialObject(&feature, &context, false);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_PointSymbolizerMultiPoint)->Arg(1'000)->Arg(10'000)->Arg(100'000);

void BM_PointSymbolizerPoints(benchmark::State& state) {
    const auto port = CairoPort::pixelPort(kView, kRatio);
    const GraphicsContext current(port.get());
    MzPointSymbolizer point;
    TestDrawContext context;
    std::vector<TestFeature> features;
    for (const MzPoint& place : places(state.range(0))) {
        features.emplace_back(MzPointGeometry::initWithPoint(place));
    }
    for ([[maybe_unused]] auto _ : state) {
        for (TestFeature& feature : features) point.drawSpatialObject(&feature, &context, false);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_PointSymbolizerPoints)->Arg(1'000)->Arg(10'000)->Arg(100'000);

void BM_PointSymbolizerVectors(benchmark::State& state) {
    const auto port = CairoPort::pixelPort(kView, kRatio);
    const GraphicsContext current(port.get());
    MzPointSymbolizer point;
    const Points points = places(state.range(0));
    for ([[maybe_unused]] auto _ : state) {
        for (const MzPoint& place : points) {
            port->saveState();
            port->translate(place.x, place.y);
            point.symbolizeInContext(port.get(), 1);
            port->restoreState();
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_PointSymbolizerVectors)->Arg(1'000)->Arg(10'000)->Arg(100'000);

void BM_BareStamps(benchmark::State& state) {
    const auto port = CairoPort::pixelPort(kView, kRatio);
    MzPointSymbolizer point;
    TestDrawContext context;
    testing::drawInto(*port, point, MzPointGeometry::initWithPoint({0, 0}), context);
    const auto* layer = dynamic_cast<const CairoPort*>(point.theLayer()->port());
    platform::detail::BareStamps bare(kView, kRatio, *layer);
    const Points points = places(state.range(0));
    for ([[maybe_unused]] auto _ : state) bare.draw(points);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_BareStamps)->Arg(1'000)->Arg(10'000)->Arg(100'000);

}  // namespace
}  // namespace mezalith
