// SPDX-License-Identifier: MIT
#include "mezalith/geometry/test_support.hpp"
#include <mezalith/geometry/area.hpp>
#include <mezalith/geometry/geos/validity.hpp>
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/geometry/wkt_reader.hpp>
#include <mezalith/geometry/wkt_writer.hpp>

#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Geometry = std::shared_ptr<MzGeometry>;
using test::square;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
const test::Points kBowTie{{0, 0}, {4, 4}, {4, 0}, {0, 4}, {0, 0}};

Geometry polygonOf(const test::Rings& rings) {
    test::OwnedPolygon owned(rings);
    return MzPolygonGeometry::geometryWithPolygon(owned.record());
}

Geometry polygonsOf(const std::vector<test::Rings>& polygons) {
    test::OwnedMultiPolygon owned(polygons);
    return MzMultiPolygonGeometry::geometryWithMultiPolygon(owned.record());
}

Geometry lineOf(test::Points points) {
    return MzLineStringGeometry::geometryWithLineString(test::recordOf<MzLineString>(points));
}

void expectDefect(const Geometry& geometry, const std::string& reason, MzPoint place) {
    const auto defect = MzDefectOf(geometry.get());
    ASSERT_TRUE(defect) << reason;
    EXPECT_EQ(defect->reason, reason);
    EXPECT_EQ(defect->place.x, place.x) << reason;
    EXPECT_EQ(defect->place.y, place.y) << reason;
}

double areaOf(const Geometry& geometry) {
    if (const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(geometry.get())) {
        return MzArea(polygon->polygonGeometry());
    }
    const auto* polygons = dynamic_cast<const MzMultiPolygonGeometry*>(geometry.get());
    return polygons != nullptr ? MzArea(polygons->multiPolygonGeometry()) : kNaN;
}

/// Sound after repair, with this area.
void expectRepaired(const Geometry& geometry, double area) {
    const Geometry repaired = MzRepaired(geometry);
    ASSERT_NE(repaired, nullptr);
    EXPECT_FALSE(MzDefectOf(repaired.get()));
    EXPECT_EQ(areaOf(repaired), area);
}

TEST(Validity, OfSoundGeometriesHasNoDefect) {
    EXPECT_FALSE(MzDefectOf(polygonOf({square(0, 0, 10), square(4, 4, 2)}).get()));
    EXPECT_FALSE(MzDefectOf(polygonsOf({{square(0, 0, 2)}, {square(2, 2, 2)}}).get()));
    EXPECT_FALSE(MzDefectOf(lineOf({{0, 0}, {1, 1}}).get()));
    EXPECT_FALSE(MzDefectOf(MzPointGeometry::geometryWithPoint({1, 2}).get()));
    EXPECT_FALSE(MzDefectOf(polygonOf({}).get()));
}

TEST(Validity, SaysWhatIsWrongAndWhere) {
    expectDefect(polygonOf({kBowTie}), "Self-intersection", {2, 2});
    expectDefect(polygonOf({square(0, 0, 2), square(5, 5, 1)}), "Hole lies outside shell", {5, 5});
    expectDefect(polygonOf({{{0, 0}, {4, 0}, {4, 4}}}), "Ring is not closed", {4, 4});
    expectDefect(polygonOf({{{3, 5}, {4, 0}, {3, 5}}}), "Too few points in geometry component",
                 {3, 5});
    expectDefect(lineOf({{7, 8}}), "Too few points in geometry component", {7, 8});
    expectDefect(lineOf({{7, 8}, {7, 8}}), "Too few points in geometry component", {7, 8});
    expectDefect(polygonsOf({{square(0, 0, 9)}, {square(1, 1, 2)}}), "Nested shells", {1, 1});
}

TEST(Validity, FindsCoordinatesThatAreNotFinite) {
    const auto defect = MzDefectOf(lineOf({{0, 0}, {kNaN, 3}}).get());
    ASSERT_TRUE(defect);
    EXPECT_EQ(defect->reason, "Invalid Coordinate");
    EXPECT_TRUE(std::isnan(defect->place.x));
    EXPECT_EQ(defect->place.y, 3);
    EXPECT_TRUE(MzDefectOf(MzPointGeometry::geometryWithPoint({INFINITY, 0}).get()));
}

TEST(Validity, OfNothingIsADefectNowhere) {
    const auto defect = MzDefectOf(nullptr);
    ASSERT_TRUE(defect);
    EXPECT_EQ(defect->reason, "Without coordinates");
    EXPECT_TRUE(std::isnan(defect->place.x));
    const MzGeometry abstract;
    EXPECT_TRUE(MzDefectOf(&abstract));
}

