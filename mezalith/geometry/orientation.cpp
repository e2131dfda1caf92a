// SPDX-License-Identifier: MIT
#include <mezalith/geometry/orientation.hpp>

#include <algorithm>
#include <array>
#include <cstddef>

namespace mezalith::detail {
namespace {

/// A sum of doubles without rounding: parts that do not overlap, of growing size.
class ExactSum {
  public:
    void addProduct(double a, double b) {
        const double product = a * b;
        add(std::fma(a, b, -product));
        add(product);
    }

    int sign() const {
        for (std::size_t i = count_; i-- > 0;) {
            if (parts_[i] != 0) return parts_[i] > 0 ? 1 : -1;
        }
        return 0;
    }

  private:
    void add(double value) {
        for (std::size_t i = 0; i < count_; ++i) {
            const double sum = value + parts_[i];
            const double share = sum - value;
            parts_[i] = (value - (sum - share)) + (parts_[i] - share);
            value = sum;
        }
        parts_[count_++] = value;
    }

    std::array<double, 12> parts_{};
    std::size_t count_ = 0;
};

/// The power of two that brings the largest of the coordinates to where no product overflows and
/// few lose digits. `largest` is above 0 and finite.
int exponentFor(double largest) { return 500 - std::ilogb(largest); }

MzPoint scaled(MzPoint point, int exponent) {
    return {std::ldexp(point.x, exponent), std::ldexp(point.y, exponent)};
}

}  // namespace

int exactOrientation(MzPoint a, MzPoint b, MzPoint c) {
    const std::array<double, 6> coordinates{a.x, a.y, b.x, b.y, c.x, c.y};
    double largest = 0;
    for (const double coordinate : coordinates) {
        if (!std::isfinite(coordinate)) return 0;
        largest = std::max(largest, std::abs(coordinate));
    }
    if (largest == 0) return 0;
    const int exponent = exponentFor(largest);
    const std::array<MzPoint, 3> corners{scaled(a, exponent), scaled(b, exponent),
                                         scaled(c, exponent)};
    ExactSum twiceArea;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const MzPoint from = corners[i];
        const MzPoint to = corners[(i + 1) % corners.size()];
        twiceArea.addProduct(from.x, to.y);
        twiceArea.addProduct(-from.y, to.x);
    }
    return twiceArea.sign();
}

}  // namespace mezalith::detail
