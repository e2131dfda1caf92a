// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/format_predicate.hpp>
#include <mezalith/platform/predicates/predicate_subject.hpp>

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using testing::canonical;

struct Wrong {
    std::string format;
    const char* message;
};

void expectAll(const std::vector<Wrong>& cases) {
    for (const Wrong& wrong : cases)
        EXPECT_EQ(canonical(wrong.format), wrong.message) << wrong.format;
}

TEST(PredicateErrors, NameWhatIsMissing) {
    constexpr char kComparison[] = "expected a comparison such as == or IN";
    expectAll({
        {"", R"t(line 1, column 1: found the end, expected a condition)t"},
        {"  ", R"t(line 1, column 3: found the end, expected a condition)t"},
        {"AND a = 1", R"t(line 1, column 1: found "AND", expected a condition)t"},
        {"a = 1 AND", R"t(line 1, column 10: found the end, expected a condition)t"},
        {"a = 1 || || b = 1", R"t(line 1, column 10: found "||", expected a condition)t"},
        {"NOT", R"t(line 1, column 4: found the end, expected a condition)t"},
        {"!)", R"t(line 1, column 2: found ")", expected a condition)t"},
        {"a =", R"t(line 1, column 4: found the end, expected a value)t"},
        {"a = OR", R"t(line 1, column 5: found "OR", expected a value)t"},
        {"a + = 1", R"t(line 1, column 5: found "=", expected a value)t"},
        {"a * ) = 1", R"t(line 1, column 5: found ")", expected a value)t"},
        {"a ** = 1", R"t(line 1, column 6: found "=", expected a value)t"},
        {"a / = 1", R"t(line 1, column 5: found "=", expected a value)t"},
        {"a - = 1", R"t(line 1, column 5: found "=", expected a value)t"},
        {"a = -", R"t(line 1, column 6: found the end, expected a value)t"},
        {"ANY = 1", R"t(line 1, column 5: found "=", expected a value)t"},
        {"()", R"t(line 1, column 2: found ")", expected a condition or a value)t"},
        {"a = {1,}", R"t(line 1, column 8: found "}", expected a value)t"},
        {"a. = 1", R"t(line 1, column 4: found "=", expected a key)t"},
    });
    for (const char* format : {"a", "a.b ", "a AND b = 1", "NOT a", "a = 1 OR b", "ANY {1}"}) {
        EXPECT_NE(canonical(format).find(kComparison), std::string::npos) << format;
    }
}

TEST(PredicateErrors, SayWhereAComparisonIsMissing) {
    expectAll({
        {"a", R"t(line 1, column 2: found the end, expected a comparison such as == or IN)t"},
        {"a b", R"t(line 1, column 3: found "b", expected a comparison such as == or IN)t"},
        {"a AND b = 1",
         R"t(line 1, column 3: found "AND", expected a comparison such as == or IN)t"},
        {"b = 1 AND a OR c = 1",
         R"t(line 1, column 13: found "OR", expected a comparison such as == or IN)t"},
        {"NOT (a) AND b = 1",
         R"t(line 1, column 9: found "AND", expected a comparison such as == or IN)t"},
        {"a NOT IN {1}",
         R"t(line 1, column 3: found "NOT", expected a comparison such as == or IN)t"},
        {"ALL {1} AND",
         R"t(line 1, column 9: found "AND", expected a comparison such as == or IN)t"},
        {"a + 1", R"t(line 1, column 6: found the end, expected a comparison such as == or IN)t"},
        {"(a)", R"t(line 1, column 4: found the end, expected a comparison such as == or IN)t"},
    });
}

TEST(PredicateErrors, NameWhatIsTooMuch) {
    expectAll({
        {"a = 1 b", R"t(line 1, column 7: found "b", expected AND, OR or the end)t"},
        {"a = 1)", R"t(line 1, column 6: found ")", expected AND, OR or the end)t"},
        {"a = 1 = 2", R"t(line 1, column 7: found "=", expected AND, OR or the end)t"},
        {"a = 1 & b = 1", R"t(line 1, column 7: found "&", expected AND, OR or the end)t"},
        {"a = 1;", R"t(line 1, column 6: found ";", expected AND, OR or the end)t"},
        {"(a = 1", R"t(line 1, column 7: found the end, expected AND, OR or ")")t"},
        {"(a = 1}", R"t(line 1, column 7: found "}", expected AND, OR or ")")t"},
        {"(a", R"t(line 1, column 3: found the end, expected an operator or ")")t"},
        {"a = {1 2}", R"t(line 1, column 8: found "2", expected "," or "}")t"},
        {"a = {", R"t(line 1, column 6: found the end, expected a value or "}")t"},
        {"a = {=}", R"t(line 1, column 6: found "=", expected a value or "}")t"},
    });
}

