// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/medialaxis/polygon_skeleton.hpp>

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace mezalith::detail {

/// The order in which a skeleton burns away when every end of it is lit at the moment at which a
/// fire that eats in from the outline gets there, and runs along the arcs at the same speed. At a
/// node the fires wait until only one arc is left, and go on along that one. What never burns are
/// the ways round holes and between them.
/// Source: Liu, Chambers, Letscher & Ju (2011), Extended grassfire transform on medial axes of 2D
/// shapes, Computer-Aided Design 43.
class MEZALITH_EXPORT SkeletonBranches {
  public:
    /// The skeleton must live as long.
    explicit SkeletonBranches(const MzPolygonSkeleton& skeleton);

    /// For each arc, whether it stays when branches go for which `isKept` says no, by their reach
    /// and by the clearance of the node that they hang on. What hangs on a node without a choice
    /// goes on from what hangs on it.
    std::vector<bool> kept(const std::function<bool(double reach, double clearance)>& isKept) const;

    /// Where the last arc burnt out, a node for each network without a way round a hole.
    std::span<const std::uint32_t> middles() const { return middles_; }

  private:
    struct Burning {
        std::uint32_t arc;
        std::uint32_t inner;  ///< the node that the fire came to
        double reach;         ///< the moment at which it did
    };

    void burn();

    const MzPolygonSkeleton& skeleton_;
    std::vector<std::uint32_t> firstArcs_;  ///< of each node, in the next
    std::vector<std::uint32_t> arcs_;
    std::vector<Burning> burnings_;  ///< in their order
    std::vector<std::uint32_t> middles_;
};

}  // namespace mezalith::detail
