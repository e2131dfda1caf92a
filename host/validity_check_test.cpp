// SPDX-License-Identifier: MIT
#include "host/validity_check.hpp"

#include "host/data_source.hpp"
#include "host/failure_of.hpp"
#include "host/wkb_file.hpp"
#include "tests/support/temporary_folder.hpp"
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/wkb_writer.hpp>
#include <mezalith/geometry/wkt_reader.hpp>
#include <mezalith/geometry/wkt_writer.hpp>

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
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

/// A GeoPackage with three lines, the number of points in the second of which is wrong.
std::string damagedPackage(const TemporaryFolder& folder) {
    const std::string lines = folder.put("lines.geojson", R"({"type": "FeatureCollection",
        "features": [
        {"type": "Feature", "id": 7, "properties": {"name": "a"},
            "geometry": {"type": "LineString", "coordinates": [[0, 0], [1, 1]]}},
        {"type": "Feature", "id": 8, "properties": {"name": "b"},
            "geometry": {"type": "LineString", "coordinates": [[2, 0], [1, 1]]}},
        {"type": "Feature", "id": 9, "properties": {"name": "c"},
            "geometry": {"type": "LineString", "coordinates": [[3, 0], [3, 0]]}}]})");
    Told told;
    std::string package = textOf(check(lines, told, "lines.gpkg"));
    constexpr std::string_view kHead("\1\2\0\0\0\2\0\0\0\0\0\0\0\0\0\0\x40", 17);
    const std::size_t head = package.find(kHead);
    EXPECT_NE(head, std::string::npos);
    package.replace(head + 7, 1, "\1");
    return folder.put("lines.gpkg", package);
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

TEST(ValidityCheck, GoesOnAfterAGeometryThatCannotBeRead) {
    const TemporaryFolder folder;
    const std::string source = damagedPackage(folder);
    for (const std::string name : {"copy.gpkg", "copy.geojson"}) {
        SCOPED_TRACE(name);
        Told told;
        const std::string copy = folder.put(name, textOf(check(source, told, name)));
        ASSERT_EQ(told.found.size(), 2u);
        EXPECT_EQ(told.found[0].id, 8);
        EXPECT_NE(told.found[0].defect.reason, "");
        EXPECT_TRUE(std::isnan(told.found[0].defect.place.x));
        EXPECT_FALSE(told.found[0].isRepairable);
        EXPECT_TRUE(told.found[0].isMissing);
        EXPECT_EQ(told.found[1].id, 9);
        EXPECT_FALSE(told.found[1].isMissing);
        ASSERT_EQ(told.layers.size(), 1u);
        EXPECT_EQ(told.layers[0].records, 3u);
        EXPECT_EQ(told.layers[0].lost, 2u);
        EXPECT_EQ(told.layers[0].missing, 1u);
        const LayerDescription layer = DataSource(copy).describe(0);
        EXPECT_EQ(layer.types,
                  (std::map<std::string, std::size_t>{{"LineString", 2}, {"None", 1}}));
    }
}

TEST(ValidityCheck, SaysWhichCoordinatesARepairDrops) {
    const TemporaryFolder folder;
    const std::string source = folder.put("bows.csv",
                                          "name,WKT\n"
                                          "a,\"POLYGON ((0 0,4 4,4 0,0 4,0 0))\"\n"
                                          "b,\"POLYGON Z ((0 0 1,4 4 1,4 0 1,0 4 1,0 0 1))\"\n"
                                          "c,\"POLYGON M ((0 0 1,4 4 1,4 0 1,0 4 1,0 0 1))\"\n"
                                          "d,\"POLYGON Z ((0 0 1,4 4 1,0 0 1,0 0 1))\"\n");
    Told told;
    check(source, told);
    std::vector<std::string> dropped;
    dropped.reserve(told.found.size());
    for (const InvalidRecord& record : told.found) dropped.push_back(record.dropped);
    EXPECT_EQ(dropped, (std::vector<std::string>{"", "Z", "M", ""}));
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
    EXPECT_NE(textOf(copy).find("[4.0,0.0,9.0]"), std::string::npos);
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

TEST(ValidityCheck, KeepsEveryNumberToItsLastBit) {
    const TemporaryFolder folder;
    const std::vector<double> numbers{0.30000000000000004,
                                      1e-17,
                                      -0.0,
                                      5e-324,
                                      1.7976931348623157e308,
                                      123456789.12345678,
                                      1e22,
                                      0.1 + 0.7,
                                      1.0000000000000002,
                                      179.99999999999997,
                                      7};
    std::string features;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        std::array<char, 40> text{};
        std::snprintf(text.data(), text.size(), "%.17e", numbers[i]);
        features += std::string(i == 0 ? "" : ",") + R"({"type": "Feature", "properties": {"n": )" +
                    text.data() + R"(, "note": "\"geometry\": null }"}, "geometry": )" +
                    R"({"type": "Point", "coordinates": [)" + text.data() + ", 1]}}";
    }
    const std::string source = folder.put(
        "numbers.geojson", R"({"type": "FeatureCollection", "features": [)" + features + "]}");
    for (const std::string name : {"copy.gpkg", "copy.geojson"}) {
        Told told;
        const Layer layer = DataSource(folder.put(name, textOf(check(source, told, name)))).read(0);
        ASSERT_EQ(layer.features.size(), numbers.size()) << name;
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            const Feature& feature = *layer.features[i];
            const auto* point = static_cast<const MzPointGeometry*>(feature.geometry().get());
            EXPECT_EQ(std::bit_cast<std::uint64_t>(point->x()),
                      std::bit_cast<std::uint64_t>(numbers[i]))
                << name << " " << i;
            const auto read = std::get<double>(*feature.record()->attributes.find("n"));
            EXPECT_EQ(read, numbers[i]) << name << " " << i;
        }
    }
}

