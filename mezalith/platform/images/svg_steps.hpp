// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <string>
#include <string_view>

namespace mezalith::platform {

/// What it takes to draw an SVG text.
struct SvgSteps {
    /// One for each element, more for long paths, masks and dashes, with what is referred to
    /// counted each time it is drawn. Each is some nanoseconds a pixel at most.
    double count = 0;
    /// How deep elements lie in each other, references followed: while drawing, each of them may
    /// hold pixels of its own.
    double depth = 0;
    std::string refusal;  ///< why the text should not be drawn at all; empty when it may
};

/// Counts the steps without drawing, in time proportional to the text. Refused are entities,
/// encodings other than UTF-8, ASCII and Latin-1, pictures within the picture, filters, texts,
/// included documents, long style sheets for many elements, and more than `mostSvgSteps`. A text
/// that is not well-formed is counted as far as it is.
MEZALITH_EXPORT SvgSteps svgSteps(std::string_view text);

constexpr double mostSvgSteps = 200'000;

}  // namespace mezalith::platform
