// SPDX-License-Identifier: MIT
#include "apps/mezalith/isogonic_style.hpp"

#include <algorithm>
#include <array>
#include <cmath>

namespace mezalith::app {
namespace {

/// From here on lines crowd around the magnetic and geographic poles.
constexpr double kCrowded = 60;
constexpr double kCrowdedStep = 30;

constexpr float kWidth = 1.3F;
constexpr float kZeroWidth = 2.4F;
constexpr float kCasingWidth = 5;

struct RGB {
    double red, green, blue;
};

/// Light, middle, dark; and that of 180 degrees.
using Ramp = std::array<RGB, 4>;
constexpr Ramp kEast{
    {{0.96, 0.66, 0.14}, {0.87, 0.22, 0.14}, {0.52, 0.02, 0.16}, {0.2, 0.0, 0.12}}};
constexpr Ramp kWest{
    {{0.20, 0.70, 0.80}, {0.13, 0.38, 0.72}, {0.20, 0.10, 0.50}, {0.1, 0.0, 0.22}}};

double stepFor(double range) {
    for (const auto& [from, step] :
         {std::pair{120.0, 10.0}, {60.0, 5.0}, {25.0, 2.0}, {10.0, 1.0}, {4.0, 0.5}, {2.0, 0.2}}) {
        if (range > from) return step;
    }
    return 0.1;
}

bool isShown(double level) {
    return level > -180 && level <= 180 &&
           (std::abs(level) <= kCrowded || std::remainder(level, kCrowdedStep) == 0);
}

}  // namespace

std::vector<double> isogonicLevels(double least, double greatest, std::optional<double> step) {
    const double by = step.value_or(stepFor(greatest - least));
    std::vector<double> levels;
    for (double k = std::ceil(least / by); k * by <= greatest; ++k) {
        // Not -0, which would be written so.
        const double level = k == 0 ? 0 : k * by;
        if (isShown(level)) levels.push_back(level);
    }
    // Of 180 there are only angles a little below and a little above -180.
    if (greatest > 179 && least < -179 && (levels.empty() || levels.back() != 180)) {
        levels.push_back(180);
    }
    return levels;
}

IsogonicStyle::IsogonicStyle(const std::vector<double>& levels) {
    for (const double level : levels)
        scale_ = std::max(scale_, std::min(std::abs(level), kCrowded));
}

std::shared_ptr<const platform::Color> IsogonicStyle::color(double level) const {
    if (level == 0) return platform::Color::blackColor();
    const Ramp& ramp = level > 0 ? kEast : kWest;
    const double angle = std::abs(level);
    const double place =
        angle <= scale_ ? 2 * angle / scale_ : 2 + (angle - scale_) / (180 - scale_);
    const auto below = static_cast<std::size_t>(std::min(place, 2.0));
    const double share = place - static_cast<double>(below);
    const auto between = [share](double from, double to) { return from + (to - from) * share; };
    const RGB &from = ramp[below], &to = ramp[below + 1];
    return platform::Color::colorWithDeviceRed(
        between(from.red, to.red), between(from.green, to.green), between(from.blue, to.blue), 1);
}

std::shared_ptr<MzLineSymbolizer> IsogonicStyle::symbolizer(double level) const {
    auto symbolizer = std::make_shared<MzLineSymbolizer>();
    symbolizer->setStrokeColor(color(level));
    symbolizer->setStrokeWidth(level == 0 ? kZeroWidth : kWidth);
    return symbolizer;
}

std::shared_ptr<MzStyle> IsogonicStyle::style(double level) const {
    const auto rule = std::make_shared<MzRule>();
    rule->addSymbolizer(symbolizer(level));
    if (level == 0) {
        // What is last in a rule is drawn first.
        const auto casing = std::make_shared<MzLineSymbolizer>();
        casing->setStrokeColor(platform::Color::whiteColor());
        casing->setStrokeWidth(kCasingWidth);
        rule->addSymbolizer(casing);
    }
    auto style = std::make_shared<MzStyle>();
    style->addRule(rule);
    return style;
}

}  // namespace mezalith::app
