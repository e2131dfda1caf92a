// SPDX-License-Identifier: MIT
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/shadow.hpp>

namespace mezalith::platform {

std::shared_ptr<const Color> Shadow::defaultColor() {
    return Color::colorWithCalibratedWhite(0, 1.0 / 3.0);
}

void Shadow::set() const {
    const GraphicsContext* context = GraphicsContext::current();
    if (context == nullptr || context->graphicsPort() == nullptr) return;
    context->graphicsPort()->setShadowWithColor(offset, blurRadius, color.get());
}

void Shadow::encodeWithCoder(KeyedArchiver& coder) const {
    coder.encodeDouble(offset.width, "offsetWidth");
    coder.encodeDouble(offset.height, "offsetHeight");
    coder.encodeDouble(blurRadius, "blurRadius");
    coder.encodeObject(color.get(), "color");
}

std::shared_ptr<const Shadow> Shadow::initWithCoder(const KeyedUnarchiver& coder) {
    const auto shadow = std::make_shared<Shadow>();
    shadow->offset = {coder.decodeDouble("offsetWidth"), coder.decodeDouble("offsetHeight")};
    shadow->blurRadius = coder.decodeDouble("blurRadius");
    shadow->color = decodedObject<Color>(coder, "Color", "color").value_or(nullptr);
    return shadow;
}

}  // namespace mezalith::platform
