// SPDX-License-Identifier: MIT
#include <mezalith/geometry/geometry.hpp>
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/geometry/record_bounds.hpp>
#include <mezalith/geometry/test_support.hpp>

#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

using GeometryPtr = std::shared_ptr<MzGeometry>;

GeometryPtr fromWKB(const WkbWriter& wkb) { return MzGeometry::geometryWithWKBData(wkb.bytes()); }

GeometryPtr fromFile(const std::filesystem::path& path) {
    return MzGeometry::geometryWithWKBData(readFile(path));
}

/// One geometry of every class that WKB makes.
std::vector<GeometryPtr> oneOfEach() {
    return {fromWKB(WkbWriter().point(kLittle, {3, 4})),
            fromWKB(WkbWriter().lineString(kLittle, {{0, 0}, {3, 4}})),
            fromWKB(WkbWriter().polygon(kLittle, {square(0, 0, 4)})),
            fromWKB(WkbWriter().multi(kLittle, 4, 1).point(kLittle, {3, 4})),
            fromWKB(WkbWriter().multi(kLittle, 6, 1).polygon(kLittle, {square(0, 0, 4)}))};
}

std::vector<MzPolygon> polygonsIn(const MzGeometry& geometry) {
    if (const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(&geometry)) {
        return {*polygon->polygonGeometry()};
    }
    if (const auto* multi = dynamic_cast<const MzMultiPolygonGeometry*>(&geometry)) {
        const auto members = polygonsOf(multi->multiPolygonGeometry());
        return {members.begin(), members.end()};
    }
    return {};
}

Points pointsIn(const MzGeometry& geometry) {
    Points points;
    const auto add = [&points](std::span<const MzPoint> more) {
        std::ranges::copy(more, std::back_inserter(points));
    };
    if (const auto* point = dynamic_cast<const MzPointGeometry*>(&geometry)) {
        add({point->pointGeometry(), 1});
    } else if (const auto* line = dynamic_cast<const MzLineStringGeometry*>(&geometry)) {
        add(pointsOf(line->lineStringGeometry()));
    } else if (const auto* multi = dynamic_cast<const MzMultiPointGeometry*>(&geometry)) {
        add(pointsOf(multi->multiPointGeometry()));
    }
    for (const MzPolygon& polygon : polygonsIn(geometry)) {
        for (const MzLinearRing& ring : ringsOf(&polygon)) add(pointsOf(&ring));
    }
    return points;
}

// --- making geometries from WKB

TEST(Geometry, IsNotMadeOfNothing) {
    EXPECT_EQ(MzGeometry::geometryWithWKBData(Bytes{}), nullptr);
    EXPECT_EQ(MzGeometry::geometryWithWKBData(nullptr), nullptr);
    EXPECT_EQ(MzGeometry::geometryWithWKBData(std::make_shared<const Bytes>()), nullptr);
    EXPECT_EQ(MzGeometry::geometryWithWKBData(bytesOf({1, 4, 0, 0})), nullptr);
}

TEST(Geometry, IsNotMadeOfOtherTypes) {
    for (const std::uint32_t type : {0u, 5u, 7u, 17u, 1001u, 0x20000001u, 0xFFFFFFFFu}) {
        for (const std::uint8_t order : {kBig, kLittle}) {
            EXPECT_EQ(fromWKB(WkbWriter().multi(order, type, 0).pairs(Points(4))), nullptr) << type;
        }
    }
}

TEST(Geometry, IsOfTheClassOfItsType) {
    const auto made = oneOfEach();
    ASSERT_EQ(std::ranges::count(made, nullptr), 0);
    EXPECT_NE(std::dynamic_pointer_cast<MzPointGeometry>(made[0]), nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<MzLineStringGeometry>(made[1]), nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<MzPolygonGeometry>(made[2]), nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<MzMultiPointGeometry>(made[3]), nullptr);
    EXPECT_NE(std::dynamic_pointer_cast<MzMultiPolygonGeometry>(made[4]), nullptr);
}

TEST(Geometry, KeepsTheBytesItWasMadeFrom) {
    for (const GeometryPtr& geometry : oneOfEach()) {
        const MzData bytes = geometry->wkbData();
        ASSERT_NE(bytes, nullptr);
        EXPECT_EQ(geometry->asBinary(), bytes);
        const auto sharing = MzGeometry::geometryWithWKBData(bytes);
        EXPECT_EQ(sharing->wkbData(), bytes);
    }
}

TEST(Geometry, KeepsTrailingBytes) {
    const auto bytes = WkbWriter().point(kBig, {3, 4}).integer(99).bytes();
    const auto geometry = MzGeometry::geometryWithWKBData(bytes);
    ASSERT_NE(geometry, nullptr);
    EXPECT_EQ(*geometry->wkbData(), bytes);
}

// --- what all classes share

TEST(Geometry, HasTheSRIDOfLongitudeAndLatitude) {
    for (const GeometryPtr& geometry : oneOfEach()) EXPECT_EQ(geometry->srid(), 4326);
    EXPECT_EQ(MzGeometry().srid(), 4326);
}

