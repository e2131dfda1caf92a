// SPDX-License-Identifier: MIT
#include "host/isogonic_lines.hpp"

#include <cmath>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

const MzGeomagneticField& field() {
    static const MzGeomagneticField field(*MzGeomagneticModel::internationalReferenceField(), 2026);
    return field;
}

constexpr BoundingBox kWorld{-180, -90, 180, 90};

TEST(IsogonicLines, RunWhereTheDeclinationIsTheirs) {
    IsogonicLines isogons(field(), kWorld);
    for (const double declination : {-170.0, -60.0, -10.0, 0.0, 20.0, 90.0, 180.0}) {
        const auto lines = isogons.linesOf(declination);
        ASSERT_FALSE(lines.empty()) << declination;
        for (const auto& line : lines) {
            for (const MzPoint p : line) {
                const auto there = field().elementsAt(p);
                // Within a cell of a pole the angle turns quickly.
                if (there.horizontal < 1000 || std::abs(p.y) > 89) continue;
                ASSERT_NEAR(std::remainder(there.declination - declination, 360), 0, 0.2)
                    << declination << " at " << p.x << ' ' << p.y;
            }
        }
    }
}

TEST(IsogonicLines, AreFewWhereTheAngleJumps) {
    // The line of 180 degrees runs from each magnetic pole to the geographic one, and nowhere else.
    IsogonicLines isogons(field(), kWorld);
    double length = 0;
    for (const auto& line : isogons.linesOf(180)) {
        for (std::size_t i = 1; i < line.size(); ++i) {
            length += std::abs(line[i].y - line[i - 1].y);
            EXPECT_GT(std::abs(line[i].y), 60);
        }
    }
    EXPECT_GT(length, 5);
    EXPECT_LT(length, 60);
    EXPECT_LT(isogons.least(), -179);
    EXPECT_GT(isogons.greatest(), 179);
}

TEST(IsogonicLines, KeepToTheirArea) {
    IsogonicLines isogons(field(), {5, 58, 31, 71});
    EXPECT_GT(isogons.least(), 0);
    EXPECT_LT(isogons.greatest(), 30);
    EXPECT_TRUE(isogons.linesOf(-20).empty());
    const auto lines = isogons.linesOf(10);
    ASSERT_EQ(lines.size(), 1U);
    for (const MzPoint p : lines[0]) {
        EXPECT_TRUE(p.x >= 5 && p.x <= 31 && p.y >= 58 && p.y <= 71);
    }
}

TEST(IsogonicLines, AreOnceAroundTheGlobeAtMost) {
    IsogonicLines isogons(field(), {-200, -100, 200, 100});
    const auto lines = isogons.linesOf(0);
    ASSERT_FALSE(lines.empty());
    for (const MzPoint p : lines.front()) {
        EXPECT_TRUE(std::abs(p.x) <= 180 && std::abs(p.y) <= 90);
    }
}

TEST(IsogonicLines, AreNotThereWithoutAnArea) {
    IsogonicLines isogons(field(), {});
    EXPECT_TRUE(isogons.linesOf(0).empty());
    EXPECT_EQ(isogons.least(), 0);
}

}  // namespace
}  // namespace mezalith::host
