// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/format_predicate.hpp>
#include <mezalith/platform/predicates/predicate_subject.hpp>

#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using testing::canonical;
using testing::meets;
using testing::Subject;

struct Spelling {
    const char* format;
    const char* canonical;
};

void expectAll(const std::vector<Spelling>& spellings) {
    for (const Spelling& spelling : spellings) {
        EXPECT_EQ(canonical(spelling.format), spelling.canonical) << spelling.format;
        EXPECT_EQ(canonical(spelling.canonical), spelling.canonical);
    }
}

TEST(PredicateGrammar, KnowsEverySpellingOfEveryComparison) {
    expectAll({{"a = 1", "a == 1"},
               {"a == 1", "a == 1"},
               {"a != 1", "a != 1"},
               {"a <> 1", "a != 1"},
               {"a < 1", "a < 1"},
               {"a <= 1", "a <= 1"},
               {"a =< 1", "a <= 1"},
               {"a > 1", "a > 1"},
               {"a >= 1", "a >= 1"},
               {"a => 1", "a >= 1"},
               {"a between {1,2}", "a BETWEEN {1, 2}"},
               {"a in {1,2}", "a IN {1, 2}"},
               {"a contains 'x'", "a CONTAINS \"x\""},
               {"a beginsWith 'x'", "a BEGINSWITH \"x\""},
               {"a endsWith 'x'", "a ENDSWITH \"x\""},
               {"a like 'x'", "a LIKE \"x\""},
               {"a matches 'x'", "a MATCHES \"x\""}});
}

TEST(PredicateGrammar, KnowsTheOptionsOfEveryComparison) {
    for (const std::string sign : {"==", "!=", "<", "<=", ">", ">=", "BETWEEN", "IN", "CONTAINS",
                                   "BEGINSWITH", "ENDSWITH", "LIKE", "MATCHES"}) {
        const std::string operand = sign == "BETWEEN" ? " {1, 2}" : " \"x\"";
        for (const std::string options : {"[c]", "[d]", "[cd]"}) {
            EXPECT_EQ(canonical("a " + sign + options + operand), "a " + sign + options + operand);
        }
    }
    expectAll({{"a ==[DC]'x'", "a ==[cd] \"x\""}, {"a == [C] 'x'", "a ==[c] \"x\""}});
}

TEST(PredicateGrammar, JoinsConditions) {
    expectAll({{"a=1 && b=1 || c=1", "a == 1 AND b == 1 OR c == 1"},
               {"a=1 and (b=1 or c=1)", "a == 1 AND (b == 1 OR c == 1)"},
               {"(a=1 and b=1) and c=1", "a == 1 AND b == 1 AND c == 1"},
               {"a=1 and (b=1 and c=1)", "a == 1 AND (b == 1 AND c == 1)"},
               {"not a=1 and b=1", "NOT a == 1 AND b == 1"},
               {"!(a=1 and b=1)", "NOT (a == 1 AND b == 1)"},
               {"!!a=1", "NOT NOT a == 1"},
               {"! a != 1", "NOT a != 1"},
               {"(TRUEPREDICATE) or falsePredicate", "TRUEPREDICATE OR FALSEPREDICATE"}});
}

TEST(PredicateGrammar, BindsAndTighterThanOr) {
    const Subject nothing;
    EXPECT_TRUE(meets(nothing, "1=1 OR 1=1 AND 1=2"));
    EXPECT_TRUE(meets(nothing, "1=2 AND 1=2 OR 1=1"));
    EXPECT_FALSE(meets(nothing, "(1=1 OR 1=1) AND 1=2"));
    EXPECT_FALSE(meets(nothing, "NOT 1=2 AND 1=2"));
    EXPECT_TRUE(meets(nothing, "NOT (1=2 AND 1=2)"));
}

TEST(PredicateGrammar, KnowsTheQuantifiers) {
    expectAll({{"any {a,b} > 1", "ANY {a, b} > 1"},
               {"SOME {a} > 1", "ANY {a} > 1"},
               {"All {a} > 1", "ALL {a} > 1"},
               {"none propertiesByName like 'x'", "NONE propertiesByName LIKE \"x\""},
               {"NOT ANY{1}=1", "NOT ANY {1} == 1"}});
}

TEST(PredicateGrammar, CalculatesAsIsCustomary) {
    expectAll({{"a+b*c=1", "a + b * c == 1"},
               {"(a+b)*c=1", "(a + b) * c == 1"},
               {"(a-b)-c=1", "a - b - c == 1"},
               {"a-(b-c)=1", "a - (b - c) == 1"},
               {"a/(b*c)=1", "a / (b * c) == 1"},
               {"(a/b)*c=1", "a / b * c == 1"},
               {"a**b**c=1", "a ** b ** c == 1"},
               {"(a**b)**c=1", "(a ** b) ** c == 1"},
               {"-a**2=1", "-a ** 2 == 1"},
               {"(-a)**2=1", "(-a) ** 2 == 1"},
               {"-2**2=1", "-2 ** 2 == 1"},
               {"(-2)**2=1", "(-2) ** 2 == 1"},
               {"2** -1=1", "2 ** -1 == 1"},
               {"--a=1", "--a == 1"},
               {"a--1=1", "a - -1 == 1"},
               {"- 5=a", "-5 == a"},
               {"-(5)=a", "-5 == a"},
               {"a*-b=1", "a * -b == 1"}});
    for (const char* format :
         {"1 + 2 * 3 = 7", "(1 + 2) * 3 = 9", "8 - 4 - 2 = 2", "8 / 4 / 2 = 1", "2 ** 3 ** 2 = 512",
          "(2 ** 3) ** 2 = 64", "-2 ** 2 = -4", "(-2) ** 2 = 4", "2 ** -1 = 0.5", "7 / 2 = 3.5",
          "6 * 7 / 2 - 1 = 20", "-(3 - 5) = 2", "1 - -1 = 2"}) {
        EXPECT_TRUE(meets(Subject(), format)) << format;
    }
}

