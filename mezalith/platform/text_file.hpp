// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace mezalith::platform {

/// All bytes of the regular file at `path`, or nothing when there is no such file, when it cannot
/// be read, when it is a folder, a pipe or a device, or when it holds more than `limit` bytes; then
/// `*why` says so, if asked.
MEZALITH_EXPORT std::optional<std::string> textOfFile(const std::string& path, std::size_t limit,
                                                      std::string* why = nullptr);

/// A set of single bytes, asked in no time.
class CharacterSet {
  public:
    constexpr explicit CharacterSet(std::string_view characters) {
        for (const char c : characters) contains_[static_cast<unsigned char>(c)] = true;
    }
    constexpr bool contains(char c) const { return contains_[static_cast<unsigned char>(c)]; }

  private:
    std::array<bool, 256> contains_{};
};

/// The characters that end a line of text.
inline constexpr CharacterSet kLineEnds("\n\v\f\r");
/// The characters between the fields of a line.
inline constexpr CharacterSet kBlanks(" \t");

/// The length of what `text` begins with that has no character of `set`.
inline std::size_t lengthBefore(const CharacterSet& set, std::string_view text) {
    std::size_t length = 0;
    while (length < text.size() && !set.contains(text[length])) ++length;
    return length;
}

/// Hands the pieces of `text` that no character of `separators` divides to `use`, in order, the
/// empty ones left out.
template <typename Use>
void forEachPiece(std::string_view text, const CharacterSet& separators, const Use& use) {
    while (!text.empty()) {
        const std::size_t length = lengthBefore(separators, text);
        if (length > 0) use(text.substr(0, length));
        text.remove_prefix(length < text.size() ? length + 1 : length);
    }
}

}  // namespace mezalith::platform
