// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/image_decoder.hpp>
#include <mezalith/platform/images/test_pictures.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <set>
#include <string_view>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using namespace pictures;
using namespace std::string_view_literals;

const std::filesystem::path kSource = MEZALITH_SOURCE_DIR;
const std::filesystem::path kIcons = kSource / "data/map/icons";
const std::filesystem::path kBad = kSource / "tests/data/bad/image";

using Pixels = std::vector<std::uint32_t>;

ImageFormat formatOf(std::string_view bytes) {
    return imageFormat(std::as_bytes(std::span(bytes)));
}

Samples repeated(const Samples& pixel, std::size_t count) {
    Samples samples;
    for (std::size_t i = 0; i < count; ++i) {
        samples.insert(samples.end(), pixel.begin(), pixel.end());
    }
    return samples;
}

int farthestChannel(std::uint32_t a, std::uint32_t b) {
    int farthest = 0;
    for (const int shift : {0, 8, 16, 24}) {
        const int difference =
            static_cast<int>(a >> shift & 255) - static_cast<int>(b >> shift & 255);
        farthest = std::max(farthest, std::abs(difference));
    }
    return farthest;
}

// --- formats

TEST(ImageFormat, IsToldByTheFirstBytes) {
    EXPECT_EQ(formatOf("\x89PNG\r\n\x1A\n"sv), ImageFormat::PNG);
    EXPECT_EQ(formatOf("\xFF\xD8"sv), ImageFormat::JPEG);
    EXPECT_EQ(formatOf("II*\0"sv), ImageFormat::TIFF);
    EXPECT_EQ(formatOf("MM\0*"sv), ImageFormat::TIFF);
    EXPECT_EQ(formatOf("II+\0"sv), ImageFormat::TIFF);
    EXPECT_EQ(formatOf("MM\0+"sv), ImageFormat::TIFF);
    EXPECT_EQ(formatOf("RIFF\x01\x02\x03\x04WEBPVP8 "sv), ImageFormat::WebP);
    EXPECT_EQ(formatOf("<svg/>"sv), ImageFormat::SVG);
    EXPECT_EQ(formatOf("\xEF\xBB\xBF <?xml version='1.0'?>\n<!-- an icon --><svg/>"sv),
              ImageFormat::SVG);
}

TEST(ImageFormat, IsNoneForAnythingElse) {
    for (const std::string_view bytes :
         {""sv, "\x89PNG"sv, "\xFF"sv, "II*"sv, "RIFF\x01\x02\x03\x04WAVE"sv, "RIFF"sv, "GIF89a"sv,
          "<html/>"sv, "text with <svg> in it"sv, "  \n"sv}) {
        EXPECT_EQ(formatOf(bytes), ImageFormat::None) << bytes;
    }
}

TEST(ImageFormat, HasAName) {
    EXPECT_EQ(imageFormatName(ImageFormat::WebP), "WebP");
    EXPECT_EQ(imageFormatName(ImageFormat::None), "");
}

TEST(DecodeImage, GoesByTheBytesAndNotByTheName) {
    EXPECT_EQ(decoded(contents(kIcons / "mountain.tif")).format, ImageFormat::TIFF);
    const DecodedImage text = decoded(contents(kBad / "text.png"));
    EXPECT_EQ(text.image, nullptr);
    EXPECT_EQ(text.format, ImageFormat::None);
    EXPECT_EQ(text.error, "neither PNG, JPEG, TIFF, WebP nor SVG");
}

// --- files

TEST(DecodeImage, ReadsEveryIcon) {
    std::set<ImageFormat> formats;
    for (const auto& entry : std::filesystem::directory_iterator(kIcons)) {
        if (entry.path().extension() == ".txt") {
            continue;
        }
        const DecodedImage icon = decoded(contents(entry.path()));
        EXPECT_EQ(icon.error, "") << entry.path();
        ASSERT_NE(icon.image, nullptr) << entry.path();
        const auto bitmap = icon.image->bitmapForPixelSize({32, 32});
        ASSERT_NE(bitmap, nullptr);
        EXPECT_GT(
            std::ranges::count_if(bitmap->pixels, [](auto pixel) { return pixel >> 24 > 200; }), 50)
            << entry.path();
        formats.insert(icon.format);
    }
    EXPECT_EQ(formats.size(), 4U);
}

