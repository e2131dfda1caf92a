// SPDX-License-Identifier: MIT
#include "host/globe_cut.hpp"

#include "host/data_source.hpp"
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/projection/utm_projection.hpp>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

using Points = std::vector<MzPoint>;

constexpr unsigned kSeed = 20261121;
constexpr double kTolerance = 0.01;

/// Azimuthal, equal area, on the sphere of radius 100 around the south pole.
class Southern final : public MzMapProjection {
  public:
    MzPoint projectedCoordinateForLongitudeLatitude(MzPoint p) const override {
        constexpr double kRadians = 0.017453292519943295;
        const double r = 200 * std::sin((90 + p.y) / 2 * kRadians);
        return {r * std::sin(p.x * kRadians), r * std::cos(p.x * kRadians)};
    }
    MzProjectionRegion region() const override { return MzProjectionRegion::cap({0, -90}, 60); }
};

const BoundingBox kEverything{-1e9, -1e9, 1e9, 1e9};

GlobeCut southern() {
    const auto projection = std::make_shared<Southern>();
    return {projection, projection->region(), kEverything, kTolerance};
}

/// Degrees as they are, in a band around the meridian.
GlobeCut degrees(double meridian) {
    return {std::make_shared<MzPlateCarreeProjection>(),
            MzProjectionRegion::band(meridian, 180 - 1e-9, -90, 90), kEverything, kTolerance};
}

/// The same, interrupted to the north of 20 degrees along a meridian.
GlobeCut interruptedDegrees(double meridian, double gap) {
    MzProjectionRegion region = MzProjectionRegion::band(meridian, 180 - 1e-9, -90, 90);
    region.gaps = {{gap, 20, true}};
    return {std::make_shared<MzPlateCarreeProjection>(), region, kEverything, kTolerance};
}

GlobeRing box(double west, double south, double east, double north) {
    return {{west, south}, {east, south}, {east, north}, {west, north}, {west, south}};
}

double area(const GlobeRing& ring) {
    double sum = 0;
    for (std::size_t i = 1; i < ring.size(); ++i) {
        sum += ring[i - 1].x * ring[i].y - ring[i].x * ring[i - 1].y;
    }
    return std::abs(sum) / 2;
}

GlobeRing projected(const MzMapProjection& projection, GlobeRing ring) {
    projection.projectCoordinates(ring, ring);
    return ring;
}

double longestSide(const GlobeRing& ring) {
    double longest = 0;
    for (std::size_t i = 1; i < ring.size(); ++i) {
        longest =
            std::max(longest, std::hypot(ring[i].x - ring[i - 1].x, ring[i].y - ring[i - 1].y));
    }
    return longest;
}

/// Even-odd, over all rings of all polygons.
bool covers(const std::vector<GlobeRings>& polygons, MzPoint p) {
    bool inside = false;
    for (const GlobeRings& rings : polygons) {
        for (const GlobeRing& ring : rings) {
            for (std::size_t i = 1; i < ring.size(); ++i) {
                const MzPoint a = ring[i - 1], b = ring[i];
                if ((a.y > p.y) == (b.y > p.y)) continue;
                if (p.x < a.x + (p.y - a.y) / (b.y - a.y) * (b.x - a.x)) inside = !inside;
            }
        }
    }
    return inside;
}

TEST(GlobeCut, PartsALineAtTheCut) {
    const auto pieces = degrees(0).line(Points{{170, 0}, {190, 10}, {200, 10}});
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_NEAR(pieces[0].back().x, 180, 1e-6);
    EXPECT_NEAR(pieces[0].back().y, 5, 1e-6);
    EXPECT_NEAR(pieces[1].front().x, -180, 1e-6);
    EXPECT_NEAR(pieces[1].back().x, -160, 1e-6);
}

TEST(GlobeCut, KeepsALineWholeWhereTheCutIsElsewhere) {
    const auto pieces = degrees(150).line(Points{{170, 0}, {190, 10}});
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_NEAR(pieces[0].back().x, 190, 1e-6);
}

