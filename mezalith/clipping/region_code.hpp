// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/clipping/clipping_region.hpp>

#include <cstdint>

namespace mezalith::detail {

/// The sides of a region's rectangle, held ready for telling on which of them a point lies.
struct RegionLimits {
    explicit RegionLimits(const MzClippingRegion& region)
        : lowX(region.bounds()[0].x),
          lowY(region.bounds()[0].y),
          highX(region.bounds()[1].x),
          highY(region.bounds()[2].y) {}

    /// Branches, as neighbouring points mostly lie on the same side. Beyond both of two opposite
    /// sides, as a negative size allows, counts as the low one; NaN is beyond none.
    std::int32_t codeOf(MzPoint p) const {
        std::int32_t code = 0;
        if (p.y < lowY) {
            code = MzRegionLowY;
        } else if (p.y > highY) {
            code = MzRegionHighY;
        }
        if (p.x < lowX) {
            code |= MzRegionLowX;
        } else if (p.x > highX) {
            code |= MzRegionHighX;
        }
        return code;
    }

    double lowX, lowY, highX, highY;
};

}  // namespace mezalith::detail
