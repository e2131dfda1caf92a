// SPDX-License-Identifier: MIT
#include <mezalith/geometry/polylines.hpp>
#include <mezalith/geometry/test_support.hpp>
#include <mezalith/geometry/wkb_reader.hpp>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

TEST(Polylines, AreTheLinesOfAMultiLineStringReadyToBeDrawn) {
    const Points one{{0, 0}, {4, 4}};
    const Points two{{1, 0}, {2, 0}, {3, 1}};
    const auto wkb = WkbWriter()
                         .multi(kLittle, 5, 3)
                         .lineString(kBig, one)
                         .lineString(kLittle, {})
                         .lineString(kLittle, two);
    const MzWKBReading reading = MzReadWKB(wkb.bytes());
    ASSERT_TRUE(reading);
    const auto polylines =
        MzPolylinesOfMultiLineString(multiLineStringOf(*reading.geometry.record()));
    ASSERT_EQ(polylines.size(), 3u);
    EXPECT_TRUE(sameBits(pointsOf(polylines[0]->multiPointGeometry()), one));
    EXPECT_TRUE(pointsOf(polylines[1]->multiPointGeometry()).empty());
    const MzClippingRegion region = doublingRegion({{-10, -10}, {20, 20}});
    const auto clipped = pointsOf(polylines[2]->clippedLineStringWithRegion(&region));
    EXPECT_TRUE(sameBits(clipped, Points{{2, 0}, {4, 0}, {6, 2}}));
}

TEST(Polylines, OfNothingAreNone) {
    EXPECT_TRUE(MzPolylinesOfMultiLineString({7, nullptr}).empty());
    EXPECT_TRUE(pointsOf(MzPolylineOfLineString({7, nullptr})->multiPointGeometry()).empty());
}

}  // namespace
}  // namespace mezalith
