// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface/text_outline.hpp>
#include <mezalith/platform/interface/text_template.hpp>

#include <map>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith::platform {
namespace {

/// Answers what is set.
struct Subject : Object {
    Dictionary table;
    std::shared_ptr<Subject> inner;
    /// Answered by an object that nobody else keeps.
    bool isInnerFresh = false;

    KeyedValue valueForKey(std::string_view key) const override {
        if (key == "table") return &table;
        if (key == "inner" && isInnerFresh) {
            return std::shared_ptr<const Object>(std::make_shared<Subject>(*inner));
        }
        if (key == "inner" && inner != nullptr) return std::shared_ptr<const Object>(inner);
        return platform::valueForKey(table, key);
    }
};

std::string filled(std::string_view text, const Object* object) {
    std::string error;
    const auto made = TextTemplate::templateWithText(text, error);
    EXPECT_EQ(error, "");
    return made ? made->textForObject(object) : "none";
}

std::string errorOf(std::string_view text) {
    std::string error;
    EXPECT_FALSE(TextTemplate::templateWithText(text, error).has_value());
    return error;
}

class Template : public ::testing::Test {
  protected:
    Template() {
        subject.table = {{"name", "Oslo"},
                         {"count", std::int64_t{709037}},
                         {"share", 0.25},
                         {"isCapital", true},
                         {"isPort", false},
                         {"nothing", std::monostate()},
                         {"year", std::int64_t{2024}}};
    }
    Subject subject;
};

TEST_F(Template, KeepsTextAsItIs) {
    EXPECT_EQ(TextTemplate().textForObject(&subject), "");
    EXPECT_EQ(filled("", &subject), "");
    EXPECT_EQ(filled("All of it", nullptr), "All of it");
    EXPECT_EQ(filled("{{name}} }}{{", &subject), "{name} }{");
}

TEST_F(Template, FillsInWhatTheObjectAnswers) {
    EXPECT_EQ(filled("{name}: {count} ({share}), {isCapital}/{isPort}", &subject),
              "Oslo: 709037 (0.25), yes/no");
    EXPECT_EQ(filled("{name}{name}", &subject), "OsloOslo");
}

TEST_F(Template, FillsInNothingForWhatIsNotAnswered) {
    EXPECT_EQ(filled("<{missing}{nothing}{table}{inner}{name.length}>", &subject), "<>");
    EXPECT_EQ(filled("<{name}>", nullptr), "<>");
}

TEST_F(Template, FollowsKeyPathsThroughTablesAndObjects) {
    subject.inner = std::make_shared<Subject>();
    subject.inner->table["a name"] = "Inner";
    EXPECT_EQ(filled("{table.name} {inner.a name} {inner.table.a name}", &subject),
              "Oslo Inner Inner");
    subject.isInnerFresh = true;
    subject.inner->table["a name"] = std::string(100, 'x');
    EXPECT_EQ(filled("{inner.table.a name}", &subject), std::string(100, 'x'));
}

TEST_F(Template, GroupsTheDigitsOfNumbers) {
    const auto grouped = [&](Value value) {
        subject.table["value"] = std::move(value);
        std::string text = filled("{value|grouped}", &subject);
        for (std::size_t at = 0; (at = text.find("\xe2\x80\xaf")) != std::string::npos;) {
            text.replace(at, 3, "_");
        }
        return text;
    };
    EXPECT_EQ(grouped(std::int64_t{0}), "0");
    EXPECT_EQ(grouped(std::int64_t{2024}), "2024");
    EXPECT_EQ(grouped(std::int64_t{12345}), "12_345");
    EXPECT_EQ(grouped(std::int64_t{-709037}), "-709_037");
    EXPECT_EQ(grouped(std::int64_t{1234567890}), "1_234_567_890");
    EXPECT_EQ(grouped(123456.789), "123_456.789");
    EXPECT_EQ(grouped(709037.0), "709_037");
    EXPECT_EQ(grouped(1e300), "1e+300");
    EXPECT_EQ(grouped("12345"), "12345");
    EXPECT_EQ(grouped(true), "yes");
}

TEST_F(Template, SaysWhatIsWrong) {
    EXPECT_EQ(errorOf("{name"), "\"{\" without \"}\"; write \"{{\" for a brace");
    EXPECT_EQ(errorOf("a } b"), "\"}\" without \"{\"; write \"}}\" for a brace");
    EXPECT_EQ(errorOf("{}"), "a key without a name between \"{\" and \"}\"");
    EXPECT_EQ(errorOf("{a.}"), "a key without a name between \"{\" and \"}\"");
    EXPECT_EQ(errorOf("{.a}"), "a key without a name between \"{\" and \"}\"");
    EXPECT_EQ(errorOf("{a|rounded}"), "after \"|\" only \"grouped\" is known");
    EXPECT_EQ(errorOf("{a.a.a.a.a.a.a.a.a.a.a.a.a.a.a.a.a}"), "a key path of more than 16 keys");
}

TEST_F(Template, StopsFillingInATextThatIsTooLong) {
    subject.table["long"] = std::string(longestText, 'x');
    EXPECT_EQ(filled("{long}{name}{name}{name}", &subject).size(), longestText + 4);
}

TEST_F(Template, TakesAnyTextApart) {
    EXPECT_TRUE(rc::check("a text is taken or refused with a reason", [&] {
        const auto text = *rc::gen::container<std::string>(
            rc::gen::element('{', '}', '|', '.', 'a', ' ', '\0', '\xc3'));
        std::string error;
        const auto made = TextTemplate::templateWithText(text, error);
        RC_ASSERT(made.has_value() == error.empty());
        if (made) made->textForObject(&subject);
    }));
}

TEST_F(Template, ReadsBackTextWhoseBracesAreDoubled) {
    EXPECT_TRUE(rc::check("doubled braces are braces", [&] {
        const auto text = *rc::gen::container<std::string>(rc::gen::element('{', '}', '|', 'a'));
        std::string doubled;
        for (const char c : text) doubled += std::string(c == '{' || c == '}' ? 2 : 1, c);
        RC_ASSERT(filled(doubled, nullptr) == text);
    }));
}

}  // namespace
}  // namespace mezalith::platform
