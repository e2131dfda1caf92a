// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/folded_text.hpp>

#include <algorithm>
#include <cstdint>

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

namespace mezalith::platform {
namespace {

using Units = std::pmr::u16string;

constexpr std::int32_t kReplacement = 0xFFFD;

bool isASCII(char c) { return static_cast<unsigned char>(c) < 0x80; }
bool isUpper(char c) { return c >= 'A' && c <= 'Z'; }
char lowered(char c) { return isUpper(c) ? static_cast<char>(c - 'A' + 'a') : c; }

std::int32_t lengthOf(const auto& text) { return static_cast<std::int32_t>(text.size()); }

/// Fills `text` by `write(characters, capacity, error)`, which answers how many there are, in a
/// second call when `guess` was too few. Nothing on errors.
template <typename Text, typename Write>
void fill(Text& text, std::size_t guess, Write write) {
    text.resize(guess);
    for (int attempt = 0; attempt < 2; ++attempt) {
        UErrorCode error = U_ZERO_ERROR;
        const std::int32_t length = write(text.data(), lengthOf(text), &error);
        const bool fits = U_SUCCESS(error) != 0;
        text.resize(fits || error == U_BUFFER_OVERFLOW_ERROR ? static_cast<std::size_t>(length)
                                                             : 0);
        if (error != U_BUFFER_OVERFLOW_ERROR) return;
    }
}

const UNormalizer2* decomposition() {
    UErrorCode error = U_ZERO_ERROR;
    return unorm2_getNFDInstance(&error);
}

const UNormalizer2* composition() {
    UErrorCode error = U_ZERO_ERROR;
    return unorm2_getNFCInstance(&error);
}

Units normalized(const Units& text, const UNormalizer2* form) {
    Units result(text.get_allocator());
    fill(result, text.size() + 16, [&](char16_t* to, std::int32_t capacity, UErrorCode* error) {
        return unorm2_normalize(form, text.data(), lengthOf(text), to, capacity, error);
    });
    return result;
}

Units caseFolded(const Units& text) {
    Units result(text.get_allocator());
    fill(result, text.size() + 16, [&](char16_t* to, std::int32_t capacity, UErrorCode* error) {
        return u_strFoldCase(to, capacity, text.data(), lengthOf(text), U_FOLD_CASE_DEFAULT, error);
    });
    return result;
}

void removeMarks(Units& text) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t start = i;
        UChar32 character = 0;
        U16_NEXT(text, i, text.size(), character);
        if (u_charType(character) == U_NON_SPACING_MARK) continue;
        std::copy(text.data() + start, text.data() + i, text.data() + kept);
        kept += i - start;
    }
    text.resize(kept);
}

}  // namespace

FoldedText::FoldedText(std::string_view text, TextOptions options) : view_(text) {
    if (!options.any()) return;
    if (!std::ranges::all_of(text, isASCII)) {
        foldUnicode(text, options);
    } else if (options.ignoresCase && std::ranges::any_of(text, isUpper)) {
        foldASCII(text);
    }
}

void FoldedText::foldASCII(std::string_view text) {
    folded_.resize(text.size());
    std::ranges::transform(text, folded_.begin(), lowered);
    view_ = folded_;
}

void FoldedText::foldUnicode(std::string_view text, TextOptions options) {
    Units units(&memory_);
    fill(units, text.size(), [&](char16_t* to, std::int32_t capacity, UErrorCode* error) {
        std::int32_t length = 0;
        u_strFromUTF8WithSub(to, capacity, &length, text.data(), lengthOf(text), kReplacement,
                             nullptr, error);
        return length;
    });
    units = normalized(units, decomposition());
    if (options.ignoresCase) units = caseFolded(units);
    if (options.ignoresDiacritics) removeMarks(units);
    units = normalized(units, composition());
    fill(folded_, units.size() * 3, [&](char* to, std::int32_t capacity, UErrorCode* error) {
        std::int32_t length = 0;
        u_strToUTF8WithSub(to, capacity, &length, units.data(), lengthOf(units), kReplacement,
                           nullptr, error);
        return length;
    });
    view_ = folded_;
}

}  // namespace mezalith::platform
