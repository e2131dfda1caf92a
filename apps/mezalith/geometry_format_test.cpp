// SPDX-License-Identifier: MIT
#include "apps/mezalith/geometry_format.hpp"

#include "apps/mezalith/arguments.hpp"
#include "host/failure_of.hpp"

#include <string>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

using namespace std::string_view_literals;

std::span<const std::byte> bytesOf(std::string_view text) {
    return std::as_bytes(std::span(text.data(), text.size()));
}

GivenGeometry read(std::string_view text) {
    return readGeometry(bytesOf(text), likelyFormatOf(bytesOf(text)));
}

std::string rewritten(std::string_view text, std::string_view form) {
    GeometryOutput output = geometryOutputArgument("--to", form);
    if (output.format == GeometryFormat::Binary) output.format = GeometryFormat::Digits;
    const auto bytes = writtenGeometry(*read(text).reading.geometry.record(), output);
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

TEST(GeometryFormat, IsToldByTheFirstByte) {
    EXPECT_EQ(likelyFormatOf(bytesOf("POINT(1 2)")), GeometryFormat::WKT);
    EXPECT_EQ(likelyFormatOf(bytesOf("\n srid=1;point(1 2)")), GeometryFormat::WKT);
    EXPECT_EQ(likelyFormatOf(bytesOf("GEOMETRYCOLLECTION EMPTY")), GeometryFormat::WKT);
    EXPECT_EQ(likelyFormatOf(bytesOf("GP\0\1"sv)), GeometryFormat::Binary);
    EXPECT_EQ(likelyFormatOf(bytesOf("\1\1\0\0\0"sv)), GeometryFormat::Binary);
    EXPECT_EQ(likelyFormatOf({}), GeometryFormat::Binary);
    EXPECT_EQ(likelyFormatOf(bytesOf("0101")), GeometryFormat::Digits);
    EXPECT_EQ(likelyFormatOf(bytesOf("0x01")), GeometryFormat::Digits);
    EXPECT_EQ(likelyFormatOf(bytesOf("\\x01")), GeometryFormat::Digits);
    EXPECT_EQ(likelyFormatOf(bytesOf(" {")), GeometryFormat::GeoJSON);
}

TEST(GeometryFormat, ReadsWhatItWrites) {
    for (const char* form : {"wkb", "iso", "ewkb", "gpkg", "wkt", "geojson"}) {
        const std::string text = rewritten("LINESTRING (1 2, 3 4.5)", form);
        EXPECT_EQ(text.back(), '\n') << form;
        EXPECT_EQ(rewritten(text, "wkt"), "LINESTRING (1 2, 3 4.5)\n") << form;
    }
    EXPECT_EQ(rewritten("POINT(1 2)", "wkb"), "0101000000000000000000f03f0000000000000040\n");
    EXPECT_EQ(rewritten("POINT(1 2)", "geojson"), "{\"type\":\"Point\",\"coordinates\":[1,2]}\n");
}

TEST(GeometryFormat, SkipsAByteOrderMark) {
    for (const char* form : {"wkb", "wkt", "geojson"}) {
        const std::string text = "\xef\xbb\xbf" + rewritten("POINT (1 2)", form);
        EXPECT_EQ(rewritten(text, "wkt"), "POINT (1 2)\n") << form;
    }
}

TEST(GeometryFormat, TellsWhatTheBytesSay) {
    const GivenGeometry ewkb = read("01e9030000000000000000f03f00000000000000400000000000000840ff");
    EXPECT_EQ(formNameOf(ewkb), "ISO");
    EXPECT_EQ(dimensionsOf(ewkb.reading), "XYZ");
    EXPECT_EQ(ewkb.reading.length, 29u);
    EXPECT_EQ(ewkb.size, 30u);
    const GivenGeometry wkt = read("SRID=4326;POINT ZM (1 2 3 4)");
    EXPECT_EQ(formNameOf(wkt), "WKT");
    EXPECT_EQ(wkt.reading.srid, 4326);
    EXPECT_EQ(wkt.reading.length, wkt.size);
}

TEST(GeometryFormat, SaysWhatIsWrong) {
    EXPECT_EQ(testing::failureOf([] { read("POINT(1"); }),
              "byte 7: expected a number, found the end of the text");
    EXPECT_EQ(
        testing::failureOf([] { read("01xx"); }),
        "this is not a geometry: hexadecimal digits: \"x\" at character 2 is not hexadecimal");
    EXPECT_THROW(geometryOutputArgument("--to", "kml"), UsageError);
    EXPECT_THROW(geometryFormatArgument("--from", "wkb"), UsageError);
}

}  // namespace
}  // namespace mezalith::app
