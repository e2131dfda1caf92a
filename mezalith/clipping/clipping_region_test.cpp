// SPDX-License-Identifier: MIT
#include <mezalith/clipping/clipping_region.hpp>

#include <cmath>
#include <limits>
#include <random>
#include <stop_token>
#include <thread>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

struct View : MzClippingContext {
    std::shared_ptr<MzAffineTransform> transform = MzAffineTransform::transform();
    MzRect bounds{{0, 0}, {100, 50}};
    double unitsPerPixel = 0.5;

    std::shared_ptr<MzAffineTransform> projectedToPixelTransform() const override {
        return transform;
    }
    MzRect projectedBounds() const override { return bounds; }
    double projectedUnitsPerPixel() const override { return unitsPerPixel; }
};

MzClippingRegion regionOf(MzRect rect) {
    MzClippingRegion region;
    region.setClippingRect(rect);
    return region;
}

void expectPoint(MzPoint p, double x, double y) {
    EXPECT_EQ(p.x, x);
    EXPECT_EQ(p.y, y);
}

void expectLine(MzProjectiveLine line, double a, double b, double c) {
    EXPECT_EQ(line.a, a);
    EXPECT_EQ(line.b, b);
    EXPECT_EQ(line.c, c);
}

const MzRect tenByTen{{0, 0}, {10, 10}};

// --- making regions -------------------------------------------------------

TEST(ClippingRegion, GrowsTheViewByFiftyPixels) {
    const View view;
    const auto region = MzClippingRegion::initWithDrawContext(&view);
    EXPECT_TRUE(MzEqualRects(region->clippingRect(), {{-25, -25}, {150, 100}}));
    EXPECT_EQ(region->minSpacing(), 1.0);
    expectPoint(region->bounds()[0], -25, -25);
    expectPoint(region->bounds()[1], 125, -25);
    expectPoint(region->bounds()[2], 125, 75);
    expectPoint(region->bounds()[3], -25, 75);
    EXPECT_EQ(region->transform(), view.transform);
}

TEST(ClippingRegion, IsAllZeroWithoutAContext) {
    const auto region = MzClippingRegion::initWithDrawContext(nullptr);
    EXPECT_TRUE(MzEqualRects(region->clippingRect(), MzZeroRect));
    for (const MzPoint corner : region->bounds()) expectPoint(corner, 0, 0);
    for (const MzProjectiveLine edge : region->edges()) expectLine(edge, 0, 0, 0);
    EXPECT_EQ(region->transform(), nullptr);
    EXPECT_EQ(region->minSpacing(), 0.0);
}

TEST(ClippingRegion, FollowsItsRectangle) {
    MzClippingRegion region = regionOf(tenByTen);
    EXPECT_TRUE(MzEqualRects(region.clippingRect(), tenByTen));
    expectLine(region.edges()[0], 0, 10, 0);
    expectLine(region.edges()[1], -10, 0, 100);
    expectLine(region.edges()[2], 0, -10, 100);
    expectLine(region.edges()[3], 10, 0, 0);
    region.setClippingRect({{1, 2}, {3, 4}});
    expectPoint(region.bounds()[2], 4, 6);
    expectLine(region.edges()[0], 0, 3, -6);
}

TEST(ClippingRegion, KeepsWhatItIsGiven) {
    MzClippingRegion region;
    const auto transform = MzAffineTransform::transform();
    region.setTransform(transform);
    region.setMinSpacing(3.5);
    EXPECT_EQ(region.transform(), transform);
    EXPECT_EQ(region.minSpacing(), 3.5);
    region.setTransform(nullptr);
    EXPECT_EQ(region.transform(), nullptr);
}

TEST(ClippingRegion, HandsOutItsTransformWhileItIsReplaced) {
    MzClippingRegion region;
    region.setTransform(MzAffineTransform::transform());
    std::jthread other([&region](const std::stop_token& stop) {
        while (!stop.stop_requested()) region.setTransform(MzAffineTransform::transform());
    });
    for (int i = 0; i < 10000; ++i) {
        ASSERT_TRUE(MzEqualPoints(region.transform()->transformPoint({1, 2}), {1, 2}));
    }
}

