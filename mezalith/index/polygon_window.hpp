// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>
#include <mezalith/index/packed_r_tree.hpp>

#include <memory>
#include <vector>

namespace mezalith {

/// A polygon as a region to search a packed tree by: its inside by the even-odd rule over all
/// rings, and its border.
///
///     tree->visitRegion(MzPolygonWindow(polygon), [](std::uint32_t item) { ... });
///
/// Rings need not be closed; points that are not finite are left out. Cost of a question: what it
/// takes to find the sides near the box among all, by a packed tree of their own.
class MEZALITH_EXPORT MzPolygonWindow {
  public:
    explicit MzPolygonWindow(const MzPolygon& polygon);

    /// Whether the box, which is not empty, shares a point with the polygon.
    bool meets(const MzBox& box) const;
    /// Whether it may; no only where no box within does, either.
    bool mayMeet(const MzBox& box) const { return hasSideNear(box) || isInside(cornerOf(box)); }
    /// Yes only when all of the box lies inside and away from the border.
    bool holds(const MzBox& box) const { return !hasSideNear(box) && isInside(cornerOf(box)); }

  private:
    struct Side {
        MzPoint from, to;
    };

    static MzPoint cornerOf(const MzBox& box) { return {box.minX, box.minY}; }
    void addRing(const MzLinearRing& ring);
    bool hasSideNear(const MzBox& box) const;
    bool isInside(MzPoint point) const;

    std::vector<Side> sides_;
    std::shared_ptr<MzPackedRTree> tree_;  ///< over the boxes of the sides
};

}  // namespace mezalith
