// SPDX-License-Identifier: MIT
#include <mezalith/platform/path_cutting.hpp>
#include <mezalith/platform/path_pieces.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace mezalith::platform {
namespace {

using Curve = std::array<MzPoint, 4>;

constexpr int deepestHalving = 32;

MzPoint middle(MzPoint a, MzPoint b) { return {a.x * 0.5 + b.x * 0.5, a.y * 0.5 + b.y * 0.5}; }

std::pair<Curve, Curve> halves(const Curve& c) {
    const MzPoint ab = middle(c[0], c[1]);
    const MzPoint bc = middle(c[1], c[2]);
    const MzPoint cd = middle(c[2], c[3]);
    const MzPoint abc = middle(ab, bc);
    const MzPoint bcd = middle(bc, cd);
    const MzPoint center = middle(abc, bcd);
    return {{c[0], ab, abc, center}, {center, bcd, cd, c[3]}};
}

/// An upper bound of the distance between a curve and its chord: 1/8 of its largest second
/// derivative.
double deviation(const Curve& c) {
    const double first = std::hypot(c[0].x - 2 * c[1].x + c[2].x, c[0].y - 2 * c[1].y + c[2].y);
    const double second = std::hypot(c[1].x - 2 * c[2].x + c[3].x, c[1].y - 2 * c[2].y + c[3].y);
    return 0.75 * std::max(first, second);
}

bool isBeside(const Curve& c, const DeviceBox& box) {
    const auto [left, right] = std::minmax({c[0].x, c[1].x, c[2].x, c[3].x});
    const auto [bottom, top] = std::minmax({c[0].y, c[1].y, c[2].y, c[3].y});
    return right < box.minX || left > box.maxX || top < box.minY || bottom > box.maxY;
}

/// Turns the elements of a path into polylines.
class Flattener {
  public:
    Flattener(double tolerance, const DeviceBox& box) : tolerance_(tolerance), box_(box) {}

    std::vector<DevicePolyline> run(const DevicePath& path) {
        const MzPoint* next = path.points().data();
        for (const DevicePath::Verb verb : path.verbs()) {
            next = add(verb, next);
        }
        return std::move(lines_);
    }

  private:
    double tolerance_;
    DeviceBox box_;
    std::vector<DevicePolyline> lines_;

    const MzPoint* add(DevicePath::Verb verb, const MzPoint* points) {
        switch (verb) {
            case DevicePath::Verb::Move:
                lines_.push_back({{points[0]}, false});
                return points + 1;
            case DevicePath::Verb::Line:
                lines_.back().points.push_back(points[0]);
                return points + 1;
            case DevicePath::Verb::Curve:
                addCurve({lines_.back().points.back(), points[0], points[1], points[2]}, 0);
                return points + 3;
            case DevicePath::Verb::Close:
                lines_.back().isClosed = true;
        }
        return points;
    }

    void addCurve(const Curve& curve, int depth) {
        if (depth == deepestHalving || deviation(curve) <= tolerance_ || isBeside(curve, box_)) {
            lines_.back().points.push_back(curve[3]);
            return;
        }
        const auto [first, second] = halves(curve);
        addCurve(first, depth + 1);
        addCurve(second, depth + 1);
    }
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
    return Flattener(tolerance, box).run(path);
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
