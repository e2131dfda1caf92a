// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/format_predicate.hpp>
#include <mezalith/platform/predicates/predicate_subject.hpp>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using testing::meets;
using testing::Subject;

/// One of each type, as predicates write it.
constexpr std::array<const char*, 9> kValues{"nothing", "flag",  "whole", "real",          "text",
                                             "table",   "owner", "SELF",  "{'b', 1, NULL}"};

using Answers = std::vector<std::string>;

Subject oneOfEach() {
    Subject subject(
        {{"flag", true}, {"whole", std::int64_t{1}}, {"real", 2.5}, {"text", std::string("b")}});
    subject.owner = std::make_shared<Subject>();
    return subject;
}

/// A line for each left value, a character for each right one.
Answers answers(const std::string& sign) {
    const Subject subject = oneOfEach();
    Answers lines;
    for (const char* left : kValues) {
        std::string line;
        for (const char* right : kValues) {
            const std::string format = std::string(left) + " " + sign + " " + right;
            line += meets(subject, format) ? '1' : '.';
        }
        lines.push_back(line);
    }
    return lines;
}

TEST(PredicateValues, AreEqualWithinTheirKind) {
    const Answers equal = {"1........",   // null
                           ".11......",   // true is 1
                           ".11......",   // the integer 1
                           "...1.....",   // 2.5
                           "....1....",   // text
                           ".....1...",   // a table
                           "......1..",   // an object
                           ".......1.",   // another one
                           "........1"};  // a list
    EXPECT_EQ(answers("=="), equal);
    Answers unequal = equal;
    for (std::string& line : unequal) {
        for (char& c : line) c = c == '1' ? '.' : '1';
    }
    EXPECT_EQ(answers("!="), unequal);
}

TEST(PredicateValues, HaveAnOrderAmongNumbersAndAmongTexts) {
    EXPECT_EQ(answers("<"),
              (Answers{".........", "...1.....", "...1.....", ".........", ".........", ".........",
                       ".........", ".........", "........."}));
    EXPECT_EQ(answers("<="),
              (Answers{".........", ".111.....", ".111.....", "...1.....", "....1....", ".........",
                       ".........", ".........", "........."}));
    EXPECT_EQ(answers(">"),
              (Answers{".........", ".........", ".........", ".11......", ".........", ".........",
                       ".........", ".........", "........."}));
    EXPECT_EQ(answers(">="),
              (Answers{".........", ".11......", ".11......", ".111.....", "....1....", ".........",
                       ".........", ".........", "........."}));
}

TEST(PredicateValues, AreInListsTablesAndTexts) {
    EXPECT_EQ(answers("IN"),
              (Answers{"........1", ".....1..1", ".....1..1", ".....1...", "....11..1", ".........",
                       ".........", ".........", "........."}));
    EXPECT_EQ(answers("CONTAINS"),
              (Answers{".........", ".........", ".........", ".........", "....1....", ".1111....",
                       ".........", ".........", "111.1...."}));
}

TEST(PredicateValues, HaveBeginningsEndsAndPatternsAsTextsOnly) {
    const Answers text = {".........", ".........", ".........", ".........", "....1....",
                          ".........", ".........", ".........", "........."};
    for (const char* sign : {"BEGINSWITH", "ENDSWITH", "LIKE", "BEGINSWITH[c]", "LIKE[cd]"}) {
        EXPECT_EQ(answers(sign), text) << sign;
    }
    std::string matching;
    for (const char* left : kValues) {
        matching += meets(oneOfEach(), std::string(left) + " MATCHES '.*'") ? '1' : '.';
    }
    EXPECT_EQ(matching, "....1....");
}

TEST(PredicateValues, AreBetweenBoundsOfTheirKind) {
    const auto between = [](const char* bounds) {
        std::string line;
        for (const char* value : kValues) {
            line += meets(oneOfEach(), std::string(value) + " BETWEEN " + bounds) ? '1' : '.';
        }
        return line;
    };
    EXPECT_EQ(between("{1, 2.5}"), ".111.....");
    EXPECT_EQ(between("{0, 0.5}"), ".........");
    EXPECT_EQ(between("{2.5, 1}"), ".........");
    EXPECT_EQ(between("{'a', 'c'}"), "....1....");
    EXPECT_EQ(between("{'b', 'b'}"), "....1....");
    EXPECT_EQ(between("{1, 'c'}"), ".........");
    EXPECT_EQ(between("{nothing, 3}"), ".........");
    EXPECT_EQ(between("{whole, real + 1}"), ".111.....");
    EXPECT_TRUE(meets(oneOfEach(), "'B' BETWEEN[c] {'a', 'c'}"));
    EXPECT_FALSE(meets(oneOfEach(), "'B' BETWEEN {'a', 'c'}"));
}

