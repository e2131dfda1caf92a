// SPDX-License-Identifier: MIT
#include <mezalith/platform/pen.hpp>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace mezalith::platform {
namespace {

/// Transforms that squeeze one direction more than this against the other flatten the plane.
constexpr double leastSqueeze = 1e-6;
constexpr double leastDashPeriod = 1.0 / 16;

/// The largest and smallest factor by which a transform scales lengths.
struct Scales {
    double largest;
    double smallest;
};

Scales scalesOf(const AffineTransform& t) {
    const double turning = std::hypot(t.m11 + t.m22, t.m12 - t.m21) / 2;
    const double mirroring = std::hypot(t.m11 - t.m22, t.m12 + t.m21) / 2;
    return {turning + mirroring, std::abs(turning - mirroring)};
}

AffineTransform linearPart(const AffineTransform& t, double factor) {
    return {t.m11 * factor, t.m12 * factor, t.m21 * factor, t.m22 * factor, 0, 0};
}

}  // namespace

double Pen::reach() const {
    const double corner = join == LineJoin::Miter ? kMiterLimit : 1;
    const double end = cap == LineCap::Square ? std::numbers::sqrt2 : 1;
    return width / 2 * std::max(corner, end);
}

std::optional<Pen> makePen(const StrokeStyle& style, const AffineTransform& transform,
                           double largestWidth) {
    const Scales scales = scalesOf(transform);
    if (!(style.width > 0) || !std::isfinite(scales.largest) ||
        !(scales.smallest > scales.largest * leastSqueeze)) {
        return std::nullopt;
    }
    Pen pen;
    pen.cap = style.cap;
    pen.join = style.join;
    pen.width = std::min(style.width * scales.largest, largestWidth);
    double squeeze = scales.smallest / scales.largest;
    if (squeeze < 1 - 1e-12) {
        pen.shape = linearPart(transform, 1 / scales.largest);
    } else {
        squeeze = 1;
    }
    pen.dash = makeDashPattern(style.dashPhase, style.dashLengths, scales.largest);
    if (dashPeriod(pen.dash) * squeeze < leastDashPeriod) {
        pen.dash = {};
    }
    return pen;
}

}  // namespace mezalith::platform