TEST(DecodeImage, ReadsTheSamePixelsFromPNGAndTIFF) {
    const Bitmap png = bitmapOf(contents(kIcons / "mountain.png"));
    const Bitmap tiff = bitmapOf(contents(kIcons / "mountain.tif"));
    ASSERT_EQ(png.pixels.size(), tiff.pixels.size());
    for (std::size_t i = 0; i < png.pixels.size(); ++i) {
        EXPECT_LE(farthestChannel(png.pixels[i], tiff.pixels[i]), 1) << i;
    }
}

TEST(DecodeImage, AnswersEachMalformedFileInOneLine) {
    // What is empty is a picture: libjpeg brings missing tables along, and only the first directory
    // of a TIFF is read.
    const std::map<std::string, std::string> expected{
        {"ok.png", ""},
        {"png-signature-only.png", "PNG: the header is cut short"},
        {"png-huge-header.png", "PNG: 2147483647 x 2147483647 pixels, more than 64000000 in all"},
        {"png-65535-square.png", "PNG: 65535 x 65537 pixels, more than 64000000 in all"},
        {"png-zero-width.png", "PNG: 0 x 4 pixels: there is nothing to see"},
        {"png-bad-crc.png", "PNG: IHDR: CRC error"},
        {"png-bad-depth.png", "PNG: Invalid IHDR data"},
        {"png-no-palette.png", "PNG: IDAT: Missing PLTE before IDAT"},
        {"png-truncated-idat.png", "PNG: read beyond end of data"},
        {"png-no-idat.png", "PNG: IEND: out of place"},
        {"png-idat-short.png", "PNG: Not enough image data"},
        {"png-chunk-length-ffffffff.png", "PNG: PNG unsigned integer out of range"},
        {"png-filter-9.png", "PNG: bad adaptive filter value"},
        {"png-bomb.png", "PNG: 16384 x 16384 pixels, more than 64000000 in all"},
        {"text.png", "neither PNG, JPEG, TIFF, WebP nor SVG"},
        {"ok.tif", ""},
        {"tiff-truncated-header.tif", "TIFF: Cannot read TIFF header"},
        {"tiff-truncated-ifd.tif", "TIFF: Can not read TIFF directory"},
        {"tiff-truncated-strip.tif",
         "TIFF: Read error at scanline 4294967295; got 24 bytes, expected 48"},
        {"tiff-ifd-beyond-eof.tif", "TIFF: Can not read TIFF directory count"},
        {"tiff-ifd-loop.tif", ""},
        {"tiff-entry-count-65535.tif",
         "TIFF: Sanity check on directory count failed, this is probably not a valid IFD offset"},
        {"tiff-strip-beyond-eof.tif",
         "TIFF: Read error at scanline 4294967295; got 0 bytes, expected 48"},
        {"tiff-huge-dimensions.tif",
         "TIFF: 2147483647 x 2147483647 pixels, more than 64000000 in all"},
        {"tiff-bits-65535.tif", "TIFF: Incorrect count for \"BitsPerSample\""},
        {"tiff-rows-per-strip-0.tif", "TIFF: Bad value 0 for \"RowsPerStrip\" tag"},
        {"ok.jpg", ""},
        {"jpeg-soi-only.jpg", "JPEG: Premature end of JPEG file"},
        {"jpeg-truncated-header.jpg", "JPEG: Premature end of JPEG file"},
        {"jpeg-truncated-scan.jpg", "JPEG: Premature end of JPEG file"},
        {"jpeg-huge-dimensions.jpg", "JPEG: Maximum supported image dimension is 65500 pixels"},
        {"jpeg-zero-height.jpg", "JPEG: Empty JPEG image (DNL not supported)"},
        {"jpeg-no-huffman.jpg", ""},
        {"jpeg-bad-huffman.jpg", "JPEG: Bogus Huffman table definition"},
        {"jpeg-segment-overrun.jpg", "JPEG: Bogus DQT index 15"},
        {"svg-truncated.svg",
         "SVG: XML parse error: Error domain 1 code 77 on line 1 column 81 of data: Premature end "
         "of data in tag svg line 1"},
        {"svg-entities.svg", "SVG: entities are not read"},
        {"svg-bad-path.svg", "SVG: neither a size nor a view box"}};
    std::map<std::string, std::string> answers;
    for (const auto& entry : std::filesystem::directory_iterator(kBad)) {
        const DecodedImage answer = decoded(contents(entry.path()));
        EXPECT_EQ(answer.image == nullptr, !answer.error.empty()) << entry.path();
        answers[entry.path().filename()] = answer.error;
    }
    EXPECT_EQ(answers, expected);
}

