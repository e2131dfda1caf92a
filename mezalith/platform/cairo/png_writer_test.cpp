// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/png_writer.hpp>

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <png.h>

namespace mezalith::platform {
namespace {

using detail::PixelView;

/// Rows of three pixels that are written; the fourth of each is not the picture's.
constexpr std::size_t stride = 4;

struct Written {
    bool isDone = false;
    std::string bytes;
};

Written written(const PixelView& picture) {
    Written result;
    result.isDone = detail::writePNG(picture, [&](std::span<const std::byte> bytes) {
        result.bytes.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return true;
    });
    return result;
}

struct Decoded {
    bool hasAlpha = false;
    std::size_t width = 0;
    std::size_t height = 0;
    std::vector<png_byte> rgba;
};

Decoded decoded(const std::string& bytes) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    EXPECT_NE(png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()), 0);
    Decoded result{(image.format & PNG_FORMAT_FLAG_ALPHA) != 0, image.width, image.height, {}};
    image.format = PNG_FORMAT_RGBA;
    result.rgba.resize(PNG_IMAGE_SIZE(image));
    EXPECT_NE(png_image_finish_read(&image, nullptr, result.rgba.data(), 0, nullptr), 0);
    EXPECT_STREQ(image.message, "");
    return result;
}

TEST(PngWriter, WritesOpaquePicturesWithoutAlpha) {
    const std::array<std::uint32_t, 2 * stride> pixels{0xff102030, 0xffffffff, 0xff000000, 0x1,
                                                       0xff0000ff, 0xff00ff00, 0xffff0000, 0x2};
    const Written png = written({pixels.data(), 3, 2, stride});
    ASSERT_TRUE(png.isDone);
    const Decoded picture = decoded(png.bytes);
    EXPECT_FALSE(picture.hasAlpha);
    EXPECT_EQ(picture.width, 3);
    EXPECT_EQ(picture.height, 2);
    const std::vector<png_byte> wanted{0x10, 0x20, 0x30, 255, 255, 255, 255, 255, 0,   0, 0, 255,
                                       0,    0,    255,  255, 0,   255, 0,   255, 255, 0, 0, 255};
    EXPECT_EQ(picture.rgba, wanted);
}

TEST(PngWriter, DividesColoursByTheirAlpha) {
    const std::array<std::uint32_t, stride> pixels{0x80402000, 0x00000000, 0xff102030, 0x1};
    const Written png = written({pixels.data(), 3, 1, stride});
    ASSERT_TRUE(png.isDone);
    const Decoded picture = decoded(png.bytes);
    EXPECT_TRUE(picture.hasAlpha);
    const std::vector<png_byte> wanted{0x80, 0x40, 0, 0x80, 0, 0, 0, 0, 0x10, 0x20, 0x30, 255};
    EXPECT_EQ(picture.rgba, wanted);
}

TEST(PngWriter, GivesBackWhatMultipliesToTheSame) {
    std::mt19937 random(20240229);
    std::vector<std::uint32_t> pixels;
    for (std::uint32_t alpha = 1; alpha < 255; ++alpha) {
        const auto red = static_cast<std::uint32_t>(random() % (alpha + 1));
        pixels.push_back(alpha << 24 | red << 16 | alpha << 8);
    }
    const Decoded picture = decoded(written({pixels.data(), pixels.size(), 1, 0}).bytes);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const std::uint32_t alpha = pixels[i] >> 24;
        EXPECT_EQ((picture.rgba[4 * i] * alpha + 127) / 255, pixels[i] >> 16 & 255);
        EXPECT_EQ(picture.rgba[4 * i + 1], 255);
        EXPECT_EQ(picture.rgba[4 * i + 3], alpha);
    }
}

TEST(PngWriter, KeepsColoursThatOutshineTheirAlphaWithinBounds) {
    const std::uint32_t pixel = 0x10ff1000;
    const Decoded picture = decoded(written({&pixel, 1, 1, 1}).bytes);
    EXPECT_EQ(picture.rgba, (std::vector<png_byte>{255, 255, 0, 0x10}));
}

TEST(PngWriter, StopsAtEveryByteThatIsRefused) {
    std::mt19937 random(20240229);
    std::vector<std::uint32_t> pixels(200 * 100);
    for (std::uint32_t& pixel : pixels) pixel = static_cast<std::uint32_t>(random());
    const PixelView picture{pixels.data(), 200, 100, 200};
    const std::size_t size = written(picture).bytes.size();
    for (std::size_t room = 0; room < size; room += 997) {
        std::size_t taken = 0;
        EXPECT_FALSE(detail::writePNG(picture, [&](std::span<const std::byte> bytes) {
            taken += bytes.size();
            return taken <= room;
        }));
    }
}

}  // namespace
}  // namespace mezalith::platform
