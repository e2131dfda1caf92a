// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/platform/bezier_path.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace mezalith::platform {

/// Where shorter lines stand beside longer ones, and smaller things beside larger ones.
enum class Alignment { Start, Center, End };

/// How a text is set. Lengths in view points.
struct TextStyle {
    std::string family = "sans";  ///< a name, or several separated by commas
    double size = 12;             ///< of the font's em
    bool bold = false;
    bool italic = false;
    Alignment alignment = Alignment::Start;
    double maxWidth = 280;  ///< longer lines are broken
    int maxLines = 12;      ///< what is left of the last one ends in an ellipsis
};

/// A text as outlines that any port can fill.
struct TextOutline {
    MzSize size{0, 0};  ///< of the lines with their ascent and descent, view points
    BezierPath path;    ///< from (0, 0), the lower-left corner, y up; to be filled
};

/// Longer texts are cut, in bytes.
inline constexpr std::size_t longestText = 4096;

/// Lays `text` (UTF-8; what is not becomes U+FFFD) out in lines, from the right where its script
/// runs that way. Glyphs stand where the font says, without hinting, so that the outlines are the
/// same at every backing scale. Empty for an empty text and for sizes, widths and counts that are
/// not positive and finite.
MEZALITH_EXPORT TextOutline textOutline(std::string_view text, const TextStyle& style);

}  // namespace mezalith::platform
