// SPDX-License-Identifier: MIT
#include <mezalith/clipping/exact_clipping.hpp>
#include <mezalith/clipping/outcode_clipping.hpp>
#include <mezalith/clipping/region_code.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <span>

namespace mezalith {
namespace {

// --- tables ---------------------------------------------------------------

/// What the side of each corner says of a line: the two edges of the region that it crosses, and
/// the bit of the region code that an outside end has when its crossing is the one with `edgeA`.
struct Crossings {
    int edgeA;
    int edgeB;
    int bitOfA;

    bool none() const { return edgeA < 0; }
    int edgeTowards(std::int32_t outsideCode) const {
        return (outsideCode & bitOfA) != 0 ? edgeA : edgeB;
    }
};

constexpr Crossings missed{-1, -1, -1};
constexpr unsigned allCorners = 15;

/// By corner mask: bit k is set when corner k lies on the non-negative side of the line. Opposite
/// corners alone (5 and 10) cannot be, not even by rounding, which keeps the order of sums; they
/// count as missed.
constexpr std::array<Crossings, 16> crossingsOfMask{{
    missed,
    {0, 3, 1},
    {0, 1, 1},
    {1, 3, 4},
    {1, 2, 4},
    missed,
    {0, 2, 1},
    {2, 3, 2},
    {2, 3, 2},
    {0, 2, 1},
    missed,
    {1, 2, 4},
    {1, 3, 4},
    {0, 1, 1},
    {0, 3, 1},
    missed,
}};

/// The corner that points with this region code lie beyond; -1 for codes of no corner.
constexpr int cornerOfCode(std::int32_t code) {
    switch (code) {
        case MzRegionLowX | MzRegionLowY:
            return 0;
        case MzRegionHighX | MzRegionLowY:
            return 1;
        case MzRegionHighX | MzRegionHighY:
            return 2;
        case MzRegionLowX | MzRegionHighY:
            return 3;
        default:
            return -1;
    }
}

// --- segments -------------------------------------------------------------

struct Segment {
    MzPoint p, q;
    std::int32_t pCode, qCode;

