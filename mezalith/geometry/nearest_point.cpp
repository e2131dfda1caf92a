// SPDX-License-Identifier: MIT
#include "mezalith/geometry/plane_vector.hpp"
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/nearest_point.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/point_location.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

namespace mezalith {
namespace {

using Nearest = std::optional<MzNearestPoint>;

/// Keeps the nearest of the points that it is shown.
class Search {
  public:
    explicit Search(MzPoint to) : to_(to) {}

    void addPoint(MzPoint point) {
        const MzPoint way = detail::minus(point, to_);
        const double square = detail::dot(way, way);
        if (!(square < square_)) return;
        square_ = square;
        nearest_ = point;
    }

    void addLine(std::span<const MzPoint> points) {
        if (!points.empty()) addPoint(points.front());
        for (std::size_t i = 1; i < points.size(); ++i) addSide(points[i - 1], points[i]);
    }

    /// The outline of a ring, closed if it is not.
    void addRing(std::span<const MzPoint> points) {
        addLine(points);
        if (points.size() > 2) addSide(points.back(), points.front());
    }

    void addPolygon(const MzPolygon* polygon) {
        for (const MzLinearRing& ring : ringsOf(polygon)) addRing(pointsOf(&ring));
    }

    Nearest result() const {
        if (square_ == std::numeric_limits<double>::infinity()) return std::nullopt;
        return MzNearestPoint{nearest_, std::hypot(nearest_.x - to_.x, nearest_.y - to_.y)};
    }

  private:
    void addSide(MzPoint from, MzPoint to) {
        const MzPoint side = detail::minus(to, from);
        const double along = detail::dot(detail::minus(to_, from), side);
        const double square = detail::dot(side, side);
        if (along > 0 && along < square) {
            addPoint(detail::plus(from, detail::times(side, along / square)));
        }
        addPoint(to);
    }

    MzPoint to_;
    MzPoint nearest_{};
    double square_ = std::numeric_limits<double>::infinity();
};

template <typename Polygons>
Nearest nearestOfInside(const Polygons* polygons, MzPoint to, const Search& border) {
    if (MzLocatePoint(polygons, to) == MzPointLocation::Inside) return MzNearestPoint{to, 0};
    return border.result();
}

}  // namespace

Nearest MzNearestPointOf(const MzMultiPoint* points, MzPoint to) {
    Search search(to);
    for (const MzPoint point : pointsOf(points)) search.addPoint(point);
    return search.result();
}

Nearest MzNearestPointOf(const MzLineString* line, MzPoint to) {
    Search search(to);
    search.addLine(pointsOf(line));
    return search.result();
}

Nearest MzNearestPointOf(const MzMultiLineString* lines, MzPoint to) {
    Search search(to);
    for (const MzLineString& line : lineStringsOf(lines)) search.addLine(pointsOf(&line));
    return search.result();
}

Nearest MzNearestPointOf(const MzPolygon* polygon, MzPoint to) {
    Search search(to);
    search.addPolygon(polygon);
    return nearestOfInside(polygon, to, search);
}

Nearest MzNearestPointOf(const MzMultiPolygon* polygons, MzPoint to) {
    Search search(to);
    for (const MzPolygon& polygon : polygonsOf(polygons)) search.addPolygon(&polygon);
    return nearestOfInside(polygons, to, search);
}

Nearest MzNearestPointOf(const MzGeometry* geometry, MzPoint to) {
    if (const auto* point = dynamic_cast<const MzPointGeometry*>(geometry)) {
        Search search(to);
        if (point->pointGeometry() != nullptr) search.addPoint(*point->pointGeometry());
        return search.result();
    }
    if (const auto* points = dynamic_cast<const MzMultiPointGeometry*>(geometry)) {
        return MzNearestPointOf(points->multiPointGeometry(), to);
    }
    if (const auto* line = dynamic_cast<const MzLineStringGeometry*>(geometry)) {
        return MzNearestPointOf(line->lineStringGeometry(), to);
    }
    if (const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(geometry)) {
        return MzNearestPointOf(polygon->polygonGeometry(), to);
    }
    if (const auto* polygons = dynamic_cast<const MzMultiPolygonGeometry*>(geometry)) {
        return MzNearestPointOf(polygons->multiPolygonGeometry(), to);
    }
    return std::nullopt;
}

}  // namespace mezalith
