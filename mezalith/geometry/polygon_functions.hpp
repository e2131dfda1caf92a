// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>

#include <optional>

namespace mezalith {

/// Whether (x, y) lies inside the polygon: non-zero winding over all rings together.
/// Settled: the intercept of an edge with the horizontal through the point is computed with a mixed
/// term, c.x - (p.x - c.x)·(c.x - y)/(p.y - c.y), so points beside slanting edges come out wrong.
MEZALITH_EXPORT bool crossingTest(const MzPolygon* polygon, double x, double y);

/// The area-weighted centroid of a ring, and its signed area (counter-clockwise positive). Empty
/// for fewer than 3 points, leaving `area` untouched, and for an area of exactly 0.
MEZALITH_EXPORT std::optional<MzPoint> MzCentroid(const MzLinearRing* ring, double* area);

}  // namespace mezalith
