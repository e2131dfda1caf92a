// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mezalith::platform::detail {

/// An element as an SVG text has it. Names are without their prefix, values without character
/// references.
struct SvgElement {
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;
    int parent = -1;  ///< an earlier element; -1 for the root

    /// The value of the attribute; empty without it.
    std::string_view value(std::string_view attribute) const;
};

/// The elements of a text in their order, and the text of its style sheets.
struct SvgScan {
    std::vector<SvgElement> elements;
    std::string styleSheets;
    std::string refusal;  ///< what of XML itself is not taken; empty when all is well
};

/// Reads the markup of a text, as far as it is well-formed.
SvgScan scanSvg(std::string_view text);

}  // namespace mezalith::platform::detail
