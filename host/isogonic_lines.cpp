// SPDX-License-Identifier: MIT
#include "host/isogonic_lines.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace mezalith::host {
namespace {

constexpr double kSamples = 720;

std::vector<double> steps(double from, double to, double step) {
    const auto count = static_cast<std::size_t>(std::max(1.0, std::ceil((to - from) / step)));
    std::vector<double> values(count + 1);
    for (std::size_t i = 0; i <= count; ++i) {
        values[i] = from + (to - from) * static_cast<double>(i) / static_cast<double>(count);
    }
    return values;
}

BoundingBox onGlobe(BoundingBox area) {
    if (area.width() >= 360) {
        area.minX = -180;
        area.maxX = 180;
    }
    area.minY = std::clamp(area.minY, -90.0, 90.0);
    area.maxY = std::clamp(area.maxY, -90.0, 90.0);
    return area;
}

}  // namespace

IsogonicLines::IsogonicLines(const MzGeomagneticField& field, const BoundingBox& area) {
    const BoundingBox box = onGlobe(area);
    const double step = std::max(box.width(), box.height()) / kSamples;
    if (!(step > 0 && std::isfinite(step))) return;
    grid_.xs = steps(box.minX, box.maxX, step);
    grid_.ys = steps(box.minY, box.maxY, step);
    elements_.resize(grid_.xs.size() * grid_.ys.size());
    grid_.values.resize(elements_.size());
    grid_.sides.resize(elements_.size());
    field.elementsOnGrid(grid_.xs, grid_.ys, 0, elements_);
    const auto [least, greatest] =
        std::ranges::minmax(elements_, {}, &MzMagneticElements::declination);
    least_ = least.declination;
    greatest_ = greatest.declination;
}

std::vector<std::vector<MzPoint>> IsogonicLines::linesOf(double declination) {
    const double angle = declination * std::numbers::pi / 180;
    const double c = std::cos(angle), s = std::sin(angle);
    for (std::size_t i = 0; i < elements_.size(); ++i) {
        grid_.values[i] = elements_[i].east * c - elements_[i].north * s;
        grid_.sides[i] = elements_[i].north * c + elements_[i].east * s;
    }
    return zeroLines(grid_);
}

}  // namespace mezalith::host
