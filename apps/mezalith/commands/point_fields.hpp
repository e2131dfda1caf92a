// SPDX-License-Identifier: MIT
#pragma once

#include "apps/mezalith/number_query.hpp"
#include <mezalith/geometry/primitives.hpp>

namespace mezalith::app {

/// The fields of a command between two points.
inline std::vector<NumberField> twoPoints() {
    return {{"LON1", NumberField::Kind::Longitude, "Longitude of the first point, degrees"},
            {"LAT1", NumberField::Kind::Latitude, "Latitude of the first point, degrees"},
            {"LON2", NumberField::Kind::Longitude, "Longitude of the second point, degrees"},
            {"LAT2", NumberField::Kind::Latitude, "Latitude of the second point, degrees"}};
}

/// What the help says of longitudes that are answered.
inline constexpr char kUnwrapped[] = "The longitude is not wrapped into -180 to 180.";

inline Answer longitudeLatitude(MzPoint point) {
    return {{"longitude", point.x}, {"latitude", point.y}};
}

}  // namespace mezalith::app
