// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/images/image_decoder.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <jpeglib.h>
#include <png.h>
#include <tiffio.h>
#include <webp/encode.h>

/// Pictures of every kind, made by the writers of the libraries that read them.
namespace mezalith::platform::pictures {

using Samples = std::vector<std::uint8_t>;

inline DecodedImage decoded(const std::string& file, const ImageLimits& limits = {}) {
    return decodeImage(std::as_bytes(std::span(file)), limits);
}

/// The pixels of a file; an empty bitmap when it fails.
inline Bitmap bitmapOf(const std::string& file) {
    const auto image = decoded(file).image;
    return image != nullptr ? *image->bitmapForPixelSize(image->size()) : Bitmap();
}

inline std::string contents(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// `samples` as the simplified interface of libpng takes them, with a palette where `format` says.
inline std::string encodedPNG(std::uint32_t width, std::uint32_t height, std::uint32_t format,
                              const void* samples, const Samples& palette = {}) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = width;
    image.height = height;
    image.format = format;
    image.colormap_entries = static_cast<std::uint32_t>(palette.size() / 3);
    png_alloc_size_t size = 0;
    png_image_write_to_memory(&image, nullptr, &size, 0, samples, 0, palette.data());
    std::string file(size, '\0');
    png_image_write_to_memory(&image, file.data(), &size, 0, samples, 0, palette.data());
    file.resize(size);
    return file;
}

struct JpegOptions {
    int components = 3;
    J_COLOR_SPACE colors = JCS_RGB;
    bool isProgressive = false;
    bool isAdobe = true;
    std::string exif{};
};

inline std::string encodedJPEG(unsigned width, unsigned height, const Samples& samples,
                               const JpegOptions& options) {
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_create_compress(&info);
    unsigned char* bytes = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &bytes, &size);
    info.image_width = width;
    info.image_height = height;
    info.input_components = options.components;
    info.in_color_space = options.colors;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 100, TRUE);
    info.write_Adobe_marker = options.colors == JCS_CMYK && options.isAdobe ? TRUE : FALSE;
    if (options.isProgressive) {
        jpeg_simple_progression(&info);
    }
    jpeg_start_compress(&info, TRUE);
    if (!options.exif.empty()) {
        jpeg_write_marker(&info, JPEG_APP0 + 1,
                          reinterpret_cast<const JOCTET*>(options.exif.data()),
                          static_cast<unsigned>(options.exif.size()));
    }
    const std::size_t rowSize = std::size_t{width} * static_cast<std::size_t>(options.components);
    for (unsigned y = 0; y < height; ++y) {
        auto* row = const_cast<JSAMPLE*>(samples.data() + y * rowSize);
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    std::string file(reinterpret_cast<const char*>(bytes), size);
    jpeg_destroy_compress(&info);
    std::free(bytes);
    return file;
}

struct TiffOptions {
    std::uint16_t samples = 3;
    std::uint16_t bits = 8;
    std::uint16_t photometric = PHOTOMETRIC_RGB;
    std::uint16_t orientation = ORIENTATION_TOPLEFT;
    std::uint16_t compression = COMPRESSION_NONE;
    std::uint16_t extraSample = 0;  ///< the meaning of the last sample, 0 where it is a colour
    bool isTiled = false;
};

inline void writeTiffPixels(TIFF* tiff, std::uint32_t width, std::uint32_t height,
                            const Samples& samples, const TiffOptions& options) {
    const std::size_t pixelSize = std::size_t{options.samples} * options.bits / 8;
    const std::size_t rowSize = width * pixelSize;
    if (!options.isTiled) {
        for (std::uint32_t y = 0; y < height; ++y) {
            TIFFWriteScanline(tiff, const_cast<std::uint8_t*>(samples.data() + y * rowSize), y);
        }
        return;
    }
    Samples tile(16 * 16 * pixelSize);
    for (std::uint32_t y = 0; y < height && y < 16; ++y) {
        std::copy_n(samples.begin() + static_cast<std::ptrdiff_t>(y * rowSize), rowSize,
                    tile.begin() + static_cast<std::ptrdiff_t>(y * 16 * pixelSize));
    }
    TIFFWriteEncodedTile(tiff, 0, tile.data(), static_cast<tmsize_t>(tile.size()));
}

/// At most 16 pixels square where it is tiled.
inline std::string encodedTIFF(std::uint32_t width, std::uint32_t height, const Samples& samples,
                               const TiffOptions& options) {
    // A name of its own: tests run side by side.
    const std::string path = std::filesystem::temp_directory_path() /
                             ("mezalith-" + std::to_string(std::random_device()()) + ".tif");
    TIFF* tiff = TIFFOpen(path.c_str(), "w");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, options.samples);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, options.bits);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, options.photometric);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_ORIENTATION, options.orientation);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, options.compression);
    if (options.extraSample != 0) {
        TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &options.extraSample);
    }
    if (options.isTiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 16);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, 16);
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, height);
    }
    writeTiffPixels(tiff, width, height, samples, options);
    TIFFClose(tiff);
    std::string file = contents(path);
    std::filesystem::remove(path);
    return file;
}

/// Straight alpha, red first.
inline std::string encodedWebP(int width, int height, const Samples& rgba) {
    std::uint8_t* bytes = nullptr;
    const std::size_t size = WebPEncodeLosslessRGBA(rgba.data(), width, height, width * 4, &bytes);
    std::string file(reinterpret_cast<const char*>(bytes), size);
    WebPFree(bytes);
    return file;
}

}  // namespace mezalith::platform::pictures
