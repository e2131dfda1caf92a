// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/geometry.hpp>
#include <mezalith/geometry/records.hpp>

#include <cstdint>

namespace mezalith {

/// Where a point lies, seen from a polygon.
enum class MzPointLocation : std::uint8_t { Outside, OnBorder, Inside };

// Where points lie, decided without rounding: the counterpart of `crossingTest` and of `contains`.
//
// Inside is what an odd number of rings surround, whichever way they run; a polygon's rings need
// not be closed. A point is on the border only when it lies exactly on a side of a ring. Points of
// rings that are not finite are left out; a point to be located that is not finite is outside.
// Source: the even-odd rule by crossings of a ray, each decided by `MzOrientation`.

/// Outside for null.
MEZALITH_EXPORT MzPointLocation MzLocatePoint(const MzPolygon* polygon, MzPoint point);

/// Inside when it is inside of a member; else on the border when on that of one.
MEZALITH_EXPORT MzPointLocation MzLocatePoint(const MzMultiPolygon* polygons, MzPoint point);

/// For polygons and multi-polygons; outside for other geometries, which have no inside, and null.
MEZALITH_EXPORT MzPointLocation MzLocatePoint(const MzGeometry* geometry, MzPoint point);

}  // namespace mezalith
