// SPDX-License-Identifier: MIT
#include "host/feature_index.hpp"

#include "host/data_source.hpp"
#include "host/view_cutter.hpp"
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>

#include <algorithm>
#include <cmath>
#include <random>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

using Items = std::vector<std::uint32_t>;

const std::string kWorld = MEZALITH_SOURCE_DIR "/data/map/naturalearth-50m.gpkg";
#ifdef NDEBUG
constexpr int kQueries = 100'000;
#else
constexpr int kQueries = 2'000;
#endif

TEST(FeatureIndex, FindsTheFeaturesOfAView) {
    const Layer layer = DataSource(kWorld + ":rivers").read(0);
    const FeatureIndex index(layer.features);
    for (const BoundingBox& area : {BoundingBox{-10, 40, 20, 60}, BoundingBox{150, -90, 260, 90},
                                    BoundingBox{-180, -90, 180, 90}, BoundingBox{350, 40, 380, 60},
                                    BoundingBox{3, 3, 2, 2}}) {
        Items expected;
        for (std::uint32_t i = 0; i < layer.features.size(); ++i) {
            const auto& leaves = layer.features[i]->geometry()->leafNodes();
            const bool meets = std::ranges::any_of(leaves, [&](const auto& leaf) {
                const BoundingBox box = BoundingBox::of(leaf->bounds());
                return area.meets(box) || area.meets(box.movedBy(360, 0)) ||
                       area.meets(box.movedBy(-360, 0));
            });
            if (meets && !area.isEmpty()) expected.push_back(i);
        }
        EXPECT_EQ(index.meeting(area), expected);
    }
}

TEST(FeatureIndex, FindsNothingAmongNothing) {
    EXPECT_TRUE(FeatureIndex({}).meeting({-180, -90, 180, 90}).empty());
}

// --- every vertex of the world --------------------------------------------

void addPoints(std::vector<MzPoint>& points, const MzPolygon& polygon) {
    for (const MzLinearRing& ring : ringsOf(&polygon)) {
        const auto run = pointsOf(&ring);
        points.insert(points.end(), run.begin(), run.end());
    }
}

void addPoints(std::vector<MzPoint>& points, const MzGeometry& geometry) {
    if (const auto* point = dynamic_cast<const MzPointGeometry*>(&geometry)) {
        points.push_back(point->asNSPoint());
    } else if (const auto* line = dynamic_cast<const MzMultiPointGeometry*>(&geometry)) {
        const auto run = pointsOf(line->multiPointGeometry());
        points.insert(points.end(), run.begin(), run.end());
    } else if (const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(&geometry)) {
        addPoints(points, *polygon->polygonGeometry());
    } else if (const auto* polygons = dynamic_cast<const MzMultiPolygonGeometry*>(&geometry)) {
        for (const MzPolygon& member : polygonsOf(polygons->multiPolygonGeometry())) {
            addPoints(points, member);
        }
    }
}

/// Sorted by x, so that a look at every one can leave out those too far west or east.
const std::vector<MzPoint>& verticesOfTheWorld() {
    static const std::vector<MzPoint> points = [] {
        std::vector<MzPoint> all;
        DataSource source(kWorld);
        for (std::size_t i = 0; i < source.layerNames().size(); ++i) {
            for (const auto& feature : source.read(i).features)
                addPoints(all, *feature->geometry());
        }
        std::ranges::sort(all, {}, &MzPoint::x);
        return all;
    }();
    return points;
}

std::shared_ptr<MzPackedRTree> treeOver(const std::vector<MzPoint>& points) {
    std::vector<MzBox> boxes;
    boxes.reserve(points.size());
    for (const MzPoint& p : points) boxes.push_back(MzBox::of(p));
    return MzPackedRTree::initWithBoxes(boxes);
}

std::size_t firstFrom(const std::vector<MzPoint>& points, double x) {
    return static_cast<std::size_t>(std::ranges::lower_bound(points, x, {}, &MzPoint::x) -
                                    points.begin());
}

Items scan(const std::vector<MzPoint>& points, const MzBox& window) {
    Items items;
    for (std::size_t i = firstFrom(points, window.minX);
         i < points.size() && points[i].x <= window.maxX; ++i) {
        if (MzBox::of(points[i]).meets(window)) items.push_back(static_cast<std::uint32_t>(i));
    }
    return items;
}

/// The nearest, looking to the west and to the east until all that is left is too far in x alone.
std::vector<MzPackedRTree::Neighbour> scanNearest(const std::vector<MzPoint>& points, MzPoint p,
                                                  std::size_t count) {
    std::vector<MzPackedRTree::Neighbour> found;
    const auto before = [](const auto& a, const auto& b) {
        return std::pair(a.distance, a.item) < std::pair(b.distance, b.item);
    };
    const auto take = [&](std::size_t i) {
        const double dx = points[i].x - p.x, dy = points[i].y - p.y;
        if (found.size() == count && std::abs(dx) > found.back().distance) return false;
        const MzPackedRTree::Neighbour next{static_cast<std::uint32_t>(i),
                                            std::sqrt(dx * dx + dy * dy)};
        found.insert(std::ranges::upper_bound(found, next, before), next);
        if (found.size() > count) found.pop_back();
        return true;
    };
    const std::size_t middle = firstFrom(points, p.x);
    for (std::size_t i = middle; i < points.size() && take(i); ++i) {
    }
    for (std::size_t i = middle; i > 0 && take(i - 1); --i) {
    }
    return found;
}

TEST(PackedRTreeOfTheWorld, FindsInRandomWindowsWhatALookAtEveryVertexFinds) {
    const auto& points = verticesOfTheWorld();
    ASSERT_GT(points.size(), 300'000u);
    const auto tree = treeOver(points);
    std::mt19937_64 random{20261121};
    std::uniform_real_distribution<double> offset{-1, 1}, size{0, 0.3};
    for (int i = 0; i < kQueries; ++i) {
        // Half of the windows lie where vertices are, and begin with one.
        MzPoint p = points[random() % points.size()];
        if (i % 2 == 0) p = {p.x + offset(random), p.y + offset(random)};
        const MzBox window{p.x, p.y, p.x + size(random), p.y + size(random)};
        ASSERT_EQ(tree->itemsInWindow(window), scan(points, window)) << i;
    }
}

TEST(PackedRTreeOfTheWorld, FindsTheNearestThatALookAtEveryVertexFinds) {
    const auto& points = verticesOfTheWorld();
    const auto tree = treeOver(points);
    std::mt19937_64 random{20261121};
    std::uniform_real_distribution<double> offset{-0.2, 0.2};
    for (int i = 0; i < kQueries; ++i) {
        const MzPoint near = points[random() % points.size()];
        const MzPoint p{near.x + offset(random), near.y + offset(random)};
        const std::size_t count = 1 + random() % 8;
        ASSERT_EQ(tree->nearest(p, count), scanNearest(points, p, count)) << i;
    }
}

}  // namespace
}  // namespace mezalith::host
