// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/projection/projection_region.hpp>

#include <functional>
#include <span>
#include <vector>

namespace mezalith::detail {

/// Takes longitudes and latitudes to a projection's plane, in place; points without an image become
/// NaN.
using ProjectPoints = std::function<void(std::span<MzPoint>)>;

/// Where an interrupted projection takes the two sides of a meridian apart, found by looking at it:
/// leaps near either pole are followed to the meridian and to the latitude where they begin. Finds
/// gaps that are wider near the pole than a hundredth of the whole map, and none that a pole does
/// not have.
MEZALITH_EXPORT std::vector<MzProjectionRegion::Gap> gapsOf(const ProjectPoints& project,
                                                            const MzProjectionRegion& band);

}  // namespace mezalith::detail
