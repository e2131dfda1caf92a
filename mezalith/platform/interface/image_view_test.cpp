// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface/image_view.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

std::shared_ptr<const Image> image(std::int32_t width, std::int32_t height) {
    return Image::imageWithBitmap(Bitmap::bitmapWithSize(width, height));
}

void expectSize(const ImageView& view, double width, double height) {
    EXPECT_EQ(view.frame().size.width, width);
    EXPECT_EQ(view.frame().size.height, height);
}

TEST(ImageView, IsAsLargeAsItsImage) { expectSize(ImageView(image(30, 20)), 30, 20); }

TEST(ImageView, KeepsProportionsToTheSideThatIsGiven) {
    expectSize(ImageView(image(30, 20), 15), 15, 10);
    expectSize(ImageView(image(30, 20), {}, 40), 60, 40);
    expectSize(ImageView(image(30, 20), 7, 9), 7, 9);
}

TEST(ImageView, BoundsItsSides) {
    expectSize(ImageView(image(2000, 20)), 1000, 10);
    expectSize(ImageView(image(1, 100), 100), 10, 1000);
}

TEST(ImageView, DrawsItsImageOverItsBounds) {
    ImageView view(image(30, 20), 15);
    view.drawRect(view.bounds());
    RecordingPort port;
    const GraphicsContext context(&port);
    view.setFrameOrigin({3, 4});
    view.drawRect(view.bounds());
    ASSERT_EQ(port.lines().size(), 1U);
    EXPECT_TRUE(port.lines()[0].starts_with("drawImageInRect "));
    EXPECT_TRUE(port.lines()[0].ends_with(" 0 0 15 10"));
}

TEST(ImageView, IsEmptyWithoutAnImage) { expectSize(ImageView(nullptr, 10, 10), 0, 0); }

}  // namespace
}  // namespace mezalith::platform
