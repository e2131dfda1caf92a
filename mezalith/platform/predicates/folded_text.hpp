// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <array>
#include <cstddef>
#include <memory_resource>
#include <string>
#include <string_view>

namespace mezalith::platform {

/// What a comparison of texts does not look at.
struct TextOptions {
    bool ignoresCase = false;
    bool ignoresDiacritics = false;

    /// Whether anything is ignored.
    bool any() const { return ignoresCase || ignoresDiacritics; }
    friend bool operator==(TextOptions, TextOptions) = default;
};

/// A text made comparable: two texts are equal under some options when their folded texts are equal
/// byte by byte, and so for what they contain and begin with.
///
/// Case is folded as Unicode's full case folding does ("ß" as "ss"), independently of any language;
/// of diacritics, nonspacing marks are left out ("é" as "e"; "ø" is a letter of its own). Either
/// way characters are composed (normalization form C), and bytes that are not UTF-8 become U+FFFD.
/// Without options, the text stays as it is.
/// Source: The Unicode Standard, sections 3.11 and 3.13, definition D145.
class MEZALITH_EXPORT FoldedText {
  public:
    /// `text` is UTF-8 and must outlive this. Nothing is allocated for texts of 128 bytes or less,
    /// nor for ASCII of up to four thousand.
    FoldedText(std::string_view text, TextOptions options);
    FoldedText(const FoldedText&) = delete;
    FoldedText& operator=(const FoldedText&) = delete;

    std::string_view view() const { return view_; }

  private:
    void foldASCII(std::string_view text);
    void foldUnicode(std::string_view text, TextOptions options);

    std::array<std::byte, 4096> space_;
    std::pmr::monotonic_buffer_resource memory_{space_.data(), space_.size()};
    std::pmr::string folded_{&memory_};
    std::string_view view_;
};

}  // namespace mezalith::platform
