// SPDX-License-Identifier: MIT
#include "apps/mezalith/hexadecimal.hpp"

#include "apps/mezalith/arguments.hpp"

#include <charconv>

namespace mezalith::app {

std::vector<std::byte> bytesFromHexadecimal(const std::string& name, std::string_view text) {
    if (text.size() % 2 != 0) throw UsageError(name, "an odd number of digits");
    std::vector<std::byte> bytes;
    for (std::size_t i = 0; i < text.size(); i += 2) {
        unsigned value = 0;
        const char* end = text.data() + i + 2;
        if (std::from_chars(text.data() + i, end, value, 16).ptr != end) {
            throw UsageError(name, "\"" + std::string(text.substr(i, 2)) + "\" at digit " +
                                       std::to_string(i) + " is not hexadecimal");
        }
        bytes.push_back(static_cast<std::byte>(value));
    }
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
