// SPDX-License-Identifier: MIT
#include "mezalith/geometry/test_support.hpp"
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/nearest_point.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>

#include <cmath>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using test::square;
using Nearest = std::optional<MzNearestPoint>;

void expectNearest(const Nearest& nearest, MzPoint point, double distance) {
    ASSERT_TRUE(nearest);
    EXPECT_EQ(nearest->point.x, point.x);
    EXPECT_EQ(nearest->point.y, point.y);
    EXPECT_EQ(nearest->distance, distance);
}

Nearest onLine(test::Points points, MzPoint to) {
    const auto line = test::recordOf<MzLineString>(points);
    return MzNearestPointOf(&line, to);
}

Nearest onPolygon(const test::Rings& rings, MzPoint to) {
    test::OwnedPolygon owned(rings);
    const MzPolygon polygon = owned.record();
    return MzNearestPointOf(&polygon, to);
}

TEST(NearestPoint, OfALineLiesOnASideOrAnEnd) {
    const test::Points line{{0, 0}, {10, 0}, {10, 10}};
    expectNearest(onLine(line, {4, 3}), {4, 0}, 3);
    expectNearest(onLine(line, {-3, -4}), {0, 0}, 5);
    expectNearest(onLine(line, {13, 14}), {10, 10}, 5);
    expectNearest(onLine(line, {12, 5}), {10, 5}, 2);
}

TEST(NearestPoint, OfSeveralIsThatOfTheFirstPart) {
    expectNearest(onLine({{0, 0}, {4, 0}, {4, 4}, {0, 4}}, {2, 2}), {2, 0}, 2);
}

TEST(NearestPoint, OfALineWithoutLengthIsItsPoint) {
    expectNearest(onLine({{1, 1}}, {1, 4}), {1, 1}, 3);
    expectNearest(onLine({{1, 1}, {1, 1}}, {1, 4}), {1, 1}, 3);
}

TEST(NearestPoint, OfPoints) {
    test::Points points{{0, 0}, {3, 0}, {9, 9}};
    const auto record = test::recordOf<MzMultiPoint>(points);
    expectNearest(MzNearestPointOf(&record, {3, 2}), {3, 0}, 2);
}

TEST(NearestPoint, OfAPolygonIsThePointItselfInside) {
    const test::Rings rings{square(0, 0, 10), square(4, 4, 2)};
    expectNearest(onPolygon(rings, {1, 2}), {1, 2}, 0);
    expectNearest(onPolygon(rings, {12, 5}), {10, 5}, 2);
    expectNearest(onPolygon(rings, {4.5, 5}), {4, 5}, 0.5);
    expectNearest(onPolygon(rings, {10, 5}), {10, 5}, 0);
}

TEST(NearestPoint, ClosesOpenRings) {
    expectNearest(onPolygon({{{0, 0}, {4, 0}, {4, 4}, {0, 4}}}, {-1, 2}), {0, 2}, 1);
}

TEST(NearestPoint, OfMembersIsTheNearestOfAll) {
    test::OwnedMultiPolygon owned({{square(0, 0, 1)}, {square(5, 0, 1)}});
    const MzMultiPolygon polygons = owned.record();
    expectNearest(MzNearestPointOf(&polygons, {4, 0.5}), {5, 0.5}, 1);
    expectNearest(MzNearestPointOf(&polygons, {5.5, 0.5}), {5.5, 0.5}, 0);
    test::Points low{{0, 0}, {9, 0}};
    test::Points high{{0, 5}, {9, 5}};
    std::vector<MzLineString> lines{test::recordOf<MzLineString>(low),
                                    test::recordOf<MzLineString>(high)};
    const MzMultiLineString record{2, lines.data()};
    expectNearest(MzNearestPointOf(&record, {4, 4}), {4, 5}, 1);
}

TEST(NearestPoint, OfNothingIsNone) {
    EXPECT_FALSE(MzNearestPointOf(static_cast<const MzLineString*>(nullptr), {0, 0}));
    EXPECT_FALSE(MzNearestPointOf(static_cast<const MzMultiPoint*>(nullptr), {0, 0}));
    EXPECT_FALSE(MzNearestPointOf(static_cast<const MzMultiLineString*>(nullptr), {0, 0}));
    EXPECT_FALSE(MzNearestPointOf(static_cast<const MzPolygon*>(nullptr), {0, 0}));
    EXPECT_FALSE(MzNearestPointOf(static_cast<const MzMultiPolygon*>(nullptr), {0, 0}));
    EXPECT_FALSE(MzNearestPointOf(static_cast<const MzGeometry*>(nullptr), {0, 0}));
    EXPECT_FALSE(onLine({}, {0, 0}));
    EXPECT_FALSE(onPolygon({}, {0, 0}));
}

TEST(NearestPoint, OfOrToWhatIsNotFiniteIsNone) {
    const double nan = std::nan("");
    EXPECT_FALSE(onLine({{0, 0}, {1, 0}}, {nan, 0}));
    EXPECT_FALSE(onLine({{nan, 0}}, {0, 0}));
    expectNearest(onLine({{nan, 0}, {2, 0}, {4, 0}}, {3, 1}), {3, 0}, 1);
}

TEST(NearestPoint, AsksEveryKindOfGeometry) {
    test::Points points{{0, 0}, {4, 0}};
    test::OwnedPolygon owned({square(0, 0, 1)});
    test::OwnedMultiPolygon several({{square(0, 0, 1)}});
    const MzPoint to{2, 3};
    expectNearest(MzNearestPointOf(MzPointGeometry::geometryWithPoint({2, 1}).get(), to), {2, 1},
                  2);
    expectNearest(MzNearestPointOf(MzLineStringGeometry::geometryWithLineString(
                                       test::recordOf<MzLineString>(points))
                                       .get(),
                                   to),
                  {2, 0}, 3);
    EXPECT_TRUE(MzNearestPointOf(
        MzMultiPointGeometry::geometryWithMultiPoint(test::recordOf<MzMultiPoint>(points)).get(),
        to));
    expectNearest(
        MzNearestPointOf(MzPolygonGeometry::geometryWithPolygon(owned.record()).get(), {1, 3}),
        {1, 1}, 2);
    expectNearest(
        MzNearestPointOf(MzMultiPolygonGeometry::geometryWithMultiPolygon(several.record()).get(),
                         {1, 3}),
        {1, 1}, 2);
    MzGeometry abstract;
    EXPECT_FALSE(MzNearestPointOf(&abstract, to));
}

}  // namespace
}  // namespace mezalith