TEST(GlobeCut, LeavesOutWhatIsNotFinite) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(degrees(0).line(Points{{1, 1}, {nan, 0}, {2, 2}}).size(), 1u);
    EXPECT_TRUE(degrees(0).line(Points{{nan, nan}, {nan, 0}}).empty());
    EXPECT_TRUE(degrees(0).line({}).empty());
    EXPECT_TRUE(degrees(0).polygons({{{{nan, nan}, {1, nan}, {nan, 1}, {nan, nan}}}}).empty());
    EXPECT_TRUE(degrees(0).polygons({}).empty());
    EXPECT_TRUE(degrees(0).polygons({{}, {{}}}).empty());
}

TEST(GlobeCut, DoesNotFollowWhatIsHundredsOfTurnsAway) {
    for (const double far : {1e300, -1e17, 1e9}) {
        EXPECT_EQ(degrees(0).line(Points{{0, 0}, {far, 1}, {2, 2}}).size(), 1u);
        EXPECT_EQ(southern().line(Points{{0, -80}, {far, -80}, {2, -82}}).size(), 1u);
        EXPECT_TRUE(degrees(0).polygons({{box(far, 0, 2 * far, 10)}}).empty());
    }
    EXPECT_TRUE(southern().polygons({{box(0, -1e300, 10, 1e300)}}).size() <= 1);
}

TEST(GlobeCut, JoinsAnIslandAcrossTheAntimeridianInOneRing) {
    const auto polygons =
        degrees(170).polygons({{box(175, -20, 180, -10)}, {box(-180, -20, -178, -10)}});
    ASSERT_EQ(polygons.size(), 1u);
    ASSERT_EQ(polygons[0].size(), 1u);
    EXPECT_NEAR(area(polygons[0][0]), 70, 1e-6);
    EXPECT_LT(longestSide(polygons[0][0]), 11);
}

TEST(GlobeCut, CutsAPolygonInTwoAtTheEdgeWithoutALineAcross) {
    const auto polygons = degrees(0).polygons({{box(175, -20, 182, -10)}});
    ASSERT_EQ(polygons.size(), 1u);
    ASSERT_EQ(polygons[0].size(), 2u);
    EXPECT_NEAR(area(polygons[0][0]) + area(polygons[0][1]), 70, 1e-6);
    for (const GlobeRing& ring : polygons[0]) EXPECT_LT(longestSide(ring), 20);
}

TEST(GlobeCut, DoesNotJoinPartsOfAPolygonAlongTheEdge) {
    // A comb whose teeth reach over the cut.
    const GlobeRing comb{{190, 0}, {190, 10}, {170, 10}, {170, 8}, {185, 8},
                         {185, 2}, {170, 2},  {170, 0},  {190, 0}};
    const auto polygons = degrees(0).polygons({{comb}});
    ASSERT_EQ(polygons.size(), 1u);
    EXPECT_EQ(polygons[0].size(), 3u);  // two teeth and the back
    EXPECT_FALSE(covers(polygons, {179, 5}));
    EXPECT_TRUE(covers(polygons, {179, 9}));
    EXPECT_TRUE(covers(polygons, {-171, 5}));
    double sum = 0;
    for (const GlobeRing& ring : polygons[0]) sum += area(ring);
    EXPECT_NEAR(sum, 2 * 15 * 2 + 5 * 10, 1e-5);
}

TEST(GlobeCut, FillsABandWithAPolygonOfTheWholeWorld) {
    for (const double meridian : {0.0, 150.0, -77.7}) {
        const auto polygons = degrees(meridian).polygons({{box(-180, -90, 180, 90)}});
        ASSERT_EQ(polygons.size(), 1u);
        ASSERT_EQ(polygons[0].size(), 1u);
        EXPECT_NEAR(area(polygons[0][0]), 360 * 180, 1e-4);
    }
}

TEST(GlobeCut, FillsACapWithAPolygonOfTheWholeWorld) {
    const auto polygons = southern().polygons({{box(-180, -90, 180, 90)}});
    ASSERT_EQ(polygons.size(), 1u);
    ASSERT_EQ(polygons[0].size(), 1u);
    // The surface of a cap on a sphere of radius 100.
    const double surface = 2 * 3.141592653589793 * 100 * 100 * (1 - 0.5);
    EXPECT_NEAR(area(projected(Southern(), polygons[0][0])), surface, surface * 1e-4);
}

