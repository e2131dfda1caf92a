// SPDX-License-Identifier: MIT
#include <mezalith/projection/projection_region.hpp>

#include <limits>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(ProjectionRegion, IsEndlessToBeginWith) {
    EXPECT_TRUE(MzProjectionRegion{}.holds({1234, 90}));
    EXPECT_FALSE(MzProjectionRegion{}.holds({0, 90.5}));
    EXPECT_FALSE(MzProjectionRegion::endless(-85, 85).holds({0, -86}));
}

TEST(ProjectionRegion, HoldsABandWholeTurnsApart) {
    const auto band = MzProjectionRegion::band(177, 70, -80, 84);
    EXPECT_TRUE(band.holds({177, 0}));
    EXPECT_TRUE(band.holds({-113, 84}));
    EXPECT_TRUE(band.holds({107 - 720, -80}));
    EXPECT_FALSE(band.holds({-112, 0}));
    EXPECT_FALSE(band.holds({106, 0}));
    EXPECT_FALSE(band.holds({177, 84.1}));
    EXPECT_FALSE(band.holds({177, -80.1}));
}

TEST(ProjectionRegion, HoldsACapAroundAPole) {
    const auto cap = MzProjectionRegion::cap({0, -90}, 30);
    EXPECT_TRUE(cap.holds({123, -60.001}));
    EXPECT_TRUE(cap.holds({77, -90}));
    EXPECT_FALSE(cap.holds({123, -59.999}));
}

TEST(ProjectionRegion, HoldsACapAcrossTheAntimeridian) {
    const auto cap = MzProjectionRegion::cap({179, 0}, 10);
    EXPECT_TRUE(cap.holds({-171.5, 0}));
    EXPECT_FALSE(cap.holds({-170.5, 0}));
}

TEST(ProjectionRegion, HoldsNothingThatIsNotFinite) {
    for (const auto& region : {MzProjectionRegion{}, MzProjectionRegion::band(0, 180, -90, 90),
                               MzProjectionRegion::cap({0, 0}, 180)}) {
        EXPECT_FALSE(region.holds({kNaN, 0}));
        EXPECT_FALSE(region.holds({0, kNaN}));
        EXPECT_FALSE(region.holds({kInfinity, 0}));
    }
}

TEST(AngleBetween, IsRightFromNearToAntipodal) {
    EXPECT_EQ(MzAngleBetween({10, 20}, {10, 20}), 0);
    EXPECT_NEAR(MzAngleBetween({0, 0}, {1e-9, 0}), 1e-9, 1e-20);
    EXPECT_NEAR(MzAngleBetween({0, 0}, {90, 0}), 90, 1e-12);
    EXPECT_NEAR(MzAngleBetween({30, 40}, {210, -40}), 180, 1e-5);
    EXPECT_NEAR(MzAngleBetween({0, 90}, {77, 60}), 30, 1e-12);
}

}  // namespace
}  // namespace mezalith
