// SPDX-License-Identifier: MIT
#include "mezalith/clipping/test_support.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <span>

// Takes any bytes for a rectangle, a spacing and points, and clips them exactly in every way: what
// comes out lies in the rectangle and fits its room, rings are closed, and without a spacing their
// areas are those that Sutherland and Hodgman cut.

namespace mezalith {
namespace {

using namespace clipping_test;

constexpr double kGreatest = 1e6;  // of coordinates whose areas are compared

void require(bool holds) {
    if (!holds) std::abort();
}

/// Numbers from bytes: any doubles, or multiples of a half up to 64, where much meets.
class Numbers {
  public:
    Numbers(std::span<const std::byte> bytes, bool any) : bytes_(bytes), any_(any) {}

    std::size_t size() const { return bytes_.size() / width(); }
    double operator[](std::size_t i) const {
        const std::byte* const at = bytes_.data() + i * width();
        if (!any_) return static_cast<double>(static_cast<std::int8_t>(*at)) / 2;
        double number = 0;
        std::memcpy(&number, at, sizeof number);
        return number;
    }

  private:
    std::size_t width() const { return any_ ? sizeof(double) : 1; }

    std::span<const std::byte> bytes_;
    bool any_;
};

void requireArea(const Points& ring, const MzClippingRegion& region) {
    double greatest = 1;
    const auto take = [&](MzPoint p) {
        for (const double number : {std::abs(p.x), std::abs(p.y)}) {
            greatest = std::max(greatest, number <= kGreatest ? number : INFINITY);
        }
    };
    for (const MzPoint p : ring) take(p);
    for (const MzPoint p : region.bounds()) take(p);
    if (std::isinf(greatest) || MzIsEmptyRect(region.clippingRect())) return;
    const double tolerance = 1e-13 * greatest * greatest * static_cast<double>(ring.size());
    const double area = areaOf(clip(Kind::ring, ring, region));
    require(std::abs(area - areaOf(cutBySides(ring, region))) <= tolerance);
}

void fuzz(std::span<const std::byte> bytes) {
    if (bytes.empty()) return;
    const Numbers numbers(bytes.subspan(1), (bytes[0] & std::byte{1}) != std::byte{0});
    if (numbers.size() < 7) return;
    MzClippingRegion region = regionOf({{numbers[0], numbers[1]}, {numbers[2], numbers[3]}});
    region.setExact(true);
    Points source;
    for (std::size_t i = 5; i + 1 < numbers.size(); i += 2) {
        source.push_back({numbers[i], numbers[i + 1]});
    }
    requireArea(source, region);
    region.setMinSpacing((bytes[0] & std::byte{2}) != std::byte{0} ? numbers[4] : 0);
    for (const Kind kind : allKinds) {
        const Points clipped = clip(kind, source, region);
        for (const MzPoint p : clipped) {
            require(std::isfinite(p.x) && std::isfinite(p.y));
            require(MzRegionCode(p, &region) == 0);
        }
        if (kind != Kind::ring || clipped.empty()) continue;
        require(MzEqualPoints(clipped.front(), clipped.back()));
    }
}

}  // namespace
}  // namespace mezalith

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mezalith::fuzz(std::as_bytes(std::span(data, size)));
    return 0;
}
