// SPDX-License-Identifier: MIT
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace mezalith::detail {

/// The decimal logarithm of a magnitude, truncated toward zero; the most negative integer where it
/// is not finite, that is for 0, infinity and NaN.
inline std::int64_t truncatedLogarithm(double magnitude) {
    const double logarithm = std::log10(magnitude);
    if (!std::isfinite(logarithm)) return std::numeric_limits<std::int64_t>::min();
    return static_cast<std::int64_t>(logarithm);
}

}  // namespace mezalith::detail
