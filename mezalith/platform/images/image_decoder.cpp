// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/decoders.hpp>
#include <mezalith/platform/number_text.hpp>

#include <algorithm>
#include <array>
#include <new>

namespace mezalith::platform {
namespace {

using detail::Bytes;
using detail::Decoding;

constexpr std::size_t longestReason = 160;

/// How far into a text its root element may begin.
constexpr std::size_t svgProlog = 4096;

struct Format {
    ImageFormat format;
    std::string_view name;
    Decoding (*decode)(Bytes, const ImageLimits&);
};

constexpr std::array<Format, 5> formats{{{ImageFormat::PNG, "PNG", detail::decodePNG},
                                         {ImageFormat::JPEG, "JPEG", detail::decodeJPEG},
                                         {ImageFormat::TIFF, "TIFF", detail::decodeTIFF},
                                         {ImageFormat::WebP, "WebP", detail::decodeWebP},
                                         {ImageFormat::SVG, "SVG", detail::decodeSVG}}};

const Format* known(ImageFormat format) {
    const auto* found = std::ranges::find(formats, format, &Format::format);
    return found != formats.end() ? found : nullptr;
}

/// Text that begins with markup and has an <svg> element soon.
bool isSVG(std::string_view text) {
    const std::string_view prolog = text.substr(0, svgProlog);
    const std::size_t first = prolog.find_first_not_of("\xEF\xBB\xBF \t\r\n");
    return first != std::string_view::npos && prolog[first] == '<' &&
           prolog.find("<svg") != std::string_view::npos;
}

bool isTIFF(std::string_view text) {
    using namespace std::string_view_literals;
    const std::string_view start = text.substr(0, 4);
    return start == "II*\0"sv || start == "MM\0*"sv || start == "II+\0"sv || start == "MM\0+"sv;
}

/// One printable line of bounded length.
std::string oneLine(std::string text) {
    text.resize(std::min(text.size(), longestReason));
    std::ranges::replace_if(
        text, [](char c) { return c < ' ' || c > '~'; }, ' ');
    text.erase(text.find_last_not_of(" .") + 1);
    return text;
}

Decoding decode(const Format& format, Bytes bytes, const ImageLimits& limits) {
    try {
        return format.decode(bytes, limits);
    } catch (const std::bad_alloc&) {
        return Decoding::failure("not enough memory");
    }
}

}  // namespace

std::string detail::sizeComplaint(double width, double height, const ImageLimits& limits) {
    const std::string size = shortestText(width) + " x " + shortestText(height) + " pixels";
    if (!(width >= 1 && height >= 1)) {
        return size + ": there is nothing to see";
    }
    if (width * height > static_cast<double>(limits.pixels)) {
        return size + ", more than " + std::to_string(limits.pixels) + " in all";
    }
    if (std::max(width, height) > Image::largestSide) {
        return size + ", more than " + std::to_string(Image::largestSide) + " to a side";
    }
    return {};
}

std::string_view imageFormatName(ImageFormat format) {
    const Format* found = known(format);
    return found != nullptr ? found->name : std::string_view();
}

ImageFormat imageFormat(std::span<const std::byte> bytes) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (text.starts_with("\x89PNG\r\n\x1A\n")) {
        return ImageFormat::PNG;
    }
    if (text.starts_with("\xFF\xD8")) {
        return ImageFormat::JPEG;
    }
    if (isTIFF(text)) {
        return ImageFormat::TIFF;
    }
    if (text.starts_with("RIFF") && text.substr(0, 12).ends_with("WEBP")) {
        return ImageFormat::WebP;
    }
    return isSVG(text) ? ImageFormat::SVG : ImageFormat::None;
}

DecodedImage decodeImage(std::span<const std::byte> bytes, const ImageLimits& limits) {
    const Format* format = known(imageFormat(bytes));
    if (format == nullptr) {
        return {nullptr, ImageFormat::None, "neither PNG, JPEG, TIFF, WebP nor SVG"};
    }
    Decoding decoding = decode(*format, bytes, limits);
    if (decoding.image == nullptr) {
        std::string error = std::string(format->name) + ": " + oneLine(std::move(decoding.reason));
        return {nullptr, format->format, std::move(error)};
    }
    return {std::move(decoding.image), format->format, {}};
}

}  // namespace mezalith::platform
