// SPDX-License-Identifier: MIT
#include "mezalith/geometry/plane_vector.hpp"
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/orientation.hpp>
#include <mezalith/geometry/point_location.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>

#include <algorithm>
#include <span>

namespace mezalith {
namespace {

/// Counts the sides that a ray from the point to the right crosses.
class RayFrom {
  public:
    explicit RayFrom(MzPoint origin) : origin_(origin) {}

    void addRing(std::span<const MzPoint> ring) {
        const auto last = std::find_if(ring.rbegin(), ring.rend(), detail::isFinite);
        if (last == ring.rend()) return;
        MzPoint from = *last;
        for (const MzPoint to : ring) {
            if (!detail::isFinite(to)) continue;
            addSide(from, to);
            from = to;
        }
    }

    MzPointLocation location() const {
        if (isOnBorder_) return MzPointLocation::OnBorder;
        return isInside_ ? MzPointLocation::Inside : MzPointLocation::Outside;
    }

  private:
    void addSide(MzPoint from, MzPoint to) {
        const auto [x, y] = origin_;
        if (from.x < x && to.x < x) return;
        if (from.y == y && to.y == y) {
            isOnBorder_ |= std::min(from.x, to.x) <= x;
            return;
        }
        // A side has its lower end and not its upper one; that one is the next side's.
        if ((from.y > y) == (to.y > y)) {
            isOnBorder_ |= MzEqualPoints(from, origin_) || MzEqualPoints(to, origin_);
            return;
        }
        const int turn = MzOrientation(from, to, origin_);
        isOnBorder_ |= turn == 0;
        isInside_ ^= turn == (from.y < to.y ? 1 : -1);
    }

    MzPoint origin_;
    bool isInside_ = false;
    bool isOnBorder_ = false;
};

}  // namespace

MzPointLocation MzLocatePoint(const MzPolygon* polygon, MzPoint point) {
    if (!detail::isFinite(point)) return MzPointLocation::Outside;
    RayFrom ray(point);
    for (const MzLinearRing& ring : ringsOf(polygon)) ray.addRing(pointsOf(&ring));
    return ray.location();
}

MzPointLocation MzLocatePoint(const MzMultiPolygon* polygons, MzPoint point) {
    MzPointLocation location = MzPointLocation::Outside;
    for (const MzPolygon& polygon : polygonsOf(polygons)) {
        location = std::max(location, MzLocatePoint(&polygon, point));
        if (location == MzPointLocation::Inside) break;
    }
    return location;
}

MzPointLocation MzLocatePoint(const MzGeometry* geometry, MzPoint point) {
    if (const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(geometry)) {
        return MzLocatePoint(polygon->polygonGeometry(), point);
    }
    if (const auto* polygons = dynamic_cast<const MzMultiPolygonGeometry*>(geometry)) {
        return MzLocatePoint(polygons->multiPolygonGeometry(), point);
    }
    return MzPointLocation::Outside;
}

}  // namespace mezalith
