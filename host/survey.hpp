// SPDX-License-Identifier: MIT
#pragma once

#include "host/bounding_box.hpp"
#include <mezalith/geometry/geometry_record.hpp>

#include <cstddef>

namespace mezalith::host {

/// What a geometry holds, counted.
struct Survey {
    std::size_t parts = 0;  ///< points, line strings and polygons
    std::size_t rings = 0;
    std::size_t vertices = 0;  ///< closing points of rings included, empty points (NaN twice) not
    BoundingBox bounds;        ///< of the finite vertices
};

Survey surveyOf(const MzGeometryRecord& geometry);

}  // namespace mezalith::host
