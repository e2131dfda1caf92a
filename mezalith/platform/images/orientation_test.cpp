// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/orientation.hpp>

#include <string>
#include <string_view>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using namespace std::string_view_literals;

/// Exif with one directory of one entry before the orientation.
constexpr auto kLittle =
    "Exif\0\0II*\0\x08\0\0\0\x02\0"
    "\x0F\x01\x02\0\x04\0\0\0abc\0"
    "\x12\x01\x03\0\x01\0\0\0\x06\0\0\0"
    "\0\0\0\0"sv;
constexpr auto kBig =
    "Exif\0\0MM\0*\0\0\0\x08\0\x01"
    "\x01\x12\0\x03\0\0\0\x01\0\x08\0\0"
    "\0\0\0\0"sv;

int orientationIn(std::string_view bytes) {
    return exifOrientation(std::as_bytes(std::span(bytes)));
}

/// 1 2 3 above 4 5 6, stored in each orientation.
Bitmap stored(int orientation) {
    const Bitmap asStored[] = {{3, 2, {1, 2, 3, 4, 5, 6}}, {3, 2, {3, 2, 1, 6, 5, 4}},
                               {3, 2, {6, 5, 4, 3, 2, 1}}, {3, 2, {4, 5, 6, 1, 2, 3}},
                               {2, 3, {1, 4, 2, 5, 3, 6}}, {2, 3, {3, 6, 2, 5, 1, 4}},
                               {2, 3, {6, 3, 5, 2, 4, 1}}, {2, 3, {4, 1, 5, 2, 6, 3}}};
    return asStored[orientation - 1];
}

TEST(ExifOrientation, IsReadInEitherByteOrder) {
    EXPECT_EQ(orientationIn(kLittle), 6);
    EXPECT_EQ(orientationIn(kBig), 8);
}

TEST(ExifOrientation, IsUprightWhereNothingIsSaid) {
    EXPECT_EQ(orientationIn(""sv), 1);
    EXPECT_EQ(orientationIn("Exif\0\0"sv), 1);
    EXPECT_EQ(orientationIn("http://ns.adobe.com/xap/1.0/"sv), 1);
    std::string other(kLittle);
    other[6 + 10 + 12] = '\x13';
    EXPECT_EQ(orientationIn(other), 1);
    std::string noOrder(kLittle);
    noOrder[6] = 'X';
    EXPECT_EQ(orientationIn(noOrder), 1);
}

TEST(ExifOrientation, IsUprightForNumbersWithoutAMeaning) {
    for (const char value : {'\0', '\x09', '\xFF'}) {
        std::string odd(kLittle);
        odd[6 + 10 + 12 + 8] = value;
        EXPECT_EQ(orientationIn(odd), 1);
    }
}

TEST(ExifOrientation, StaysWithinWhateverIsLeft) {
    const std::size_t end = kLittle.size() - 6;
    for (std::size_t size = 0; size < end; ++size) {
        EXPECT_EQ(orientationIn(kLittle.substr(0, size)), 1) << size;
    }
    std::string far(kLittle);
    far.replace(10, 4, "\xFF\xFF\xFF\xFF");
    EXPECT_EQ(orientationIn(far), 1);
    std::string many(kLittle.substr(0, 6 + 10 + 12));
    many.replace(14, 2, "\xFF\xFF");
    EXPECT_EQ(orientationIn(many), 1);
}

TEST(UprightBitmap, TurnsAndMirrorsEveryOrientation) {
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const Bitmap upright = uprightBitmap(stored(orientation), orientation);
        EXPECT_EQ(upright.width, 3) << orientation;
        EXPECT_EQ(upright.height, 2) << orientation;
        EXPECT_EQ(upright.pixels, stored(1).pixels) << orientation;
    }
}

TEST(UprightBitmap, LeavesAnyOtherNumberAlone) {
    for (const int orientation : {0, 9, -1}) {
        EXPECT_EQ(uprightBitmap(stored(1), orientation).pixels, stored(1).pixels);
    }
    EXPECT_TRUE(uprightBitmap({}, 6).isEmpty());
}

}  // namespace
}  // namespace mezalith::platform
