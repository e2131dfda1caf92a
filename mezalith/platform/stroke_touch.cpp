// SPDX-License-Identifier: MIT
#include <mezalith/platform/path_cutting.hpp>
#include <mezalith/platform/path_walk.hpp>
#include <mezalith/platform/stroke_touch.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <span>

namespace mezalith::platform {
namespace {

/// Corners of half a circle: within 0.0012 of its radius.
constexpr int halfCircleCorners = 32;

/// Curves meet what is next to them in their own direction, which a line along them need not have.
constexpr double curveEnd = 1.0 / 1024;

/// Curves have their length as far as this around what is asked: dashes begin where others end.
constexpr double dashedMargin = 1 << 14;

/// Dashes of no length get this part of the width, so that they have a direction.
constexpr double leastDash = 1e-6;

bool areEqual(MzPoint a, MzPoint b) { return a.x == b.x && a.y == b.y; }

MzPoint turned(MzPoint vector, double cosine, double sine) {
    return {vector.x * cosine - vector.y * sine, vector.x * sine + vector.y * cosine};
}

MzPoint scaled(MzPoint vector, double factor) { return {vector.x * factor, vector.y * factor}; }

MzPoint sum(MzPoint a, MzPoint b) { return {a.x + b.x, a.y + b.y}; }

/// Quarter turn clockwise.
MzPoint rightOf(MzPoint direction) { return {direction.y, -direction.x}; }

/// Of length 1; the points differ.
MzPoint direction(MzPoint a, MzPoint b) {
    const MzPoint ahead{b.x * 0.5 - a.x * 0.5, b.y * 0.5 - a.y * 0.5};
    return scaled(ahead, 1 / std::hypot(ahead.x, ahead.y));
}

/// The box, in the space that `inverse` maps to, of all that is in the disc.
DeviceBox mappedBox(const Disc& disc, const AffineTransform& inverse) {
    const MzPoint c = inverse.transformPoint(disc.center);
    const double x = disc.radius * std::hypot(inverse.m11, inverse.m21);
    const double y = disc.radius * std::hypot(inverse.m12, inverse.m22);
    return {c.x - x, c.y - y, c.x + x, c.y + y};
}

bool contains(const DeviceBox& box, MzPoint p) {
    return box.minX <= p.x && p.x <= box.maxX && box.minY <= p.y && p.y <= box.maxY;
}

/// Where a path has corners, which only its lines and ends of curves do.
class Corners {
  public:
    explicit Corners(const DevicePath& path) : path_(path) {
        hasCurves_ = std::ranges::find(path.verbs(), DevicePath::Verb::Curve) != path.verbs().end();
    }

    bool has(MzPoint point) const {
        if (!hasCurves_) {
            return true;
        }
        const MzPoint* next = path_.points().data();
        for (const DevicePath::Verb verb : path_.verbs()) {
            if (verb == DevicePath::Verb::Close) continue;
            next += verb == DevicePath::Verb::Curve ? 3 : 1;
            if (areEqual(next[-1], point)) {
                return true;
            }
        }
        return false;
    }

  private:
    const DevicePath& path_;
    bool hasCurves_;
};

/// Follows a path in pen units and tries the pieces of its ink that come near the disc. Each piece
/// is convex, and stays so on the device.
class StrokeWalk {
  public:
    /// `corners` tells those of a path of dashes, whose own ends are not all corners.
    StrokeWalk(const Pen& pen, const Disc& disc, const DeviceBox& place,
               const Corners* corners = nullptr)
        : pen_(pen),
          disc_(disc),
          half_(pen.width / 2),
          near_(grownBox(place, pen.reach())),
          corners_(corners) {}

    bool isTouched() const { return isTouched_; }

    void moveTo(MzPoint point) {
        end();
        start_ = current_ = point;
    }

