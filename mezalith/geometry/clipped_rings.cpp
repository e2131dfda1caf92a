// SPDX-License-Identifier: MIT
#include <mezalith/clipping/outcode_clipping.hpp>
#include <mezalith/geometry/clipped_rings.hpp>

namespace mezalith::detail {

void ClippedRings::clear() {
    rings_.clear();
    used_ = 0;
}

void ClippedRings::append(std::span<const MzLinearRing> rings, const MzClippingRegion* region) {
    for (const MzLinearRing& ring : rings) {
        const auto count = static_cast<std::uint32_t>(pointsOf(&ring).size());
        const std::size_t needed = used_ + MzClippedLinearRingCapacity(count);
        if (points_.size() < needed) points_.resize(needed);
        MzLinearRing clipped{0, points_.data() + used_};
        MzClipLinearRing(&ring, &clipped, region);
        used_ += clipped.count;
        rings_.push_back(clipped);
    }
}

std::span<MzLinearRing> ClippedRings::finish() {
    MzPoint* next = points_.data();
    for (MzLinearRing& ring : rings_) {
        ring.points = next;
        next += ring.count;
    }
    return rings_;
}

}  // namespace mezalith::detail