TEST(PredicateValues, CompareNumbersExactly) {
    const std::int64_t beyond = (std::int64_t{1} << 53) + 1;
    const Subject subject({{"beyond", beyond},
                           {"rounded", 0x1p53},
                           {"largest", std::numeric_limits<std::int64_t>::max()},
                           {"least", std::numeric_limits<std::int64_t>::min()},
                           {"end", 0x1p63},
                           {"nan", std::nan("")},
                           {"infinite", HUGE_VAL},
                           {"half", 0.5},
                           {"minusHalf", -0.5},
                           {"zero", std::int64_t{0}}});
    for (const char* format : {"beyond != rounded", "beyond > rounded", "rounded < beyond",
                               "largest < end", "end > largest", "least == -end", "-end == least",
                               "least > -end * 2", "zero < half", "half > zero", "zero > minusHalf",
                               "minusHalf < zero", "zero == -0.0", "largest > minusHalf"}) {
        EXPECT_TRUE(meets(subject, format)) << format;
    }
    for (const char* format : {"beyond == rounded", "largest == end", "least < -end"}) {
        EXPECT_FALSE(meets(subject, format)) << format;
    }
}

TEST(PredicateValues, TakeNumbersThatAreNotFiniteForNull) {
    const Subject subject({{"nan", std::nan("")}, {"infinite", HUGE_VAL}});
    EXPECT_TRUE(meets(subject, "nan == NULL AND infinite == NULL AND nan == nan"));
    EXPECT_FALSE(meets(subject, "infinite > 0 OR infinite < 0 OR nan <= nan"));
}

TEST(PredicateValues, CalculateWithNumbersOnly) {
    const Subject subject({{"three", std::int64_t{3}},
                           {"half", 0.5},
                           {"flag", true},
                           {"text", std::string("3")},
                           {"largest", std::numeric_limits<std::int64_t>::max()}});
    for (const char* format : {"three + half == 3.5",
                               "three - 5 == -2",
                               "three * half == 1.5",
                               "three / 2 == 1.5",
                               "three ** 2 == 9",
                               "flag + flag == 2",
                               "-three == -3",
                               "-half == -0.5",
                               "three + text == NULL",
                               "text + text == NULL",
                               "nothing * 2 == NULL",
                               "-text == NULL",
                               "{1} + 1 == NULL",
                               "three / 0 == NULL",
                               "0 / 0 == NULL",
                               "(-1) ** half == NULL",
                               "10 ** 400 == NULL",
                               "largest + 1 == 2 ** 63",
                               "-largest - 2 == -(2 ** 63)",
                               "largest * 2 > largest",
                               "largest - 1 < largest",
                               "1 / 3 * 3 == 1"}) {
        EXPECT_TRUE(meets(subject, format)) << format;
    }
}

TEST(PredicateValues, CompareTextsByTheirCharacters) {
    for (const char* format :
         {"'a' < 'b'", "'Z' < 'a'", "'z' < 'é'", "'' < 'a'", "'a' < 'aa'", "'10' < '9'",
          "'ﬀ' < '😀'", "'a' <=[c] 'A'", "'B' >[c] 'a'", "'é' <[d] 'f'", "'5' != 5",
          "'TRUE' != TRUE", "'' != NULL", "'A' != 'a'", "'A' ==[c] 'a'", "'É' !=[c] 'e'",
          "'É' ==[cd] 'e'", "'e' ==[cd] 'É'", "'STRASSE' ==[c] 'straße'"}) {
        EXPECT_TRUE(meets(Subject(), format)) << format;
    }
}

TEST(PredicateValues, FoldBothSidesWhereverTheyComeFrom) {
    const Subject subject({{"upper", std::string("ÅLESUND")}, {"lower", std::string("ålesund")}});
    for (const char* format :
         {"upper ==[c] lower", "lower ==[c] upper", "upper ==[c] 'ålesund'", "upper IN[c] {lower}",
          "upper IN[cd] {'x', 'alesund'}", "'alesund' IN[cd] table", "upper CONTAINS[cd] 'les'",
          "'LES' IN[cd] lower", "upper BEGINSWITH[d] 'A'", "upper ENDSWITH[c] 'sund'",
          "upper LIKE[c] 'ål*'", "upper LIKE[cd] 'a?esun?'", "upper MATCHES[c] 'å.*'",
          "upper MATCHES[cd] 'alesund'", "'a' MATCHES[d] 'á'", "{'A'} ==[c] {'a'}",
          "{{'A'}} CONTAINS[c] {'a'}", "ANY table ==[cd] 'ALESUND'"}) {
        EXPECT_TRUE(meets(subject, format)) << format;
    }
    for (const char* format : {"upper == lower", "upper LIKE 'ål*'", "upper MATCHES 'å.*'",
                               "upper BEGINSWITH[c] 'A'", "upper MATCHES[d] 'alesund'"}) {
        EXPECT_FALSE(meets(subject, format)) << format;
    }
}

