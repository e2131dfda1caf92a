// SPDX-License-Identifier: MIT
#include "mezalith/geometry/test_support.hpp"
#include <mezalith/geometry/area.hpp>
#include <mezalith/geometry/geos/simple_features.hpp>
#include <mezalith/geometry/geos/validity.hpp>
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Geometry = std::shared_ptr<MzGeometry>;

Geometry polygonOf(test::Points ring) {
    return MzPolygonGeometry::initWithPolygon(test::OwnedPolygon({std::move(ring)}).record());
}

Geometry squareAt(double x, double y) { return polygonOf(test::square(x, y, 4)); }

/// Of the one polygon that the operation made.
double areaOf(const std::optional<MzGeometries>& made) {
    if (!made || made->size() != 1) return -1;
    const auto polygon = std::dynamic_pointer_cast<MzPolygonGeometry>(made->front());
    return polygon == nullptr ? -1 : MzArea(polygon->polygonGeometry());
}

// Two squares of side 4 that share a square of side 2.
const Geometry kOne = squareAt(0, 0);
const Geometry kOther = squareAt(2, 2);

TEST(ChoosingOperationsOfSimpleFeatures, TheSettledOnesMakeNothing) {
    EXPECT_EQ(kOne->unionGeom(kOther.get()), nullptr);
    EXPECT_EQ(areaOf(MzUnion(kOne.get(), kOther.get())), 28);
    EXPECT_EQ(kOne->intersection(kOther.get()), nullptr);
    EXPECT_EQ(areaOf(MzIntersection(kOne.get(), kOther.get())), 4);
    EXPECT_EQ(kOne->difference(kOther.get()), nullptr);
    EXPECT_EQ(areaOf(MzDifference(kOne.get(), kOther.get())), 12);
    EXPECT_EQ(kOne->buffer(1), nullptr);
    EXPECT_NEAR(areaOf(MzBuffer(kOne.get(), 1, 64)), 32 + 3.1415926, 1e-3);
    for (const Geometry& made : {kOne->symmetricDifference(kOther.get()), kOne->envelope(),
                                 kOne->boundary(), kOne->convexHull()}) {
        EXPECT_EQ(made, nullptr);
    }
    EXPECT_EQ(kOne->asText(), "");
}

TEST(ChoosingOperationsOfSimpleFeatures, TheSettledOnesSayNo) {
    EXPECT_FALSE(kOne->intersects(kOther.get()));
    EXPECT_EQ(MzIntersects(kOne.get(), kOther.get()), true);
    for (const bool answer :
         {kOne->isEmpty(), kOne->isSimple(), kOne->equals(kOne.get()), kOne->disjoin(kOther.get()),
          kOne->touches(kOther.get()), kOne->crosses(kOther.get()), kOne->within(kOne.get()),
          kOne->overlaps(kOther.get())}) {
        EXPECT_FALSE(answer);
    }
    const Geometry far = squareAt(7, 8);  // 3 beside and 4 above
    EXPECT_EQ(kOne->distance(far.get()), 0);
    EXPECT_EQ(MzDistance(kOne.get(), far.get()), 5);
}

TEST(ChoosingOperationsOfSimpleFeatures, TheSettledPolygonsContainPointsOnly) {
    const Geometry point = MzPointGeometry::initWithPoint({1, 2});
    EXPECT_TRUE(kOne->contains(point.get()));
    EXPECT_EQ(MzContains(kOne.get(), point.get()), true);
    const Geometry inner = polygonOf(test::square(1, 1, 2));
    EXPECT_FALSE(kOne->contains(inner.get()));
    EXPECT_EQ(MzContains(kOne.get(), inner.get()), true);
}

TEST(ChoosingOperationsOfSimpleFeatures, TheCounterpartsSayWhyTheyCannot) {
    std::string why;
    EXPECT_FALSE(MzUnion(kOne.get(), nullptr, &why));
    EXPECT_FALSE(why.empty());
}

TEST(ChoosingOperationsOfSimpleFeatures, SomeHaveNoSettledName) {
    test::Points line{{0, 0}, {2, 0.1}, {4, 0}};
    const auto bent = MzLineStringGeometry::initWithLineString(test::recordOf<MzLineString>(line));
    const auto simplified = MzSimplified(bent.get(), 0.5);
    ASSERT_TRUE(simplified && simplified->size() == 1);
    const auto straight = std::dynamic_pointer_cast<MzLineStringGeometry>(simplified->front());
    ASSERT_NE(straight, nullptr);
    EXPECT_EQ(straight->lineStringGeometry()->count, 2u);
    const Geometry bowTie = polygonOf({{0, 0}, {2, 2}, {2, 0}, {0, 2}, {0, 0}});
    const auto defect = MzDefectOf(bowTie.get());
    ASSERT_TRUE(defect);
    EXPECT_EQ(defect->place.x, 1);
    EXPECT_EQ(defect->place.y, 1);
    EXPECT_FALSE(MzDefectOf(MzRepaired(bowTie).get()));
}

}  // namespace
}  // namespace mezalith
