// SPDX-License-Identifier: MIT
#include <mezalith/platform/image.hpp>

#include <utility>

namespace mezalith::platform {
namespace {

std::size_t pixelCount(std::int32_t width, std::int32_t height) {
    return width > 0 && height > 0
               ? static_cast<std::size_t>(width) * static_cast<std::size_t>(height)
               : 0;
}

class BitmapImage final : public Image {
  public:
    explicit BitmapImage(std::shared_ptr<const Bitmap> bitmap) : bitmap_(std::move(bitmap)) {}

    MzSize size() const override { return {double(bitmap_->width), double(bitmap_->height)}; }
    std::shared_ptr<const Bitmap> bitmapForPixelSize(MzSize) const override { return bitmap_; }

  private:
    std::shared_ptr<const Bitmap> bitmap_;
};

/// Where row `row` begins, for a row that is there.
std::size_t rowStart(const Bitmap& bitmap, std::int32_t row) {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(bitmap.width);
}

bool hasRow(const Bitmap& bitmap, std::int32_t row) {
    return row >= 0 && row < bitmap.height && !bitmap.isEmpty();
}

}  // namespace

Bitmap Bitmap::bitmapWithSize(std::int32_t width, std::int32_t height) {
    const std::size_t count = pixelCount(width, height);
    if (count == 0) {
        return {};
    }
    return {width, height, std::vector<std::uint32_t>(count)};
}

std::span<const std::uint32_t> Bitmap::row(std::int32_t row) const {
    if (!hasRow(*this, row)) {
        return {};
    }
    return std::span(pixels).subspan(rowStart(*this, row), static_cast<std::size_t>(width));
}

std::span<std::uint32_t> Bitmap::row(std::int32_t row) {
    if (!hasRow(*this, row)) {
        return {};
    }
    return std::span(pixels).subspan(rowStart(*this, row), static_cast<std::size_t>(width));
}

std::shared_ptr<const Image> Image::imageWithBitmap(Bitmap bitmap) {
    const std::size_t count = pixelCount(bitmap.width, bitmap.height);
    if (count == 0 || bitmap.pixels.size() != count) {
        return nullptr;
    }
    return std::make_shared<BitmapImage>(std::make_shared<const Bitmap>(std::move(bitmap)));
}

}  // namespace mezalith::platform
