// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>

#include <optional>
#include <span>

namespace mezalith {

// Bounding rectangles (min x, min y, max x - min x, max y - min y) in the units of the coordinates;
// empty when there are no points. NaNs are passed over, except in the first point, where they stay.

MEZALITH_EXPORT std::optional<MzRect> MzBoundsOfPoints(std::span<const MzPoint> points);

/// Around the points of all rings together, as of a polygon's `ringsOf`.
MEZALITH_EXPORT std::optional<MzRect> MzBoundsOfRings(std::span<const MzLinearRing> rings);

}  // namespace mezalith
