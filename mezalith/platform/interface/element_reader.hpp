// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/interface/elements.hpp>
#include <mezalith/platform/interface/interface_document.hpp>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace mezalith::platform::detail {

/// Bounds of what an interface file may hold.
inline constexpr std::size_t longestInterface = std::size_t{256} * 1024;
inline constexpr std::size_t deepestElement = 16;
inline constexpr std::size_t mostElements = 1000;
inline constexpr std::size_t mostImages = 64;

/// The content of an interface file. None, and an error "line L, column C: reason" or "reason",
/// for a text that is none. Images are asked of `images`.
std::optional<Element> readInterface(std::string_view text,
                                     const InterfaceDocument::ImageSource& images,
                                     std::string& error);

}  // namespace mezalith::platform::detail
