// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include <ogrsf_frmts.h>

namespace mezalith::host {

/// The GeoJSON feature of a record on one line. The library of map data would round its numbers to
/// ones that look better; here they keep every bit. Throws a Failure with the record's number for a
/// geometry that GeoJSON does not have, by its type or its coordinates.
std::string geoJSONOf(const OGRFeature& record);

}  // namespace mezalith::host
