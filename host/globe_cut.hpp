// SPDX-License-Identifier: MIT
#pragma once

#include "host/antimeridian.hpp"
#include "host/bounding_box.hpp"
#include "host/region_edge.hpp"
#include <mezalith/projection/map_projection.hpp>

#include <memory>
#include <span>
#include <vector>

namespace mezalith::host {

/// Cuts lines and polygons of the globe at the edge of what a projection shows, so that each piece
/// can be projected point by point, and gives them the points at which they bend in its plane.
///
/// Polygons are followed along the globe, over the 180th meridian and around the poles, and closed
/// along the edge where it lies inside of them: no line of the data's own cut is left within the
/// map, and no line runs across it.
class GlobeCut {
  public:
    using Points = std::vector<MzPoint>;

    /// `region` is a band or a cap of what `projection` shows; of a projection that goes on around
    /// the globe a band may reach around it several times. Within `view`, which may be empty and is
    /// in the projection's units like `tolerance`, pieces follow their curves as closely as that.
    GlobeCut(std::shared_ptr<MzMapProjection> projection, const MzProjectionRegion& region,
             const BoundingBox& view, double tolerance);

    /// The pieces of the polyline, in order; of two points at least.
    std::vector<Points> line(std::span<const MzPoint> line) const;

    /// What of the polygons lies within: each a list of closed rings to be filled by the even-odd
    /// rule. Polygons that share the 180th meridian come as one. Points that are not finite are
    /// left out, as are those a hundred turns away. In a band of several turns each lies where it
    /// was, once, and what surrounds a pole is there in all of them.
    std::vector<GlobeRings> polygons(std::vector<GlobeRings> polygons) const;

    /// Whether a line needs no more points between those at these longitudes and latitudes, whose
    /// projections are `plane`.
    bool isFine(std::span<const MzPoint> points, std::span<const MzPoint> plane) const;

  private:
    GlobeRing aroundAllTurns(const GlobeRing& ring) const;
    GlobeRings cutRings(const GlobeRings& rings, const GlobeRings& source) const;
    std::vector<Points> stepsWithin(std::span<const MzPoint> line, bool& isClosed) const;
    Points bent(const Points& points) const;
    void addBends(Points& result, MzPoint p, MzPoint q, MzPoint planeP, MzPoint planeQ,
                  int depth) const;

    std::shared_ptr<MzMapProjection> projection_;
    RegionEdge edge_;
    BoundingBox view_;
    double tolerance_;
};

}  // namespace mezalith::host
