// SPDX-License-Identifier: MIT
#pragma once

#include "apps/mezalith/caption.hpp"
#include "apps/mezalith/isogonic_style.hpp"
#include "host/isogonic_lines.hpp"
#include "host/map_view.hpp"

#include <span>
#include <vector>

namespace mezalith::app {

/// The lines of one declination.
struct Isogon {
    double level;                             ///< degrees
    std::vector<std::vector<MzPoint>> lines;  ///< longitudes and latitudes, degrees
};

/// Those of the levels that have a line in sight of the view, ascending.
std::vector<Isogon> isogonsInSight(const host::MapView& view, host::IsogonicLines& lines,
                                   std::span<const double> levels);

/// Draws the lines by the symbolizers of `style`, 0 on top, into the current port.
void drawIsogons(host::MapView& view, std::span<const Isogon> isogons, const IsogonicStyle& style);

/// The angles as captions on their lines, in view points: one for each line that is long enough to
/// carry one, where it covers no other and nothing of the view's edge.
std::vector<Caption> isogonCaptions(const host::MapView& view, std::span<const Isogon> isogons,
                                    const IsogonicStyle& style);

/// "20", as a text for a reader: with a minus sign and without the digits of rounding.
std::string levelText(double level);

}  // namespace mezalith::app
