// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface/button.hpp>
#include <mezalith/platform/interface/interface_document.hpp>
#include <mezalith/platform/interface/text_outline.hpp>
#include <mezalith/platform/recording_port.hpp>
#include <tests/support/temporary_folder.hpp>

#include <filesystem>
#include <fstream>
#include <map>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

InterfaceDocument::Pointer document(const std::string& content) {
    std::string error;
    auto made = InterfaceDocument::documentWithText(
        R"({"format": "mezalith interface", "version": 1, "content": )" + content + "}", &error);
    EXPECT_NE(made, nullptr) << error;
    return made;
}

std::shared_ptr<View> viewOf(const std::string& content,
                             const std::shared_ptr<Object>& represented = nullptr) {
    return document(content)->viewForObject(represented);
}

MzSize sizeOf(const std::string& text) { return textOutline(text, {}).size; }

struct Named : Object {
    std::string name;
    explicit Named(std::string text) : name(std::move(text)) {}
    KeyedValue valueForKey(std::string_view key) const override {
        return key == "name" ? KeyedValue(name) : KeyedValue();
    }
};

#define EXPECT_RECT(actual, ...)                          \
    EXPECT_TRUE(MzEqualRects(actual, MzRect __VA_ARGS__)) \
        << NSStringFromMzRect(actual) << " for " << NSStringFromMzRect(MzRect __VA_ARGS__)

// --- where things stand ----------------------------------------------------------------------

TEST(InterfaceDocument, IsAsLargeAsItsLabel) {
    const auto view = viewOf(R"({"label": "Oslo"})");
    EXPECT_RECT(view->frame(), {{0, 0}, sizeOf("Oslo")});
}

TEST(InterfaceDocument, PutsTheMembersOfAColumnBelowEachOther) {
    const MzSize a = sizeOf("mm"), b = sizeOf("mmmm");
    const auto view = viewOf(R"({"column": [{"label": "mm"}, {"label": "mmmm"}], "spacing": 5,
                   "insets": [1, 2, 3, 4]})");
    EXPECT_RECT(view->frame(), {{0, 0}, {4 + b.width + 2, 3 + (a.height + 5 + b.height) + 1}});
    ASSERT_EQ(view->subviews().size(), 2U);
    EXPECT_RECT(view->subviews()[0]->frame(), {{4, 3 + b.height + 5}, a});
    EXPECT_RECT(view->subviews()[1]->frame(), {{4, 3}, b});
}

TEST(InterfaceDocument, PutsTheMembersOfARowBesideEachOther) {
    const MzSize a = sizeOf("mm"), b = sizeOf("m\nm");
    const auto view = viewOf(R"({"row": [{"label": "mm"}, {"label": "m\nm"}]})");
    EXPECT_RECT(view->frame(), {{0, 0}, {a.width + 4 + b.width, b.height}});
    EXPECT_RECT(view->subviews()[0]->frame(), {{0, b.height - a.height}, a});
    EXPECT_RECT(view->subviews()[1]->frame(), {{a.width + 4, 0}, b});
}

TEST(InterfaceDocument, AlignsAcrossTheStack) {
    const MzSize a = sizeOf("m"), b = sizeOf("mmmm");
    const auto left = [&](const std::string& align) {
        return viewOf(R"({"column": [{"label": "m"}, {"label": "mmmm"}], "align": ")" + align +
                      "\"}")
            ->subviews()[0]
            ->frame()
            .origin.x;
    };
    EXPECT_EQ(left("start"), 0);
    EXPECT_EQ(left("center"), (b.width - a.width) / 2);
    EXPECT_EQ(left("end"), b.width - a.width);
}

TEST(InterfaceDocument, IsAsWideAsItMustBe) {
    const MzSize m = sizeOf("m");
    for (const char* stack : {"column", "row"}) {
        const auto view = viewOf(std::string("{\"") + stack +
                                 R"(": [{"label": "m"}], "minWidth": 80, "insets": 3})");
        EXPECT_RECT(view->frame(), {{0, 0}, {86, m.height + 6}});
        EXPECT_RECT(view->subviews()[0]->frame(), {{3, 3}, m});
    }
    const auto right = viewOf(R"({"column": [{"label": "m"}], "minWidth": 80, "align": "end"})");
    EXPECT_EQ(right->subviews()[0]->frame().origin.x, 80 - m.width);
    EXPECT_EQ(viewOf(R"({"row": [{"label": "m"}], "minWidth": 1})")->frame().size.width, m.width);
}

