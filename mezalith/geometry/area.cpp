// SPDX-License-Identifier: MIT
#include <mezalith/geometry/area.hpp>
#include <mezalith/geometry/orientation.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>
#include <tuple>

namespace mezalith {
namespace {

/// A sum that carries along what rounding would lose. Source: Neumaier (1974),
/// Rundungsfehleranalyse einiger Verfahren zur Summation endlicher Summen, ZAMM 54.
class CarefulSum {
  public:
    void add(double value) {
        const double next = sum_ + value;
        const bool isSmaller = std::abs(value) < std::abs(sum_);
        rest_ += isSmaller ? (sum_ - next) + value : (value - next) + sum_;
        sum_ = next;
    }
    double value() const { return sum_ + rest_; }

  private:
    double sum_ = 0;
    double rest_ = 0;
};

bool isLower(MzPoint a, MzPoint b) { return std::tie(a.y, a.x) < std::tie(b.y, b.x); }

/// The nearest point on the way from `start`, in steps of `step` round the ring, that is not the
/// same point.
MzPoint neighbour(std::span<const MzPoint> ring, std::size_t start, std::size_t step) {
    std::size_t i = start;
    do {
        i = (i + step) % ring.size();
    } while (i != start && MzEqualPoints(ring[i], ring[start]));
    return ring[i];
}

}  // namespace

int MzRingOrientation(const MzLinearRing* ring) {
    const std::span<const MzPoint> points = pointsOf(ring);
    if (points.size() < 3) return 0;
    const auto lowest = std::ranges::min_element(points, isLower);
    const auto index = static_cast<std::size_t>(lowest - points.begin());
    const int turn = MzOrientation(neighbour(points, index, points.size() - 1), *lowest,
                                   neighbour(points, index, 1));
    if (turn != 0) return turn;
    const double area = MzSignedArea(ring);
    return (area > 0 ? 1 : 0) - (area < 0 ? 1 : 0);
}

double MzSignedArea(const MzLinearRing* ring) {
    const std::span<const MzPoint> points = pointsOf(ring);
    if (points.size() < 3) return 0;
    const MzPoint origin = points.front();
    MzPoint from{0, 0};
    CarefulSum twiceArea;
    for (const MzPoint point : points.subspan(1)) {
        const MzPoint to{point.x - origin.x, point.y - origin.y};
        twiceArea.add(from.x * to.y);
        twiceArea.add(-(from.y * to.x));
        from = to;
    }
    return twiceArea.value() / 2;
}

double MzArea(const MzPolygon* polygon) {
    const std::span<const MzLinearRing> rings = ringsOf(polygon);
    double area = 0;
    for (std::size_t i = 0; i < rings.size(); ++i) {
        const double ringArea = std::abs(MzSignedArea(&rings[i]));
        area += i == 0 ? ringArea : -ringArea;
    }
    return area;
}

double MzArea(const MzMultiPolygon* polygons) {
    double area = 0;
    for (const MzPolygon& polygon : polygonsOf(polygons)) area += MzArea(&polygon);
    return area;
}

}  // namespace mezalith
