// SPDX-License-Identifier: MIT
#include "mezalith/geometry/test_support.hpp"
#include <mezalith/projection/spherical_area.hpp>

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using test::square;

constexpr double kSphere = 4 * std::numbers::pi;

double onUnitSphere(test::Points points) {
    const auto ring = test::recordOf<MzLinearRing>(points);
    return MzSphericalArea(&ring, 1);
}

double capAbove(double latitude) {
    return kSphere / 2 * (1 - std::sin(latitude * std::numbers::pi / 180));
}

test::Points parallel(double latitude, int count) {
    test::Points points;
    for (int i = 0; i <= count; ++i) points.push_back({-180 + 360.0 * i / count, latitude});
    return points;
}

TEST(SphericalArea, OfAnOctantIsAnEighth) {
    EXPECT_NEAR(onUnitSphere({{0, 0}, {90, 0}, {0, 90}, {0, 0}}), kSphere / 8, 1e-15);
    EXPECT_NEAR(onUnitSphere({{0, 0}, {0, 90}, {90, 0}}), kSphere / 8, 1e-15);
    EXPECT_NEAR(onUnitSphere({{0, 0}, {90, 0}, {90, -90}}), kSphere / 8, 1e-15);
}

TEST(SphericalArea, SurroundsPoles) {
    EXPECT_NEAR(onUnitSphere({{0, 0}, {90, 0}, {180, 0}, {270, 0}}), kSphere / 2, 1e-14);
    EXPECT_NEAR(onUnitSphere(parallel(60, 3600)), capAbove(60), 1e-6);
    EXPECT_NEAR(onUnitSphere(parallel(-60, 3600)), capAbove(60), 1e-6);
}

// As countries' outlines are stored, led along the map's edge round the pole.
TEST(SphericalArea, KnowsAPoleThatIsARowOfPoints) {
    test::Points coast = parallel(-70, 3600);
    coast.push_back({180, -90});
    coast.push_back({-180, -90});
    EXPECT_NEAR(onUnitSphere(coast), capAbove(70), 1e-6);
}

TEST(SphericalArea, DoesNotCareForWholeTurns) {
    const double area = onUnitSphere(square(10, 50, 4));
    EXPECT_NEAR(onUnitSphere(square(370, 50, 4)), area, 1e-15);
    EXPECT_NEAR(onUnitSphere({{178, 50}, {-178, 50}, {-178, 54}, {178, 54}}), area, 1e-15);
}

TEST(SphericalArea, TakesHolesAwayAndAddsMembers) {
    test::OwnedMultiPolygon owned({{square(0, 0, 10), square(2, 2, 3)}, {square(20, 0, 10)}});
    const MzMultiPolygon polygons = owned.record();
    EXPECT_NEAR(MzSphericalArea(&polygons, 1),
                2 * onUnitSphere(square(0, 0, 10)) - onUnitSphere(square(2, 2, 3)), 1e-15);
    EXPECT_EQ(MzSphericalArea(&polygons.polygons[1], 1), onUnitSphere(square(20, 0, 10)));
}

TEST(SphericalArea, OfASmallSquareIsPlane) {
    test::Points metre = square(10, 60, 1e-5);
    const auto ring = test::recordOf<MzLinearRing>(metre);
    const double side = MzAuthalicEarthRadius * 1e-5 * std::numbers::pi / 180;
    EXPECT_NEAR(MzSphericalArea(&ring) / (side * side / 2), 1, 1e-6);
}

TEST(SphericalArea, OfWhatHasNoInsideIsZero) {
    EXPECT_EQ(onUnitSphere({}), 0);
    EXPECT_EQ(onUnitSphere({{1, 2}, {3, 4}}), 0);
    EXPECT_EQ(MzSphericalArea(static_cast<const MzLinearRing*>(nullptr)), 0);
    EXPECT_EQ(MzSphericalArea(static_cast<const MzPolygon*>(nullptr)), 0);
    EXPECT_EQ(MzSphericalArea(static_cast<const MzMultiPolygon*>(nullptr)), 0);
}

TEST(SphericalArea, OfWhatIsNotFiniteIsNotANumber) {
    EXPECT_TRUE(std::isnan(onUnitSphere({{0, 0}, {1, 0}, {std::nan(""), 1}})));
    EXPECT_TRUE(std::isnan(onUnitSphere({{0, 0}, {1, 0}, {INFINITY, 1}})));
}

}  // namespace
}  // namespace mezalith
