// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

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

/// Hands the pieces of `text` that no character of `separators` divides to `use`, in order, the
/// empty ones left out.
template <typename Use>
void forEachPiece(std::string_view text, std::string_view separators, const Use& use) {
    std::size_t begin = text.find_first_not_of(separators);
    while (begin != std::string_view::npos) {
        const std::size_t end = text.find_first_of(separators, begin);
        use(text.substr(begin, end - begin));
        begin = text.find_first_not_of(separators, end);
    }
}

/// The characters that end a line of text.
inline constexpr std::string_view kLineEnds = "\n\v\f\r";
/// The characters between the fields of a line.
inline constexpr std::string_view kBlanks = " \t";

}  // namespace mezalith::platform
