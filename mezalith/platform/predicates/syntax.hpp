// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// The small things that reading and writing of predicates must agree on.
namespace mezalith::platform::predicates {

/// Parentheses, braces, negations, minus signs and powers within each other.
inline constexpr int kDeepestFormat = 64;
/// Bytes.
inline constexpr std::size_t kLongestFormat = std::size_t{64} * 1024;

/// Letters, "_" and whatever is not ASCII.
bool beginsName(char c);
/// The same and digits.
bool continuesName(char c);
bool isName(std::string_view text);
/// Whether `text`, in letters of either case, is a word of the language.
bool isReserved(std::string_view text);

/// Whether `text` is UTF-8 throughout; tells where it is not.
bool isUTF8(std::string_view text, std::size_t* offset = nullptr);

/// `text`, which is UTF-8, between double quotes; quotes, backslashes and control characters
/// escaped.
std::string quoted(std::string_view text);
/// What the escapes in `text`, which are complete, stand for. NO and the offset of the first one
/// that stands for no character.
bool unescape(std::string_view text, std::string& result, std::size_t& offset);

/// Where an offset is for people: line and column, both from 1, in characters.
struct Place {
    std::size_t line = 1;
    std::size_t column = 1;
};
Place placeOf(std::string_view text, std::size_t offset);

/// The offset of what stands at or behind `offset`: blanks are passed over.
std::size_t skipBlanks(std::string_view text, std::size_t offset);
/// What stands at `offset`, as a message shows it: a word, number or quoted text, a sign, or the
/// end; long ones cut.
std::string tokenAt(std::string_view text, std::size_t offset);

}  // namespace mezalith::platform::predicates
