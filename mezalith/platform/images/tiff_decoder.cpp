// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/decoders.hpp>
#include <mezalith/platform/images/orientation.hpp>
#include <mezalith/platform/images/premultiplied.hpp>
#include <mezalith/platform/images/tiff_block.hpp>

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>

#include <tiffio.h>

namespace mezalith::platform::detail {
namespace {

/// Strips and tiles hold up to eight bytes a pixel; tags come on top.
constexpr std::uint64_t mostBytesPerPixel = 8;
constexpr std::uint64_t bytesForTags = 16 << 20;

constexpr std::string_view fileName = "picture";

/// A file of bytes in memory, read through libtiff's own interface for files.
struct MemoryFile {
    Bytes bytes;
    std::uint64_t place = 0;
    std::array<char, 256> message{};  ///< what libtiff said first

    static MemoryFile& of(thandle_t handle) { return *static_cast<MemoryFile*>(handle); }
};

tmsize_t readBytes(thandle_t handle, void* target, tmsize_t size) {
    MemoryFile& file = MemoryFile::of(handle);
    const std::uint64_t end = file.bytes.size();
    const std::uint64_t left = end - std::min(file.place, end);
    const auto count =
        std::min<std::uint64_t>(left, size > 0 ? static_cast<std::uint64_t>(size) : 0);
    if (count > 0) {
        std::memcpy(target, file.bytes.data() + file.place, count);
    }
    file.place += count;
    return static_cast<tmsize_t>(count);
}

tmsize_t writeNothing(thandle_t, void*, tmsize_t) { return 0; }

toff_t seekByte(thandle_t handle, toff_t offset, int from) {
    MemoryFile& file = MemoryFile::of(handle);
    const toff_t base = from == SEEK_CUR ? file.place : from == SEEK_END ? file.bytes.size() : 0;
    file.place = base + offset;
    return file.place;
}

int closeNothing(thandle_t) { return 0; }

toff_t sizeOf(thandle_t handle) { return MemoryFile::of(handle).bytes.size(); }

int hearError(TIFF*, void* file, const char*, const char* format, std::va_list arguments) {
    auto& message = static_cast<MemoryFile*>(file)->message;
    if (message[0] == '\0') {
        std::vsnprintf(message.data(), message.size(), format, arguments);
    }
    return 1;
}

int hearNothing(TIFF*, void*, const char*, const char*, std::va_list) { return 1; }

struct Close {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

std::unique_ptr<TIFF, Close> open(MemoryFile& file, const ImageLimits& limits) {
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<tmsize_t>::max());
    const std::uint64_t pixels = std::min(limits.pixels, most / mostBytesPerPixel - bytesForTags);
    const std::unique_ptr<TIFFOpenOptions, Close> options(TIFFOpenOptionsAlloc());
    TIFFOpenOptionsSetMaxSingleMemAlloc(
        options.get(), static_cast<tmsize_t>(pixels * mostBytesPerPixel + bytesForTags));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), hearError, &file);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), hearNothing, nullptr);
    // "m": no mapping; all reading goes through the functions.
    return std::unique_ptr<TIFF, Close>(TIFFClientOpenExt(fileName.data(), "rm", &file, readBytes,
                                                          writeNothing, seekByte, closeNothing,
                                                          sizeOf, nullptr, nullptr, options.get()));
}

/// libtiff's converter to pixels of four bytes, for any file that it understands.
class Converter {
  public:
    explicit Converter(TIFF* tiff)
        : isOpen_(TIFFRGBAImageOK(tiff, reason_.data()) != 0 &&
                  TIFFRGBAImageBegin(&image_, tiff, 1, reason_.data()) != 0) {}
    ~Converter() {
        if (isOpen_) {
            TIFFRGBAImageEnd(&image_);
        }
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;

    bool isOpen() const { return isOpen_; }
    const char* reason() const { return reason_.data(); }

    /// Pixels as stored, 0xAABBGGRR, multiplied by alpha.
    bool read(Bitmap& bitmap) {
        image_.orientation = ORIENTATION_TOPLEFT;
        image_.req_orientation = ORIENTATION_TOPLEFT;
        return TIFFRGBAImageGet(&image_, bitmap.pixels.data(),
                                static_cast<std::uint32_t>(bitmap.width),
                                static_cast<std::uint32_t>(bitmap.height)) != 0;
    }

  private:
    TIFFRGBAImage image_{};
    std::array<char, 1024> reason_{};
    bool isOpen_;
};

/// What libtiff said, without the name that it was given for the file.
Decoding failure(const MemoryFile& file, const char* otherwise) {
    std::string_view reason = file.message[0] != '\0' ? file.message.data() : otherwise;
    if (reason.starts_with(fileName)) {
        reason.remove_prefix(fileName.size() + std::string_view(": ").size());
    }
    return Decoding::failure(std::string(reason));
}

Decoding decodePixels(TIFF* tiff, const MemoryFile& file, Bitmap bitmap) {
    Converter converter(tiff);
    if (!converter.isOpen()) {
        return failure(file, converter.reason());
    }
    if (!converter.read(bitmap)) {
        return failure(file, "the pixels cannot be read");
    }
    std::ranges::transform(bitmap.pixels, bitmap.pixels.begin(), [](std::uint32_t pixel) {
        return argb(TIFFGetA(pixel), TIFFGetR(pixel), TIFFGetG(pixel), TIFFGetB(pixel));
    });
    std::uint16_t orientation = ORIENTATION_TOPLEFT;
    TIFFGetFieldDefaulted(tiff, TIFFTAG_ORIENTATION, &orientation);
    return Decoding::of(uprightBitmap(std::move(bitmap), orientation));
}

/// The sides that the first directory names, whatever else is wrong with it. libtiff, which looks
/// again, would speak of an overflow.
std::string headerComplaint(Bytes bytes, const ImageLimits& limits) {
    const TiffBlock block({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    const auto width = block.value(TIFFTAG_IMAGEWIDTH);
    const auto height = block.value(TIFFTAG_IMAGELENGTH);
    return width && height ? sizeComplaint(*width, *height, limits) : std::string();
}

}  // namespace

Decoding decodeTIFF(Bytes bytes, const ImageLimits& limits) {
    if (std::string complaint = headerComplaint(bytes, limits); !complaint.empty()) {
        return Decoding::failure(std::move(complaint));
    }
    MemoryFile file{bytes};
    const auto tiff = open(file, limits);
    if (tiff == nullptr) {
        return failure(file, "the header is cut short");
    }
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height);
    if (std::string complaint = sizeComplaint(width, height, limits); !complaint.empty()) {
        return Decoding::failure(std::move(complaint));
    }
    return decodePixels(tiff.get(), file,
                        Bitmap::bitmapWithSize(static_cast<std::int32_t>(width),
                                               static_cast<std::int32_t>(height)));
}

}  // namespace mezalith::platform::detail
