// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/images/image_decoder.hpp>

#include <string>
#include <utility>

namespace mezalith::platform::detail {

using Bytes = std::span<const std::byte>;

/// What a decoder answers: an image, or the reason why there is none.
struct Decoding {
    std::shared_ptr<const Image> image;
    std::string reason;

    static Decoding of(Bitmap bitmap) { return {Image::imageWithBitmap(std::move(bitmap)), {}}; }
    static Decoding failure(std::string reason) { return {nullptr, std::move(reason)}; }
};

/// What is wrong with this many pixels; empty when they may be decoded.
std::string sizeComplaint(double width, double height, const ImageLimits& limits);

/// Rows of bytes where a pixel is a 32-bit number of this machine.
inline unsigned char* bytesOf(std::span<std::uint32_t> pixels) {
    return reinterpret_cast<unsigned char*>(pixels.data());
}

inline const unsigned char* bytesOf(Bytes bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

Decoding decodePNG(Bytes bytes, const ImageLimits& limits);
Decoding decodeJPEG(Bytes bytes, const ImageLimits& limits);
Decoding decodeTIFF(Bytes bytes, const ImageLimits& limits);
Decoding decodeWebP(Bytes bytes, const ImageLimits& limits);
Decoding decodeSVG(Bytes bytes, const ImageLimits& limits);

}  // namespace mezalith::platform::detail
