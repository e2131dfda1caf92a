// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/primitives.hpp>

#include <array>
#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

namespace mezalith::detail {

/// `value` as printf's "%.<decimals>f" writes it in the C locale.
inline std::string fixedText(double value, int decimals) {
    std::array<char, 400> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                   std::chars_format::fixed, decimals);
    return {text.data(), end.ptr};
}

/// "(x, y)".
inline std::string pointText(MzPoint point, int decimals) {
    return "(" + fixedText(point.x, decimals) + ", " + fixedText(point.y, decimals) + ")";
}

/// What any object says of itself: "<Class: 0xaddress>".
inline std::string baseDescription(std::string_view className, const void* object) {
    std::array<char, 32> text{};
    const auto address = reinterpret_cast<std::uintptr_t>(object);
    const auto end = std::to_chars(text.data(), text.data() + text.size(), address, 16);
    return "<" + std::string(className) + ": 0x" + std::string(text.data(), end.ptr) + ">";
}

}  // namespace mezalith::detail
