// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/image.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace mezalith::platform {

/// What the bytes of a picture are.
enum class ImageFormat { None, PNG, JPEG, TIFF, WebP, SVG };

/// "PNG", "JPEG", "TIFF", "WebP", "SVG"; empty for none.
MEZALITH_EXPORT std::string_view imageFormatName(ImageFormat format);

/// The format by the first bytes, whatever the file is called. What begins like a format is of
/// that format even if nothing more of it is right.
MEZALITH_EXPORT ImageFormat imageFormat(std::span<const std::byte> bytes);

/// What a picture may cost.
struct ImageLimits {
    /// Pixels, width times height; larger pictures are refused before anything is decoded, and SVG
    /// is never drawn with more. Sides are bounded by `Image::largestSide` as well.
    std::uint64_t pixels = 64'000'000;
};

/// A picture or why there is none.
struct DecodedImage {
    std::shared_ptr<const Image> image;  ///< null when it fails
    ImageFormat format = ImageFormat::None;
    std::string error;  ///< one line such as "PNG: IDAT: CRC error"; empty when all is well
};

/// Makes a picture of the bytes of a PNG, JPEG, TIFF, WebP or SVG file.
///
/// Alpha, palettes, grey, 16 bits, CMYK (JPEG and TIFF) and the orientation that cameras note (JPEG
/// and TIFF) are seen to; of several pictures in a file the first is taken, animated WebP is
/// refused. A file that ends too early gives no picture.
///
/// SVG is drawn anew for each size, its natural size in CSS pixels. Nothing but the bytes is read.
/// Refused are entities, pictures within the picture, filters, texts, which look different with the
/// fonts of each machine, and what would take too many steps to draw.
MEZALITH_EXPORT DecodedImage decodeImage(std::span<const std::byte> bytes,
                                         const ImageLimits& limits = {});

}  // namespace mezalith::platform