TEST(Geometry, DoesNotImplementTheOperationsOfSimpleFeatures) {
    auto all = oneOfEach();
    all.push_back(std::make_shared<MzGeometry>());
    for (const GeometryPtr& geometry : all) {
        const MzGeometry* other = geometry.get();
        EXPECT_EQ(geometry->distance(other), 0.0);
        EXPECT_EQ(geometry->envelope(), nullptr);
        EXPECT_EQ(geometry->asText(), "");
        EXPECT_FALSE(geometry->isEmpty());
        EXPECT_FALSE(geometry->isSimple());
        EXPECT_EQ(geometry->boundary(), nullptr);
        EXPECT_FALSE(geometry->equals(other));
        EXPECT_FALSE(geometry->disjoin(other));
        EXPECT_FALSE(geometry->intersects(other));
        EXPECT_FALSE(geometry->touches(other));
        EXPECT_FALSE(geometry->crosses(other));
        EXPECT_FALSE(geometry->within(other));
        EXPECT_FALSE(geometry->contains(geometry.get()));
        EXPECT_FALSE(geometry->overlaps(other));
        EXPECT_EQ(geometry->buffer(1), nullptr);
        EXPECT_EQ(geometry->convexHull(), nullptr);
        EXPECT_EQ(geometry->intersection(other), nullptr);
        EXPECT_EQ(geometry->unionGeom(other), nullptr);
        EXPECT_EQ(geometry->difference(other), nullptr);
        EXPECT_EQ(geometry->symmetricDifference(other), nullptr);
    }
}

TEST(Geometry, MakesItsLeavesOnce) {
    for (const GeometryPtr& geometry : oneOfEach()) {
        ASSERT_EQ(geometry->leafNodes().size(), 1u);
        const auto leaf = geometry->leafNodes()[0];
        EXPECT_EQ(geometry->leafNodes()[0], leaf);
        EXPECT_EQ(leaf->object(), geometry.get());
    }
}

TEST(Geometry, KeepsClippedGeometriesByIdentity) {
    MzGeometry geometry;
    EXPECT_TRUE(geometry.clippedGeometries().empty());
    const auto key = std::make_shared<MzGeometry>();
    geometry.clippedGeometries()[key] = key;
    EXPECT_EQ(geometry.clippedGeometries().count(std::make_shared<MzGeometry>()), 0u);
    EXPECT_EQ(geometry.clippedGeometries().at(key), key);
}

// --- the abstract geometry

TEST(AbstractGeometry, HasNothingOfItsOwn) {
    const auto geometry = MzGeometry::initWithCapacity(100);
    EXPECT_EQ(geometry->geometryData().size(), 100u);
    EXPECT_EQ(MzGeometry::initWithCapacity(3)->geometryData().size(), 16u);
    EXPECT_EQ(geometry->geometryType(), 0u);
    EXPECT_EQ(geometry->dimension(), 0);
    EXPECT_EQ(geometry->wkbData(), nullptr);
    EXPECT_TRUE(geometry->leafNodes().empty());
    EXPECT_FALSE(geometry->mbrInsertsectsRect({{-1e9, -1e9}, {2e9, 2e9}}));
}

TEST(AbstractGeometry, AnswersTheProjectedCopiesItWasGiven) {
    const auto plain = MzMapProjection::mapProjectionWithPlateCarree();
    MzGeometry geometry;
    EXPECT_EQ(geometry.geometryWithProjection(plain), nullptr);
    EXPECT_TRUE(geometry.projectedGeometries().empty());
    const auto copy = std::make_shared<MzGeometry>();
    geometry.projectedGeometries()[plain] = copy;
    EXPECT_EQ(geometry.geometryWithProjection(plain), copy);
    EXPECT_EQ(geometry.geometryWithProjection(nullptr), nullptr);
}

/// A geometry whose only leaf is null.
class WithNullLeaf : public MzGeometry {
  protected:
    Leaves makeLeafNodes() override { return {nullptr}; }
};

TEST(AbstractGeometry, TakesANullLeafAsTheZeroRectangle) {
    WithNullLeaf geometry;
    EXPECT_TRUE(geometry.mbrInsertsectsRect({{-1, -1}, {2, 2}}));
    EXPECT_FALSE(geometry.mbrInsertsectsRect({{1, 1}, {2, 2}}));
}

// --- files

const std::filesystem::path kMaps = MEZALITH_SOURCE_DIR "/data/map/wkb";
const std::filesystem::path kBadFiles = MEZALITH_SOURCE_DIR "/tests/data/bad/wkb";

/// The lines of the maps' list, cut at commas; quoted texts come behind the columns used here.
std::vector<std::vector<std::string>> manifest() {
    std::ifstream file(kMaps / "MANIFEST.csv");
    std::vector<std::vector<std::string>> rows;
    std::string line;
    std::getline(file, line);
    while (std::getline(file, line)) {
        std::istringstream cells(line);
        rows.emplace_back();
        for (std::string cell; std::getline(cells, cell, ',');) rows.back().push_back(cell);
    }
    return rows;
}

