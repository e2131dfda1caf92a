// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/syntax.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>

#include <unicode/utf16.h>
#include <unicode/utf8.h>

namespace mezalith::platform::predicates {
namespace {

constexpr std::array<std::string_view, 22> kReserved{
    "ALL", "AND",  "ANY",  "BEGINSWITH", "BETWEEN", "CONTAINS",     "ENDSWITH", "FALSE",
    "IN",  "LIKE", "NIL",  "MATCHES",    "NO",      "NONE",         "NOT",      "NULL",
    "OR",  "SELF", "SOME", "TRUE",       "YES",     "TRUEPREDICATE"};
constexpr std::string_view kFalsePredicate = "FALSEPREDICATE";

/// Escapes of one letter, and what they stand for.
constexpr std::string_view kEscapeLetters = "\\\"'/nrtbf";
constexpr std::string_view kEscapedCharacters = "\\\"'/\n\r\t\b\f";

constexpr std::size_t kLongestToken = 32;

char upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }
bool isContinuation(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

std::string controlText(const char* form, char c) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), form, static_cast<unsigned>(c));
    return text.data();
}

std::uint32_t hexadecimal(std::string_view digits) {
    std::uint32_t value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    return value;
}

void appendCharacter(std::string& text, std::uint32_t character) {
    std::array<std::uint8_t, U8_MAX_LENGTH> bytes{};
    std::size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, character);
    text.append(reinterpret_cast<const char*>(bytes.data()), length);
}

/// Takes "uXXXX", a pair of these for a character beyond them, or "UXXXXXXXX" off the head of
/// `text`; NO when it stands for no character.
bool takeCharacter(std::string_view& text, std::string& result) {
    const std::size_t digits = text[0] == 'u' ? 4 : 8;
    std::uint32_t character = hexadecimal(text.substr(1, digits));
    text.remove_prefix(1 + digits);
    if (digits == 4 && U16_IS_LEAD(character) && text.starts_with("\\u")) {
        const std::uint32_t trail = hexadecimal(text.substr(2, 4));
        if (!U16_IS_TRAIL(trail)) return false;
        character = static_cast<std::uint32_t>(U16_GET_SUPPLEMENTARY(character, trail));
        text.remove_prefix(6);
    }
    if (character > 0x10FFFF || U_IS_SURROGATE(character)) return false;
    appendCharacter(result, character);
    return true;
}

/// Length of what stands at the head of `text`, which is not empty.
std::size_t tokenLength(std::string_view text) {
    const auto run = [&](std::size_t from, auto goesOn) {
        const auto end =
            std::find_if_not(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(), goesOn);
        return static_cast<std::size_t>(end - text.begin());
    };
    const char first = text[0];
    if (first == '"' || first == '\'') {
        return std::min(run(1, [first](char c) { return c != first; }) + 1, text.size());
    }
    if (continuesName(first)) return run(1, continuesName);
    if (first == '#') return run(1, continuesName);
    if (first == '%') return std::min<std::size_t>(2, text.size());
    if (std::string_view("=<>!&|*").find(first) == std::string_view::npos) return 1;
    return run(1,
               [](char c) { return std::string_view("=>&|*").find(c) != std::string_view::npos; });
}

}  // namespace

bool beginsName(char c) {
    return c == '_' || (upper(c) >= 'A' && upper(c) <= 'Z') ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool continuesName(char c) { return beginsName(c) || isDigit(c); }

bool isName(std::string_view text) {
    return !text.empty() && beginsName(text[0]) && std::ranges::all_of(text, continuesName);
}

bool isReserved(std::string_view text) {
    const auto isWord = [text](std::string_view word) {
        return std::ranges::equal(text, word, {}, upper);
    };
    return isWord(kFalsePredicate) || std::ranges::any_of(kReserved, isWord);
}

bool isUTF8(std::string_view text, std::size_t* offset) {
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t start = i;
        UChar32 character = 0;
        U8_NEXT(reinterpret_cast<const std::uint8_t*>(text.data()), i, text.size(), character);
        if (character >= 0) continue;
        if (offset != nullptr) *offset = start;
        return false;
    }
    return true;
}

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        const std::size_t escape = kEscapedCharacters.find(c);
        if (c == '\'' || c == '/' || (escape == std::string_view::npos && !isControl(c))) {
            result += c;
        } else if (escape != std::string_view::npos) {
            result += {'\\', kEscapeLetters[escape]};
        } else {
            result += controlText("\\u%04X", c);
        }
    }
    return result + '"';
}

bool unescape(std::string_view text, std::string& result, std::size_t& offset) {
    const std::size_t size = text.size();
    while (!text.empty()) {
        const char c = text[0];
        offset = size - text.size();
        text.remove_prefix(1);
        if (c != '\\') {
            result += c;
        } else if (const std::size_t escape = kEscapeLetters.find(text[0]);
                   escape != std::string_view::npos) {
            result += kEscapedCharacters[escape];
            text.remove_prefix(1);
        } else if (!takeCharacter(text, result)) {
            return false;
        }
    }
    return true;
}

Place placeOf(std::string_view text, std::size_t offset) {
    Place place;
    for (const char c : text.substr(0, offset)) {
        if (c == '\n') {
            ++place.line;
            place.column = 1;
        } else if (!isContinuation(c)) {
            ++place.column;
        }
    }
    return place;
}

std::size_t skipBlanks(std::string_view text, std::size_t offset) {
    while (offset < text.size() && isBlank(text[offset])) ++offset;
    return offset;
}

std::string tokenAt(std::string_view text, std::size_t offset) {
    text.remove_prefix(std::min(offset, text.size()));
    if (text.empty()) return "the end";
    if (isControl(text[0])) return "the control character " + controlText("U+%04X", text[0]);
    std::size_t length = tokenLength(text);
    const bool cut = length > kLongestToken;
    if (cut) length = kLongestToken;
    while (length < text.size() && isContinuation(text[length])) ++length;
    return '"' + std::string(text.substr(0, length)) + (cut ? "...\"" : "\"");
}

}  // namespace mezalith::platform::predicates
