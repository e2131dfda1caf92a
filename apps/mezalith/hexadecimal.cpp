// SPDX-License-Identifier: MIT
#include "apps/mezalith/hexadecimal.hpp"

#include "apps/mezalith/arguments.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace mezalith::app {
namespace {

bool isBlank(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

/// Where the digits begin, behind blanks and one of the prefixes that databases write.
std::size_t beginningOf(std::string_view text) {
    const auto blanks =
        static_cast<std::size_t>(std::ranges::find_if_not(text, isBlank) - text.begin());
    text.remove_prefix(blanks);
    const bool hasPrefix =
        text.starts_with("\\x") || text.starts_with("0x") || text.starts_with("0X");
    return blanks + (hasPrefix ? 2 : 0);
}

/// The character that begins at `place`, all of it where it is one of UTF-8.
std::string characterAt(std::string_view text, std::size_t place) {
    std::size_t end = place + 1;
    while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xc0U) == 0x80) ++end;
    return std::string(text.substr(place, end - place));
}

}  // namespace

std::vector<std::byte> bytesFromHexadecimal(const std::string& name, std::string_view text) {
    std::vector<std::byte> bytes;
    std::size_t digits = 0;
    unsigned value = 0;
    for (std::size_t i = beginningOf(text); i < text.size(); ++i) {
        if (isBlank(text[i])) continue;
        unsigned digit = 0;
        const char* end = text.data() + i + 1;
        if (std::from_chars(text.data() + i, end, digit, 16).ptr != end) {
            throw UsageError(name, "\"" + characterAt(text, i) + "\" at character " +
                                       std::to_string(i) + " is not hexadecimal");
        }
        value = (value << 4U | digit) & 0xffU;
        if (++digits % 2 == 0) bytes.push_back(static_cast<std::byte>(value));
    }
    if (digits % 2 != 0) throw UsageError(name, "an odd number of digits");
    return bytes;
}

std::string hexadecimalFromBytes(std::span<const std::byte> bytes) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const std::byte byte : bytes) {
        text += kDigits[std::to_integer<unsigned>(byte) >> 4U];
        text += kDigits[std::to_integer<unsigned>(byte) & 15U];
    }
    return text;
}

}  // namespace mezalith::app
