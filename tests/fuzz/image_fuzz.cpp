// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/image_decoder.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

// Decodes any bytes as a picture of bounded size and draws it at sizes that are not its own.

namespace mezalith::platform {
namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

void readAll(const Image& image, MzSize size) {
    const auto bitmap = image.bitmapForPixelSize(size);
    if (bitmap == nullptr) return;
    require(bitmap->width > 0 && bitmap->height > 0);
    std::uint32_t sum = 0;
    for (std::int32_t row = 0; row < bitmap->height; ++row) {
        for (const std::uint32_t pixel : bitmap->row(row)) {
            // Colours are multiplied by alpha.
            require((pixel >> 16 & 255) <= pixel >> 24);
            sum += pixel;
        }
    }
    const volatile std::uint32_t used = sum;
    static_cast<void>(used);
}

void fuzz(std::span<const std::byte> bytes) {
    constexpr ImageLimits limits{1 << 18};
    const DecodedImage decoded = decodeImage(bytes, limits);
    require((decoded.image == nullptr) == !decoded.error.empty());
    require(decoded.error.find('\n') == std::string::npos);
    if (decoded.image == nullptr) return;
    const MzSize size = decoded.image->size();
    require(size.width * size.height <= static_cast<double>(limits.pixels));
    readAll(*decoded.image, size);
    readAll(*decoded.image, {37, 23});
}

}  // namespace
}  // namespace mezalith::platform

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mezalith::platform::fuzz(std::as_bytes(std::span(data, size)));
    return 0;
}
