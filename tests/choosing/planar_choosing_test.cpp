// SPDX-License-Identifier: MIT
#include "mezalith/clipping/test_support.hpp"
#include "mezalith/geometry/test_support.hpp"
#include <mezalith/geometry/area.hpp>
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/point_location.hpp>
#include <mezalith/geometry/polygon_functions.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/geometry/projected_bounds.hpp>
#include <mezalith/projection/spherical_area.hpp>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using enum MzPointLocation;
using test::OwnedPolygon;
using test::Points;
using test::Rings;
using test::square;

Points reversed(Points points) {
    std::ranges::reverse(points);
    return points;
}

// --- is a point inside?

TEST(ChoosingIsAPointInside, TheSettledOneTakes14Of63PointsForOutside) {
    OwnedPolygon owned({{{0, 0}, {10, 0}, {4, 8}, {0, 0}}});
    const MzPolygon triangle = owned.record();
    int points = 0, wrong = 0, onBorder = 0;
    for (int x = 1; x < 10; ++x) {
        for (int y = 1; y < 8; ++y) {
            const int left = 2 * x - y, right = 4 * (10 - x) - 3 * y;
            const auto truth = std::min(left, right) == 0  ? OnBorder
                               : std::min(left, right) > 0 ? Inside
                                                           : Outside;
            const MzPoint p{1.0 * x, 1.0 * y};
            EXPECT_EQ(MzLocatePoint(&triangle, p), truth) << x << ' ' << y;
            const bool settled = crossingTest(&triangle, p.x, p.y);
            EXPECT_FALSE(settled && truth != Inside) << x << ' ' << y;
            wrong += truth == Inside && !settled ? 1 : 0;
            onBorder += truth == OnBorder ? 1 : 0;
            ++points;
        }
    }
    EXPECT_EQ(points, 63);
    EXPECT_EQ(wrong, 14);
    EXPECT_EQ(onBorder, 4);
}

TEST(ChoosingIsAPointInside, ToTheSettledOneAHoleThatRunsLikeItsOutlineIsFilled) {
    const Points outline = square(0, 0, 10), hole = square(4, 4, 2);
    OwnedPolygon alike({outline, hole}), against({outline, reversed(hole)});
    const MzPolygon filled = alike.record(), open = against.record();
    EXPECT_TRUE(crossingTest(&filled, 5, 5));
    EXPECT_FALSE(crossingTest(&open, 5, 5));
    const auto point = MzPointGeometry::initWithPoint({5, 5});
    EXPECT_TRUE(MzPolygonGeometry::initWithPolygon(filled)->contains(point.get()));
    EXPECT_FALSE(MzPolygonGeometry::initWithPolygon(open)->contains(point.get()));
    EXPECT_EQ(MzLocatePoint(&filled, {5, 5}), Outside);
    EXPECT_EQ(MzLocatePoint(&open, {5, 5}), Outside);
}

TEST(ChoosingIsAPointInside, TheCounterpartDecidesWithoutRounding) {
    OwnedPolygon owned({{{0, 0}, {3, 1}, {0, 1}, {0, 0}}});
    const MzPolygon triangle = owned.record();
    const double third = 1.0 / 3;  // a little less than a third, so just below the side
    EXPECT_EQ(MzLocatePoint(&triangle, {1, third}), Outside);
    EXPECT_EQ(MzLocatePoint(&triangle, {1, std::nextafter(third, 1)}), Inside);
    EXPECT_FALSE(crossingTest(&triangle, 1, std::nextafter(third, 1)));
    EXPECT_EQ(MzLocatePoint(&triangle, {1.5, 0.5}), OnBorder);
}

// --- area

TEST(ChoosingArea, OfAFarSquareTheSettledOneMakesMinus9Quadrillion) {
    Points far = square(6.5e15, 6.5e15, 2);
    const auto ring = test::recordOf<MzLinearRing>(far);
    double settled = 0;
    EXPECT_TRUE(MzCentroid(&ring, &settled));
    EXPECT_EQ(settled, -9007199254740992);
    EXPECT_EQ(MzSignedArea(&ring), 4);
    EXPECT_EQ(MzRingOrientation(&ring), 1);
}

