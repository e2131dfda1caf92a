// SPDX-License-Identifier: MIT
#include "host/hit_finder.hpp"
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>

#include <random>
#include <string>

#include <benchmark/benchmark.h>

namespace mezalith::host {
namespace {

std::shared_ptr<MzStyle> styleFor(Form form) {
    std::shared_ptr<MzSymbolizer> symbolizer = std::make_shared<MzPointSymbolizer>();
    if (form == Form::Line) symbolizer = std::make_shared<MzLineSymbolizer>();
    if (form == Form::Area) {
        auto area = std::make_shared<MzPolygonSymbolizer>();
        area->setShouldFill(true);
        symbolizer = area;
    }
    const auto rule = std::make_shared<MzRule>();
    rule->addSymbolizer(symbolizer);
    auto style = std::make_shared<MzStyle>();
    style->addRule(rule);
    return style;
}

const std::vector<Layer>& world() {
    static const std::vector<Layer> layers = [] {
        std::vector<Layer> read;
        for (const char* name : {"land", "countries", "lakes", "rivers", "borders", "places"}) {
            const std::string file = MEZALITH_SOURCE_DIR "/data/map/naturalearth-50m.gpkg:";
            read.push_back(DataSource(file + name).read(0));
            for (const auto& feature : read.back().features) {
                feature->setStyle(styleFor(feature->form()));
            }
        }
        return read;
    }();
    return layers;
}

MapView viewOf(const benchmark::State& state) {
    const auto width = static_cast<double>(state.range(0));
    return MapView({.projection = MzMapProjection::mapProjectionWithPlateCarree(),
                    .area = {-180, -90, 180, 90},
                    .size = {width, width / 2}});
}

/// Clicks all over the world.
void BM_ClickOnTheWorld(benchmark::State& state) {
    MapView view = viewOf(state);
    HitFinder finder(view, world());
    std::mt19937_64 random(11);
    std::uniform_real_distribution<double> share(0, 1);
    const auto width = static_cast<double>(state.range(0));
    std::size_t hits = 0;
    for (auto _ : state) {
        hits += finder.at({share(random) * width, share(random) * width / 2}, 2).size();
    }
    state.SetItemsProcessed(state.iterations());
    state.counters["hits"] =
        benchmark::Counter(static_cast<double>(hits), benchmark::Counter::kAvgIterations);
}
BENCHMARK(BM_ClickOnTheWorld)->Arg(300)->Arg(1200)->Arg(2400)->Unit(benchmark::kMicrosecond);

/// The worst place: the middle of the largest land.
void BM_ClickOnAsia(benchmark::State& state) {
    MapView view = viewOf(state);
    HitFinder finder(view, world());
    const auto width = static_cast<double>(state.range(0));
    for (auto _ : state) {
        benchmark::DoNotOptimize(finder.at({width * 280 / 360, width / 2 * 150 / 180}, 2));
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_ClickOnAsia)->Arg(300)->Arg(1200)->Arg(2400)->Unit(benchmark::kMicrosecond);

/// The baseline: to draw it all.
void BM_DrawForClicks(benchmark::State& state) {
    MapView view = viewOf(state);
    const auto port = platform::CairoPort::pixelPort(view.frame().size);
    const platform::GraphicsContext context(port.get());
    for (auto _ : state) {
        for (const Layer& layer : world()) {
            for (const auto& feature : layer.features) view.draw(*feature);
        }
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(BM_DrawForClicks)->Arg(300)->Arg(1200)->Arg(2400)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace mezalith::host
