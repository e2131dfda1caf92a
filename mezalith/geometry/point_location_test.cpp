// SPDX-License-Identifier: MIT
#include "mezalith/geometry/test_support.hpp"
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/point_location.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using enum MzPointLocation;
using test::square;

MzPointLocation locate(const test::Rings& rings, MzPoint point) {
    test::OwnedPolygon owned(rings);
    const MzPolygon polygon = owned.record();
    return MzLocatePoint(&polygon, point);
}

const test::Rings kSquareWithHole{square(0, 0, 10), square(4, 4, 2)};

TEST(PointLocation, KnowsInsideBorderAndOutside) {
    EXPECT_EQ(locate(kSquareWithHole, {1, 1}), Inside);
    EXPECT_EQ(locate(kSquareWithHole, {5, 5}), Outside);
    EXPECT_EQ(locate(kSquareWithHole, {11, 5}), Outside);
    EXPECT_EQ(locate(kSquareWithHole, {-1, 0}), Outside);
    EXPECT_EQ(locate(kSquareWithHole, {-1, 5}), Outside);
}

TEST(PointLocation, HasCornersAndSidesOnTheBorder) {
    for (const MzPoint p : {MzPoint{0, 0},
                            {10, 0},
                            {10, 10},
                            {0, 10},
                            {5, 0},
                            {5, 10},
                            {0, 5},
                            {10, 5},
                            {4, 5},
                            {6, 6},
                            {5, 4}}) {
        EXPECT_EQ(locate(kSquareWithHole, p), OnBorder) << p.x << ' ' << p.y;
    }
}

TEST(PointLocation, DoesNotCareHowRingsRun) {
    test::Rings turned = kSquareWithHole;
    std::ranges::reverse(turned[1]);
    EXPECT_EQ(locate(turned, {5, 5}), Outside);
    EXPECT_EQ(locate(turned, {1, 1}), Inside);
}

TEST(PointLocation, ClosesOpenRings) {
    EXPECT_EQ(locate({{{0, 0}, {4, 0}, {0, 4}}}, {1, 1}), Inside);
    EXPECT_EQ(locate({{{0, 0}, {4, 0}, {0, 4}}}, {0, 2}), OnBorder);
}

TEST(PointLocation, CountsACornerTouchedByTheRayOnce) {
    const test::Rings diamond{{{0, -2}, {2, 0}, {0, 2}, {-2, 0}, {0, -2}}};
    EXPECT_EQ(locate(diamond, {-1, 0}), Inside);
    EXPECT_EQ(locate(diamond, {-3, 0}), Outside);
    EXPECT_EQ(locate(diamond, {-1, 2}), Outside);
    EXPECT_EQ(locate(diamond, {-1, -2}), Outside);
}

TEST(PointLocation, TellsNeighboursOfASlantingSideApart) {
    const test::Rings triangle{{{0, 0}, {3, 1}, {0, 1}, {0, 0}}};
    const double third = 1.0 / 3;  // a little less than a third, so just below the side
    EXPECT_EQ(locate(triangle, {1, third}), Outside);
    EXPECT_EQ(locate(triangle, {1, std::nextafter(third, 1)}), Inside);
    EXPECT_EQ(locate(triangle, {1.5, 0.5}), OnBorder);
}

TEST(PointLocation, LeavesOutWhatIsNotFinite) {
    const double nan = std::nan("");
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(locate({{{nan, 0}, {0, 0}, {4, 0}, {infinity, 1}, {4, 4}, {0, 4}, {0, nan}}}, {1, 1}),
              Inside);
    EXPECT_EQ(locate({{{nan, 0}, {nan, 1}}}, {0, 0}), Outside);
    EXPECT_EQ(locate(kSquareWithHole, {nan, 1}), Outside);
    EXPECT_EQ(locate(kSquareWithHole, {infinity, 1}), Outside);
}

TEST(PointLocation, OfNothingIsOutside) {
    EXPECT_EQ(MzLocatePoint(static_cast<const MzPolygon*>(nullptr), {0, 0}), Outside);
    EXPECT_EQ(MzLocatePoint(static_cast<const MzMultiPolygon*>(nullptr), {0, 0}), Outside);
    EXPECT_EQ(MzLocatePoint(static_cast<const MzGeometry*>(nullptr), {0, 0}), Outside);
    EXPECT_EQ(locate({}, {0, 0}), Outside);
    EXPECT_EQ(locate({{}}, {0, 0}), Outside);
    MzPolygon absent{3, nullptr};
    EXPECT_EQ(MzLocatePoint(&absent, {0, 0}), Outside);
}

TEST(PointLocation, OfASinglePointIsItsBorder) {
    EXPECT_EQ(locate({{{2, 2}}}, {2, 2}), OnBorder);
    EXPECT_EQ(locate({{{2, 2}}}, {1, 2}), Outside);
}

TEST(PointLocation, IsInsideAMemberRatherThanOnAnothersBorder) {
    test::OwnedMultiPolygon owned({{square(0, 0, 4)}, {square(2, 2, 4)}});
    const MzMultiPolygon both = owned.record();
    EXPECT_EQ(MzLocatePoint(&both, {2, 3}), Inside);
    EXPECT_EQ(MzLocatePoint(&both, {0, 3}), OnBorder);
    EXPECT_EQ(MzLocatePoint(&both, {5, 5}), Inside);
    EXPECT_EQ(MzLocatePoint(&both, {9, 3}), Outside);
}

TEST(PointLocation, AsksGeometryObjects) {
    test::OwnedPolygon owned(kSquareWithHole);
    const auto polygon = MzPolygonGeometry::geometryWithPolygon(owned.record());
    EXPECT_EQ(MzLocatePoint(polygon.get(), {1, 1}), Inside);
    test::OwnedMultiPolygon several({kSquareWithHole});
    const auto polygons = MzMultiPolygonGeometry::geometryWithMultiPolygon(several.record());
    EXPECT_EQ(MzLocatePoint(polygons.get(), {4, 5}), OnBorder);
    const auto point = MzPointGeometry::geometryWithPoint({1, 1});
    EXPECT_EQ(MzLocatePoint(point.get(), {1, 1}), Outside);
}

}  // namespace
}  // namespace mezalith