TEST(DecodeImage, NeverMakesAPictureOfAPartOfTheFile) {
    for (const char* name : {"harbor.png", "mountain.tif", "harbor.jpg", "harbor.svg"}) {
        const std::string file = contents(kIcons / name);
        // The last bytes may be those of a mark that nothing follows.
        for (std::size_t size = 0; size + 24 < file.size(); size += 17) {
            const DecodedImage answer = decoded(file.substr(0, size));
            EXPECT_EQ(answer.image, nullptr) << name << ' ' << size;
            EXPECT_FALSE(answer.error.empty());
            EXPECT_EQ(answer.error.find('\n'), std::string::npos);
        }
    }
}

// --- limits

TEST(DecodeImage, RefusesMorePixelsThanAllowedBeforeDecoding) {
    const Samples gray(200 * 100, 128);
    const auto rgba = repeated({1, 2, 3, 255}, 200 * 100);
    const std::map<std::string, std::string> files{
        {"PNG", encodedPNG(200, 100, PNG_FORMAT_GRAY, gray.data())},
        {"JPEG", encodedJPEG(200, 100, gray, {.components = 1, .colors = JCS_GRAYSCALE})},
        {"TIFF",
         encodedTIFF(200, 100, gray, {.samples = 1, .photometric = PHOTOMETRIC_MINISBLACK})},
        {"WebP", encodedWebP(200, 100, rgba)},
        {"SVG", "<svg width='200' height='100' xmlns='http://www.w3.org/2000/svg'/>"}};
    for (const auto& [name, file] : files) {
        EXPECT_EQ(decoded(file, {20'000}).error, "") << name;
        EXPECT_EQ(decoded(file, {19'999}).error,
                  name + ": 200 x 100 pixels, more than 19999 in all");
    }
}

TEST(DecodeImage, RefusesWhatIsTooLongForAnyPort) {
    const Samples gray(16'385, 128);
    const auto line = encodedPNG(16'385, 1, PNG_FORMAT_GRAY, gray.data());
    EXPECT_EQ(decoded(line).error, "PNG: 16385 x 1 pixels, more than 16384 to a side");
    EXPECT_NE(decoded(encodedPNG(1, 16'384, PNG_FORMAT_GRAY, gray.data())).image, nullptr);
}

// --- PNG

TEST(DecodePNG, MultipliesColorsByAlpha) {
    const Samples rgba{255, 128, 0, 255, 255, 128, 0, 128, 255, 128, 0, 1, 255, 255, 255, 0};
    EXPECT_EQ(bitmapOf(encodedPNG(4, 1, PNG_FORMAT_RGBA, rgba.data())).pixels,
              (Pixels{0xFFFF8000, 0x80804000, 0x01010100, 0}));
}

TEST(DecodePNG, ReadsGrayPalettesAndSixteenBits) {
    const Samples gray{0, 128, 255};
    EXPECT_EQ(bitmapOf(encodedPNG(3, 1, PNG_FORMAT_GRAY, gray.data())).pixels,
              (Pixels{0xFF000000, 0xFF808080, 0xFFFFFFFF}));
    const Samples indices{1, 0, 1};
    const Samples palette{255, 0, 0, 0, 0, 255};
    EXPECT_EQ(bitmapOf(encodedPNG(3, 1, PNG_FORMAT_RGB_COLORMAP, indices.data(), palette)).pixels,
              (Pixels{0xFF0000FF, 0xFFFF0000, 0xFF0000FF}));
    const std::vector<std::uint16_t> wide{65535, 0, 0, 0, 65535, 0};
    EXPECT_EQ(bitmapOf(encodedPNG(2, 1, PNG_FORMAT_LINEAR_RGB_ALPHA & ~PNG_FORMAT_FLAG_ALPHA,
                                  wide.data()))
                  .pixels,
              (Pixels{0xFFFF0000, 0xFF00FF00}));
}

// --- JPEG

TEST(DecodeJPEG, ReadsColorGrayAndProgressive) {
    for (const bool isProgressive : {false, true}) {
        const auto red =
            encodedJPEG(16, 16, repeated({200, 30, 20}, 256), {.isProgressive = isProgressive});
        EXPECT_LE(farthestChannel(bitmapOf(red).pixels.at(100), 0xFFC81E14), 2);
        const auto gray =
            encodedJPEG(16, 16, repeated({90}, 256),
                        {.components = 1, .colors = JCS_GRAYSCALE, .isProgressive = isProgressive});
        EXPECT_LE(farthestChannel(bitmapOf(gray).pixels.at(100), 0xFF5A5A5A), 1);
    }
}

TEST(DecodeJPEG, MixesInksAsAdobeWritesThemAndAsOthersDo) {
    const Samples paper = repeated({255, 128, 64, 128}, 256);
    const auto adobe = encodedJPEG(16, 16, paper, {.components = 4, .colors = JCS_CMYK});
    EXPECT_LE(farthestChannel(bitmapOf(adobe).pixels.at(100), 0xFF804020), 2);
    const auto other = encodedJPEG(16, 16, repeated({0, 127, 191, 127}, 256),
                                   {.components = 4, .colors = JCS_CMYK, .isAdobe = false});
    EXPECT_LE(farthestChannel(bitmapOf(other).pixels.at(100), 0xFF804020), 2);
}

TEST(DecodeJPEG, TurnsWhatTheCameraTurned) {
    constexpr auto exif =
        "Exif\0\0MM\0*\0\0\0\x08\0\x01"
        "\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0"sv;
    Samples halves;  // white at the left, black at the right
    for (int y = 0; y < 16; ++y) {
        for (int x = 0; x < 32; ++x) {
            halves.push_back(x < 16 ? 255 : 0);
        }
    }
    const Bitmap upright = bitmapOf(encodedJPEG(
        32, 16, halves, {.components = 1, .colors = JCS_GRAYSCALE, .exif = std::string(exif)}));
    EXPECT_EQ(upright.width, 16);
    EXPECT_EQ(upright.height, 32);
    EXPECT_EQ(upright.row(4)[8], 0xFFFFFFFFU);
    EXPECT_EQ(upright.row(28)[8], 0xFF000000U);
}

TEST(DecodeJPEG, RefusesDataThatEndBeforeTheirMarker) {
    const std::string file = contents(kIcons / "harbor.jpg");
    const std::string cut = file.substr(0, file.size() / 2) + "\xFF\xD9";
    EXPECT_EQ(decoded(cut).error, "JPEG: Corrupt JPEG data: premature end of data segment");
}

TEST(DecodeJPEG, GivesUpOnScansWithoutEnd) {
    const std::string file =
        encodedJPEG(4096, 4096, Samples(4096 * 4096, 99),
                    {.components = 1, .colors = JCS_GRAYSCALE, .isProgressive = true});
    // The last scan, again and again.
    const std::size_t scan = file.rfind("\xFF\xDA");
    std::string many = file.substr(0, file.size() - 2);
    for (int i = 0; i < 200; ++i) {
        many += file.substr(scan, file.size() - 2 - scan);
    }
    EXPECT_EQ(decoded(many + file.substr(file.size() - 2)).error,
              "JPEG: more than 119 scans of so many pixels");
    EXPECT_EQ(decoded(file).error, "");
}

// --- TIFF

TEST(DecodeTIFF, ReadsStripsAndTilesOfManyKinds) {
    const Samples colors{255, 0, 0, 0, 128, 0, 0, 0, 64, 9, 8, 7};
    const Pixels expected{0xFFFF0000, 0xFF008000, 0xFF000040, 0xFF090807};
    EXPECT_EQ(bitmapOf(encodedTIFF(2, 2, colors, {})).pixels, expected);
    const auto tiles = encodedTIFF(2, 2, colors, {.compression = COMPRESSION_LZW, .isTiled = true});
    EXPECT_EQ(bitmapOf(tiles).pixels, expected);
    EXPECT_EQ(bitmapOf(encodedTIFF(2, 2, colors, {.compression = COMPRESSION_LZW})).pixels,
              expected);
    Samples wide;
    for (const std::uint8_t sample : colors) {
        wide.insert(wide.end(), {sample, sample});
    }
    EXPECT_EQ(bitmapOf(encodedTIFF(2, 2, wide, {.bits = 16})).pixels, expected);
}

TEST(DecodeTIFF, RefusesDamagedData) {
    Samples noise(16 * 16 * 3);
    std::uint32_t state = 1;
    for (std::uint8_t& sample : noise) {
        state = state * 1664525 + 1013904223;
        sample = static_cast<std::uint8_t>(state >> 24);
    }
    std::string file = encodedTIFF(16, 16, noise, {.compression = COMPRESSION_LZW});
    EXPECT_NE(decoded(file).image, nullptr);
    file.replace(200, 40, 40, '\xFF');
    EXPECT_EQ(decoded(file).image, nullptr);
    EXPECT_TRUE(decoded(file).error.starts_with("TIFF: ")) << decoded(file).error;
}

TEST(DecodeTIFF, MixesInks) {
    const auto inks =
        encodedTIFF(1, 1, {0, 127, 191, 127}, {.samples = 4, .photometric = PHOTOMETRIC_SEPARATED});
    EXPECT_LE(farthestChannel(bitmapOf(inks).pixels.at(0), 0xFF804020), 1);
}

TEST(DecodeTIFF, MultipliesColorsByAlphaOnce) {
    const auto straight = encodedTIFF(1, 1, {255, 128, 0, 128},
                                      {.samples = 4, .extraSample = EXTRASAMPLE_UNASSALPHA});
    EXPECT_LE(farthestChannel(bitmapOf(straight).pixels.at(0), 0x80804000), 1);
    const auto multiplied =
        encodedTIFF(1, 1, {128, 64, 0, 128}, {.samples = 4, .extraSample = EXTRASAMPLE_ASSOCALPHA});
    EXPECT_EQ(bitmapOf(multiplied).pixels, Pixels{0x80804000});
}

TEST(DecodeTIFF, TurnsWhatLiesOnItsSide) {
    const Samples gray{10, 20, 30, 40, 50, 60};
    const auto turned = [&](std::uint16_t orientation) {
        return bitmapOf(encodedTIFF(
            3, 2, gray,
            {.samples = 1, .photometric = PHOTOMETRIC_MINISBLACK, .orientation = orientation}));
    };
    EXPECT_EQ(turned(ORIENTATION_TOPLEFT).row(0)[0], 0xFF0A0A0AU);
    EXPECT_EQ(turned(ORIENTATION_TOPRIGHT).row(0)[0], 0xFF1E1E1EU);
    EXPECT_EQ(turned(ORIENTATION_BOTLEFT).row(0)[0], 0xFF282828U);
    const Bitmap side = turned(ORIENTATION_RIGHTTOP);
    EXPECT_EQ(side.width, 2);
    EXPECT_EQ(side.row(0)[0], 0xFF282828U);
    EXPECT_EQ(side.row(2)[1], 0xFF1E1E1EU);
}

// --- WebP

TEST(DecodeWebP, MultipliesColorsByAlpha) {
    const Samples rgba{255, 128, 0, 255, 255, 128, 0, 128};
    const Bitmap bitmap = bitmapOf(encodedWebP(2, 1, rgba));
    EXPECT_EQ(bitmap.pixels.at(0), 0xFFFF8000U);
    EXPECT_LE(farthestChannel(bitmap.pixels.at(1), 0x80804000), 1);
}

TEST(DecodeWebP, SaysWhatIsWrong) {
    const std::string file = encodedWebP(64, 64, repeated({1, 2, 3, 4}, 64 * 64));
    EXPECT_EQ(decoded(file.substr(0, file.size() - 4)).error, "WebP: the data end too early");
    EXPECT_EQ(decoded(file.substr(0, 12)).error, "WebP: the data end too early");
    std::string damaged = file;
    damaged[20] = 'X';
    EXPECT_EQ(decoded(damaged).error, "WebP: the data are damaged");
}

TEST(DecodeWebP, RefusesAnimations) {
    constexpr auto header =
        "RIFF\x2C\0\0\0WEBPVP8X\x0A\0\0\0\x02\0\0\0\x07\0\0\x07\0\0ANIM\x06\0\0\0\0\0\0\0\0\0ANMF"
        "\0\0\0\0"sv;
    EXPECT_EQ(decoded(std::string(header)).error, "WebP: animations are not drawn");
}

}  // namespace
}  // namespace mezalith::platform
