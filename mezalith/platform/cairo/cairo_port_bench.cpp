// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>

#include <cmath>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>
#include <cairo.h>

namespace mezalith::platform {
namespace {

constexpr double side = 1000;

/// A closed wavy line around the middle of the picture, as a coast is.
std::vector<MzPoint> coast(std::int64_t count) {
    std::mt19937_64 random(7);
    std::uniform_real_distribution<double> noise(-4, 4);
    std::vector<MzPoint> points;
    for (std::int64_t i = 0; i < count; ++i) {
        const double angle =
            6.283185307179586 * static_cast<double>(i) / static_cast<double>(count);
        const double radius = 350 + 80 * std::sin(5 * angle) + noise(random);
        points.push_back({500 + radius * std::cos(angle), 500 + radius * std::sin(angle)});
    }
    return points;
}

void drawByPort(benchmark::State& state, PathDrawingMode mode) {
    const std::vector<MzPoint> points = coast(state.range(0));
    const auto port = CairoPort::pixelPort({side, side});
    port->setLineWidth(1.5);
    port->setLineJoin(LineJoin::Round);
    for (auto _ : state) {
        port->beginPath();
        port->addLines(points);
        port->closeSubpath();
        port->drawPath(mode);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

/// The same picture by the library below, without anything between.
void drawBare(benchmark::State& state, void (*draw)(cairo_t*)) {
    const std::vector<MzPoint> points = coast(state.range(0));
    cairo_surface_t* surface = cairo_image_surface_create(
        CAIRO_FORMAT_ARGB32, static_cast<int>(side), static_cast<int>(side));
    cairo_t* cr = cairo_create(surface);
    cairo_set_line_width(cr, 1.5);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    cairo_set_fill_rule(cr, CAIRO_FILL_RULE_EVEN_ODD);
    for (auto _ : state) {
        cairo_new_path(cr);
        cairo_move_to(cr, points[0].x, side - points[0].y);
        for (std::size_t i = 1; i < points.size(); ++i) {
            cairo_line_to(cr, points[i].x, side - points[i].y);
        }
        cairo_close_path(cr);
        draw(cr);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    cairo_destroy(cr);
    cairo_surface_destroy(surface);
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->RangeMultiplier(10)->Range(1000, 100000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK_CAPTURE(drawByPort, fill, PathDrawingMode::EvenOddFill)->Apply(sizes);
BENCHMARK_CAPTURE(drawBare, fill, cairo_fill)->Apply(sizes);
BENCHMARK_CAPTURE(drawByPort, stroke, PathDrawingMode::Stroke)->Apply(sizes);
BENCHMARK_CAPTURE(drawBare, stroke, cairo_stroke)->Apply(sizes);

/// The path alone, without drawing.
void addLinesOnly(benchmark::State& state) {
    const std::vector<MzPoint> points = coast(state.range(0));
    const auto port = CairoPort::pixelPort({side, side});
    for (auto _ : state) {
        port->beginPath();
        port->addLines(points);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(addLinesOnly)->Apply(sizes);

/// A filled square of 100 points with a shadow of this blur.
void shadow(benchmark::State& state) {
    const auto port = CairoPort::pixelPort({side, side}, 2);
    port->setShadow({2, -2}, static_cast<double>(state.range(0)));
    for (auto _ : state) {
        port->addEllipseInRect({{100, 100}, {100, 100}});
        port->drawPath(PathDrawingMode::EvenOddFill);
    }
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(shadow)->Arg(1)->Arg(8)->Arg(64)->Unit(benchmark::kMicrosecond);

void stampMarkers(benchmark::State& state) {
    const auto port = CairoPort::pixelPort({side, side}, 2);
    const auto layer = port->createLayer({12, 12});
    layer->port()->addEllipseInRect({{1, 1}, {10, 10}});
    layer->port()->drawPath(PathDrawingMode::EvenOddFillStroke);
    const std::vector<MzPoint> points = coast(state.range(0));
    for (auto _ : state) {
        for (const MzPoint& point : points) {
            port->drawLayerAtPoint(layer.get(), point);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(stampMarkers)->Apply(sizes);

}  // namespace
}  // namespace mezalith::platform
