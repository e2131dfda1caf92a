// SPDX-License-Identifier: MIT
#include <mezalith/platform/bezier_path.hpp>

#include <algorithm>
#include <cmath>

namespace mezalith::platform {

void BezierPath::add(const Element& element) {
    const auto isFinite = [](MzPoint p) { return std::isfinite(p.x) && std::isfinite(p.y); };
    if (std::ranges::all_of(element.points, isFinite)) elements_.push_back(element);
}

void BezierPath::moveToPoint(MzPoint point) { add({Verb::Move, {point, {}, {}}}); }

void BezierPath::lineToPoint(MzPoint point) { add({Verb::Line, {point, {}, {}}}); }

void BezierPath::curveToPoint(MzPoint end, MzPoint control1, MzPoint control2) {
    add({Verb::Curve, {control1, control2, end}});
}

void BezierPath::appendArcFromPoint(MzPoint corner, MzPoint end, double radius) {
    add({Verb::Arc, {corner, end, {radius, 0}}});
}

void BezierPath::closePath() { add({Verb::Close, {}}); }

void BezierPath::appendRect(MzRect rect) {
    const double right = rect.origin.x + rect.size.width;
    const double top = rect.origin.y + rect.size.height;
    moveToPoint(rect.origin);
    lineToPoint({right, rect.origin.y});
    lineToPoint({right, top});
    lineToPoint({rect.origin.x, top});
    closePath();
}

void BezierPath::replay(const Element& element, GraphicsPort& port) {
    const auto& [a, b, c] = element.points;
    switch (element.verb) {
        case Verb::Move:
            return port.moveToPoint(a.x, a.y);
        case Verb::Line:
            return port.addLineToPoint(a.x, a.y);
        case Verb::Curve:
            return port.addCurveToPoint(a.x, a.y, b.x, b.y, c.x, c.y);
        case Verb::Arc:
            return port.addArcToPoint(a.x, a.y, b.x, b.y, c.x);
        case Verb::Close:
            return port.closeSubpath();
    }
}

void BezierPath::addTo(GraphicsPort& port) const {
    for (const Element& element : elements_) replay(element, port);
}

void BezierPath::fill(GraphicsPort& port) const {
    if (isEmpty()) return;
    port.beginPath();
    addTo(port);
    port.drawPath(PathDrawingMode::Fill);
}

void BezierPath::stroke(GraphicsPort& port) const {
    if (isEmpty()) return;
    port.saveState();
    port.setLineWidth(lineWidth_);
    port.setLineCap(LineCap::Butt);
    port.setLineJoin(LineJoin::Miter);
    port.setLineDash(0, {});
    port.beginPath();
    addTo(port);
    port.drawPath(PathDrawingMode::Stroke);
    port.restoreState();
}

}  // namespace mezalith::platform
