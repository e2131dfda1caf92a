// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/style.hpp>

#include <memory>
#include <optional>
#include <vector>

namespace mezalith::app {

/// The declinations whose lines make a map of the range from `least` to `greatest`, degrees,
/// ascending: multiples of `step`, or of one that makes some ten to thirty of them. Beyond 60
/// degrees, where they crowd around the poles, only multiples of 30 are left. -180 is 180.
std::vector<double> isogonicLevels(double least, double greatest, std::optional<double> step);

/// How the lines of a map are drawn: from light to dark with the angle, warm where magnetic north
/// lies to the east, cold where it lies to the west; 0 in black on a white casing.
class IsogonicStyle {
  public:
    /// For a map of these levels.
    explicit IsogonicStyle(const std::vector<double>& levels);

    std::shared_ptr<const platform::Color> color(double level) const;
    std::shared_ptr<MzLineSymbolizer> symbolizer(double level) const;
    /// The symbolizer, and the casing of 0 below it.
    std::shared_ptr<MzStyle> style(double level) const;

  private:
    double scale_ =
        1;  ///< degrees at which the colours are darkest, but for those around the poles
};

}  // namespace mezalith::app
