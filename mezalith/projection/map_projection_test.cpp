// SPDX-License-Identifier: MIT
#include <mezalith/projection/great_circle.hpp>
#include <mezalith/projection/map_projection.hpp>
#include <mezalith/projection/transverse_mercator.hpp>

#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <type_traits>
#include <typeinfo>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

constexpr unsigned seed = 20240229;

bool sameBits(MzPoint a, MzPoint b) {
    return std::bit_cast<std::array<std::uint64_t, 2>>(a) ==
           std::bit_cast<std::array<std::uint64_t, 2>>(b);
}

/// Seeded points of the world with every kind of odd one among them.
std::vector<MzPoint> sample(std::size_t count) {
    std::mt19937_64 random{seed};
    std::uniform_real_distribution<double> longitude{-200, 200}, latitude{-90, 90};
    std::vector<MzPoint> points(count);
    for (MzPoint& p : points) p = {longitude(random), latitude(random)};
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    const std::vector<MzPoint> odd{{nan, 5},     {5, nan},     {infinity, 1}, {1, -infinity},
                                   {-0.0, -0.0}, {15, 90},     {15, -90},     {1e300, 1e300},
                                   {5e5, 1.0e7}, {5e5, -1.0e7}};
    points.insert(points.end(), odd.begin(), odd.end());
    return points;
}

/// Knows only how to do one point at a time.
class Sheared : public MzMapProjection {
  public:
    MzPoint projectedCoordinateForLongitudeLatitude(MzPoint p) const override {
        return {p.x * 4, (p.x + p.y) * 3};
    }
    MzPoint longitudeLatitudeForProjectedCoordinate(MzPoint p) const override {
        return {p.x / 4, p.y / 3 - p.x / 4};
    }

  protected:
    std::shared_ptr<MzMapProjection> newInstance() const override {
        return std::make_shared<Sheared>();
    }
};

std::vector<std::shared_ptr<MzMapProjection>> everyKind() {
    return {std::make_shared<MzMapProjection>(), MzMapProjection::mapProjectionWithPlateCarree(),
            MzMapProjection::mapProjectionWithUTMZone(33), std::make_shared<MzUTMZoneProjection>(),
            std::make_shared<Sheared>()};
}

// --- what each initialiser sets -------------------------------------------

TEST(MapProjection, StartsUndefined) {
    const MzMapProjection projection;
    EXPECT_EQ(projection.srid(), 0);
    EXPECT_EQ(projection.name(), "Undefined");
    EXPECT_FALSE(projection.isEquitorialCylindrical());
    EXPECT_FALSE(projection.isUTM());
    EXPECT_TRUE(MzEqualRects(projection.bounds(), MzZeroRect));
    EXPECT_FALSE(projection.wrapsHorizontally());
    EXPECT_FALSE(projection.wrapsVertically());
    EXPECT_EQ(projection.maximumResolution(), 0.0);
    EXPECT_EQ(projection.minimumResolution(), 0.0);
}

TEST(MapProjection, DescribesPlateCarree) {
    const auto projection = MzMapProjection::mapProjectionWithPlateCarree();
    EXPECT_NE(dynamic_cast<MzPlateCarreeProjection*>(projection.get()), nullptr);
    EXPECT_EQ(projection->srid(), 32662);
    EXPECT_EQ(projection->name(), "Plate Carree");
    EXPECT_TRUE(projection->isEquitorialCylindrical());
    EXPECT_FALSE(projection->isUTM());
    EXPECT_TRUE(MzEqualRects(projection->bounds(), {{-180, -90}, {360, 180}}));
    EXPECT_TRUE(projection->wrapsHorizontally());
    EXPECT_FALSE(projection->wrapsVertically());
    EXPECT_EQ(projection->maximumResolution(), 1e-05);
    EXPECT_EQ(projection->minimumResolution(), 1.0);
}

TEST(MapProjection, DescribesUTMZone33) {
    const auto projection = MzMapProjection::mapProjectionWithUTMZone(33);
    const auto* utm = dynamic_cast<MzUTMZoneProjection*>(projection.get());
    ASSERT_NE(utm, nullptr);
    EXPECT_EQ(utm->utmZone(), 33u);
    EXPECT_EQ(projection->srid(), 32633);
    EXPECT_EQ(projection->name(), "UTM Zone 33");
    EXPECT_FALSE(projection->isEquitorialCylindrical());
    EXPECT_FALSE(projection->isUTM());
    EXPECT_TRUE(MzEqualRects(projection->bounds(), {{165000, 1975036}, {669000, 5966335}}));
    EXPECT_FALSE(projection->wrapsHorizontally());
    EXPECT_FALSE(projection->wrapsVertically());
    EXPECT_EQ(projection->maximumResolution(), 2.0);
    EXPECT_EQ(projection->minimumResolution(), 32.0);
}

