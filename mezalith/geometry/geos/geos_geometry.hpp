// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/geometry.hpp>
#include <mezalith/geometry/geos/simple_features.hpp>

#include <memory>
#include <string>

#include <geos_c.h>

// Geometries on their way to the GEOS library and back.

namespace mezalith::detail {

struct DestroyGeosGeometry {
    void operator()(GEOSGeometry* geometry) const;
};
using GeosGeometry = std::unique_ptr<GEOSGeometry, DestroyGeosGeometry>;

/// The calling thread's context. What the library reports is kept for `takeGeosError`.
GEOSContextHandle_t geosContext();
/// The last thing that the library reported on this thread.
std::string takeGeosError();

/// Null, with a reason, for what the library has no form for.
GeosGeometry toGeos(const MzGeometry* geometry, std::string* error);
/// The pieces of a geometry, one inside the other, that is not null.
MzGeometries fromGeos(const GEOSGeometry* geometry);

}  // namespace mezalith::detail
