// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface/element_reader.hpp>

#include <gtest/gtest.h>

namespace mezalith::platform::detail {
namespace {

/// A file whose content begins in the second line.
std::string file(const std::string& content) {
    return "{\"format\": \"mezalith interface\", \"version\": 1, \"content\":\n" + content + "}";
}

/// A picture named "icon".
const InterfaceDocument::ImageSource kImages = [](const std::string& name, std::string& error) {
    error = name == "icon" ? "" : "not found";
    return name == "icon" ? Image::imageWithBitmap(Bitmap::bitmapWithSize(3, 2)) : nullptr;
};

Element read(const std::string& content) {
    std::string error;
    auto element = readInterface(file(content), kImages, error);
    EXPECT_TRUE(element.has_value()) << error;
    return element.value_or(Element());
}

std::string errorOfFile(const std::string& text) {
    std::string error;
    EXPECT_FALSE(readInterface(text, kImages, error).has_value()) << text;
    EXPECT_EQ(error.find('\n'), std::string::npos);
    return error;
}

std::string errorOf(const std::string& content) { return errorOfFile(file(content)); }

TEST(ElementReader, ReadsALabelWithItsDefaults) {
    const auto label = std::get<LabelElement>(read(R"({"label": "Oslo"})").content);
    EXPECT_EQ(label.text.textForObject(nullptr), "Oslo");
    EXPECT_EQ(label.style.family, "sans");
    EXPECT_EQ(label.style.size, 12);
    EXPECT_FALSE(label.style.bold);
    EXPECT_FALSE(label.style.italic);
    EXPECT_EQ(label.style.alignment, Alignment::Start);
    EXPECT_EQ(label.style.maxWidth, 280);
    EXPECT_EQ(label.style.maxLines, 12);
    EXPECT_TRUE(isEqualToColor(label.color, Color::blackColor()));
}

TEST(ElementReader, ReadsEachKeyOfALabel) {
    const auto label = std::get<LabelElement>(
        read(R"({"label": "x", "family": "serif", "size": 20.5, "bold": true, "italic": true,
                 "color": "#ff0000", "align": "end", "maxWidth": 90, "maxLines": 3})")
            .content);
    EXPECT_EQ(label.style.family, "serif");
    EXPECT_EQ(label.style.size, 20.5);
    EXPECT_TRUE(label.style.bold);
    EXPECT_TRUE(label.style.italic);
    EXPECT_EQ(label.style.alignment, Alignment::End);
    EXPECT_EQ(label.style.maxWidth, 90);
    EXPECT_EQ(label.style.maxLines, 3);
    EXPECT_TRUE(isEqualToColor(label.color, Color::colorWithText("red")));
}

TEST(ElementReader, ReadsRowsAndColumnsWithTheirMembers) {
    const auto column = std::get<StackElement>(
        read(R"({"column": [{"label": "a"}, {"space": 7}, {"row": []}], "spacing": 9,
                 "insets": [1, 2, 3, 4], "minWidth": 80, "align": "center", "background": "white"})")
            .content);
    EXPECT_FALSE(column.isRow);
    EXPECT_EQ(column.spacing, 9);
    EXPECT_EQ(column.minWidth, 80);
    EXPECT_EQ(column.insets.top, 1);
    EXPECT_EQ(column.insets.right, 2);
    EXPECT_EQ(column.insets.bottom, 3);
    EXPECT_EQ(column.insets.left, 4);
    EXPECT_EQ(column.alignment, Alignment::Center);
    EXPECT_TRUE(isEqualToColor(column.background, Color::whiteColor()));
    ASSERT_EQ(column.members.size(), 3U);
    EXPECT_EQ(std::get<SpaceElement>(column.members[1].content).length, 7);
    const auto& row = std::get<StackElement>(column.members[2].content);
    EXPECT_TRUE(row.isRow);
    EXPECT_EQ(row.spacing, 4);
    EXPECT_EQ(row.insets.left, 0);
    EXPECT_EQ(row.minWidth, 0);
    EXPECT_EQ(row.background, nullptr);
}

TEST(ElementReader, ReadsOneInsetForAllSides) {
    const auto row = std::get<StackElement>(read(R"({"row": [], "insets": 6})").content);
    EXPECT_TRUE(row.insets.top == 6 && row.insets.right == 6 && row.insets.bottom == 6 &&
                row.insets.left == 6);
}

TEST(ElementReader, ReadsAButton) {
    const auto button = std::get<ButtonElement>(
        read(R"({"button": "More", "action": "showMore", "size": 10})").content);
    EXPECT_EQ(button.title.textForObject(nullptr), "More");
    EXPECT_EQ(button.action, "showMore");
    EXPECT_EQ(button.style.size, 10);
}

TEST(ElementReader, ReadsAnImage) {
    const auto image = std::get<ImageElement>(read(R"({"image": "icon", "width": 20})").content);
    EXPECT_EQ(image.image->size().width, 3);
    EXPECT_EQ(image.width, 20);
    EXPECT_EQ(image.height, std::nullopt);
    EXPECT_EQ(std::get<ImageElement>(read(R"({"image": "icon", "height": 9})").content).height, 9);
}

TEST(ElementReader, SaysWhyThereIsNoImage) {
    EXPECT_EQ(errorOf(R"({"image": "none"})"), "line 2, column 11: \"none\": not found");
    EXPECT_EQ(errorOf(R"({"image": "icon", "width": 0})"),
              "line 2, column 28: a number from 1 to 1000 belongs here");
    std::string error;
    EXPECT_FALSE(readInterface(file(R"({"image": "icon"})"), {}, error).has_value());
    EXPECT_EQ(error, "line 2, column 11: \"icon\": there are no images here");
    std::string many;
    for (std::size_t i = 0; i < mostImages; ++i) many += R"({"image": "icon"},)";
    EXPECT_TRUE(errorOf("{\"row\": [" + many + R"({"image": "icon"}]})")
                    .ends_with(": more than 64 images"));
}

