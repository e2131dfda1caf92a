// SPDX-License-Identifier: MIT
#include "host/feature_index.hpp"

#include <new>

namespace mezalith::host {

FeatureIndex::FeatureIndex(std::span<const std::shared_ptr<Feature>> features) {
    std::vector<MzIndexable*> objects;
    objects.reserve(features.size());
    for (const auto& feature : features) objects.push_back(feature.get());
    tree_ = MzPackedRTree::initWithSpatialObjects(objects);
    if (tree_ == nullptr) throw std::bad_alloc();
}

std::vector<std::uint32_t> FeatureIndex::meeting(const BoundingBox& area) const {
    constexpr double kGlobe = 360;
    return tree_->itemsWrapping({area.minX, area.minY, area.maxX, area.maxY}, kGlobe);
}

}  // namespace mezalith::host
