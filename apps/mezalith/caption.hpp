// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/color.hpp>
#include <mezalith/platform/graphics_port.hpp>

#include <memory>
#include <string>

namespace mezalith::app {

/// A short text on a picture. Lengths in view points.
struct Caption {
    std::string text;
    MzPoint centre{};  ///< of the box around its line
    double size = 11;  ///< of the font's em
    std::shared_ptr<const platform::Color> color = platform::Color::blackColor();
    std::shared_ptr<const platform::Color> halo{};  ///< around the letters; none when null
    bool bold = false;
};

/// The box of the caption: its line with ascent and descent.
MzRect captionBox(const Caption& caption);

void drawCaption(platform::GraphicsPort& port, const Caption& caption);

}  // namespace mezalith::app
