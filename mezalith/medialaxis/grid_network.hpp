// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/medialaxis/grid_outline.hpp>

#include <cstdint>
#include <optional>
#include <vector>

namespace mezalith::detail {

/// A node of a medial axis, in steps of the outline's grid.
struct GridNode {
    double x;
    double y;
    double clearance;
};

/// An arc of a medial axis. A parabola is the quadratic curve with the inner control point (x, y).
struct GridArc {
    std::uint32_t start;
    std::uint32_t end;
    bool isParabola;
    double x;
    double y;
};

struct GridNetwork {
    std::vector<GridNode> nodes;
    std::vector<GridArc> arcs;
};

/// The medial axis of the inside of an outline: the points that have more than one nearest point on
/// it. Arcs shorter than a sixteenth of a step are one node, nodes that close to a corner lie in
/// it. Without an answer when the diagram that it is taken from turns out not to hold together.
/// O(n log n).
MEZALITH_EXPORT std::optional<GridNetwork> gridNetworkOf(const GridOutline& outline);

/// The deepest of its nodes; none where there is none or no answer.
MEZALITH_EXPORT std::optional<GridNode> deepestNodeOf(const GridOutline& outline);

}  // namespace mezalith::detail
