// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/decoders.hpp>
#include <mezalith/platform/images/premultiplied.hpp>

#include <algorithm>
#include <bit>

#include <png.h>

namespace mezalith::platform::detail {
namespace {

/// Straight alpha in 32-bit numbers of this machine, 0xAARRGGBB.
constexpr png_uint_32 straightARGB =
    std::endian::native == std::endian::little ? PNG_FORMAT_BGRA : PNG_FORMAT_ARGB;

/// libpng's reader, which returns from its errors by itself.
class Reader {
  public:
    Reader() { image_.version = PNG_IMAGE_VERSION; }
    ~Reader() { png_image_free(&image_); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    bool readHeader(Bytes bytes) {
        return png_image_begin_read_from_memory(&image_, bytes.data(), bytes.size()) != 0;
    }

    bool readPixels(Bitmap& bitmap) {
        image_.format = straightARGB;
        return png_image_finish_read(&image_, nullptr, bitmap.pixels.data(), 0, nullptr) != 0;
    }

    std::uint32_t width() const { return image_.width; }
    std::uint32_t height() const { return image_.height; }
    std::string message() const { return image_.message; }

  private:
    png_image image_{};
};

/// The sides that the header names, whatever else is wrong with it.
std::string headerComplaint(Bytes bytes, const ImageLimits& limits) {
    constexpr std::size_t width = 16;
    constexpr std::size_t height = 20;
    if (bytes.size() < height + 4) {
        return "the header is cut short";
    }
    const unsigned char* data = bytesOf(bytes);
    return sizeComplaint(png_get_uint_32(data + width), png_get_uint_32(data + height), limits);
}

}  // namespace

Decoding decodePNG(Bytes bytes, const ImageLimits& limits) {
    if (std::string complaint = headerComplaint(bytes, limits); !complaint.empty()) {
        return Decoding::failure(std::move(complaint));
    }
    Reader reader;
    if (!reader.readHeader(bytes)) {
        return Decoding::failure(reader.message());
    }
    // What libpng found is what it will write: the header may have come later than it should.
    std::string complaint = sizeComplaint(reader.width(), reader.height(), limits);
    if (!complaint.empty()) {
        return Decoding::failure(std::move(complaint));
    }
    Bitmap bitmap = Bitmap::bitmapWithSize(static_cast<std::int32_t>(reader.width()),
                                           static_cast<std::int32_t>(reader.height()));
    if (!reader.readPixels(bitmap)) {
        return Decoding::failure(reader.message());
    }
    std::ranges::transform(bitmap.pixels, bitmap.pixels.begin(), premultiplied);
    return Decoding::of(std::move(bitmap));
}

}  // namespace mezalith::platform::detail
