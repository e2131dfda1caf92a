// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/utf8.hpp>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

TEST(UTF8, TellsHowLongACharacterIs) {
    for (const std::string_view text :
         {std::string_view("\0", 1), std::string_view("\x7f"), std::string_view("\xc2\x80"),
          std::string_view("\xdf\xbf"), std::string_view("\xe0\xa0\x80"),
          std::string_view("\xed\x9f\xbf"), std::string_view("\xee\x80\x80"),
          std::string_view("\xef\xbf\xbf"), std::string_view("\xf0\x90\x80\x80"),
          std::string_view("\xf4\x8f\xbf\xbf")}) {
        EXPECT_EQ(characterLength(text), text.size());
        EXPECT_EQ(characterLength(std::string(text) + "\x80"), text.size());
        EXPECT_TRUE(isUTF8(text));
    }
    EXPECT_EQ(characterLength(""), 0);
}

TEST(UTF8, RefusesWhatIsNoCharacter) {
    for (const char* text :
         {"\x80", "\xbf", "\xc0\x80", "\xc1\xbf", "\xe0\x9f\xbf", "\xed\xa0\x80", "\xed\xbf\xbf",
          "\xf0\x8f\xbf\xbf", "\xf4\x90\x80\x80", "\xf8\x88\x80\x80\x80", "\xfe", "\xff", "\xc3",
          "\xe2\x82", "\xf0\x9f\x98", "\xc3z", "\xe2\x82z"}) {
        EXPECT_EQ(characterLength(text), 0) << text;
        EXPECT_FALSE(isUTF8(std::string("a") + text));
    }
}

TEST(UTF8, IsMendedByteByByte) {
    EXPECT_EQ(mendedUTF8("\xc3\xb8 and \xe2\x82\xac"), "\xc3\xb8 and \xe2\x82\xac");
    EXPECT_EQ(mendedUTF8("a\xff"
                         "b\xc3"),
              "a\xef\xbf\xbd"
              "b\xef\xbf\xbd");
    EXPECT_EQ(mendedUTF8("\xe2\x82"), "\xef\xbf\xbd\xef\xbf\xbd");
    EXPECT_EQ(mendedUTF8(std::string_view("\0", 1)), std::string_view("\0", 1));
}

}  // namespace
}  // namespace mezalith::platform
