// SPDX-License-Identifier: MIT
#include <mezalith/platform/affine_transform.hpp>

#include <algorithm>
#include <cmath>

namespace mezalith::platform {
namespace {

// Inlined into the single and the bulk form, which therefore agree bit for bit.
MzPoint mapped(const AffineTransform& t, MzPoint p) {
    return {t.m11 * p.x + t.m21 * p.y + t.tX, t.m12 * p.x + t.m22 * p.y + t.tY};
}

}  // namespace

MzPoint AffineTransform::transformPoint(MzPoint point) const { return mapped(*this, point); }

void AffineTransform::transformPoints(std::span<const MzPoint> source,
                                      std::span<MzPoint> destination) const {
    const AffineTransform transform = *this;
    const std::size_t count = std::min(source.size(), destination.size());
    for (std::size_t i = 0; i < count; ++i) destination[i] = mapped(transform, source[i]);
}

MzSize AffineTransform::transformSize(MzSize size) const {
    return {m11 * size.width + m21 * size.height, m12 * size.width + m22 * size.height};
}

MzRect AffineTransform::transformRect(MzRect rect) const {
    return {transformPoint(rect.origin), transformSize(rect.size)};
}

AffineTransform AffineTransform::prepending(const AffineTransform& first) const {
    const MzPoint origin = transformPoint({first.tX, first.tY});
    return {first.m11 * m11 + first.m12 * m21,
            first.m11 * m12 + first.m12 * m22,
            first.m21 * m11 + first.m22 * m21,
            first.m21 * m12 + first.m22 * m22,
            origin.x,
            origin.y};
}

std::optional<AffineTransform> AffineTransform::inverse() const {
    const double determinant = m11 * m22 - m12 * m21;
    if (determinant == 0 || !std::isfinite(determinant)) return std::nullopt;
    return AffineTransform{m22 / determinant,
                           -m12 / determinant,
                           -m21 / determinant,
                           m11 / determinant,
                           (m21 * tY - m22 * tX) / determinant,
                           (m12 * tX - m11 * tY) / determinant};
}

}  // namespace mezalith::platform
