// SPDX-License-Identifier: MIT
#include <mezalith/style/polygon_symbolizer.hpp>

namespace mezalith {

MzPolygonSymbolizer::MzPolygonSymbolizer()
    : fillColor_(platform::Color::cyanColor()), strokeColor_(platform::Color::cyanColor()) {}

std::shared_ptr<MzPolygonSymbolizer> MzPolygonSymbolizer::initWithCoder(
    const platform::KeyedUnarchiver& coder) {
    auto polygon = std::make_shared<MzPolygonSymbolizer>();
    polygon->decodeWithCoder(coder);
    return polygon;
}

void MzPolygonSymbolizer::setShouldFill(bool fill) { setProperty("shouldFill", shouldFill_, fill); }

void MzPolygonSymbolizer::setFillColor(std::shared_ptr<const platform::Color> color) {
    setProperty("fillColor", fillColor_, std::move(color));
}

void MzPolygonSymbolizer::setFillOpacity(float opacity) {
    setProperty("fillOpacity", fillOpacity_, opacity);
}

void MzPolygonSymbolizer::setShouldStroke(bool stroke) {
    setProperty("shouldStroke", shouldStroke_, stroke);
}

void MzPolygonSymbolizer::setStrokeColor(std::shared_ptr<const platform::Color> color) {
    setProperty("strokeColor", strokeColor_, std::move(color));
}

void MzPolygonSymbolizer::setStrokeOpacity(float opacity) {
    setProperty("strokeOpacity", strokeOpacity_, opacity);
}

std::vector<std::string> MzPolygonSymbolizer::drawPropertyKeyPaths() const {
    return {"shouldFill",  "fillColor",      "fillOpacity",   "shouldStroke",
            "strokeColor", "strokeOpacity",  "strokeWidth",   "lineJoin",
            "lineCap",     "lineDashOffset", "lineDashCount", "isDashed"};
}

std::shared_ptr<MzPolygonSymbolizer> MzPolygonSymbolizer::copy() const {
    return std::static_pointer_cast<MzPolygonSymbolizer>(MzSymbolizer::copy());
}

bool MzPolygonSymbolizer::isEqualToPolygonSymbolizer(const MzPolygonSymbolizer* other) const {
    return other != nullptr && shouldStroke_ == other->shouldStroke_ &&
           shouldFill_ == other->shouldFill_ && stroke_.isEqualTo(other->stroke_) &&
           strokeOpacity_ == other->strokeOpacity_ && fillOpacity_ == other->fillOpacity_ &&
           platform::isEqualToColor(strokeColor_, other->strokeColor_) &&
           platform::isEqualToColor(fillColor_, other->fillColor_);
}

void MzPolygonSymbolizer::drawSpatialObject(MzSpatialObjectDrawAdditions* object,
                                            MzDrawContext* context, bool) {
    const std::shared_ptr<MzGeometry> geometry = visibleGeometry(object, context);
    platform::GraphicsPort* const port = currentGraphicsPort();
    if (geometry == nullptr || port == nullptr || !(shouldFill_ || shouldStroke_)) return;
    drawPolygons(*geometry, *context, *port);
}

void MzPolygonSymbolizer::symbolizeInContext(platform::GraphicsPort* port, double scaleFactor) {
    if (port == nullptr) return;
    stroke_.applyTo(*port, scaleFactor);
    if (shouldFill_) port->setFillColor(colorWithOpacity(fillColor_, double{fillOpacity_}).get());
    if (shouldStroke_)
        port->setStrokeColor(colorWithOpacity(strokeColor_, double{strokeOpacity_}).get());
    drawEvenOddPath(*port, shouldFill_, shouldStroke_);
}

void MzPolygonSymbolizer::encodeWithCoder(platform::KeyedArchiver& coder) const {
    coder.encodeBool(shouldStroke_, "shouldStroke");
    coder.encodeBool(shouldFill_, "shouldFill");
    coder.encodeObject(strokeColor_.get(), "strokeColor");
    coder.encodeObject(fillColor_.get(), "fillColor");
    coder.encodeFloat(strokeOpacity_, "strokeOpacity");
    coder.encodeFloat(fillOpacity_, "fillOpacity");
    coder.encodeFloat(strokeWidth(), "strokeWidth");
    stroke_.encodeWithCoder(coder);
}

void MzPolygonSymbolizer::decodeWithCoder(const platform::KeyedUnarchiver& coder) {
    shouldStroke_ = coder.decodeBool("shouldStroke");
    shouldFill_ = coder.decodeBool("shouldFill");
    strokeColor_ = decodeColor(coder, "strokeColor");
    fillColor_ = decodeColor(coder, "fillColor");
    strokeOpacity_ = coder.decodeFloat("strokeOpacity");
    fillOpacity_ = coder.decodeFloat("fillOpacity");
    stroke_.strokeWidth = coder.decodeFloat("strokeWidth");
    stroke_.decodeWithCoder(coder);
}

std::shared_ptr<MzSymbolizer> MzPolygonSymbolizer::newInstance() const {
    return std::make_shared<MzPolygonSymbolizer>();
}

void MzPolygonSymbolizer::copyPropertiesTo(MzSymbolizer& copy) const {
    auto& polygon = static_cast<MzPolygonSymbolizer&>(copy);
    polygon.shouldFill_ = shouldFill_;
    polygon.fillColor_ = fillColor_;
    polygon.fillOpacity_ = fillOpacity_;
    polygon.shouldStroke_ = shouldStroke_;
    polygon.strokeColor_ = strokeColor_;
    polygon.strokeOpacity_ = strokeOpacity_;
    polygon.stroke_.lineDashCount = lineDashCount();
    polygon.stroke_.copyFrom(stroke_);
}

bool MzPolygonSymbolizer::hasEqualProperties(const MzSymbolizer& other) const {
    return isEqualToPolygonSymbolizer(dynamic_cast<const MzPolygonSymbolizer*>(&other));
}

}  // namespace mezalith
