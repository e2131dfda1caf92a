// SPDX-License-Identifier: MIT
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/interface/label.hpp>

#include <utility>

namespace mezalith::platform {

Label::Label(std::string_view text, const TextStyle& style, std::shared_ptr<const Color> color)
    : color_(std::move(color)) {
    TextOutline outline = textOutline(text, style);
    setFrameSize(outline.size);
    outline_ = std::move(outline.path);
}

void Label::drawRect(MzRect) {
    const GraphicsContext* const context = GraphicsContext::current();
    if (context == nullptr || context->graphicsPort() == nullptr || color_ == nullptr) return;
    context->graphicsPort()->setFillColor(color_.get());
    outline_.fill(*context->graphicsPort());
}

}  // namespace mezalith::platform