TEST(PredicateErrors, TellConditionsFromValues) {
    expectAll({
        {"(a = 1) = 2", R"t(line 1, column 1: found a condition, expected a value)t"},
        {"2 = (a = 1)", R"t(line 1, column 5: found a condition, expected a value)t"},
        {"(a = 1) + 2 = 3", R"t(line 1, column 1: found a condition, expected a value)t"},
        {"2 ** TRUEPREDICATE = 3", R"t(line 1, column 6: found a condition, expected a value)t"},
        {"-(a = 1) = 2", R"t(line 1, column 2: found a condition, expected a value)t"},
        {"{(a = 1)} = 2", R"t(line 1, column 2: found a condition, expected a value)t"},
    });
}

TEST(PredicateErrors, ReadTextToItsEnd) {
    expectAll({
        {"a = 'x", R"t(line 1, column 7: found the end, expected a closing ')t"},
        {"a = \"x'", "line 1, column 8: found the end, expected a closing \""},
        {R"t(a = '\q')t",
         R"t(line 1, column 7: found "q", expected what a backslash may escape: \ " ' / n r t b f u U)t"},
        {R"t(a = '\u12G4')t",
         R"t(line 1, column 10: found "G4", expected four hexadecimal digits)t"},
        {R"t(a = '\U0001F60')t",
         R"t(line 1, column 15: found "'", expected eight hexadecimal digits)t"},
        {R"(a = 'é\uD83D')",
         R"t(line 1, column 7: found "\", expected the escape of a character)t"},
        {R"(a = '\uDE00')", R"t(line 1, column 6: found "\", expected the escape of a character)t"},
        {R"t(a = '\uD83D\u0041')t",
         R"t(line 1, column 6: found "\", expected the escape of a character)t"},
        {R"t(a = '\U00110000')t",
         R"t(line 1, column 6: found "\", expected the escape of a character)t"},
        {R"(#'\uD800' = 1)",
         R"t(line 1, column 3: found "\", expected the escape of a character)t"},
    });
}

TEST(PredicateErrors, ReadNumbersToTheirEnd) {
    expectAll({
        {"a = 12km", R"t(line 1, column 7: found "km", expected a blank or an operator)t"},
        {"a = 1e", R"t(line 1, column 7: found the end, expected the digits of an exponent)t"},
        {"a = 1e+x", R"t(line 1, column 8: found "x", expected the digits of an exponent)t"},
        {"a = 1e999",
         R"t(line 1, column 5: found "1e999", expected a number that a double can hold)t"},
        {"a = 1.", R"t(line 1, column 6: found ".", expected AND, OR or the end)t"},
        {"a = 0x10", R"t(line 1, column 6: found "x10", expected a blank or an operator)t"},
    });
}

TEST(PredicateErrors, KnowTheOptions) {
    expectAll({
        {"a ==[x] 1", R"t(line 1, column 6: found "x", expected c, d or cd)t"},
        {"a ==[] 1", R"t(line 1, column 6: found "]", expected c, d or cd)t"},
        {"a ==[cc] 1", R"t(line 1, column 7: found "c", expected "]")t"},
        {"a ==[cd 1", R"t(line 1, column 9: found "1", expected "]")t"},
    });
}

