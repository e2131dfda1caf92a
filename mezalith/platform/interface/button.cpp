// SPDX-License-Identifier: MIT
#include <mezalith/platform/bezier_path.hpp>
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/interface/button.hpp>
#include <mezalith/platform/interface/label.hpp>

#include <memory>
#include <utility>

namespace mezalith::platform {
namespace {

constexpr MzSize kPadding{9, 3};

std::shared_ptr<const Color> titleColor() { return Color::colorWithText("#1f4e79"); }
std::shared_ptr<const Color> faceColor() { return Color::colorWithText("#eef3f8"); }
std::shared_ptr<const Color> edgeColor() { return Color::colorWithText("#9db4c9"); }

}  // namespace

Button::Button(std::string_view title, const TextStyle& style, std::function<void()> click)
    : click_(std::move(click)) {
    const auto label = std::make_shared<Label>(title, style, titleColor());
    const MzSize inner = label->frame().size;
    setFrameSize({inner.width + 2 * kPadding.width, inner.height + 2 * kPadding.height});
    label->setFrameOrigin({kPadding.width, kPadding.height});
    addSubview(label);
}

void Button::performClick() const {
    // A copy, as the click may end the button.
    if (const std::function<void()> click = click_) click();
}

void Button::mouseDown(const Event& event) {
    if (event.buttonNumber == 0) performClick();
}

void Button::drawRect(MzRect) {
    const GraphicsContext* const context = GraphicsContext::current();
    if (context == nullptr || context->graphicsPort() == nullptr) return;
    GraphicsPort& port = *context->graphicsPort();
    port.setFillColor(faceColor().get());
    port.setStrokeColor(edgeColor().get());
    BezierPath frame;
    frame.appendRect(MzInsetRect(bounds(), 0.5, 0.5));
    frame.fill(port);
    frame.stroke(port);
}

}  // namespace mezalith::platform
