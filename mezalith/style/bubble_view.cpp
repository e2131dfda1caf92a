// SPDX-License-Identifier: MIT
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/style/bubble_view.hpp>
#include <mezalith/style/round_rect.hpp>

namespace mezalith {

using platform::Color;
using platform::GraphicsContext;

void MzBubbleView::drawRect(MzRect) {
    const GraphicsContext* const context = GraphicsContext::current();
    if (context == nullptr || context->graphicsPort() == nullptr) return;
    platform::GraphicsPort& port = *context->graphicsPort();
    port.setStrokeColor(Color::darkGrayColor().get());
    port.setFillColor(Color::whiteColor().get());
    const auto path = bezierPathWithCartoonBubbleInRect(bubbleRect_, stemOrigin_, kCornerRadius);
    path.fill(port);
    path.stroke(port);
}

}  // namespace mezalith
