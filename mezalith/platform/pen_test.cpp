// SPDX-License-Identifier: MIT
#include <mezalith/platform/pen.hpp>

#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double largestWidth = 1000;

std::optional<Pen> penOf(double width, const AffineTransform& transform = {}) {
    StrokeStyle style;
    style.width = width;
    return makePen(style, transform, largestWidth);
}

TEST(Pen, LeavesNoInkWithoutAWidthOrUnderATransformThatFlattens) {
    EXPECT_FALSE(penOf(0));
    EXPECT_FALSE(penOf(-1));
    EXPECT_FALSE(penOf(std::nan("")));
    EXPECT_FALSE(penOf(1, {1, 0, 0, 0, 0, 0}));
    EXPECT_FALSE(penOf(1, {1, 0, 0, 1e-7, 0, 0}));
    EXPECT_FALSE(penOf(1, {infinity, 0, 0, infinity, 0, 0}));
    EXPECT_TRUE(penOf(1e-9));
}

TEST(Pen, IsRoundInTheDeviceWhereAllDirectionsScaleAlike) {
    const auto pen = penOf(2, {0, 3, -3, 0, 7, 9});
    ASSERT_TRUE(pen);
    EXPECT_EQ(pen->shape, AffineTransform{});
    EXPECT_EQ(pen->width, 6);
    EXPECT_EQ(penOf(600, {2, 0, 0, -2, 0, 0})->width, largestWidth);
}

TEST(Pen, HasAShapeThatOnlyShortensOtherwise) {
    const auto pen = penOf(2, {4, 0, 0, 1, 7, 9});
    ASSERT_TRUE(pen);
    EXPECT_EQ(pen->shape, (AffineTransform{1, 0, 0, 0.25, 0, 0}));
    EXPECT_EQ(pen->width, 8);
}

TEST(Pen, ReachesAsFarAsItsJoinsAndCaps) {
    Pen pen;
    pen.width = 4;
    EXPECT_EQ(pen.reach(), 20);
    pen.join = LineJoin::Bevel;
    EXPECT_EQ(pen.reach(), 2);
    pen.cap = LineCap::Square;
    EXPECT_EQ(pen.reach(), 2 * std::numbers::sqrt2);
}

TEST(Pen, ScalesDashesAndTakesThoseTooShortToSeeForSolid) {
    StrokeStyle style;
    style.dashPhase = 1;
    style.dashLengths = {2, 3};
    const auto pen = makePen(style, {2, 0, 0, 2, 0, 0}, largestWidth);
    ASSERT_TRUE(pen);
    EXPECT_EQ(pen->dash.lengths, (std::vector<double>{4, 6}));
    EXPECT_EQ(pen->dash.phase, 2);
    EXPECT_TRUE(makePen(style, {0.01, 0, 0, 0.01, 0, 0}, largestWidth)->dash.isSolid());
    EXPECT_FALSE(makePen(style, {2, 0, 0, 0.02, 0, 0}, largestWidth)->dash.isSolid());
    EXPECT_TRUE(makePen(style, {1, 0, 0, 0.01, 0, 0}, largestWidth)->dash.isSolid());
}

}  // namespace
}  // namespace mezalith::platform
