// SPDX-License-Identifier: MIT
#include "host/source_address.hpp"

#include "host/failure_of.hpp"
#include "tests/support/temporary_folder.hpp"

#include <filesystem>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

using testing::failureOf;

TEST(SourceAddress, IsAFileOrALayerOfOne) {
    const testing::TemporaryFolder folder;
    const std::string path = folder.put("a.geojson", "{}");
    const SourceAddress file = SourceAddress::of(path);
    EXPECT_EQ(file.name, path);
    EXPECT_EQ(file.connection, path);
    EXPECT_FALSE(file.layer);
    const SourceAddress layer = SourceAddress::of(path + ":land");
    EXPECT_EQ(layer.name, path);
    EXPECT_EQ(layer.connection, path);
    EXPECT_EQ(layer.layer, "land");
}

TEST(SourceAddress, OpensAbsolutePaths) {
    EXPECT_TRUE(std::filesystem::path(SourceAddress::of(".").connection).is_absolute());
}

TEST(SourceAddress, TakesAFileWithAColonForAFile) {
    const testing::TemporaryFolder folder;
    const std::string path = folder.put("a:b.geojson", "{}");
    EXPECT_EQ(SourceAddress::of(path).name, path);
    EXPECT_EQ(SourceAddress::of(path + ":land").layer, "land");
}

TEST(SourceAddress, LeavesDatabasesAsTheyAre) {
    EXPECT_EQ(SourceAddress::of("PG:dbname=x").connection, "PG:dbname=x");
}

TEST(SourceAddress, RefusesWhatIsNotThereOrElsewhere) {
    EXPECT_EQ(failureOf([] { SourceAddress::of("/nowhere.gpkg:land"); }),
              "/nowhere.gpkg:land: No such file or directory");
    EXPECT_EQ(failureOf([] { SourceAddress::of("https://a.b/c.json"); }),
              "https://a.b/c.json: only local files are read");
    EXPECT_EQ(failureOf([] { SourceAddress::of("/vsicurl/x"); }),
              "/vsicurl/x: only local files are read");
}

}  // namespace
}  // namespace mezalith::host
