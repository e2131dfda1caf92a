// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/primitives.hpp>

#include <cmath>

// Points as vectors. Each result is rounded once per operation, in the order written.

namespace mezalith::detail {

inline MzPoint plus(MzPoint a, MzPoint b) { return {a.x + b.x, a.y + b.y}; }
inline MzPoint minus(MzPoint a, MzPoint b) { return {a.x - b.x, a.y - b.y}; }
inline MzPoint times(MzPoint a, double factor) { return {a.x * factor, a.y * factor}; }
inline MzPoint over(MzPoint a, double divisor) { return {a.x / divisor, a.y / divisor}; }
inline double dot(MzPoint a, MzPoint b) { return a.x * b.x + a.y * b.y; }
inline double cross(MzPoint a, MzPoint b) { return a.x * b.y - a.y * b.x; }
inline double lengthOf(MzPoint a) { return std::sqrt(a.x * a.x + a.y * a.y); }
inline double distanceBetween(MzPoint a, MzPoint b) { return lengthOf(minus(b, a)); }
/// Not a number in both coordinates for the zero vector.
inline MzPoint normalised(MzPoint a) { return over(a, lengthOf(a)); }
/// A quarter turn to the left.
inline MzPoint leftNormal(MzPoint a) { return {-a.y, a.x}; }
inline bool isFinite(MzPoint a) { return std::isfinite(a.x) && std::isfinite(a.y); }

/// start + direction·s + quadratic·s².
inline MzPoint curvePoint(MzPoint start, MzPoint direction, MzPoint quadratic, double s) {
    return {start.x + direction.x * s + quadratic.x * s * s,
            start.y + direction.y * s + quadratic.y * s * s};
}

}  // namespace mezalith::detail
