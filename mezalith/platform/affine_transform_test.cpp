// SPDX-License-Identifier: MIT
#include <mezalith/platform/affine_transform.hpp>

#include <array>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith::platform {
namespace {

constexpr AffineTransform kEach{2, 3, 5, 7, 11, 13};  // a different prime in each place

double moderate() { return *rc::gen::inRange(-100000, 100000) / 64.0; }

AffineTransform anyTransform() {
    return {moderate(), moderate(), moderate(), moderate(), moderate(), moderate()};
}

void expectPoint(MzPoint actual, MzPoint expected) {
    EXPECT_EQ(actual.x, expected.x);
    EXPECT_EQ(actual.y, expected.y);
}

TEST(PlatformTransform, IsTheIdentityByDefault) {
    expectPoint(AffineTransform{}.transformPoint({3, -4}), {3, -4});
}

TEST(PlatformTransform, MapsPointsInRowVectorForm) {
    expectPoint(kEach.transformPoint({1, 0}), {2 + 11, 3 + 13});
    expectPoint(kEach.transformPoint({0, 1}), {5 + 11, 7 + 13});
    expectPoint(kEach.transformPoint({17, 19}), {2 * 17 + 5 * 19 + 11, 3 * 17 + 7 * 19 + 13});
}

TEST(PlatformTransform, MapsSizesWithoutTranslationKeepingTheirSign) {
    const MzSize size = kEach.transformSize({1, -2});
    EXPECT_EQ(size.width, 2 - 10);
    EXPECT_EQ(size.height, 3 - 14);
}

TEST(PlatformTransform, MapsARectangleByOriginAndSizeNotByItsCorners) {
    const AffineTransform quarterTurn{0, 1, -1, 0, 0, 0};
    const MzRect rect = quarterTurn.transformRect({{1, 2}, {3, 4}});
    EXPECT_TRUE(MzEqualRects(rect, {{-2, 1}, {-4, 3}}));
}

TEST(PlatformTransform, MapsManyPointsAsItMapsEach) {
    EXPECT_TRUE(rc::check([] {
        const AffineTransform transform = anyTransform();
        std::array<MzPoint, 5> source{};
        for (MzPoint& point : source) point = {moderate(), moderate()};
        std::array<MzPoint, 5> destination{};
        transform.transformPoints(source, destination);
        for (std::size_t i = 0; i < source.size(); ++i) {
            RC_ASSERT(MzEqualPoints(destination[i], transform.transformPoint(source[i])));
        }
    }));
}

TEST(PlatformTransform, MapsNoMorePointsThanThereArePlaces) {
    const std::array<MzPoint, 3> source{{{1, 1}, {2, 2}, {3, 3}}};
    std::array<MzPoint, 3> destination{};
    AffineTransform{}.transformPoints(source, std::span(destination).first(2));
    expectPoint(destination[1], {2, 2});
    expectPoint(destination[2], {0, 0});
    AffineTransform{}.transformPoints(std::span(source).first(1), destination);
    expectPoint(destination[1], {2, 2});
}

TEST(PlatformTransform, PrependsTheTransformThatAppliesFirst) {
    const AffineTransform twice{2, 0, 0, 2, 0, 0};
    const AffineTransform right{1, 0, 0, 1, 10, 0};
    expectPoint(twice.prepending(right).transformPoint({1, 1}), {22, 2});
    expectPoint(right.prepending(twice).transformPoint({1, 1}), {12, 2});
}

TEST(PlatformTransform, PrependingMapsAsOneAfterTheOther) {
    EXPECT_TRUE(rc::check([] {
        const AffineTransform first = anyTransform(), second = anyTransform();
        const MzPoint point{moderate(), moderate()};
        const MzPoint one = second.prepending(first).transformPoint(point);
        const MzPoint two = second.transformPoint(first.transformPoint(point));
        RC_ASSERT(std::abs(one.x - two.x) <= 1e-3);  // of values up to 1e11
        RC_ASSERT(std::abs(one.y - two.y) <= 1e-3);
    }));
}

TEST(PlatformTransform, InverseUndoesIt) {
    EXPECT_TRUE(rc::check([] {
        const AffineTransform transform = anyTransform();
        RC_PRE(std::abs(transform.m11 * transform.m22 - transform.m12 * transform.m21) > 100);
        const MzPoint point{moderate(), moderate()};
        const auto inverse = transform.inverse();
        RC_ASSERT(inverse.has_value());
        const MzPoint back = inverse->transformPoint(transform.transformPoint(point));
        RC_ASSERT(std::abs(back.x - point.x) <= 1e-4);
        RC_ASSERT(std::abs(back.y - point.y) <= 1e-4);
    }));
}

TEST(PlatformTransform, InverseHasFullPrecision) {
    const AffineTransform third{3, 0, 0, 3, 0, 0};
    EXPECT_EQ(third.inverse().value_or(third).m11, 1.0 / 3);
    EXPECT_EQ((AffineTransform{2, 0, 0, 2, 4, 6}.inverse()),
              (AffineTransform{.5, -0., -0., .5, -2, -3}));
}

TEST(PlatformTransform, HasNoInverseWithoutAUsableDeterminant) {
    EXPECT_EQ((AffineTransform{1, 2, 2, 4, 0, 0}.inverse()), std::nullopt);
    EXPECT_EQ((AffineTransform{1e200, 0, 0, 1e200, 0, 0}.inverse()), std::nullopt);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ((AffineTransform{nan, 0, 0, 1, 0, 0}.inverse()), std::nullopt);
}

}  // namespace
}  // namespace mezalith::platform
