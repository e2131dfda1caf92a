// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/geos/simple_features.hpp>

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
/// the GEOS library, but for rings that are not closed, which it does not have. A null or abstract
/// geometry has a defect, nowhere (NaN).
MEZALITH_EXPORT std::optional<MzDefect> MzDefectOf(const MzGeometry* geometry);

/// The geometry without defects: rings closed and parted where they cross, holes and outlines
/// sorted out, what overlaps joined, points that are not finite left out, all points on lines that
/// were there. What a polygon has lost its inside by, and a line its length, is left out: null
/// when nothing is left. A valid geometry comes back as it is, `geometry` itself.
MEZALITH_EXPORT std::shared_ptr<MzGeometry> MzRepaired(const std::shared_ptr<MzGeometry>& geometry);

}  // namespace mezalith
