// SPDX-License-Identifier: MIT
#include <mezalith/geometry/geometry_record.hpp>
#include <mezalith/geometry/test_support.hpp>

#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::vector<std::size_t> runLengths(const MzGeometryRecord& geometry) {
    std::vector<std::size_t> lengths;
    MzVisitRuns(geometry, [&](std::span<const MzPoint> run) { lengths.push_back(run.size()); });
    return lengths;
}

TEST(GeometryTypeName, KnowsTheSevenTypes) {
    EXPECT_EQ(MzGeometryTypeName(3), "Polygon");
    EXPECT_EQ(MzGeometryTypeName(MzGeometryTypeGeometryCollection), "GeometryCollection");
    EXPECT_EQ(MzGeometryTypeName(0), "");
    EXPECT_EQ(MzGeometryTypeName(8), "");
    for (std::uint32_t type = 1; type <= 7; ++type) {
        EXPECT_EQ(MzGeometryTypeNamed(MzGeometryTypeName(type)), type);
    }
    EXPECT_EQ(MzGeometryTypeNamed("MULTIPOINT"), 4u);
    EXPECT_EQ(MzGeometryTypeNamed("Circle"), 0u);
    EXPECT_EQ(MzGeometryTypeNamed(""), 0u);
}

TEST(GeometryRecord, KnowsWhatMembersMustBe) {
    const std::vector<std::uint32_t> wanted{0, 0, 0, 0, 1, 2, 3, 0, 0};
    for (std::uint32_t type = 0; type < wanted.size(); ++type) {
        EXPECT_EQ(MzMemberTypeOf(type), wanted[type]) << type;
    }
}

TEST(GeometryRecord, IsAnyOtherRecord) {
    Points points = square(0, 0, 1);
    const auto line = geometryOf(recordOf<MzLineString>(points));
    EXPECT_EQ(line.type, 2u);
    EXPECT_EQ(lineStringOf(line).points, points.data());
    const auto multi = geometryOf(recordOf<MzMultiPoint>(points));
    EXPECT_EQ(multi.type, 4u);
    EXPECT_EQ(multiPointOf(multi).count, 5u);
    OwnedPolygon polygon({points});
    EXPECT_EQ(polygonOf(geometryOf(polygon.record())).rings, polygon.rings().data());
    OwnedMultiPolygon polygons({{points}, {}});
    EXPECT_EQ(geometryOf(polygons.record()).type, 6u);
    EXPECT_EQ(multiPolygonOf(geometryOf(polygons.record())).count, 2u);
}

TEST(VisitRuns, VisitsEveryRunInOrder) {
    Points line{{1, 2}, {3, 4}};
    MzLineString lines[] = {recordOf<MzLineString>(line), {9, nullptr}};
    OwnedPolygon polygon({square(0, 0, 4), {{1, 1}, {2, 1}, {1, 2}, {1, 1}}});
    OwnedMultiPolygon polygons({{square(0, 0, 1)}, {}});
    MzGeometryRecord members[] = {geometryOf(line.data()), geometryOf(MzMultiLineString{2, lines}),
                                  geometryOf(polygon.record()), geometryOf(polygons.record())};
    MzGeometryRecord inner = geometryOf(std::span(members));
    const MzGeometryRecord outer = geometryOf(std::span(&inner, 1));
    EXPECT_EQ(runLengths(outer), (std::vector<std::size_t>{1, 2, 0, 5, 4, 5}));
    EXPECT_TRUE(runLengths({.count = 4, .type = 0, .points = line.data()}).empty());
    EXPECT_TRUE(membersOf(nullptr).empty());
}

TEST(CornersOfGeometry, PassOverWhatIsNoNumber) {
    Points points{{kNaN, 50}, {1, 2}, {-3, 4}, {0, kNaN}};
    const auto corners = MzCornersOfGeometry(geometryOf(recordOf<MzMultiPoint>(points)));
    ASSERT_TRUE(corners);
    EXPECT_EQ(corners->low.x, -3);
    EXPECT_EQ(corners->low.y, 2);
    EXPECT_EQ(corners->high.x, 1);
    EXPECT_EQ(corners->high.y, 4);
    Points none{{kNaN, kNaN}};
    EXPECT_FALSE(MzCornersOfGeometry(geometryOf(none.data())));
}

}  // namespace
}  // namespace mezalith
