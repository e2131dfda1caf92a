// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>

#include <optional>
#include <span>

namespace mezalith::platform {

/// The platform's plane transform, by value: x' = m11·x + m21·y + tX, y' = m12·x + m22·y + tY.
/// Plain double arithmetic throughout.
struct MEZALITH_EXPORT AffineTransform {
    double m11 = 1;
    double m12 = 0;
    double m21 = 0;
    double m22 = 1;
    double tX = 0;
    double tY = 0;

    MzPoint transformPoint(MzPoint point) const;

    /// Maps the points of `source` into `destination`, which may be the same memory: as many as
    /// both have places for. Same results as `transformPoint`, bit for bit.
    void transformPoints(std::span<const MzPoint> source, std::span<MzPoint> destination) const;

    /// The size without the translation; components keep their sign.
    MzSize transformSize(MzSize size) const;

    /// Origin as a point, size as a size. Settled: not the bounding box of the corners, and the
    /// size may come out negative.
    MzRect transformRect(MzRect rect) const;

    /// This transform applied after `first`: the result maps p to this(first(p)).
    AffineTransform prepending(const AffineTransform& first) const;

    /// The transform that undoes this one, in full precision; none when the determinant is 0 or
    /// not finite.
    std::optional<AffineTransform> inverse() const;

    friend bool operator==(const AffineTransform&, const AffineTransform&) = default;
};

}  // namespace mezalith::platform
