// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/clipping/clipping_region.hpp>
#include <mezalith/export.hpp>
#include <mezalith/geometry/records.hpp>

#include <cstddef>
#include <span>
#include <vector>

namespace mezalith::detail {

/// Rings clipped one after the other into one array of points, in view points. The memory is kept
/// from pass to pass: a pass allocates only when it needs more room than every one before it.
class MEZALITH_EXPORT ClippedRings {
  public:
    /// Starts a pass without rings. Rings of the pass before are no longer valid.
    void clear();
    /// Clips the rings and adds each of them, also when nothing is left of it.
    void append(std::span<const MzLinearRing> rings, const MzClippingRegion* region);
    /// Ends the pass: all its rings in order, valid until the next `clear` or `append`.
    std::span<MzLinearRing> finish();

  private:
    std::vector<MzLinearRing> rings_;
    /// The points of `rings_` without gaps, then room.
    std::vector<MzPoint> points_;
    std::size_t used_ = 0;
};

}  // namespace mezalith::detail
