// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/object.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace mezalith::platform {

/// Pixels in rows from the top, each 0xAARRGGBB with colours multiplied by alpha: what
/// `CairoPort::pixelRow` hands out.
struct MEZALITH_EXPORT Bitmap {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::vector<std::uint32_t> pixels;  ///< width * height of them

    /// All pixels transparent. Sides under 1 give an empty bitmap.
    static Bitmap bitmapWithSize(std::int32_t width, std::int32_t height);

    bool isEmpty() const { return pixels.empty(); }
    /// Row `row` from the top; empty outside the bitmap.
    std::span<const std::uint32_t> row(std::int32_t row) const;
    /// The same to write to.
    std::span<std::uint32_t> row(std::int32_t row);
};

/// A picture such as an icon. Images are shared and told apart by identity: two with equal pixels
/// are two images. An image never changes.
class MEZALITH_EXPORT Image : public Object {
  public:
    /// Ports draw no image with more pixels to a side.
    static constexpr std::int32_t largestSide = 16384;

    Image(const Image&) = delete;
    Image& operator=(const Image&) = delete;

    /// The picture of these pixels, one view point per pixel in its natural size. Null for an empty
    /// bitmap and for one without exactly `width` times `height` pixels.
    static std::shared_ptr<const Image> imageWithBitmap(Bitmap bitmap);

    /// The natural size in view points, positive.
    virtual MzSize size() const = 0;

    /// The pixels to be drawn over a place of `pixels` pixels of the target, stretched to it. A
    /// picture of pixels answers them whatever the place; one that is drawn anew for every size is
    /// as large as the place, or smaller where that exceeds its bounds. Null when it fails.
    virtual std::shared_ptr<const Bitmap> bitmapForPixelSize(MzSize pixels) const = 0;

  protected:
    Image() = default;
};

}  // namespace mezalith::platform
