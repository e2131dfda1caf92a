// SPDX-License-Identifier: MIT
#include <mezalith/platform/area_touch.hpp>
#include <mezalith/platform/path_cutting.hpp>
#include <mezalith/platform/path_walk.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace mezalith::platform {
namespace {

/// How far from a side it is asked whether the area is there, and how far from its ends.
constexpr double besideSide = 1.0 / 512;
constexpr double fromEnd = 1.0 / 64;

/// More sides than this in one disc have the same neighbours.
constexpr std::size_t mostProbes = 256;

MzPoint middle(MzPoint a, MzPoint b) { return {a.x * 0.5 + b.x * 0.5, a.y * 0.5 + b.y * 0.5}; }

/// `distance` from `a` towards `b`, at most as far as `b` is.
MzPoint towards(MzPoint a, MzPoint b, double distance) {
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    return length > distance ? pointOnSegment(a, b, distance / length) : b;
}

/// Hands the sides of a path, all subpaths closed, to `take`.
template <typename Take>
class Sides {
  public:
    explicit Sides(Take& take) : take_(take) {}

    void moveTo(MzPoint point) {
        close();
        start_ = last_ = point;
    }
    void lineTo(MzPoint point, bool) {
        take_(last_, point);
        last_ = point;
    }
    void close() {
        take_(last_, start_);
        last_ = start_;
    }

  private:
    Take& take_;
    MzPoint start_{};
    MzPoint last_{};
};

template <typename Take>
void forEachSide(const DevicePath& path, const DeviceBox& box, Take take) {
    Sides<Take> sides(take);
    detail::walkPath(path, {kTouchFlatness, box}, sides);
    sides.close();
}

/// How often the path goes round a point.
struct Probe {
    MzPoint point;
    int winding = 0;

    /// Counts a side that crosses the ray to the right.
    void meet(MzPoint a, MzPoint b) {
        if ((a.y > point.y) == (b.y > point.y)) {
            return;
        }
        const double t = (point.y * 0.5 - a.y * 0.5) / (b.y * 0.5 - a.y * 0.5);
        if (a.x * (1 - t) + b.x * t > point.x) {
            winding += b.y > a.y ? 1 : -1;
        }
    }

    bool isInside(FillRule rule) const {
        return rule == FillRule::EvenOdd ? winding % 2 != 0 : winding != 0;
    }
};

void addProbesAt(std::vector<Probe>& probes, MzPoint place, MzPoint a, MzPoint b) {
    const MzPoint inner = towards(place, middle(a, b), fromEnd);
    const MzPoint ahead{b.x * 0.5 - a.x * 0.5, b.y * 0.5 - a.y * 0.5};
    const double scale = besideSide / std::hypot(ahead.x, ahead.y);
    probes.push_back({{inner.x - ahead.y * scale, inner.y + ahead.x * scale}});
    probes.push_back({{inner.x + ahead.y * scale, inner.y - ahead.x * scale}});
}

/// Points on either side of the sides in the disc.
std::vector<Probe> probesBesideSides(const DevicePath& path, const Disc& disc, Probe& center) {
    std::vector<Probe> probes;
    const DeviceBox box = boxAround(disc);
    forEachSide(path, box, [&](MzPoint a, MzPoint b) {
        if ((a.y < box.minY && b.y < box.minY) || (a.y > box.maxY && b.y > box.maxY) ||
            (a.x < box.minX && b.x < box.minX)) {
            return;
        }
        center.meet(a, b);
        const auto chord = probes.size() < mostProbes ? chordWithin(a, b, disc) : std::nullopt;
        if (chord && (a.x != b.x || a.y != b.y)) {
            addProbesAt(probes, chord->nearest, a, b);
            addProbesAt(probes, chord->middle, a, b);
        }
    });
    return probes;
}

bool isAnyInside(std::vector<Probe>& probes, const DevicePath& path, FillRule rule,
                 const DeviceBox& box) {
    forEachSide(path, box, [&](MzPoint a, MzPoint b) {
        if (std::max(a.y, b.y) < box.minY || std::min(a.y, b.y) > box.maxY) {
            return;
        }
        for (Probe& probe : probes) {
            probe.meet(a, b);
        }
    });
    return std::ranges::any_of(probes, [&](const Probe& probe) { return probe.isInside(rule); });
}

}  // namespace

Touch touchOfArea(const DevicePath& path, FillRule rule, const Disc& disc) {
    Probe center{disc.center};
    std::vector<Probe> probes = probesBesideSides(path, disc, center);
    if (center.isInside(rule)) {
        return probes.empty() ? Touch::Wholly : Touch::Partly;
    }
    const DeviceBox around = grownBox(boxAround(disc), 1);
    return !probes.empty() && isAnyInside(probes, path, rule, around) ? Touch::Partly
                                                                      : Touch::Apart;
}

}  // namespace mezalith::platform
