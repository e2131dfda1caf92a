// SPDX-License-Identifier: MIT
#include <mezalith/platform/number_text.hpp>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <locale>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith::platform {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Every double is as likely as any other.
rc::Gen<double> anyDouble() {
    return rc::gen::map(
        rc::gen::noShrink(rc::gen::resize(rc::kNominalSize, rc::gen::arbitrary<std::uint64_t>())),
        [](std::uint64_t bits) { return std::bit_cast<double>(bits); });
}

std::string printed(double value) {
    char text[64];
    std::snprintf(text, sizeof text, "%g", value);
    return text;
}

TEST(ShortestText, IsTheShortestThatReadsBack) {
    EXPECT_EQ(shortestText(0.1), "0.1");
    EXPECT_EQ(shortestText(-0.0), "-0");
    EXPECT_EQ(shortestText(10.75), "10.75");
    EXPECT_EQ(shortestText(1e300), "1e+300");
    EXPECT_EQ(shortestText(1.0 / 3), "0.3333333333333333");
    EXPECT_EQ(shortestText(-std::numeric_limits<double>::denorm_min()), "-5e-324");
}

TEST(ShortestText, NamesWhatIsNoNumber) {
    EXPECT_EQ(shortestText(kInfinity), "inf");
    EXPECT_EQ(shortestText(-kInfinity), "-inf");
    EXPECT_EQ(shortestText(kNaN), "nan");
    EXPECT_EQ(shortestText(std::copysign(kNaN, -1.0)), "nan");
}

TEST(ShortestText, ReadsBackToTheSameDouble) {
    EXPECT_TRUE(rc::check([] {
        const double value = *anyDouble();
        RC_PRE(!std::isnan(value));
        const auto back = numberFromText(shortestText(value));
        RC_ASSERT(back.has_value());
        RC_ASSERT(std::bit_cast<std::uint64_t>(*back) == std::bit_cast<std::uint64_t>(value));
    }));
}

TEST(GeneralText, HasSixSignificantDigits) {
    EXPECT_EQ(generalText(2.5), "2.5");
    EXPECT_EQ(generalText(1), "1");
    EXPECT_EQ(generalText(1234567), "1.23457e+06");
    EXPECT_EQ(generalText(100000), "100000");
    EXPECT_EQ(generalText(0.0001), "0.0001");
    EXPECT_EQ(generalText(0.00001), "1e-05");
    EXPECT_EQ(generalText(-0.0), "-0");
    EXPECT_EQ(generalText(-kInfinity), "-inf");
    EXPECT_EQ(generalText(kNaN), "nan");
}

TEST(GeneralText, EqualsPrintfInTheCLocale) {
    EXPECT_TRUE(rc::check("every magnitude", [] {
        const double value = *anyDouble();
        RC_ASSERT(generalText(value) == printed(value));
    }));
    EXPECT_TRUE(rc::check("where the two forms meet", [] {
        const double digits = *rc::gen::inRange(-2000000, 2000000);
        const double value = digits * std::pow(10, *rc::gen::inRange(-12, 8));
        RC_ASSERT(generalText(value) == printed(value));
    }));
}

// A locale of its own, so that the test needs none installed.
struct CommaForPoint : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
};

TEST(NumberText, IgnoresTheLocale) {
    const std::locale before = std::locale::global(std::locale(std::locale(), new CommaForPoint));
    EXPECT_EQ(generalText(2.5), "2.5");
    EXPECT_EQ(shortestText(2.5), "2.5");
    EXPECT_EQ(numberFromText("2.5"), 2.5);
    EXPECT_EQ(numberFromText("2,5"), std::nullopt);
    std::locale::global(before);
}

