// SPDX-License-Identifier: MIT
#include <mezalith/platform/number_text.hpp>

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

namespace mezalith::platform {
namespace {

// What std::to_chars makes of its arguments.
template <typename... Arguments>
std::string charactersOf(Arguments... arguments) {
    std::array<char, 32> buffer{};  // the longest text of a double has 24 characters
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), arguments...);
    return {buffer.data(), result.ptr};
}

}  // namespace

std::string shortestText(double value) { return std::isnan(value) ? "nan" : charactersOf(value); }

std::string generalText(double value) { return charactersOf(value, std::chars_format::general, 6); }

std::optional<double> numberFromText(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    double value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end) return std::nullopt;
    return value;
}

}  // namespace mezalith::platform
