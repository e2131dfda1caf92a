// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/base64.hpp>

#include <algorithm>
#include <array>
#include <cstdint>

namespace mezalith::platform {
namespace {

constexpr std::string_view alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char padding = '=';
constexpr std::uint8_t noDigit = 255;

constexpr std::array<std::uint8_t, 256> makeDigits() {
    std::array<std::uint8_t, 256> digits{};
    digits.fill(noDigit);
    for (std::size_t i = 0; i < alphabet.size(); ++i) {
        digits[static_cast<unsigned char>(alphabet[i])] = static_cast<std::uint8_t>(i);
    }
    return digits;
}

constexpr std::array<std::uint8_t, 256> digits = makeDigits();

std::uint32_t byteAt(std::span<const std::byte> bytes, std::size_t i) {
    return i < bytes.size() ? std::to_integer<std::uint32_t>(bytes[i]) : 0;
}

std::size_t paddingOf(std::string_view text) {
    return text.ends_with("==") ? 2 : text.ends_with(padding) ? 1 : 0;
}

}  // namespace

std::string base64Text(std::span<const std::byte> bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::uint32_t group =
            byteAt(bytes, i) << 16 | byteAt(bytes, i + 1) << 8 | byteAt(bytes, i + 2);
        const std::size_t used = std::min<std::size_t>(bytes.size() - i, 3) + 1;
        for (std::size_t digit = 0; digit < 4; ++digit) {
            text += digit < used ? alphabet[group >> (18 - 6 * digit) & 63] : padding;
        }
    }
    return text;
}

std::optional<std::vector<std::byte>> bytesFromBase64(std::string_view text) {
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    const std::size_t digitCount = text.size() - paddingOf(text);
    std::vector<std::byte> bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t bits = 0;
    unsigned bitCount = 0;
    for (const char c : text.substr(0, digitCount)) {
        const std::uint8_t digit = digits[static_cast<unsigned char>(c)];
        if (digit == noDigit) {
            return std::nullopt;
        }
        bits = bits << 6 | digit;
        bitCount += 6;
        if (bitCount >= 8) {
            bitCount -= 8;
            bytes.push_back(static_cast<std::byte>(bits >> bitCount & 255));
            bits &= (1U << bitCount) - 1;
        }
    }
    return bits == 0 ? std::optional(std::move(bytes)) : std::nullopt;
}

}  // namespace mezalith::platform