TEST(PredicateErrors, KnowWhatComparisonsNeed) {
    expectAll({
        {"a BETWEEN 3", R"t(line 1, column 11: found "3", expected two values in braces)t"},
        {"a BETWEEN {}", R"t(line 1, column 11: found "{", expected two values in braces)t"},
        {"a BETWEEN {1}", R"t(line 1, column 11: found "{", expected two values in braces)t"},
        {"a BETWEEN {1, 2, 3}", R"t(line 1, column 11: found "{", expected two values in braces)t"},
        {"a MATCHES b",
         R"t(line 1, column 11: found "b", expected a regular expression as text in quotes)t"},
        {"a MATCHES 5",
         R"t(line 1, column 11: found "5", expected a regular expression as text in quotes)t"},
    });
}

TEST(PredicateErrors, SayWhatARegularExpressionCannotDo) {
    expectAll({
        {"a MATCHES '(b'",
         R"t(line 1, column 11: found "'(b'", expected a regular expression (missing ): (b))t"},
        {"a MATCHES '(?=b)'",
         R"t(line 1, column 11: found "'(?=b)'", expected a regular expression )t"
         R"t((invalid perl operator: (?=; there are no back references and no look-around))t"},
        {R"t(a MATCHES '(b)\\1')t",
         R"t(line 1, column 11: found "'(b)\\1'", expected a regular expression )t"
         R"t((invalid escape sequence: \1; there are no back references and no look-around))t"},
    });
    EXPECT_NE(canonical("a MATCHES '((x{1000}){1000}){1000}'").find("expected a regular"),
              std::string::npos);
}

TEST(PredicateErrors, CountLinesAndCharacters) {
    expectAll({
        {"a = 1 AND\n  b ?",
         R"t(line 2, column 5: found "?", expected a comparison such as == or IN)t"},
        {"größe = 'ØØ' x", R"t(line 1, column 14: found "x", expected AND, OR or the end)t"},
        {"a\r\n=\r\n\r\n", R"t(line 4, column 1: found the end, expected a value)t"},
    });
}

TEST(PredicateErrors, ShowWhatStandsThere) {
    expectAll({
        {"a = 1 'x y' z", R"t(line 1, column 7: found "'x y'", expected AND, OR or the end)t"},
        {"a = 1 12.5", R"t(line 1, column 7: found "12", expected AND, OR or the end)t"},
        {"a = 1 日本", R"t(line 1, column 7: found "日本", expected AND, OR or the end)t"},
        {"a = 1 #key", R"t(line 1, column 7: found "#key", expected AND, OR or the end)t"},
        {"a = 1 %d", R"t(line 1, column 7: found "%d", expected AND, OR or the end)t"},
        {std::string("a = 1 ") + '\x01',
         R"t(line 1, column 7: found the control character U+0001, expected AND, OR or the end)t"},
        {"a = 1 " + std::string(50, 'x'),
         R"t(line 1, column 7: found "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx...", )t"
         R"t(expected AND, OR or the end)t"},
        {"a = '\xFF'",
         R"t(line 1, column 6: found a byte that is not UTF-8, expected a character)t"},
        {"a = \xC0\x80",
         R"t(line 1, column 5: found a byte that is not UTF-8, expected a character)t"},
    });
}

TEST(PredicateErrors, CheckArguments) {
    const Value whole(std::int64_t{3}), real(0.5), text("x"), wrongText("\xFF");
    const PredicateArgument list = std::vector<Value>{text};
    EXPECT_EQ(canonical("a = %@"),
              R"t(line 1, column 5: found "%@", expected an argument for it)t");
    EXPECT_EQ(canonical("%K = %d", {text}),
              R"t(line 1, column 6: found "%d", expected an argument for it)t");
    EXPECT_EQ(canonical("a = 1 ", {text}),
              R"t(line 1, column 7: found the end, expected a % mark for each argument)t");
    EXPECT_EQ(canonical("a = %d", {real}),
              R"t(line 1, column 5: found "%d", expected an integer as its argument)t");
    EXPECT_EQ(canonical("a = %f", {text}),
              R"t(line 1, column 5: found "%f", expected a number as its argument)t");
    EXPECT_EQ(canonical("a = %d", {list}),
              R"t(line 1, column 5: found a list, expected an integer as its argument)t");
    EXPECT_EQ(
        canonical("%K = 1", {whole}),
        R"t(line 1, column 1: found "%K", expected a key or a path of keys as its argument)t");
    for (const char* path : {"", ".", "a.", ".a", "a..b"}) {
        EXPECT_EQ(
            canonical("%K = 1", {Value(path)}),
            R"t(line 1, column 1: found "%K", expected a key or a path of keys as its argument)t");
    }
    EXPECT_EQ(canonical("a = %@", {wrongText}),
              R"t(line 1, column 5: found "%@", expected an argument that is UTF-8 text)t");
    EXPECT_EQ(canonical("%K = 1", {wrongText}),
              R"t(line 1, column 1: found "%K", expected an argument that is UTF-8 text)t");
    for (const double wrong : {std::nan(""), HUGE_VAL}) {
        EXPECT_EQ(canonical("a = %f", {Value(wrong)}),
                  R"t(line 1, column 5: found "%f", expected an argument that is finite)t");
        EXPECT_EQ(canonical("a IN %@", {std::vector<Value>{wrong}}),
                  R"t(line 1, column 6: found "%@", expected an argument that is finite)t");
    }
}

TEST(PredicateErrors, KnowTheMarks) {
    constexpr char kMessage[] = "expected @, K, or a number's letter such as d or f";
    for (const char* format : {"a = %s", "a = %", "a = %k", "a = %dx", "a = %l", "a = %K2"}) {
        EXPECT_NE(canonical(format, {Value(std::int64_t{1})}).find(kMessage), std::string::npos)
            << canonical(format, {Value(std::int64_t{1})});
    }
    expectAll(
        {{"a = %z", std::string("line 1, column 6: found \"z\", ").append(kMessage).c_str()}});
}

std::string repeated(const char* text, int times) {
    std::string result;
    for (int i = 0; i < times; ++i) result += text;
    return result;
}

TEST(PredicateErrors, EndNestingAtSixtyFourLevels) {
    constexpr char kMessage[] = "expected no more than 64 levels of nesting";
    const auto nested = [](const char* open, const char* inner, const char* close, int times) {
        return canonical(repeated(open, times) + inner + repeated(close, times));
    };
    EXPECT_EQ(nested("(", "a = 1", ")", 64), "a == 1");
    EXPECT_EQ(nested("(", "a = 1", ")", 65),
              std::string("line 1, column 65: found \"(\", ") + kMessage);
    EXPECT_EQ(nested("NOT ", "a = 1", "", 64), repeated("NOT ", 64) + "a == 1");
    EXPECT_EQ(nested("!", "a = 1", "", 65),
              std::string("line 1, column 65: found \"!\", ") + kMessage);
    EXPECT_EQ(nested("-", "a = 1", "", 64), repeated("-", 64) + "a == 1");
    for (const char* open : {"-", "a ** ", "{"}) {
        const std::string close = open[0] == '{' ? repeated("}", 65) : "";
        EXPECT_NE(canonical(repeated(open, 65) + "a" + close + " = 1").find(kMessage),
                  std::string::npos);
    }
    EXPECT_NE(canonical(repeated("(", 5000)).find(kMessage), std::string::npos);
}

TEST(PredicateErrors, CountWhatArgumentsAddToTheNesting) {
    constexpr char kMessage[] = "expected no more than 64 levels of nesting";
    const std::string open = repeated("(", 64), close = repeated(")", 64);
    EXPECT_NE(canonical(open + "a IN %@" + close, {std::vector<Value>{}}).find(kMessage),
              std::string::npos);
    const std::string open63 = open.substr(1), close63 = close.substr(1);
    EXPECT_EQ(canonical(open63 + "a IN %@" + close63, {std::vector<Value>{}}), "a IN {}");
    EXPECT_EQ(canonical(open63 + "%d ** 2 = 1" + close63, {Value(std::int64_t{-5})}),
              "(-5) ** 2 == 1");
}

TEST(PredicateErrors, LetChainsBeAsLongAsTheText) {
    const std::string chain = "a == 1" + repeated(" AND a == 1", 5000);
    EXPECT_EQ(canonical(chain), chain);
    EXPECT_TRUE(testing::meets(testing::Subject(), "0" + repeated(" + 1", 10000) + " = 10000"));
}

TEST(PredicateErrors, EndTextsAt64Kibibytes) {
    const auto ofSize = [](std::size_t size) {
        return "a == \"" + std::string(size - 7, 'x') + "\"";
    };
    EXPECT_EQ(canonical(ofSize(65536)), ofSize(65536));
    EXPECT_EQ(canonical(ofSize(65537)),
              "line 1, column 1: found 65537 bytes, expected no more than 65536");
    EXPECT_EQ(canonical("a = %@", {Value(std::string(65530, 'x'))}),
              "line 1, column 1: found 65537 bytes, expected no more than 65536");
}

TEST(PredicateErrors, EndRegularExpressionsAtSixtyFour) {
    EXPECT_EQ(canonical("a MATCHES 'x'" + repeated(" OR a MATCHES 'x'", 63)).substr(0, 2), "a ");
    EXPECT_NE(canonical("a MATCHES 'x'" + repeated(" OR a MATCHES 'x'", 64))
                  .find("expected no more than 64 regular expressions"),
              std::string::npos);
}

}  // namespace
}  // namespace mezalith::platform
