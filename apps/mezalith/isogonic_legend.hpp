// SPDX-License-Identifier: MIT
#pragma once

#include "apps/mezalith/isogonic_style.hpp"
#include <mezalith/platform/graphics_port.hpp>

#include <string>
#include <vector>

namespace mezalith::app {

/// What the legend takes of a picture's lower edge at scale factor 1, view points.
inline constexpr double kLegendHeight = 64;

/// Draws the legend of a map of these levels along the lower edge of a port `width` view points
/// wide: its title, a piece of each line as `style` has it, and below the piece its angle. Where
/// they would touch, only some angles are written, 0 among them.
void drawLegend(platform::GraphicsPort& port, double width, double scaleFactor,
                const std::string& title, const std::vector<double>& levels,
                const IsogonicStyle& style);

}  // namespace mezalith::app