TEST(InterfaceDocument, AddsSpacesToTheSpacing) {
    const double line = sizeOf("m").height;
    const auto height = [](const std::string& members) {
        return viewOf("{\"column\": [" + members + "], \"spacing\": 2}")->frame().size.height;
    };
    const std::string label = R"({"label": "m"})", space = R"({"space": 10})";
    EXPECT_EQ(height(label + "," + label), line + 2 + line);
    EXPECT_EQ(height(label + "," + space + "," + label), line + 12 + line);
    EXPECT_EQ(height(space + "," + label), 10 + line);
    EXPECT_EQ(height(label + "," + space + "," + space), line + 20);
    EXPECT_EQ(viewOf(R"({"column": [{"space": 10}]})")->frame().size.height, 0);
}

TEST(InterfaceDocument, LeavesNoRoomForWhatIsEmpty) {
    const double line = sizeOf("m").height;
    const auto view = viewOf(
        R"({"column": [{"label": "m"}, {"label": "{missing}"}, {"row": [{"label": ""}],
            "background": "red", "insets": 5}, {"label": "m"}], "spacing": 2})");
    EXPECT_EQ(view->frame().size.height, line + 2 + line);
    EXPECT_EQ(view->subviews().size(), 2U);
    EXPECT_TRUE(viewOf(R"({"label": ""})")->subviews().empty());
}

TEST(InterfaceDocument, FillsTheBackgroundOfAStack) {
    const auto view = viewOf(R"({"row": [{"label": "m"}], "background": "#00ff00", "insets": 5})");
    RecordingPort port;
    const GraphicsContext context(&port);
    view->drawRect(view->bounds());
    EXPECT_EQ(port.lines()[0], "setFillColor 0 1 0 1");
    EXPECT_EQ(port.lines().back(), "drawPath 0");
    port.clear();
    const auto plain = viewOf(R"({"row": [{"label": "m"}]})");
    plain->drawRect(plain->bounds());
    EXPECT_TRUE(port.lines().empty());
}

// --- objects and actions ---------------------------------------------------------------------

TEST(InterfaceDocument, FillsInWhatItsObjectAnswers) {
    const auto made = document(R"({"label": "{name}"})");
    EXPECT_RECT(made->viewForObject(std::make_shared<Named>("Oslo"))->frame(),
                {{0, 0}, sizeOf("Oslo")});
    EXPECT_RECT(made->viewForObject(std::make_shared<Named>("Bergen"))->frame(),
                {{0, 0}, sizeOf("Bergen")});
    EXPECT_RECT(made->viewForObject(nullptr)->frame(), {{0, 0}, {0, 0}});
}

TEST(InterfaceDocument, TellsTheActionOfAButtonWithItsObject) {
    std::vector<std::string> told;
    std::shared_ptr<Object> seen;
    auto represented = std::make_shared<Named>("Oslo");
    const auto view = document(R"({"row": [{"button": "{name}", "action": "more"}]})")
                          ->viewForObject(represented, [&](const std::string& action,
                                                           const std::shared_ptr<Object>& object) {
                              told.push_back(action);
                              seen = object;
                          });
    auto& button = dynamic_cast<Button&>(*view->subviews()[0]);
    button.performClick();
    EXPECT_EQ(told, (std::vector<std::string>{"more"}));
    EXPECT_EQ(std::exchange(seen, nullptr), represented);
    represented.reset();
    button.performClick();
    EXPECT_EQ(seen, nullptr);
    EXPECT_EQ(told.size(), 2U);
}

TEST(InterfaceDocument, MayDoWithoutAHandler) {
    const auto view = viewOf(R"({"button": "More"})");
    dynamic_cast<Button&>(*view).performClick();
    EXPECT_GT(view->frame().size.width, 0);
}

TEST(InterfaceDocument, OwnsNoneOfTheObjectsThatItsViewsPresent) {
    const auto represented = std::make_shared<Named>("Oslo");
    const auto view = viewOf(R"({"row": [{"label": "{name}"}, {"button": "a"}]})", represented);
    EXPECT_EQ(represented.use_count(), 1);
}

TEST(InterfaceDocument, YieldsViewsByTheNameOfAnInterfaceFile) {
    struct Owner : InterfaceOwner {
        std::shared_ptr<Object> representedObject() const override {
            return std::make_shared<Named>("Oslo");
        }
    } owner;
    InterfaceFile::setLoader("card", InterfaceDocument::loader(document(R"({"label": "{name}"})")));
    const auto view = InterfaceFile::load("card", owner);
    EXPECT_NE(view, InterfaceFile::load("card", owner));
    EXPECT_RECT(view->frame(), {{0, 0}, sizeOf("Oslo")});
    InterfaceFile::setLoader("card", InterfaceDocument::loader(nullptr));
    EXPECT_EQ(InterfaceFile::load("card", owner), nullptr);
    InterfaceFile::setLoader("card", nullptr);
}

// --- reading ---------------------------------------------------------------------------------

TEST(InterfaceDocument, SaysWhatIsWrongInOneLine) {
    std::string error;
    EXPECT_EQ(InterfaceDocument::documentWithText("{\n}", &error), nullptr);
    EXPECT_EQ(error, "line 1, column 1: no mezalith interface");
    EXPECT_EQ(InterfaceDocument::documentWithText("[", nullptr), nullptr);
}

std::string errorOfFile(const std::filesystem::path& file) {
    std::string error;
    EXPECT_EQ(InterfaceDocument::documentWithFile(file, &error), nullptr);
    return error;
}

TEST(InterfaceDocument, ReadsAFile) {
    const testing::TemporaryFolder folder;
    const auto file = folder.path("card.json");
    std::ofstream(file) << R"({"format": "mezalith interface", "version": 1,
                               "content": {"label": "Oslo"}})";
    EXPECT_NE(InterfaceDocument::documentWithFile(file, nullptr), nullptr);
    std::ofstream(file) << std::string(1 << 20, ' ');
    EXPECT_EQ(errorOfFile(file), "is larger than 262144 bytes");
    EXPECT_EQ(errorOfFile(folder.path("none.json")), "No such file or directory");
    EXPECT_EQ(InterfaceDocument::documentWithFile(folder.path("none.json"), nullptr), nullptr);
}

