// SPDX-License-Identifier: MIT
#include "mezalith/projection/proj/projection_gaps.hpp"

#include <mezalith/projection/proj/proj_projection.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Gap = MzProjectionRegion::Gap;

std::vector<Gap> gapsOfSystem(const std::string& text) {
    auto gaps = MzProjProjection::initWithText(text)->region().gaps;
    std::ranges::sort(gaps, {}, [](const Gap& gap) { return gap.meridian; });
    return gaps;
}

std::vector<double> meridiansOf(const std::vector<Gap>& gaps, bool isNorth) {
    std::vector<double> meridians;
    for (const Gap& gap : gaps) {
        if (gap.isNorth == isNorth) meridians.push_back(gap.meridian);
    }
    return meridians;
}

void expectMeridians(const std::vector<double>& meridians, const std::vector<double>& wanted) {
    ASSERT_EQ(meridians.size(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i) EXPECT_NEAR(meridians[i], wanted[i], 1e-8);
}

TEST(ProjectionGaps, AreWhereTheOceansOfGoodesMapAreCut) {
    const auto gaps = gapsOfSystem("+proj=igh");
    expectMeridians(meridiansOf(gaps, true), {-40});
    expectMeridians(meridiansOf(gaps, false), {-100, -20, 80});
    for (const Gap& gap : gaps) EXPECT_NEAR(gap.tip, 0, 0.01);
}

TEST(ProjectionGaps, MoveWithTheMiddleMeridian) {
    const auto gaps = gapsOfSystem("+proj=igh +lon_0=150");
    expectMeridians(meridiansOf(gaps, true), {110});
    expectMeridians(meridiansOf(gaps, false), {50, 130, 230});
}

TEST(ProjectionGaps, AreWhereTheContinentsOfOceanicMapsAreCut) {
    const auto gaps = gapsOfSystem("+proj=igh_o");
    expectMeridians(meridiansOf(gaps, true), {-90, 60});
    expectMeridians(meridiansOf(gaps, false), {-60, 90});
}

TEST(ProjectionGaps, BeginWhereTheTrianglesOfPixelMapsDo) {
    const auto gaps = gapsOfSystem("+proj=healpix");
    for (const bool isNorth : {true, false}) {
        expectMeridians(meridiansOf(gaps, isNorth), {-90, 0, 90});
    }
    for (const Gap& gap : gaps) EXPECT_NEAR(gap.tip, gap.isNorth ? 41.94 : -41.94, 0.2);
}

TEST(ProjectionGaps, AreNoneInMapsOfOnePiece) {
    for (const char* text : {"+proj=moll", "+proj=moll +lon_0=150", "+proj=eqearth", "+proj=robin",
                             "+proj=sinu", "+proj=goode", "+proj=eqc", "epsg:3034", "+proj=aitoff",
                             "+proj=vandg", "+proj=eck4", "+proj=natearth", "+proj=cea"}) {
        EXPECT_TRUE(gapsOfSystem(text).empty()) << text;
    }
}

TEST(ProjectionGaps, AreNoneWhereThereIsNoImage) {
    const detail::ProjectPoints nowhere = [](std::span<MzPoint> points) {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        for (MzPoint& p : points) p = {nan, nan};
    };
    EXPECT_TRUE(detail::gapsOf(nowhere, MzProjectionRegion::band(0, 180, -90, 90)).empty());
}

}  // namespace
}  // namespace mezalith
