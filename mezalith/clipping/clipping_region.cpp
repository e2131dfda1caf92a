// SPDX-License-Identifier: MIT
#include <mezalith/clipping/clipping_region.hpp>
#include <mezalith/clipping/region_code.hpp>

#include <utility>

namespace mezalith {
namespace {

constexpr double marginInPixels = 50;
constexpr double spacingInPixels = 2;

}  // namespace

MzClippingContext::~MzClippingContext() = default;

std::shared_ptr<MzClippingRegion> MzClippingRegion::initWithDrawContext(
    const MzClippingContext* context) {
    auto region = std::make_shared<MzClippingRegion>();
    if (context == nullptr) return region;
    const double unit = context->projectedUnitsPerPixel();
    const double outset = -marginInPixels * unit;
    region->setTransform(context->projectedToPixelTransform());
    region->setClippingRect(MzInsetRect(context->projectedBounds(), outset, outset));
    region->setMinSpacing(spacingInPixels * unit);
    return region;
}

void MzClippingRegion::setClippingRect(MzRect rect) {
    clippingRect_ = rect;
    const auto [x, y] = rect.origin;
    const auto [width, height] = rect.size;
    bounds_ = {{{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}}};
    for (std::size_t i = 0; i < edges_.size(); ++i) {
        edges_[i] = MzProjectiveLineFromPoints(bounds_[i], bounds_[(i + 1) % bounds_.size()]);
    }
}

void MzClippingRegion::setTransform(std::shared_ptr<MzAffineTransform> transform) {
    transform_.store(std::move(transform));
}

MzProjectiveLine MzProjectiveLineFromPoints(MzPoint p1, MzPoint p2) {
    return {p1.y - p2.y, p2.x - p1.x, p1.x * p2.y - p1.y * p2.x};
}

MzPoint MzPointIntersectionOfProjectiveLines(MzProjectiveLine l1, MzProjectiveLine l2) {
    const double d = l1.a * l2.b - l1.b * l2.a;
    return {(l1.b * l2.c - l1.c * l2.b) / d, (l1.c * l2.a - l1.a * l2.c) / d};
}

std::int32_t MzRegionCode(MzPoint point, const MzClippingRegion* region) {
    return region == nullptr ? 0 : detail::RegionLimits(*region).codeOf(point);
}

}  // namespace mezalith
