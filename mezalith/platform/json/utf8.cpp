// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/utf8.hpp>

#include <array>
#include <cstdint>

namespace mezalith::platform {
namespace {

/// The forms of characters of two bytes and more; first and last are of the character's number.
struct Form {
    std::uint8_t mask;  ///< of the first byte's mark
    std::uint8_t mark;
    std::uint32_t first;
    std::uint32_t last;
};

constexpr std::array<Form, 3> kForms{
    {{0xe0, 0xc0, 0x80, 0x7ff}, {0xf0, 0xe0, 0x800, 0xffff}, {0xf8, 0xf0, 0x10000, 0x10ffff}}};

bool isSurrogate(std::uint32_t number) { return number >= 0xd800 && number <= 0xdfff; }

bool isCharacter(std::string_view bytes, const Form& form) {
    auto number = static_cast<std::uint32_t>(static_cast<unsigned char>(bytes[0])) &
                  ~static_cast<std::uint32_t>(form.mask);
    for (const char c : bytes.substr(1)) {
        const auto byte = static_cast<unsigned char>(c);
        if ((byte & 0xc0U) != 0x80U) return false;
        number = number << 6U | (byte & 0x3fU);
    }
    return number >= form.first && number <= form.last && !isSurrogate(number);
}

}  // namespace

std::size_t characterLength(std::string_view text) {
    if (text.empty()) return 0;
    const auto first = static_cast<unsigned char>(text[0]);
    if (first < 0x80) return 1;
    for (std::size_t i = 0; i < kForms.size(); ++i) {
        const std::size_t length = i + 2;
        if ((first & kForms[i].mask) != kForms[i].mark || text.size() < length) continue;
        return isCharacter(text.substr(0, length), kForms[i]) ? length : 0;
    }
    return 0;
}

bool isUTF8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string mendedUTF8(std::string_view text) {
    static constexpr std::string_view kReplacement = "\xef\xbf\xbd";
    std::string mended;
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        mended += length > 0 ? text.substr(0, length) : kReplacement;
        text.remove_prefix(length > 0 ? length : 1);
    }
    return mended;
}

}  // namespace mezalith::platform