    void lineTo(MzPoint point, bool isCorner) {
        hasElements_ = true;
        if (areEqual(point, current_)) {
            isCorner_ = isCorner_ || isCorner;
            return;
        }
        body(current_, point);
        if (count_++ == 0) {
            second_ = point;
        } else {
            join(previous_, current_, point, isCorner_);
        }
        previous_ = current_;
        current_ = point;
        isCorner_ = isCorner;
    }

    void close() {
        lineTo(start_, true);
        if (count_ > 0) {
            join(previous_, start_, second_, true);
            hasElements_ = false;
        }
        end();
    }

    /// Of an open subpath.
    void end() {
        if (hasElements_ && count_ > 0) {
            cap(second_, start_);
            cap(previous_, current_);
        } else if (hasElements_ && pen_.cap == LineCap::Round) {
            sector(start_, {half_, 0}, std::numbers::pi);
            sector(start_, {-half_, 0}, std::numbers::pi);
        }
        hasElements_ = false;
        count_ = 0;
    }

  private:
    const Pen& pen_;
    const Disc& disc_;
    double half_;
    DeviceBox near_;  ///< ink of a line or corner outside does not reach the disc; pen units
    const Corners* corners_;
    bool isTouched_ = false;

    MzPoint start_{};
    MzPoint second_{};
    MzPoint previous_{};
    MzPoint current_{};
    std::size_t count_ = 0;     ///< lines so far in this subpath, those of no length apart
    bool hasElements_ = false;  ///< whether there was any, and ends are open
    bool isCorner_ = false;     ///< at the current point

    /// The first `count` corners.
    template <std::size_t Most>
    void piece(std::array<MzPoint, Most> corners, std::size_t count = Most) {
        const auto taken = std::span(corners).first(count);
        pen_.shape.transformPoints(taken, taken);
        isTouched_ = isTouched_ || touchesConvex(taken, disc_);
    }

    void body(MzPoint a, MzPoint b) {
        if (std::max(a.x, b.x) < near_.minX || std::min(a.x, b.x) > near_.maxX ||
            std::max(a.y, b.y) < near_.minY || std::min(a.y, b.y) > near_.maxY) {
            return;
        }
        const SegmentPart part = segmentWithin(a, b, near_);
        if (part.isEmpty()) {
            return;
        }
        bar(part.from > 0 ? pointOnSegment(a, b, part.from) : a,
            part.to < 1 ? pointOnSegment(a, b, part.to) : b, direction(a, b));
    }

    void bar(MzPoint from, MzPoint to, MzPoint ahead) {
        const MzPoint right = scaled(rightOf(ahead), half_);
        const MzPoint left = scaled(right, -1);
        piece(std::array{sum(from, left), sum(from, right), sum(to, right), sum(to, left)});
    }

    /// What turns counter-clockwise by `angle` from `center + arm`, at most half a circle.
    void sector(MzPoint center, MzPoint arm, double angle) {
        if (!contains(near_, center)) {
            return;
        }
        const int steps =
            std::max(1, static_cast<int>(std::ceil(angle / std::numbers::pi * halfCircleCorners)));
        const double cosine = std::cos(angle / steps);
        const double sine = std::sin(angle / steps);
        std::array<MzPoint, halfCircleCorners + 2> corners;
        std::size_t count = 0;
        corners[count++] = center;
        for (int i = 0; i <= std::min(steps, halfCircleCorners); ++i) {
            corners[count++] = sum(center, arm);
            arm = turned(arm, cosine, sine);
        }
        piece(corners, count);
    }

    /// At `end`, coming from `before`.
    void cap(MzPoint before, MzPoint end) {
        if (pen_.cap == LineCap::Butt || !contains(near_, end)) {
            return;
        }
        const MzPoint ahead = direction(before, end);
        if (pen_.cap == LineCap::Round) {
            sector(end, scaled(rightOf(ahead), half_), std::numbers::pi);
        } else {
            bar(end, sum(end, scaled(ahead, half_)), ahead);
        }
    }

