// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/cairo/ink.hpp>

namespace mezalith::platform::detail {

/// How shadows are cast, in device space (y down).
struct Shadow {
    MzSize offset{};
    double sigma = 0;  ///< standard deviation of the blur
    Rgba color;
};

/// Draws the shadow of `ink` within the clip of `cr`, whose matrix is the identity. Without a blur
/// this is the ink itself in another colour and place; with one it is an image of `resolution`
/// pixels per device unit, or fewer where the blur is wide enough to hide it. The status of what
/// failed, if anything.
cairo_status_t castShadow(cairo_t* cr, const Ink& ink, const Shadow& shadow, double resolution);

}  // namespace mezalith::platform::detail
