// SPDX-License-Identifier: MIT
#pragma once

#include "mezalith/geometry/test_support.hpp"

#include <memory>
#include <utility>
#include <vector>

#include <geos_c.h>

// Polygons as GEOS has them.

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

inline GeosGeometry geosPoint(MzPoint point) {
    return GeosGeometry{GEOSGeom_createPointFromXY_r(geosContext(), point.x, point.y)};
}

/// A polygon of closed rings, the first of which is the outer one.
class GeosPolygon {
  public:
    explicit GeosPolygon(const Rings& rings) {
        std::vector<GEOSGeometry*> holes;
        for (std::size_t i = 1; i < rings.size(); ++i) holes.push_back(ringOf(rings[i]));
        geometry_.reset(GEOSGeom_createPolygon_r(geosContext(), ringOf(rings.front()), holes.data(),
                                                 static_cast<unsigned>(holes.size())));
    }

    const GEOSGeometry* geometry() const { return geometry_.get(); }

    double area() const {
        double area = 0;
        GEOSArea_r(geosContext(), geometry(), &area);
        return area;
    }

    double distanceTo(MzPoint point) const {
        double distance = 0;
        GEOSDistance_r(geosContext(), geometry(), geosPoint(point).get(), &distance);
        return distance;
    }

  private:
    static GEOSGeometry* ringOf(const Points& points) {
        GEOSCoordSequence* const sequence = GEOSCoordSeq_copyFromBuffer_r(
            geosContext(), &points.front().x, static_cast<unsigned>(points.size()), 0, 0);
        return GEOSGeom_createLinearRing_r(geosContext(), sequence);
    }

    GeosGeometry geometry_;
};

/// The same, ready for many questions.
class PreparedGeosPolygon {
  public:
    explicit PreparedGeosPolygon(const Rings& rings)
        : polygon_(rings), prepared_(GEOSPrepare_r(geosContext(), polygon_.geometry())) {}

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

    GeosPolygon polygon_;
    std::unique_ptr<const GEOSPreparedGeometry, Destroy> prepared_;
};

}  // namespace mezalith::test