TEST(ValidityCheck, CopiesEveryTypeOfGeometryIntoGeoJSON) {
    const TemporaryFolder folder;
    std::string table = "name,WKT\n";
    for (const char* text :
         {"POINT Z (1 2 3)", "POINT EMPTY", "LINESTRING (1 2,3 4)", "LINESTRING EMPTY",
          "POLYGON ((0 0,9 0,9 9,0 0),(2 1,3 1,3 2,2 1))", "POLYGON EMPTY", "MULTIPOINT (1 2,3 4)",
          "MULTILINESTRING ((1 2,3 4),(5 6,7 8))",
          "MULTIPOLYGON (((0 0,9 0,9 9,0 0)),((0 1,0 9,8 9,0 1)))",
          "GEOMETRYCOLLECTION (POINT (1 2),GEOMETRYCOLLECTION (LINESTRING (1 2,3 4)))"}) {
        table += std::string("a,\"") + text + "\"\n";
    }
    Told told;
    const auto text = textOf(check(folder.put("all.csv", table), told, "all.geojson"));
    for (
        const char* geometry :
        {R"({"type":"Point","coordinates":[1.0,2.0,3.0]})", R"({"type":"Point","coordinates":[]})",
         R"({"type":"LineString","coordinates":[[1.0,2.0],[3.0,4.0]]})",
         R"({"type":"LineString","coordinates":[]})",
         R"({"type":"Polygon","coordinates":[[[0.0,0.0],[9.0,0.0],[9.0,9.0],[0.0,0.0]],)"
         R"([[2.0,1.0],[3.0,1.0],[3.0,2.0],[2.0,1.0]]]})",
         R"({"type":"Polygon","coordinates":[]})",
         R"({"type":"MultiPoint","coordinates":[[1.0,2.0],[3.0,4.0]]})",
         R"({"type":"MultiLineString","coordinates":[[[1.0,2.0],[3.0,4.0]],[[5.0,6.0],[7.0,8.0]]]})",
         R"({"type":"MultiPolygon","coordinates":[[[[0.0,0.0],[9.0,0.0],[9.0,9.0],[0.0,0.0]]],)"
         R"([[[0.0,1.0],[0.0,9.0],[8.0,9.0],[0.0,1.0]]]]})",
         R"({"type":"GeometryCollection","geometries":[{"type":"Point","coordinates":[1.0,2.0]},)"
         R"({"type":"GeometryCollection","geometries":[)"
         R"({"type":"LineString","coordinates":[[1.0,2.0],[3.0,4.0]]}]}]})"}) {
        EXPECT_NE(text.find(std::string(R"("geometry":)") + geometry + "}"), std::string::npos)
            << geometry << "\n"
            << text;
    }
}

TEST(ValidityCheck, KeepsTheFormOfWellKnownBinary) {
    const TemporaryFolder folder;
    const MzWKTReading bowTie = MzReadWKT("POLYGON ((0 0, 4 4, 4 0, 0 4, 0 0))");
    for (const MzWKBOptions& options : {MzWKBOptions{MzWKBForm::EWKB, false, 25833},
                                        MzWKBOptions{MzWKBForm::GeoPackage, true, 4326},
                                        MzWKBOptions{MzWKBForm::WKB, false, {}}}) {
        const std::string source =
            folder.put("bow.wkb", textOf(MzWKBOfGeometry(*bowTie.geometry.record(), options)));
        Told told;
        const MzWKBReading copy = readWKB(check(source, told, "copy.wkb"));
        ASSERT_TRUE(copy);
        EXPECT_EQ(told.found.size(), 1u);
        EXPECT_EQ(copy.geometry.record()->type, MzGeometryTypeMultiPolygon);
        EXPECT_EQ(copy.form, options.form);
        EXPECT_EQ(copy.isLittleEndian, options.isLittleEndian);
        EXPECT_EQ(copy.srid, options.srid);
    }
}

TEST(ValidityCheck, SaysWhichFormsThereAre) {
    const TemporaryFolder folder;
    const std::string source = folder.put("three.geojson", kThree);
    Told told;
    EXPECT_EQ(failureOf([&] { check(source, told, "copy.shp"); }),
              "copy.shp: a copy ends in .gpkg or .geojson");
    EXPECT_FALSE(check(source, told, "copy.GeoJSON").empty());
    EXPECT_EQ(failureOf([&] { check("/nowhere.gpkg", told); }),
              "/nowhere.gpkg: No such file or directory");
}

}  // namespace
}  // namespace mezalith::host