// --- lines ----------------------------------------------------------------

TEST(ProjectiveLine, RunsThroughBothPoints) {
    expectLine(MzProjectiveLineFromPoints({1, 2}, {4, 8}), -6, 3, 0);
    std::mt19937_64 random{7};
    std::uniform_real_distribution<double> anywhere{-100, 100};
    for (int i = 0; i < 1000; ++i) {
        const MzPoint p{anywhere(random), anywhere(random)};
        const MzPoint q{anywhere(random), anywhere(random)};
        const auto [a, b, c] = MzProjectiveLineFromPoints(p, q);
        ASSERT_NEAR(a * p.x + b * p.y + c, 0, 1e-10);
        ASSERT_NEAR(a * q.x + b * q.y + c, 0, 1e-10);
    }
}

TEST(ProjectiveLine, CrossesAnotherInOnePoint) {
    const MzClippingRegion region = regionOf(tenByTen);
    const auto& edges = region.edges();
    expectPoint(MzPointIntersectionOfProjectiveLines(edges[0], edges[1]), 10, 0);
    expectPoint(MzPointIntersectionOfProjectiveLines(edges[2], edges[3]), 0, 10);
}

TEST(ProjectiveLine, NeverCrossesAParallel) {
    const MzClippingRegion region = regionOf(tenByTen);
    const MzPoint p = MzPointIntersectionOfProjectiveLines(region.edges()[0], region.edges()[2]);
    EXPECT_TRUE(std::isinf(p.x));
    EXPECT_TRUE(std::isnan(p.y));
}

// --- region codes ---------------------------------------------------------

TEST(RegionCode, NamesTheSidesBeyondWhichAPointLies) {
    const MzClippingRegion region = regionOf(tenByTen);
    EXPECT_EQ(MzRegionCode({-1, -1}, &region), 9);
    EXPECT_EQ(MzRegionCode({5, -1}, &region), 1);
    EXPECT_EQ(MzRegionCode({11, -1}, &region), 5);
    EXPECT_EQ(MzRegionCode({11, 5}, &region), 4);
    EXPECT_EQ(MzRegionCode({11, 11}, &region), 6);
    EXPECT_EQ(MzRegionCode({5, 11}, &region), 2);
    EXPECT_EQ(MzRegionCode({-1, 11}, &region), 10);
    EXPECT_EQ(MzRegionCode({-1, 5}, &region), 8);
    EXPECT_EQ(MzRegionCode({5, 5}, &region), 0);
}

TEST(RegionCode, CountsTheBorderAsInside) {
    const MzClippingRegion region = regionOf(tenByTen);
    EXPECT_EQ(MzRegionCode({10, 10}, &region), 0);
    EXPECT_EQ(MzRegionCode({0, 0}, &region), 0);
    EXPECT_EQ(MzRegionCode({0, 10}, &region), 0);
    EXPECT_EQ(MzRegionCode({10, std::nextafter(10.0, 11.0)}, &region), 2);
}

TEST(RegionCode, PutsTheLowSidesFirstInAnInvertedRectangle) {
    const MzClippingRegion region = regionOf({{10, 10}, {-10, -10}});
    EXPECT_EQ(MzRegionCode({5, 5}, &region), 9);
    EXPECT_EQ(MzRegionCode({11, 5}, &region), 5);
    EXPECT_EQ(MzRegionCode({5, 11}, &region), 10);
    EXPECT_EQ(MzRegionCode({11, 11}, &region), 6);
}

TEST(RegionCode, IsZeroForNaNAndWithoutARegion) {
    const MzClippingRegion region = regionOf(tenByTen);
    EXPECT_EQ(MzRegionCode({nan, nan}, &region), 0);
    EXPECT_EQ(MzRegionCode({nan, -1}, &region), 1);
    EXPECT_EQ(MzRegionCode({-1, -1}, nullptr), 0);
}

}  // namespace
}  // namespace mezalith
