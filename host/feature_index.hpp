// SPDX-License-Identifier: MIT
#pragma once

#include "host/bounding_box.hpp"
#include "host/feature.hpp"
#include <mezalith/index/packed_r_tree.hpp>

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace mezalith::host {

/// The features of a layer, to be found by where they are. It does not keep them.
class FeatureIndex {
  public:
    explicit FeatureIndex(std::span<const std::shared_ptr<Feature>> features);

    /// The places in the list of the features that may have a point within `area`, degrees, or
    /// where the globe repeats it every 360 degrees: in the order of the list.
    std::vector<std::uint32_t> meeting(const BoundingBox& area) const;

  private:
    std::shared_ptr<MzPackedRTree> tree_;
};

}  // namespace mezalith::host