TEST(ChoosingArea, TheCounterpartsTakeHolesAway) {
    OwnedPolygon owned({square(0, 0, 10), square(4, 4, 2)});
    const MzPolygon polygon = owned.record();
    double settled = 0;
    EXPECT_TRUE(MzCentroid(&polygon.rings[0], &settled)) << "of one ring, whatever is in it";
    EXPECT_EQ(settled, 100);
    EXPECT_EQ(MzArea(&polygon), 96);
}

TEST(ChoosingArea, TheCounterpartsDecideWithoutRoundingWhichWayARingRuns) {
    // On one line but for rounding, by which areas have the wrong sign.
    Points sliver{{0.1, 0.3}, {0.1 * 11, 0.3 * 11}, {0.1 / 3, 0.3 / 3}, {0.1, 0.3}};
    const auto ring = test::recordOf<MzLinearRing>(sliver);
    double settled = 0;
    EXPECT_TRUE(MzCentroid(&ring, &settled));
    EXPECT_GT(settled, 0);
    EXPECT_EQ(MzRingOrientation(&ring), -1);
    Points other = reversed(sliver);
    const auto turned = test::recordOf<MzLinearRing>(other);
    EXPECT_EQ(MzRingOrientation(&turned), 1);
}

TEST(ChoosingArea, TheCounterpartsKnowTheSphere) {
    Points eighth{{0, 0}, {90, 0}, {0, 90}};
    const auto ring = test::recordOf<MzLinearRing>(eighth);
    double settled = 0;
    EXPECT_TRUE(MzCentroid(&ring, &settled));
    EXPECT_EQ(settled, 4050) << "square degrees";
    EXPECT_NEAR(MzSphericalArea(&ring, 1), std::numbers::pi / 2, 1e-15);
}

// --- clipping to a view

using clipping_test::areaOf;
using clipping_test::clip;
using clipping_test::difference;
using clipping_test::Kind;

/// The square of 10, as it is made or exact.
MzClippingRegion tenByTen(bool exact) {
    MzClippingRegion region = clipping_test::regionOf({{0, 0}, {10, 10}});
    region.setExact(exact);
    return region;
}

TEST(ChoosingClippingToAView, TheSettledOutlineOfABandCrossesItself) {
    const Points band{{-5, 2}, {15, 4}, {15, 8}, {-5, 6}, {-5, 2}};
    const Points settled = clip(Kind::ring, band, tenByTen(false));
    EXPECT_EQ(difference(settled, Points{{10, 3.5}, {0, 2.5}, {10, 7.5}, {0, 6.5}}), "");
    EXPECT_EQ(areaOf(settled), 0);
    EXPECT_EQ(areaOf(clip(Kind::ring, band, tenByTen(true))), 40);
}

TEST(ChoosingClippingToAView, SettledCrossingsOfASideAreInAFixedOrder) {
    const auto across = [](Points line, bool exact) {
        return clip(Kind::line, line, tenByTen(exact));
    };
    EXPECT_EQ(difference(across({{15, 5}, {-5, 5}}, false), across({{-5, 5}, {15, 5}}, false)), "");
    EXPECT_EQ(difference(across({{-5, 5}, {15, 5}}, true), Points{{0, 5}, {10, 5}}), "");
    EXPECT_EQ(difference(across({{15, 5}, {-5, 5}}, true), Points{{10, 5}, {0, 5}}), "");
}

TEST(ChoosingClippingToAView, TheSettledOneDropsAnEndThatTouchesACorner) {
    const Points touching{{-5, 5}, {0, 10}, {5, 5}};
    EXPECT_EQ(difference(clip(Kind::line, touching, tenByTen(false)), Points{{5, 5}}), "");
    EXPECT_EQ(difference(clip(Kind::line, touching, tenByTen(true)), Points{{0, 10}, {5, 5}}), "");
}

TEST(ChoosingClippingToAView, TheSettledOneLeavesRingsOpen) {
    const Points ring{{15, 5}, {15, 15}, {5, 15}, {5, 5}, {15, 5}};
    const Points settled = clip(Kind::ring, ring, tenByTen(false));
    EXPECT_FALSE(MzEqualPoints(settled.front(), settled.back()));
    const Points exact = clip(Kind::ring, ring, tenByTen(true));
    EXPECT_EQ(difference(exact, Points{{5, 10}, {5, 5}, {10, 5}, {10, 10}, {5, 10}}), "");
}

