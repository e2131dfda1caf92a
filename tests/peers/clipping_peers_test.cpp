// SPDX-License-Identifier: MIT
#include "host/data_source.hpp"
#include "mezalith/geometry/test_support.hpp"
#include "tests/peers/geos_peer.hpp"
#include <mezalith/geometry/area.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/geometry/record_bounds.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Random = std::mt19937_64;
using test::Points;
using test::Rings;

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

Rings ringsOfRecord(const MzPolygon& polygon) {
    Rings rings;
    for (const MzLinearRing& ring : ringsOf(&polygon)) {
        const auto run = pointsOf(&ring);
        rings.emplace_back(run.begin(), run.end());
    }
    return rings;
}

/// The area of what the polygon and the rectangle share; NaN where GEOS refuses.
double sharedAreaByGeos(const test::GeosPolygon& polygon, MzRect rect) {
    const auto [x, y] = rect.origin;
    const double right = x + rect.size.width, top = y + rect.size.height;
    const test::GeosPolygon box(Rings{{{x, y}, {right, y}, {right, top}, {x, top}, {x, y}}});
    const test::GeosGeometry shared{
        GEOSIntersection_r(test::geosContext(), polygon.geometry(), box.geometry())};
    double area = std::numeric_limits<double>::quiet_NaN();
    if (shared != nullptr) GEOSArea_r(test::geosContext(), shared.get(), &area);
    return area;
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
        const double expected = sharedAreaByGeos(test::GeosPolygon({ring}), rect);
        ASSERT_NEAR(area, expected, toleranceFor(expected, rect, 10)) << "round " << i;
        cut += area > 0 && area < MzArea(polygon->polygonGeometry()) ? 1 : 0;
    }
    EXPECT_GT(cut, 50'000);
}

// --- the maps -------------------------------------------------------------

std::vector<std::shared_ptr<MzPolygonGeometry>> polygonsOfLayer(const std::string& source) {
    std::vector<std::shared_ptr<MzPolygonGeometry>> polygons;
    for (const auto& feature : host::DataSource(source).read(0).features) {
        const auto geometry = feature->geometry();
        if (auto one = std::dynamic_pointer_cast<MzPolygonGeometry>(geometry)) {
            polygons.push_back(std::move(one));
        } else if (const auto many = std::dynamic_pointer_cast<MzMultiPolygonGeometry>(geometry)) {
            for (const MzPolygon& member : polygonsOf(many->multiPolygonGeometry())) {
                polygons.push_back(MzPolygonGeometry::initWithPolygon(member));
            }
        }
    }
    return polygons;
}

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

class ClippingOfMaps : public testing::TestWithParam<const char*> {};

TEST_P(ClippingOfMaps, KeepsTheAreasOfGeosIntersections) {
    constexpr int kWindows = 8;
    Random random(20261125);
    int refused = 0;
    const auto polygons =
        polygonsOfLayer(std::string(MEZALITH_SOURCE_DIR "/data/map/naturalearth-") + GetParam());
    for (const auto& polygon : polygons) {
        const MzPolygon& record = *polygon->polygonGeometry();
        const test::GeosPolygon peer(ringsOfRecord(record));
        for (int i = 0; i < kWindows; ++i) {
            const MzRect rect = windowOn(random, record);
            const MzClippingRegion region = exactly(rect);
            const double area = MzArea(polygon->clippedPolygonWithRegion(&region));
            const double expected = sharedAreaByGeos(peer, rect);
            refused += std::isnan(expected) ? 1 : 0;
            if (std::isnan(expected)) continue;
            ASSERT_NEAR(area, expected, toleranceFor(expected, rect, 180))
                << rect.origin.x << ' ' << rect.origin.y << ' ' << rect.size.width << ' '
                << rect.size.height;
        }
    }
    EXPECT_GT(polygons.size(), 50u);
    EXPECT_EQ(refused, 0);
}

INSTANTIATE_TEST_SUITE_P(Layers, ClippingOfMaps,
                         testing::Values("50m.gpkg:countries", "50m.gpkg:land", "50m.gpkg:lakes",
                                         "50m.gpkg:glaciers", "10m-norway.gpkg:countries",
                                         "10m-norway.gpkg:land", "10m-norway.gpkg:lakes",
                                         "10m-norway.gpkg:glaciers"),
                         [](const auto& layer) {
                             std::string name = layer.param;
                             std::erase_if(name, [](char c) { return std::isalnum(c) == 0; });
                             return name;
                         });

}  // namespace
}  // namespace mezalith