TEST(InterfaceDocument, ShowsImagesFromItsOwnFolder) {
    const auto cards = std::filesystem::path(MEZALITH_SOURCE_DIR) / "data/map/icons";
    const testing::TemporaryFolder folder;
    std::filesystem::create_directory(folder.path("icons"));
    std::filesystem::copy(cards / "city.svg", folder.path("icons/city.svg"));
    std::ofstream(folder.path("broken.png")) << "\x89PNG\r\n\x1a\n";
    const auto write = [&](const std::string& name) {
        std::ofstream(folder.path("card.json"))
            << R"({"format": "mezalith interface", "version": 1, "content": {"image": ")" << name
            << R"(", "width": 30}})";
        return folder.path("card.json");
    };
    const auto made = InterfaceDocument::documentWithFile(write("icons/city.svg"), nullptr);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->viewForObject(nullptr)->frame().size.width, 30);
    const std::string place = "line 1, column 69: \"";
    EXPECT_EQ(errorOfFile(write("none.png")), place + "none.png\": No such file or directory");
    EXPECT_TRUE(errorOfFile(write("broken.png")).starts_with(place + "broken.png\": PNG: "));
    for (const char* outside : {"", "/etc/hostname", "../card.json", "icons/../../x"}) {
        EXPECT_EQ(errorOfFile(write(outside)),
                  place + outside + "\": images lie in the folder of the file or below");
    }
}

TEST(InterfaceDocument, RefusesWhatIsWrongWithOneMessageEach) {
    const std::filesystem::path folder =
        std::filesystem::path(MEZALITH_SOURCE_DIR) / "tests/data/bad/interface";
    const std::map<std::string, std::string> messages{
        {"brace-open.json", "line 1, column 63: \"{\" without \"}\"; write \"{{\" for a brace"},
        {"image-outside.json",
         "line 1, column 63: \"../../../etc/hostname\": images lie in the folder of the file or "
         "below"},
        {"insets-three.json",
         "line 1, column 126: four insets belong here: top, right, bottom and left"},
        {"key-twice.json", "line 1, column 67: a second key \"label\""},
        {"ok-place.json", "line 6, column 17: \"city.svg\": No such file or directory"},
        {"size-huge.json", "line 1, column 82: a number from 4 to 200 belongs here"},
        {"too-deep.json", "line 1, column 182: elements nested deeper than 16"},
        {"truncated.json", "line 1, column 188: unexpected end of input; expected '}'"},
        {"version-2.json", "line 1, column 42: not of version 1"}};
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        ++count;
        const auto found = messages.find(entry.path().filename());
        ASSERT_NE(found, messages.end()) << entry.path();
        EXPECT_EQ(errorOfFile(entry.path()), found->second) << entry.path();
    }
    EXPECT_EQ(count, messages.size());
}

}  // namespace
}  // namespace mezalith::platform
