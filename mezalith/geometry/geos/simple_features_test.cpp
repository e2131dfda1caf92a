// SPDX-License-Identifier: MIT
#include "mezalith/geometry/test_support.hpp"
#include <mezalith/geometry/area.hpp>
#include <mezalith/geometry/geos/simple_features.hpp>
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>

#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <thread>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Geometry = std::shared_ptr<MzGeometry>;
using test::square;

Geometry polygonOf(const test::Rings& rings) {
    test::OwnedPolygon owned(rings);
    return MzPolygonGeometry::geometryWithPolygon(owned.record());
}

Geometry lineOf(test::Points points) {
    return MzLineStringGeometry::geometryWithLineString(test::recordOf<MzLineString>(points));
}

Geometry pointAt(double x, double y) { return MzPointGeometry::geometryWithPoint({x, y}); }

double areaOf(const Geometry& geometry) {
    if (const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(geometry.get())) {
        return MzArea(polygon->polygonGeometry());
    }
    const auto* polygons = dynamic_cast<const MzMultiPolygonGeometry*>(geometry.get());
    return polygons != nullptr ? MzArea(polygons->multiPolygonGeometry()) : 0;
}

const Geometry kLow = polygonOf({square(0, 0, 4)});
const Geometry kHigh = polygonOf({square(2, 2, 4)});
const Geometry kFar = polygonOf({square(9, 0, 1)});
const Geometry kRing = polygonOf({square(0, 0, 10), square(4, 4, 2)});

TEST(SimpleFeatures, TellWhatMeets) {
    EXPECT_EQ(MzIntersects(kLow.get(), kHigh.get()), true);
    EXPECT_EQ(MzIntersects(kLow.get(), kFar.get()), false);
    EXPECT_EQ(MzIntersects(kLow.get(), pointAt(4, 4).get()), true);
    EXPECT_EQ(MzIntersects(kRing.get(), pointAt(5, 5).get()), false);
    EXPECT_EQ(MzIntersects(lineOf({{-1, 2}, {9, 2}}).get(), kLow.get()), true);
}

TEST(SimpleFeatures, TellWhatContainsWhat) {
    EXPECT_EQ(MzContains(kRing.get(), polygonOf({square(1, 1, 2)}).get()), true);
    EXPECT_EQ(MzContains(kRing.get(), polygonOf({square(3, 3, 4)}).get()), false);
    EXPECT_EQ(MzContains(kLow.get(), pointAt(4, 4).get()), false);
    EXPECT_EQ(MzContains(kLow.get(), pointAt(1, 1).get()), true);
}

TEST(SimpleFeatures, MeasureDistances) {
    EXPECT_EQ(MzDistance(kLow.get(), kFar.get()), 5);
    EXPECT_EQ(MzDistance(kLow.get(), kHigh.get()), 0);
    EXPECT_EQ(MzDistance(pointAt(0, 0).get(), pointAt(3, 4).get()), 5);
}

TEST(SimpleFeatures, JoinCutAndTakeAway) {
    const auto both = MzUnion(kLow.get(), kHigh.get());
    const auto common = MzIntersection(kLow.get(), kHigh.get());
    const auto rest = MzDifference(kLow.get(), kHigh.get());
    ASSERT_TRUE(both && common && rest);
    ASSERT_EQ(both->size(), 1u);
    EXPECT_EQ(areaOf(both->front()), 28);
    EXPECT_EQ(areaOf(common->front()), 4);
    EXPECT_EQ(areaOf(rest->front()), 12);
}

TEST(SimpleFeatures, KeepHoles) {
    const auto half = MzIntersection(kRing.get(), polygonOf({square(0, 0, 8)}).get());
    ASSERT_TRUE(half);
    const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(half->front().get());
    ASSERT_NE(polygon, nullptr);
    EXPECT_EQ(ringsOf(polygon->polygonGeometry()).size(), 2u);
    EXPECT_EQ(areaOf(half->front()), 60);
}

TEST(SimpleFeatures, MakeNothingOfWhatIsApart) {
    const auto common = MzIntersection(kLow.get(), kFar.get());
    ASSERT_TRUE(common);
    EXPECT_TRUE(common->empty());
}

TEST(SimpleFeatures, KeepPolygonsTogetherAndLinesEach) {
    const auto polygons = MzUnion(kLow.get(), kFar.get());
    ASSERT_TRUE(polygons);
    ASSERT_EQ(polygons->size(), 1u);
    EXPECT_EQ(polygons->front()->geometryType(), 6u);
    EXPECT_EQ(areaOf(polygons->front()), 17);
    const auto lines = MzDifference(lineOf({{-2, 2}, {9, 2}}).get(), kLow.get());
    ASSERT_TRUE(lines);
    ASSERT_EQ(lines->size(), 2u);
    EXPECT_EQ(lines->front()->geometryType(), 2u);
    const auto points = MzUnion(pointAt(1, 2).get(), pointAt(3, 4).get());
    ASSERT_TRUE(points);
    ASSERT_EQ(points->size(), 1u);
    EXPECT_EQ(points->front()->geometryType(), 4u);
}

