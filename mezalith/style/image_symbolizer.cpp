// SPDX-License-Identifier: MIT
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/style/image_symbolizer.hpp>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace mezalith {

namespace {

/// The point of a point geometry in view points; null for other geometries and out of the region.
const MzPoint* clippedPoint(MzGeometry* geometry, const MzDrawContext& context) {
    auto* point = dynamic_cast<MzPointGeometry*>(geometry);
    return point != nullptr ? point->clippedPointWithRegion(context.clippingRegion().get())
                            : nullptr;
}

}  // namespace

std::shared_ptr<MzImageSymbolizer> MzImageSymbolizer::initWithImage(
    std::shared_ptr<const platform::Image> image, MzPoint hotSpot, double rotation,
    MzSize destinationSize) {
    auto symbolizer = std::make_shared<MzImageSymbolizer>();
    symbolizer->image_ = std::move(image);
    symbolizer->hotSpot_ = hotSpot;
    symbolizer->rotation_ = rotation;
    symbolizer->size_ = destinationSize;
    return symbolizer;
}

std::shared_ptr<MzImageSymbolizer> MzImageSymbolizer::initWithImage(
    std::shared_ptr<const platform::Image> image, MzPoint hotSpot, double rotation) {
    return initWithImage(std::move(image), hotSpot, rotation, {0, 0});
}

void MzImageSymbolizer::setImage(std::shared_ptr<const platform::Image> image) {
    setProperty("image", image_, std::move(image));
}

void MzImageSymbolizer::setHotSpot(MzPoint hotSpot) { setProperty("hotSpot", hotSpot_, hotSpot); }

void MzImageSymbolizer::setRotation(double radians) { setProperty("rotation", rotation_, radians); }

void MzImageSymbolizer::setSize(MzSize size) { setProperty("size", size_, size); }

void MzImageSymbolizer::setLayer(std::shared_ptr<platform::Layer> layer) {
    setProperty("layer", layer_, std::move(layer));
}

std::shared_ptr<platform::Layer> MzImageSymbolizer::layerForContext(platform::GraphicsPort* port) {
    if (layer_ != nullptr || port == nullptr) return layer_;
    layer_ = port->createLayer(size_);
    if (layer_ != nullptr) layer_->port()->drawImageInRect(image_.get(), {{0, 0}, size_});
    return layer_;
}

MzPoint MzImageSymbolizer::originFrom(MzPoint hotSpot) const {
    return {hotSpot.x - hotSpot_.x * size_.width, hotSpot.y - hotSpot_.y * size_.height};
}

void MzImageSymbolizer::drawSpatialObject(MzSpatialObjectDrawAdditions* object,
                                          MzDrawContext* context, bool) {
    const std::shared_ptr<MzGeometry> geometry = visibleGeometry(object, context);
    platform::GraphicsPort* const port = currentGraphicsPort();
    if (geometry == nullptr || port == nullptr) return;
    const MzPoint* const point = clippedPoint(geometry.get(), *context);
    if (point == nullptr) return;
    port->saveState();
    port->translate(point->x, point->y);
    port->rotate(rotation_);
    port->drawLayerAtPoint(layerForContext(port).get(), originFrom({0, 0}));
    port->restoreState();
}

bool MzImageSymbolizer::paintsAtPoint(MzSpatialObjectDrawAdditions* object, MzPoint point,
                                      double tolerance, MzDrawContext* context, bool selected) {
    // A layer belongs to the kind of port that made it.
    const auto kept = std::exchange(layer_, nullptr);
    const bool paints = MzSymbolizer::paintsAtPoint(object, point, tolerance, context, selected);
    layer_ = kept;
    return paints;
}

double MzImageSymbolizer::paintReach(double) const {
    const double across = std::max(std::abs(hotSpot_.x), std::abs(1 - hotSpot_.x)) * size_.width;
    const double up = std::max(std::abs(hotSpot_.y), std::abs(1 - hotSpot_.y)) * size_.height;
    // Layers are whole pixels.
    return std::hypot(across, up) + std::numbers::sqrt2;
}

bool MzImageSymbolizer::isSpatialObject(MzSpatialObjectDrawAdditions* object, MzPoint point,
                                        MzDrawContext* context, bool) {
    const std::shared_ptr<MzGeometry> geometry = visibleGeometry(object, context);
    if (geometry == nullptr) return false;
    const MzPoint* const anchor = clippedPoint(geometry.get(), *context);
    return anchor != nullptr && MzPointInRect(point, {originFrom(*anchor), size_});
}

bool MzImageSymbolizer::isEqualToSymbolizer(const MzSymbolizer* other) const {
    if (other == this) return true;
    if (other == nullptr || other->symbolizerType() != symbolizerType()) return false;
    const auto* image = dynamic_cast<const MzImageSymbolizer*>(other);
    return image != nullptr && image->image_ == image_;
}

std::shared_ptr<MzImageSymbolizer> MzImageSymbolizer::copy() const {
    return std::static_pointer_cast<MzImageSymbolizer>(MzSymbolizer::copy());
}

std::shared_ptr<MzSymbolizer> MzImageSymbolizer::newInstance() const {
    return std::make_shared<MzImageSymbolizer>();
}

void MzImageSymbolizer::copyPropertiesTo(MzSymbolizer& copy) const {
    auto& image = static_cast<MzImageSymbolizer&>(copy);
    image.image_ = image_;
    image.hotSpot_ = hotSpot_;
    image.rotation_ = rotation_;
    image.size_ = size_;
    image.layer_ = layer_;
}

}  // namespace mezalith
