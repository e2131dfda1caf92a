// SPDX-License-Identifier: MIT
#include "mezalith/geometry/test_support.hpp"
#include <mezalith/projection/spherical_area.hpp>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include <GeographicLib/Geodesic.hpp>
#include <GeographicLib/PolygonArea.hpp>
#include <gtest/gtest.h>

namespace mezalith {
namespace {

/// The smaller of the two parts of a sphere of radius 1.
double areaByGeographicLib(const test::Points& ring) {
    const GeographicLib::Geodesic sphere(1, 0);
    GeographicLib::PolygonArea polygon(sphere);
    for (const MzPoint p : ring) polygon.AddPoint(p.y, p.x);
    double perimeter = 0, area = 0;
    polygon.Compute(false, false, perimeter, area);
    return std::min(area, 4 * std::numbers::pi - area);
}

/// A star of any size up to a hemisphere round a place, poles included.
test::Points ringAround(double longitude, double latitude, double size, std::mt19937_64& random) {
    std::uniform_real_distribution<double> share(0.3, 1);
    const GeographicLib::Geodesic sphere(1, 0);
    test::Points ring;
    const int corners = 3 + static_cast<int>(random() % 40);
    for (int i = 0; i < corners; ++i) {
        MzPoint p{};
        sphere.Direct(latitude, longitude, 360.0 * i / corners, size * share(random), p.y, p.x);
        ring.push_back(p);
    }
    return ring;
}

TEST(SphericalPeers, AreasAreThoseOfGeographicLib) {
    std::mt19937_64 random(20261121);
    std::uniform_real_distribution<double> longitude(-180, 180), sine(-1, 1), exponent(-6, 0.1);
    for (int i = 0; i < 20000; ++i) {
        const double latitude = i % 10 == 0 ? std::copysign(90.0, sine(random))
                                            : std::asin(sine(random)) * 180 / std::numbers::pi;
        test::Points ring =
            ringAround(longitude(random), latitude, std::pow(10, exponent(random)), random);
        const auto record = test::recordOf<MzLinearRing>(ring);
        const double area = areaByGeographicLib(ring);
        ASSERT_NEAR(MzSphericalArea(&record, 1), area, 1e-9 * area + 5e-15) << "ring " << i;
    }
}

}  // namespace
}  // namespace mezalith
