// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::host {

/// The GeoJSON geometry object (RFC 7946) of one geometry in well-known binary, on one line,
/// numbers as the shortest text that reads back. A point of NaNs, which is how an empty one is
/// written, has empty coordinates. Throws a Failure for bytes that `walkWKB` refuses and for other
/// coordinates that JSON has no numbers for.
std::string geoJSONFromWKB(std::span<const std::byte> wkb);

/// Little-endian well-known binary of a GeoJSON geometry, of a feature's geometry, or of the only
/// feature of a collection of features. Third coordinates and all that is not geometry are left
/// out; a point without coordinates becomes one of NaNs. Throws a Failure that says where in the
/// document
/// ("/geometry/coordinates/3") or at which byte something is wrong.
std::vector<std::byte> wkbFromGeoJSON(std::string_view text);

}  // namespace mezalith::host