TEST(MapProjection, KeepsAllBitsOfTheZoneButProjectsWithTheLow32) {
    const std::uint64_t zone = (std::uint64_t{1} << 32) + 33;
    const auto wide = MzUTMZoneProjection::initWithZone(zone);
    EXPECT_EQ(wide->utmZone(), zone);
    EXPECT_EQ(wide->srid(), 4294999929);
    EXPECT_EQ(wide->name(), "UTM Zone 4294967329");
    EXPECT_EQ(wide->projectedCoordinateForLongitudeLatitude({15, 0}).x, 500000.0);
    EXPECT_EQ(MzUTMZoneProjection::initWithZone(~std::uint64_t{0})->srid(), 32599);
}

// --- points ---------------------------------------------------------------

TEST(MapProjection, ReturnsPointsOfPlateCarreeBitForBit) {
    const auto projection = MzMapProjection::mapProjectionWithPlateCarree();
    for (const MzPoint p : sample(100)) {
        EXPECT_TRUE(sameBits(projection->projectedCoordinateForLongitudeLatitude(p), p));
        EXPECT_TRUE(sameBits(projection->longitudeLatitudeForProjectedCoordinate(p), p));
        EXPECT_TRUE(sameBits(MzMapProjection{}.projectedCoordinateForLongitudeLatitude(p), p));
        EXPECT_TRUE(sameBits(MzMapProjection{}.longitudeLatitudeForProjectedCoordinate(p), p));
    }
}

TEST(MapProjection, ProjectsLongitudeAsXIntoTheZone) {
    const auto projection = MzMapProjection::mapProjectionWithUTMZone(33);
    MzPoint expected{};
    LatitudeLongitudeToUTMZone(33, &expected.x, &expected.y, 59.91, 10.75);
    const MzPoint p = projection->projectedCoordinateForLongitudeLatitude({10.75, 59.91});
    EXPECT_TRUE(sameBits(p, expected));
    const MzPoint back = projection->longitudeLatitudeForProjectedCoordinate(p);
    EXPECT_NEAR(back.x, 10.75, 1e-9);
    EXPECT_NEAR(back.y, 59.91, 1e-9);
}

TEST(MapProjection, ProjectsBatchesAsPointByPoint) {
    const std::vector<MzPoint> source = sample(1000);
    for (const auto& projection : everyKind()) {
        std::vector<MzPoint> projected(source.size()), unprojected(source.size());
        projection->projectCoordinates(source, projected);
        projection->unprojectCoordinates(source, unprojected);
        for (std::size_t i = 0; i < source.size(); ++i) {
            ASSERT_TRUE(sameBits(projected[i],
                                 projection->projectedCoordinateForLongitudeLatitude(source[i])))
                << projection->name() << ", seed " << seed << ", point " << i;
            ASSERT_TRUE(sameBits(unprojected[i],
                                 projection->longitudeLatitudeForProjectedCoordinate(source[i])))
                << projection->name() << ", seed " << seed << ", point " << i;
        }
    }
}

TEST(MapProjection, ProjectsBatchesInPlace) {
    const std::vector<MzPoint> source = sample(100);
    for (const auto& projection : everyKind()) {
        std::vector<MzPoint> apart(source.size()), inPlace = source;
        projection->projectCoordinates(source, apart);
        projection->projectCoordinates(inPlace, inPlace);
        for (std::size_t i = 0; i < source.size(); ++i) {
            ASSERT_TRUE(sameBits(inPlace[i], apart[i])) << projection->name() << ' ' << i;
        }
    }
}

TEST(MapProjection, LeavesOutPointsOfABatchThatFindNoPlace) {
    const std::vector<MzPoint> source{{1, 2}, {3, 4}, {5, 6}};
    for (const auto& projection : everyKind()) {
        std::vector<MzPoint> destination(3, MzPoint{-7, -7});
        projection->projectCoordinates(source, std::span{destination}.first(2));
        EXPECT_NE(destination[1].x, -7);
        EXPECT_EQ(destination[2].x, -7);
        projection->unprojectCoordinates({}, destination);
        EXPECT_EQ(destination[2].y, -7);
        projection->projectCoordinates(source, {});
    }
}

// --- metres per projected unit --------------------------------------------

