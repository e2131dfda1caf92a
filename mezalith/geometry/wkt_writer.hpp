// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/geometry_record.hpp>

#include <string>

namespace mezalith {

/// The geometry as Well-Known Text on one line, "MULTIPOINT ((1 2), (3 4))", numbers as the
/// shortest text that reads back; "EMPTY" for lists without elements and for points of NaNs. Empty
/// for what has no type, in any depth, and for collections nested deeper than 100.
MEZALITH_EXPORT std::string MzWKTOfGeometry(const MzGeometryRecord& geometry);

}  // namespace mezalith
