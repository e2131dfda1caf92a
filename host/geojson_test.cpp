// SPDX-License-Identifier: MIT
#include "host/geojson.hpp"

#include "host/failure.hpp"
#include "host/failure_of.hpp"
#include "host/wkb_file.hpp"
#include "host/wkb_walk.hpp"

#include <filesystem>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

const std::filesystem::path kGood = MEZALITH_SOURCE_DIR "/data/map/wkb";

std::string failureOf(const std::string& text) {
    return mezalith::testing::failureOf([&] { wkbFromGeoJSON(text); });
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
        EXPECT_EQ(geoJSONFromWKB(wkbFromGeoJSON(text)), text);
    }
}

TEST(GeoJSON, KeepsTheBytesOfLittleEndianFiles) {
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kGood)) {
        if (!entry.path().string().ends_with("-le.wkb")) continue;
        const auto bytes = readFile(entry.path().string());
        EXPECT_EQ(wkbFromGeoJSON(geoJSONFromWKB(bytes)), bytes) << entry.path();
        ++files;
    }
    EXPECT_GE(files, 14u);
}

TEST(GeoJSON, TakesTheGeometryOfAFeature) {
    const std::string point = R"({"type":"Point","coordinates":[1,2,99]})";
    const std::string feature = R"({"type":"Feature","properties":{},"geometry":)" + point + "}";
    EXPECT_EQ(wkbFromGeoJSON(feature), wkbFromGeoJSON(point));
    EXPECT_EQ(wkbFromGeoJSON(R"({"type":"FeatureCollection","features":[)" + feature + "]}"),
              wkbFromGeoJSON(point));
    EXPECT_EQ(wkbFromGeoJSON(point).size(), 21u);
}

TEST(GeoJSON, SaysWhereItIsWrong) {
    EXPECT_EQ(failureOf(""), "byte 1: this is not JSON");
    EXPECT_EQ(failureOf("{\"type\":"), "byte 9: this is not JSON");
    EXPECT_EQ(failureOf("[]"), "/: no \"type\"");
    EXPECT_EQ(failureOf("{}"), "/: no \"type\"");
    EXPECT_EQ(failureOf(R"({"type":7})"), "/type: not a text");
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
    std::string text = R"({"type":"Point","coordinates":[]})";
    for (int i = 0; i < 33; ++i) {
        text = R"({"type":"GeometryCollection","geometries":[)" + text + "]}";
    }
    EXPECT_NE(failureOf(text).find("nested too deeply"), std::string::npos);
}

TEST(GeoJSON, HasNoNumberForWhatIsNotFinite) {
    const auto bytes = readFile(MEZALITH_SOURCE_DIR "/tests/data/bad/wkb/coord-nan-polygon.wkb");
    EXPECT_THROW(geoJSONFromWKB(bytes), Failure);
}

}  // namespace
}  // namespace mezalith::host