TEST(GlobeCut, DrawsAContinentAroundAPoleWithoutItsFrame) {
    GlobeRing antarctica;
    for (int i = -180; i <= 180; i += 2) {
        const double dent = std::abs(i) == 180 ? 0 : i % 4;
        antarctica.push_back({static_cast<double>(i), -70 + dent});
    }
    antarctica.insert(antarctica.end(), {{180, -90}, {-180, -90}, {-180, -70}});
    const auto polygons = southern().polygons({{antarctica}});
    ASSERT_EQ(polygons.size(), 1u);
    ASSERT_EQ(polygons[0].size(), 1u);
    const GlobeRing plane = projected(Southern(), polygons[0][0]);
    for (const MzPoint p : plane) EXPECT_GT(std::hypot(p.x, p.y), 30);  // none near the pole
    EXPECT_LT(longestSide(plane), 5);
    // In a band around another meridian it is cut there, and reaches down to the pole.
    const auto band = degrees(150).polygons({{antarctica}});
    ASSERT_EQ(band.size(), 1u);
    EXPECT_TRUE(covers(band, {180, -80}));
    EXPECT_TRUE(covers(band, {-29, -89.9}));
    EXPECT_TRUE(covers(band, {329, -89.9}));
    EXPECT_FALSE(covers(band, {180, -60}));
}

TEST(GlobeCut, CutsOffWhatIsBeyondACap) {
    const auto polygons = southern().polygons({{box(-10, -60, 10, 0)}});
    ASSERT_EQ(polygons.size(), 1u);
    for (const MzPoint p : polygons[0][0]) EXPECT_LE(p.y, -30 + 1e-6);
    EXPECT_TRUE(southern().polygons({{box(-10, -20, 10, 0)}}).empty());
    const auto pieces = southern().line(Points{{0, -80}, {0, 10}});
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_NEAR(pieces[0].back().y, -30, 1e-6);
}

TEST(GlobeCut, BendsLongSides) {
    const auto pieces = southern().line(Points{{-180, -60}, {180, -60}});
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_GT(pieces[0].size(), 100u);
    const double radius = 200 * std::sin(15 * 0.017453292519943295);
    const GlobeRing plane = projected(Southern(), pieces[0]);
    for (std::size_t i = 1; i < plane.size(); ++i) {
        const double middle =
            std::hypot((plane[i].x + plane[i - 1].x) / 2, (plane[i].y + plane[i - 1].y) / 2);
        EXPECT_NEAR(middle, radius, 2 * kTolerance);
    }
    const auto straight = southern().line(Points{{30, -89}, {30, -60}});
    EXPECT_LT(straight[0].size(), 40u);
}

TEST(GlobeCut, BendsOnlyWhatIsInView) {
    const auto projection = std::make_shared<Southern>();
    const BoundingBox view{40, 40, 41, 41};
    const GlobeCut near(projection, projection->region(), view, 1e-6);
    const auto pieces = near.line(Points{{-180, -73.5}, {180, -73.5}});
    ASSERT_EQ(pieces.size(), 1u);
    EXPECT_LT(pieces[0].size(), 3000u);
}

/// Coverage is the same before and after, wherever the cut is, for stars that may lie across it.
TEST(GlobeCut, CoversTheSamePlaces) {
    std::mt19937_64 random{kSeed};
    std::uniform_real_distribution<double> longitude{-180, 180}, latitude{-80, 80}, radius{2, 9};
    for (int round = 0; round < 300; ++round) {
        const MzPoint middle{longitude(random), latitude(random)};
        GlobeRing star;
        for (int i = 0; i < 12; ++i) {
            const double r = radius(random), angle = i * 0.5235987755982988;
            star.push_back({middle.x + r * std::cos(angle), middle.y + r * std::sin(angle)});
        }
        star.push_back(star.front());
        // Half of the cuts run right through it.
        const double meridian = round % 2 == 0 ? middle.x + 180 : longitude(random);
        const double gap = meridian + std::remainder(middle.x - meridian, 360);
        const bool isInterrupted = round % 4 == 1 && std::abs(gap - meridian) < 179;
        const auto cut = (isInterrupted ? interruptedDegrees(meridian, gap) : degrees(meridian))
                             .polygons({{star}});
        std::uniform_real_distribution<double> off{-10, 10};
        for (int i = 0; i < 40; ++i) {
            const MzPoint p{middle.x + off(random), middle.y + off(random)};
            if (std::abs(p.y) > 89) continue;
            const double local = meridian + std::remainder(p.x - meridian, 360);
            ASSERT_EQ(covers(cut, {local, p.y}), covers({{star}}, p))
                << "seed " << kSeed << " round " << round << ' ' << p.x << ' ' << p.y;
        }
    }
}

