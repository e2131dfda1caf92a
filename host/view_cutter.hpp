// SPDX-License-Identifier: MIT
#pragma once

#include "host/bounding_box.hpp"
#include "host/globe_cut.hpp"
#include "host/parts.hpp"
#include <mezalith/projection/map_projection.hpp>

#include <memory>
#include <vector>

namespace mezalith::host {

/// The box around all leaves of `geometry`, in the plane of its coordinates.
BoundingBox boundsOf(MzGeometry& geometry);

/// The longitudes and latitudes, in degrees, that hold everything that `projection` takes into
/// `rectangle`, projected units: within its region, and a little more than is needed.
BoundingBox seenThrough(const MzMapProjection& projection, const BoundingBox& rectangle);

/// Prepares geometries for the drawing of one view, so that the projection meets only what it puts
/// in the right place:
///
/// - What lies outside the projection's region is cut off, and lines get the points at which they
///   bend in its plane.
/// - What was cut at the 180th meridian is whole where the view shows both sides of it.
/// - What the globe shows again 360 degrees to the east or west is there again when it can be seen.
class ViewCutter {
  public:
    using Geometries = std::vector<std::shared_ptr<MzGeometry>>;

    /// For what `projection`, which is not null, takes into `rectangle`; pieces follow their curves
    /// as closely as `tolerance`. Both in projected units.
    ViewCutter(std::shared_ptr<MzMapProjection> projection, const BoundingBox& rectangle,
               double tolerance);

    /// What of `part` may be seen, in longitude and latitude: often `part.geometry` itself, nothing
    /// when it lies elsewhere.
    Geometries cut(const Part& part) const;

    /// Degrees: nothing outside of it, and of what the globe repeats every 360 degrees, is seen.
    const BoundingBox& seen() const { return seen_; }

    /// The outline of what the projection shows of the globe, in projected units: closed rings, for
    /// the even-odd rule. None where the view shows no edge of it.
    GlobeRings outline() const;

  private:
    using Points = std::vector<MzPoint>;

    std::vector<Part> cutGlobe(const Part& part) const;
    std::vector<Part> cutPoints(const Part& part) const;
    bool fits(const BoundingBox& box, bool isArea) const;
    bool needsNoCut(const Part& part) const;
    bool isCutAsData() const;

    std::shared_ptr<MzMapProjection> projection_;
    MzProjectionRegion region_;
    BoundingBox seen_;
    MzProjectionRegion shown_;  ///< of the region, around what is seen
    GlobeCut globe_;
};

}  // namespace mezalith::host
