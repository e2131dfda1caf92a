// SPDX-License-Identifier: MIT
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/platform/shadow.hpp>
#include <mezalith/style/line_symbolizer.hpp>

namespace mezalith {

namespace {

/// Makes the polyline the continuation of the port's current path. NO, leaving the port alone, when
/// it has no segment.
bool addPolyline(platform::GraphicsPort& port, const MzLineString* line) {
    const std::span<const MzPoint> points = pointsOf(line);
    if (points.size() < 2) return false;
    port.addLines(points);
    return true;
}

}  // namespace

MzLineSymbolizer::MzLineSymbolizer() : strokeColor_(platform::Color::cyanColor()) {}

std::shared_ptr<MzLineSymbolizer> MzLineSymbolizer::initWithCoder(
    const platform::KeyedUnarchiver& coder) {
    auto line = std::make_shared<MzLineSymbolizer>();
    line->decodeWithCoder(coder);
    return line;
}

void MzLineSymbolizer::setStrokeColor(std::shared_ptr<const platform::Color> color) {
    setProperty("strokeColor", strokeColor_, std::move(color));
}

void MzLineSymbolizer::setStrokeOpacity(float opacity) {
    setProperty("strokeOpacity", strokeOpacity_, opacity);
}

void MzLineSymbolizer::setShouldShadow(bool shadow) {
    setProperty("shouldShadow", shouldShadow_, shadow);
}

void MzLineSymbolizer::setXShadowOffset(float offset) {
    setProperty("xShadowOffset", xShadowOffset_, offset);
}

void MzLineSymbolizer::setYShadowOffset(float offset) {
    setProperty("yShadowOffset", yShadowOffset_, offset);
}

void MzLineSymbolizer::setShadowBlur(float blur) { setProperty("shadowBlur", shadowBlur_, blur); }

std::vector<std::string> MzLineSymbolizer::drawPropertyKeyPaths() const {
    return {"strokeColor",  "strokeOpacity",  "strokeWidth",   "lineJoin",
            "lineCap",      "lineDashOffset", "lineDashCount", "isDashed",
            "shouldShadow", "xShadowOffset",  "yShadowOffset", "shadowBlur"};
}

std::shared_ptr<MzLineSymbolizer> MzLineSymbolizer::copy() const {
    return std::static_pointer_cast<MzLineSymbolizer>(MzSymbolizer::copy());
}

bool MzLineSymbolizer::isEqualToLineSymbolizer(const MzLineSymbolizer* other) const {
    return other != nullptr && stroke_.isEqualTo(other->stroke_) &&
           strokeOpacity_ == other->strokeOpacity_ &&
           platform::isEqualToColor(strokeColor_, other->strokeColor_);
}

void MzLineSymbolizer::drawSpatialObject(MzSpatialObjectDrawAdditions* object,
                                         MzDrawContext* context, bool) {
    const std::shared_ptr<MzGeometry> geometry = visibleGeometry(object, context);
    platform::GraphicsPort* const port = currentGraphicsPort();
    if (geometry == nullptr || port == nullptr) return;
    if (auto* points = dynamic_cast<MzMultiPointGeometry*>(geometry.get())) {
        const std::shared_ptr<MzClippingRegion> region = context->clippingRegion();
        if (addPolyline(*port, points->clippedLineStringWithRegion(region.get()))) {
            symbolizeInContext(port, context->scaleFactor());
        }
    } else {
        drawPolygons(*geometry, *context, *port);
    }
}

void MzLineSymbolizer::symbolizeInContext(platform::GraphicsPort* port, double scaleFactor) {
    if (port == nullptr) return;
    stroke_.applyTo(*port, scaleFactor);
    port->setStrokeColor(colorWithOpacity(strokeColor_, double{strokeOpacity_}).get());
    if (shouldShadow_) {
        port->setShadow(shadowOffset(scaleFactor), double{shadowBlur_});
    }
    port->drawPath(platform::PathDrawingMode::Stroke);
}

double MzLineSymbolizer::paintReach(double scaleFactor) const {
    const double shadow =
        shouldShadow_ ? platform::shadowReach(shadowOffset(scaleFactor), double{shadowBlur_}) : 0;
    return MzStrokedSymbolizer::paintReach(scaleFactor) + shadow;
}

void MzLineSymbolizer::encodeWithCoder(platform::KeyedArchiver& coder) const {
    coder.encodeObject(strokeColor_.get(), "strokeColor");
    coder.encodeFloat(strokeWidth(), "strokeWidth");
    coder.encodeFloat(strokeOpacity_, "strokeOpacity");
    stroke_.encodeWithCoder(coder);
}

void MzLineSymbolizer::decodeWithCoder(const platform::KeyedUnarchiver& coder) {
    strokeColor_ = decodeColor(coder, "strokeColor");
    stroke_.strokeWidth = coder.decodeFloat("strokeWidth");
    strokeOpacity_ = coder.decodeFloat("strokeOpacity");
    stroke_.decodeWithCoder(coder);
    xShadowOffset_ = yShadowOffset_ = shadowBlur_ = 0;
}

std::shared_ptr<MzSymbolizer> MzLineSymbolizer::newInstance() const {
    return std::make_shared<MzLineSymbolizer>();
}

void MzLineSymbolizer::copyPropertiesTo(MzSymbolizer& copy) const {
    auto& line = static_cast<MzLineSymbolizer&>(copy);
    line.strokeColor_ = strokeColor_;
    line.strokeOpacity_ = strokeOpacity_;
    line.stroke_.copyFrom(stroke_);
}

bool MzLineSymbolizer::hasEqualProperties(const MzSymbolizer& other) const {
    return isEqualToLineSymbolizer(dynamic_cast<const MzLineSymbolizer*>(&other));
}

}  // namespace mezalith