TEST(GlobeCut, PartsPolygonsAtAGap) {
    const auto polygons = interruptedDegrees(0, -40).polygons({{box(-50, 10, -30, 30)}});
    ASSERT_EQ(polygons.size(), 1u);
    ASSERT_EQ(polygons[0].size(), 1u);
    EXPECT_NEAR(area(polygons[0][0]), 400, 1e-3);
    const auto isAtTip = [](MzPoint p) { return p.y == 20 && std::abs(p.x + 40) < 1e-4; };
    EXPECT_GE(std::ranges::count_if(polygons[0][0], isAtTip), 2);
    const auto apart = interruptedDegrees(0, -40).polygons({{box(-50, 40, -30, 60)}});
    ASSERT_EQ(apart.size(), 1u);
    ASSERT_EQ(apart[0].size(), 2u);
    for (const GlobeRing& ring : apart[0]) EXPECT_NEAR(area(ring), 200, 1e-3);
}

TEST(GlobeCut, PartsALineAtAGap) {
    const auto pieces = interruptedDegrees(0, -40).line(Points{{-50, 40}, {-30, 40}});
    ASSERT_EQ(pieces.size(), 2u);
    EXPECT_LT(pieces[0].back().x, -40);
    EXPECT_GT(pieces[1].front().x, -40);
    EXPECT_EQ(interruptedDegrees(0, -40).line(Points{{-50, 10}, {-30, 10}}).size(), 1u);
}

/// No line across the map: sides of the pieces are no longer than those of the data.
TEST(GlobeCut, AddsNoLongSideToAnyCoastOfTheWorld) {
    DataSource source(MEZALITH_SOURCE_DIR "/data/map/naturalearth-50m.gpkg:land");
    std::vector<GlobeRings> land;
    for (const auto& feature : source.read(0).features) {
        const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(feature->geometry().get());
        if (polygon == nullptr) continue;
        GlobeRings& rings = land.emplace_back();
        for (const MzLinearRing& ring : ringsOf(polygon->polygonGeometry())) {
            const auto points = pointsOf(&ring);
            rings.emplace_back(points.begin(), points.end());
        }
    }
    ASSERT_GT(land.size(), 1000u);
    constexpr double kLongest = 4;
    for (const double meridian : {0.0, 11.0, 150.0, 180.0, -169.0}) {
        const GlobeCut cut = degrees(meridian);
        for (const GlobeRings& polygon : land) {
            for (const GlobeRings& piece : cut.polygons({polygon})) {
                for (const GlobeRing& ring : piece) {
                    ASSERT_LT(longestSide(ring), kLongest)
                        << meridian << ": " << polygon[0][0].x << ' ' << polygon[0][0].y;
                }
            }
        }
    }
}

TEST(GlobeCut, FollowsAZoneBeyondTheAntimeridian) {
    const auto zone = MzUTMProjection::initWithZone(60, MzUTMProjection::Hemisphere::South);
    const GlobeCut cut(zone, zone->region(), kEverything, 100);
    const auto polygons = cut.polygons({{box(175, -20, 180, -10)}, {box(-180, -20, -178, -10)}});
    ASSERT_EQ(polygons.size(), 1u);
    ASSERT_EQ(polygons[0].size(), 1u);
    for (const MzPoint p : polygons[0][0]) {
        EXPECT_GE(p.x, 175 - 1e-9);
        EXPECT_LE(p.x, 182 + 1e-9);
    }
}

}  // namespace
}  // namespace mezalith::host
