// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/decoders.hpp>

#include <bit>

#include <webp/decode.h>

namespace mezalith::platform::detail {
namespace {

/// Colours multiplied by alpha in 32-bit numbers of this machine, 0xAARRGGBB.
constexpr WEBP_CSP_MODE premultipliedARGB =
    std::endian::native == std::endian::little ? MODE_bgrA : MODE_Argb;

const char* reasonFor(VP8StatusCode status) {
    switch (status) {
        case VP8_STATUS_NOT_ENOUGH_DATA:
            return "the data end too early";
        case VP8_STATUS_OUT_OF_MEMORY:
            return "not enough memory";
        default:
            return "the data are damaged";
    }
}

VP8StatusCode readPixels(Bytes bytes, Bitmap& bitmap) {
    WebPDecoderConfig config;
    if (WebPInitDecoderConfig(&config) == 0) {
        return VP8_STATUS_INVALID_PARAM;
    }
    config.output.colorspace = premultipliedARGB;
    config.output.is_external_memory = 1;
    config.output.u.RGBA = {bytesOf(bitmap.pixels), bitmap.width * 4,
                            bitmap.pixels.size() * sizeof(std::uint32_t)};
    const VP8StatusCode status = WebPDecode(bytesOf(bytes), bytes.size(), &config);
    WebPFreeDecBuffer(&config.output);
    return status;
}

}  // namespace

Decoding decodeWebP(Bytes bytes, const ImageLimits& limits) {
    WebPBitstreamFeatures features;
    const VP8StatusCode header = WebPGetFeatures(bytesOf(bytes), bytes.size(), &features);
    if (header != VP8_STATUS_OK) {
        return Decoding::failure(reasonFor(header));
    }
    if (std::string complaint = sizeComplaint(features.width, features.height, limits);
        !complaint.empty()) {
        return Decoding::failure(std::move(complaint));
    }
    if (features.has_animation != 0) {
        return Decoding::failure("animations are not drawn");
    }
    Bitmap bitmap = Bitmap::bitmapWithSize(features.width, features.height);
    const VP8StatusCode status = readPixels(bytes, bitmap);
    return status == VP8_STATUS_OK ? Decoding::of(std::move(bitmap))
                                   : Decoding::failure(reasonFor(status));
}

}  // namespace mezalith::platform::detail
