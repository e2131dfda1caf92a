// SPDX-License-Identifier: MIT
#include <mezalith/geometry/geometry_model.hpp>
#include <mezalith/geometry/wkt_reader.hpp>
#include <mezalith/geometry/wkt_writer.hpp>

#include <cmath>
#include <string>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

std::string rewritten(const std::string& text) {
    const MzWKTReading reading = MzReadWKT(text);
    return reading ? MzWKTOfGeometry(*reading.geometry.record()) : reading.error.text();
}

std::string nested(int levels) {
    std::string text;
    for (int i = 0; i < levels; ++i) text += "GEOMETRYCOLLECTION(";
    return text + "POINT(1 2)" + std::string(static_cast<std::size_t>(levels), ')');
}

// --- what it reads

TEST(ReadWKT, ReadsEveryType) {
    for (const char* text :
         {"POINT (1 2.5)", "LINESTRING (0 0, 1 -2)",
          "POLYGON ((0 0, 4 0, 0 4, 0 0), (1 1, 2 1, 1 2, 1 1))", "MULTIPOINT ((1 2), (3 4))",
          "MULTILINESTRING ((0 0, 1 1), (2 2, 3 3))",
          "MULTIPOLYGON (((0 0, 4 0, 0 4, 0 0)), ((9 9, 8 8, 7 9, 9 9)))",
          "GEOMETRYCOLLECTION (POINT (1 2), GEOMETRYCOLLECTION (LINESTRING (0 0, 1 1)), "
          "MULTIPOINT ((5 6)))"}) {
        EXPECT_EQ(rewritten(text), text);
    }
}

TEST(ReadWKT, ReadsWhatIsEmpty) {
    for (const char* text :
         {"POINT EMPTY", "LINESTRING EMPTY", "POLYGON EMPTY", "MULTIPOINT EMPTY",
          "MULTILINESTRING EMPTY", "MULTIPOLYGON EMPTY", "GEOMETRYCOLLECTION EMPTY",
          "MULTIPOINT ((1 2), EMPTY)", "POLYGON (EMPTY, (0 0, 1 1))",
          "MULTILINESTRING (EMPTY, (0 0, 1 1))", "MULTIPOLYGON (EMPTY, ((0 0, 1 1)))",
          "GEOMETRYCOLLECTION (POINT EMPTY, POLYGON EMPTY)"}) {
        EXPECT_EQ(rewritten(text), text);
    }
    const MzWKTReading point = MzReadWKT("point empty");
    ASSERT_TRUE(point);
    EXPECT_TRUE(std::isnan(point.geometry.record()->points[0].x));
}

TEST(ReadWKT, CaresForNeitherCaseNorBlanks) {
    EXPECT_EQ(rewritten(" \n linestring\t( 0   0,1 1 ,\r\n+2 -2.50e0 ) "),
              "LINESTRING (0 0, 1 1, 2 -2.5)");
    EXPECT_EQ(rewritten("MultiPoint(1 2,3 4)"), "MULTIPOINT ((1 2), (3 4))");
}

TEST(ReadWKT, LeavesOutZAndM) {
    for (const char* text :
         {"POINT Z (1 2 3)", "POINTZ(1 2 3)", "point m (1 2 3)", "POINT ZM (1 2 3 4)",
          "POINTZM(1 2 3 4)", "POINT (1 2 3)", "POINT (1 2 3 4)"}) {
        EXPECT_EQ(rewritten(text), "POINT (1 2)") << text;
    }
    EXPECT_EQ(rewritten("MULTIPOINT Z (1 2 3, (4 5 6), EMPTY)"),
              "MULTIPOINT ((1 2), (4 5), EMPTY)");
    EXPECT_EQ(rewritten("GEOMETRYCOLLECTION Z (POINT Z (1 2 3), LINESTRING M EMPTY)"),
              "GEOMETRYCOLLECTION (POINT (1 2), LINESTRING EMPTY)");
}

TEST(ReadWKT, KeepsALeadingSRID) {
    const MzWKTReading reading = MzReadWKT("srid = 25833; POINT(1 2)");
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading.srid, 25833);
    EXPECT_FALSE(MzReadWKT("POINT(1 2)").srid);
}

TEST(ReadWKT, ReadsCollectionsNestedAHundredDeep) {
    EXPECT_TRUE(MzReadWKT(nested(100)));
    EXPECT_EQ(rewritten(nested(101)),
              "byte 1900: expected at most 100 collections in each other, found "
              "\"GEOMETRYCOLLECTION\"");
    EXPECT_FALSE(MzReadWKT(nested(100'000)));
}

// --- what it refuses

TEST(ReadWKT, NamesTheByteThatIsWrong) {
    EXPECT_EQ(rewritten(""), "byte 0: expected a type of geometry, found the end of the text");
    EXPECT_EQ(rewritten("  CIRCLE (0 0, 1)"),
              "byte 2: expected a type of geometry, found \"CIRCLE\"");
    EXPECT_EQ(rewritten("POINTX (0 0)"), "byte 0: expected a type of geometry, found \"POINTX\"");
    EXPECT_EQ(rewritten("POINT 1 2"), "byte 6: expected \"(\" or EMPTY, found \"1\"");
    EXPECT_EQ(rewritten("POINT (1)"), "byte 8: expected a number, found \")\"");
    EXPECT_EQ(rewritten("POINT Z (1 2)"), "byte 12: expected a number, found \")\"");
    EXPECT_EQ(rewritten("POINT (1 2 3 4 5)"), "byte 15: expected \")\", found \"5\"");
    EXPECT_EQ(rewritten("LINESTRING (1 2, 3 4"),
              "byte 20: expected \",\" or \")\", found the end of the text");
    EXPECT_EQ(rewritten("LINESTRING (1 2, 3 x4)"), "byte 19: expected a number, found \"x4\"");
    EXPECT_EQ(rewritten("POINT (1 2e999)"), "byte 9: expected a number, found \"2e999\"");
    EXPECT_EQ(rewritten("POINT (1 2) POINT"),
              "byte 12: expected the end of the text, found \"POINT\"");
    EXPECT_EQ(rewritten("MULTIPOINT (POINT (1 2))"),
              "byte 12: expected \"(\" or EMPTY, found \"POINT\"");
    EXPECT_EQ(rewritten("SRID 4326;POINT(1 2)"), "byte 5: expected \"=\", found \"4326\"");
    EXPECT_EQ(rewritten("SRID=x;POINT(1 2)"), "byte 5: expected an SRID, found \"x\"");
    EXPECT_EQ(rewritten("SRID=1 POINT(1 2)"), "byte 7: expected \";\", found \"POINT\"");
}

TEST(ReadWKT, RefusesEveryPrefix) {
    const std::string text =
        "GEOMETRYCOLLECTION (POINT (1 2), POLYGON ((0 0, 4 0, 0 4, 0 0)), MULTIPOINT (1 2, EMPTY))";
    for (std::size_t length = 0; length < text.size(); ++length) {
        ASSERT_FALSE(MzReadWKT(std::string_view(text).substr(0, length))) << length;
    }
    EXPECT_TRUE(MzReadWKT(text));
}

}  // namespace
}  // namespace mezalith