TEST(NumberFromText, ReadsDecimalNumbersWithEitherSign) {
    EXPECT_EQ(numberFromText("59.91"), 59.91);
    EXPECT_EQ(numberFromText("+7"), 7);
    EXPECT_EQ(numberFromText("-.5"), -.5);
    EXPECT_EQ(numberFromText("5."), 5);
    EXPECT_EQ(numberFromText("+1e+3"), 1000);
    EXPECT_EQ(numberFromText("1E-3"), 0.001);
    EXPECT_EQ(numberFromText("4.9e-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_TRUE(std::signbit(numberFromText("-0").value_or(1)));
}

TEST(NumberFromText, ReadsInfinityAndNaN) {
    EXPECT_EQ(numberFromText("inf"), kInfinity);
    EXPECT_EQ(numberFromText("-inf"), -kInfinity);
    EXPECT_TRUE(std::isnan(numberFromText("nan").value_or(0)));
}

TEST(NumberFromText, RefusesAllElse) {
    for (const char* text : {"", "+", "-", "+-1", "++1", "-+1", "--1", " 1", "1 ", "1,5", "1.2.3",
                             "1e", "0x10", "ten", "1\n", "."}) {
        EXPECT_EQ(numberFromText(text), std::nullopt) << '"' << text << '"';
    }
}

TEST(NumberFromText, RefusesWhatADoubleCannotHold) {
    EXPECT_EQ(numberFromText("1e999"), std::nullopt);
    EXPECT_EQ(numberFromText("-1e999"), std::nullopt);
    EXPECT_EQ(numberFromText("1e-999"), std::nullopt);
    EXPECT_EQ(numberFromText("0e-999"), 0);
}

TEST(NumberFromText, ReadsNoFurtherThanItsView) {
    EXPECT_EQ(numberFromText(std::string_view("12345").substr(0, 2)), 12);
    EXPECT_EQ(numberFromText(std::string_view()), std::nullopt);
}

TEST(LeadingNumber, IsTheLongestThatTheTextBeginsWith) {
    EXPECT_EQ(leadingNumber("1995.50"), 1995.5);
    EXPECT_EQ(leadingNumber("30,75"), 30);
    EXPECT_EQ(leadingNumber("-2.5e1x"), -25);
    EXPECT_EQ(leadingNumber("+.5"), 0.5);
    EXPECT_EQ(leadingNumber("7."), 7);
    EXPECT_EQ(leadingNumber("3e"), 3);
    EXPECT_EQ(leadingNumber("0x1p3"), 0);
}

TEST(LeadingNumber, IsZeroForAnythingElse) {
    for (const char* text :
         {"", "+", "-", ".", "-.", "e5", "+-5", "-+5", "--5", "inf", "-inf", "nan", "low", " 1"}) {
        EXPECT_EQ(leadingNumber(text), 0) << text;
    }
}

TEST(LeadingNumber, EndsAtInfinityAndAtZero) {
    EXPECT_EQ(leadingNumber("1e999"), kInfinity);
    EXPECT_EQ(leadingNumber("-1e999,"), -kInfinity);
    EXPECT_EQ(leadingNumber("1e-999"), 0);
    EXPECT_EQ(leadingNumber("1e99999999999999999999"), kInfinity);
    EXPECT_EQ(leadingNumber("1e-99999999999999999999"), 0);
    EXPECT_EQ(leadingNumber(std::string(60000, '9')), kInfinity);
    EXPECT_EQ(leadingNumber("0." + std::string(400, '0') + "1e10"), 0);
    EXPECT_EQ(leadingNumber(std::string(400, '9') + ".5e-10"), kInfinity);
    EXPECT_EQ(leadingNumber("0." + std::string(400, '0') + "1e400"), 0.1);
}

TEST(LeadingInteger, IsTheLongestThatTheTextBeginsWith) {
    EXPECT_EQ(leadingInteger("1.9"), 1);
    EXPECT_EQ(leadingInteger("-12abc"), -12);
    EXPECT_EQ(leadingInteger("+7"), 7);
    EXPECT_EQ(leadingInteger("20OO"), 20);
    EXPECT_EQ(leadingInteger("1e5"), 1);
    for (const char* text : {"", "+", "-", ".5", "+-5", "--5", "nineteen", " 1"}) {
        EXPECT_EQ(leadingInteger(text), 0) << text;
    }
}

TEST(LeadingInteger, EndsAtTheRangesEnds) {
    using Limits = std::numeric_limits<std::int64_t>;
    EXPECT_EQ(leadingInteger("9223372036854775807"), Limits::max());
    EXPECT_EQ(leadingInteger("9223372036854775808"), Limits::max());
    EXPECT_EQ(leadingInteger("-9223372036854775808"), Limits::min());
    EXPECT_EQ(leadingInteger("-99999999999999999999"), Limits::min());
}

}  // namespace
}  // namespace mezalith::platform
