// SPDX-License-Identifier: MIT
#include <mezalith/projection/proj/proj_projection.hpp>
#include <mezalith/projection/utm_projection.hpp>
#include <mezalith/projection/web_mercator_projection.hpp>

#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Shape = MzProjectionRegion::Shape;

constexpr unsigned kSeed = 20261121;
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::shared_ptr<MzProjProjection> made(const std::string& text) {
    std::string error;
    auto projection = MzProjProjection::initWithText(text, &error);
    EXPECT_NE(projection, nullptr) << text << ": " << error;
    return projection;
}

std::string errorOf(const std::string& text) {
    std::string error;
    EXPECT_EQ(MzProjProjection::initWithText(text, &error), nullptr) << text;
    EXPECT_EQ(MzProjProjection::initWithText(text), nullptr);
    return error;
}

bool sameBits(MzPoint a, MzPoint b) {
    return std::bit_cast<std::array<std::uint64_t, 2>>(a) ==
           std::bit_cast<std::array<std::uint64_t, 2>>(b);
}

TEST(ProjProjection, DescribesASystemByItsCode) {
    const auto zone = made("epsg:25833");
    EXPECT_EQ(zone->srid(), 25833);
    EXPECT_EQ(zone->name(), "ETRS89 / UTM zone 33N");
    EXPECT_EQ(zone->text(), "epsg:25833");
    const MzRect area = zone->areaOfUse();
    EXPECT_NEAR(area.origin.x, 12, 0.01);
    EXPECT_NEAR(area.size.width, 6, 0.02);
    const MzRect bounds = zone->bounds();
    EXPECT_NEAR(bounds.origin.x + bounds.size.width / 2, 500'000, 500);
    EXPECT_GT(zone->maximumResolution(), 0);
    EXPECT_EQ(made("EPSG:3035")->srid(), 3035);
}

TEST(ProjProjection, DescribesAPROJStringByItsText) {
    const auto one = made("+proj=moll +lon_0=150"), other = made("+proj=moll +lon_0=0");
    EXPECT_EQ(one->name(), "+proj=moll +lon_0=150");
    EXPECT_LT(one->srid(), 0);
    EXPECT_EQ(one->srid(), made("+proj=moll +lon_0=150")->srid());
    EXPECT_NE(one->srid(), other->srid());
    EXPECT_FALSE(one->isEqualToMapProjection(other.get()));
    EXPECT_TRUE(MzEqualRects(one->areaOfUse(), MzZeroRect));
    EXPECT_NEAR(one->bounds().size.width, 4 * std::sqrt(2.0) * 6378137, 1e3);
}

TEST(ProjProjection, TakesLongitudeFirstWhateverTheSystemsOrder) {
    // 3035 has northing first, 4326 latitude, 31467 northing, 3031 easting to the north.
    const MzPoint centre = made("epsg:3035")->projectedCoordinateForLongitudeLatitude({10, 52});
    EXPECT_NEAR(centre.x, 4'321'000, 1e-3);
    EXPECT_NEAR(centre.y, 3'210'000, 1e-3);
    const MzPoint degrees = made("epsg:4326")->projectedCoordinateForLongitudeLatitude({10, 52});
    EXPECT_EQ(degrees.x, 10);
    EXPECT_EQ(degrees.y, 52);
    const MzPoint gauss = made("epsg:31467")->projectedCoordinateForLongitudeLatitude({9, 52});
    EXPECT_NEAR(gauss.x, 3'500'000, 300);
    EXPECT_NEAR(gauss.y, 5'762'000, 1000);
    const MzPoint polar = made("epsg:3031")->projectedCoordinateForLongitudeLatitude({90, -70});
    EXPECT_GT(polar.x, 2e6);
    EXPECT_NEAR(polar.y, 0, 1e-3);
}

TEST(ProjProjection, SaysWhatIsWrong) {
    EXPECT_EQ(errorOf("mercator"), "it is neither AUTHORITY:CODE nor a PROJ string");
    EXPECT_EQ(errorOf(""), "it is neither AUTHORITY:CODE nor a PROJ string");
    EXPECT_EQ(errorOf("epsg:"), "it is neither AUTHORITY:CODE nor a PROJ string");
    EXPECT_NE(errorOf("epsg:99999").find("crs not found"), std::string::npos);
    EXPECT_NE(errorOf("nobody:1").find("not found"), std::string::npos);
    EXPECT_EQ(errorOf("epsg:4978"),
              "it is no system of longitude and latitude or of a map's plane");
    EXPECT_EQ(errorOf("epsg:5773"),
              "it is no system of longitude and latitude or of a map's plane");
    EXPECT_FALSE(errorOf("+proj=nonsense").empty());
    EXPECT_FALSE(errorOf("+").empty());
    EXPECT_FALSE(errorOf("+proj=utm +zone=99").empty());
    EXPECT_EQ(errorOf("+proj=lcc +lat_1=0\n").find('\n'), std::string::npos);
}

TEST(ProjProjection, KnowsWhatOfTheGlobeItsMethodShows) {
    const auto zone = made("epsg:25833")->region();
    EXPECT_EQ(zone.shape, Shape::Band);
    EXPECT_NEAR(zone.centre.x, 15, 1e-9);
    EXPECT_EQ(zone.reach, 70);
    const auto north = made("epsg:3995")->region();
    EXPECT_EQ(north.shape, Shape::Cap);
    EXPECT_EQ(north.centre.y, 90);
    EXPECT_NEAR(made("epsg:3031")->region().centre.y, -90, 1e-9);
    EXPECT_NEAR(made("epsg:3413")->region().centre.y, 90, 1e-9);
    EXPECT_NEAR(made("epsg:3413")->region().centre.x, -45, 1e-9);
    const auto moll = made("+proj=moll +lon_0=150")->region();
    EXPECT_EQ(moll.shape, Shape::Band);
    EXPECT_NEAR(moll.centre.x, 150, 1e-9);
    EXPECT_NEAR(moll.reach, 180, 1e-6);
    EXPECT_NEAR(made("+proj=eqearth")->region().reach, 180, 1e-6);
    EXPECT_EQ(made("+proj=ortho +lat_0=40 +lon_0=-100")->region().shape, Shape::Cap);
    EXPECT_NEAR(made("+proj=ortho +lat_0=40 +lon_0=-100")->region().centre.y, 40, 1e-9);
    EXPECT_EQ(made("+proj=laea +lat_0=52 +lon_0=10")->region().reach, 179);
    const auto cone = made("epsg:2154")->region();
    EXPECT_EQ(cone.shape, Shape::Band);
    EXPECT_NEAR(cone.centre.x, 3, 1e-9);
    EXPECT_EQ(cone.south, -60);
    EXPECT_NEAR(made("+proj=merc")->region().north, 85.05, 0.01);
    EXPECT_NEAR(made("epsg:27572")->region().centre.x, 2.337229, 1e-5);  // from Paris
    EXPECT_EQ(made("epsg:5514")->region().shape, Shape::Cap);
    EXPECT_EQ(made("+proj=tmerc +lon_0=9")->region().reach, 70);
    EXPECT_EQ(made("epsg:4326")->region().shape, Shape::Band);
}

TEST(ProjProjection, AgreesWithOurOwn) {
    const auto mercator = made("epsg:3857");
    const auto zone = made("epsg:32719");
    const MzWebMercatorProjection ourMercator;
    const auto ourZone = MzUTMProjection::initWithZone(19, MzUTMProjection::Hemisphere::South);
    std::mt19937_64 random{kSeed};
    std::uniform_real_distribution<double> off{-30, 30}, latitude{-85, 85};
    for (int i = 0; i < 20'000; ++i) {
        const MzPoint p{off(random) - 69, latitude(random)};
        const MzPoint a = mercator->projectedCoordinateForLongitudeLatitude(p);
        const MzPoint b = ourMercator.projectedCoordinateForLongitudeLatitude(p);
        ASSERT_LT(std::hypot(a.x - b.x, a.y - b.y), 1e-7) << "seed " << kSeed;
        const MzPoint c = zone->projectedCoordinateForLongitudeLatitude(p);
        const MzPoint d = ourZone->projectedCoordinateForLongitudeLatitude(p);
        ASSERT_LT(std::hypot(c.x - d.x, c.y - d.y), 1e-6) << "seed " << kSeed;
    }
}

TEST(ProjProjection, ComesBackToWhereItWas) {
    std::mt19937_64 random{kSeed};
    for (const char* text : {"epsg:25833", "epsg:3995", "epsg:3031", "+proj=moll +lon_0=150",
                             "+proj=eqearth", "epsg:3035", "epsg:2154"}) {
        const auto projection = made(text);
        const MzProjectionRegion region = projection->region();
        std::uniform_real_distribution<double> longitude{-180, 180}, latitude{-89.5, 89.5};
        for (int i = 0; i < 2'000; ++i) {
            const MzPoint p{longitude(random), latitude(random)};
            if (!region.holds(p)) continue;
            const MzPoint back = projection->longitudeLatitudeForProjectedCoordinate(
                projection->projectedCoordinateForLongitudeLatitude(p));
            ASSERT_LT(MzAngleBetween(p, back), 1e-6) << text << ' ' << p.x << ' ' << p.y;
        }
    }
}

TEST(ProjProjection, AnswersNaNForWhatHasNoPlace) {
    const auto globe = made("+proj=ortho +lat_0=0 +lon_0=0");
    EXPECT_TRUE(std::isnan(globe->projectedCoordinateForLongitudeLatitude({120, 0}).x));
    EXPECT_TRUE(std::isnan(globe->longitudeLatitudeForProjectedCoordinate({1e8, 0}).y));
    // What went wrong before does not cling.
    EXPECT_NEAR(globe->projectedCoordinateForLongitudeLatitude({0, 0}).x, 0, 1e-9);
    for (const MzPoint p :
         std::array<MzPoint, 4>{{{kNaN, 0}, {0, kNaN}, {kInfinity, 0}, {0, 91}}}) {
        EXPECT_TRUE(std::isnan(globe->projectedCoordinateForLongitudeLatitude(p).x));
    }
}

TEST(ProjProjection, ProjectsBatchesAsPointByPoint) {
    const std::vector<MzPoint> places{{15, 60}, {-150, -60}, {kNaN, 1}, {1, 95}, {0, 0}};
    for (const char* text : {"epsg:25833", "epsg:3031", "+proj=moll +lon_0=150"}) {
        const auto projection = made(text);
        std::vector<MzPoint> plane(places.size()), inPlace = places, back(places.size());
        projection->projectCoordinates(places, plane);
        projection->projectCoordinates(inPlace, inPlace);
        projection->unprojectCoordinates(plane, back);
        for (std::size_t i = 0; i < places.size(); ++i) {
            const MzPoint one = projection->projectedCoordinateForLongitudeLatitude(places[i]);
            EXPECT_TRUE(sameBits(plane[i], one)) << text << ' ' << i;
            EXPECT_TRUE(sameBits(inPlace[i], one)) << text << ' ' << i;
            const MzPoint inverse = projection->longitudeLatitudeForProjectedCoordinate(plane[i]);
            EXPECT_TRUE(sameBits(back[i], inverse)) << text << ' ' << i;
        }
        std::vector<MzPoint> fewer(1);
        projection->projectCoordinates(places, fewer);
        projection->projectCoordinates({}, fewer);
        EXPECT_TRUE(sameBits(fewer[0], plane[0]));
    }
}

TEST(ProjProjection, MeasuresItsUnits) {
    EXPECT_NEAR(made("epsg:25833")->metersPerProjectedUnitForLongitudeLatitude({15, 60}),
                1 / 0.9996, 1e-6);
    EXPECT_NEAR(made("epsg:3995")->metersPerProjectedUnitForLongitudeLatitude({0, 71}), 1, 1e-4);
    EXPECT_NEAR(made("epsg:3995")->metersPerProjectedUnitForLongitudeLatitude({0, 90}), 1.028,
                1e-2);
    EXPECT_NEAR(made("epsg:4326")->metersPerProjectedUnitForLongitudeLatitude({0, 0}), 111'319.5,
                0.1);
    EXPECT_NEAR(made("epsg:2263")->metersPerProjectedUnitForLongitudeLatitude({-74, 40.7}), 0.3048,
                1e-4);  // feet
}

TEST(ProjProjection, CopiesWithItsSystem) {
    const auto projection = made("epsg:3035");
    projection->setName("Europe");
    const auto copy = projection->copy();
    EXPECT_EQ(copy->name(), "Europe");
    EXPECT_TRUE(sameBits(copy->projectedCoordinateForLongitudeLatitude({10, 50}),
                         projection->projectedCoordinateForLongitudeLatitude({10, 50})));
}

TEST(ProjProjection, ServesAThreadPerObject) {
    std::vector<MzPoint> results(4);
    {
        std::vector<std::jthread> threads;
        for (MzPoint& result : results) {
            threads.emplace_back([&result] {
                const auto projection = MzProjProjection::initWithText("epsg:25833");
                for (int i = 0; i < 1000; ++i) {
                    result = projection->projectedCoordinateForLongitudeLatitude({10.75, 59.91});
                }
            });
        }
    }
    for (const MzPoint result : results) EXPECT_TRUE(sameBits(result, results[0]));
}

}  // namespace
}  // namespace mezalith
