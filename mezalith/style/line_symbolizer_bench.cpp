// SPDX-License-Identifier: MIT
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/null_port.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>
#include <mezalith/style/testing.hpp>

#include <algorithm>
#include <random>

#include <benchmark/benchmark.h>

namespace mezalith {
namespace {

using platform::Color;
using testing::NullPort;
using testing::Points;
using testing::TestDrawContext;
using testing::TestFeature;

/// The same walk within the view in every run.
Points walk(std::int64_t size) {
    std::mt19937_64 random(1);
    std::uniform_real_distribution<double> step(-5, 5);
    Points points(static_cast<std::size_t>(size));
    MzPoint last{0, 0};
    for (MzPoint& point : points) {
        last = {std::clamp(last.x + step(random), -999.0, 999.0),
                std::clamp(last.y + step(random), -999.0, 999.0)};
        point = last;
    }
    return points;
}

void drawAgain(platform::GraphicsPort& port, MzSymbolizer& symbolizer, TestFeature& feature,
               TestDrawContext& context, benchmark::State& state) {
    const platform::GraphicsContext current(&port);
    for ([[maybe_unused]] auto _ : state) symbolizer.drawSpatialObject(&feature, &context, false);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// What a symbolizer asks of the port for one path, without geometry and clipping.
void drawBare(platform::GraphicsPort& port, const Points& points) {
    port.beginPath();
    port.addLines(points);
    port.closeSubpath();
    port.setLineCap(platform::LineCap::Round);
    port.setLineJoin(platform::LineJoin::Round);
    port.setLineWidth(2);
    port.setLineDash(0, {});
    port.setStrokeColor(nullptr);
    port.drawPath(platform::PathDrawingMode::Stroke);
}

void BM_LineSymbolizerPolyline(benchmark::State& state) {
    NullPort port;
    MzLineSymbolizer line;
    TestDrawContext context;
    TestFeature feature(testing::multiPoint(walk(state.range(0))));
    drawAgain(port, line, feature, context, state);
}
BENCHMARK(BM_LineSymbolizerPolyline)->Arg(1'000)->Arg(10'000)->Arg(100'000);

void BM_LineSymbolizerPolygon(benchmark::State& state) {
    NullPort port;
    MzLineSymbolizer line;
    TestDrawContext context;
    TestFeature feature(testing::polygon({walk(state.range(0))}, context));
    drawAgain(port, line, feature, context, state);
}
BENCHMARK(BM_LineSymbolizerPolygon)->Arg(1'000)->Arg(10'000)->Arg(100'000);

void BM_PolygonSymbolizerPolygon(benchmark::State& state) {
    NullPort port;
    MzPolygonSymbolizer polygon;
    polygon.setShouldFill(true);
    TestDrawContext context;
    TestFeature feature(testing::polygon({walk(state.range(0))}, context));
    drawAgain(port, polygon, feature, context, state);
}
BENCHMARK(BM_PolygonSymbolizerPolygon)->Arg(1'000)->Arg(10'000)->Arg(100'000);

void BM_BarePortCalls(benchmark::State& state) {
    NullPort port;
    const Points points = walk(state.range(0));
    for ([[maybe_unused]] auto _ : state) drawBare(port, points);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_BarePortCalls)->Arg(1'000)->Arg(10'000)->Arg(100'000);

}  // namespace
}  // namespace mezalith
