// SPDX-License-Identifier: MIT
#include <mezalith/platform/hit_port.hpp>
#include <mezalith/style/symbolizer.hpp>

#include <limits>

namespace mezalith {

namespace {

/// The types that compare by properties; classes with other codes compare in their own way.
constexpr std::uint32_t kGreatestComparableType = 2;

}  // namespace

MzSymbolizer::~MzSymbolizer() = default;

std::vector<std::string> MzSymbolizer::drawPropertyKeyPaths() const { return {}; }

std::set<std::string> MzSymbolizer::keyPathsForValuesAffectingValueForKey(
    const std::string& key) const {
    if (key != MzDrawPropertyKey) return {};
    const std::vector<std::string> paths = drawPropertyKeyPaths();
    return {paths.begin(), paths.end()};
}

std::shared_ptr<MzSymbolizer> MzSymbolizer::copy() const {
    std::shared_ptr<MzSymbolizer> copy = newInstance();
    copyPropertiesTo(*copy);
    return copy;
}

bool MzSymbolizer::isEqualToSymbolizer(const MzSymbolizer* other) const {
    if (other == this) return true;
    if (other == nullptr || other->symbolizerType() != symbolizerType()) return false;
    return symbolizerType() <= kGreatestComparableType && hasEqualProperties(*other);
}

void MzSymbolizer::drawSpatialObject(MzSpatialObjectDrawAdditions*, MzDrawContext*, bool) {}

bool MzSymbolizer::isSpatialObject(MzSpatialObjectDrawAdditions*, MzPoint, MzDrawContext*, bool) {
    return false;
}

bool MzSymbolizer::paintsAtPoint(MzSpatialObjectDrawAdditions* object, MzPoint point,
                                 double tolerance, MzDrawContext* context, bool selected) {
    platform::HitPort port(point, tolerance);
    const platform::GraphicsContext current(&port);
    drawSpatialObject(object, context, selected);
    return port.isHit();
}

double MzSymbolizer::paintReach(double) const { return std::numeric_limits<double>::infinity(); }

void MzSymbolizer::didRemoveFromContext(MzDrawContext*, MzSpatialObjectDrawAdditions*) {}

std::shared_ptr<MzGeometry> MzSymbolizer::visibleGeometry(
    const MzSpatialObjectDrawAdditions* object, const MzDrawContext* context) {
    if (object == nullptr || context == nullptr) return nullptr;
    const std::shared_ptr<MzGeometry> stored = object->geometry();
    if (stored == nullptr) return nullptr;
    std::shared_ptr<MzGeometry> projected =
        stored->geometryWithProjection(context->mapProjection());
    if (projected == nullptr) return nullptr;
    const std::shared_ptr<MzClippingRegion> region = context->clippingRegion();
    const MzRect cullRect = region != nullptr ? region->clippingRect() : MzZeroRect;
    if (!projected->mbrInsertsectsRect(cullRect)) return nullptr;
    return projected;
}

platform::GraphicsPort* MzSymbolizer::currentGraphicsPort() {
    const platform::GraphicsContext* context = platform::GraphicsContext::current();
    return context != nullptr ? context->graphicsPort() : nullptr;
}

std::shared_ptr<MzSymbolizer> MzSymbolizer::newInstance() const {
    return std::make_shared<MzSymbolizer>();
}

void MzSymbolizer::copyPropertiesTo(MzSymbolizer&) const {}

bool MzSymbolizer::hasEqualProperties(const MzSymbolizer&) const { return false; }

}  // namespace mezalith