TEST(ElementReader, SaysWhereAValueIsWrongAndWhatBelongsThere) {
    EXPECT_EQ(errorOf(R"({"label": 5})"), "line 2, column 11: a text belongs here");
    EXPECT_EQ(errorOf(R"({"label": "a", "size": 1})"),
              "line 2, column 24: a number from 4 to 200 belongs here");
    EXPECT_EQ(errorOf(R"({"label": "a", "size": "1"})"),
              "line 2, column 24: a number from 4 to 200 belongs here");
    EXPECT_EQ(errorOf(R"({"label": "a", "bold": 1})"),
              "line 2, column 24: true or false belongs here");
    EXPECT_EQ(errorOf(R"({"label": "a", "color": "reddish"})"),
              "line 2, column 25: \"reddish\" is no colour");
    EXPECT_EQ(errorOf(R"({"label": "a", "align": "left"})"),
              "line 2, column 25: \"left\" is none of start, center and end");
    EXPECT_EQ(errorOf(R"({"label": "{a"})"),
              "line 2, column 11: \"{\" without \"}\"; write \"{{\" for a brace");
    EXPECT_EQ(errorOf(R"({"row": [], "insets": [1, 2]})"),
              "line 2, column 23: four insets belong here: top, right, bottom and left");
    EXPECT_EQ(errorOf(R"({"row": [], "insets": [1, 2, 3, -4]})"),
              "line 2, column 33: a number from 0 to 1000 belongs here");
    EXPECT_EQ(errorOf(R"({"row": {}})"), "line 2, column 9: a list of elements belongs here");
}

TEST(ElementReader, SaysWhichKeysThereAre) {
    EXPECT_EQ(errorOf(R"({"space": 1, "colour": "red"})"),
              "line 2, column 14: the key \"colour\" is none of space");
    EXPECT_EQ(errorOf(R"({"button": "a", "bold": true})"),
              "line 2, column 17: the key \"bold\" is none of button, action, size");
    EXPECT_EQ(errorOf(R"({"text": "a"})"),
              "line 2, column 1: no element: it has none of the keys column, row, label, button, "
              "image, space");
    EXPECT_EQ(errorOf("[]"),
              "line 2, column 1: no element: it has none of the keys column, row, label, button, "
              "image, space");
    EXPECT_EQ(errorOf(R"({"label": "a", "button": "b"})"),
              "line 2, column 16: the key \"button\" is none of label, size, family, bold, italic, "
              "color, align, maxWidth, maxLines");
}

TEST(ElementReader, TellsTheFirstFaultOnly) {
    EXPECT_EQ(errorOf("{\"column\": [\n{\"label\": 5},\n{\"label\": 6}], \"nothing\": 0}"),
              "line 3, column 11: a text belongs here");
}

TEST(ElementReader, ShowsOnlyTheBeginningOfALongText) {
    EXPECT_EQ(errorOf("{\"label\": \"a\", \"color\": \"" + std::string(100, 'x') + "\"}"),
              "line 2, column 25: \"" + std::string(40, 'x') + "...\" is no colour");
    EXPECT_EQ(errorOf(R"({"label": "a", "color": "a\nb"})"),
              "line 2, column 25: \"a b\" is no colour");
}

TEST(ElementReader, WantsItsFormatAndVersion) {
    EXPECT_EQ(errorOfFile("{}"), "line 1, column 1: no mezalith interface");
    EXPECT_EQ(errorOfFile("[]"), "line 1, column 1: no mezalith interface");
    EXPECT_EQ(errorOfFile(R"({"format": "mezalith archive"})"),
              "line 1, column 12: no mezalith interface");
    EXPECT_EQ(errorOfFile(R"({"format": "mezalith interface"})"),
              "line 1, column 1: not of version 1");
    EXPECT_EQ(errorOfFile(R"({"format": "mezalith interface", "version": 2})"),
              "line 1, column 45: not of version 1");
    EXPECT_EQ(errorOfFile(R"({"format": "mezalith interface", "version": 1})"),
              "line 1, column 1: there is no content");
    EXPECT_EQ(errorOfFile(R"({"format": "mezalith interface", "version": 1, "views": 1})"),
              "line 1, column 48: the key \"views\" is unknown");
    EXPECT_TRUE(errorOfFile("{,}").starts_with("line 1, column 2: unexpected"));
}

TEST(ElementReader, RefusesWhatIsTooLongTooDeepOrTooMany) {
    EXPECT_EQ(errorOfFile(std::string(longestInterface + 1, ' ')), "longer than 262144 bytes");
    EXPECT_EQ(errorOf("{\"label\": \"" + std::string(longestText + 1, 'x') + "\"}"),
              "line 2, column 11: a text of more than 4096 bytes");
    std::string nested = R"({"space": 1})";
    for (std::size_t i = 1; i < deepestElement; ++i) nested = "{\"row\": [" + nested + "]}";
    read(nested);
    EXPECT_EQ(errorOf("{\"row\": [" + nested + "]}"),
              "line 2, column 145: elements nested deeper than 16");
    std::string many;
    for (std::size_t i = 1; i < mostElements; ++i) many += R"({"space":1},)";
    many.pop_back();
    read("{\"row\": [" + many + "]}");
    EXPECT_TRUE(
        errorOf("{\"row\": [" + many + R"(,{"space":1}]})").ends_with(": more than 1000 elements"));
}

}  // namespace
}  // namespace mezalith::platform::detail
