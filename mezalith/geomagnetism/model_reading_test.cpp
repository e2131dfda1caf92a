// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/model_reading.hpp>
#include <mezalith/platform/text_file.hpp>

#include <filesystem>
#include <set>
#include <string>

#include <gtest/gtest.h>

namespace mezalith::detail {
namespace {

constexpr char kHeader[] = "A 1995.00 1 1 0 1994.50 2000.00 -1 600 A 0\n";
constexpr char kFirst[] = "1 0 -200 0 10 0 A 1\n";
constexpr char kSecond[] = "1 1 30 10 1 -2 A 2\n";

std::string failure(const std::string& text) { return readModel(text).failure; }

std::string good() { return std::string(kHeader) + kFirst + kSecond; }

TEST(COFLayout, IsReadAsItStands) {
    const auto [contents, why] = readModel(good());
    EXPECT_EQ(why, "");
    EXPECT_EQ(contents.name, "A");
    EXPECT_EQ(contents.firstYear, 1994.5);
    EXPECT_EQ(contents.lastYear, 2000);
    ASSERT_EQ(contents.epochs.size(), 1U);
    EXPECT_EQ(contents.epochs[0].year, 1995);
    EXPECT_EQ(contents.epochs[0].degree, 1);
    EXPECT_EQ(contents.epochs[0].coefficients[1].g, -200);
    EXPECT_EQ(contents.epochs[0].coefficients[2].h, 10);
    ASSERT_EQ(contents.rates.size(), 3U);
    EXPECT_EQ(contents.rates[1].g, 10);
    EXPECT_EQ(contents.rates[2].h, -2);
}

TEST(COFLayout, DropsRatesAboveTheirDegree) {
    std::string text = good();
    text.replace(text.find("1 1 0"), 5, "1 0 0");
    const auto contents = readModel(text).contents;
    EXPECT_EQ(contents.rates.size(), 1U);
}

TEST(COFLayout, MayHaveAnyLineEndsAndBlankLines) {
    for (const char* end : {"\r", "\r\n", "\n\n", " \t\n"}) {
        std::string text = good();
        for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos;) {
            text.replace(at, 1, end);
            at += std::string(end).size();
        }
        EXPECT_EQ(failure(text), "");
    }
    EXPECT_EQ(failure("A 1995 1 1 0\r\n"), failure("A 1995 1 1 0\n"));
}

TEST(COFLayout, SortsItsEpochs) {
    const std::string later = "B 2000 1 0 0 2000 2005 0 0 B 0\n1 0 1 0 9 9 B 1\n1 1 2 3 9 9 B 2\n";
    const auto [contents, why] = readModel(later + good());
    EXPECT_EQ(why, "");
    ASSERT_EQ(contents.epochs.size(), 2U);
    EXPECT_EQ(contents.epochs[0].year, 1995);
    EXPECT_EQ(contents.name, "B");
    EXPECT_EQ(contents.firstYear, 1994.5);
    EXPECT_EQ(contents.lastYear, 2005);
    EXPECT_EQ(contents.rates.size(), 1U);
    EXPECT_EQ(failure(good() + good()), "line 6: two epochs are of the same year");
}

TEST(COFLayout, NamesTheLineAndWhatIsWrongWithIt) {
    const std::string header = kHeader, first = kFirst, second = kSecond;
    EXPECT_EQ(failure(header + "1 0 -200 0 10 0 A\n"),
              "line 2: 7 fields where 11 begin an epoch and 8 are coefficients");
    EXPECT_EQ(failure(header + first + "1 1 3O 10 1 -2 A 2\n"), "line 3: \"3O\" is not a number");
    EXPECT_EQ(failure(header + first + "1 1 30,5 10 1 -2 A 2\n"),
              "line 3: \"30,5\" is not a number");
    EXPECT_EQ(failure(header + "\n" + first + "1 1 nan 10 1 -2 A 2\n"),
              "line 4: \"nan\" is not a number");
    EXPECT_EQ(failure(header + first + "2 1 30 10 1 -2 A 2\n"),
              "line 3: \"2\" is not within 1 and 1");
    EXPECT_EQ(failure(header + first + "1 2 30 10 1 -2 A 2\n"),
              "line 3: \"2\" is not within 0 and 1");
    EXPECT_EQ(failure(header + first + "1 .5 30 10 1 -2 A 2\n"),
              "line 3: \".5\" is not within 0 and 1");
    EXPECT_EQ(failure(header + first + first), "line 3: these coefficients came before");
    EXPECT_EQ(failure(header + first), "line 2: coefficients of the epoch before are missing");
    EXPECT_EQ(failure(header + header), "line 2: coefficients of the epoch before are missing");
    EXPECT_EQ(failure("A 1995 64 1 0 1995 2000 -1 600 A 0\n"),
              "line 1: \"64\" is not within 1 and 63");
    EXPECT_EQ(failure("A 99999 1 1 0 1995 2000 -1 600 A 0\n"), "line 1: \"99999\" is not a year");
    EXPECT_EQ(failure(header + "1 0 " + std::string(60000, '9') + " 0 10 0 A 1\n"),
              "line 2: \"" + std::string(40, '9') + "...\" is not a number");
}

TEST(AnyLayout, IsToldByItsFirstLines) {
    const std::string unknown = "neither a COF, a table nor an SHC file of Gauss coefficients";
    EXPECT_EQ(failure("\n \n"), "there is nothing in it");
    EXPECT_EQ(failure("# only\n# comments"), "there is nothing in it");
    EXPECT_EQ(failure("hello world\n"), unknown);
    EXPECT_EQ(failure("a b c d e\n"), unknown);
    EXPECT_EQ(failure(std::string(100'000, ' ')), "there is nothing in it");
    EXPECT_EQ(failure(std::string("\0\0", 2)), unknown);
}

TEST(MalformedModel, IsNoneAndSaysWhy) {
    const std::filesystem::path folder(MEZALITH_SOURCE_DIR "/tests/data/bad/cof");
    std::set<std::string> models;
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const auto text = platform::textOfFile(entry.path().string(), 1 << 20);
        ASSERT_TRUE(text.has_value());
        const auto [contents, why] = readModel(*text);
        EXPECT_EQ(why.empty(), !contents.epochs.empty()) << entry.path();
        EXPECT_LT(why.size(), 200U) << entry.path();
        if (why.empty()) models.insert(entry.path().stem());
        ++files;
    }
    EXPECT_EQ(files, 26U);
    const std::set<std::string> expected{"cr-only", "epochs-reversed", "ok-two-epochs", "utf8-bom"};
    EXPECT_EQ(models, expected);
}

}  // namespace
}  // namespace mezalith::detail
