// SPDX-License-Identifier: MIT
#include <mezalith/platform/number_text.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
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

bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

/// `text` without its sign, which `negative` takes.
std::string_view withoutSign(std::string_view text, bool& negative) {
    negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    return text;
}

/// Whether a number that is no double is too large for one, and not too close to zero: whether its
/// first digit that counts, moved by the exponent, stands before the point.
bool isTooLarge(std::string_view number) {
    const std::string_view mantissa = number.substr(0, number.find_first_of("eE"));
    const auto point = static_cast<double>(std::min(mantissa.find('.'), mantissa.size()));
    const auto first = static_cast<double>(mantissa.find_first_of("123456789"));
    const double exponent =
        mantissa.size() == number.size()
            ? 0
            : static_cast<double>(leadingInteger(number.substr(mantissa.size() + 1)));
    return point - first + exponent > 0;
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

double leadingNumber(std::string_view text) {
    bool negative = false;
    text = withoutSign(text, negative);
    // from_chars would read "inf" and a second minus.
    if (text.empty() || !(isDigit(text.front()) || text.front() == '.')) return 0;
    double value = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) {
        const std::string_view number(text.data(), static_cast<std::size_t>(stop - text.data()));
        value = isTooLarge(number) ? std::numeric_limits<double>::infinity() : 0;
    }
    return negative ? -value : value;
}

std::int64_t leadingInteger(std::string_view text) {
    using Limits = std::numeric_limits<std::int64_t>;
    bool negative = false;
    const std::string_view digits = withoutSign(text, negative);
    if (digits.empty() || !isDigit(digits.front())) return 0;
    if (!negative) text = digits;
    std::int64_t value = 0;
    const auto error = std::from_chars(text.data(), text.data() + text.size(), value).ec;
    if (error == std::errc::result_out_of_range) return negative ? Limits::min() : Limits::max();
    return value;
}

}  // namespace mezalith::platform
