// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/folded_text.hpp>

#include <string>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

constexpr TextOptions kCase{.ignoresCase = true, .ignoresDiacritics = false};
constexpr TextOptions kMarks{.ignoresCase = false, .ignoresDiacritics = true};
constexpr TextOptions kBoth{.ignoresCase = true, .ignoresDiacritics = true};

std::string folded(std::string_view text, TextOptions options) {
    return std::string(FoldedText(text, options).view());
}

TEST(FoldedText, LeavesTextsAloneWithoutOptions) {
    const std::string text = "\xC3\x89 \xFF A";
    const FoldedText same(text, {});
    EXPECT_EQ(same.view().data(), text.data());
    EXPECT_EQ(same.view().size(), text.size());
}

TEST(FoldedText, LendsASCIIThatNeedsNoFolding) {
    const std::string text = "oslo 7";
    EXPECT_EQ(FoldedText(text, kCase).view().data(), text.data());
    const std::string capitals = "OSLO";
    EXPECT_EQ(FoldedText(capitals, kMarks).view().data(), capitals.data());
    EXPECT_EQ(folded("", kBoth), "");
}

TEST(FoldedText, FoldsCase) {
    EXPECT_EQ(folded("AZ@[`{az", kCase), "az@[`{az");
    EXPECT_EQ(folded("TROMSØ", kCase), "tromsø");
    EXPECT_EQ(folded("Straße", kCase), "strasse");
    EXPECT_EQ(folded("ΣΊΣΥΦΟΣ", kCase), folded("σίσυφος", kCase));
    EXPECT_EQ(folded("МОСКВА", kCase), "москва");
    EXPECT_EQ(folded("𐐀", kCase), "𐐨");  // beyond the first 65536 characters
    EXPECT_EQ(folded("ﬁ", kCase), "fi");
}

TEST(FoldedText, KeepsMarksWhenItFoldsCaseAlone) {
    EXPECT_EQ(folded("ÉÅÑ", kCase), "éåñ");
    EXPECT_NE(folded("É", kCase), folded("e", kCase));
}

TEST(FoldedText, DropsMarks) {
    EXPECT_EQ(folded("Éåñ Ç", kMarks), "Ean C");
    EXPECT_EQ(folded("e\u0301\u0323", kMarks), "e");
    EXPECT_EQ(folded("ǖ", kMarks), "u");  // two marks on one letter
    EXPECT_EQ(folded("й ё", kMarks), "и е");
    EXPECT_EQ(folded("\u0301", kMarks), "");
}

TEST(FoldedText, KnowsLettersThatHaveNoMark) {
    EXPECT_EQ(folded("øłđ", kMarks), "øłđ");
    EXPECT_EQ(folded("한국", kBoth), "한국");
}

TEST(FoldedText, DropsMarksAndFoldsCase) {
    EXPECT_EQ(folded("ÎLE-DE-FRANCE", kBoth), "ile-de-france");
    EXPECT_EQ(folded("İzmir", kBoth), "izmir");
    EXPECT_EQ(folded("ΆΛΦΑ", kBoth), "αλφα");
}

TEST(FoldedText, MakesEquivalentSpellingsTheSame) {
    EXPECT_EQ(folded("e\u0301", kCase), folded("é", kCase));
    EXPECT_EQ(folded("a\u0323\u0302", kCase), folded("a\u0302\u0323", kCase));
    EXPECT_EQ(folded("\u212B", kCase), folded("å", kCase));  // the sign for angstrom
}

TEST(FoldedText, ReplacesWhatIsNotUTF8) {
    EXPECT_EQ(folded("a\xFFz", kBoth), "a\uFFFDz");
    EXPECT_EQ(folded("\xC3", kMarks), "\uFFFD");
}

TEST(FoldedText, HoldsTextsOfAnyLength) {
    std::string capitals, letters, longest, expansions;
    for (int i = 0; i < 5000; ++i) {
        capitals += "É";
        letters += "e";
        longest += 'A';
        expansions += "ΐ";  // folds to three characters, and composes again
    }
    EXPECT_EQ(folded(capitals, kBoth), letters);
    EXPECT_EQ(folded(longest, kCase), std::string(5000, 'a'));
    EXPECT_EQ(folded(expansions, kCase), expansions);
}

TEST(TextOptions, SayWhetherAnythingIsIgnored) {
    EXPECT_FALSE(TextOptions{}.any());
    EXPECT_TRUE(kCase.any());
    EXPECT_TRUE(kMarks.any());
    EXPECT_FALSE(kCase == kBoth);
}

}  // namespace
}  // namespace mezalith::platform
