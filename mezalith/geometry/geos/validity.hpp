// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/geometry.hpp>
#include <mezalith/geometry/geometry_block.hpp>

#include <memory>
#include <optional>
#include <string>

namespace mezalith {

/// What is wrong with a geometry, in words, and where.
struct MzDefect {
    std::string reason;
    MzPoint place;
};

/// The first defect by the rules of simple features, none for a valid geometry: rings are closed,
/// of four points or more, and simple; holes lie in their outlines, outlines and holes apart from
/// each other but for single points; lines have two different points; coordinates are finite. By
/// the GEOS library, but for rings that are not closed, which it does not have. A type that is none
/// is a defect, nowhere (NaN).
MEZALITH_EXPORT std::optional<MzDefect> MzDefectOf(const MzGeometryRecord& geometry);
/// The same; null and the abstract geometry have a defect.
MEZALITH_EXPORT std::optional<MzDefect> MzDefectOf(const MzGeometry* geometry);

/// The geometry without defects: rings closed and parted where they cross, holes and outlines
/// sorted out, what overlaps joined, points that are not finite left out, all points on lines that
/// were there. What has lost its inside or its length by that is left out: no geometry when
/// nothing is left. It has the type of the given one, or the multi-geometry of that where it comes
/// in several parts; members of collections are repaired each for itself.
MEZALITH_EXPORT MzGeometryBlock MzRepaired(const MzGeometryRecord& geometry);
/// The same of a geometry object; `geometry` itself when it is valid, null when nothing is left.
MEZALITH_EXPORT std::shared_ptr<MzGeometry> MzRepaired(const std::shared_ptr<MzGeometry>& geometry);

}  // namespace mezalith
