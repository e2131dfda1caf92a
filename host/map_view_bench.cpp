// SPDX-License-Identifier: MIT
#include "host/data_source.hpp"
#include "host/map_view.hpp"
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/number_text.hpp>
#include <mezalith/platform/recording_port.hpp>
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>
#include <mezalith/style/style.hpp>

#include <sstream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace mezalith::host {
namespace {

std::shared_ptr<MzStyle> styleFor(Form form) {
    std::shared_ptr<MzSymbolizer> symbolizer = std::make_shared<MzLineSymbolizer>();
    if (form == Form::Area) {
        auto area = std::make_shared<MzPolygonSymbolizer>();
        area->setShouldFill(true);
        area->setStrokeWidth(0.5F);
        symbolizer = area;
    }
    const auto rule = std::make_shared<MzRule>();
    rule->addSymbolizer(symbolizer);
    auto style = std::make_shared<MzStyle>();
    style->addRule(rule);
    return style;
}

/// Land, lakes, rivers, borders and coasts of the world.
const std::vector<Layer>& world() {
    static const std::vector<Layer> layers = [] {
        std::vector<Layer> read;
        for (const char* name : {"land", "lakes", "rivers", "borders", "coastline"}) {
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

std::int64_t verticesOfWorld() {
    std::int64_t count = 0;
    for (const Layer& layer : world()) {
        for (const auto& feature : layer.features) {
            count += static_cast<std::int64_t>(feature->geometry()->geometryData().size() / 16);
        }
    }
    return count;
}

MzSize sizeOf(const benchmark::State& state) {
    const auto width = static_cast<double>(state.range(0));
    return {width, width / 2};
}

void drawWorld(MapView& view, platform::GraphicsPort& port) {
    const platform::GraphicsContext context(&port);
    for (const Layer& layer : world()) {
        for (const auto& feature : layer.features) view.draw(*feature);
    }
}

MapView viewOf(MzSize size) {
    return MapView({.projection = MzMapProjection::mapProjectionWithPlateCarree(),
                    .area = {-180, -90, 180, 90},
                    .size = size});
}

/// One path as it reached the port: its runs of points, and how it was drawn.
struct DrawnPath {
    std::vector<std::vector<MzPoint>> runs;
    platform::PathDrawingMode mode;
};

/// The paths that drawing the world hands to a port.
std::vector<DrawnPath> pathsOfWorld(MzSize size) {
    platform::RecordingPort recorder;
    MapView view = viewOf(size);
    drawWorld(view, recorder);
    std::vector<DrawnPath> paths(1);
    for (const std::string& line : recorder.lines()) {
        std::istringstream words(line);
        std::string operation, x, y;
        words >> operation >> x >> y;
        if (operation == "moveToPoint") paths.back().runs.emplace_back();
        if (operation == "moveToPoint" || operation == "addLineToPoint") {
            paths.back().runs.back().push_back(
                {*platform::numberFromText(x), *platform::numberFromText(y)});
        } else if (operation == "drawPath") {
            paths.back().mode = static_cast<platform::PathDrawingMode>(std::stoi(x));
            paths.emplace_back();
        }
    }
    paths.pop_back();
    return paths;
}

void BM_DrawWorld(benchmark::State& state) {
    const auto port = platform::CairoPort::pixelPort(sizeOf(state));
    MapView view = viewOf(sizeOf(state));
    for (auto _ : state) drawWorld(view, *port);
    state.SetItemsProcessed(state.iterations() * verticesOfWorld());
}
BENCHMARK(BM_DrawWorld)->Arg(300)->Arg(1200)->Arg(2400)->Unit(benchmark::kMillisecond);

/// The baseline: only the rasteriser, on paths that are in view points already.
void BM_DrawWorldsPaths(benchmark::State& state) {
    const auto port = platform::CairoPort::pixelPort(sizeOf(state));
    const std::vector<DrawnPath> paths = pathsOfWorld(sizeOf(state));
    for (auto _ : state) {
        for (const DrawnPath& path : paths) {
            port->setLineWidth(path.mode == platform::PathDrawingMode::Stroke ? 2 : 0.5);
            port->setLineCap(platform::LineCap::Round);
            port->setLineJoin(platform::LineJoin::Round);
            for (const auto& run : path.runs) port->addLines(run);
            port->drawPath(path.mode);
        }
    }
    state.SetItemsProcessed(state.iterations() * verticesOfWorld());
}
BENCHMARK(BM_DrawWorldsPaths)->Arg(300)->Arg(1200)->Arg(2400)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace mezalith::host
