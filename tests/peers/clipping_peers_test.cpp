// SPDX-License-Identifier: MIT
#include "mezalith/clipping/test_support.hpp"
#include "mezalith/geometry/test_support.hpp"
#include "tests/peers/geos_peer.hpp"
#include "tests/peers/maps.hpp"
#include <mezalith/geometry/area.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/geometry/record_bounds.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <filesystem>
#include <limits>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Random = std::mt19937_64;
using test::Points;

double uniform(Random& random, double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(random);
}

MzClippingRegion exactly(MzRect rect) {
    MzClippingRegion region;
    region.setClippingRect(rect);
    region.setTransform(MzAffineTransform::transform());
    region.setExact(true);
    return region;
}

/// A simple polygon of few corners.
Points star(Random& random) {
    const int corners = 3 + static_cast<int>(random() % 5);
    Points points;
    for (int i = 0; i < corners; ++i) {
        const double angle = 2 * std::numbers::pi * (i + uniform(random, 0, 0.9)) / corners;
        const double radius = uniform(random, 1, 10);
        points.push_back({radius * std::cos(angle), radius * std::sin(angle)});
    }
    points.push_back(points.front());
    return points;
}

/// The area of what the polygon and the rectangle share; NaN where GEOS refuses.
double sharedAreaByGeos(const test::GeosGeometry& polygon, MzRect rect) {
    const auto [x, y] = rect.origin;
    const double right = x + rect.size.width, top = y + rect.size.height;
    const test::GeosGeometry box =
        test::geosPolygon({{{x, y}, {right, y}, {right, top}, {x, top}, {x, y}}});
    const test::GeosGeometry shared{
        GEOSIntersection_r(test::geosContext(), polygon.get(), box.get())};
    return shared == nullptr ? std::numeric_limits<double>::quiet_NaN() : test::areaByGeos(shared);
}

/// As far as areas of this size tell coordinates of this size apart, both rounded once.
double toleranceFor(double area, MzRect rect, double coordinate) {
    const double border = 2 * (rect.size.width + rect.size.height);
    return std::max(1e-9 * area, 1e-15 * coordinate * border);
}

TEST(ClippingPeers, RandomRingsKeepTheAreasOfGeosIntersections) {
    Random random(20261124);
    int cut = 0;
    for (int i = 0; i < 100'000; ++i) {
        Points ring = star(random);
        const MzRect rect{{uniform(random, -8, 4), uniform(random, -8, 4)},
                          {uniform(random, 0.5, 8), uniform(random, 0.5, 8)}};
        const auto polygon =
            MzPolygonGeometry::initWithPolygon(test::OwnedPolygon({ring}).record());
        const MzClippingRegion region = exactly(rect);
        const double area = MzArea(polygon->clippedPolygonWithRegion(&region));
        const double expected = sharedAreaByGeos(test::geosPolygon({ring}), rect);
        ASSERT_NEAR(area, expected, toleranceFor(expected, rect, 10)) << "round " << i;
        cut += area > 0 && area < MzArea(polygon->polygonGeometry()) ? 1 : 0;
    }
    EXPECT_GT(cut, 50'000);
}

// --- the maps -------------------------------------------------------------

/// Around a corner of the outline, so that it is cut, from the whole polygon's size down.
MzRect windowOn(Random& random, const MzPolygon& polygon) {
    const auto points = pointsOf(&polygon.rings[random() % polygon.count]);
    const MzPoint corner = points[random() % points.size()];
    const MzRect bounds = *MzBoundsOfRings(ringsOf(&polygon));
    const double share = std::pow(10, uniform(random, -2, 0.2));
    const MzSize size{bounds.size.width * share, bounds.size.height * share};
    return {{corner.x - size.width * uniform(random, 0.1, 0.9),
             corner.y - size.height * uniform(random, 0.1, 0.9)},
            size};
}

/// Each ring of what the region keeps has the area that Sutherland and Hodgman leave of it, whether
/// the polygon is valid or not.
void expectAreasBySides(const MzPolygon& polygon, const MzPolygon& clipped,
                        const MzClippingRegion& region) {
    ASSERT_EQ(clipped.count, polygon.count);
    for (std::size_t i = 0; i < polygon.count; ++i) {
        const auto whole = pointsOf(&polygon.rings[i]), kept = pointsOf(&clipped.rings[i]);
        const double expected =
            clipping_test::areaOf(clipping_test::cutBySides({whole.begin(), whole.end()}, region));
        ASSERT_NEAR(clipping_test::areaOf({kept.begin(), kept.end()}), expected,
                    toleranceFor(std::abs(expected), region.clippingRect(), 180))
            << "ring " << i;
    }
}

/// Polygons by the file that they are in.
class ClippingOfMaps : public testing::TestWithParam<std::filesystem::path> {};

TEST_P(ClippingOfMaps, KeepsTheAreasOfGeosAndOfSutherlandAndHodgman) {
    constexpr int kWindows = 8;
    Random random(20261125);
    std::size_t polygons = 0, invalid = 0;
    test::forEachPolygon(GetParam(), [&](const MzPolygon& record) {
        const auto polygon = MzPolygonGeometry::initWithPolygon(record);
        const test::GeosGeometry peer = test::geosPolygon(test::ringsOfRecord(record));
        const bool isValid = test::isValidToGeos(peer);
        ++polygons;
        invalid += isValid ? 0 : 1;
        for (int i = 0; i < kWindows && !HasFatalFailure(); ++i) {
            const MzRect rect = windowOn(random, record);
            SCOPED_TRACE(testing::Message()
                         << "polygon " << polygons << " in " << rect.origin.x << ' '
                         << rect.origin.y << ' ' << rect.size.width << ' ' << rect.size.height);
            const MzClippingRegion region = exactly(rect);
            const MzPolygon* clipped = polygon->clippedPolygonWithRegion(&region);
            expectAreasBySides(record, *clipped, region);
            if (!isValid) continue;  // GEOS has no answer, or another one
            const double expected = sharedAreaByGeos(peer, rect);
            ASSERT_NEAR(MzArea(clipped), expected, toleranceFor(expected, rect, 180));
        }
    });
    EXPECT_GE(polygons, 9u);
    EXPECT_EQ(invalid, GetParam().stem() == "naturalearth-110m" ? 2u : 0u);
}

INSTANTIATE_TEST_SUITE_P(Maps, ClippingOfMaps,
                         testing::ValuesIn(test::mapSources(MEZALITH_SOURCE_DIR)), test::nameOfMap);

}  // namespace
}  // namespace mezalith
