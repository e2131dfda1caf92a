// SPDX-License-Identifier: MIT
#include <mezalith/geometry/record_bounds.hpp>

namespace mezalith {
namespace {

class Extent {
  public:
    void add(std::span<const MzPoint> points) {
        if (points.empty()) return;
        if (!started_) low_ = high_ = points.front();
        started_ = true;
        for (const MzPoint p : points) {
            if (p.x < low_.x) low_.x = p.x;
            if (p.y < low_.y) low_.y = p.y;
            if (p.x > high_.x) high_.x = p.x;
            if (p.y > high_.y) high_.y = p.y;
        }
    }

    std::optional<MzRect> rect() const {
        if (!started_) return std::nullopt;
        return MzRect{low_, {high_.x - low_.x, high_.y - low_.y}};
    }

  private:
    MzPoint low_{};
    MzPoint high_{};
    bool started_ = false;
};

}  // namespace

std::optional<MzRect> MzBoundsOfPoints(std::span<const MzPoint> points) {
    Extent extent;
    extent.add(points);
    return extent.rect();
}

std::optional<MzRect> MzBoundsOfRings(std::span<const MzLinearRing> rings) {
    Extent extent;
    for (const MzLinearRing& ring : rings) extent.add(pointsOf(&ring));
    return extent.rect();
}

}  // namespace mezalith
