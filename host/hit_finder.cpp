// SPDX-License-Identifier: MIT
#include "host/hit_finder.hpp"

#include <mezalith/platform/hit_port.hpp>

#include <algorithm>
#include <cstdint>
#include <new>
#include <ranges>
#include <set>

namespace mezalith::host {
namespace {

double reachOfStyles(const Layer& layer, double scaleFactor) {
    std::set<const MzStyle*> styles;
    double reach = 0;
    for (const auto& feature : layer.features) {
        const auto style = feature->style();
        if (style != nullptr && styles.insert(style.get()).second) {
            reach = std::max(reach, style->paintReach(scaleFactor));
        }
    }
    return reach;
}

}  // namespace

HitFinder::HitFinder(MapView& view, std::span<const Layer> layers)
    : view_(view), globe_(view.globeOutline()) {
    layers_.reserve(layers.size());
    for (const Layer& layer : layers) layers_.push_back(indexed(layer));
}

HitFinder::IndexedLayer HitFinder::indexed(const Layer& layer) const {
    IndexedLayer result{{}, nullptr, reachOfStyles(layer, view_.scaleFactor())};
    std::vector<MzBox> boxes;
    for (const auto& feature : layer.features) {
        for (const BoundingBox& box : view_.projectedBoxes(*feature)) {
            boxes.push_back({box.minX, box.minY, box.maxX, box.maxY});
            result.features.push_back(feature);
        }
    }
    result.boxes = MzPackedRTree::initWithBoxes(boxes);
    if (result.boxes == nullptr) throw std::bad_alloc();
    return result;
}

bool HitFinder::isOnGlobe(MzPoint point, double tolerance) const {
    if (globe_.empty()) return true;
    platform::HitPort port(point, tolerance);
    for (const GlobeRing& ring : globe_) {
        port.addLines(ring);
        port.closeSubpath();
    }
    port.drawPath(platform::PathDrawingMode::EvenOddFill);
    return port.isHit();
}

std::vector<FeatureHit> HitFinder::at(MzPoint point, double tolerance,
                                      const Selection& isSelected) {
    std::vector<FeatureHit> hits;
    if (!isOnGlobe(point, tolerance)) return hits;
    std::set<const FeatureRecord*> told;
    for (const IndexedLayer& layer : layers_ | std::views::reverse) {
        const BoundingBox near = view_.projectedAround(point, layer.reach + tolerance);
        const auto places =
            layer.boxes->itemsInWindow({near.minX, near.minY, near.maxX, near.maxY});
        for (const std::uint32_t place : places | std::views::reverse) {
            const auto& feature = layer.features[place];
            if (told.contains(feature->record().get())) continue;
            const bool selected = isSelected != nullptr && isSelected(*feature);
            if (auto hit = view_.hit(*feature, point, tolerance, selected)) {
                told.insert(feature->record().get());
                hits.push_back({feature, std::move(*hit)});
            }
        }
    }
    return hits;
}

}  // namespace mezalith::host
