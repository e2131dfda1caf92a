// SPDX-License-Identifier: MIT
#include "apps/mezalith/isogonic_legend.hpp"

#include "apps/mezalith/caption.hpp"
#include "apps/mezalith/isogonic_map.hpp"

#include <algorithm>
#include <array>
#include <cmath>

namespace mezalith::app {
namespace {

constexpr double kMargin = 20;
constexpr double kWidestCell = 56;
/// Narrower cells have an angle below every other line only.
constexpr double kNarrowestCell = 30;
constexpr double kTitleHeight = 49;
constexpr double kLineHeight = 29;
constexpr double kAngleHeight = 14;
/// Of a cell, what its line takes.
constexpr double kShare = 0.76;

void drawPiece(platform::GraphicsPort& port, MzPoint centre, double length,
               MzLineSymbolizer& symbolizer) {
    const std::array<MzPoint, 2> line{
        {{centre.x - length / 2, centre.y}, {centre.x + length / 2, centre.y}}};
    symbolizer.setLineCap(0);
    symbolizer.setStrokeWidth(symbolizer.strokeWidth() * 2);
    port.beginPath();
    port.addLines(line);
    symbolizer.symbolizeInContext(&port, 1);
}

/// Whether the angle stands below its line, with `every` lines from one angle to the next.
bool isWritten(const std::vector<double>& levels, std::size_t index, std::size_t every) {
    const auto zero = std::ranges::find(levels, 0.0);
    const auto origin = zero == levels.end() ? 0 : static_cast<std::size_t>(zero - levels.begin());
    return (index + origin * (every - 1)) % every == 0;
}

}  // namespace

void drawLegend(platform::GraphicsPort& port, double width, double scaleFactor,
                const std::string& title, const std::vector<double>& levels,
                const IsogonicStyle& style) {
    port.saveState();
    port.scale(scaleFactor, scaleFactor);
    width /= scaleFactor;
    drawCaption(port,
                {.text = title, .centre = {width / 2, kTitleHeight}, .size = 13, .bold = true});
    const auto count = static_cast<double>(levels.size());
    const double cell = std::min((width - 2 * kMargin) / count, kWidestCell);
    const auto every = static_cast<std::size_t>(std::ceil(kNarrowestCell / cell));
    double x = (width - cell * count) / 2 + cell / 2;
    for (std::size_t i = 0; i < levels.size(); ++i, x += cell) {
        drawPiece(port, {x, kLineHeight}, cell * kShare, *style.symbolizer(levels[i]));
        if (!isWritten(levels, i, every)) continue;
        drawCaption(port, {.text = levelText(levels[i]), .centre = {x, kAngleHeight}, .size = 11});
    }
    port.restoreState();
}

}  // namespace mezalith::app