TEST(PredicateGrammar, ReadsNumbers) {
    expectAll({{"a = 0", "a == 0"},
               {"a = 007", "a == 7"},
               {"a = 1.50", "a == 1.5"},
               {"a = 2.0", "a == 2.0"},
               {"a = .5", "a == 0.5"},
               {"a = 1e3", "a == 1000.0"},
               {"a = 1E+22", "a == 1e+22"},
               {"a = 25e-1", "a == 2.5"},
               {"a = -0.0", "a == -0.0"},
               {"a = 9223372036854775807", "a == 9223372036854775807"},
               {"a = -9223372036854775808", "a == -9223372036854775808"},
               {"a = 9223372036854775808", "a == 9223372036854775808.0"},
               {"a = -(-9223372036854775808)", "a == 9223372036854775808.0"}});
}

TEST(PredicateGrammar, ReadsConstants) {
    expectAll(
        {{"a IN {true, Yes, FALSE, no, null, Nil}", "a IN {TRUE, TRUE, FALSE, FALSE, NULL, NULL}"},
         {"self = NULL", "SELF == NULL"},
         {"{} = { }", "{} == {}"},
         {"a = {{1},{}}", "a == {{1}, {}}"}});
}

TEST(PredicateGrammar, ReadsTextInEitherQuotes) {
    expectAll({{"a = \"it's\"", "a == \"it's\""},
               {"a = 'say \"x\"'", R"(a == "say \"x\"")"},
               {R"(a = '\\\"\'\/')", R"(a == "\\\"'/")"},
               {R"(a = "\n\r\t\b\f")", R"(a == "\n\r\t\b\f")"},
               {R"(a = '\u00e5\U0001F600')", "a == \"å😀\""},
               {R"(a = '\uD83D\uDE00')", "a == \"😀\""},
               {R"(a = '\u0000\u007F')", R"(a == "\u0000\u007F")"},
               {"a = 'line\nbreak'", R"(a == "line\nbreak")"},
               {"a = ''", "a == \"\""}});
}

TEST(PredicateGrammar, ReadsPaths) {
    expectAll({{"propertiesByName.population > 1", "propertiesByName.population > 1"},
               {"SELF.kind = 1", "kind == 1"},
               {"#and = #or.not.#self", "#and == #or.#not.#self"},
               {"#kind.#name = 1", "kind.name == 1"},
               {"a.#'x y'.#\"1\" = 1", "a.#\"x y\".#\"1\" == 1"},
               {"größe.日本_1 = 1", "größe.日本_1 == 1"},
               {"_ = 1", "_ == 1"},
               {"android = 1 AND inside = 1 AND nothing = nullable",
                "android == 1 AND inside == 1 AND nothing == nullable"}});
    const Subject subject({{"and", std::int64_t{1}}, {"pop max", std::int64_t{2}}});
    EXPECT_TRUE(meets(subject, "#and = 1 AND #'pop max' = 2 AND table.and = 1"));
}

TEST(PredicateGrammar, LetsBlanksStandAnywhere) {
    expectAll({{" \t\r\n a\n=\n1\n", "a == 1"},
               {"a=1&&b=2||!c=3", "a == 1 AND b == 2 OR NOT c == 3"},
               {"a==[c]'x'and b=1", "a ==[c] \"x\" AND b == 1"},
               {"( ( a ) = ( 1 ) )", "a == 1"},
               {"ANY{1,2}=- 1", "ANY {1, 2} == -1"}});
}

TEST(PredicateGrammar, WritesArgumentsOut) {
    using List = std::vector<Value>;
    EXPECT_EQ(canonical("a = %@", {Value("it's \"x\"\x01")}), R"(a == "it's \"x\"\u0001")");
    EXPECT_EQ(canonical("a = %@", {Value()}), "a == NULL");
    EXPECT_EQ(canonical("a = %@", {Value(false)}), "a == FALSE");
    EXPECT_EQ(canonical("a = %@", {Value(2.0)}), "a == 2.0");
    EXPECT_EQ(canonical("a IN %@", {List{"x", std::int64_t{-1}, 0.5}}), R"(a IN {"x", -1, 0.5})");
    EXPECT_EQ(canonical("a IN %@", {List{}}), "a IN {}");
    EXPECT_EQ(canonical("%d ** 2 = %d - %d", {Value(std::int64_t{-5}), Value(std::int64_t{-1}),
                                              Value(std::numeric_limits<std::int64_t>::min())}),
              "(-5) ** 2 == -1 - -9223372036854775808");
    EXPECT_EQ(canonical("%K = %K.%K.b", {Value("a.and"), Value("pop max"), Value("in")}),
              "a.#and == #\"pop max\".#in.b");
}

TEST(PredicateGrammar, KnowsTheNumbersMarks) {
    const Value whole(std::int64_t{3});
    for (const char* mark : {"%d", "%i", "%u", "%ld", "%lld", "%lu", "%qd", "%zd", "%hd", "%f",
                             "%F", "%e", "%E", "%g", "%G", "%lf", "%Lf"}) {
        EXPECT_EQ(canonical(std::string("a = ") + mark, {whole}), "a == 3") << mark;
    }
    EXPECT_EQ(canonical("a = %g", {Value(0.5)}), "a == 0.5");
}

}  // namespace
}  // namespace mezalith::platform
