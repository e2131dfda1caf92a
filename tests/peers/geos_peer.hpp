// SPDX-License-Identifier: MIT
#pragma once

#include "mezalith/geometry/test_support.hpp"
#include <mezalith/geometry/point_location.hpp>

#include <cstddef>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include <geos_c.h>

// Geometries as GEOS has them.

namespace mezalith::test {

/// The calling thread's, made once.
inline GEOSContextHandle_t geosContext() {
    struct Finish {
        void operator()(GEOSContextHandle_t context) const { GEOS_finish_r(context); }
    };
    thread_local const std::unique_ptr<GEOSContextHandle_HS, Finish> context{GEOS_init_r()};
    return context.get();
}

struct DestroyGeosGeometry {
    void operator()(GEOSGeometry* geometry) const { GEOSGeom_destroy_r(geosContext(), geometry); }
};
using GeosGeometry = std::unique_ptr<GEOSGeometry, DestroyGeosGeometry>;

/// Passed on to the geometry that is made of it.
inline GEOSCoordSequence* geosSequence(std::span<const MzPoint> points) {
    return GEOSCoordSeq_copyFromBuffer_r(geosContext(), &points.front().x,
                                         static_cast<unsigned>(points.size()), 0, 0);
}

inline GeosGeometry geosPoint(const MzPoint& point) {
    return GeosGeometry{GEOSGeom_createPointFromXY_r(geosContext(), point.x, point.y)};
}

inline GeosGeometry geosLine(const Points& points) {
    return GeosGeometry{GEOSGeom_createLineString_r(geosContext(), geosSequence(points))};
}

/// A polygon of closed rings, the first of which is the outer one.
inline GeosGeometry geosPolygon(const Rings& rings) {
    std::vector<GEOSGeometry*> made;
    for (const Points& ring : rings) {
        made.push_back(GEOSGeom_createLinearRing_r(geosContext(), geosSequence(ring)));
    }
    return GeosGeometry{GEOSGeom_createPolygon_r(geosContext(), made.front(), made.data() + 1,
                                                 static_cast<unsigned>(made.size() - 1))};
}

/// One geometry of several, each made by `make`.
template <typename Part>
GeosGeometry geosMulti(GEOSGeomTypes type, const std::vector<Part>& parts,
                       GeosGeometry (*make)(const Part&)) {
    std::vector<GEOSGeometry*> made;
    for (const Part& part : parts) made.push_back(make(part).release());
    return GeosGeometry{GEOSGeom_createCollection_r(geosContext(), type, made.data(),
                                                    static_cast<unsigned>(made.size()))};
}

inline GeosGeometry geosMultiPolygon(const std::vector<Rings>& polygons) {
    return geosMulti(GEOS_MULTIPOLYGON, polygons, geosPolygon);
}

inline bool isValidToGeos(const GeosGeometry& geometry) {
    return GEOSisValid_r(geosContext(), geometry.get()) == 1;
}

inline double areaByGeos(const GeosGeometry& geometry) {
    double area = 0;
    GEOSArea_r(geosContext(), geometry.get(), &area);
    return area;
}

inline double distanceByGeos(const GeosGeometry& geometry, MzPoint to) {
    double distance = 0;
    GEOSDistance_r(geosContext(), geometry.get(), geosPoint(to).get(), &distance);
    return distance;
}

/// Whether a closed ring runs counter-clockwise.
inline bool isCounterclockwiseToGeos(std::span<const MzPoint> ring) {
    struct Destroy {
        void operator()(GEOSCoordSequence* sequence) const {
            GEOSCoordSeq_destroy_r(geosContext(), sequence);
        }
    };
    const std::unique_ptr<GEOSCoordSequence, Destroy> sequence{geosSequence(ring)};
    char answer = 2;
    GEOSCoordSeq_isCCW_r(geosContext(), sequence.get(), &answer);
    return answer == 1;
}

/// A polygon or multi-polygon, ready for many questions.
class PreparedGeosArea {
  public:
    explicit PreparedGeosArea(GeosGeometry area)
        : area_(std::move(area)), prepared_(GEOSPrepare_r(geosContext(), area_.get())) {}

    /// Whether the point is inside, the border not being so.
    bool contains(MzPoint point) const {
        return GEOSPreparedContains_r(geosContext(), prepared_.get(), geosPoint(point).get()) == 1;
    }
    /// Whether the point is inside or on the border.
    bool intersects(MzPoint point) const {
        return GEOSPreparedIntersects_r(geosContext(), prepared_.get(), geosPoint(point).get()) ==
               1;
    }

  private:
    struct Destroy {
        void operator()(const GEOSPreparedGeometry* prepared) const {
            GEOSPreparedGeom_destroy_r(geosContext(), prepared);
        }
    };

    GeosGeometry area_;
    std::unique_ptr<const GEOSPreparedGeometry, Destroy> prepared_;
};

inline MzPointLocation locationByGeos(const PreparedGeosArea& area, MzPoint point) {
    if (area.contains(point)) return MzPointLocation::Inside;
    return area.intersects(point) ? MzPointLocation::OnBorder : MzPointLocation::Outside;
}

}  // namespace mezalith::test
