// SPDX-License-Identifier: MIT
#include "mezalith/geometry/test_support.hpp"
#include <mezalith/geomagnetism/geomagnetic_field.hpp>
#include <mezalith/geomagnetism/magnetic_declination.hpp>
#include <mezalith/geomagnetism/magnetic_potential_coefficients.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/index/packed_r_tree.hpp>
#include <mezalith/index/r_tree.hpp>
#include <mezalith/medialaxis/medial_axis.hpp>
#include <mezalith/medialaxis/polygon_skeleton.hpp>
#include <mezalith/platform/log.hpp>
#include <mezalith/platform/resource_bundle.hpp>
#include <mezalith/projection/geodesic_geometry.hpp>
#include <mezalith/projection/geodesic_line.hpp>
#include <mezalith/projection/great_circle.hpp>
#include <tests/support/temporary_folder.hpp>

#include <chrono>
#include <cmath>
#include <fstream>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

// --- magnetism --------------------------------------------------------------

TEST(Choosing, DeclinationIsTensOfDegreesOffBetweenTwoEpochs) {
    const platform::Date date = platform::startOfYear(2000) + std::chrono::seconds(1);
    const double settled = MzMagneticDeclination().declinationForLatitudeLongitude({0, 0}, date);
    const MzGeomagneticField field(*MzGeomagneticModel::internationalReferenceField(), date);
    EXPECT_NEAR(settled, 43.765, 0.01);
    EXPECT_NEAR(field.elementsAt({0, 0}).declination, -7.3, 0.1);
}

TEST(Choosing, DeclinationAtThePoleIsANumberOfTheCounterpartOnly) {
    const platform::Date date = platform::startOfYear(2012);
    EXPECT_TRUE(std::isnan(MzMagneticDeclination().declinationForLatitudeLongitude({0, 90}, date)));
    const MzGeomagneticField field(*MzGeomagneticModel::internationalReferenceField(), date);
    EXPECT_TRUE(std::isfinite(field.elementsAt({0, 90}).horizontal));
}

TEST(Choosing, AWrongLineIsZerosToOneReaderAndAMessageOfTheOther) {
    testing::TemporaryFolder folder;
    std::ifstream file(*platform::ResourceBundle::library().pathForResource("IGRF11.COF"));
    std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::size_t number = text.find("-31543");
    ASSERT_NE(number, std::string::npos);
    const std::string path = folder.put("wrong.cof", text.replace(number, 6, " wrong"));
    EXPECT_NE(MzMagneticPotentialCoefficients::initWithCOFfile(path), nullptr);
    std::string why;
    EXPECT_EQ(MzGeomagneticModel::modelWithContentsOfFile(path, &why), nullptr);
    EXPECT_NE(why.find("line "), std::string::npos) << why;
}

// --- index ------------------------------------------------------------------

/// A single point on a diagonal.
struct Place : MzIndexable {
    explicit Place(double x) : point(MzPointGeometry::geometryWithPoint({x, x})) {}
    std::shared_ptr<MzGeometry> geometry() const override { return point; }
    std::shared_ptr<MzGeometry> point;
};

std::size_t leavesBelow(const MzRTree::Nodes& nodes) {
    std::size_t count = 0;
    for (const auto& node : nodes) {
        const auto* inner = dynamic_cast<const MzTreeInternalNode*>(node.get());
        count += inner == nullptr ? 1 : leavesBelow(inner->nodes());
    }
    return count;
}

TEST(Choosing, TheSettledTreeLosesHalfOfTenFeatures) {
    std::vector<Place> places;
    for (int i = 0; i < 10; ++i) places.emplace_back(i);
    std::vector<MzIndexable*> objects;
    for (Place& place : places) objects.push_back(&place);
    EXPECT_EQ(leavesBelow(MzRTree::initWithSpatialObjects(objects)->rootNodes()), 5u);
    std::vector<MzBox> boxes;
    for (int i = 0; i < 10; ++i) boxes.push_back(MzBox::of(MzPoint{1.0 * i, 1.0 * i}));
    std::size_t found = 0;
    const MzBox everywhere{-1, -1, 11, 11};
    MzPackedRTree::initWithBoxes(boxes)->visitWindow(everywhere, [&](std::uint32_t) { ++found; });
    EXPECT_EQ(found, 10u);
}

