// SPDX-License-Identifier: MIT
#include <mezalith/platform/date.hpp>

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using Seconds = std::chrono::duration<double>;

constexpr double kDay = 86400;

Date at(double seconds) { return Date(Seconds(seconds)); }

TEST(Date, CountsSecondsFrom1970) {
    EXPECT_EQ(startOfYear(1970), at(0));
    EXPECT_EQ(startOfYear(1971), at(365 * kDay));
    EXPECT_EQ(startOfYear(2000), at(946684800));
    EXPECT_EQ(startOfYear(1900), at(-2208988800));
    EXPECT_EQ(secondsBetween(startOfYear(2000), startOfYear(2001)), 366 * kDay);
    EXPECT_EQ(secondsBetween(startOfYear(2001), startOfYear(2000)), -366 * kDay);
}

TEST(Date, ContinuesTheGregorianCalendarToTheFirstYears) {
    EXPECT_EQ(secondsBetween(startOfYear(0), startOfYear(1)), 366 * kDay);
    EXPECT_EQ(secondsBetween(startOfYear(-9999), startOfYear(-9998)), 365 * kDay);
    EXPECT_EQ(secondsBetween(startOfYear(1600), startOfYear(2000)), 146097 * kDay);
}

TEST(Date, IsNoInstantWhenItIsNotFinite) {
    EXPECT_TRUE(isFinite(at(1e300)));
    EXPECT_FALSE(isFinite(at(std::numeric_limits<double>::infinity())));
    EXPECT_FALSE(isFinite(at(-std::numeric_limits<double>::infinity())));
    EXPECT_FALSE(isFinite(at(std::numeric_limits<double>::quiet_NaN())));
}

TEST(DecimalYear, IsTheShareOfTheYearThatHasPassed) {
    EXPECT_EQ(decimalYear(startOfYear(2020)), 2020);
    EXPECT_EQ(decimalYear(startOfYear(-9999)), -9999);
    EXPECT_EQ(decimalYear(startOfYear(2023) + Seconds(182.5 * kDay)), 2023.5);
    EXPECT_EQ(decimalYear(startOfYear(2024) + Seconds(183 * kDay)), 2024.5);
    EXPECT_NEAR(decimalYear(startOfYear(2024) + Seconds(365 * kDay)), 2024 + 365.0 / 366, 1e-9);
}

TEST(DecimalYear, ReachesTheLastMomentOf9999AndIsNaNBeyond) {
    EXPECT_NEAR(decimalYear(startOfYear(10000) - Seconds(1)), 10000, 1e-7);
    EXPECT_TRUE(std::isnan(decimalYear(startOfYear(10000))));
    EXPECT_TRUE(std::isnan(decimalYear(startOfYear(-9999) - Seconds(1))));
    EXPECT_TRUE(std::isnan(decimalYear(at(1e300))));
    EXPECT_TRUE(std::isnan(decimalYear(at(std::numeric_limits<double>::infinity()))));
    EXPECT_TRUE(std::isnan(decimalYear(at(std::numeric_limits<double>::quiet_NaN()))));
}

}  // namespace
}  // namespace mezalith::platform
