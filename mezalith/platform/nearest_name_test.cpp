// SPDX-License-Identifier: MIT
#include <mezalith/platform/nearest_name.hpp>

#include <array>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

constexpr std::array<std::string_view, 5> kNames{"strokeWidth", "strokeColor", "lineCap",
                                                 "lineJoin", "id"};

TEST(NearestName, IsTheOneThatWasMeant) {
    EXPECT_EQ(nearestName("strokeWidth", kNames), "strokeWidth");
    EXPECT_EQ(nearestName("strokWidth", kNames), "strokeWidth");
    EXPECT_EQ(nearestName("strokeeWidth", kNames), "strokeWidth");
    EXPECT_EQ(nearestName("strokeColour", kNames), "strokeColor");
    EXPECT_EQ(nearestName("linejoin", kNames), "lineJoin");
    EXPECT_EQ(nearestName("lnieCap", kNames), "lineCap");
}

TEST(NearestName, MayBeWrongInEveryFourthLetterAtMost) {
    EXPECT_EQ(nearestName("liXeJoin", kNames), "lineJoin");
    EXPECT_EQ(nearestName("lXXeJoin", kNames), "lineJoin");
    EXPECT_EQ(nearestName("lXXXJoin", kNames), "");
    EXPECT_EQ(nearestName("i", kNames), "");
    EXPECT_EQ(nearestName("", kNames), "");
    EXPECT_EQ(nearestName("lineCap", {}), "");
}

TEST(NearestName, CountsSwappedNeighboursAsOneError) {
    constexpr std::array<std::string_view, 2> names{"abcd", "bxcd"};
    EXPECT_EQ(nearestName("bacd", names), "abcd");
}

TEST(NearestName, IsFastForNamesOfAnyLength) {
    EXPECT_EQ(nearestName(std::string(4'000'000, 's'), kNames), "");
}

TEST(NearestName, IsSuggestedInMessages) {
    EXPECT_EQ(suggestion("lineCup", kNames), " \"lineCup\", did you mean \"lineCap\"?");
    EXPECT_EQ(suggestion("fill", kNames), " \"fill\"");
    EXPECT_EQ(suggestion("a\nb\xc3\x9f", {}), " \"a?b??\"");
    EXPECT_EQ(suggestion(std::string(50, 'x'), {}), " \"" + std::string(40, 'x') + "...\"");
}

}  // namespace
}  // namespace mezalith::platform
