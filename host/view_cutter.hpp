// SPDX-License-Identifier: MIT
#pragma once

#include "host/bounding_box.hpp"
#include "host/parts.hpp"
#include <mezalith/projection/map_projection.hpp>

#include <memory>
#include <vector>

namespace mezalith::host {

/// The box around all leaves of `geometry`, in the plane of its coordinates.
BoundingBox boundsOf(MzGeometry& geometry);

/// The longitudes and latitudes, in degrees, that `projection` can take to its plane: everything
/// for most, 70 degrees to either side of the meridian for a UTM zone. Farther out the series of
/// the projection folds back and would put a place where another one belongs.
BoundingBox reachOf(const MzMapProjection& projection);

/// The longitudes and latitudes, in degrees, that hold everything that `projection` takes into
/// `rectangle`, projected units: within its reach, and a little more than is needed.
BoundingBox seenThrough(const MzMapProjection& projection, const BoundingBox& rectangle);

/// Prepares geometries for the drawing of one view, so that the projection meets only what it puts
/// in the right place:
///
/// - What lies outside the projection's reach is cut off, in longitude and latitude.
/// - What the globe shows again 360 degrees to the east or west is there again when it can be seen.
class ViewCutter {
  public:
    using Geometries = std::vector<std::shared_ptr<MzGeometry>>;

    /// For what `projection` takes into `rectangle`, projected units. The projection is not kept.
    ViewCutter(const MzMapProjection& projection, const BoundingBox& rectangle);

    /// What of `part` may be seen, in longitude and latitude: often `part.geometry` itself, nothing
    /// when it lies elsewhere.
    Geometries cut(const Part& part) const;

    /// Degrees: nothing outside of it, and of what the globe repeats every 360 degrees, is seen.
    const BoundingBox& seen() const { return seen_; }

  private:
    using Points = std::vector<MzPoint>;

    void cutCopy(Geometries& pieces, const Part& part, double shift) const;
    void cutPoints(Geometries& pieces, const Points& points, const MzGeometry& whole) const;
    void cutLine(Geometries& pieces, const Points& line) const;
    void cutPolygon(Geometries& pieces, const std::vector<Points>& rings) const;

    BoundingBox reach_;  ///< degrees
    BoundingBox seen_;
};

}  // namespace mezalith::host
