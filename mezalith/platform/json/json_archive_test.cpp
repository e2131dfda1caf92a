// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/json_archive.hpp>

#include <array>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

std::string archiveWith(const std::string& arrays) {
    return R"({"format":"mezalith archive","version":1,"arrays":)" + arrays + "}";
}

TEST(JsonArchive, IsTextWithALineAnArray) {
    JsonArchiver archiver;
    EXPECT_EQ(archiver.text(),
              "{\n \"format\": \"mezalith archive\",\n \"version\": 1,\n \"arrays\": []\n}\n");
    archiver.encodeArray(std::array{1.0, 0.0, 0.1, -0.0, 1e300, 12345678.5});
    archiver.encodeArray({});
    EXPECT_EQ(archiver.text(),
              R"({
 "format": "mezalith archive",
 "version": 1,
 "arrays": [
  [1, 0, 0.1, -0.0, 1e+300, 12345678.5],
  []
 ]
}
)");
}

TEST(JsonArchive, GivesArraysBackInOrder) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    JsonArchiver archiver;
    archiver.encodeArray(std::array{0.1, -0.0, 5e-324, 1.7976931348623157e308});
    archiver.encodeArray(std::array{infinity, -infinity, std::nan("")});
    auto unarchiver = JsonUnarchiver::unarchiverWithText(archiver.text());
    ASSERT_TRUE(unarchiver);
    std::array<double, 4> first{};
    ASSERT_TRUE(unarchiver->decodeArray(first));
    EXPECT_EQ(first, (std::array{0.1, -0.0, 5e-324, 1.7976931348623157e308}));
    EXPECT_TRUE(std::signbit(first[1]));
    std::array<double, 3> second{};
    ASSERT_TRUE(unarchiver->decodeArray(second));
    EXPECT_EQ(second[0], infinity);
    EXPECT_EQ(second[1], -infinity);
    EXPECT_TRUE(std::isnan(second[2]));
    EXPECT_FALSE(unarchiver->decodeArray(second));
}

TEST(JsonArchive, LeavesValuesAloneWhenTheLengthIsAnother) {
    auto unarchiver = JsonUnarchiver::unarchiverWithText(archiveWith("[[1,2,3]]"));
    ASSERT_TRUE(unarchiver);
    std::array<double, 2> values{7, 8};
    EXPECT_FALSE(unarchiver->decodeArray(values));
    EXPECT_EQ(values, (std::array<double, 2>{7, 8}));
    std::array<double, 3> all{};
    EXPECT_TRUE(unarchiver->decodeArray(all));
}

TEST(JsonArchive, SaysWhyATextIsNone) {
    const auto errorOf = [](const std::string& text) {
        std::string error;
        EXPECT_FALSE(JsonUnarchiver::unarchiverWithText(text, &error)) << text;
        return error;
    };
    EXPECT_EQ(errorOf(archiveWith("{}")), "line 1, column 51: /arrays: an object, not a list");
    EXPECT_EQ(errorOf(archiveWith("3")), "line 1, column 51: /arrays: the number 3, not a list");
    EXPECT_EQ(errorOf(archiveWith("[[1],[\"1\"]]")),
              "line 1, column 56: /arrays/1: a list, not a list of numbers");
    EXPECT_EQ(errorOf(archiveWith("[[1],7]")),
              "line 1, column 56: /arrays/1: the number 7, not a list of numbers");
    EXPECT_EQ(errorOf(R"({"format":"mezalith archive","version":1,"root":null})"),
              "line 1, column 42: unknown key \"root\"");
    EXPECT_EQ(errorOf("[]"), "line 1, column 1: no mezalith archive");
    EXPECT_FALSE(JsonUnarchiver::unarchiverWithText(""));
}

}  // namespace
}  // namespace mezalith::platform