MzRect boundsIn(const std::vector<std::string>& row) {
    const double west = std::stod(row[9]);
    const double south = std::stod(row[10]);
    return {{west, south}, {std::stod(row[11]) - west, std::stod(row[12]) - south}};
}

TEST(GeometryFiles, OfMapsHoldWhatTheirListSays) {
    const auto rows = manifest();
    ASSERT_EQ(rows.size(), wkbFiles(kMaps).size());
    for (const auto& row : rows) {
        SCOPED_TRACE(row[0]);
        const auto geometry = fromFile(kMaps / row[0]);
        if (row[1] == "5") {
            EXPECT_EQ(geometry, nullptr);
            continue;
        }
        ASSERT_NE(geometry, nullptr);
        EXPECT_EQ(std::to_string(geometry->geometryType()), row[1]);
        const Points points = pointsIn(*geometry);
        EXPECT_EQ(std::to_string(points.size()), row[7]);
        EXPECT_TRUE(MzEqualRects(MzBoundsOfPoints(points).value(), boundsIn(row)));
        std::size_t rings = 0;
        for (const MzPolygon& polygon : polygonsIn(*geometry)) rings += polygon.count;
        EXPECT_EQ(std::to_string(rings), row[5]);
        const bool multiPolygon = geometry->geometryType() == 6;
        EXPECT_EQ(std::to_string(geometry->leafNodes().size()), multiPolygon ? row[4] : "1");
    }
}

TEST(GeometryFiles, OfMapsAreTheSameInEveryByteOrder) {
    std::map<std::string, Points> seen;
    std::size_t compared = 0;
    for (const auto& path : wkbFiles(kMaps)) {
        const auto geometry = fromFile(path);
        if (geometry == nullptr) continue;
        const std::string stem = path.stem().string();
        const std::string name = stem.substr(0, stem.rfind('-'));
        const auto [place, first] = seen.emplace(name, pointsIn(*geometry));
        if (first) continue;
        EXPECT_TRUE(sameBits(place->second, pointsIn(*geometry))) << stem;
        ++compared;
    }
    EXPECT_GE(compared, 15u);
}

/// Asks everything of a geometry.
void exercise(MzGeometry& geometry) {
    const MzClippingRegion region = doublingRegion({{-90, -45}, {180, 90}});
    for (const auto& leaf : geometry.leafNodes()) EXPECT_EQ(leaf->object(), &geometry);
    geometry.mbrInsertsectsRect({{0, 0}, {1, 1}});
    geometry.contains(MzPointGeometry::initWithPoint({1.5, 1.5}).get());
    if (auto* points = dynamic_cast<MzMultiPointGeometry*>(&geometry)) {
        points->clippedMultiPointWithRegion(&region);
        points->clippedLineStringWithRegion(&region);
        points->setMultiPointGeometry(*points->multiPointGeometry());
    } else if (auto* polygon = dynamic_cast<MzPolygonGeometry*>(&geometry)) {
        polygon->centroid();
        polygon->clippedPolygonWithRegion(&region);
        polygon->setPolygonGeometry(*polygon->polygonGeometry());
    } else if (auto* polygons = dynamic_cast<MzMultiPolygonGeometry*>(&geometry)) {
        polygons->clippedMultiPolygonWithRegion(&region);
        polygons->setMultiPolygonGeometry(*polygons->multiPolygonGeometry());
    }
    geometry.wkbData();
}

TEST(GeometryFiles, OfBadBytesGiveNothingOrAHarmlessGeometry) {
    // Cut short, of other types or counting beyond their end.
    const std::vector<std::string> refused{"trunc-", "count-", "type-", "ewkb-", "iso-"};
    const std::set<std::string> exceptions{"count-too-small"};
    const std::set<std::string> refusedToo{"member-type-multipolygon-of-points",
                                           "member-type-multipolygon-of-multipolygon"};
    const auto utm = MzMapProjection::mapProjectionWithUTMZone(33);
    const auto files = wkbFiles(kBadFiles);
    ASSERT_EQ(files.size(), 91u);
    for (const auto& path : files) {
        const std::string name = path.stem().string();
        SCOPED_TRACE(name);
        const bool isRefused =
            refusedToo.contains(name) ||
            (!exceptions.contains(name) && std::ranges::any_of(refused, [&](const auto& start) {
                return name.starts_with(start);
            }));
        const auto geometry = fromFile(path);
        EXPECT_EQ(geometry == nullptr, isRefused);
        if (geometry == nullptr) continue;
        exercise(*geometry);
        geometry->geometryWithProjection(utm);
        if (const auto projected = geometry->geometryWithProjection(utm)) exercise(*projected);
    }
}

TEST(GeometryFiles, With300RingsKeepThemAll) {
    const auto geometry = fromFile(kBadFiles / "many-rings-300.wkb");
    ASSERT_NE(geometry, nullptr);
    EXPECT_EQ(polygonsIn(*geometry).at(0).count, 300u);
    for (const MzLinearRing& ring : ringsOf(&polygonsIn(*geometry)[0])) EXPECT_GE(ring.count, 4u);
}

}  // namespace
}  // namespace mezalith
