// SPDX-License-Identifier: MIT
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/style/point_symbolizer.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace mezalith {

namespace {

using platform::Color;
using platform::GraphicsPort;
using platform::PathDrawingMode;
using platform::Shadow;

/// That of the halo of what is selected.
constexpr MzSize kHaloShadowOffset{3.5, 1.5};

constexpr std::int64_t kOwnPropertyContext = 0;

/// Settled: the factor is computed in single precision.
constexpr float kInnerStarRadius = 1.0F - 0.65F;

std::shared_ptr<const Shadow> defaultShadow() {
    const auto shadow = std::make_shared<Shadow>();
    shadow->offset = {1.5, 1.5};
    shadow->blurRadius = 1.0;
    return shadow;
}

float haloSize(float symbolSize) { return static_cast<float>(double{symbolSize} * 1.5 + 2.0); }

double alphaOf(const Color* color) { return color != nullptr ? color->alphaComponent() : 0; }

/// Zeros where there is no colour.
std::array<double, 4> deviceRGB(const std::shared_ptr<const Color>& color) {
    const auto rgb = color != nullptr ? color->deviceRGB() : std::nullopt;
    return rgb.value_or(std::array<double, 4>{});
}

/// The angle of vertex `index` of `count` on a full turn from `start`.
double vertexAngle(double start, int index, int count) {
    if (index == 0) return start;
    return double{static_cast<float>(start + index * 2.0 * std::numbers::pi / count)};
}

/// A closed outline with vertices at `radius` and, every other time, at `oddRadius`.
void addOutline(GraphicsPort& port, double start, int count, double radius, double oddRadius) {
    for (int i = 0; i < count; ++i) {
        const double angle = vertexAngle(start, i, count);
        const double distance = i % 2 == 0 ? radius : oddRadius;
        const MzPoint vertex{distance * std::sin(angle), distance * std::cos(angle)};
        if (i == 0) {
            port.moveToPoint(vertex.x, vertex.y);
        } else {
            port.addLineToPoint(vertex.x, vertex.y);
        }
    }
    port.closeSubpath();
}

bool isWithin(MzPoint a, MzPoint b, double tolerance) {
    return std::abs(a.x - b.x) + std::abs(a.y - b.y) < tolerance;
}

}  // namespace

MzPointSymbolizer::MzPointSymbolizer()
    : strokeColor_(Color::blackColor()), fillColor_(Color::cyanColor()), shadow_(defaultShadow()) {
    stroke_.strokeWidth = 0.5F;
    for (const std::string& key : MzPointSymbolizer::drawPropertyKeyPaths()) {
        addObserver(this, key, kOwnPropertyContext);
    }
}

std::shared_ptr<MzPointSymbolizer> MzPointSymbolizer::initWithCoder(
    const platform::KeyedUnarchiver& coder) {
    auto point = std::make_shared<MzPointSymbolizer>();
    point->decodeWithCoder(coder);
    return point;
}

// --- properties

void MzPointSymbolizer::setShouldStroke(bool stroke) {
    setProperty("shouldStroke", shouldStroke_, stroke);
}

void MzPointSymbolizer::setStrokeColor(std::shared_ptr<const Color> color) {
    changeValues({"strokeColor", "strokeOpacity"}, [&] { strokeColor_ = std::move(color); });
}

double MzPointSymbolizer::strokeOpacity() const { return alphaOf(strokeColor_.get()); }

void MzPointSymbolizer::setStrokeOpacity(double opacity) {
    changeValues({"strokeOpacity", "strokeColor"},
                 [&] { strokeColor_ = colorWithOpacity(strokeColor_, opacity); });
}

void MzPointSymbolizer::setShouldFill(bool fill) { setProperty("shouldFill", shouldFill_, fill); }

void MzPointSymbolizer::setFillColor(std::shared_ptr<const Color> color) {
    changeValues({"fillColor", "fillOpacity"}, [&] { fillColor_ = std::move(color); });
}

double MzPointSymbolizer::fillOpacity() const { return alphaOf(fillColor_.get()); }

void MzPointSymbolizer::setFillOpacity(double opacity) {
    changeValues({"fillOpacity", "fillColor"},
                 [&] { fillColor_ = colorWithOpacity(fillColor_, opacity); });
}

void MzPointSymbolizer::setSymbolType(std::int32_t type) {
    setProperty("symbolType", symbolType_, type);
}

void MzPointSymbolizer::setSymbolSize(float size) { setProperty("symbolSize", symbolSize_, size); }

void MzPointSymbolizer::setSymbolRotation(float degrees) {
    setProperty("symbolRotation", symbolRotation_, degrees);
}

void MzPointSymbolizer::setSymbolOpacity(float opacity) {
    setProperty("symbolOpacity", symbolOpacity_, opacity);
}

void MzPointSymbolizer::setShouldShadow(bool shadow) {
    setProperty("shouldShadow", shouldShadow_, shadow);
}

void MzPointSymbolizer::setShadow(const std::shared_ptr<const Shadow>& shadow) {
    changeValues(
        {"shadow", "shadowOffsetWidth", "shadowOffsetHeight", "shadowBlurRadius", "shadowColor"},
        [&] { shadow_ = shadow ? std::make_shared<const Shadow>(*shadow) : nullptr; });
}

template <typename Edit>
void MzPointSymbolizer::changeShadow(std::string_view key, Edit edit) {
    changeValues({key, "shadow"}, [&] {
        if (shadow_ == nullptr) return;
        const auto edited = std::make_shared<Shadow>(*shadow_);
        edit(*edited);
        shadow_ = edited;
    });
}

double MzPointSymbolizer::shadowOffsetWidth() const {
    return shadow_ != nullptr ? shadow_->offset.width : 0;
}

void MzPointSymbolizer::setShadowOffsetWidth(double width) {
    changeShadow("shadowOffsetWidth", [&](Shadow& shadow) { shadow.offset.width = width; });
}

double MzPointSymbolizer::shadowOffsetHeight() const {
    return shadow_ != nullptr ? shadow_->offset.height : 0;
}

void MzPointSymbolizer::setShadowOffsetHeight(double height) {
    changeShadow("shadowOffsetHeight", [&](Shadow& shadow) { shadow.offset.height = height; });
}

double MzPointSymbolizer::shadowBlurRadius() const {
    return shadow_ != nullptr ? shadow_->blurRadius : 0;
}

void MzPointSymbolizer::setShadowBlurRadius(double radius) {
    changeShadow("shadowBlurRadius", [&](Shadow& shadow) { shadow.blurRadius = radius; });
}

std::shared_ptr<const Color> MzPointSymbolizer::shadowColor() const {
    return shadow_ != nullptr ? shadow_->color : nullptr;
}

void MzPointSymbolizer::setShadowColor(std::shared_ptr<const Color> color) {
    changeShadow("shadowColor", [&](Shadow& shadow) { shadow.color = std::move(color); });
}

void MzPointSymbolizer::setTheLayer(std::shared_ptr<platform::Layer> layer) {
    setProperty("theLayer", theLayer_, std::move(layer));
}

std::vector<std::string> MzPointSymbolizer::drawPropertyKeyPaths() const {
    return {"shouldStroke",   "shouldFill", "strokeColor",  "fillColor",
            "strokeWidth",    "lineJoin",   "lineCap",      "lineDashOffset",
            "lineDashCount",  "isDashed",   "symbolType",   "symbolOpacity",
            "symbolRotation", "symbolSize", "shouldShadow", "shadow"};
}

void MzPointSymbolizer::observeValueForKey(const std::string&, platform::Observable*,
                                           const platform::Change&, std::int64_t) {
    changeValues({MzDrawPropertyKey}, [&] { theLayer_ = nullptr; });
}

// --- drawing

void MzPointSymbolizer::drawSpatialObject(MzSpatialObjectDrawAdditions* object,
                                          MzDrawContext* context, bool selected) {
    if (drawsNothing()) return;
    const std::shared_ptr<MzGeometry> geometry = visibleGeometry(object, context);
    if (geometry == nullptr) return;
    if (selected) halo()->drawSpatialObject(object, context, false);
    GraphicsPort* const port = currentGraphicsPort();
    if (port == nullptr) return;
    makeLayer(*port, context->scaleFactor());
    const std::shared_ptr<MzClippingRegion> region = context->clippingRegion();
    if (auto* point = dynamic_cast<MzPointGeometry*>(geometry.get())) {
        stampOne(*port, point->clippedPointWithRegion(region.get()));
    } else if (auto* points = dynamic_cast<MzMultiPointGeometry*>(geometry.get())) {
        stampAll(*port, pointsOf(points->clippedMultiPointWithRegion(region.get())));
    } else if (auto* polygon = dynamic_cast<MzPolygonGeometry*>(geometry.get())) {
        const auto centroid = MzPointGeometry::geometryWithPointPtr(polygon->centroid());
        if (centroid == nullptr) return;
        drawAt(*port, centroid->clippedPointWithRegion(region.get()), context->scaleFactor());
    }
}

std::shared_ptr<MzPointSymbolizer> MzPointSymbolizer::halo() const {
    std::shared_ptr<MzPointSymbolizer> halo = copy();
    halo->setSymbolSize(haloSize(symbolSize_));
    halo->setFillColor(Color::blackColor());
    halo->setFillOpacity(double{0.8F});
    halo->setShouldStroke(false);
    halo->setShouldFill(true);
    halo->setShouldShadow(true);
    halo->setShadowOffsetWidth(kHaloShadowOffset.width);
    halo->setShadowOffsetHeight(kHaloShadowOffset.height);
    return halo;
}

// Settled: the scale factor enlarges the marker but not its layer.
double MzPointSymbolizer::layerSide() const { return 2.0 * double{symbolSize_ + strokeWidth()}; }

void MzPointSymbolizer::makeLayer(GraphicsPort& port, double scaleFactor) {
    if (theLayer_ != nullptr) return;
    const double side = layerSide();
    theLayer_ = port.createLayer({side, side});
    GraphicsPort* const layerPort = theLayer_ != nullptr ? theLayer_->port() : nullptr;
    if (layerPort == nullptr) return;
    layerPort->saveState();
    layerPort->translate(side / 2, side / 2);
    symbolizeInContext(layerPort, scaleFactor);
    layerPort->restoreState();
}

void MzPointSymbolizer::applyShadow(GraphicsPort& port) const {
    if (!shouldShadow_) {
        port.setShadowWithColor({0, 0}, 0, nullptr);
    } else if (shadow_ != nullptr) {
        shadow_->set();
    }
}

void MzPointSymbolizer::stamp(GraphicsPort& port, MzPoint point) const {
    const double half = layerSide() / 2;
    port.translate(point.x - half, point.y - half);
    port.drawLayerAtPoint(theLayer_.get(), {0, 0});
}

void MzPointSymbolizer::stampOne(GraphicsPort& port, const MzPoint* point) const {
    if (point == nullptr) return;
    port.saveState();
    applyShadow(port);
    stamp(port, *point);
    port.restoreState();
}

void MzPointSymbolizer::stampAll(GraphicsPort& port, std::span<const MzPoint> points) const {
    port.saveState();
    applyShadow(port);
    for (const MzPoint& point : points) {
        port.saveState();
        stamp(port, point);
        port.restoreState();
    }
    port.restoreState();
}

void MzPointSymbolizer::drawAt(GraphicsPort& port, const MzPoint* point, double scaleFactor) {
    if (point == nullptr) return;
    port.saveState();
    port.translate(point->x, point->y);
    symbolizeInContext(&port, scaleFactor);
    port.restoreState();
}

bool MzPointSymbolizer::paintsAtPoint(MzSpatialObjectDrawAdditions* object, MzPoint point,
                                      double tolerance, MzDrawContext* context, bool selected) {
    // A layer belongs to the kind of port that made it.
    const auto kept = std::exchange(theLayer_, nullptr);
    const bool paints =
        MzStrokedSymbolizer::paintsAtPoint(object, point, tolerance, context, selected);
    theLayer_ = kept;
    return paints;
}

double MzPointSymbolizer::paintReach(double scaleFactor) const {
    const double size = double{std::max(haloSize(symbolSize_), symbolSize_)};
    // Layers are whole pixels.
    const double layerCorner = std::numbers::sqrt2 * (size + double{strokeWidth()} + 1);
    const double outline = size * scaleFactor / 2 + MzStrokedSymbolizer::paintReach(scaleFactor);
    const double haloShadow = platform::shadowReach(kHaloShadowOffset, defaultShadow()->blurRadius);
    const double ownShadow = shouldShadow_ && shadow_ != nullptr
                                 ? platform::shadowReach(shadow_->offset, shadow_->blurRadius)
                                 : 0;
    return std::max(layerCorner, outline) + std::max(haloShadow, ownShadow);
}

bool MzPointSymbolizer::isSpatialObject(MzSpatialObjectDrawAdditions* object, MzPoint point,
                                        MzDrawContext* context, bool) {
    if (drawsNothing()) return false;
    const std::shared_ptr<MzGeometry> geometry = visibleGeometry(object, context);
    if (geometry == nullptr) return false;
    const double tolerance = double{symbolSize_} + 0.5 * double{strokeWidth()};
    const std::shared_ptr<MzClippingRegion> region = context->clippingRegion();
    if (auto* single = dynamic_cast<MzPointGeometry*>(geometry.get())) {
        const MzPoint* clipped = single->clippedPointWithRegion(region.get());
        return clipped != nullptr && isWithin(*clipped, point, tolerance);
    }
    auto* several = dynamic_cast<MzMultiPointGeometry*>(geometry.get());
    if (several == nullptr) return false;
    return std::ranges::any_of(
        pointsOf(several->clippedMultiPointWithRegion(region.get())),
        [&](MzPoint clipped) { return isWithin(clipped, point, tolerance); });
}

void MzPointSymbolizer::symbolizeInContext(GraphicsPort* port, double scaleFactor) {
    if (port == nullptr) return;
    stroke_.applyTo(*port, scaleFactor);
    if (shouldFill_) {
        const auto [red, green, blue, alpha] = deviceRGB(fillColor_);
        port->setRGBFillColor(red, green, blue, alpha);
    }
    if (shouldStroke_) {
        const auto [red, green, blue, alpha] = deviceRGB(strokeColor_);
        port->setRGBStrokeColor(red, green, blue, alpha);
    }
    if (shouldShadow_ && shouldFill_ && shouldStroke_) {
        port->saveState();
        applyShadow(*port);
        drawSymbolInContext(port, scaleFactor);
        port->drawPath(PathDrawingMode::EvenOddFill);
        port->restoreState();
        drawSymbolInContext(port, scaleFactor);
        port->drawPath(PathDrawingMode::Stroke);
    } else {
        applyShadow(*port);
        drawSymbolInContext(port, scaleFactor);
        drawEvenOddPath(*port, shouldFill_, shouldStroke_);
    }
}

// --- shapes

void MzPointSymbolizer::drawSymbolInContext(GraphicsPort* port, double scaleFactor) const {
    switch (symbolType_) {
        case 0:
            return drawSquareInContext(port, scaleFactor);
        case 1:
            return drawCircleInContext(port, scaleFactor);
        case 2:
            return drawTriangleInContext(port, scaleFactor);
        case 3:
            return drawCrossInContext(port, scaleFactor);
        case 4:
            return drawStarInContext(port, scaleFactor);
        default:
            return;
    }
}

double MzPointSymbolizer::radius(double scaleFactor) const {
    return double{symbolSize_} * scaleFactor * 0.5;
}

double MzPointSymbolizer::rotation() const {
    return double{symbolRotation_} * std::numbers::pi / 180.0;
}

void MzPointSymbolizer::drawSquareInContext(GraphicsPort* port, double scaleFactor) const {
    if (port == nullptr) return;
    const double r = radius(scaleFactor);
    addOutline(*port, rotation() + std::numbers::pi / 4, 4, r, r);
}

void MzPointSymbolizer::drawCircleInContext(GraphicsPort* port, double scaleFactor) const {
    if (port == nullptr) return;
    const double r = radius(scaleFactor);
    port->addEllipseInRect({{-r, -r}, {2 * r, 2 * r}});
}

void MzPointSymbolizer::drawTriangleInContext(GraphicsPort* port, double scaleFactor) const {
    if (port == nullptr) return;
    const double r = radius(scaleFactor);
    addOutline(*port, rotation(), 3, r, r);
}

void MzPointSymbolizer::drawCrossInContext(GraphicsPort* port, double scaleFactor) const {
    if (port == nullptr) return;
    const double r = radius(scaleFactor);
    const double angle = double{symbolRotation_} * std::numbers::pi / -180.0;
    const double s = std::sin(angle);
    const double c = std::cos(angle);
    port->moveToPoint(-r * s, r * c);
    port->addLineToPoint(r * s, -r * c);
    port->moveToPoint(r * c, r * s);
    port->addLineToPoint(-r * c, -r * s);
}

void MzPointSymbolizer::drawStarInContext(GraphicsPort* port, double scaleFactor) const {
    if (port == nullptr) return;
    const double r = radius(scaleFactor);
    addOutline(*port, rotation(), 10, r, double{kInnerStarRadius} * r);
}

// --- copying, comparing, archiving

std::shared_ptr<MzPointSymbolizer> MzPointSymbolizer::copy() const {
    return std::static_pointer_cast<MzPointSymbolizer>(MzSymbolizer::copy());
}

std::shared_ptr<MzSymbolizer> MzPointSymbolizer::newInstance() const {
    return std::make_shared<MzPointSymbolizer>();
}

void MzPointSymbolizer::copyPropertiesTo(MzSymbolizer& copy) const {
    auto& point = static_cast<MzPointSymbolizer&>(copy);
    point.shouldFill_ = shouldFill_;
    point.shouldStroke_ = shouldStroke_;
    point.strokeColor_ = strokeColor_;
    point.fillColor_ = fillColor_;
    point.stroke_.lineDashCount = lineDashCount();
    point.stroke_.copyFrom(stroke_);
    point.symbolType_ = symbolType_;
    point.symbolSize_ = symbolSize_;
    point.symbolRotation_ = symbolRotation_;
    point.symbolOpacity_ = symbolOpacity_;
}

bool MzPointSymbolizer::isEqualToPointSymbolizer(const MzPointSymbolizer* other) const {
    return other != nullptr && shouldStroke_ == other->shouldStroke_ &&
           shouldFill_ == other->shouldFill_ && stroke_.isEqualTo(other->stroke_) &&
           isDashed() == other->isDashed() && symbolType_ == other->symbolType_ &&
           symbolOpacity_ == other->symbolOpacity_ && symbolRotation_ == other->symbolRotation_ &&
           symbolSize_ == other->symbolSize_ &&
           platform::isEqualToColor(strokeColor_, other->strokeColor_) &&
           platform::isEqualToColor(fillColor_, other->fillColor_);
}

bool MzPointSymbolizer::hasEqualProperties(const MzSymbolizer& other) const {
    return isEqualToPointSymbolizer(dynamic_cast<const MzPointSymbolizer*>(&other));
}

void MzPointSymbolizer::encodeWithCoder(platform::KeyedArchiver& coder) const {
    coder.encodeBool(shouldStroke_, "shouldStroke");
    coder.encodeBool(shouldFill_, "shouldFill");
    coder.encodeObject(strokeColor_.get(), "strokeColor");
    coder.encodeObject(fillColor_.get(), "fillColor");
    coder.encodeFloat(strokeWidth(), "strokeWidth");
    stroke_.encodeWithCoder(coder);
    coder.encodeInt(symbolType_, "symbolType");
    coder.encodeFloat(symbolSize_, "symbolSize");
    coder.encodeFloat(symbolRotation_, "symbolRotation");
    coder.encodeFloat(symbolOpacity_, "symbolOpacity");
    coder.encodeBool(shouldShadow_, "shouldShadow");
    coder.encodeObject(shadow_.get(), "shadow");
}

void MzPointSymbolizer::decodeWithCoder(const platform::KeyedUnarchiver& coder) {
    shouldStroke_ = coder.decodeBool("shouldStroke");
    shouldFill_ = coder.decodeBool("shouldFill");
    strokeColor_ = decodeColor(coder, "strokeColor");
    fillColor_ = decodeColor(coder, "fillColor");
    stroke_.strokeWidth = coder.decodeFloat("strokeWidth");
    stroke_.decodeWithCoder(coder);
    symbolType_ = coder.decodeInt("symbolType");
    symbolSize_ = coder.decodeFloat("symbolSize");
    symbolRotation_ = coder.decodeFloat("symbolRotation");
    symbolOpacity_ = coder.decodeFloat("symbolOpacity");
    shouldShadow_ = coder.decodeBool("shouldShadow");
    shadow_ = platform::decodedObject<Shadow>(coder, "Shadow", "shadow").value_or(nullptr);
}

}  // namespace mezalith