TEST(MapProjection, MeasuresAnArcSecondForPlateCarree) {
    const auto projection = MzMapProjection::mapProjectionWithPlateCarree();
    const double h = 0.0001388888888888889;
    EXPECT_NEAR(projection->metersPerProjectedUnitForLongitudeLatitude({0, 0}), 110426.98, 5e-3);
    EXPECT_NEAR(projection->metersPerProjectedUnitForLongitudeLatitude({25, 0}),
                6327000 * std::numbers::pi / 180, 1e-4);
    for (double y = -80; y <= 80; ++y) {
        EXPECT_EQ(projection->metersPerProjectedUnitForLongitudeLatitude({10, y}),
                  MzEarthDistance(10 - h, y, 10 + h, y) * 3600);
    }
    EXPECT_NEAR(projection->metersPerProjectedUnitForLongitudeLatitude({10, 60}), 110426.98 / 2,
                1e-2);
}

TEST(MapProjection, MeasuresAnArcSecondInProjectedUnitsByDefault) {
    const double h = 0.0001388888888888889;
    const double metres = MzEarthDistance(10 - h, 45, 10 + h, 45);
    EXPECT_EQ(MzMapProjection{}.metersPerProjectedUnitForLongitudeLatitude({10, 45}),
              metres / ((10 + h) - (10 - h)));
    EXPECT_NEAR(Sheared{}.metersPerProjectedUnitForLongitudeLatitude({10, 45}), metres / (10 * h),
                1e-4);
}

TEST(MapProjection, AnswersOneMetreForUTMEverywhere) {
    const auto projection = MzMapProjection::mapProjectionWithUTMZone(33);
    EXPECT_EQ(projection->metersPerProjectedUnitForLongitudeLatitude({15, 0}), 1.0);
    EXPECT_EQ(projection->metersPerProjectedUnitForLongitudeLatitude({100, 89}), 1.0);
}

// --- comparing and copying ------------------------------------------------

TEST(MapProjection, IsEqualByIdentifierAlone) {
    const auto utm = MzMapProjection::mapProjectionWithUTMZone(33);
    MzMapProjection other;
    other.setSrid(32633);
    other.setName("Something else");
    EXPECT_TRUE(utm->isEqualToMapProjection(&other));
    EXPECT_TRUE(other.isEqualToMapProjection(utm.get()));
    other.setSrid(32634);
    EXPECT_FALSE(utm->isEqualToMapProjection(&other));
    EXPECT_FALSE(utm->isEqualToMapProjection(nullptr));
}

TEST(MapProjection, CopiesItsPropertiesIntoItsOwnClass) {
    MzPlateCarreeProjection original;
    original.setSrid(7);
    original.setName("Mine");
    original.setEquitorialCylindrical(false);
    original.setUTM(true);
    original.setBounds({{1, 2}, {3, 4}});
    original.setWrapsHorizontally(false);
    original.setWrapsVertically(true);
    original.setMaximumResolution(5);
    original.setMinimumResolution(6);
    const auto copy = original.copy();
    static_assert(
        std::is_same_v<decltype(original.copy()), std::shared_ptr<MzPlateCarreeProjection>>);
    const MzMapProjection& base = original;
    EXPECT_NE(dynamic_cast<MzPlateCarreeProjection*>(base.copy().get()), nullptr);
    EXPECT_EQ(copy->srid(), 7);
    EXPECT_EQ(copy->name(), "Mine");
    EXPECT_FALSE(copy->isEquitorialCylindrical());
    EXPECT_TRUE(copy->isUTM());
    EXPECT_TRUE(MzEqualRects(copy->bounds(), {{1, 2}, {3, 4}}));
    EXPECT_FALSE(copy->wrapsHorizontally());
    EXPECT_TRUE(copy->wrapsVertically());
    EXPECT_EQ(copy->maximumResolution(), 5.0);
    EXPECT_EQ(copy->minimumResolution(), 6.0);
}

TEST(MapProjection, CopiesEachKindAsItself) {
    for (const auto& projection : everyKind()) {
        const auto copy = projection->copy();
        const auto &copied = *copy, &original = *projection;
        EXPECT_EQ(typeid(copied), typeid(original));
        EXPECT_TRUE(copy->isEqualToMapProjection(projection.get()));
    }
}

TEST(MapProjection, LosesTheZoneInACopy) {
    const auto copy = MzMapProjection::mapProjectionWithUTMZone(33)->copy();
    const auto* utm = dynamic_cast<MzUTMZoneProjection*>(copy.get());
    ASSERT_NE(utm, nullptr);
    EXPECT_EQ(utm->utmZone(), 0u);
    EXPECT_EQ(copy->srid(), 32633);
    EXPECT_EQ(copy->name(), "UTM Zone 33");
    EXPECT_EQ(copy->projectedCoordinateForLongitudeLatitude({-183, 10}).x, 500000.0);
    EXPECT_EQ(copy->longitudeLatitudeForProjectedCoordinate({500000, 0}).x, -183.0);
}

}  // namespace
}  // namespace mezalith
