// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/geometry_block.hpp>

#include <string>
#include <string_view>

namespace mezalith::host {

/// The GeoJSON geometry object (RFC 7946) of a geometry, on one line, numbers as the shortest text
/// that reads back. A point of NaNs, which is how an empty one is held, has empty coordinates.
/// Throws a Failure for other coordinates that JSON has no numbers for.
std::string geoJSONOf(const MzGeometryRecord& geometry);

/// A GeoJSON geometry, a feature's geometry, or that of the only feature of a collection of
/// features. Third coordinates and all that is not geometry are left out; a point without
/// coordinates becomes one of NaNs; collections may be nested 100 deep. Throws a Failure that says
/// where in the document ("/geometry/coordinates/3") or at which byte something is wrong.
MzGeometryBlock geometryOfGeoJSON(std::string_view text);

}  // namespace mezalith::host