TEST(SimpleFeatures, TellPartsOfSeveralDimensionsApart) {
    const auto pieces = MzUnion(kLow.get(), lineOf({{9, 0}, {9, 1}}).get());
    ASSERT_TRUE(pieces);
    ASSERT_EQ(pieces->size(), 2u);
    EXPECT_EQ((*pieces)[0]->geometryType(), 2u);
    EXPECT_EQ((*pieces)[1]->geometryType(), 3u);
}

TEST(SimpleFeatures, BufferIsRound) {
    const auto circle = MzBuffer(pointAt(0, 0).get(), 2, 64);
    ASSERT_TRUE(circle && circle->size() == 1);
    EXPECT_NEAR(areaOf(circle->front()), 4 * std::numbers::pi, 0.01);
    const auto gone = MzBuffer(kLow.get(), -3);
    ASSERT_TRUE(gone);
    EXPECT_TRUE(gone->empty());
}

TEST(SimpleFeatures, SimplifyLeavesRingsRings) {
    test::Points circle;
    for (int i = 0; i <= 360; ++i) {
        const double angle = i * std::numbers::pi / 180;
        circle.push_back({std::cos(angle), std::sin(angle)});
    }
    const auto simple = MzSimplified(polygonOf({circle}).get(), 0.01);
    ASSERT_TRUE(simple && simple->size() == 1);
    const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(simple->front().get());
    ASSERT_NE(polygon, nullptr);
    EXPECT_LT(pointsOf(&ringsOf(polygon->polygonGeometry())[0]).size(), 60u);
    EXPECT_NEAR(areaOf(simple->front()), std::numbers::pi, 0.05);
}

TEST(SimpleFeatures, CloseOpenRings) {
    const Geometry open = polygonOf({{{0, 0}, {4, 0}, {4, 4}, {0, 4}}});
    EXPECT_EQ(MzContains(open.get(), pointAt(0.5, 3).get()), true);
}

TEST(SimpleFeatures, CoordinatesComeBackBitForBit) {
    const test::Points points{{0.1, 1e-200}, {1.0 / 3, -2.0 / 7}, {22.0 / 3, 5}};
    const auto pieces = MzDifference(lineOf(points).get(), kFar.get());
    ASSERT_TRUE(pieces && pieces->size() == 1);
    const auto* line = dynamic_cast<const MzLineStringGeometry*>(pieces->front().get());
    ASSERT_NE(line, nullptr);
    EXPECT_TRUE(test::sameBits(pointsOf(line->lineStringGeometry()), points));
}

TEST(SimpleFeatures, SayWhyThereIsNoAnswer) {
    std::string error;
    EXPECT_FALSE(MzIntersects(nullptr, kLow.get(), &error));
    EXPECT_EQ(error, "a geometry without coordinates");
    const MzGeometry abstract;
    EXPECT_FALSE(MzUnion(kLow.get(), &abstract, &error));
    EXPECT_EQ(error, "a geometry without coordinates");
    EXPECT_FALSE(MzContains(kLow.get(), pointAt(std::nan(""), 0).get(), &error));
    EXPECT_EQ(error, "a coordinate is not finite");
    EXPECT_FALSE(MzBuffer(kLow.get(), std::numeric_limits<double>::infinity(), 8, &error));
    EXPECT_EQ(error, "the distance is not finite");
    EXPECT_FALSE(MzDistance(kLow.get(), polygonOf({}).get(), &error));
    EXPECT_EQ(error, "a geometry without points");
    error.clear();
    EXPECT_FALSE(MzUnion(lineOf({{1, 1}}).get(), kLow.get(), &error));
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(MzUnion(lineOf({{1, 1}}).get(), kLow.get()));
}

TEST(SimpleFeatures, AnswerWhatTheMethodsDoNot) {
    EXPECT_FALSE(kLow->intersects(kHigh.get()));
    EXPECT_EQ(MzIntersects(kLow.get(), kHigh.get()), true);
    EXPECT_EQ(kLow->distance(kFar.get()), 0);
    EXPECT_EQ(MzDistance(kLow.get(), kFar.get()), 5);
    EXPECT_EQ(kLow->unionGeom(kHigh.get()), nullptr);
}

TEST(SimpleFeatures, ServeThreadsAtOnce) {
    std::vector<std::thread> threads;
    std::vector<double> areas(4);
    threads.reserve(areas.size());
    for (double& area : areas) {
        threads.emplace_back([&area] {
            const Geometry low = polygonOf({square(0, 0, 4)});
            const Geometry high = polygonOf({square(2, 2, 4)});
            for (int i = 0; i < 100; ++i) area += areaOf(MzUnion(low.get(), high.get())->front());
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const double area : areas) EXPECT_EQ(area, 2800);
}

}  // namespace
}  // namespace mezalith
