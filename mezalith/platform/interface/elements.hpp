// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/color.hpp>
#include <mezalith/platform/image.hpp>
#include <mezalith/platform/interface/text_outline.hpp>
#include <mezalith/platform/interface/text_template.hpp>

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

/// What an interface file says, understood. Lengths in view points.
namespace mezalith::platform::detail {

using ColorPointer = std::shared_ptr<const Color>;

struct Insets {
    double top = 0;
    double right = 0;
    double bottom = 0;
    double left = 0;
};

struct Element;

/// Elements below or beside each other.
struct StackElement {
    bool isRow = false;
    double spacing = 4;
    Insets insets{};
    double minWidth = 0;
    Alignment alignment = Alignment::Start;
    ColorPointer background{};  ///< null for none
    std::vector<Element> members;
};

struct LabelElement {
    TextTemplate text;
    TextStyle style;
    ColorPointer color = Color::blackColor();
};

struct ButtonElement {
    TextTemplate title;
    TextStyle style;
    std::string action;
};

struct ImageElement {
    std::shared_ptr<const Image> image;
    std::optional<double> width{};
    std::optional<double> height{};
};

/// Empty room between two elements of a stack.
struct SpaceElement {
    double length = 0;
};

struct Element {
    std::variant<StackElement, LabelElement, ButtonElement, ImageElement, SpaceElement> content;
};

}  // namespace mezalith::platform::detail
