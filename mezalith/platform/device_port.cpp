// SPDX-License-Identifier: MIT
#include <mezalith/platform/device_port.hpp>

#include <algorithm>
#include <cmath>
#include <utility>

namespace mezalith::platform {
namespace {

constexpr double defaultShadowAlpha = 1.0 / 3;

double fraction(double value) { return value > 0 ? std::min(value, 1.0) : 0; }

Rgba rgba(double red, double green, double blue, double alpha) {
    return {fraction(red), fraction(green), fraction(blue), fraction(alpha)};
}

std::optional<Rgba> deviceColor(const Color* color) {
    const auto c = color != nullptr ? color->deviceRGB() : std::nullopt;
    return c ? std::optional(rgba((*c)[0], (*c)[1], (*c)[2], (*c)[3])) : std::nullopt;
}

bool isSide(double side, double largest) { return side > 0 && side <= largest; }

}  // namespace

AffineTransform topDownSquareOver(MzRect rect) {
    const MzSize size = rect.size;
    return {size.width, 0, 0, -size.height, rect.origin.x, rect.origin.y + size.height};
}

bool isSizeUpTo(MzSize size, double largest) {
    return isSide(size.width, largest) && isSide(size.height, largest);
}

DevicePort::~DevicePort() = default;

void DevicePort::saveState() {
    savedStates_.push_back(state_);
    saveClip();
}

void DevicePort::restoreState() {
    if (savedStates_.empty()) {
        return;
    }
    state_ = std::move(savedStates_.back());
    savedStates_.pop_back();
    restoreClip();
}

void DevicePort::transform(const AffineTransform& first) {
    state_.transform = state_.transform.prepending(first);
}

void DevicePort::translate(double tx, double ty) { transform({1, 0, 0, 1, tx, ty}); }

void DevicePort::rotate(double radians) {
    const double sine = std::sin(radians);
    const double cosine = std::cos(radians);
    transform({cosine, sine, -sine, cosine, 0, 0});
}

void DevicePort::scale(double sx, double sy) { transform({sx, 0, 0, sy, 0, 0}); }

void DevicePort::concat(const AffineTransform& transform) { this->transform(transform); }

void DevicePort::setLineWidth(double width) { state_.stroke.width = width; }

void DevicePort::setLineCap(LineCap cap) {
    if (cap <= LineCap::Square) {
        state_.stroke.cap = cap;
    }
}

void DevicePort::setLineJoin(LineJoin join) {
    if (join <= LineJoin::Bevel) {
        state_.stroke.join = join;
    }
}

void DevicePort::setLineDash(double phase, std::span<const double> lengths) {
    state_.stroke.dashPhase = phase;
    state_.stroke.dashLengths.assign(lengths.begin(), lengths.end());
}

void DevicePort::setStrokeColor(const Color* color) {
    state_.strokeColor = deviceColor(color).value_or(state_.strokeColor);
}

void DevicePort::setFillColor(const Color* color) {
    state_.fillColor = deviceColor(color).value_or(state_.fillColor);
}

void DevicePort::setRGBStrokeColor(double red, double green, double blue, double alpha) {
    state_.strokeColor = rgba(red, green, blue, alpha);
}

void DevicePort::setRGBFillColor(double red, double green, double blue, double alpha) {
    state_.fillColor = rgba(red, green, blue, alpha);
}

void DevicePort::setShadow(MzSize offset, double blur, const std::optional<Rgba>& color) {
    state_.shadow.reset();
    if (color && color->alpha > 0 && !std::isnan(offset.width) && !std::isnan(offset.height) &&
        !std::isnan(blur)) {
        state_.shadow = {offset, blur, *color};
    }
}

void DevicePort::setShadow(MzSize offset, double blur) {
    setShadow(offset, blur, Rgba{0, 0, 0, defaultShadowAlpha});
}

void DevicePort::setShadowWithColor(MzSize offset, double blur, const Color* color) {
    setShadow(offset, blur, deviceColor(color));
}

void DevicePort::beginPath() { path_.clear(); }

void DevicePort::moveToPoint(double x, double y) { path_.moveTo(device(x, y)); }

void DevicePort::addLineToPoint(double x, double y) { path_.lineTo(device(x, y)); }

void DevicePort::addCurveToPoint(double cp1x, double cp1y, double cp2x, double cp2y, double x,
                                 double y) {
    path_.curveTo(device(cp1x, cp1y), device(cp2x, cp2y), device(x, y));
}

void DevicePort::addArcToPoint(double x1, double y1, double x2, double y2, double radius) {
    path_.addArc({x1, y1}, {x2, y2}, radius, state_.transform);
}

void DevicePort::addEllipseInRect(MzRect rect) { path_.addEllipse(rect, state_.transform); }

void DevicePort::closeSubpath() { path_.close(); }

void DevicePort::addLines(std::span<const MzPoint> points) {
    path_.addLines(points, state_.transform);
}

void DevicePort::clipEvenOdd() {
    clipTo(path_);
    path_.clear();
}

void DevicePort::drawPath(PathDrawingMode mode) {
    switch (mode) {
        case PathDrawingMode::Fill:
            fill(path_, FillRule::Winding);
            break;
        case PathDrawingMode::EvenOddFill:
            fill(path_, FillRule::EvenOdd);
            break;
        case PathDrawingMode::Stroke:
            stroke(path_);
            break;
        case PathDrawingMode::FillStroke:
            fill(path_, FillRule::Winding);
            stroke(path_);
            break;
        case PathDrawingMode::EvenOddFillStroke:
            fill(path_, FillRule::EvenOdd);
            stroke(path_);
            break;
    }
    path_.clear();
}

}  // namespace mezalith::platform
