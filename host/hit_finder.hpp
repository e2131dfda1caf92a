// SPDX-License-Identifier: MIT
#pragma once

#include "host/data_source.hpp"
#include "host/map_view.hpp"
#include <mezalith/index/packed_r_tree.hpp>

#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace mezalith::host {

/// A feature that was hit, and what of its style.
struct FeatureHit {
    std::shared_ptr<Feature> feature;
    MzStyleHit style;
};

/// Finds what clicks hit of the layers that a view shows, as they are drawn. Features and styles
/// are to stay what they are.
class HitFinder {
  public:
    using Selection = std::function<bool(const Feature&)>;

    /// `layers` in the order of drawing.
    HitFinder(MapView& view, std::span<const Layer> layers);

    /// What a click at `point` hits within `tolerance`, view points both: those drawn last, on top,
    /// first; nothing off the globe that the projection shows. A record of several parts is told
    /// once, by the topmost one. `isSelected` tells which
    /// features are drawn as selected; null: none.
    std::vector<FeatureHit> at(MzPoint point, double tolerance,
                               const Selection& isSelected = nullptr);

  private:
    struct IndexedLayer {
        std::vector<std::shared_ptr<Feature>> features;  ///< in the order of drawing, one a box
        std::shared_ptr<MzPackedRTree> boxes;            ///< projected units
        double reach;                                    ///< of all styles, view points
    };

    IndexedLayer indexed(const Layer& layer) const;
    bool isOnGlobe(MzPoint point, double tolerance) const;

    MapView& view_;
    GlobeRings globe_;
    std::vector<IndexedLayer> layers_;
};

}  // namespace mezalith::host
