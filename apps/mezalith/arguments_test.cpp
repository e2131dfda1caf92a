// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"

#include <array>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

std::string usageErrorOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const UsageError& error) {
        return error.what();
    }
    return "no error";
}

TEST(ArgumentsForParser, PutsAZeroBeforeABarePoint) {
    const std::array<const char*, 7> arguments{"mezalith", "-.5,2", "-.x", "-o", "-", "-.", "-1.5"};
    EXPECT_EQ(argumentsForParser(7, arguments.data()),
              (std::vector<std::string>{"-0.5,2", "-.x", "-o", "-", "-.", "-1.5"}));
}

TEST(NumberArgument, ReadsFiniteNumbersOnly) {
    EXPECT_EQ(numberArgument("LON", "-122.4"), -122.4);
    EXPECT_EQ(numberArgument("LON", "1e3"), 1000);
    for (const char* text : {"", "x", "1 ", "nan", "inf", "-inf", "1e999", "1,5", "0x10"}) {
        EXPECT_EQ(usageErrorOf([&] { numberArgument("LON", text); }),
                  "LON: \"" + std::string(text) + "\" is not a number");
    }
}

TEST(DateArgument, ReadsDaysAndInstants) {
    using std::chrono::hours, std::chrono::minutes, std::chrono::seconds, std::chrono::days;
    const auto start = platform::startOfYear(2024);
    EXPECT_EQ(dateArgument("--date", "2024-01-01"), start);
    EXPECT_EQ(dateArgument("--date", "2024-02-29"), start + days(59));
    EXPECT_EQ(dateArgument("--date", "2024-02-29T23:01:59Z"),
              start + days(59) + hours(23) + minutes(1) + seconds(59));
}

TEST(DateArgument, TakesNoOtherFormAndNoDayThatThereIsNot) {
    for (const char* text : {"", "2024", "2024-1-1", "24-01-01", "2024/01/01", "2024-01-01T00:00Z",
                             "2024-01-01T00:00:00", "2024-01-01 00:00:00Z", "2024-01-01x",
                             "-024-01-01", "2O24-01-01", "2024-01-01T00:00:0 Z"}) {
        EXPECT_EQ(
            usageErrorOf([&] { dateArgument("--date", text); }),
            "--date: \"" + std::string(text) + "\" is not of the form YYYY-MM-DD[THH:MM:SSZ]");
    }
    for (const char* text :
         {"2023-02-29", "2024-13-01", "2024-00-01", "2024-01-00", "2024-04-31",
          "2024-01-01T24:00:00Z", "2024-01-01T00:60:00Z", "2024-01-01T00:00:60Z"}) {
        EXPECT_EQ(usageErrorOf([&] { dateArgument("--date", text); }),
                  "--date: there is no " + std::string(text));
    }
}

TEST(PositiveArgument, IsGreaterThanZero) {
    EXPECT_EQ(positiveArgument("--size", "1e-300"), 1e-300);
    EXPECT_EQ(usageErrorOf([] { positiveArgument("N", "0"); }), "N: 0 is not greater than 0");
    EXPECT_EQ(usageErrorOf([] { positiveArgument("N", "-1"); }), "N: -1 is not greater than 0");
    EXPECT_EQ(usageErrorOf([] { positiveArgument("N", "x"); }), "N: \"x\" is not a number");
}

TEST(Split, KeepsEmptyParts) {
    EXPECT_EQ(split("a,b", ','), (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(split(",", ','), (std::vector<std::string>{"", ""}));
    EXPECT_EQ(split("", ','), (std::vector<std::string>{""}));
}

TEST(NumbersArgument, WantsTheRightCount) {
    EXPECT_EQ(numbersArgument("--bbox", "-10,57,33,81.5", ',', 4, "W,S,E,N"),
              (std::vector<double>{-10, 57, 33, 81.5}));
    EXPECT_EQ(usageErrorOf([] { numbersArgument("--size", "12", 'x', 2, "WxH"); }),
              "--size: \"12\" is not of the form WxH");
    EXPECT_EQ(usageErrorOf([] { numbersArgument("--size", "12x", 'x', 2, "WxH"); }),
              "--size: \"\" is not a number");
}

TEST(PredicateArgument, SaysWhereATextIsNone) {
    EXPECT_EQ(predicateArgument("--where", "a=1")->predicateFormat(), "a == 1");
    EXPECT_EQ(usageErrorOf([] { predicateArgument("--where", "a is 1"); }),
              "--where: line 1, column 3: found \"is\", expected a comparison such as == or IN");
}

TEST(LayerValue, TakesThePrefixOffAtTheLastColon) {
    EXPECT_EQ(layerValue("#fff").layer, std::nullopt);
    EXPECT_EQ(layerValue("#fff").value, "#fff");
    EXPECT_EQ(layerValue("land:#fff").layer, "land");
    EXPECT_EQ(layerValue("land:#fff").value, "#fff");
    EXPECT_EQ(layerValue("a:b:2").layer, "a:b");
    EXPECT_EQ(layerValue(":2").layer, "");
}

}  // namespace
}  // namespace mezalith::app
