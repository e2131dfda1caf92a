// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/like_pattern.hpp>

#include <cstddef>

namespace mezalith::platform {
namespace {

/// Length of the character at the head of `text`, which is not empty; a byte that begins none
/// counts as one.
std::size_t characterLength(std::string_view text) {
    std::size_t length = 1;
    if (static_cast<unsigned char>(text[0]) < 0xC0) return length;
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) {
        ++length;
    }
    return length;
}

bool isEscape(std::string_view pattern) {
    return pattern.size() > 1 && pattern[0] == '\\' &&
           (pattern[1] == '*' || pattern[1] == '?' || pattern[1] == '\\');
}

/// Takes one step, not a star, off the heads of both; NO, leaving them as they are, when they do
/// not fit. `pattern` is not empty.
bool takeStep(std::string_view& text, std::string_view& pattern) {
    if (text.empty()) return false;
    const bool escape = isEscape(pattern);
    if (!escape && pattern[0] == '?') {
        text.remove_prefix(characterLength(text));
        pattern.remove_prefix(1);
        return true;
    }
    if (text[0] != pattern[escape ? 1 : 0]) return false;
    text.remove_prefix(1);
    pattern.remove_prefix(escape ? 2 : 1);
    return true;
}

}  // namespace

bool isLike(std::string_view text, std::string_view pattern) {
    // What is left behind the last star, and where in the text it was last tried.
    bool hasStar = false;
    std::string_view afterStar, tried;
    while (!pattern.empty() || !text.empty()) {
        if (!pattern.empty() && pattern[0] == '*') {
            pattern.remove_prefix(1);
            hasStar = true;
            afterStar = pattern;
            tried = text;
        } else if (pattern.empty() || !takeStep(text, pattern)) {
            // An earlier star need not take more: the last one can.
            if (!hasStar || tried.empty()) return false;
            tried.remove_prefix(characterLength(tried));
            text = tried;
            pattern = afterStar;
        }
    }
    return true;
}

}  // namespace mezalith::platform
