// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/geometry.hpp>
#include <mezalith/geometry/geometry_record.hpp>
#include <mezalith/geometry/geos/simple_features.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

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

/// The geometry as a record, which shares its arrays; none for null and the abstract one.
std::optional<MzGeometryRecord> recordOf(const MzGeometry* geometry);

/// Null, with a reason, for what the library has no form for.
GeosGeometry toGeos(const MzGeometryRecord& geometry, std::string* error);
GeosGeometry toGeos(const MzGeometry* geometry, std::string* error);

/// The simple members of a geometry by their dimension, those without points left out.
struct GeosMembers {
    explicit GeosMembers(const GEOSGeometry* geometry) { add(geometry); }

    std::vector<MzPoint> points;
    std::vector<const GEOSGeometry*> lines;
    std::vector<const GEOSGeometry*> polygons;

  private:
    void add(const GEOSGeometry* geometry);
};

/// Of a point, a line or a ring.
std::vector<MzPoint> pointsOfGeos(const GEOSGeometry* line);
/// The rings of a polygon, the outer one first.
std::vector<const GEOSGeometry*> ringsOfGeos(const GEOSGeometry* polygon);

/// The pieces of a geometry, one inside the other, that is not null.
MzGeometries fromGeos(const GEOSGeometry* geometry);

}  // namespace mezalith::detail