TEST(PredicateValues, HoldTheEmptyTextEverywhere) {
    for (const char* format : {"'a' CONTAINS ''", "'a' BEGINSWITH ''", "'' ENDSWITH ''",
                               "'' IN 'a'", "'' LIKE '*'", "'' MATCHES ''"}) {
        EXPECT_TRUE(meets(Subject(), format)) << format;
    }
}

TEST(PredicateValues, MatchAsAWhole) {
    for (const char* format : {"'Oslo' MATCHES 'O.*'", "'Oslo' MATCHES '\\\\w+'", "'Å' MATCHES '.'",
                               "'Straße' MATCHES[c] 'STRAßE'", "'a' MATCHES 'a|b'",
                               "'ab' MATCHES '(?i)AB'", "'x1' MATCHES '[a-z]\\\\d{1,3}'"}) {
        EXPECT_TRUE(meets(Subject(), format)) << format;
    }
    for (const char* format : {"'Oslo' MATCHES 'O'", "'Oslo' MATCHES 'slo'", "'ba' MATCHES 'a|b'",
                               "'Straße' MATCHES[c] 'strasse'", "'a\\n' MATCHES 'a'"}) {
        EXPECT_FALSE(meets(Subject(), format)) << format;
    }
}

TEST(PredicateValues, MatchInTimeWhateverThePattern) {
    const Subject subject({{"text", std::string(50000, 'a')}});
    for (const char* pattern : {"(a+)+b", "(a*)*b", "(a|a)*b", "(a|aa)+b", "(.*)(.*)(.*)(.*)b"}) {
        EXPECT_FALSE(meets(subject, std::string("text MATCHES '") + pattern + "'")) << pattern;
    }
}

TEST(PredicateValues, AreAskedOfMembers) {
    const Subject subject({{"a", std::int64_t{1}}, {"b", std::int64_t{5}}});
    for (const char* format :
         {"ANY {a, b} > 4", "SOME table == 5", "ALL {a, b} > 0", "ALL table < 6", "NONE {a, b} > 5",
          "NONE table == 2", "ANY b == 5", "NONE a == 5", "ALL a == 1", "ALL {} == 1",
          "NONE {} == 1", "ALL nothing == 1", "NONE nothing == NULL", "ANY {{1}, {2}} == {2}",
          "ANY {'x', 'oslo'} LIKE 'o*'", "ANY {3, 7} BETWEEN {6, 8}", "NOT ANY {a} == 2"}) {
        EXPECT_TRUE(meets(subject, format)) << format;
    }
    for (const char* format : {"ANY {a, b} > 5", "ALL {a, b} > 1", "NONE {a, b} > 4", "ANY {} == 1",
                               "ANY nothing == NULL", "ALL {a, NULL} > 0"}) {
        EXPECT_FALSE(meets(subject, format)) << format;
    }
}

TEST(PredicateValues, CompareListsMemberByMember) {
    for (const char* format :
         {"{1, 2} == {1.0, 2}", "{1, 2} != {2, 1}", "{1} != {1, 1}", "{} == {}", "{} != {NULL}",
          "{{1}, 2} == {{1}, 2}", "{1} != 1", "1 IN {3, 2, 1}", "NULL IN {1, NULL}", "{1} IN {{1}}",
          "{1} CONTAINS 1"}) {
        EXPECT_TRUE(meets(Subject(), format)) << format;
    }
    EXPECT_FALSE(meets(Subject(), "2 IN {1, 3} OR {1} IN {1} OR 1 IN 1 OR 1 IN NULL"));
}

TEST(PredicateValues, CompareTablesByTheirEntries) {
    Subject subject({{"a", std::int64_t{1}}});
    subject.owner = std::make_shared<Subject>(Dictionary{{"a", std::int64_t{1}}});
    EXPECT_TRUE(meets(subject, "table == owner.table"));
    subject.values["b"] = true;
    EXPECT_FALSE(meets(subject, "table == owner.table"));
}

}  // namespace
}  // namespace mezalith::platform
