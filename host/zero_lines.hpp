// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/primitives.hpp>

#include <vector>

namespace mezalith::host {

/// Two functions sampled where the lines x = `xs` and y = `ys`, both ascending, cross: row by row
/// of equal y, `xs.size()` values each.
struct SampledGrid {
    std::vector<double> xs;
    std::vector<double> ys;
    std::vector<double> values;
    std::vector<double> sides;
};

/// The lines along which `values` is 0, as far as `sides` is positive there, both taken as linear
/// along each side of a cell. A line ends at the edge of the grid, where `sides` turns, at a value
/// that is not finite, or where it began; then its first point is there again. Two lines that meet
/// within a cell pass each other on the side that the cell's mean decides. The method is that of
/// marching squares.
std::vector<std::vector<MzPoint>> zeroLines(const SampledGrid& grid);

}  // namespace mezalith::host
