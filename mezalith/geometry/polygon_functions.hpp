// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>

#include <optional>

namespace mezalith {

/// Whether (x, y) lies inside the polygon: non-zero winding over all rings together, every stored
/// point a vertex. NO for a polygon without rings and for null.
/// Settled: the intercept of an edge with the horizontal through the point is computed with a mixed
/// term, c.x - (p.x - c.x)·(c.x - y)/(p.y - c.y), so points beside slanting edges come out wrong.
MEZALITH_EXPORT bool crossingTest(const MzPolygon* polygon, double x, double y);

/// The area-weighted centroid of a ring, and its signed area (counter-clockwise positive, square
/// units of the coordinates) in `area`, which may be null. Empty for fewer than 3 points, leaving
/// `area` untouched, and for an area of exactly 0.
/// Source: the shoelace formula; Bourke (1988), Calculating the area and centroid of a polygon.
MEZALITH_EXPORT std::optional<MzPoint> MzCentroid(const MzLinearRing* ring, double* area);

}  // namespace mezalith
