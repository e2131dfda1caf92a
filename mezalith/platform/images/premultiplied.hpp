// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace mezalith::platform::detail {

/// A channel of 0 to 255 multiplied by such an alpha, rounded to the nearest.
constexpr std::uint32_t timesAlpha(std::uint32_t channel, std::uint32_t alpha) {
    return (channel * alpha + 127) / 255;
}

/// 0xAARRGGBB of channels from 0 to 255.
constexpr std::uint32_t argb(std::uint32_t alpha, std::uint32_t red, std::uint32_t green,
                             std::uint32_t blue) {
    return alpha << 24 | red << 16 | green << 8 | blue;
}

/// 0xAARRGGBB with its colours multiplied by its alpha.
constexpr std::uint32_t premultiplied(std::uint32_t pixel) {
    const std::uint32_t alpha = pixel >> 24;
    return argb(alpha, timesAlpha(pixel >> 16 & 255, alpha), timesAlpha(pixel >> 8 & 255, alpha),
                timesAlpha(pixel & 255, alpha));
}

}  // namespace mezalith::platform::detail
