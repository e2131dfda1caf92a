// SPDX-License-Identifier: MIT
#include <mezalith/platform/bitmap_touch.hpp>

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

/// Ten by ten pixels, those of the column 2 and the row 3 from the top painted.
Bitmap cross() {
    Bitmap bitmap = Bitmap::bitmapWithSize(10, 10);
    for (std::int32_t i = 0; i < 10; ++i) {
        bitmap.row(i)[2] = 0xFF000000;
        bitmap.row(3)[static_cast<std::size_t>(i)] = 0x01000000;
    }
    return bitmap;
}

/// Upright: the lower left corner at (100, 100), `scale` units to a pixel.
AffineTransform upright(double scale) { return {scale, 0, 0, -scale, 100, 100 + 10 * scale}; }

bool isHit(double x, double y, double radius, double scale = 1) {
    return touchesBitmap(cross(), upright(scale), {{x, y}, radius});
}

TEST(TouchesBitmap, HitsWhatIsNotTransparent) {
    EXPECT_TRUE(isHit(102.5, 101, 0.1));
    EXPECT_TRUE(isHit(109, 106.5, 0.1));
    EXPECT_FALSE(isHit(106, 102, 0.5));
    EXPECT_FALSE(isHit(102.5, 99, 0.5));
    EXPECT_TRUE(isHit(102.5, 99, 1));
    EXPECT_FALSE(isHit(98, 106.5, 1.9));
    EXPECT_TRUE(isHit(98, 106.5, 2.1));
}

TEST(TouchesBitmap, TakesPixelsAsFarAsTheyShineWhenSmoothed) {
    // Pixels of 10 units: the column from 120 to 130, and half a pixel on both sides.
    EXPECT_TRUE(isHit(134, 110, 0.1, 10));
    EXPECT_FALSE(isHit(136, 110, 0.5, 10));
    EXPECT_TRUE(isHit(116, 110, 0.1, 10));
    EXPECT_FALSE(isHit(114, 110, 0.5, 10));
    // Not beyond the picture.
    EXPECT_FALSE(isHit(125, 99, 0.5, 10));
}

TEST(TouchesBitmap, TurnsWithThePicture) {
    // A quarter turn counter-clockwise about (100, 100): the row is a column now.
    const AffineTransform turn{0, 1, -1, 0, 200, 0};
    const AffineTransform placement = turn.prepending(upright(1));
    EXPECT_TRUE(touchesBitmap(cross(), placement, {{93.5, 109}, 0.1}));
    EXPECT_FALSE(touchesBitmap(cross(), placement, {{98, 109}, 0.5}));
    EXPECT_TRUE(touchesBitmap(cross(), placement, {{99, 102.5}, 0.1}));
}

TEST(TouchesBitmap, IsNowhereWithoutAPlace) {
    EXPECT_FALSE(touchesBitmap(cross(), {0, 0, 0, 0, 0, 0}, {{0, 0}, 5}));
    EXPECT_FALSE(touchesBitmap(cross(), {1, 0, 1, 0, 0, 0}, {{0, 0}, 5}));
    EXPECT_FALSE(touchesBitmap(cross(), upright(1), {{1e300, 0}, 1e299}));
    EXPECT_FALSE(touchesBitmap(cross(), upright(1), {{std::nan(""), 0}, 1}));
    EXPECT_FALSE(touchesBitmap({}, upright(1), {{102, 102}, 1}));
    EXPECT_TRUE(touchesBitmap(cross(), upright(1), {{0, 0}, 1e9}));
}

}  // namespace
}  // namespace mezalith::platform
