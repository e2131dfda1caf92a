// SPDX-License-Identifier: MIT
#include <mezalith/platform/path_cutting.hpp>
#include <mezalith/platform/path_pieces.hpp>
#include <mezalith/platform/path_walk.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace mezalith::platform {
namespace {

/// Collects the subpaths of a path as polylines.
struct Polylines {
    std::vector<DevicePolyline> lines;

    void moveTo(MzPoint point) { lines.push_back({{point}, false}); }
    void lineTo(MzPoint point, bool) { lines.back().points.push_back(point); }
    void close() { lines.back().isClosed = true; }
};

/// One side of a box: what lies within has `sign` times its distance beyond `bound` at most 0.
struct Side {
    double MzPoint::*across;
    double bound;
    double sign;

    bool keeps(MzPoint point) const { return sign * (point.*across - bound) <= 0; }

    MzPoint crossing(MzPoint a, MzPoint b) const {
        const double t = (bound * 0.5 - a.*across * 0.5) / (b.*across * 0.5 - a.*across * 0.5);
        MzPoint point = pointOnSegment(a, b, t);
        point.*across = bound;
        return point;
    }
};

std::array<Side, 4> sidesOf(const DeviceBox& box) {
    return {{{&MzPoint::x, box.minX, -1},
             {&MzPoint::x, box.maxX, 1},
             {&MzPoint::y, box.minY, -1},
             {&MzPoint::y, box.maxY, 1}}};
}

/// Cuts a ring.
void cutAt(const Side& side, std::vector<MzPoint>& ring) {
    std::vector<MzPoint> kept;
    kept.reserve(ring.size() + 2);
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const MzPoint& previous = i > 0 ? ring[i - 1] : ring.back();
        const bool isKept = side.keeps(ring[i]);
        if (side.keeps(previous) != isKept) {
            kept.push_back(side.crossing(previous, ring[i]));
        }
        if (isKept) {
            kept.push_back(ring[i]);
        }
    }
    ring = std::move(kept);
}

/// The part of a segment within a box; its ends are those of the segment where these are within.
void drawWithin(const DeviceBox& box, MzPoint a, MzPoint b, detail::PathPieces& pieces) {
    const SegmentPart part = segmentWithin(a, b, box);
    if (part.isEmpty() || part.from > 0) {
        pieces.interrupt();
    }
    if (!part.isEmpty()) {
        pieces.draw(part.from > 0 ? pointOnSegment(a, b, part.from) : a,
                    part.to < 1 ? pointOnSegment(a, b, part.to) : b);
    }
    if (part.to < 1) {
        pieces.interrupt();
    }
}

}  // namespace

MzPoint pointOnSegment(MzPoint a, MzPoint b, double t) {
    return {a.x * (1 - t) + b.x * t, a.y * (1 - t) + b.y * t};
}

SegmentPart segmentWithin(MzPoint a, MzPoint b, const DeviceBox& box) {
    SegmentPart part{0, 1};
    for (const Side& side : sidesOf(box)) {
        const bool beginsWithin = side.keeps(a);
        const bool endsWithin = side.keeps(b);
        if (!beginsWithin && !endsWithin) {
            return {1, 0};
        }
        if (beginsWithin == endsWithin) {
            continue;
        }
        const double from = a.*side.across * 0.5;
        const double t = (side.bound * 0.5 - from) / (b.*side.across * 0.5 - from);
        if (beginsWithin) {
            part.to = std::min(part.to, t);
        } else {
            part.from = std::max(part.from, t);
        }
    }
    return part;
}

std::vector<DevicePolyline> flattenedPath(const DevicePath& path, double tolerance,
                                          const DeviceBox& box) {
    Polylines polylines;
    detail::walkPath(path, {.tolerance = tolerance, .box = box}, polylines);
    return std::move(polylines.lines);
}

DevicePath cutArea(const DevicePath& path, const DeviceBox& box, double tolerance) {
    DevicePath result;
    for (DevicePolyline& line : flattenedPath(path, tolerance, box)) {
        for (const Side& side : sidesOf(box)) {
            cutAt(side, line.points);
        }
        result.addLines(line.points, {});
        result.close();
    }
    return result;
}

DevicePath cutOutline(const DevicePath& path, const DeviceBox& box, double tolerance) {
    DevicePath result;
    detail::PathPieces pieces;
    for (const auto& [points, isClosed] : flattenedPath(path, tolerance, box)) {
        for (std::size_t i = 1; i < points.size(); ++i) {
            drawWithin(box, points[i - 1], points[i], pieces);
        }
        if (isClosed) {
            drawWithin(box, points.back(), points.front(), pieces);
            pieces.addRing(result, points.front());
        } else {
            pieces.addOpen(result);
        }
    }
    return result;
}

}  // namespace mezalith::platform