    void join(MzPoint before, MzPoint at, MzPoint after, bool isCorner) {
        if (!contains(near_, at)) {
            return;
        }
        const MzPoint in = direction(before, at);
        const MzPoint out = direction(at, after);
        const double cross = in.x * out.y - in.y * out.x;
        const double dot = in.x * out.x + in.y * out.y;
        const double side = cross >= 0 ? half_ : -half_;  // the outer one
        const MzPoint from = scaled(rightOf(in), side);
        const MzPoint to = scaled(rightOf(out), side);
        const bool isRound = pen_.join == LineJoin::Round || !isCorner ||
                             (corners_ != nullptr && !corners_->has(at));
        if (isRound) {
            sector(at, cross >= 0 ? from : to, std::atan2(std::abs(cross), dot));
        } else if (pen_.join == LineJoin::Miter && isWithinMiterLimit(in, out)) {
            const MzPoint tip = scaled(sum(from, to), 1 / (1 + dot));
            piece(std::array{at, sum(at, from), sum(at, tip), sum(at, to)});
        } else {
            piece(std::array{at, sum(at, from), sum(at, to)});
        }
    }

    /// The mitre of a turn by an angle is 1 / cos(half of it) widths long. Which mitres are too
    /// long is seen on the device for solid lines and before the pen's shape for dashes, as in
    /// pictures.
    bool isWithinMiterLimit(MzPoint in, MzPoint out) const {
        const AffineTransform shape = corners_ == nullptr ? pen_.shape : AffineTransform{};
        const MzPoint a = shape.transformPoint(in);
        const MzPoint b = shape.transformPoint(out);
        const double dot = (a.x * b.x + a.y * b.y) / (std::hypot(a.x, a.y) * std::hypot(b.x, b.y));
        return 2 <= Pen::kMiterLimit * Pen::kMiterLimit * (1 + dot);
    }
};

/// The pattern with lengths instead of mere places, where caps make them seen.
DashPattern seenDashes(const Pen& pen) {
    DashPattern pattern = pen.dash;
    if (pen.cap == LineCap::Butt) {
        return pattern;
    }
    for (std::size_t i = 0; i + 1 < pattern.lengths.size(); i += 2) {
        const double added = std::min(pattern.lengths[i + 1], pen.width * leastDash);
        if (pattern.lengths[i] == 0) {
            pattern.lengths[i] += added;
            pattern.lengths[i + 1] -= added;
        }
    }
    return pattern;
}

bool touchesOutline(const DevicePath& path, const Pen& pen, const Disc& disc,
                    const DeviceBox& place) {
    const DeviceBox reached = grownBox(place, pen.reach());
    if (pen.dash.isSolid()) {
        StrokeWalk walk(pen, disc, place);
        detail::walkPath(path, {kTouchFlatness, reached, curveEnd}, walk);
        walk.end();
        return walk.isTouched();
    }
    if (commonBox(path.bounds(), reached).isEmpty()) {
        return false;
    }
    // A dash that ends at the border of what is walked has no cap there; it is out of reach.
    const auto lines = flattenedPath(path, kTouchFlatness, grownBox(reached, dashedMargin));
    const DevicePath dashes = dashedPath(lines, seenDashes(pen), grownBox(reached, pen.width));
    const Corners corners(path);
    StrokeWalk walk(pen, disc, place, &corners);
    detail::walkPath(dashes, {kTouchFlatness, reached}, walk);
    walk.end();
    return walk.isTouched();
}

}  // namespace

bool touchesStroke(const DevicePath& path, const Pen& pen, const Disc& disc) {
    const auto toPen = pen.shape.inverse();
    if (!toPen || path.isEmpty()) {
        return false;
    }
    const DeviceBox place = mappedBox(disc, *toPen);
    if (pen.shape == AffineTransform{}) {
        return touchesOutline(path, pen, disc, place);
    }
    DevicePath inPenUnits = path;
    inPenUnits.transform(*toPen);
    return touchesOutline(inPenUnits, pen, disc, place);
}

}  // namespace mezalith::platform
