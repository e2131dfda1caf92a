// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/cairo/cairo_port.hpp>

#include <cstddef>
#include <cstdint>
#include <span>

namespace mezalith::platform::detail {

/// Pixels of a picture, 0xAARRGGBB with colours multiplied by their alpha, that belong to another.
struct PixelView {
    const std::uint32_t* pixels = nullptr;
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t stride = 0;  ///< pixels from one row to the next

    std::span<const std::uint32_t> row(std::size_t y) const { return {pixels + y * stride, width}; }
};

/// Writes an 8-bit PNG file: with alpha only where some pixel is not opaque, no dates, unfiltered.
/// Maps are areas of one colour, which unfiltered rows keep smaller than filtered ones, by a sixth,
/// and write faster. NO when memory ends or the sink refuses.
MEZALITH_EXPORT bool writePNG(const PixelView& picture, const CairoPort::Sink& sink);

}  // namespace mezalith::platform::detail
