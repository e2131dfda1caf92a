// SPDX-License-Identifier: MIT
#include "apps/mezalith/isogonic_style.hpp"

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

using Levels = std::vector<double>;

TEST(IsogonicLevels, OfTheWorldThinOutTowardsThePoles) {
    const Levels expected{-150, -120, -90, -60, -50, -40, -30, -20, -10, 0,
                          10,   20,   30,  40,  50,  60,  90,  120, 150, 180};
    EXPECT_EQ(isogonicLevels(-179.99, 179.99, std::nullopt), expected);
}

TEST(IsogonicLevels, AreCloserWhereTheRangeIsSmall) {
    const Levels fine = isogonicLevels(-1.1, 2.5, std::nullopt);
    ASSERT_EQ(fine.size(), 18U);
    EXPECT_EQ(fine.front(), -1);
    EXPECT_EQ(fine[5], 0);
    EXPECT_NEAR(fine.back(), 2.4, 1e-12);
    EXPECT_EQ(isogonicLevels(8.5, 20, std::nullopt),
              (Levels{9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20}));
    EXPECT_EQ(isogonicLevels(1, 9, 5), (Levels{5}));
    EXPECT_EQ(isogonicLevels(1, 4, 5), Levels());
}

TEST(IsogonicStyle, IsColdInTheWestAndWarmInTheEast) {
    const IsogonicStyle style(isogonicLevels(-180, 180, std::nullopt));
    for (const double level : {5.0, 30.0, 60.0, 90.0, 180.0}) {
        const auto east = style.color(level)->components(),
                   west = style.color(-level)->components();
        EXPECT_GT(east[0], east[2]) << level;
        EXPECT_GT(west[2], west[0]) << level;
    }
    EXPECT_LT(style.color(60)->components()[0], style.color(10)->components()[0]);
    EXPECT_LT(style.color(180)->components()[0], style.color(60)->components()[0]);
}

TEST(IsogonicStyle, AccentsZero) {
    const IsogonicStyle style({-10, 0, 10});
    EXPECT_GT(style.symbolizer(0)->strokeWidth(), style.symbolizer(10)->strokeWidth());
    EXPECT_EQ(style.style(0)->rules().front()->symbolizers().size(), 2U);
    EXPECT_EQ(style.style(10)->rules().front()->symbolizers().size(), 1U);
    EXPECT_EQ(style.color(0)->components(), platform::Color::blackColor()->components());
}

}  // namespace
}  // namespace mezalith::app