/// A view of the square of 10, a unit to the point.
struct View : MzClippingContext {
    std::shared_ptr<MzAffineTransform> projectedToPixelTransform() const override {
        return MzAffineTransform::transform();
    }
    MzRect projectedBounds() const override { return {{0, 0}, {10, 10}}; }
    double projectedUnitsPerPixel() const override { return 1; }
};

TEST(ChoosingClippingToAView, ASettledLineThatComesBackIsJoinedAcrossTheView) {
    const View view;
    const auto region = MzClippingRegion::initWithDrawContext(&view);
    const Points line{{5, 5}, {90, 5}, {90, 90}, {-90, 90}, {-90, 8}, {5, 8}};
    EXPECT_EQ(
        difference(clip(Kind::line, line, *region), Points{{5, 5}, {60, 5}, {-50, 8}, {5, 8}}), "");
    region->setExact(true);
    EXPECT_EQ(difference(clip(Kind::line, line, *region),
                         Points{{5, 5}, {60, 5}, {60, 60}, {-50, 60}, {-50, 8}, {5, 8}}),
              "")
        << "50 view points out of sight";
}

TEST(ChoosingClippingToAView, TheExactOneKeepsWindingNumbers) {
    const Points once = square(-5, -5, 20);
    Points twice = once;
    twice.insert(twice.end(), once.begin() + 1, once.end());
    EXPECT_EQ(areaOf(clip(Kind::ring, twice, tenByTen(true))), 200);
    EXPECT_EQ(areaOf(clip(Kind::ring, reversed(once), tenByTen(true))), -100);
}

// --- where projected polygons lie

const auto kZone = MzMapProjection::mapProjectionWithUTMZone(33);

TEST(ChoosingWhereProjectedPolygonsLie, TheSettledCornersAreZerosUntilTheHostFillsThem) {
    const auto geometry =
        MzPolygonGeometry::initWithPolygon(OwnedPolygon({square(15, 60, 1)}).record());
    const auto copy =
        std::dynamic_pointer_cast<MzPolygonGeometry>(geometry->geometryWithProjection(kZone));
    for (const MzPoint corner : copy->transformedBounds()) {
        EXPECT_TRUE(MzEqualPoints(corner, {0, 0}));
    }
    const MzRect view{{500'000, 6'650'000}, {60'000, 120'000}};
    const MzRect origin{{-1, -1}, {2, 2}};
    EXPECT_FALSE(copy->mbrInsertsectsRect(view));
    EXPECT_TRUE(copy->mbrInsertsectsRect(origin));
    MzFillTransformedBounds(geometry.get(), kZone);
    EXPECT_TRUE(copy->mbrInsertsectsRect(view));
    EXPECT_FALSE(copy->mbrInsertsectsRect(origin));
    const MzPoint low = copy->transformedBounds()[0], high = copy->transformedBounds()[2];
    EXPECT_NEAR(low.x, 500'000, 0.5);
    EXPECT_NEAR(low.y, 6'651'411, 0.5);
    EXPECT_NEAR(high.x, 555'776, 0.5);
    EXPECT_NEAR(high.y, 6'763'200, 0.5);
}

TEST(ChoosingWhereProjectedPolygonsLie, TheSettledCopyOfALineIsMissingAtFirst) {
    Points points{{15, 60}, {16, 61}};
    const auto made = [&] {
        return MzLineStringGeometry::initWithLineString(test::recordOf<MzLineString>(points));
    };
    const auto settled = made();
    EXPECT_EQ(settled->geometryWithProjection(kZone), nullptr);
    EXPECT_NE(settled->geometryWithProjection(kZone), nullptr);
    const auto leaves = MzProjectedLeafNodes(made().get(), kZone, nullptr);
    ASSERT_EQ(leaves.size(), 1u);
    EXPECT_NEAR(leaves[0]->bounds().origin.x, 500'000, 1e-6);
}

}  // namespace
}  // namespace mezalith
