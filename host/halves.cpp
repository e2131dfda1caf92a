// SPDX-License-Identifier: MIT
#include "host/halves.hpp"

#include "host/antimeridian.hpp"
#include "host/bounding_box.hpp"
#include "host/view_cutter.hpp"
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/medialaxis/disjoint_sets.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <map>
#include <set>
#include <span>
#include <utility>

namespace mezalith::host {
namespace {

using Features = std::vector<std::shared_ptr<Feature>>;

/// Sides along the 180th meridian do not stray farther from it.
constexpr double kEdge = 180 - 1e-3;

/// A side of a feature's outline along the edge of the data.
struct Side {
    std::uint32_t feature;
    bool isEast;
    double south, north;
};

/// The polygons of an area, as long as the geometry lives.
std::span<const MzPolygon> polygonsOfArea(const MzGeometry& geometry) {
    if (const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(&geometry)) {
        return {polygon->polygonGeometry(), 1};
    }
    const auto* polygons = dynamic_cast<const MzMultiPolygonGeometry*>(&geometry);
    if (polygons == nullptr) return {};
    return polygonsOf(polygons->multiPolygonGeometry());
}

void addSides(std::uint32_t index, std::span<const MzPoint> ring, std::vector<Side>& sides) {
    for (std::size_t i = 1; i < ring.size(); ++i) {
        const MzPoint p = ring[i - 1], q = ring[i];
        if (!isAlongAntimeridian(p, q)) continue;
        sides.push_back({index, p.x > 0, std::min(p.y, q.y), std::max(p.y, q.y)});
    }
}

std::vector<Side> sidesOf(const Features& features) {
    std::vector<Side> sides;
    for (std::uint32_t i = 0; i < features.size(); ++i) {
        if (features[i]->form() != Form::Area) continue;
        MzGeometry& geometry = *features[i]->geometry();
        const BoundingBox box = boundsOf(geometry);
        if (box.minX > -kEdge && box.maxX < kEdge) continue;
        for (const MzPolygon& polygon : polygonsOfArea(geometry)) {
            for (const MzLinearRing& ring : ringsOf(&polygon)) addSides(i, pointsOf(&ring), sides);
        }
    }
    return sides;
}

bool areAlike(const Feature& a, const Feature& b) {
    return a.record()->layer == b.record()->layer && a.style() == b.style() &&
           a.record()->attributes == b.record()->attributes;
}

/// The sets of features that share a piece of the edge. Of several sides at one place, each is
/// compared with the one across that reaches farthest north.
detail::DisjointSets halvesAmong(const Features& features, std::vector<Side> sides) {
    detail::DisjointSets sets(features.size());
    std::ranges::sort(sides, {}, &Side::south);
    constexpr double kNowhere = -std::numeric_limits<double>::infinity();
    std::array<Side, 2> farthest{};
    for (Side& side : farthest) side.north = kNowhere;
    for (const Side& side : sides) {
        const Side& other = farthest[side.isEast ? 0 : 1];
        if (side.south < other.north &&
            areAlike(*features[side.feature], *features[other.feature])) {
            sets.join(side.feature, other.feature);
        }
        Side& own = farthest[side.isEast ? 1 : 0];
        if (side.north > own.north) own = side;
    }
    return sets;
}

std::shared_ptr<Feature> whole(const Features& halves) {
    std::vector<MzPolygon> polygons;
    for (const auto& half : halves) {
        std::ranges::copy(polygonsOfArea(*half->geometry()), std::back_inserter(polygons));
    }
    return halves.front()->withGeometry(MzMultiPolygonGeometry::initWithMultiPolygon(
        {static_cast<std::uint32_t>(polygons.size()), polygons.data()}));
}

}  // namespace

void joinHalves(Features& features) {
    const std::vector<Side> sides = sidesOf(features);
    if (sides.empty()) return;
    detail::DisjointSets sets = halvesAmong(features, sides);
    std::set<std::uint32_t> touching;
    for (const Side& side : sides) touching.insert(side.feature);
    std::map<std::uint32_t, Features> wholes;
    for (const std::uint32_t i : touching) wholes[sets.find(i)].push_back(features[i]);
    for (const std::uint32_t i : touching) {
        const Features& halves = wholes[sets.find(i)];
        if (halves.size() > 1) features[i] = sets.find(i) == i ? whole(halves) : nullptr;
    }
    std::erase(features, nullptr);
}

}  // namespace mezalith::host
