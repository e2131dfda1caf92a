// SPDX-License-Identifier: MIT
#include <mezalith/platform/text_file.hpp>
#include <tests/support/temporary_folder.hpp>

#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

std::string reason(const std::string& path, std::size_t limit = 100) {
    std::string why = "untouched";
    EXPECT_EQ(textOfFile(path, limit, &why), std::nullopt);
    return why;
}

TEST(TextOfFile, HoldsEveryByte) {
    const testing::TemporaryFolder folder;
    const std::string text("a\0b\r\n\xff", 6);
    std::string why = "untouched";
    EXPECT_EQ(textOfFile(folder.put("bytes", text), 6, &why), text);
    EXPECT_EQ(why, "");
    EXPECT_EQ(textOfFile(folder.put("empty", ""), 0), "");
    const std::string longer(100'000, 'x');
    EXPECT_EQ(textOfFile(folder.put("longer", longer), 1 << 20), longer);
}

TEST(TextOfFile, IsNotThereForWhatCannotBeRead) {
    const testing::TemporaryFolder folder;
    EXPECT_EQ(reason(folder.path("missing")), "No such file or directory");
    EXPECT_EQ(reason(""), "No such file or directory");
    EXPECT_EQ(reason(folder.path().string()), "is a folder");
    EXPECT_EQ(reason("/dev/zero"), "is not a regular file");
    EXPECT_EQ(reason(folder.put("large", "1234567"), 6), "is larger than 6 bytes");
}

TEST(TextOfFile, DoesNotWaitForAPipe) {
    const testing::TemporaryFolder folder;
    const std::string pipe = folder.path("pipe");
    ASSERT_EQ(std::system(("mkfifo '" + pipe + "'").c_str()), 0);
    EXPECT_EQ(reason(pipe), "is not a regular file");
}

std::vector<std::string> pieces(std::string_view text, const CharacterSet& separators) {
    std::vector<std::string> result;
    forEachPiece(text, separators, [&](std::string_view piece) { result.emplace_back(piece); });
    return result;
}

TEST(CharacterSet, HasItsCharactersAndNoOthers) {
    const CharacterSet set("a\xff");
    EXPECT_TRUE(set.contains('a'));
    EXPECT_TRUE(set.contains('\xff'));
    EXPECT_FALSE(set.contains('b'));
    EXPECT_FALSE(set.contains('\0'));
    EXPECT_EQ(lengthBefore(set, "bca"), 2U);
    EXPECT_EQ(lengthBefore(set, "abc"), 0U);
    EXPECT_EQ(lengthBefore(set, "bcd"), 3U);
}

TEST(ForEachPiece, LeavesEmptyPiecesOut) {
    const std::vector<std::string> expected{"a", "b c"};
    EXPECT_EQ(pieces("\n\na\r\nb c\f\v", kLineEnds), expected);
    EXPECT_EQ(pieces("b c", kBlanks), (std::vector<std::string>{"b", "c"}));
    EXPECT_TRUE(pieces("", kBlanks).empty());
    EXPECT_TRUE(pieces(" \t ", kBlanks).empty());
}

}  // namespace
}  // namespace mezalith::platform
