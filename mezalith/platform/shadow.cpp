// SPDX-License-Identifier: MIT
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/shadow.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace mezalith::platform {

double shadowReach(MzSize offset, double blur) {
    // A blur of less than nothing is none; the rounding is that of a mask and of its place.
    const double reach = std::hypot(offset.width, offset.height) + 3 * std::max(blur, 0.0) / 2 + 2;
    return std::isfinite(reach) ? reach : std::numeric_limits<double>::infinity();
}

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
