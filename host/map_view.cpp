// SPDX-License-Identifier: MIT
#include "host/map_view.hpp"

#include "host/failure.hpp"
#include <mezalith/geometry/projected_bounds.hpp>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace mezalith::host {
namespace {

/// View points around the view that are drawn with it, for symbols as they are; those of regions.
constexpr double kMargin = 50;

/// Points along each side of an area from which its projected extent is taken.
constexpr int kSamples = 128;

double unitsPerPixelFor(const BoundingBox& extent, MzSize size, const MzMapProjection& projection) {
    const double units = std::max(extent.width() / size.width, extent.height() / size.height);
    // A single place is shown as closely as the projection is meant to be seen.
    return units > 0 ? units : projection.maximumResolution();
}

}  // namespace

BoundingBox projectedArea(const MzMapProjection& projection, const BoundingBox& area) {
    const BoundingBox reach = reachOf(projection);
    const BoundingBox seen{std::max(area.minX, reach.minX), area.minY,
                           std::min(area.maxX, reach.maxX), area.maxY};
    BoundingBox extent;
    if (seen.isEmpty()) return extent;
    std::vector<MzPoint> outline = outlineOf(seen, kSamples);
    projection.projectCoordinates(outline, outline);
    extent.add(outline);
    return extent;
}

MapView::MapView(ViewFrame frame)
    : frame_(std::move(frame)), subviews_(MzRect{{0, 0}, frame_.size}) {
    const MzMapProjection& projection = *frame_.projection;
    const BoundingBox extent = projectedArea(projection, frame_.area);
    if (extent.isEmpty()) throw Failure(projection.name(), "the area lies out of its reach");
    unitsPerPixel_ = unitsPerPixelFor(extent, frame_.size, projection);
    const MzPoint centre = extent.centre();
    const MzSize size{frame_.size.width * unitsPerPixel_, frame_.size.height * unitsPerPixel_};
    bounds_ = {{centre.x - size.width / 2, centre.y - size.height / 2}, size};
    if (!std::isfinite(size.width) || !std::isfinite(size.height)) {
        throw Failure(projection.name(), "the area is too large to be shown");
    }
    scaleDenominator_ = projection.metersPerProjectedUnitForLongitudeLatitude(
                            projection.longitudeLatitudeForProjectedCoordinate(centre)) *
                        unitsPerPixel_ / kPixelSize;
    region_ = MzClippingRegion::initWithDrawContext(this);
    region_->setMinSpacing(frame_.spacing / frame_.pixelRatio * unitsPerPixel_);
    // Strokes along the border stay out of sight, however they are scaled.
    const double margin = kMargin * std::max(1.0, frame_.scaleFactor) * unitsPerPixel_;
    region_->setClippingRect(MzInsetRect(bounds_, -margin, -margin));
    region_->setExact(true);
    cutter_ = std::make_unique<ViewCutter>(projection, BoundingBox::of(region_->clippingRect()));
}

std::shared_ptr<MzAffineTransform> MapView::projectedToPixelTransform() const {
    auto transform = MzAffineTransform::transform();
    transform->scaleBy(1 / unitsPerPixel_);
    transform->translateXBy(-bounds_.origin.x, -bounds_.origin.y);
    return transform;
}

void MapView::addSubview(const std::shared_ptr<platform::View>& view) {
    subviews_.addSubview(view);
}

std::vector<std::shared_ptr<Feature>> MapView::piecesOf(const Feature& feature) const {
    std::vector<std::shared_ptr<Feature>> pieces;
    for (const auto& piece : cutter_->cut({feature.form(), feature.geometry()})) {
        MzFillTransformedBounds(piece.get(), frame_.projection);
        pieces.push_back(feature.withGeometry(piece));
    }
    return pieces;
}

void MapView::draw(const Feature& feature, bool selected) {
    const platform::GraphicsContext* context = platform::GraphicsContext::current();
    platform::GraphicsPort* const port = context != nullptr ? context->graphicsPort() : nullptr;
    // Symbolizers leave shadows and strokes set, which are not for the next feature.
    if (port != nullptr) port->saveState();
    for (const auto& piece : piecesOf(feature)) piece->drawInContext(this, selected);
    if (port != nullptr) port->restoreState();
}

std::optional<MzStyleHit> MapView::hit(const Feature& feature, MzPoint point, bool selected) {
    const std::shared_ptr<MzStyle> style = feature.style();
    if (style == nullptr) return std::nullopt;
    for (const auto& piece : piecesOf(feature)) {
        if (auto hit = style->hitOfSpatialObject(piece.get(), point, this, selected)) return hit;
    }
    return std::nullopt;
}

}  // namespace mezalith::host
