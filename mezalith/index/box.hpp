// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/primitives.hpp>

namespace mezalith {

/// The points with minX <= x <= maxX and minY <= y <= maxY, borders included: a single point and a
/// flat box hold something. A box is empty when a minimum is above its maximum or a side is NaN;
/// infinite sides are sides like others.
struct MzBox {
    double minX;
    double minY;
    double maxX;
    double maxY;

    static MzBox of(MzPoint p) { return {p.x, p.y, p.x, p.y}; }
    /// Empty for a size that is negative or NaN.
    static MzBox of(MzRect r) {
        return {r.origin.x, r.origin.y, r.origin.x + r.size.width, r.origin.y + r.size.height};
    }

    bool isEmpty() const { return !(minX <= maxX && minY <= maxY); }
    /// Whether both have a point in common. Neither may be empty.
    bool meets(const MzBox& other) const {
        return minX <= other.maxX && other.minX <= maxX && minY <= other.maxY && other.minY <= maxY;
    }
    /// Whether every point of `other` lies within. Neither may be empty.
    bool holds(const MzBox& other) const {
        return minX <= other.minX && other.maxX <= maxX && minY <= other.minY && other.maxY <= maxY;
    }

    friend bool operator==(const MzBox&, const MzBox&) = default;
};

static_assert(sizeof(MzBox) == 32);

}  // namespace mezalith
