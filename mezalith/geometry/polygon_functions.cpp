// SPDX-License-Identifier: MIT
#include <mezalith/geometry/polygon_functions.hpp>

#include <cstdint>
#include <span>

namespace mezalith {
namespace {

/// Whether the horizontal ray from (x, y) towards greater x counts the edge from `p` to `c`, whose
/// ends lie on both sides of the horizontal.
bool rayCounts(MzPoint p, MzPoint c, double x, double y) {
    if ((p.x >= x) == (c.x >= x)) return c.x >= x;
    return c.x - (p.x - c.x) * (c.x - y) / (p.y - c.y) >= x;
}

std::int64_t windingNumber(std::span<const MzPoint> ring, double x, double y) {
    if (ring.empty()) return 0;
    std::int64_t winding = 0;
    MzPoint p = ring.back();
    for (const MzPoint c : ring) {
        const bool above = p.y >= y;
        if (above != (c.y >= y) && rayCounts(p, c, x, y)) winding += above ? -1 : 1;
        p = c;
    }
    return winding;
}

}  // namespace

bool crossingTest(const MzPolygon* polygon, double x, double y) {
    std::int64_t winding = 0;
    for (const MzLinearRing& ring : ringsOf(polygon))
        winding += windingNumber(pointsOf(&ring), x, y);
    return winding != 0;
}

std::optional<MzPoint> MzCentroid(const MzLinearRing* ring, double* area) {
    const std::span<const MzPoint> points = pointsOf(ring);
    if (points.size() < 3) return std::nullopt;
    double twiceArea = 0;
    MzPoint sum{0, 0};
    MzPoint p = points.back();
    for (const MzPoint c : points) {
        const double cross = p.x * c.y - c.x * p.y;
        twiceArea += cross;
        sum.x += cross * (c.x + p.x);
        sum.y += cross * (c.y + p.y);
        p = c;
    }
    if (area != nullptr) *area = 0.5 * twiceArea;
    if (twiceArea == 0) return std::nullopt;
    return MzPoint{sum.x / (3 * twiceArea), sum.y / (3 * twiceArea)};
}

}  // namespace mezalith
