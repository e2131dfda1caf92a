// SPDX-License-Identifier: MIT
#include <mezalith/platform/device_path.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

namespace mezalith::platform {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

/// How far the control points of a quarter of the unit circle are from its ends: 4/3 tan(pi/8).
const double quarterCircleControl = 4 * (std::numbers::sqrt2 - 1) / 3;

/// Sines below this count as points in a line.
constexpr double leastSine = 1e-9;

bool isFinite(MzPoint point) { return std::isfinite(point.x) && std::isfinite(point.y); }

/// The direction from `a` to `b`; not finite when they are equal or too far apart.
MzPoint direction(MzPoint a, MzPoint b) {
    const double length = std::hypot(b.x - a.x, b.y - a.y);
    return {(b.x - a.x) / length, (b.y - a.y) / length};
}

MzPoint along(MzPoint from, MzPoint direction, double distance) {
    return {from.x + direction.x * distance, from.y + direction.y * distance};
}

/// The beginning of the arc that rounds a corner, and the points of two curves along it.
std::optional<std::array<MzPoint, 7>> cornerArc(MzPoint start, MzPoint corner, MzPoint end,
                                                double radius) {
    const MzPoint back = direction(corner, start);
    const MzPoint ahead = direction(corner, end);
    const double cosine = back.x * ahead.x + back.y * ahead.y;
    const double sine = std::abs(back.x * ahead.y - back.y * ahead.x);
    if (!(sine >= leastSine) || !(radius > 0) || !std::isfinite(radius)) {
        return std::nullopt;
    }
    const double angle = std::atan2(sine, cosine);
    const double tangent = radius / std::tan(angle / 2);
    const double control = radius * 4 / 3 * std::tan((std::numbers::pi - angle) / 8);
    const MzPoint inward = direction({0, 0}, {back.x + ahead.x, back.y + ahead.y});
    const MzPoint across = direction(back, ahead);
    const MzPoint first = along(corner, back, tangent);
    const MzPoint middle = along(corner, inward, radius / std::sin(angle / 2) - radius);
    const MzPoint last = along(corner, ahead, tangent);
    return std::array{first,  along(first, back, -control),   along(middle, across, -control),
                      middle, along(middle, across, control), along(last, ahead, -control),
                      last};
}

}  // namespace

DeviceBox grownBox(const DeviceBox& box, double distance) {
    return {box.minX - distance, box.minY - distance, box.maxX + distance, box.maxY + distance};
}

DeviceBox commonBox(const DeviceBox& a, const DeviceBox& b) {
    return {std::max(a.minX, b.minX), std::max(a.minY, b.minY), std::min(a.maxX, b.maxX),
            std::min(a.maxY, b.maxY)};
}

void DevicePath::clear() {
    verbs_.clear();
    points_.clear();
    hasCurrentPoint_ = false;
}

void DevicePath::add(Verb verb, MzPoint point) {
    verbs_.push_back(verb);
    points_.push_back(point);
}

void DevicePath::moveTo(MzPoint point) {
    hasCurrentPoint_ = isFinite(point);
    if (!hasCurrentPoint_) {
        return;
    }
    start_ = point;
    if (!verbs_.empty() && verbs_.back() == Verb::Move) {
        points_.back() = point;
    } else {
        add(Verb::Move, point);
    }
}

/// Makes sure that an element can follow; NO when `point` became the start of a new subpath.
bool DevicePath::begin(MzPoint point) {
    if (!hasCurrentPoint_) {
        moveTo(point);
        return false;
    }
    if (verbs_.back() == Verb::Close) {
        moveTo(start_);
    }
    return true;
}

void DevicePath::lineTo(MzPoint point) {
    if (isFinite(point) && begin(point)) {
        add(Verb::Line, point);
    }
}

void DevicePath::curveTo(MzPoint control1, MzPoint control2, MzPoint end) {
    if (!isFinite(control1) || !isFinite(control2) || !isFinite(end)) {
        return;
    }
    begin(control1);
    verbs_.push_back(Verb::Curve);
    points_.insert(points_.end(), {control1, control2, end});
}

