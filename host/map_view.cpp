// SPDX-License-Identifier: MIT
#include "host/map_view.hpp"

#include "host/failure.hpp"
#include "host/region_edge.hpp"
#include <mezalith/geometry/projected_bounds.hpp>

#include <algorithm>
#include <cmath>
#include <ranges>
#include <utility>
#include <vector>

namespace mezalith::host {
namespace {

/// View points around the view that are drawn with it, for symbols as they are; those of regions.
constexpr double kMargin = 50;
/// View points for what a stroke's edge and the pixels of a symbol round.
constexpr double kRounding = 1;

/// Points along each side of an area from which its projected extent is taken.
constexpr int kSamples = 128;

/// How close pieces of the globe follow their curves, backing pixels.
constexpr double kTolerance = 0.25;

double unitsPerPixelFor(const BoundingBox& extent, MzSize size, const MzMapProjection& projection) {
    const double units = std::max(extent.width() / size.width, extent.height() / size.height);
    // A single place is shown as closely as the projection is meant to be seen.
    return units > 0 ? units : projection.maximumResolution();
}

/// Metres to a unit at a point of the plane, or in the middle of the projection's region where
/// that is no place.
double metersPerUnitAt(const MzMapProjection& projection, MzPoint point) {
    MzPoint place = projection.longitudeLatitudeForProjectedCoordinate(point);
    const MzProjectionRegion region = projection.region();
    if (!std::isfinite(place.x) || !std::isfinite(place.y)) place = region.centre;
    return projection.metersPerProjectedUnitForLongitudeLatitude(place);
}

/// Places of the area from which its projected extent is taken: a grid, as the outline may lie
/// within the extent, and the edge of the region.
std::vector<MzPoint> placesWithin(const MzProjectionRegion& region, const BoundingBox& area) {
    std::vector<MzPoint> places = gridOf(area, kSamples);
    std::erase_if(places, [&](MzPoint p) { return !region.holds(p); });
    const RegionEdge edge(region);
    std::vector<MzPoint> rim;
    edge.addPointsBetween(-1, edge.length(), rim);
    for (const MzPoint p : rim) {
        const double turn = 360 * std::ceil((area.minX - p.x) / 360);
        if (p.x + turn <= area.maxX && p.y >= area.minY && p.y <= area.maxY) places.push_back(p);
    }
    return places;
}

}  // namespace

BoundingBox projectedArea(const MzMapProjection& projection, const BoundingBox& area) {
    const MzProjectionRegion region = projection.region();
    std::vector<MzPoint> points;
    if (region.shape == MzProjectionRegion::Shape::Endless) {
        const BoundingBox seen{area.minX, std::max(area.minY, region.south), area.maxX,
                               std::min(area.maxY, region.north)};
        if (!seen.isEmpty()) points = outlineOf(seen, kSamples);
    } else if (!area.isEmpty()) {
        points = placesWithin(region, area);
    }
    projection.projectCoordinates(points, points);
    BoundingBox extent;
    extent.add(points);
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
    scaleDenominator_ = metersPerUnitAt(projection, centre) * unitsPerPixel_ / kPixelSize;
    region_ = MzClippingRegion::initWithDrawContext(this);
    region_->setMinSpacing(frame_.spacing / frame_.pixelRatio * unitsPerPixel_);
    // Strokes along the border stay out of sight, however they are scaled.
    const double margin = kMargin * std::max(1.0, frame_.scaleFactor);
    region_->setClippingRect(around(std::max(margin, frame_.reach.value_or(margin))));
    region_->setExact(true);
    const double reach = frame_.reach ? *frame_.reach + kRounding : margin;
    cutter_ = std::make_unique<ViewCutter>(frame_.projection, BoundingBox::of(around(reach)),
                                           kTolerance / frame_.pixelRatio * unitsPerPixel_);
}

MzRect MapView::around(double margin) const {
    const double units = margin * unitsPerPixel_;
    return MzInsetRect(bounds_, -units, -units);
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

GlobeRings MapView::globeOutline() const {
    GlobeRings rings = cutter_->outline();
    const auto toPoints = projectedToPixelTransform();
    for (GlobeRing& ring : rings) {
        for (MzPoint& p : ring) p = toPoints->transformPoint(p);
    }
    return rings;
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

BoundingBox MapView::projectedAround(MzPoint point, double distance) const {
    const MzPoint centre{bounds_.origin.x + point.x * unitsPerPixel_,
                         bounds_.origin.y + point.y * unitsPerPixel_};
    const double units = distance * unitsPerPixel_;
    return {centre.x - units, centre.y - units, centre.x + units, centre.y + units};
}

BoundingBox MapView::projectedBox(const Feature& piece) const {
    const auto projected = piece.geometry()->geometryWithProjection(frame_.projection);
    return projected != nullptr ? boundsOf(*projected) : BoundingBox{};
}

std::vector<BoundingBox> MapView::projectedBoxes(const Feature& feature) const {
    std::vector<BoundingBox> boxes;
    for (const auto& piece : piecesOf(feature)) boxes.push_back(projectedBox(*piece));
    return boxes;
}

std::optional<MzStyleHit> MapView::hit(const Feature& feature, MzPoint point, double tolerance,
                                       bool selected) {
    const std::shared_ptr<MzStyle> style = feature.style();
    if (style == nullptr) return std::nullopt;
    const BoundingBox reached =
        projectedAround(point, style->paintReach(scaleFactor()) + tolerance);
    const auto pieces = piecesOf(feature);
    for (const auto& piece : pieces | std::views::reverse) {
        if (!reached.meets(projectedBox(*piece))) continue;
        if (auto hit =
                style->paintedHitOfSpatialObject(piece.get(), point, tolerance, this, selected)) {
            return hit;
        }
    }
    return std::nullopt;
}

}  // namespace mezalith::host
