// SPDX-License-Identifier: MIT
#pragma once

#include "host/feature.hpp"
#include <mezalith/geometry/records.hpp>
#include <mezalith/medialaxis/polygon_skeleton.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace mezalith::app {

/// What is asked of the medial axis of a polygon.
struct AxisQuery {
    std::optional<std::size_t> ring{};  ///< this ring alone, as a polygon of its own
    bool isSettled = false;             ///< the settled axis of the outer ring
    std::optional<double> ratio{};      ///< to prune by
    bool wantsSpine = false;
};

/// The medial axis of one polygon, in the units of the data.
struct Axis {
    std::vector<MzSkeletonNode> nodes;
    std::vector<MzSkeletonArc> arcs;
    std::optional<MzSkeletonNode> deepest;
    std::vector<MzSkeletonNode> spine;
    std::string report;  ///< how the search for the settled axis went

    /// An arc as a polyline; a curve as 16 pieces.
    std::vector<MzPoint> pointsOf(const MzSkeletonArc& arc) const;
};

/// Empty where there is no such ring and where the polygon has no inside; of the settled axis,
/// nodes and arcs that are not finite are left out.
std::optional<Axis> axisOf(const MzPolygon& polygon, const AxisQuery& query);

/// The polygons of a feature, which has them as long as it lives.
std::vector<MzPolygon> polygonsOfFeature(const host::Feature& feature);

/// One GeoJSON feature (RFC 7946) a line for each node, arc, deepest point and spine, the lines
/// parted by commas; `polygon` is the number that they carry.
std::string geoJSONOf(const Axis& axis, std::size_t polygon);

/// Features that show the axis, in the layers "axis", "circle" and "spine".
std::vector<std::shared_ptr<host::Feature>> featuresOf(const Axis& axis, bool showsCircle);

}  // namespace mezalith::app
