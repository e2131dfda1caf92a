// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/png_writer.hpp>

#include <algorithm>
#include <csetjmp>
#include <vector>

#include <png.h>

namespace mezalith::platform::detail {
namespace {

/// A channel as it was before it was multiplied by an alpha other than 0.
constexpr png_byte straight(std::uint32_t channel, std::uint32_t alpha) {
    return static_cast<png_byte>(std::min(255U, (channel * 255 + alpha / 2) / alpha));
}

png_byte* addOpaque(png_byte* at, std::uint32_t pixel) {
    *at++ = static_cast<png_byte>(pixel >> 16);
    *at++ = static_cast<png_byte>(pixel >> 8);
    *at++ = static_cast<png_byte>(pixel);
    return at;
}

png_byte* addWithAlpha(png_byte* at, std::uint32_t pixel) {
    const std::uint32_t alpha = pixel >> 24;
    if (alpha == 0 || alpha == 255) {
        at = addOpaque(at, alpha == 0 ? 0 : pixel);
    } else {
        *at++ = straight(pixel >> 16 & 255, alpha);
        *at++ = straight(pixel >> 8 & 255, alpha);
        *at++ = straight(pixel & 255, alpha);
    }
    *at++ = static_cast<png_byte>(alpha);
    return at;
}

bool isOpaque(const PixelView& picture) {
    for (std::size_t y = 0; y < picture.height; ++y) {
        std::uint32_t all = ~0U;
        for (const std::uint32_t pixel : picture.row(y)) all &= pixel;
        if (all >> 24 != 255) return false;
    }
    return true;
}

/// Of zlib's levels: maps take half the time of the usual 6 or less, and up to a seventh more
/// bytes.
constexpr int kCompressionLevel = 1;

/// libpng's encoder. Its errors leave by a jump to `attempt`; nothing in between owns anything.
class Compressor {
  public:
    explicit Compressor(const CairoPort::Sink& sink)
        : png_(png_create_write_struct(PNG_LIBPNG_VER_STRING, this, fail, hearWarning)),
          sink_(sink) {
        if (png_ == nullptr) return;
        info_ = png_create_info_struct(png_);
        png_set_write_fn(png_, this, write, flush);
    }
    ~Compressor() { png_destroy_write_struct(&png_, &info_); }
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;

    bool start(std::size_t width, std::size_t height, bool hasAlpha) {
        return info_ != nullptr && attempt([&] {
                   png_set_IHDR(png_, info_, static_cast<png_uint_32>(width),
                                static_cast<png_uint_32>(height), 8,
                                hasAlpha ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB,
                                PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                                PNG_FILTER_TYPE_DEFAULT);
                   png_set_filter(png_, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
                   png_set_compression_level(png_, kCompressionLevel);
                   png_write_info(png_, info_);
               });
    }
    bool writeRow(const png_byte* row) {
        return attempt([&] { png_write_row(png_, row); });
    }
    bool finish() {
        return attempt([&] { png_write_end(png_, nullptr); });
    }

  private:
    template <typename Step>
    bool attempt(Step step) {
        if (setjmp(escape_) != 0) return false;
        step();
        return true;
    }

    [[noreturn]] static void fail(png_structp png, png_const_charp) {
        std::longjmp(static_cast<Compressor*>(png_get_error_ptr(png))->escape_, 1);
    }
    static void hearWarning(png_structp, png_const_charp) {}

    static void write(png_structp png, png_bytep data, std::size_t size) {
        const auto& compressor = *static_cast<Compressor*>(png_get_io_ptr(png));
        if (!compressor.sink_(std::as_bytes(std::span(data, size)))) png_error(png, "");
    }
    static void flush(png_structp) {}

    png_structp png_;
    png_infop info_ = nullptr;
    const CairoPort::Sink& sink_;
    std::jmp_buf escape_{};
};

}  // namespace

bool writePNG(const PixelView& picture, const CairoPort::Sink& sink) {
    const bool hasAlpha = !isOpaque(picture);
    std::vector<png_byte> row(picture.width * (hasAlpha ? 4 : 3));
    Compressor compressor(sink);
    if (!compressor.start(picture.width, picture.height, hasAlpha)) return false;
    for (std::size_t y = 0; y < picture.height; ++y) {
        png_byte* end = row.data();
        for (const std::uint32_t pixel : picture.row(y)) {
            end = hasAlpha ? addWithAlpha(end, pixel) : addOpaque(end, pixel);
        }
        if (!compressor.writeRow(row.data())) return false;
    }
    return compressor.finish();
}

}  // namespace mezalith::platform::detail
