// SPDX-License-Identifier: MIT
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/interface/image_view.hpp>

#include <algorithm>
#include <utility>

namespace mezalith::platform {
namespace {

MzSize scaled(MzSize size, double factor) { return {size.width * factor, size.height * factor}; }

MzSize sizeFor(MzSize natural, std::optional<double> width, std::optional<double> height) {
    if (width && height) return {*width, *height};
    if (width) return scaled(natural, *width / natural.width);
    if (height) return scaled(natural, *height / natural.height);
    return natural;
}

MzSize bounded(MzSize size) {
    const double side = std::max(size.width, size.height);
    return side > ImageView::kLargestSide ? scaled(size, ImageView::kLargestSide / side) : size;
}

}  // namespace

ImageView::ImageView(std::shared_ptr<const Image> image, std::optional<double> width,
                     std::optional<double> height)
    : image_(std::move(image)) {
    if (image_ != nullptr) setFrameSize(bounded(sizeFor(image_->size(), width, height)));
}

void ImageView::drawRect(MzRect) {
    const GraphicsContext* const context = GraphicsContext::current();
    if (context == nullptr || context->graphicsPort() == nullptr) return;
    context->graphicsPort()->drawImageInRect(image_.get(), bounds());
}

}  // namespace mezalith::platform
