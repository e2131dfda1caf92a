// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>

#include <cmath>

namespace mezalith {

namespace detail {
/// The same for points whose turn is lost in rounding, term by term without any.
MEZALITH_EXPORT int exactOrientation(MzPoint a, MzPoint b, MzPoint c);
}  // namespace detail

/// How the way from `a` over `b` to `c` turns: 1 to the left, -1 to the right, 0 not at all. Exact
/// for all finite points whose coordinates, other than 0, are within a factor of 2^900 of each
/// other; 0 unless all are finite. Source: Shewchuk (1997), Adaptive Precision Floating-Point
/// Arithmetic and Fast Robust Geometric Predicates, Discrete & Computational Geometry 18.
inline int MzOrientation(MzPoint a, MzPoint b, MzPoint c) {
    constexpr double kRounding = 0x1p-53;
    constexpr double kBound = (3 + 16 * kRounding) * kRounding;
    constexpr double kUnderflow = 1e-300;
    const double left = (a.x - c.x) * (b.y - c.y);
    const double right = (a.y - c.y) * (b.x - c.x);
    const double twiceArea = left - right;
    const double error = kBound * (std::abs(left) + std::abs(right)) + kUnderflow;
    if (twiceArea > error) return 1;
    if (-twiceArea > error) return -1;
    return detail::exactOrientation(a, b, c);
}

}  // namespace mezalith