TEST(Validity, LooksIntoEveryMember) {
    const auto reason = [](const std::string& text) {
        const MzWKTReading reading = MzReadWKT(text);
        EXPECT_TRUE(reading) << text;
        return MzDefectOf(*reading.geometry.record()).value_or(MzDefect{"", {0, 0}}).reason;
    };
    EXPECT_EQ(reason("MULTILINESTRING ((0 0, 1 1), (2 2))"),
              "Too few points in geometry component");
    EXPECT_EQ(reason("GEOMETRYCOLLECTION (POINT (1 1), POLYGON ((0 0, 1 0, 1 1)))"),
              "Ring is not closed");
    EXPECT_EQ(reason("GEOMETRYCOLLECTION (POLYGON ((0 0, 4 4, 4 0, 0 4, 0 0)))"),
              "Self-intersection");
    EXPECT_EQ(reason("GEOMETRYCOLLECTION (POINT EMPTY, MULTIPOINT (1 2, 3 4))"), "");
    EXPECT_EQ(reason("MULTILINESTRING ((0 0, 1 1), (2 2, 3 3))"), "");
}

TEST(Repair, KeepsTheTypeOrMakesItsMultiGeometry) {
    const auto repaired = [](const std::string& text) {
        const MzWKTReading reading = MzReadWKT(text);
        EXPECT_TRUE(reading) << text;
        const MzGeometryBlock block = MzRepaired(*reading.geometry.record());
        return block.record() != nullptr ? MzWKTOfGeometry(*block.record()) : "";
    };
    EXPECT_EQ(repaired("MULTIPOLYGON (((0 0, 4 0, 4 4)))"),
              "MULTIPOLYGON (((0 0, 4 4, 4 0, 0 0)))");
    EXPECT_EQ(repaired("POLYGON ((0 0, 4 0, 4 4))"), "POLYGON ((0 0, 4 4, 4 0, 0 0))");
    EXPECT_EQ(repaired("POLYGON ((0 0, 4 4, 4 0, 0 4, 0 0))").substr(0, 12), "MULTIPOLYGON");
    EXPECT_EQ(repaired("MULTILINESTRING ((0 0, 1 1), (2 2))"), "MULTILINESTRING ((0 0, 1 1))");
    EXPECT_EQ(repaired("GEOMETRYCOLLECTION (LINESTRING (5 5), POINT (1 2))"),
              "GEOMETRYCOLLECTION (POINT (1 2))");
    EXPECT_EQ(repaired("GEOMETRYCOLLECTION (LINESTRING (5 5))"), "");
    EXPECT_EQ(repaired("MULTIPOINT (1 2)"), "MULTIPOINT ((1 2))");
}

TEST(Repair, LeavesSoundGeometriesAlone) {
    const Geometry sound = polygonOf({square(0, 0, 2)});
    EXPECT_EQ(MzRepaired(sound), sound);
}

TEST(Repair, PartsWhatCrossesItself) { expectRepaired(polygonOf({kBowTie}), 8); }

TEST(Repair, SortsHolesAndOutlinesOut) {
    expectRepaired(polygonOf({square(0, 0, 4), square(3, 1, 2)}), 14);
    expectRepaired(polygonsOf({{square(0, 0, 4)}, {square(2, 2, 4)}}), 28);
}

TEST(Repair, ClosesRings) { expectRepaired(polygonOf({{{0, 0}, {4, 0}, {4, 4}, {0, 4}}}), 16); }

TEST(Repair, LeavesOutWhatIsNotFinite) {
    expectRepaired(polygonOf({{{0, 0}, {4, 0}, {kNaN, 1}, {4, 4}, {0, 4}, {0, 0}}}), 16);
    const Geometry line = MzRepaired(lineOf({{0, 0}, {kNaN, 3}, {1, 1}}));
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->geometryType(), 2u);
    EXPECT_FALSE(MzDefectOf(line.get()));
}

TEST(Repair, LeavesSparePartsOut) {
    expectRepaired(polygonOf({square(0, 0, 4), {{1, 1}, {2, 2}, {1, 1}}}), 16);
}

TEST(Repair, OfWhatHasNothingSoundIsNull) {
    EXPECT_EQ(MzRepaired(polygonOf({{{0, 0}, {1, 1}, {0, 0}, {0, 0}}})), nullptr);
    EXPECT_EQ(MzRepaired(lineOf({{7, 8}, {7, 8}})), nullptr);
    EXPECT_EQ(MzRepaired(lineOf({{7, 8}})), nullptr);
    EXPECT_EQ(MzRepaired(MzPointGeometry::geometryWithPoint({kNaN, 1})), nullptr);
    EXPECT_EQ(MzRepaired(nullptr), nullptr);
}

}  // namespace
}  // namespace mezalith
