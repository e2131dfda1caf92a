// SPDX-License-Identifier: MIT
#pragma once

#include "host/data_source.hpp"
#include "host/map_view.hpp"

#include <span>
#include <utility>

namespace mezalith::host {

/// The name of the layer that great circles make.
inline constexpr char kGeodesicLayer[] = "geodesic";

/// The ends of a great circle: longitude and latitude, degrees.
using Ends = std::pair<MzPoint, MzPoint>;

/// Great circles as features to be drawn in `view`, their points as close as its scale asks for:
/// the record's id is 1 for the first. Longitudes run on over the 180th meridian; the view shows
/// them wherever they repeat.
Layer geodesicLayer(std::span<const Ends> lines, const MapView& view);

}  // namespace mezalith::host
