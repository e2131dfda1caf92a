// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace mezalith::platform {

/// How far a blur of standard deviation `sigma` (pixels) reaches: three deviations in whole pixels.
/// 0 where the blur is too small to change a byte (under 1/6 pixel) or NaN.
MEZALITH_EXPORT int gaussianReach(double sigma);

/// The weights of a blur at distances 0 to `gaussianReach(sigma)`, which add up to 1 over both
/// sides: the integral of the Gaussian over each pixel. A picture of whole pixels, each a square,
/// is blurred exactly by them, as seen at the centres of pixels.
MEZALITH_EXPORT std::vector<float> gaussianWeights(double sigma);

/// Blurs an image of one byte per pixel in place: `height` rows of `width` pixels, `stride` bytes
/// from row to row. Outside the image is 0. `sigma` in pixels, up to 1000; nothing happens when
/// it reaches nowhere. Time grows with the pixels times sigma.
MEZALITH_EXPORT void gaussianBlur(std::span<std::uint8_t> image, int width, int height,
                                  std::size_t stride, double sigma);

}  // namespace mezalith::platform
