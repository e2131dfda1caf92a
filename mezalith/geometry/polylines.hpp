// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>

#include <memory>
#include <vector>

namespace mezalith {

/// The line as an object that line symbolizers draw: a multi-point geometry, whose points can be
/// clipped and stroked as one polyline.
MEZALITH_EXPORT std::shared_ptr<MzMultiPointGeometry> MzPolylineOfLineString(
    const MzLineString& line);

/// One such object a line, those without points included; in order.
MEZALITH_EXPORT std::vector<std::shared_ptr<MzMultiPointGeometry>> MzPolylinesOfMultiLineString(
    const MzMultiLineString& lines);

}  // namespace mezalith
