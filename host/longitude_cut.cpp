// SPDX-License-Identifier: MIT
#include "host/longitude_cut.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace mezalith::host {
namespace {

using Points = std::vector<MzPoint>;

constexpr double kPole = 90;

bool equal(MzPoint a, MzPoint b) { return a.x == b.x && a.y == b.y; }

/// Where the segment from `p` to `q`, which lie on different sides of it, meets the line x = limit.
MzPoint crossing(MzPoint p, MzPoint q, double limit) {
    return {limit, p.y + (q.y - p.y) * ((limit - p.x) / (q.x - p.x))};
}

/// The points on one side of x = limit: the greater side for `sign` 1, the lesser for -1.
class HalfPlane {
  public:
    HalfPlane(double limit, double sign) : limit_(limit), sign_(sign) {}

    bool holds(MzPoint point) const { return (point.x - limit_) * sign_ >= 0; }
    double limit() const { return limit_; }

  private:
    double limit_;
    double sign_;
};

Points openRingWithin(const Points& ring, const HalfPlane& half) {
    Points kept;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const MzPoint p = ring[i == 0 ? ring.size() - 1 : i - 1];
        const MzPoint q = ring[i];
        if (half.holds(p) != half.holds(q)) kept.push_back(crossing(p, q, half.limit()));
        if (half.holds(q)) kept.push_back(q);
    }
    return kept;
}

std::vector<Points> lineWithin(const Points& line, const HalfPlane& half) {
    std::vector<Points> pieces;
    Points piece;
    const auto finish = [&] {
        if (piece.size() > 1) pieces.push_back(piece);
        piece.clear();
    };
    for (std::size_t i = 0; i < line.size(); ++i) {
        const bool inside = half.holds(line[i]);
        if (i > 0 && inside != half.holds(line[i - 1])) {
            piece.push_back(crossing(line[i - 1], line[i], half.limit()));
        }
        if (inside) {
            piece.push_back(line[i]);
        } else {
            finish();
        }
    }
    finish();
    return pieces;
}

Points finitePoints(std::span<const MzPoint> points) {
    Points finite;
    for (const MzPoint& point : points) {
        if (std::isfinite(point.x) && std::isfinite(point.y)) finite.push_back(point);
    }
    return finite;
}

/// Adds the points at whole y between `p` and `q` on a line of constant x, from pole to pole.
void addWholeSteps(Points& points, MzPoint p, MzPoint q) {
    const double from = std::clamp(p.y, -kPole, kPole);
    const double to = std::clamp(q.y, -kPole, kPole);
    const double step = from < to ? 1 : -1;
    const double first = (from < to ? std::floor(from) : std::ceil(from)) + step;
    const auto count = static_cast<int>(std::ceil((to - first) * step));
    for (int i = 0; i < count; ++i) points.push_back({p.x, first + i * step});
}

/// The ring, closed, with steps along the limits.
Points closedWithSteps(const Points& open, double west, double east) {
    Points ring{open.back()};
    for (const MzPoint& point : open) {
        const MzPoint last = ring.back();
        if (last.x == point.x && (point.x == west || point.x == east)) {
            addWholeSteps(ring, last, point);
        }
        ring.push_back(point);
    }
    return ring;
}

}  // namespace

std::vector<Points> lineBetween(std::span<const MzPoint> line, double west, double east) {
    std::vector<Points> pieces;
    for (const Points& half : lineWithin(finitePoints(line), HalfPlane(west, 1))) {
        for (Points& piece : lineWithin(half, HalfPlane(east, -1))) {
            pieces.push_back(std::move(piece));
        }
    }
    return pieces;
}

Points ringBetween(std::span<const MzPoint> ring, double west, double east) {
    Points open = finitePoints(ring);
    if (open.size() > 1 && equal(open.front(), open.back())) open.pop_back();
    open = openRingWithin(openRingWithin(open, HalfPlane(west, 1)), HalfPlane(east, -1));
    if (open.size() < 3) return {};
    return closedWithSteps(open, west, east);
}

}  // namespace mezalith::host
