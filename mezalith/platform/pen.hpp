// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/affine_transform.hpp>
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/path_dashing.hpp>

#include <optional>
#include <vector>

namespace mezalith::platform {

/// The stroke settings of a port, in user units as they were given.
struct StrokeStyle {
    double width = 1;
    LineCap cap = LineCap::Butt;
    LineJoin join = LineJoin::Miter;
    double dashPhase = 0;
    std::vector<double> dashLengths;
};

/// A stroke style under a transform, ready to draw. Lengths are in pen units, which `shape` maps to
/// the device; it keeps lengths or shortens them.
struct MEZALITH_EXPORT Pen {
    /// Mitres longer than this many widths are cut off to bevels.
    static constexpr double kMiterLimit = 10;

    AffineTransform shape;  ///< the identity where all directions scale alike
    double width = 0;
    LineCap cap = LineCap::Butt;
    LineJoin join = LineJoin::Miter;
    DashPattern dash;

    /// How far ink can be from the path, in device units.
    double reach() const;
};

/// The pen of a style under the linear part of `transform`, at most `largestWidth` device units
/// wide; none when it leaves no ink. Dashes with a period under 1/16 device unit become solid.
MEZALITH_EXPORT std::optional<Pen> makePen(const StrokeStyle& style,
                                           const AffineTransform& transform, double largestWidth);

}  // namespace mezalith::platform