// --- great circles ----------------------------------------------------------

constexpr MzPoint kOslo{10.75, 59.91};
constexpr MzPoint kTokyo{139.69, 35.69};

double longestStep(std::span<const MzPoint> points) {
    double longest = 0;
    for (std::size_t i = 1; i < points.size(); ++i) {
        longest = std::max(longest, MzGeodesicDistance(points[i - 1], points[i]));
    }
    return longest;
}

TEST(Choosing, SettledGeodesicsAreCoarserThanAskedFor) {
    constexpr double kResolution = 100e3;
    const auto settled = MzGeodesicGeometry::initWithStart(kOslo, kTokyo, kResolution);
    EXPECT_GT(longestStep(pointsOf(settled->multiPointGeometry())), 1.2 * kResolution);
    EXPECT_LE(longestStep(MzGeodesicPoints(kOslo, kTokyo, kResolution)), kResolution);
}

TEST(Choosing, SettledDistancesOfAntipodesMayBeNone) {
    std::mt19937 random(1);
    std::uniform_real_distribution<double> longitude(-180, 0), latitude(-90, 90);
    int none = 0;
    for (int i = 0; i < 10000; ++i) {
        const MzPoint p{longitude(random), latitude(random)};
        const MzPoint q{p.x + 180, -p.y};
        none += std::isnan(MzEarthDistance(p.x, p.y, q.x, q.y)) ? 1 : 0;
        ASSERT_TRUE(std::isfinite(MzGeodesicDistance(p, q))) << p.x << ' ' << p.y;
    }
    EXPECT_GT(none, 0);
}

// --- medial axes ------------------------------------------------------------

/// A plus sign, its arms 1 long and 0.4 wide, drawn to a scale.
test::Points plus(double scale) {
    test::Points points{{-0.2, -1}, {0.2, -1},    {0.2, -0.2}, {1, -0.2},   {1, 0.2},
                        {0.2, 0.2}, {0.2, 1},     {-0.2, 1},   {-0.2, 0.2}, {-1, 0.2},
                        {-1, -0.2}, {-0.2, -0.2}, {-0.2, -1}};
    for (MzPoint& p : points) p = {p.x * scale, p.y * scale};
    return points;
}

TEST(Choosing, SmallShapesHaveASkeletonButNoSettledAxis) {
    const platform::LogSink before = platform::setLogSink([](std::string_view) {});
    test::Points points = plus(0.1);
    const auto ring = test::recordOf<MzLinearRing>(points);
    const auto axis = MzMedialAxis::medialAxisFromRing(&ring);
    platform::setLogSink(before);
    EXPECT_FALSE(axis->isConverged());
    const auto skeleton = MzPolygonSkeleton::skeletonFromRing(&ring);
    ASSERT_NE(skeleton, nullptr);
    EXPECT_NEAR(skeleton->deepestNode().clearance, 0.02 * std::sqrt(2), 1e-9);
}

TEST(Choosing, TheMostInteriorNodeIsNotTheDeepestPoint) {
    const platform::LogSink before = platform::setLogSink([](std::string_view) {});
    test::Points points = plus(0.1);
    auto ring = test::recordOf<MzLinearRing>(points);
    const auto axis = MzMedialAxis::medialAxisFromRing(&ring);
    platform::setLogSink(before);
    const MzPolygon polygon{1, &ring};
    const auto deepest = MzDeepestPoint(&polygon);
    ASSERT_TRUE(deepest);
    EXPECT_NEAR(deepest->point.x, 0, 1e-9);
    EXPECT_NEAR(deepest->point.y, 0, 1e-9);
    const MzMedialAxisNode* settled = axis->mostInteriorNode();
    const bool isThere = settled != nullptr &&
                         std::hypot(settled->point().x, settled->point().y) < 1e-6 &&
                         std::abs(settled->distance() - deepest->clearance) < 1e-6;
    EXPECT_FALSE(isThere);
}

}  // namespace
}  // namespace mezalith
