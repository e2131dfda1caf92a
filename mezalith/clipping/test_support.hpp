// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/clipping/outcode_clipping.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

// What the tests of clippers share.

namespace mezalith::clipping_test {

inline constexpr unsigned seed = 20240229;
inline constexpr double nan = std::numeric_limits<double>::quiet_NaN();
inline constexpr double infinity = std::numeric_limits<double>::infinity();

using Points = std::vector<MzPoint>;

inline bool sameBits(MzPoint a, MzPoint b) {
    return std::bit_cast<std::array<std::uint64_t, 2>>(a) ==
           std::bit_cast<std::array<std::uint64_t, 2>>(b);
}

inline bool sameBits(const Points& a, const Points& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](MzPoint p, MzPoint q) { return sameBits(p, q); });
}

inline std::string text(const Points& points) {
    std::ostringstream out;
    for (const MzPoint p : points) out << '(' << p.x << ", " << p.y << ") ";
    return out.str();
}

/// Nothing when both are the same.
inline std::string difference(const Points& a, const Points& b) {
    if (std::equal(a.begin(), a.end(), b.begin(), b.end(), MzEqualPoints)) return {};
    return text(a) + "are not " + text(b);
}

inline MzClippingRegion regionOf(MzRect rect, double minSpacing = 0) {
    MzClippingRegion region;
    region.setClippingRect(rect);
    region.setTransform(MzAffineTransform::transform());
    region.setMinSpacing(minSpacing);
    return region;
}

inline constexpr MzRect tenByTen{{0, 0}, {10, 10}};

// --- running the clippers -------------------------------------------------

enum class Kind { points, line, ring };

inline constexpr std::array<Kind, 3> allKinds{Kind::points, Kind::line, Kind::ring};

inline std::size_t capacityOf(Kind kind, std::uint32_t count) {
    switch (kind) {
        case Kind::points:
            return MzClippedMultiPointCapacity(count);
        case Kind::line:
            return MzClippedLineStringCapacity(count);
        default:
            return MzClippedLinearRingCapacity(count);
    }
}

template <typename Record>
Points clipRecord(Points source, std::size_t capacity, const MzClippingRegion* region,
                  void (*clipper)(const Record*, Record*, const MzClippingRegion*)) {
    const Record from{static_cast<std::uint32_t>(source.size()), source.data()};
    Points room(capacity);  // of exactly that size, so that a sanitizer sees a point too many
    Record to{77, room.data()};
    clipper(&from, &to, region);
    if (to.count > capacity) throw std::length_error("more points than room");
    return {room.begin(), room.begin() + to.count};
}

inline Points clip(Kind kind, const Points& source, const MzClippingRegion& region) {
    const std::size_t room = capacityOf(kind, static_cast<std::uint32_t>(source.size()));
    switch (kind) {
        case Kind::points:
            return clipRecord<MzMultiPoint>(source, room, &region, MzClipMultiPoint);
        case Kind::line:
            return clipRecord<MzLineString>(source, room, &region, MzClipLineString);
        default:
            return clipRecord<MzLinearRing>(source, room, &region, MzClipLinearRing);
    }
}

// --- independent answers ---------------------------------------------------

/// Positive for a ring that runs counter-clockwise, closed or not.
inline double areaOf(const Points& ring) {
    double twice = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const MzPoint p = ring[i], q = ring[(i + 1) % ring.size()];
        twice += (p.x - ring[0].x) * (q.y - ring[0].y) - (q.x - ring[0].x) * (p.y - ring[0].y);
    }
    return twice / 2;
}

/// What of the ring lies on the side of a line where `depth` is not negative.
template <typename Depth>
Points halfOf(const Points& ring, const Depth& depth) {
    Points kept;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const MzPoint p = ring[i], q = ring[(i + 1) % ring.size()];
        const double dp = depth(p), dq = depth(q);
        if (dp >= 0) kept.push_back(p);
        if ((dp >= 0) == (dq >= 0)) continue;
        const double t = dp / (dp - dq);
        kept.push_back({p.x + t * (q.x - p.x), p.y + t * (q.y - p.y)});
    }
    return kept;
}

/// Source: Sutherland and Hodgman (1974), Reentrant polygon clipping, CACM 17(1). Its ring may run
/// along the border and back, which has no area.
inline Points cutBySides(Points ring, const MzClippingRegion& region) {
    const MzPoint low = region.bounds()[0], high = region.bounds()[2];
    ring = halfOf(ring, [=](MzPoint p) { return p.x - low.x; });
    ring = halfOf(ring, [=](MzPoint p) { return p.y - low.y; });
    ring = halfOf(ring, [=](MzPoint p) { return high.x - p.x; });
    return halfOf(ring, [=](MzPoint p) { return high.y - p.y; });
}

// --- random input ---------------------------------------------------------

class Cases {
  public:
    /// Points on a coarse grid, so that many fall on corners, edges and each other.
    MzPoint gridPoint() { return {grid_(random_) * 1.0, grid_(random_) * 1.0}; }
    MzPoint anyPoint() { return {wide_(random_), wide_(random_)}; }

    Points points(const std::function<MzPoint()>& one) {
        Points points(1 + random_() % 12);
        for (MzPoint& p : points) p = one();
        if (random_() % 2 == 0) points.push_back(points.front());
        return points;
    }

    /// Now and then a value that is no length.
    MzPoint oddPoint() {
        constexpr std::array<double, 8> odd{nan,    infinity, -infinity, 1e308,
                                            -1e308, 0,        -0.0,      5e-324};
        MzPoint p = gridPoint();
        if (random_() % 3 == 0) p.x = odd[random_() % odd.size()];
        if (random_() % 3 == 0) p.y = odd[random_() % odd.size()];
        return p;
    }

    MzClippingRegion region(const std::function<MzPoint()>& one) {
        const MzPoint origin = one(), size = one();
        MzClippingRegion region = regionOf({origin, {size.x, size.y}});
        const auto transform = MzAffineTransform::transform();
        transform->translateXBy(wide_(random_), wide_(random_));
        transform->scaleXBy(2.5, -0.75);
        region.setTransform(transform);
        if (random_() % 2 == 0) region.setMinSpacing(std::abs(grid_(random_)) * 0.5);
        return region;
    }

    std::uint64_t number() { return random_(); }

  private:
    std::mt19937_64 random_{seed};
    std::uniform_int_distribution<int> grid_{-6, 6};
    std::uniform_real_distribution<double> wide_{-10, 10};
};

}  // namespace mezalith::clipping_test