void DevicePath::close() {
    if (hasCurrentPoint_ && verbs_.back() != Verb::Close) {
        verbs_.push_back(Verb::Close);
    }
}

void DevicePath::addLines(std::span<const MzPoint> points, const AffineTransform& transform) {
    if (points.empty()) {
        return;
    }
    if (!verbs_.empty() && verbs_.back() == Verb::Move) {
        verbs_.pop_back();
        points_.pop_back();
    }
    const std::size_t before = points_.size();
    points_.resize(before + points.size());
    const std::span<MzPoint> added = std::span(points_).subspan(before);
    transform.transformPoints(points, added);
    if (!std::ranges::all_of(added, isFinite)) {
        const std::vector<MzPoint> mapped(added.begin(), added.end());
        points_.resize(before);
        addOneByOne(mapped);
        return;
    }
    verbs_.push_back(Verb::Move);
    verbs_.resize(verbs_.size() + points.size() - 1, Verb::Line);
    start_ = added.front();
    hasCurrentPoint_ = true;
}

void DevicePath::addOneByOne(std::span<const MzPoint> points) {
    moveTo(points.front());
    for (const MzPoint& point : points.subspan(1)) {
        lineTo(point);
    }
}

void DevicePath::addMappedCurve(MzPoint control1, MzPoint control2, MzPoint end,
                                const AffineTransform& transform) {
    curveTo(transform.transformPoint(control1), transform.transformPoint(control2),
            transform.transformPoint(end));
}

void DevicePath::addEllipse(MzRect rect, const AffineTransform& transform) {
    const double a = rect.size.width * 0.5;
    const double b = rect.size.height * 0.5;
    const MzPoint c{rect.origin.x + a, rect.origin.y + b};
    const double ka = a * quarterCircleControl;
    const double kb = b * quarterCircleControl;
    moveTo(transform.transformPoint({c.x + a, c.y}));
    addMappedCurve({c.x + a, c.y + kb}, {c.x + ka, c.y + b}, {c.x, c.y + b}, transform);
    addMappedCurve({c.x - ka, c.y + b}, {c.x - a, c.y + kb}, {c.x - a, c.y}, transform);
    addMappedCurve({c.x - a, c.y - kb}, {c.x - ka, c.y - b}, {c.x, c.y - b}, transform);
    addMappedCurve({c.x + ka, c.y - b}, {c.x + a, c.y - kb}, {c.x + a, c.y}, transform);
    close();
}

void DevicePath::addArc(MzPoint corner, MzPoint end, double radius,
                        const AffineTransform& transform) {
    const auto inverse = transform.inverse();
    const auto current = currentPoint();
    const auto arc = inverse && current
                         ? cornerArc(inverse->transformPoint(*current), corner, end, radius)
                         : std::nullopt;
    if (!arc) {
        lineTo(transform.transformPoint(corner));
        return;
    }
    lineTo(transform.transformPoint((*arc)[0]));
    addMappedCurve((*arc)[1], (*arc)[2], (*arc)[3], transform);
    addMappedCurve((*arc)[4], (*arc)[5], (*arc)[6], transform);
}

void DevicePath::transform(const AffineTransform& transform) {
    transform.transformPoints(points_, points_);
    start_ = transform.transformPoint(start_);
}

std::optional<MzPoint> DevicePath::currentPoint() const {
    if (!hasCurrentPoint_) {
        return std::nullopt;
    }
    return verbs_.back() == Verb::Close ? start_ : points_.back();
}

DeviceBox DevicePath::bounds() const {
    DeviceBox box{infinity, infinity, -infinity, -infinity};
    for (const MzPoint& point : points_) {
        box.minX = std::min(box.minX, point.x);
        box.minY = std::min(box.minY, point.y);
        box.maxX = std::max(box.maxX, point.x);
        box.maxY = std::max(box.maxY, point.y);
    }
    return box;
}

}  // namespace mezalith::platform
