// SPDX-License-Identifier: MIT
#include "host/geojson.hpp"

#include "host/failure.hpp"
#include "host/failure_of.hpp"
#include "host/wkb_file.hpp"
#include <mezalith/geometry/wkb_writer.hpp>

#include <filesystem>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

const std::filesystem::path kGood = MEZALITH_SOURCE_DIR "/data/map/wkb";

std::string failureOf(const std::string& text) {
    return mezalith::testing::failureOf([&] { geometryOfGeoJSON(text); });
}

std::string rewritten(const std::string& text) {
    return geoJSONOf(*geometryOfGeoJSON(text).record());
}

std::string nested(int levels) {
    std::string text = R"({"type":"Point","coordinates":[]})";
    for (int i = 0; i < levels; ++i) {
        text = R"({"type":"GeometryCollection","geometries":[)" + text + "]}";
    }
    return text;
}

TEST(GeoJSON, WritesEveryType) {
    for (
        const char* text : {
            R"({"type":"Point","coordinates":[1,2.5]})",
            R"({"type":"Point","coordinates":[]})",
            R"({"type":"LineString","coordinates":[[1,2],[3,4]]})",
            R"({"type":"LineString","coordinates":[]})",
            R"({"type":"Polygon","coordinates":[[[0,0],[4,0],[0,4],[0,0]],[[1,1],[2,1],[1,2],[1,1]]]})",
            R"({"type":"MultiPoint","coordinates":[[1,2],[3,4]]})",
            R"({"type":"MultiLineString","coordinates":[[[1,2],[3,4]],[[5,6],[7,8]]]})",
            R"({"type":"MultiPolygon","coordinates":[[[[0,0],[4,0],[0,4],[0,0]]],[]]})",
            R"({"type":"GeometryCollection","geometries":[]})",
            R"({"type":"GeometryCollection","geometries":[{"type":"Point","coordinates":[1,2]},)"
            R"({"type":"GeometryCollection","geometries":[{"type":"MultiPoint","coordinates":[[1,2]]}]},)"
            R"({"type":"LineString","coordinates":[[1,2],[3,4]]}]})",
        }) {
        EXPECT_EQ(rewritten(text), text);
    }
}

TEST(GeoJSON, KeepsTheBytesOfLittleEndianFiles) {
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kGood)) {
        if (!entry.path().string().ends_with("-le.wkb")) continue;
        const auto bytes = readFile(entry.path().string());
        const MzGeometryBlock geometry =
            geometryOfGeoJSON(geoJSONOf(*readWKB(bytes).geometry.record()));
        EXPECT_EQ(MzWKBOfGeometry(*geometry.record()), bytes) << entry.path();
        ++files;
    }
    EXPECT_GE(files, 14u);
}

TEST(GeoJSON, TakesTheGeometryOfAFeature) {
    const std::string point = R"({"type":"Point","coordinates":[1,2,99]})";
    const std::string feature = R"({"type":"Feature","properties":{},"geometry":)" + point + "}";
    for (const std::string& text :
         {point, feature, R"({"type":"FeatureCollection","features":[)" + feature + "]}"}) {
        EXPECT_EQ(rewritten(text), R"({"type":"Point","coordinates":[1,2]})");
    }
}

TEST(GeoJSON, SaysWhereItIsWrong) {
    EXPECT_EQ(failureOf(""), "byte 1: this is not JSON");
    EXPECT_EQ(failureOf("{\"type\":"), "byte 9: this is not JSON");
    EXPECT_EQ(failureOf("[]"), "/: no \"type\"");
    EXPECT_EQ(failureOf("{}"), "/: no \"type\"");
    EXPECT_EQ(failureOf(R"({"type":7})"), "/type: not a text");
    EXPECT_EQ(failureOf(R"({"type":"point","coordinates":[1,2]})"),
              "/type: \"point\" is not a type of geometry");
    EXPECT_EQ(failureOf(R"({"type":"Circle"})"), "/type: \"Circle\" is not a type of geometry");
    EXPECT_EQ(failureOf(R"({"type":"Feature","geometry":null})"), "/geometry: no \"type\"");
    EXPECT_EQ(failureOf(R"({"type":"FeatureCollection","features":[]})"),
              "/features: 0 features where one is wanted");
    EXPECT_EQ(failureOf(R"({"type":"Polygon","coordinates":[[[0,0],[1]]]})"),
              "/coordinates/0/1: fewer than two coordinates");
    EXPECT_EQ(failureOf(R"({"type":"LineString","coordinates":[[0,"x"]]})"),
              "/coordinates/0/1: not a number");
    EXPECT_EQ(failureOf(R"({"type":"LineString","coordinates":{}})"), "/coordinates: not a list");
    EXPECT_EQ(failureOf(R"({"type":"Point","coordinates":[1e999,0]})"),
              "GeoJSON: a number is out of range");
}

TEST(GeoJSON, RefusesCollectionsNestedTooDeeply) {
    EXPECT_EQ(rewritten(nested(100)), nested(100));
    EXPECT_EQ(failureOf(nested(101)), "GeoJSON: collections are nested too deeply");
    const std::string deep(1'000'000, '[');
    EXPECT_EQ(failureOf(deep), "byte 1000001: this is not JSON");
    const std::string closed = deep + std::string(deep.size(), ']');
    EXPECT_EQ(failureOf(R"({"type":"LineString","coordinates":)" + closed + "}"),
              "/coordinates/0: fewer than two coordinates");
}

TEST(GeoJSON, HasNoNumberForWhatIsNotFinite) {
    const auto bytes = readFile(MEZALITH_SOURCE_DIR "/tests/data/bad/wkb/coord-nan-polygon.wkb");
    const MzWKBReading reading = readWKB(bytes);
    EXPECT_THROW(geoJSONOf(*reading.geometry.record()), Failure);
}

}  // namespace
}  // namespace mezalith::host
