// SPDX-License-Identifier: MIT
#include "host/validity_check.hpp"

#include "host/data_source.hpp"
#include "host/failure_of.hpp"
#include "host/wkb_file.hpp"
#include "tests/support/temporary_folder.hpp"
#include <mezalith/geometry/wkt_writer.hpp>

#include <string_view>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

using testing::failureOf;
using testing::TemporaryFolder;

constexpr std::string_view kThree = R"({"type": "FeatureCollection", "features": [
    {"type": "Feature", "id": 7, "properties": {"name": "bow tie", "size": 2.5}, "geometry":
        {"type": "Polygon", "coordinates": [[[0, 0], [4, 4], [4, 0], [0, 4], [0, 0]]]}},
    {"type": "Feature", "id": 8, "properties": {"name": "sound", "size": null}, "geometry":
        {"type": "Polygon", "coordinates": [[[0, 0, 9], [4, 0, 9], [4, 4, 9], [0, 0, 9]]]}},
    {"type": "Feature", "id": 9, "properties": {"name": "flat", "size": 1}, "geometry":
        {"type": "Polygon", "coordinates": [[[0, 0], [4, 4], [0, 0], [0, 0]]]}},
    {"type": "Feature", "id": 10, "properties": {"name": "none", "size": 1}, "geometry": null}
]})";

struct Told {
    std::vector<InvalidRecord> found;
    std::vector<LayerValidity> layers;
};

std::vector<std::byte> check(const std::string& source, Told& told,
                             std::optional<std::string> copy = {}) {
    return checkValidity(source, {.found = [&](const InvalidRecord& r) { told.found.push_back(r); },
                                  .done = [&](const LayerValidity& l) { told.layers.push_back(l); },
                                  .copy = std::move(copy)});
}

std::string textOf(const std::vector<std::byte>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(ValidityCheck, TellsWhatIsWrongAndWhere) {
    const TemporaryFolder folder;
    Told told;
    EXPECT_TRUE(check(folder.put("three.geojson", kThree), told).empty());
    ASSERT_EQ(told.found.size(), 2u);
    EXPECT_EQ(told.found[0].id, 7);
    EXPECT_EQ(told.found[0].defect.reason, "Self-intersection");
    EXPECT_EQ(told.found[0].defect.place.x, 2);
    EXPECT_EQ(told.found[0].defect.place.y, 2);
    EXPECT_TRUE(told.found[0].isRepairable);
    EXPECT_EQ(told.found[1].id, 9);
    EXPECT_FALSE(told.found[1].isRepairable);
    ASSERT_EQ(told.layers.size(), 1u);
    EXPECT_EQ(told.layers[0].layer, "three");
    EXPECT_EQ(told.layers[0].records, 4u);
    EXPECT_EQ(told.layers[0].invalid, 2u);
    EXPECT_EQ(told.layers[0].lost, 1u);
}

TEST(ValidityCheck, CopiesEverythingAndRepairsWhatCanBe) {
    const TemporaryFolder folder;
    const std::string source = folder.put("three.geojson", kThree);
    for (const std::string name : {"copy.gpkg", "copy.geojson"}) {
        Told told;
        const std::string path = folder.put(name, textOf(check(source, told, name)));
        Told again;
        check(path, again);
        ASSERT_EQ(again.layers.size(), 1u) << name;
        EXPECT_EQ(again.layers[0].records, 4u) << name;
        EXPECT_EQ(again.layers[0].invalid, 1u) << name;
        const Layer layer = DataSource(path).read(0);
        ASSERT_EQ(layer.features.size(), 3u) << name;
        for (const auto& feature : layer.features) {
            const auto size = feature->valueForKey("size");
            if (feature->featureName() == "bow tie") {
                EXPECT_EQ(feature->geometry()->geometryType(), 6u) << name;
                EXPECT_EQ(size, platform::KeyedValue(2.5)) << name;
            }
        }
    }
}

TEST(ValidityCheck, KeepsTheThirdCoordinateOfWhatIsSound) {
    const TemporaryFolder folder;
    Told told;
    const auto copy = check(folder.put("three.geojson", kThree), told, "copy.geojson");
    EXPECT_NE(textOf(copy).find("4.0, 0.0, 9.0"), std::string::npos);
}

TEST(ValidityCheck, RepairsWellKnownBinary) {
    const TemporaryFolder folder;
    std::string bytes(61, '\0');
    bytes.replace(0, 13, std::string("\1\3\0\0\0\1\0\0\0\3\0\0\0", 13));
    const double numbers[] = {0, 0, 4, 0, 4, 4};
    bytes.replace(13, 48, std::string(reinterpret_cast<const char*>(numbers), 48));
    const std::string source = folder.put("open.wkb", bytes);
    Told told;
    const auto copy = check(source, told, "closed.wkb");
    ASSERT_EQ(told.found.size(), 1u);
    EXPECT_EQ(told.found[0].defect.reason, "Ring is not closed");
    EXPECT_EQ(MzWKTOfGeometry(*readWKB(copy).geometry.record()), "POLYGON ((0 0, 4 4, 4 0, 0 0))");
    EXPECT_EQ(failureOf([&] { check(source, told, "closed.gpkg"); }),
              "closed.gpkg: a copy of a .wkb file ends in .wkb");
}

TEST(ValidityCheck, SaysWhichFormsThereAre) {
    const TemporaryFolder folder;
    const std::string source = folder.put("three.geojson", kThree);
    Told told;
    EXPECT_EQ(failureOf([&] { check(source, told, "copy.shp"); }),
              "copy.shp: a copy ends in .gpkg or .geojson");
    EXPECT_EQ(failureOf([&] { check("/nowhere.gpkg", told); }),
              "/nowhere.gpkg: No such file or directory");
}

}  // namespace
}  // namespace mezalith::host
