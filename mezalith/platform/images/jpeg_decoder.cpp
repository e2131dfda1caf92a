// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/decoders.hpp>
#include <mezalith/platform/images/orientation.hpp>
#include <mezalith/platform/images/premultiplied.hpp>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <cstring>

#include <jpeglib.h>
// After jpeglib.h, which it needs.
#include <jerror.h>

namespace mezalith::platform::detail {
namespace {

constexpr int exifMarker = JPEG_APP0 + 1;
constexpr unsigned longestSegment = 0xFFFF;

/// Passes over pixels: each scan of a progressive file is one over all of them, and a few bytes of
/// file are enough for a scan.
constexpr double mostPixelPasses = 2e9;

/// libjpeg's decoder. Its errors leave by a jump to `attempt`; nothing in between owns anything.
class Decompressor {
  public:
    explicit Decompressor(Bytes bytes) {
        info_.err = jpeg_std_error(&errors_);
        errors_.error_exit = failFromLibrary;
        errors_.emit_message = hearWarning;
        info_.client_data = this;
        progress_.progress_monitor = countPasses;
        attempt([&] {
            jpeg_create_decompress(&info_);
            info_.progress = &progress_;
            jpeg_mem_src(&info_, bytesOf(bytes), static_cast<unsigned long>(bytes.size()));
            jpeg_save_markers(&info_, exifMarker, longestSegment);
        });
    }
    ~Decompressor() { jpeg_destroy_decompress(&info_); }
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;

    /// NO when libjpeg gave up in `step`, then or before; `message` tells why.
    template <typename Step>
    bool attempt(Step step) {
        if (hasFailed_ || setjmp(escape_) != 0) {
            return false;
        }
        step();
        return true;
    }

    bool readHeader() {
        return attempt([this] { jpeg_read_header(&info_, TRUE); });
    }

    bool start() {
        return attempt([this] {
            const bool hasInks = info_.num_components == 4;
            info_.out_color_space = hasInks ? JCS_CMYK : JCS_RGB;
            jpeg_start_decompress(&info_);
        });
    }

    bool readRow(std::span<JSAMPLE> row) {
        return attempt([&] {
            JSAMPROW start = row.data();
            jpeg_read_scanlines(&info_, &start, 1);
        });
    }

    const jpeg_decompress_struct& info() const { return info_; }
    const char* message() const { return message_.data(); }

    int orientation() const {
        for (const jpeg_marker_struct* marker = info_.marker_list; marker != nullptr;
             marker = marker->next) {
            const Bytes data(reinterpret_cast<const std::byte*>(marker->data), marker->data_length);
            if (const int found = exifOrientation(data); found != 1) {
                return found;
            }
        }
        return 1;
    }

  private:
    jpeg_decompress_struct info_{};
    jpeg_error_mgr errors_{};
    jpeg_progress_mgr progress_{};
    std::jmp_buf escape_{};
    std::array<char, JMSG_LENGTH_MAX> message_{};
    bool hasFailed_ = false;

    static Decompressor& of(j_common_ptr info) {
        return *static_cast<Decompressor*>(info->client_data);
    }

    [[noreturn]] void leave() {
        hasFailed_ = true;
        std::longjmp(escape_, 1);
    }

    [[noreturn]] static void failFromLibrary(j_common_ptr info) {
        Decompressor& self = of(info);
        info->err->format_message(info, self.message_.data());
        self.leave();
    }

    /// Data that end too early are an error here; other damage is what viewers show, too.
    static void hearWarning(j_common_ptr info, int level) {
        const int code = info->err->msg_code;
        if (level < 0 && (code == JWRN_JPEG_EOF || code == JWRN_HIT_MARKER)) {
            failFromLibrary(info);
        }
    }

    static void countPasses(j_common_ptr common) {
        const auto* info = reinterpret_cast<j_decompress_ptr>(common);
        const double pixels = double(info->image_width) * double(info->image_height);
        if (pixels * info->input_scan_number > mostPixelPasses) {
            Decompressor& self = of(common);
            std::snprintf(self.message_.data(), self.message_.size(),
                          "more than %d scans of so many pixels", info->input_scan_number - 1);
            self.leave();
        }
    }
};

void putRGB(std::span<const JSAMPLE> row, std::span<std::uint32_t> pixels) {
    const JSAMPLE* sample = row.data();
    for (std::uint32_t& pixel : pixels) {
        pixel = argb(255, sample[0], sample[1], sample[2]);
        sample += 3;
    }
}

/// Inks from 0, much, to 255, none: how Adobe writes them.
void putInks(std::span<const JSAMPLE> row, std::span<std::uint32_t> pixels) {
    const JSAMPLE* ink = row.data();
    for (std::uint32_t& pixel : pixels) {
        pixel = argb(255, timesAlpha(ink[0], ink[3]), timesAlpha(ink[1], ink[3]),
                     timesAlpha(ink[2], ink[3]));
        ink += 4;
    }
}

void invert(std::span<JSAMPLE> row) {
    std::ranges::transform(row, row.begin(),
                           [](JSAMPLE ink) { return static_cast<JSAMPLE>(255 - ink); });
}

bool readPixels(Decompressor& decoder, Bitmap& bitmap) {
    const jpeg_decompress_struct& info = decoder.info();
    const bool hasInks = info.output_components == 4;
    const bool isAdobe = info.saw_Adobe_marker != FALSE;
    std::vector<JSAMPLE> row(std::size_t{info.output_width} *
                             static_cast<std::size_t>(info.output_components));
    for (std::int32_t y = 0; y < bitmap.height; ++y) {
        if (!decoder.readRow(row)) {
            return false;
        }
        if (hasInks && !isAdobe) {
            invert(row);
        }
        (hasInks ? putInks : putRGB)(row, bitmap.row(y));
    }
    return true;
}

}  // namespace

Decoding decodeJPEG(Bytes bytes, const ImageLimits& limits) {
    Decompressor decoder(bytes);
    if (!decoder.readHeader()) {
        return Decoding::failure(decoder.message());
    }
    const jpeg_decompress_struct& info = decoder.info();
    std::string complaint = sizeComplaint(info.image_width, info.image_height, limits);
    if (!complaint.empty()) {
        return Decoding::failure(std::move(complaint));
    }
    Bitmap bitmap = Bitmap::bitmapWithSize(static_cast<std::int32_t>(info.image_width),
                                           static_cast<std::int32_t>(info.image_height));
    if (!decoder.start() || !readPixels(decoder, bitmap)) {
        return Decoding::failure(decoder.message());
    }
    return Decoding::of(uprightBitmap(std::move(bitmap), decoder.orientation()));
}

}  // namespace mezalith::platform::detail
