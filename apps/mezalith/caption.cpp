// SPDX-License-Identifier: MIT
#include "apps/mezalith/caption.hpp"

#include <mezalith/platform/interface/text_outline.hpp>

namespace mezalith::app {
namespace {

platform::TextOutline outlineOf(const Caption& caption) {
    platform::TextStyle style;
    style.size = caption.size;
    style.bold = caption.bold;
    style.maxWidth = 4000;
    style.maxLines = 1;
    return platform::textOutline(caption.text, style);
}

MzRect boxOf(const Caption& caption, MzSize size) {
    return {{caption.centre.x - size.width / 2, caption.centre.y - size.height / 2}, size};
}

}  // namespace

MzRect captionBox(const Caption& caption) { return boxOf(caption, outlineOf(caption).size); }

void drawCaption(platform::GraphicsPort& port, const Caption& caption) {
    const platform::TextOutline outline = outlineOf(caption);
    const MzPoint origin = boxOf(caption, outline.size).origin;
    port.saveState();
    port.translate(origin.x, origin.y);
    if (caption.halo != nullptr) {
        port.setStrokeColor(caption.halo.get());
        port.setLineWidth(caption.size / 4);
        port.setLineJoin(platform::LineJoin::Round);
        port.beginPath();
        outline.path.addTo(port);
        port.drawPath(platform::PathDrawingMode::Stroke);
    }
    port.setFillColor(caption.color.get());
    outline.path.fill(port);
    port.restoreState();
}

}  // namespace mezalith::app
