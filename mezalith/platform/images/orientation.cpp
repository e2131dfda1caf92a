// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/orientation.hpp>
#include <mezalith/platform/images/tiff_block.hpp>

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

namespace mezalith::platform {
namespace {

using namespace std::string_view_literals;

constexpr std::uint16_t orientationTag = 0x0112;

/// Rows become columns.
Bitmap transposed(const Bitmap& bitmap) {
    Bitmap result = Bitmap::bitmapWithSize(bitmap.height, bitmap.width);
    for (std::int32_t y = 0; y < result.height; ++y) {
        const auto row = result.row(y);
        for (std::int32_t x = 0; x < result.width; ++x) {
            row[static_cast<std::size_t>(x)] = bitmap.row(x)[static_cast<std::size_t>(y)];
        }
    }
    return result;
}

void mirror(Bitmap& bitmap) {
    for (std::int32_t y = 0; y < bitmap.height; ++y) {
        std::ranges::reverse(bitmap.row(y));
    }
}

}  // namespace

int exifOrientation(std::span<const std::byte> segment) {
    const std::string_view bytes(reinterpret_cast<const char*>(segment.data()), segment.size());
    if (!bytes.starts_with("Exif\0\0"sv)) {
        return 1;
    }
    const std::uint32_t value =
        detail::TiffBlock(bytes.substr(6)).value(orientationTag).value_or(1);
    return value >= 1 && value <= 8 ? static_cast<int>(value) : 1;
}

Bitmap uprightBitmap(Bitmap bitmap, int orientation) {
    if (orientation >= 5 && orientation <= 8) {
        bitmap = transposed(bitmap);
    }
    if (orientation == 3 || orientation == 4 || orientation == 7 || orientation == 8) {
        // Half a turn; with the mirror below upside down.
        std::ranges::reverse(bitmap.pixels);
    }
    if (orientation == 2 || orientation == 4 || orientation == 6 || orientation == 8) {
        mirror(bitmap);
    }
    return bitmap;
}

}  // namespace mezalith::platform
