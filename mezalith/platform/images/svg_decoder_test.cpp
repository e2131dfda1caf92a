// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/image_decoder.hpp>

#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

DecodedImage decodedSVG(const std::string& attributes, const std::string& body = {},
                        const ImageLimits& limits = {}) {
    const std::string text =
        "<svg xmlns='http://www.w3.org/2000/svg' " + attributes + ">" + body + "</svg>";
    return decodeImage(std::as_bytes(std::span(text)), limits);
}

const std::string kSquare = "<rect width='5' height='10' fill='#00f' fill-opacity='0.5'/>";

TEST(DecodeSVG, HasTheSizeThatTheDocumentNames) {
    const auto size = [](const std::string& attributes) {
        const auto image = decodedSVG(attributes).image;
        return image != nullptr ? image->size() : MzSize{};
    };
    EXPECT_EQ(size("width='10' height='20px'").height, 20);
    EXPECT_EQ(size("width='1in' height='20'").width, 96);
    EXPECT_EQ(size("viewBox='0 0 30 40'").width, 30);
    EXPECT_EQ(size("viewBox='0 0 30 40' width='100%' height='100%'").height, 40);
}

TEST(DecodeSVG, RefusesWhatHasNoSize) {
    EXPECT_EQ(decodedSVG("").error, "SVG: neither a size nor a view box");
    EXPECT_EQ(decodedSVG("width='0' height='5'").error, "SVG: neither a size nor a view box");
}

TEST(DecodeSVG, IsDrawnAnewForEachSize) {
    const auto image = decodedSVG("viewBox='0 0 10 10'", kSquare).image;
    for (const int side : {10, 40}) {
        const auto bitmap = image->bitmapForPixelSize({double(side), double(side)});
        ASSERT_EQ(bitmap->width, side);
        ASSERT_EQ(bitmap->height, side);
        const auto half = static_cast<std::size_t>(side / 2);
        EXPECT_EQ(bitmap->row(side / 2)[half - 1], 0x80000080U);
        EXPECT_EQ(bitmap->row(side / 2)[half], 0U);
    }
}

TEST(DecodeSVG, IsDrawnWithNoMorePixelsThanAllowed) {
    const auto image = decodedSVG("viewBox='0 0 10 10'", kSquare, {10'000}).image;
    const auto bitmap = image->bitmapForPixelSize({1000, 1000});
    EXPECT_EQ(bitmap->width, 100);
    EXPECT_EQ(bitmap->height, 100);
    const auto wide = image->bitmapForPixelSize({1e9, 10});
    EXPECT_LE(double(wide->width) * wide->height, 10'000);
    EXPECT_EQ(wide->height, 1);
}

TEST(DecodeSVG, IsDrawnWithFewerPixelsTheMoreStepsItTakes) {
    std::string body;
    for (int i = 0; i < 100'000; ++i) {
        body += "<g/>";
    }
    const auto image = decodedSVG("viewBox='0 0 10 10'", body).image;
    ASSERT_NE(image, nullptr);
    EXPECT_LT(image->bitmapForPixelSize({2000, 2000})->width, 500);
}

TEST(DecodeSVG, IsDrawnWithFewerPixelsTheDeeperItIs) {
    std::string body;
    for (int i = 0; i < 240; ++i) {
        body = "<g>" + body + "</g>";
    }
    const auto image = decodedSVG("viewBox='0 0 10 10'", body).image;
    ASSERT_NE(image, nullptr);
    EXPECT_LE(image->bitmapForPixelSize({2000, 2000})->width, 1020);
}

TEST(DecodeSVG, HasNoPixelsForNoPlace) {
    const auto image = decodedSVG("viewBox='0 0 10 10'", kSquare).image;
    const double nan = std::numeric_limits<double>::quiet_NaN();
    for (const MzSize size : {MzSize{0, 10}, MzSize{10, -1}, MzSize{nan, 10}}) {
        EXPECT_EQ(image->bitmapForPixelSize(size), nullptr);
    }
    EXPECT_EQ(image->bitmapForPixelSize({0.01, 0.01})->width, 1);
}

TEST(DecodeSVG, ReadsNothingButItsBytes) {
    EXPECT_EQ(decodedSVG("viewBox='0 0 1 1'", "<image href='file:///etc/passwd'/>").error,
              "SVG: not drawn: <image>");
    const auto elsewhere = decodedSVG("viewBox='0 0 10 10'", "<use href='icon.svg#a'/>" + kSquare);
    ASSERT_NE(elsewhere.image, nullptr);
    EXPECT_EQ(elsewhere.image->bitmapForPixelSize({10, 10})->row(5)[1], 0x80000080U);
}

TEST(DecodeSVG, SaysWhatIsNotWellFormed) {
    const DecodedImage answer = decodedSVG("viewBox='0 0 1 1'", "<g>");
    EXPECT_EQ(answer.image, nullptr);
    EXPECT_TRUE(answer.error.starts_with("SVG: XML parse error")) << answer.error;
}

TEST(DecodeSVG, RefusesLongTexts) {
    EXPECT_EQ(decodedSVG("viewBox='0 0 1 1'", std::string(5 << 20, ' ')).error,
              "SVG: more than 4194304 bytes");
}

}  // namespace
}  // namespace mezalith::platform
