// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include <cairo.h>

namespace mezalith::platform::detail {

struct Release {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
};

using ContextHandle = std::unique_ptr<cairo_t, Release>;
using SurfaceHandle = std::unique_ptr<cairo_surface_t, Release>;
using PatternHandle = std::unique_ptr<cairo_pattern_t, Release>;

}  // namespace mezalith::platform::detail
