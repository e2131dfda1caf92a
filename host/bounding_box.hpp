// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/primitives.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <vector>

namespace mezalith::host {

/// The smallest box around what was added to it, sides included; in whatever plane the points are.
/// Unlike a rectangle it can be empty, and the box of a single point is not.
struct BoundingBox {
    double minX = std::numeric_limits<double>::infinity();
    double minY = std::numeric_limits<double>::infinity();
    double maxX = -std::numeric_limits<double>::infinity();
    double maxY = -std::numeric_limits<double>::infinity();

    bool isEmpty() const { return !(minX <= maxX && minY <= maxY); }
    double width() const { return isEmpty() ? 0 : maxX - minX; }
    double height() const { return isEmpty() ? 0 : maxY - minY; }
    MzPoint centre() const { return {minX + (maxX - minX) / 2, minY + (maxY - minY) / 2}; }
    MzRect rect() const {
        return isEmpty() ? MzZeroRect : MzRect{{minX, minY}, {width(), height()}};
    }

    /// Points that are not finite are left out.
    void add(MzPoint point) {
        if (!std::isfinite(point.x) || !std::isfinite(point.y)) return;
        minX = std::min(minX, point.x);
        minY = std::min(minY, point.y);
        maxX = std::max(maxX, point.x);
        maxY = std::max(maxY, point.y);
    }

    void add(std::span<const MzPoint> points) {
        for (const MzPoint& point : points) add(point);
    }

    void add(const BoundingBox& other) {
        if (other.isEmpty()) return;
        add(MzPoint{other.minX, other.minY});
        add(MzPoint{other.maxX, other.maxY});
    }

    /// Whether the boxes share at least a point.
    bool meets(const BoundingBox& other) const {
        return minX <= other.maxX && other.minX <= maxX && minY <= other.maxY && other.minY <= maxY;
    }

    /// Whether no point of `other` lies outside; every box holds the empty one.
    bool holds(const BoundingBox& other) const {
        return other.isEmpty() || (minX <= other.minX && other.maxX <= maxX && minY <= other.minY &&
                                   other.maxY <= maxY);
    }

    BoundingBox movedBy(double dx, double dy) const {
        return {minX + dx, minY + dy, maxX + dx, maxY + dy};
    }

    static BoundingBox of(MzRect rect) {
        return {rect.origin.x, rect.origin.y, rect.origin.x + rect.size.width,
                rect.origin.y + rect.size.height};
    }

    friend bool operator==(const BoundingBox&, const BoundingBox&) = default;
};

/// Points along the sides of a box that is not empty, each side in `steps` steps.
inline std::vector<MzPoint> outlineOf(const BoundingBox& box, int steps) {
    std::vector<MzPoint> points;
    for (int i = 0; i <= steps; ++i) {
        const double t = static_cast<double>(i) / steps;
        const double x = box.minX + box.width() * t;
        const double y = box.minY + box.height() * t;
        points.insert(points.end(), {{x, box.minY}, {x, box.maxY}, {box.minX, y}, {box.maxX, y}});
    }
    return points;
}

/// Points all over a box that is not empty, its sides in `steps` steps.
inline std::vector<MzPoint> gridOf(const BoundingBox& box, int steps) {
    std::vector<MzPoint> points;
    for (int i = 0; i <= steps; ++i) {
        for (int j = 0; j <= steps; ++j) {
            points.push_back(
                {box.minX + box.width() * i / steps, box.minY + box.height() * j / steps});
        }
    }
    return points;
}

}  // namespace mezalith::host
