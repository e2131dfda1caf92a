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

TEST(Hexadecimal, ReadsWhatDatabasesPrint) {
    for (const char* text :
         {"0x00ffa1", "0X00FFA1", "\\x00ffa1", " \n0x00ffa1\r\n", "00 ff\r\n\ta1", "0 0f fa 1"}) {
        EXPECT_EQ(hexadecimalFromBytes(bytesFromHexadecimal("--hex", text)), "00ffa1") << text;
    }
}

TEST(Hexadecimal, SaysWhatIsWrong) {
    EXPECT_EQ(usageErrorOf("012"), "--hex: an odd number of digits");
    EXPECT_EQ(usageErrorOf("0 1 0"), "--hex: an odd number of digits");
    EXPECT_EQ(usageErrorOf("010g"), "--hex: \"g\" at character 3 is not hexadecimal");
    EXPECT_EQ(usageErrorOf("-1"), "--hex: \"-\" at character 0 is not hexadecimal");
    EXPECT_EQ(usageErrorOf("+1"), "--hex: \"+\" at character 0 is not hexadecimal");
    EXPECT_EQ(usageErrorOf("0x0x"), "--hex: \"x\" at character 3 is not hexadecimal");
    EXPECT_EQ(usageErrorOf("01 \xc3\xa9"), "--hex: \"\xc3\xa9\" at character 3 is not hexadecimal");
}

TEST(Hexadecimal, WritesWhatItReads) {
    for (const char* text : {"", "00", "0123456789abcdef"}) {
        EXPECT_EQ(hexadecimalFromBytes(bytesFromHexadecimal("--hex", text)), text);
    }
}

}  // namespace
}  // namespace mezalith::app
