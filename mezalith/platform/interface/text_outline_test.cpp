// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface/text_outline.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

std::string recorded(const TextOutline& outline) {
    RecordingPort port;
    outline.path.addTo(port);
    return port.text();
}

/// The smallest and the largest coordinates of the outlines, control points included.
struct Box {
    double minX = 1e9, minY = 1e9, maxX = -1e9, maxY = -1e9;
};

Box boxOf(const TextOutline& outline) {
    std::istringstream lines(recorded(outline));
    Box box;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line.substr(std::min(line.find(' '), line.size())));
        for (double x = 0, y = 0; words >> x >> y;) {
            box = {std::min(box.minX, x), std::min(box.minY, y), std::max(box.maxX, x),
                   std::max(box.maxY, y)};
        }
    }
    return box;
}

TEST(TextOutline, IsEmptyForNoText) {
    const TextOutline outline = textOutline("", {});
    EXPECT_EQ(outline.size.width, 0);
    EXPECT_TRUE(outline.path.isEmpty());
}

TEST(TextOutline, FillsItsBoxFromTheLowerLeftCorner) {
    const TextOutline outline = textOutline("Hxg", {.size = 20});
    const Box box = boxOf(outline);
    EXPECT_GT(outline.size.height, 20);
    EXPECT_LT(outline.size.height, 30);
    EXPECT_GE(box.minX, 0);
    EXPECT_LE(box.maxX, outline.size.width);
    EXPECT_GT(box.minY, 0);  // the descent of "g" is within the line
    EXPECT_LT(box.minY, 5);
    EXPECT_GT(box.maxY, 14);
    EXPECT_LT(box.maxY, outline.size.height);
}

TEST(TextOutline, GrowsInProportionToItsSize) {
    const TextOutline small = textOutline("Mount", {.size = 10});
    const TextOutline large = textOutline("Mount", {.size = 30});
    EXPECT_NEAR(large.size.width, 3 * small.size.width, 0.05);
    EXPECT_NEAR(boxOf(large).maxY - boxOf(large).minY, 3 * (boxOf(small).maxY - boxOf(small).minY),
                0.05);
}

TEST(TextOutline, IsTheSameEveryTime) {
    EXPECT_EQ(recorded(textOutline("Oslo", {})), recorded(textOutline("Oslo", {})));
    EXPECT_NE(recorded(textOutline("Oslo", {})), recorded(textOutline("Oslo", {.bold = true})));
    EXPECT_NE(recorded(textOutline("Oslo", {})), recorded(textOutline("Oslo", {.italic = true})));
    EXPECT_NE(recorded(textOutline("Oslo", {})),
              recorded(textOutline("Oslo", {.family = "monospace"})));
}

TEST(TextOutline, BreaksLinesThatAreTooLong) {
    const std::string text = "one two three four five six seven eight";
    const TextOutline wide = textOutline(text, {.maxWidth = 1000});
    const TextOutline narrow = textOutline(text, {.maxWidth = 80});
    EXPECT_LE(narrow.size.width, 80);
    EXPECT_GT(narrow.size.height, 2.5 * wide.size.height);
    const TextOutline word = textOutline("Llanfairpwllgwyngyll", {.maxWidth = 40});
    EXPECT_LE(word.size.width, 40);
    EXPECT_EQ(textOutline("a\nb\nc", {}).size.height, 3 * textOutline("a", {}).size.height);
}

TEST(TextOutline, EndsAfterTheLastLineThatIsAllowed) {
    std::string text;
    for (int i = 0; i < 100; ++i) text += "word ";
    const double line = textOutline("word", {}).size.height;
    EXPECT_EQ(textOutline(text, {.maxWidth = 60, .maxLines = 3}).size.height, 3 * line);
    EXPECT_EQ(textOutline(text, {.maxWidth = 60}).size.height, 12 * line);
}

TEST(TextOutline, HoldsTheWholeOfALongLine) {
    const TextOutline outline = textOutline(std::string(500, 'm'), {.maxWidth = 100000});
    EXPECT_NEAR(boxOf(outline).maxX, outline.size.width, 3);
}

TEST(TextOutline, AlignsShorterLines) {
    const auto leftOfSecond = [](Alignment alignment) {
        const TextOutline both = textOutline("WWWWWWWW\nH", {.alignment = alignment});
        const std::string path = recorded(both);
        const double width = textOutline("WWWWWWWW", {}).size.width;
        EXPECT_NEAR(both.size.width, width, 0.01);
        // The second line's letter comes last.
        double x = 0;
        std::istringstream(path.substr(path.rfind("moveToPoint") + 12)) >> x;
        return x / width;
    };
    EXPECT_LT(leftOfSecond(Alignment::Start), 0.1);
    EXPECT_NEAR(leftOfSecond(Alignment::Center), 0.5, 0.1);
    EXPECT_GT(leftOfSecond(Alignment::End), 0.85);
}

TEST(TextOutline, TakesAnyBytes) {
    const std::string bytes("a\xff\xfe\0b\x80\xc3", 7);
    EXPECT_GT(textOutline(bytes, {}).size.width, 0);
    EXPECT_EQ(recorded(textOutline("\xff", {})), recorded(textOutline("\xef\xbf\xbd", {})));
}

TEST(TextOutline, CutsWhatIsTooLongBetweenCharacters) {
    std::string text = "a";
    while (text.size() < longestText + 2) text += "\xc3\xa9";
    const TextStyle style{.maxWidth = 100000};
    EXPECT_EQ(recorded(textOutline(text, style)),
              recorded(textOutline(text.substr(0, longestText - 1), style)));
}

TEST(TextOutline, IsEmptyForMeasuresThatAreNotPositiveAndFinite) {
    for (const double bad : {0.0, -1.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        EXPECT_TRUE(textOutline("a", {.size = bad}).path.isEmpty());
        EXPECT_TRUE(textOutline("a", {.maxWidth = bad}).path.isEmpty());
    }
    EXPECT_TRUE(textOutline("a", {.maxLines = 0}).path.isEmpty());
}

TEST(TextOutline, HasRoomButNoOutlineForSpaces) {
    const TextOutline outline = textOutline("  ", {});
    EXPECT_GT(outline.size.width, 0);
    EXPECT_TRUE(outline.path.isEmpty());
}

}  // namespace
}  // namespace mezalith::platform
