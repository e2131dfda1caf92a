// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/cairo/pictures.hpp>

#include <numbers>
#include <string>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using namespace pictures;

constexpr std::uint32_t kRed = 0xFFFF0000;
constexpr std::uint32_t kGreen = 0xFF00FF00;
constexpr std::uint32_t kBlue = 0xFF0000FF;
constexpr std::uint32_t kWhite = 0xFFFFFFFF;

constexpr Pixel kRedPixel{255, 255, 0, 0};
constexpr Pixel kGreenPixel{255, 0, 255, 0};
constexpr Pixel kBluePixel{255, 0, 0, 255};
constexpr Pixel kNothing{0, 0, 0, 0};

/// Red and green above blue and white.
std::shared_ptr<const Image> fourColors() {
    return Image::imageWithBitmap({2, 2, {kRed, kGreen, kBlue, kWhite}});
}

/// Asks for no more than how large it is drawn.
class MeasuringImage final : public Image {
  public:
    mutable MzSize asked{};
    MzSize size() const override { return {1, 1}; }
    std::shared_ptr<const Bitmap> bitmapForPixelSize(MzSize pixels) const override {
        asked = pixels;
        return nullptr;
    }
};

TEST(CairoPort, DrawsAnImageUprightIntoItsRectangle) {
    const auto port = CairoPort::pixelPort({20, 20}, 2);
    port->drawImageInRect(fourColors().get(), {{4, 6}, {10, 8}});
    EXPECT_EQ(at(*port, 8, 27), kRedPixel);
    EXPECT_EQ(at(*port, 27, 27), kGreenPixel);
    EXPECT_EQ(at(*port, 8, 12), kBluePixel);
    EXPECT_EQ(at(*port, 27, 12), (Pixel{255, 255, 255, 255}));
    for (const auto& [x, y] : {std::pair{7, 20}, {28, 20}, {18, 11}, {18, 28}}) {
        EXPECT_EQ(at(*port, x, y), kNothing) << x << ' ' << y;
    }
}

TEST(CairoPort, DrawsEachPixelOfAnImageAsItIsAtItsOwnSize) {
    for (const double ratio : {1.0, 2.0}) {
        const auto port = CairoPort::pixelPort({10, 10}, ratio);
        port->drawImageInRect(fourColors().get(), {{4, 4}, {2 / ratio, 2 / ratio}});
        const int corner = static_cast<int>(4 * ratio);
        EXPECT_EQ(at(*port, corner, corner + 1), kRedPixel);
        EXPECT_EQ(at(*port, corner + 1, corner + 1), kGreenPixel);
        EXPECT_EQ(at(*port, corner, corner), kBluePixel);
    }
}

TEST(CairoPort, DrawsImagesUnderTheTransform) {
    const auto port = CairoPort::pixelPort({20, 20});
    port->translate(10, 10);
    port->rotate(std::numbers::pi / 2);
    port->drawImageInRect(fourColors().get(), {{0, 0}, {8, 8}});
    // (0..8, 0..8) becomes (2..10, 10..18): what was above is at the left.
    EXPECT_EQ(at(*port, 2, 10), kRedPixel);
    EXPECT_EQ(at(*port, 2, 17), kGreenPixel);
    EXPECT_EQ(at(*port, 9, 10), kBluePixel);
    EXPECT_EQ(at(*port, 11, 12), kNothing);
}

TEST(CairoPort, DrawsTransparentImagesOverWhatIsThere) {
    const auto port = CairoPort::pixelPort({4, 4});
    port->setRGBFillColor(0, 0, 1, 1);
    fillRectangle(*port, 0, 0, 4, 4);
    const auto halfRed = Image::imageWithBitmap({1, 1, {0x80800000}});
    port->drawImageInRect(halfRed.get(), {{0, 0}, {4, 4}});
    EXPECT_EQ(at(*port, 2, 2), (Pixel{255, 128, 0, 127}));
}

TEST(CairoPort, AsksAnImageForThePixelsThatItWillCover) {
    const MeasuringImage image;
    const auto port = CairoPort::pixelPort({20, 20}, 2);
    port->scale(3, 1);
    port->rotate(std::numbers::pi / 2);
    port->drawImageInRect(&image, {{0, 0}, {5, 4}});
    EXPECT_NEAR(image.asked.width, 10, 1e-9);
    EXPECT_NEAR(image.asked.height, 24, 1e-9);
}

