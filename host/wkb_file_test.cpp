// SPDX-License-Identifier: MIT
#include "host/wkb_file.hpp"

#include "host/failure.hpp"
#include "host/failure_of.hpp"

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

const std::string kData = MEZALITH_SOURCE_DIR "/data/map/wkb/";

TEST(ReadFile, AnswersAllBytes) {
    const auto bytes = readFile(kData + "linestring-arctic-circle-be.wkb");
    ASSERT_EQ(bytes.size(), 5801u);
    EXPECT_EQ(bytes[0], std::byte{0});
    EXPECT_EQ(bytes[4], std::byte{2});
}

TEST(ReadFile, SaysWhyItCannot) {
    EXPECT_EQ(mezalith::testing::failureOf([] { readFile("no/such/file.wkb"); }),
              "no/such/file.wkb: No such file or directory");
    EXPECT_THROW(readFile(MEZALITH_SOURCE_DIR), Failure);
}

TEST(ReadWKBOfAFile, LeavesAloneWhatFollowsAndNamesTheByteThatIsWrong) {
    auto bytes = readFile(kData + "point-oslo-le.wkb");
    bytes.push_back(std::byte{7});
    EXPECT_EQ(readWKB(bytes).length, 21u);
    bytes.resize(20);
    EXPECT_EQ(mezalith::testing::failureOf([&] { readWKB(bytes); }),
              "byte 20: expected the coordinates of a point, found the end of the bytes");
}

TEST(IsWKBFile, GoesByTheEnding) {
    EXPECT_TRUE(isWKBFile("a/b.wkb"));
    EXPECT_TRUE(isWKBFile("B.WKB"));
    EXPECT_FALSE(isWKBFile("b.wkb.gpkg"));
    EXPECT_FALSE(isWKBFile("wkb"));
}

TEST(LayerNameOfFile, IsTheStem) { EXPECT_EQ(layerNameOfFile("a/lake.east.wkb"), "lake.east"); }

}  // namespace
}  // namespace mezalith::host
