// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/like_pattern.hpp>

#include <cstddef>
#include <string>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith::platform {
namespace {

TEST(LikePattern, IsTheTextItselfWithoutSigns) {
    EXPECT_TRUE(isLike("Oslo", "Oslo"));
    EXPECT_FALSE(isLike("Oslo", "oslo"));
    EXPECT_FALSE(isLike("Oslo", "Osl"));
    EXPECT_FALSE(isLike("Osl", "Oslo"));
    EXPECT_TRUE(isLike("", ""));
    EXPECT_FALSE(isLike("a", ""));
    EXPECT_FALSE(isLike("", "a"));
}

TEST(LikePattern, TakesAnyRunForAStar) {
    EXPECT_TRUE(isLike("", "*"));
    EXPECT_TRUE(isLike("Oslo", "*"));
    EXPECT_TRUE(isLike("Oslo", "O*"));
    EXPECT_TRUE(isLike("Oslo", "*lo"));
    EXPECT_TRUE(isLike("Oslo", "O*s*o"));
    EXPECT_TRUE(isLike("Oslo", "**Oslo**"));
    EXPECT_FALSE(isLike("Oslo", "*l"));
    EXPECT_FALSE(isLike("Oslo", "*x*"));
    EXPECT_TRUE(isLike("abcabd", "*abd"));
    EXPECT_TRUE(isLike("aab", "*ab"));
}

TEST(LikePattern, TakesOneCharacterForAQuestionMark) {
    EXPECT_TRUE(isLike("Oslo", "?slo"));
    EXPECT_TRUE(isLike("Oslo", "????"));
    EXPECT_FALSE(isLike("Oslo", "???"));
    EXPECT_FALSE(isLike("Oslo", "?????"));
    EXPECT_FALSE(isLike("", "?"));
    EXPECT_TRUE(isLike("å", "?"));
    EXPECT_FALSE(isLike("å", "??"));
    EXPECT_TRUE(isLike("日本", "?本"));
    EXPECT_TRUE(isLike("a日b本", "*?本"));
    EXPECT_TRUE(isLike("\x80\x80", "??"));  // no characters: byte by byte
}

TEST(LikePattern, EscapesItsSigns) {
    EXPECT_TRUE(isLike("*", "\\*"));
    EXPECT_FALSE(isLike("x", "\\*"));
    EXPECT_TRUE(isLike("100?", "*\\?"));
    EXPECT_FALSE(isLike("1000", "*\\?"));
    EXPECT_TRUE(isLike("a\\b", "a\\\\b"));
    EXPECT_TRUE(isLike("a\\b", "a\\b"));  // a backslash before anything else is one
    EXPECT_TRUE(isLike("\\", "\\"));
}

TEST(LikePattern, IsDecidedInTimeForPatternsFullOfStars) {
    std::string stars;
    for (int i = 0; i < 10000; ++i) stars += "*a";
    EXPECT_FALSE(isLike(std::string(30000, 'a'), stars + "b"));
    EXPECT_TRUE(isLike(std::string(30000, 'a') + "b", stars + "b"));
}

/// The same by trying everything.
bool isLikeByTrying(std::string_view text, std::string_view pattern) {
    if (pattern.empty()) return text.empty();
    if (pattern[0] == '*') {
        for (std::size_t i = 0; i <= text.size(); ++i) {
            if (isLikeByTrying(text.substr(i), pattern.substr(1))) return true;
        }
        return false;
    }
    const bool fits = !text.empty() && (pattern[0] == '?' || pattern[0] == text[0]);
    return fits && isLikeByTrying(text.substr(1), pattern.substr(1));
}

TEST(LikePattern, AgreesWithTryingEverything) {
    const auto texts = rc::gen::container<std::string>(rc::gen::elementOf(std::string("ab")));
    const auto patterns = rc::gen::container<std::string>(rc::gen::elementOf(std::string("ab*?")));
    EXPECT_TRUE(rc::check([&] {
        const std::string text = (*texts).substr(0, 12);
        const std::string pattern = (*patterns).substr(0, 12);
        RC_ASSERT(isLike(text, pattern) == isLikeByTrying(text, pattern));
    }));
}

}  // namespace
}  // namespace mezalith::platform
