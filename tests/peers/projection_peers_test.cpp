// SPDX-License-Identifier: MIT
#include "tests/peers/proj_peer.hpp"
#include <mezalith/projection/gauss_kruger.hpp>
#include <mezalith/projection/utm_projection.hpp>
#include <mezalith/projection/web_mercator_projection.hpp>

#include <cmath>
#include <random>
#include <string>

#include <GeographicLib/TransverseMercatorExact.hpp>
#include <GeographicLib/UTMUPS.hpp>
#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Hemisphere = MzUTMProjection::Hemisphere;
using test::ProjPeer;

constexpr unsigned kSeed = 20261121;

const GeographicLib::TransverseMercatorExact& peer() {
    static const GeographicLib::TransverseMercatorExact exact(6378137.0, 1 / 298.257223563, 1.0);
    return exact;
}

/// The greatest distance from the peer, metres, over points up to `reach` degrees from the
/// meridian.
double worstForward(double reach, int count) {
    std::mt19937_64 random{kSeed};
    std::uniform_real_distribution<double> longitude{-reach, reach}, latitude{-90, 90};
    double worst = 0;
    for (int i = 0; i < count; ++i) {
        const MzPoint place{longitude(random), latitude(random)};
        double x = 0, y = 0;
        peer().Forward(15, place.y, place.x + 15, x, y);
        const MzPoint plane = MzGaussKruger({place.x + 15, place.y}, 15);
        worst = std::fmax(worst, std::hypot(plane.x - x, plane.y - y));
    }
    return worst;
}

TEST(GaussKruger, AgreesWithTheExactProjection) {
    EXPECT_LT(worstForward(35, 20'000), 1e-8) << "seed " << kSeed;
    EXPECT_LT(worstForward(60, 20'000), 1e-3) << "seed " << kSeed;
    EXPECT_LT(worstForward(70, 20'000), 2e-2) << "seed " << kSeed;
}

TEST(UTMZoneOf, AgreesWithAPeer) {
    std::mt19937_64 random{kSeed};
    std::uniform_real_distribution<double> longitude{-540, 540}, latitude{-90, 90};
    std::uniform_int_distribution<int> whole{-30, 30};
    for (int i = 0; i < 100'000; ++i) {
        // A third of them on the corners of zones.
        const MzPoint p = i % 3 == 0 ? MzPoint{whole(random) * 3.0, whole(random) * 4.0}
                                     : MzPoint{longitude(random), latitude(random)};
        if (std::abs(p.y) > 90) continue;
        ASSERT_EQ(static_cast<int>(MzUTMZoneOf(p)), GeographicLib::UTMUPS::StandardZone(p.y, p.x))
            << p.x << ' ' << p.y << ", seed " << kSeed;
    }
}

/// Zones and points, seeded, of 10^5 in all.
template <typename OnePoint>
void forEachPoint(double reach, const OnePoint& onePoint) {
    std::mt19937_64 random{kSeed};
    std::uniform_real_distribution<double> off{-reach, reach};
    for (const std::uint32_t number : {1u, 19u, 31u, 33u, 60u}) {
        for (const auto hemisphere : {Hemisphere::North, Hemisphere::South}) {
            const auto zone = MzUTMProjection::initWithZone(number, hemisphere);
            const ProjPeer peer("EPSG:" + std::to_string(zone->srid()));
            ASSERT_TRUE(peer.isUsable());
            std::uniform_real_distribution<double> latitude{-89, 89};
            for (int i = 0; i < 10'000; ++i) {
                onePoint(*zone, peer, MzPoint{number * 6.0 - 183 + off(random), latitude(random)});
            }
        }
    }
}

TEST(UTMProjection, AgreesWithProj) {
    forEachPoint(10, [](const MzUTMProjection& zone, const ProjPeer& peer, MzPoint place) {
        const MzPoint ours = zone.projectedCoordinateForLongitudeLatitude(place);
        const MzPoint theirs = peer.forward(place);
        ASSERT_LT(std::hypot(ours.x - theirs.x, ours.y - theirs.y), 1e-7)
            << place.x << ' ' << place.y << ", seed " << kSeed;
        const MzPoint back = zone.longitudeLatitudeForProjectedCoordinate(ours);
        ASSERT_LT(std::abs(back.y - place.y), 2e-13) << "seed " << kSeed;
        ASSERT_LT(std::abs(std::remainder(back.x - place.x, 360)), 1e-11) << "seed " << kSeed;
    });
}

TEST(UTMProjection, AgreesWithGeographicLib) {
    std::mt19937_64 random{kSeed};
    std::uniform_real_distribution<double> longitude{-180, 180}, latitude{-79.9, 83.9};
    for (int i = 0; i < 50'000; ++i) {
        const MzPoint place{longitude(random), latitude(random)};
        int zone = 0;
        bool north = false;
        double x = 0, y = 0;
        GeographicLib::UTMUPS::Forward(place.y, place.x, zone, north, x, y);
        const auto ours = MzUTMProjection::initWithLongitudeLatitude(place);
        ASSERT_EQ(ours->srid(), (north ? 32600 : 32700) + zone) << place.x << ' ' << place.y;
        const MzPoint plane = ours->projectedCoordinateForLongitudeLatitude(place);
        ASSERT_LT(std::hypot(plane.x - x, plane.y - y), 1e-8) << "seed " << kSeed;
    }
}

TEST(WebMercatorProjection, AgreesWithProj) {
    const MzWebMercatorProjection mercator;
    const ProjPeer peer("EPSG:3857");
    ASSERT_TRUE(peer.isUsable());
    std::mt19937_64 random{kSeed};
    std::uniform_real_distribution<double> longitude{-180, 180}, latitude{-89, 89};
    for (int i = 0; i < 100'000; ++i) {
        const MzPoint place{longitude(random), latitude(random)};
        const MzPoint ours = mercator.projectedCoordinateForLongitudeLatitude(place);
        const MzPoint theirs = peer.forward(place);
        ASSERT_LT(std::abs(ours.x - theirs.x), 1e-8) << place.x << ", seed " << kSeed;
        ASSERT_LT(std::abs(ours.y - theirs.y), 1e-7) << place.y << ", seed " << kSeed;
        const MzPoint back = mercator.longitudeLatitudeForProjectedCoordinate(ours);
        ASSERT_NEAR(back.x, place.x, 1e-13) << "seed " << kSeed;
        ASSERT_NEAR(back.y, place.y, 1e-13) << "seed " << kSeed;
    }
}

}  // namespace
}  // namespace mezalith
