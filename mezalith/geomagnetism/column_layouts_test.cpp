// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/column_layouts.hpp>

#include <string>

#include <gtest/gtest.h>

namespace mezalith::detail {
namespace {

std::string failure(const std::string& text) { return readModel(text).failure; }

// --- the table
// ------------------------------------------------------------------------------------

constexpr char kTable[] =
    "# Nth  Generation\n# in nT\nc/s deg ord IGRF IGRF SV\ng/h n m 1995.0 2000.0 2000-05\n"
    "g 1 0 10 20 3\ng 1 1 30 40 5\nh 1 1 50 60 7\n";

TEST(TableLayout, IsReadAsItStands) {
    const auto [contents, why] = readModel(kTable);
    EXPECT_EQ(why, "");
    EXPECT_EQ(contents.name, "Nth Generation");
    EXPECT_EQ(contents.firstYear, 1995);
    EXPECT_EQ(contents.lastYear, 2005);
    ASSERT_EQ(contents.epochs.size(), 2U);
    EXPECT_EQ(contents.epochs[1].year, 2000);
    EXPECT_EQ(contents.epochs[1].degree, 1);
    ASSERT_EQ(contents.epochs[1].coefficients.size(), 3U);
    EXPECT_EQ(contents.epochs[0].coefficients[1].g, 10);
    EXPECT_EQ(contents.epochs[1].coefficients[2].h, 60);
    ASSERT_EQ(contents.rates.size(), 3U);
    EXPECT_EQ(contents.rates[2].h, 7);
}

TEST(TableLayout, MayGoOverTheCenturyOrHaveNoRates) {
    std::string text = kTable;
    text.replace(text.find("2000-05"), 7, "2098-03");
    EXPECT_EQ(readModel(text).contents.lastYear, 2103);
    const auto [contents, why] = readModel("g/h n m 1995\ng 1 0 10\ng 1 1 30\nh 1 1 50\n");
    EXPECT_EQ(why, "");
    EXPECT_EQ(contents.lastYear, 1995);
    EXPECT_EQ(contents.rates.size(), 1U);
}

TEST(TableLayout, NamesTheLineAndWhatIsWrongWithIt) {
    const std::string head = "g/h n m 1995 2000\n";
    EXPECT_EQ(failure("g/h n m\n"), "line 1: there are no years");
    EXPECT_EQ(failure("g/h n m 1995 1995\n"), "line 1: the years do not ascend");
    EXPECT_EQ(failure("g/h n m 1995 x\n"), "line 1: \"x\" is not a number");
    EXPECT_EQ(failure("g/h n m 1995 2000-x\n"), "line 1: \"x\" is not a number");
    EXPECT_EQ(failure("g/h n m 2000-05\n"), "line 1: \"2000-05\" is not a number");
    EXPECT_EQ(failure(head + "f 1 0 10 20\n"), "line 2: \"f\" is neither g nor h");
    EXPECT_EQ(failure(head + "g 1\n"), "line 2: degree and order are missing");
    EXPECT_EQ(failure(head + "g 0 0 1 2\n"), "line 2: \"0\" is not within 1 and 63");
    EXPECT_EQ(failure(head + "g 64 0 1 2\n"), "line 2: \"64\" is not within 1 and 63");
    EXPECT_EQ(failure(head + "g 1 2 1 2\n"), "line 2: \"2\" is not within 0 and 1");
    EXPECT_EQ(failure(head + "h 1 0 1 2\n"), "line 2: \"0\" is not within 1 and 1");
    EXPECT_EQ(failure(head + "g 1 0 1\n"), "line 2: 4 fields, not 5");
    EXPECT_EQ(failure(head + "g 1 0 1 2\ng 1 0 1 2\n"), "line 3: these coefficients came before");
    EXPECT_EQ(failure(head + "g 1 0 1 inf\n"), "line 2: \"inf\" is not a number");
    EXPECT_EQ(failure(head + "g 1 0 1 2\ng 1 1 1 2\n"),
              "line 3: coefficients of degree 1 are missing");
    EXPECT_EQ(failure(head), "line 1: coefficients of degree 1 are missing");
}

// --- SHC
// ------------------------------------------------------------------------------------------

constexpr char kSHC[] =
    "# Model  of mine\n1 1 2 2 1 1994.0 2006.0\n 1995.0 2000.0\n1 0 10 20\n1 1 30 40\n1 -1 50 60\n";

TEST(SHCLayout, IsReadAsItStands) {
    const auto [contents, why] = readModel(kSHC);
    EXPECT_EQ(why, "");
    EXPECT_EQ(contents.name, "Model of mine");
    EXPECT_EQ(contents.firstYear, 1994);
    EXPECT_EQ(contents.lastYear, 2006);
    ASSERT_EQ(contents.epochs.size(), 2U);
    EXPECT_EQ(contents.epochs[0].degree, 1);
    EXPECT_EQ(contents.epochs[0].coefficients[1].g, 10);
    EXPECT_EQ(contents.epochs[1].coefficients[2].h, 60);
    EXPECT_TRUE(contents.rates.empty());
}

TEST(SHCLayout, TakesItsValidityFromItsYearsWhenNoneIsGiven) {
    std::string text = kSHC;
    text.replace(text.find(" 1994.0 2006.0"), 14, "");
    const auto [contents, why] = readModel(text);
    EXPECT_EQ(why, "");
    EXPECT_EQ(contents.firstYear, 1995);
    EXPECT_EQ(contents.lastYear, 2000);
}

TEST(SHCLayout, MayBeginAboveDegreeOne) {
    const auto [contents, why] =
        readModel("2 2 1 1 0\n2000\n2 0 1\n2 1 2\n2 -1 3\n2 2 4\n2 -2 5\n");
    EXPECT_EQ(why, "");
    EXPECT_EQ(contents.epochs[0].coefficients[1].g, 0);
    EXPECT_EQ(contents.epochs[0].coefficients[5].h, 5);
}

TEST(SHCLayout, NamesTheLineAndWhatIsWrongWithIt) {
    const std::string head = "1 1 2 2 1\n1995 2000\n";
    EXPECT_EQ(failure("1 64 2 2 1\n"), "line 1: \"64\" is not within 1 and 63");
    EXPECT_EQ(failure("1 1 2 6 5\n"), "line 1: \"6\" is not within 1 and 2");
    EXPECT_EQ(failure("1 1 0 2 1\n"), "line 1: \"0\" is not within 1 and 1024");
    EXPECT_EQ(failure("1 1 2 2 1 1e9 2000\n"), "line 1: \"1e9\" is not a year");
    EXPECT_EQ(failure("1 1 2 2 1\n1995\n"), "line 2: not the 2 years that were promised");
    EXPECT_EQ(failure("1 1 2 2 1\n"), "line 1: not the 2 years that were promised");
    EXPECT_EQ(failure("1 1 2 2 1\n2000 1995\n"), "line 2: the years do not ascend");
    EXPECT_EQ(failure(head + "1\n"), "line 3: degree and order are missing");
    EXPECT_EQ(failure(head + "2 0 1 2\n"), "line 3: \"2\" is not within 1 and 1");
    EXPECT_EQ(failure(head + "1 -2 1 2\n"), "line 3: \"-2\" is not within -1 and 1");
    EXPECT_EQ(failure(head + "1 0 1 2 3\n"), "line 3: 5 fields, not 4");
    EXPECT_EQ(failure(head + "1 0 1 2\n1 0 1 2\n"), "line 4: these coefficients came before");
    EXPECT_EQ(failure(head + "1 0 1 2\n1 1 1 2\n"), "line 4: coefficients of degree 1 are missing");
    EXPECT_EQ(failure("1 63 2 2 1\n1995 2000\n"), "line 2: coefficients of degree 1 are missing");
}

TEST(Layouts, AreToldByTheirFirstLine) {
    const std::string_view table[] = {"g/h", "n", "m"}, numbers[] = {"1", "13", "27", "2", "1"};
    EXPECT_TRUE(isTable(table));
    EXPECT_FALSE(isTable(numbers));
    EXPECT_TRUE(isSHC(numbers));
    EXPECT_FALSE(isSHC(table));
    EXPECT_FALSE(isSHC(std::span(numbers).first(4)));
}

}  // namespace
}  // namespace mezalith::detail
