// SPDX-License-Identifier: MIT
#include "apps/mezalith/hexadecimal.hpp"

#include "apps/mezalith/arguments.hpp"

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

std::string usageErrorOf(std::string_view text) {
    try {
        bytesFromHexadecimal("--hex", text);
    } catch (const UsageError& error) {
        return error.what();
    }
    return "no error";
}

TEST(Hexadecimal, ReadsDigitsOfEitherCase) {
    EXPECT_EQ(bytesFromHexadecimal("--hex", "00fFA1"),
              (std::vector{std::byte{0}, std::byte{0xff}, std::byte{0xa1}}));
    EXPECT_TRUE(bytesFromHexadecimal("--hex", "").empty());
}

TEST(Hexadecimal, SaysWhatIsWrong) {
    EXPECT_EQ(usageErrorOf("012"), "--hex: an odd number of digits");
    EXPECT_EQ(usageErrorOf("010g"), "--hex: \"0g\" at digit 2 is not hexadecimal");
    EXPECT_EQ(usageErrorOf("-1"), "--hex: \"-1\" at digit 0 is not hexadecimal");
    EXPECT_EQ(usageErrorOf("0x01"), "--hex: \"0x\" at digit 0 is not hexadecimal");
}

TEST(Hexadecimal, WritesWhatItReads) {
    for (const char* text : {"", "00", "0123456789abcdef"}) {
        EXPECT_EQ(hexadecimalFromBytes(bytesFromHexadecimal("--hex", text)), text);
    }
}

}  // namespace
}  // namespace mezalith::app
