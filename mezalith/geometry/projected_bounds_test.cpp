// SPDX-License-Identifier: MIT
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/geometry/projected_bounds.hpp>
#include <mezalith/geometry/test_support.hpp>
#include <mezalith/index/packed_r_tree.hpp>
#include <mezalith/index/r_tree.hpp>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

const auto kZone = MzMapProjection::mapProjectionWithUTMZone(33);

struct Place : MzIndexable {
    explicit Place(std::shared_ptr<MzGeometry> geometry) : where(std::move(geometry)) {}
    std::shared_ptr<MzGeometry> geometry() const override { return where; }

    std::shared_ptr<MzGeometry> where;
};

std::shared_ptr<MzPolygonGeometry> polygon(Rings rings) {
    return MzPolygonGeometry::initWithPolygon(OwnedPolygon(std::move(rings)).record());
}

std::shared_ptr<MzMultiPolygonGeometry> polygons(std::vector<Rings> members) {
    return MzMultiPolygonGeometry::initWithMultiPolygon(
        OwnedMultiPolygon(std::move(members)).record());
}

std::shared_ptr<MzLineStringGeometry> line(Points points) {
    return MzLineStringGeometry::initWithLineString(
        {static_cast<std::uint32_t>(points.size()), points.data()});
}

/// Ten kilometres around a place.
MzRect around(MzPoint place) {
    const MzPoint p = kZone->projectedCoordinateForLongitudeLatitude(place);
    return {{p.x - 5000, p.y - 5000}, {10'000, 10'000}};
}

TEST(ProjectedCopy, IsThereAtTheFirstTimeOfAskingForLinesToo) {
    const auto geometry = line({{15, 60}, {16, 61}});
    const auto copy = MzProjectedCopy(geometry.get(), kZone);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy, geometry->geometryWithProjection(kZone));
    EXPECT_EQ(MzProjectedCopy(nullptr, kZone), nullptr);
    EXPECT_EQ(MzProjectedCopy(geometry.get(), nullptr), nullptr);
    MzGeometry abstract;
    EXPECT_EQ(MzProjectedCopy(&abstract, kZone), nullptr);
}

TEST(FillTransformedBounds, LetsPolygonsBeCulledWhereTheyAre) {
    const auto geometry = polygon({square(15, 60, 1)});
    const auto copy = geometry->geometryWithProjection(kZone);
    EXPECT_FALSE(copy->mbrInsertsectsRect(around({15.5, 60.5})));
    MzFillTransformedBounds(geometry.get(), kZone);
    EXPECT_TRUE(copy->mbrInsertsectsRect(around({15.5, 60.5})));
    EXPECT_FALSE(copy->mbrInsertsectsRect(around({17, 60.5})));
    const auto& corners = std::static_pointer_cast<MzPolygonGeometry>(copy)->transformedBounds();
    const MzRect box = copy->leafNodes()[0]->bounds();
    EXPECT_TRUE(MzEqualPoints(corners[0], box.origin));
    EXPECT_TRUE(MzEqualPoints(corners[1], {box.origin.x + box.size.width, box.origin.y}));
    EXPECT_TRUE(
        MzEqualPoints(corners[2], {box.origin.x + box.size.width, box.origin.y + box.size.height}));
    EXPECT_TRUE(MzEqualPoints(corners[3], {box.origin.x, box.origin.y + box.size.height}));
}

TEST(FillTransformedBounds, PutsAPolygonWithoutPointsNowhere) {
    const auto geometry = polygon({});
    MzFillTransformedBounds(geometry.get(), kZone);
    const auto copy = geometry->geometryWithProjection(kZone);
    EXPECT_FALSE(copy->mbrInsertsectsRect({{-1, -1}, {2, 2}}));
    EXPECT_FALSE(copy->mbrInsertsectsRect({{-1e300, -1e300}, {2e300, 2e300}}));
}

TEST(FillTransformedBounds, TakesEveryObject) {
    Place town(MzPointGeometry::initWithPoint({15, 60}));
    Place lake(polygon({square(15, 60, 1)}));
    Place islands(polygons({{square(15, 60, 1)}, {square(19, 60, 1)}}));
    Place nothing(nullptr);
    const std::vector<MzIndexable*> objects{&town, nullptr, &lake, &nothing, &islands};
    MzFillTransformedBounds(objects, kZone);
    EXPECT_TRUE(
        lake.where->geometryWithProjection(kZone)->mbrInsertsectsRect(around({15.5, 60.5})));
    const auto copy = islands.where->geometryWithProjection(kZone);
    EXPECT_TRUE(copy->mbrInsertsectsRect(around({19.5, 60.5})));
    EXPECT_FALSE(copy->mbrInsertsectsRect(around({17.5, 60.5})));
    MzFillTransformedBounds(static_cast<MzGeometry*>(nullptr), kZone);
    MzFillTransformedBounds(lake.where.get(), nullptr);
}

TEST(ProjectedLeafNodes, AreOnesOwnWithTheirObject) {
    const auto geometry = polygons({{square(15, 60, 1)}, {square(19, 60, 1)}});
    Place place(geometry);
    const auto leaves = MzProjectedLeafNodes(geometry.get(), kZone, &place);
    const auto copy = geometry->geometryWithProjection(kZone);
    ASSERT_EQ(leaves.size(), 2u);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_TRUE(MzEqualRects(leaves[i]->bounds(), copy->leafNodes()[i]->bounds()));
        EXPECT_EQ(leaves[i]->object(), &place);
        EXPECT_EQ(copy->leafNodes()[i]->object(), copy.get());
    }
    EXPECT_TRUE(MzProjectedLeafNodes(nullptr, kZone, &place).empty());
    EXPECT_TRUE(MzProjectedLeafNodes(geometry.get(), nullptr, &place).empty());
}

TEST(ProjectedLeafNodes, MakeTreesInThePlane) {
    Place town(MzPointGeometry::initWithPoint({15, 60}));
    Place road(line({{15, 62}, {16, 63}}));
    Place islands(polygons({{square(12, 60, 1)}, {square(19, 60, 1)}}));
    const std::vector<MzIndexable*> objects{&town, nullptr, &road, &islands};
    const auto leaves = MzProjectedLeafNodes(objects, kZone);
    ASSERT_EQ(leaves.size(), 4u);
    EXPECT_EQ(leaves[0]->object(), &town);
    EXPECT_EQ(leaves[1]->object(), &road);
    EXPECT_EQ(leaves[3]->object(), &islands);
    const auto tree = MzPackedRTree::initWithLeaves(leaves);
    EXPECT_EQ(tree->itemsInWindow(MzBox::of(around({19.5, 60.5}))), std::vector<std::uint32_t>{3});
    EXPECT_EQ(tree->itemsInWindow(MzBox::of(around({15.5, 62.5}))), std::vector<std::uint32_t>{1});
    MzRTree settled;
    settled.setMaxNodeSize(8);
    EXPECT_EQ(settled.rootNodesForNodes({leaves.begin(), leaves.end()}).size(), 4u);
}

TEST(ProjectedLeafNodes, AreWhatAPackedTreeOfObjectsIsBuiltOver) {
    Place road(line({{15, 62}, {16, 63}}));
    const std::vector<MzIndexable*> objects{&road};
    const auto tree = MzPackedRTree::initWithSpatialObjects(objects, kZone);
    EXPECT_EQ(tree->itemsInWindow(MzBox::of(around({15.5, 62.5}))), std::vector<std::uint32_t>{0});
}

}  // namespace
}  // namespace mezalith
