// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/geometry.hpp>
#include <mezalith/geometry/geometry_record.hpp>

#include <memory>
#include <vector>

namespace mezalith::host {

/// How a geometry wants to be drawn. A multi-point geometry serves as points and as a polyline, and
/// its type alone does not tell which is meant.
enum class Form { Points, Line, Area };

/// A geometry that symbolizers can draw.
struct Part {
    Form form;
    std::shared_ptr<MzGeometry> geometry;
};

/// What a geometry looks like to the symbolizers, in order: the members of multi-line-strings and
/// of collections singly, however deep, all else whole; lines as multi-point geometries. What has
/// no points is left out.
std::vector<Part> partsOf(const MzGeometryRecord& geometry);

}  // namespace mezalith::host
