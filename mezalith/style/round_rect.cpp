// SPDX-License-Identifier: MIT
#include <mezalith/style/round_rect.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace mezalith {

using platform::BezierPath;

namespace {

/// Where the stem to a point leaves the bottom edge, to the right of the point.
constexpr double kStemBegin = 25;
constexpr double kStemEnd = 55;
/// The stem out of the right side: how far it sticks out, and how far its base begins below the
/// middle and its tip lies above it.
constexpr double kSideStemReach = 50;
constexpr double kSideStemFall = 50;
constexpr double kSideStemRise = 25;

/// The edges of a rectangle that is to be rounded, and the radius of its corners.
struct Frame {
    double x;
    double y;
    double right;
    double top;
    double middleX;
    double middleY;
    double radius;

    bool isFinite() const {
        return std::isfinite(x) && std::isfinite(y) && std::isfinite(right) && std::isfinite(top);
    }
};

float clampedRadius(MzSize size, float radius) {
    // An infinite half would not survive the narrowing.
    const double largest = std::numeric_limits<float>::max();
    const double half = std::min(size.width, size.height) * 0.5;
    return static_cast<float>(std::min({double{radius}, half, largest}));
}

/// What there is to be rounded; none after a plain rectangle was appended or nothing at all.
std::optional<Frame> prepare(BezierPath& path, MzRect rect, float radius) {
    if (MzIsEmptyRect(rect)) return std::nullopt;
    const auto [origin, size] = rect;
    const Frame frame{origin.x,
                      origin.y,
                      origin.x + size.width,
                      origin.y + size.height,
                      origin.x + size.width * 0.5,
                      origin.y + size.height * 0.5,
                      double{clampedRadius(size, radius)}};
    if (!frame.isFinite()) return std::nullopt;
    if (radius > 0) return frame;
    path.appendRect(rect);
    return std::nullopt;
}

/// From the middle of the top edge around the corner to its left.
void beginTop(BezierPath& path, const Frame& f) {
    path.moveToPoint({f.middleX, f.top});
    path.appendArcFromPoint({f.x, f.top}, {f.x, f.y}, f.radius);
}

/// Around the corner at the right of the top edge, and back to its middle.
void endTop(BezierPath& path, const Frame& f) {
    path.appendArcFromPoint({f.right, f.top}, {f.x, f.top}, f.radius);
    path.closePath();
}

void appendRounded(BezierPath& path, const Frame& f, double bottomRadius) {
    beginTop(path, f);
    path.appendArcFromPoint({f.x, f.y}, {f.right, f.y}, bottomRadius);
    path.appendArcFromPoint({f.right, f.y}, {f.right, f.top}, bottomRadius);
    endTop(path, f);
}

void appendBubble(BezierPath& path, const Frame& f, MzPoint tip) {
    const MzPoint begin{tip.x + kStemBegin, f.y};
    const MzPoint end{tip.x + kStemEnd, f.y};
    beginTop(path, f);
    path.appendArcFromPoint({f.x, f.y}, begin, f.radius);
    path.lineToPoint(begin);
    path.lineToPoint(tip);
    path.lineToPoint(end);
    // Settled: no corner; the arc begins and ends where the stem does.
    path.appendArcFromPoint(end, {f.right, f.y}, f.radius);
    path.appendArcFromPoint({f.right, f.y}, {f.right, f.top}, f.radius);
    endTop(path, f);
}

void appendSideBubble(BezierPath& path, const Frame& f) {
    const MzPoint begin{f.right, f.middleY - kSideStemFall};
    beginTop(path, f);
    path.appendArcFromPoint({f.x, f.y}, {f.right, f.y}, f.radius);
    path.appendArcFromPoint({f.right, f.y}, begin, f.radius);
    path.lineToPoint(begin);
    path.lineToPoint({f.right + kSideStemReach, f.middleY + kSideStemRise});
    path.lineToPoint({f.right, f.middleY});
    path.appendArcFromPoint({f.right, f.middleY}, {f.right, f.top}, f.radius);
    endTop(path, f);
}

}  // namespace

BezierPath bezierPathWithRoundedRect(MzRect rect, float cornerRadius) {
    BezierPath path;
    appendBezierPathWithRoundedRect(path, rect, cornerRadius);
    return path;
}

void appendBezierPathWithRoundedRect(BezierPath& path, MzRect rect, float cornerRadius) {
    const auto frame = prepare(path, rect, cornerRadius);
    if (frame) appendRounded(path, *frame, frame->radius);
}

BezierPath bezierPathWithTopRoundedRect(MzRect rect, float cornerRadius) {
    BezierPath path;
    appendBezierPathWithTopRoundedRect(path, rect, cornerRadius);
    return path;
}

void appendBezierPathWithTopRoundedRect(BezierPath& path, MzRect rect, float cornerRadius) {
    const auto frame = prepare(path, rect, cornerRadius);
    if (frame) appendRounded(path, *frame, 0);
}

BezierPath bezierPathWithCartoonBubbleInRect(MzRect rect, float cornerRadius) {
    BezierPath path;
    appendBezierPathWithCartoonBubbleInRect(path, rect, cornerRadius);
    return path;
}

void appendBezierPathWithCartoonBubbleInRect(BezierPath& path, MzRect rect, float cornerRadius) {
    const auto frame = prepare(path, rect, cornerRadius);
    if (frame) appendSideBubble(path, *frame);
}

BezierPath bezierPathWithCartoonBubbleInRect(MzRect rect, MzPoint stemTip, float cornerRadius) {
    BezierPath path;
    appendBezierPathWithCartoonBubbleInRect(path, rect, stemTip, cornerRadius);
    return path;
}

void appendBezierPathWithCartoonBubbleInRect(BezierPath& path, MzRect rect, MzPoint stemTip,
                                             float cornerRadius) {
    const auto frame = prepare(path, rect, cornerRadius);
    if (!frame) return;
    if (std::isfinite(stemTip.x) && std::isfinite(stemTip.y)) {
        appendBubble(path, *frame, stemTip);
    } else {
        appendRounded(path, *frame, frame->radius);
    }
}

}  // namespace mezalith