TEST(CairoPort, AsksForThePixelsOfADocumentToo) {
    const MeasuringImage image;
    const auto port = CairoPort::svgPort(
        {20, 20}, [](auto) { return true; }, 2);
    port->drawImageInRect(&image, {{0, 0}, {5, 4}});
    EXPECT_EQ(image.asked.width, 10);
    EXPECT_EQ(image.asked.height, 8);
    const auto layer = port->createLayer({9, 9});
    layer->port()->drawImageInRect(&image, {{0, 0}, {6, 3}});
    EXPECT_EQ(image.asked.width, 12);
    EXPECT_EQ(image.asked.height, 6);
}

TEST(CairoPort, CastsTheShadowOfAnImage) {
    const auto port = CairoPort::pixelPort({30, 30});
    port->setShadowWithColor({10, 10}, 0, Color::colorWithDeviceRed(0, 0, 1, 1).get());
    port->drawImageInRect(Image::imageWithBitmap({1, 1, {kRed}}).get(), {{4, 4}, {6, 6}});
    EXPECT_EQ(at(*port, 7, 7), kRedPixel);
    EXPECT_EQ(at(*port, 17, 17), kBluePixel);
    EXPECT_EQ(at(*port, 12, 12), kNothing);
}

TEST(CairoPort, DrawsNoImageWithoutAPlaceForIt) {
    const auto port = CairoPort::pixelPort({20, 20});
    port->drawImageInRect(nullptr, {{0, 0}, {5, 5}});
    for (const MzSize size : {MzSize{0, 5}, MzSize{5, 0}, MzSize{-5, 5}, MzSize{nan, 5},
                              MzSize{5, infinity}, MzSize{1e-300, 5}, MzSize{1e300, 1e300}}) {
        port->drawImageInRect(fourColors().get(), {{0, 0}, size});
        port->drawImageInRect(fourColors().get(), {{nan, infinity}, size});
    }
    port->drawImageInRect(fourColors().get(), {{nan, 0}, {5, 5}});
    port->drawImageInRect(fourColors().get(), {{0, 1e300}, {5, 5}});
    EXPECT_TRUE(isEmpty(*port));
    EXPECT_EQ(port->error(), std::nullopt);
}

TEST(CairoPort, LeavesOutImagesThatCairoCannotHold) {
    const auto wide = Image::imageWithBitmap(Bitmap::bitmapWithSize(16385, 1));
    const auto high = Image::imageWithBitmap(Bitmap::bitmapWithSize(1, 16385));
    const auto port = CairoPort::pixelPort({20, 20});
    port->drawImageInRect(wide.get(), {{0, 0}, {20, 20}});
    port->drawImageInRect(high.get(), {{0, 0}, {20, 20}});
    EXPECT_EQ(port->error(), std::nullopt);
    const auto largest =
        Image::imageWithBitmap({16384, 1, std::vector<std::uint32_t>(16384, kRed)});
    port->drawImageInRect(largest.get(), {{0, 0}, {20, 20}});
    EXPECT_EQ(at(*port, 10, 10), kRedPixel);
}

TEST(CairoPort, DocumentsKeepImagesThatAreGone) {
    for (const auto& makePort : {+[](CairoPort::Sink sink) {
                                     return CairoPort::svgPort({20, 20}, std::move(sink));
                                 },
                                 +[](CairoPort::Sink sink) {
                                     return CairoPort::pdfPort({20, 20}, std::move(sink));
                                 }}) {
        std::string text;
        const auto port = makePort([&](std::span<const std::byte> bytes) {
            text.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
            return true;
        });
        port->drawImageInRect(fourColors().get(), {{4, 4}, {8, 8}});
        const auto layer = port->createLayer({9, 9});
        layer->port()->drawImageInRect(fourColors().get(), {{0, 0}, {9, 9}});
        port->drawLayerAtPoint(layer.get(), {5, 5});
        EXPECT_TRUE(port->finish());
        EXPECT_TRUE(text.find("<image") != std::string::npos ||
                    text.find("/Image") != std::string::npos);
    }
}

}  // namespace
}  // namespace mezalith::platform
