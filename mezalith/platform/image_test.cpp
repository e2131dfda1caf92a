// SPDX-License-Identifier: MIT
#include <mezalith/platform/image.hpp>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

TEST(Bitmap, BeginsTransparent) {
    const Bitmap bitmap = Bitmap::bitmapWithSize(3, 2);
    EXPECT_EQ(bitmap.width, 3);
    EXPECT_EQ(bitmap.height, 2);
    EXPECT_EQ(bitmap.pixels, std::vector<std::uint32_t>(6, 0U));
}

TEST(Bitmap, IsEmptyWithoutPositiveSides) {
    EXPECT_TRUE(Bitmap::bitmapWithSize(0, 4).isEmpty());
    EXPECT_TRUE(Bitmap::bitmapWithSize(4, 0).isEmpty());
    EXPECT_TRUE(Bitmap::bitmapWithSize(-4, -4).isEmpty());
    EXPECT_TRUE(Bitmap().isEmpty());
    EXPECT_FALSE(Bitmap::bitmapWithSize(1, 1).isEmpty());
}

TEST(Bitmap, HandsOutItsRowsFromTheTop) {
    Bitmap bitmap{2, 2, {1, 2, 3, 4}};
    EXPECT_EQ(bitmap.row(0)[1], 2U);
    EXPECT_EQ(bitmap.row(1)[0], 3U);
    EXPECT_EQ(bitmap.row(1).size(), 2U);
    bitmap.row(1)[1] = 9;
    EXPECT_EQ(bitmap.pixels[3], 9U);
    const Bitmap& readOnly = bitmap;
    EXPECT_EQ(readOnly.row(1)[1], 9U);
    for (const int outside : {-1, 2}) {
        EXPECT_TRUE(bitmap.row(outside).empty());
        EXPECT_TRUE(readOnly.row(outside).empty());
    }
}

TEST(Image, HasOneViewPointPerPixel) {
    const auto image = Image::imageWithBitmap({2, 3, std::vector<std::uint32_t>(6, 7U)});
    EXPECT_EQ(image->size().width, 2);
    EXPECT_EQ(image->size().height, 3);
}

TEST(Image, AnswersItsPixelsForEveryPlace) {
    const auto image = Image::imageWithBitmap({1, 2, {5, 6}});
    const auto bitmap = image->bitmapForPixelSize({100, 100});
    EXPECT_EQ(bitmap->pixels, (std::vector<std::uint32_t>{5, 6}));
    EXPECT_EQ(image->bitmapForPixelSize({0, 0}), bitmap);
}

TEST(Image, IsNotMadeOfAnythingButAllItsPixels) {
    EXPECT_EQ(Image::imageWithBitmap({}), nullptr);
    EXPECT_EQ(Image::imageWithBitmap({2, 2, {1, 2, 3}}), nullptr);
    EXPECT_EQ(Image::imageWithBitmap({2, 2, {1, 2, 3, 4, 5}}), nullptr);
    EXPECT_EQ(Image::imageWithBitmap({-2, -2, {1, 2, 3, 4}}), nullptr);
    EXPECT_EQ(Image::imageWithBitmap({0, 0, {}}), nullptr);
}

}  // namespace
}  // namespace mezalith::platform