    bool inside() const { return (pCode | qCode) == 0; }
    std::int32_t commonSides() const { return pCode & qCode; }
    MzProjectiveLine line() const { return {q.y - p.y, p.x - q.x, p.y * q.x - q.y * p.x}; }
};

unsigned cornerMask(const MzProjectiveLine& line, const MzClippingRegion::Corners& corners) {
    unsigned mask = 0;
    for (std::size_t k = 0; k < corners.size(); ++k) {
        if (line.a * corners[k].x + line.b * corners[k].y + line.c >= 0) mask |= 1u << k;
    }
    return mask;
}

MzPoint crossing(const MzProjectiveLine& line, int edge, const MzClippingRegion& region) {
    return MzPointIntersectionOfProjectiveLines(line,
                                                region.edges()[static_cast<std::size_t>(edge)]);
}

// Each of the following writes points from `out` on and answers where the next one goes.

MzPoint* addTurningPoint(MzPoint* out, std::int32_t code, const MzClippingRegion& region) {
    const int corner = cornerOfCode(code);
    if (corner >= 0) *out++ = region.bounds()[static_cast<std::size_t>(corner)];
    return out;
}

/// A segment of a polyline with at least one end outside, the ends not beyond the same side.
MzPoint* crossLine(MzPoint* out, const Segment& segment, const MzClippingRegion& region) {
    const MzProjectiveLine line = segment.line();
    const Crossings crossings = crossingsOfMask[cornerMask(line, region.bounds())];
    if (crossings.none()) return out;
    if (segment.pCode == 0) {
        *out++ = crossing(line, crossings.edgeTowards(segment.qCode), region);
    } else if (segment.qCode == 0) {
        *out++ = crossing(line, crossings.edgeTowards(segment.pCode), region);
        *out++ = segment.q;
    } else {
        *out++ = crossing(line, crossings.edgeA, region);
        *out++ = crossing(line, crossings.edgeB, region);
    }
    return out;
}

/// A segment of a ring with both ends beyond the same side.
MzPoint* passAlongSide(MzPoint* out, const Segment& segment, const MzClippingRegion& region) {
    constexpr std::int32_t sidesOfX = MzRegionLowX | MzRegionHighX;
    if (segment.pCode == segment.qCode || (segment.commonSides() & sidesOfX) != 0) return out;
    out = addTurningPoint(out, segment.pCode, region);
    return addTurningPoint(out, segment.qCode, region);
}

/// `ifLowX` or `ifHighX`, by the side of x beyond which a point with this code lies; 0 for neither.
std::int32_t cornerBeside(std::int32_t code, std::int32_t ifLowX, std::int32_t ifHighX) {
    if ((code & MzRegionLowX) != 0) return ifLowX;
    return (code & MzRegionHighX) != 0 ? ifHighX : 0;
}

/// A segment of a ring that goes around the region.
MzPoint* goAround(MzPoint* out, const Segment& segment, bool allOnPositiveSide,
                  const MzClippingRegion& region) {
    const std::int32_t first =
        allOnPositiveSide ? cornerBeside(segment.pCode, 10, 5) : cornerBeside(segment.pCode, 9, 6);
    const std::int32_t second =
        allOnPositiveSide ? cornerBeside(segment.qCode, 9, 6) : cornerBeside(segment.qCode, 10, 5);
    out = addTurningPoint(out, first, region);
    return addTurningPoint(out, second, region);
}

/// A segment of a ring with at least one end outside, the ends not beyond the same side.
MzPoint* crossRing(MzPoint* out, const Segment& segment, const MzClippingRegion& region) {
    const MzProjectiveLine line = segment.line();
    const unsigned mask = cornerMask(line, region.bounds());
    if (mask == 0 || mask == allCorners) return goAround(out, segment, mask == allCorners, region);
    const Crossings crossings = crossingsOfMask[mask];
    if (crossings.none()) return out;
    if (segment.pCode == 0) {
        const int edge = crossings.edgeTowards(segment.qCode);
        *out++ = crossing(line, edge, region);
        if (edge % 2 == 0) out = addTurningPoint(out, segment.qCode, region);
    } else if (segment.qCode == 0) {
        const int edge = crossings.edgeTowards(segment.pCode);
        if (edge % 2 == 0) out = addTurningPoint(out, segment.pCode, region);
        *out++ = crossing(line, edge, region);
        *out++ = segment.q;
    } else {
        const bool aroundACorner = (crossings.edgeA + crossings.edgeB) % 2 != 0;
        if (aroundACorner) out = addTurningPoint(out, segment.pCode, region);
        *out++ = crossing(line, crossings.edgeA, region);
        *out++ = crossing(line, crossings.edgeB, region);
        if (aroundACorner) out = addTurningPoint(out, segment.qCode, region);
    }
    return out;
}

// --- the walk -------------------------------------------------------------

/// Calls `onSegment` for the segments between the points that are far enough apart. The limits are
/// copies and `out` is handed through by value, so that all of them stay in registers.
template <typename OnSegment>
MzPoint* walk(std::span<const MzPoint> points, MzPoint* out, const MzClippingRegion& region,
              const OnSegment& onSegment) {
    const detail::RegionLimits limits(region);
    const double minSpacing = region.minSpacing();
    MzPoint p = points.front();
    std::int32_t pCode = limits.codeOf(p);
    if (pCode == 0) *out++ = p;
    for (const MzPoint& q : points.subspan(1)) {
        if (std::abs(p.y - q.y) + std::abs(p.x - q.x) < minSpacing) continue;
        const std::int32_t qCode = limits.codeOf(q);
        out = onSegment(out, Segment{p, q, pCode, qCode}, region);
        p = q;
        pCode = qCode;
    }
    return out;
}

void toPixels(std::span<MzPoint> points, const MzAffineTransform* transform) {
    if (transform != nullptr) {
        transform->transformPoints(points, points);
    } else {
        std::fill(points.begin(), points.end(), MzPoint{0, 0});
    }
}

using ExactClipper = MzPoint*(std::span<const MzPoint>, MzPoint*, const MzClippingRegion&);

template <typename Source, typename Destination, typename OnSegment>
void clip(const Source* source, Destination* destination, const MzClippingRegion* region,
          ExactClipper* exactly, const OnSegment& onSegment) {
    if (destination == nullptr) return;
    destination->count = 0;
    const std::span<const MzPoint> points = pointsOf(source);
    if (points.empty() || region == nullptr || destination->points == nullptr) return;
    MzPoint* const out = destination->points;
    const MzPoint* const end =
        region->exact() ? exactly(points, out, *region) : walk(points, out, *region, onSegment);
    destination->count = static_cast<std::uint32_t>(end - out);
    toPixels(pointsOf(destination), region->transform().get());
}

template <typename Source, typename Destination>
void clipLine(const Source* source, Destination* destination, const MzClippingRegion* region) {
    clip(source, destination, region, detail::clipLineExactly,
         [](MzPoint* out, const Segment& segment, const MzClippingRegion& view) {
             if (segment.inside()) {
                 *out = segment.q;
                 return out + 1;
             }
             return segment.commonSides() != 0 ? out : crossLine(out, segment, view);
         });
}

}  // namespace

std::size_t MzClippedMultiPointCapacity(std::uint32_t count) {
    return std::max<std::size_t>(count, 1);
}

// An exact clipper writes at most three points for each segment: two crossings, and a corner for
// every two places that the path goes around.

std::size_t MzClippedLineStringCapacity(std::uint32_t count) {
    return count < 2 ? 1 : 3 * (count - std::size_t{1});
}

/// Settled, four points for each segment; exactly, there may be one to close the source by, and the
/// first point again.
std::size_t MzClippedLinearRingCapacity(std::uint32_t count) {
    if (count < 2) return 1;
    return std::max(4 * (count - std::size_t{1}), 3 * std::size_t{count} + 1);
}

void MzClipMultiPoint(const MzMultiPoint* source, MzMultiPoint* destination,
                      const MzClippingRegion* region) {
    clip(source, destination, region, detail::clipPointsExactly,
         [](MzPoint* out, const Segment& segment, const MzClippingRegion&) {
             *out = segment.q;
             return segment.qCode == 0 ? out + 1 : out;
         });
}

void MzClipLineString(const MzLineString* source, MzLineString* destination,
                      const MzClippingRegion* region) {
    clipLine(source, destination, region);
}

void MzClipLineString(const MzMultiPoint* source, MzMultiPoint* destination,
                      const MzClippingRegion* region) {
    clipLine(source, destination, region);
}

void MzClipLineString(const MzMultiPoint* source, MzLineString* destination,
                      const MzClippingRegion* region) {
    clipLine(source, destination, region);
}

void MzClipLinearRing(const MzLinearRing* source, MzLinearRing* destination,
                      const MzClippingRegion* region) {
    clip(source, destination, region, detail::clipRingExactly,
         [](MzPoint* out, const Segment& segment, const MzClippingRegion& view) {
             if (segment.inside()) {
                 *out = segment.q;
                 return out + 1;
             }
             return segment.commonSides() != 0 ? passAlongSide(out, segment, view)
                                               : crossRing(out, segment, view);
         });
}

void MzAddTurningPointForCode(MzLinearRing* destination, std::int32_t code,
                              const MzClippingRegion* region) {
    if (destination == nullptr || destination->points == nullptr || region == nullptr) return;
    MzPoint* const next = destination->points + destination->count;
    const MzPoint* const end = addTurningPoint(next, code, *region);
    if (end == next) return;
    toPixels({next, 1}, region->transform().get());
    ++destination->count;
}

}  // namespace mezalith
