// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <string>
#include <string_view>

namespace mezalith::platform {

/// What it takes to draw an SVG text.
struct SvgSteps {
    /// One for each element, more for long paths, dashes and texts, with what is referred to
    /// counted each time it is drawn. Each is some nanoseconds a pixel at most.
    double count = 0;
    std::string refusal;  ///< why the text should not be drawn at all; empty when it may
};

/// Counts the steps without drawing, in time proportional to the text. Refused are entities,
/// encodings other than UTF-8, ASCII and Latin-1, pictures within the picture, filters, included
/// documents and more than `mostSvgSteps`. A text that is not well-formed is counted as far as it
/// is.
MEZALITH_EXPORT SvgSteps svgSteps(std::string_view text);

constexpr double mostSvgSteps = 200'000;

}  // namespace mezalith::platform
