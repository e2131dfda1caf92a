// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/geometry.hpp>
#include <mezalith/geometry/records.hpp>

#include <optional>

namespace mezalith {

/// A point of a geometry, and how far it is from the point that was asked about, in the units of
/// the coordinates.
struct MzNearestPoint {
    MzPoint point;
    double distance;
};

// The point of a geometry that is nearest to another; of several, that of the first part. Empty for
// null, for what has no points and for a point that is not finite. Parts of a geometry with points
// that are not finite are left out. Distances are planar and within 4e-16 of the largest coordinate
// of the exact ones, and 4e-16 of themselves.

MEZALITH_EXPORT std::optional<MzNearestPoint> MzNearestPointOf(const MzMultiPoint* points,
                                                               MzPoint to);
MEZALITH_EXPORT std::optional<MzNearestPoint> MzNearestPointOf(const MzLineString* line,
                                                               MzPoint to);
MEZALITH_EXPORT std::optional<MzNearestPoint> MzNearestPointOf(const MzMultiLineString* lines,
                                                               MzPoint to);
/// The point itself, at a distance of 0, when it lies inside.
MEZALITH_EXPORT std::optional<MzNearestPoint> MzNearestPointOf(const MzPolygon* polygon,
                                                               MzPoint to);
/// The point itself, at a distance of 0, when it lies inside of a member.
MEZALITH_EXPORT std::optional<MzNearestPoint> MzNearestPointOf(const MzMultiPolygon* polygons,
                                                               MzPoint to);
/// Of any geometry object; empty for the abstract one.
MEZALITH_EXPORT std::optional<MzNearestPoint> MzNearestPointOf(const MzGeometry* geometry,
                                                               MzPoint to);

}  // namespace mezalith
