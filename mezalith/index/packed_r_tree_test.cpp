// SPDX-License-Identifier: MIT
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/index/packed_r_tree.hpp>
#include <mezalith/projection/map_projection.hpp>

#include <array>
#include <cstring>
#include <functional>
#include <numeric>
#include <random>
#include <thread>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using Items = std::vector<std::uint32_t>;
using Neighbours = std::vector<MzPackedRTree::Neighbour>;
using detail::PackedInstructions;

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr unsigned kSeed = 20261121;
#ifdef NDEBUG
constexpr int kQueries = 100'000;
#else
constexpr int kQueries = 4'000;
#endif

using Tree = std::shared_ptr<MzPackedRTree>;

Tree treeOver(const std::vector<MzBox>& boxes, std::uint32_t nodeSize = 16,
              PackedInstructions instructions = PackedInstructions::AVX512) {
    return MzPackedRTree::initWithBoxes(boxes, {nodeSize, instructions});
}

// --- data and what a look at every box says -------------------------------

double random(std::mt19937_64& engine, double low, double high) {
    return std::uniform_real_distribution<double>{low, high}(engine);
}

std::vector<MzBox> scattered(std::size_t count) {
    std::mt19937_64 engine{kSeed};
    std::vector<MzBox> boxes(count);
    for (MzBox& box : boxes) {
        const MzPoint p{random(engine, -180, 180), random(engine, -90, 90)};
        const double size = random(engine, 0, 1) < 0.3 ? 0 : random(engine, 0, 8);
        box = {p.x, p.y, p.x + size, p.y + random(engine, 0, 4)};
    }
    return boxes;
}

std::vector<MzBox> clustered(std::size_t count) {
    std::mt19937_64 engine{kSeed};
    std::vector<MzBox> boxes(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double centre = static_cast<double>(i % 7) * 20 - 70;
        std::normal_distribution<double> place{centre, 0.5};
        const MzPoint p{place(engine), place(engine)};
        boxes[i] = {p.x, p.y, p.x + 0.01, p.y + 0.01};
    }
    return boxes;
}

std::vector<MzBox> collinear(std::size_t count) {
    std::vector<MzBox> boxes(count);
    for (std::size_t i = 0; i < count; ++i) {
        boxes[i] = MzBox::of(MzPoint{static_cast<double>(i % 200) - 100, 7});
    }
    return boxes;
}

std::vector<MzBox> identical(std::size_t count) {
    return std::vector<MzBox>(count, MzBox{10, 20, 11, 21});
}

Items scan(const std::vector<MzBox>& boxes, const MzBox& window) {
    Items items;
    if (window.isEmpty()) return items;
    for (std::uint32_t i = 0; i < boxes.size(); ++i) {
        if (!boxes[i].isEmpty() && boxes[i].meets(window)) items.push_back(i);
    }
    return items;
}

double distanceTo(const MzBox& box, MzPoint p) {
    const double dx = std::max({box.minX - p.x, p.x - box.maxX, 0.0});
    const double dy = std::max({box.minY - p.y, p.y - box.maxY, 0.0});
    return std::sqrt(dx * dx + dy * dy);
}

Neighbours scanNearest(const std::vector<MzBox>& boxes, MzPoint p, std::size_t count) {
    Neighbours all;
    for (std::uint32_t i = 0; i < boxes.size(); ++i) all.push_back({i, distanceTo(boxes[i], p)});
    const auto before = [](const auto& a, const auto& b) {
        return std::pair(a.distance, a.item) < std::pair(b.distance, b.item);
    };
    count = std::min(count, all.size());
    std::ranges::partial_sort(all, all.begin() + static_cast<std::ptrdiff_t>(count), before);
    all.resize(count);
    return all;
}

MzBox anyWindow(std::mt19937_64& engine) {
    const double size = std::pow(10, random(engine, -2, 2));
    const MzPoint p{random(engine, -185, 180), random(engine, -95, 90)};
    return {p.x, p.y, p.x + size * random(engine, 0, 1), p.y + size * random(engine, 0, 1)};
}

/// A window whose sides run through those of boxes, as random numbers never do.
MzBox touchingWindow(const std::vector<MzBox>& boxes, std::mt19937_64& engine) {
    const MzBox& a = boxes[engine() % boxes.size()];
    const MzBox& b = boxes[engine() % boxes.size()];
    return {a.maxX, b.maxY, std::max(a.maxX, b.minX), std::max(b.maxY, a.minY)};
}

struct Data {
    const char* name;
    std::vector<MzBox> boxes;
};

std::vector<Data> allData(std::size_t count) {
    return {{"scattered", scattered(count)},
            {"clustered", clustered(count)},
            {"collinear", collinear(count)},
            {"identical", identical(count)}};
}

// --- windows --------------------------------------------------------------

TEST(PackedRTree, FindsInRandomWindowsWhatALookAtEveryBoxFinds) {
    for (const auto& [name, boxes] : allData(400)) {
        SCOPED_TRACE(name);
        const Tree tree = treeOver(boxes);
        std::mt19937_64 engine{kSeed};
        for (int i = 0; i < kQueries; ++i) {
            const MzBox window = i % 4 == 0 ? touchingWindow(boxes, engine) : anyWindow(engine);
            ASSERT_EQ(tree->itemsInWindow(window), scan(boxes, window)) << i;
        }
    }
}

TEST(PackedRTree, FindsTheSameWithNodesOfAnySizeAndAllInstructions) {
    const auto boxes = scattered(5000);
    for (const std::uint32_t nodeSize : {0u, 8u, 9u, 16u, 32u, 64u, 1000u}) {
        for (const auto instructions :
             {PackedInstructions::Portable, PackedInstructions::AVX2, PackedInstructions::AVX512}) {
            const Tree tree = treeOver(boxes, nodeSize, instructions);
            EXPECT_GE(tree->nodeSize(), std::clamp(nodeSize, 8u, 64u));
            std::mt19937_64 engine{kSeed};
            for (int i = 0; i < 300; ++i) {
                const MzBox window = anyWindow(engine);
                ASSERT_EQ(tree->itemsInWindow(window), scan(boxes, window)) << nodeSize;
            }
        }
    }
}

TEST(PackedRTree, FindsAllBoxesHoweverMany) {
    for (const std::size_t count :
         {1u, 2u, 7u, 8u, 9u, 15u, 16u, 17u, 255u, 256u, 257u, 4095u, 4096u, 4097u, 70'000u}) {
        const auto boxes = scattered(count);
        Items all(count);
        std::iota(all.begin(), all.end(), 0u);
        for (const std::uint32_t nodeSize : {8u, 16u, 64u}) {
            const Tree tree = treeOver(boxes, nodeSize);
            EXPECT_EQ(tree->count(), count);
            EXPECT_EQ(tree->itemsInWindow(tree->bounds()), all);
            EXPECT_EQ(tree->itemsInWindow({-infinity, -infinity, infinity, infinity}), all);
            EXPECT_EQ(tree->itemsInWindow({-170, -90, 175, 80}), scan(boxes, {-170, -90, 175, 80}));
        }
    }
}

TEST(PackedRTree, FindsPointsFlatBoxesAndWhatOnlyTouches) {
    const Tree tree =
        treeOver({MzBox::of(MzPoint{1, 1}), {0, 2, 5, 2}, {3, 0, 3, 5}, {6, 6, 7, 7}});
    EXPECT_EQ(tree->itemsAtPoint({1, 1}), Items{0});
    EXPECT_EQ(tree->itemsAtPoint({3, 2}), (Items{1, 2}));
    EXPECT_EQ(tree->itemsAtPoint({6, 7}), Items{3});
    EXPECT_EQ(tree->itemsInWindow({5, 2, 6, 6}), (Items{1, 3}));
    EXPECT_TRUE(tree->itemsAtPoint({1, 1.0000001}).empty());
}

TEST(PackedRTree, TellsNumbersApartThatSinglePrecisionDoesNot) {
    std::vector<MzBox> boxes;
    double x = 1;
    for (int i = 0; i < 400; ++i, x = std::nextafter(x, 2))
        boxes.push_back(MzBox::of(MzPoint{x, x}));
    const Tree tree = treeOver(boxes);
    for (std::uint32_t i = 0; i < 400; ++i) {
        EXPECT_EQ(tree->itemsAtPoint({boxes[i].minX, boxes[i].minY}), Items{i});
    }
    EXPECT_EQ(tree->itemsInWindow({boxes[100].minX, 0, boxes[299].minX, 2}).size(), 200u);
}

TEST(PackedRTree, NeverFindsEmptyBoxes) {
    std::vector<MzBox> boxes = scattered(300);
    boxes[0] = {nan, 0, 1, 1};
    boxes[50] = {0, 0, 1, nan};
    boxes[100] = {nan, nan, nan, nan};
    boxes[200] = {1, 0, 0, 1};
    boxes[299] = {0, 5, 1, 4};
    const Tree tree = treeOver(boxes);
    EXPECT_EQ(tree->count(), 295u);
    EXPECT_EQ(tree->itemLimit(), 300u);
    const MzBox everywhere{-infinity, -infinity, infinity, infinity};
    EXPECT_EQ(tree->itemsInWindow(everywhere), scan(boxes, everywhere));
    EXPECT_EQ(tree->nearest({0, 0}, 1000).size(), 295u);
    EXPECT_EQ(treeOver({boxes[0], boxes[200]})->count(), 0u);
}

TEST(PackedRTree, FindsNothingInEmptyWindows) {
    const Tree tree = treeOver(scattered(300));
    for (const MzBox& window :
         {MzBox{1, -90, 0, 90}, MzBox{-180, 1, 180, 0}, MzBox{nan, -90, 180, 90},
          MzBox{-180, nan, 180, 90}, MzBox{-180, -90, nan, 90}, MzBox{-180, -90, 180, nan}}) {
        EXPECT_TRUE(tree->itemsInWindow(window).empty());
    }
    EXPECT_TRUE(tree->itemsAtPoint({nan, 0}).empty());
}

TEST(PackedRTree, FindsBoxesWithoutEndAndFarAway) {
    std::vector<MzBox> boxes = scattered(100);
    boxes[3] = {-infinity, 5, infinity, 5};
    boxes[4] = {1e300, 1e300, 1.7e308, 1.7e308};
    boxes[5] = {-infinity, -infinity, infinity, infinity};
    boxes[6] = {-1e-310, 95, 1e-310, 95};
    const Tree tree = treeOver(boxes);
    for (const MzBox& window :
         {MzBox{1000, 5, 1000, 5}, MzBox{1e305, 1e305, 1e305, 1e305}, MzBox{-1e-310, 95, 0, 95},
          MzBox{5e-324, 95, 1, 95}, MzBox{infinity, infinity, infinity, infinity},
          MzBox{-1.7e308, -1.7e308, 0, 0}}) {
        EXPECT_EQ(tree->itemsInWindow(window), scan(boxes, window));
    }
}

TEST(PackedRTree, IsEmptyOverNothing) {
    const std::array<Tree, 2> trees{treeOver({}), std::make_shared<MzPackedRTree>()};
    for (const Tree& tree : trees) {
        EXPECT_EQ(tree->count(), 0u);
        EXPECT_TRUE(tree->bounds().isEmpty());
        EXPECT_TRUE(tree->itemsInWindow({-infinity, -infinity, infinity, infinity}).empty());
        EXPECT_TRUE(tree->itemsWrapping({0, 0, 1, 1}, 360).empty());
        EXPECT_TRUE(tree->nearest({0, 0}, 3).empty());
    }
}

TEST(PackedRTree, EndsASearchWhenTheVisitorSaysSo) {
    const Tree tree = treeOver(scattered(2000));
    const MzBox world{-180, -90, 190, 100};
    int visits = 0;
    EXPECT_FALSE(tree->visitWindow(world, [&](std::uint32_t) { return ++visits < 700; }));
    EXPECT_EQ(visits, 700);
    EXPECT_TRUE(tree->visitWindow(world, [&](std::uint32_t) { return true; }));
    EXPECT_FALSE(tree->visitPoint({tree->bounds().minX, 0}, [](std::uint32_t) { return false; }) &&
                 tree->visitWindow(world, [](std::uint32_t) { return false; }));
}

TEST(PackedRTree, AppendsItemsInItsOwnOrder) {
    const Tree tree = treeOver(scattered(3000));
    Items appended{99}, visited{99};
    tree->appendItemsInWindow({-50, -50, 50, 50}, appended);
    tree->visitWindow({-50, -50, 50, 50}, [&](std::uint32_t item) { visited.push_back(item); });
    EXPECT_EQ(appended, visited);
    EXPECT_GT(appended.size(), 100u);
}

TEST(PackedRTree, TakesLessThanFortyBytesABox) {
    EXPECT_LT(static_cast<double>(treeOver(scattered(10'000))->block().size()) / 10'000, 38);
}

// --- a world that repeats -------------------------------------------------

Items scanWrapping(const std::vector<MzBox>& boxes, const MzBox& window, double period) {
    Items items;
    for (std::uint32_t i = 0; i < boxes.size(); ++i) {
        for (int turn = -5; turn <= 5; ++turn) {
            const double shift = turn * period;
            const MzBox piece{window.minX + shift, window.minY, window.maxX + shift, window.maxY};
            if (boxes[i].meets(piece)) {
                items.push_back(i);
                break;
            }
        }
    }
    return items;
}

TEST(PackedRTree, FindsAcrossTheSeamInOneCall) {
    const Tree tree =
        treeOver({{170, 0, 171, 1}, {-171, 0, -170, 1}, {0, 0, 1, 1}, {190, 0, 191, 1}});
    EXPECT_EQ(tree->itemsWrapping({165, 0, -165, 1}, 360), (Items{0, 1, 3}));
    EXPECT_EQ(tree->itemsWrapping({165, 0, 195, 1}, 360), (Items{0, 1, 3}));
    EXPECT_EQ(tree->itemsWrapping({-195, 0, -165, 1}, 360), (Items{0, 1, 3}));
    EXPECT_EQ(tree->itemsWrapping({-175, 0, -165, 1}, 360), (Items{1, 3}));
    EXPECT_EQ(tree->itemsWrapping({-10, 0, 10, 1}, 360), Items{2});
    EXPECT_EQ(tree->itemsWrapping({3590, 0, 3610, 1}, 360), Items{2});
    EXPECT_EQ(tree->itemsWrapping({-500, 0, 500, 1}, 360).size(), 4u);
    EXPECT_TRUE(tree->itemsWrapping({-500, 2, 500, 3}, 360).empty());
}

TEST(PackedRTree, MeetsABoxOnceHoweverOftenItRepeats) {
    std::vector<MzBox> boxes = scattered(500);
    boxes.push_back({-180, 0, 180, 1});
    boxes.push_back({-720, -90, 720, 90});
    const Tree tree = treeOver(boxes);
    std::mt19937_64 engine{kSeed};
    for (int i = 0; i < kQueries / 20; ++i) {
        const MzPoint p{random(engine, -400, 400), random(engine, -95, 90)};
        const MzBox window{p.x, p.y, p.x + random(engine, 0, 359), p.y + random(engine, 0, 40)};
        Items met;
        tree->visitWrapping(window, 360, [&](std::uint32_t item) { met.push_back(item); });
        std::ranges::sort(met);
        ASSERT_EQ(met, scanWrapping(boxes, window, 360));
    }
}

TEST(PackedRTree, DoesNotWrapWithoutAPeriod) {
    const Tree tree = treeOver({{170, 0, 171, 1}, {-171, 0, -170, 1}});
    for (const double period : {0.0, -360.0, nan, infinity}) {
        EXPECT_EQ(tree->itemsWrapping({165, 0, 195, 1}, period), Items{0}) << period;
    }
    EXPECT_TRUE(tree->itemsWrapping({165, 0, -165, 1}, 0).empty());
    EXPECT_TRUE(tree->itemsWrapping({nan, 0, 195, 1}, 360).empty());
    EXPECT_EQ(tree->itemsWrapping({165, 0, 195, 1}, 1e-300).size(), 2u);
}

// --- nearest --------------------------------------------------------------

TEST(PackedRTree, FindsTheNearestThatALookAtEveryBoxFinds) {
    for (const auto& [name, boxes] : allData(150)) {
        SCOPED_TRACE(name);
        const Tree tree = treeOver(boxes);
        std::mt19937_64 engine{kSeed};
        for (int i = 0; i < kQueries; ++i) {
            const MzPoint p{random(engine, -190, 190), random(engine, -95, 95)};
            const std::size_t count = 1 + engine() % 12;
            ASSERT_EQ(tree->nearest(p, count), scanNearest(boxes, p, count)) << i;
        }
    }
}

TEST(PackedRTree, GivesEqualDistancesByNumber) {
    const Tree tree = treeOver(identical(1000));
    const auto found = tree->nearest({0, 0}, 10);
    for (std::uint32_t i = 0; i < 10; ++i) EXPECT_EQ(found[i].item, i);
}

TEST(PackedRTree, FindsNoneBeyondTheLimit) {
    const Tree tree = treeOver(collinear(200));
    EXPECT_EQ(tree->nearest({0, 7}, 100, 2).size(), 5u);
    EXPECT_EQ(tree->nearest({0, 0}, 100, 7).size(), 1u);
    EXPECT_TRUE(tree->nearest({0, 0}, 100, 6.9).empty());
    EXPECT_TRUE(tree->nearest({0, 0}, 0).empty());
    EXPECT_TRUE(tree->nearest({0, 0}, 5, nan).empty());
    EXPECT_TRUE(tree->nearest({nan, 0}, 5).empty());
}

TEST(PackedRTree, MeasuresAsItIsTold) {
    const auto boxes = scattered(3000);
    const Tree tree = treeOver(boxes);
    // By height alone, and only what has an even number.
    const auto height = [](const MzBox& box) { return std::max({box.minY, -box.maxY, 0.0}); };
    const auto toItem = [&](std::uint32_t item, const MzBox& box) {
        EXPECT_EQ(box, boxes[item]);
        return item % 2 == 0 ? height(box) : nan;
    };
    const auto found = tree->nearest(20, height, toItem);
    Neighbours all;
    for (std::uint32_t i = 0; i < boxes.size(); i += 2) all.push_back({i, height(boxes[i])});
    std::ranges::sort(all, [](const auto& a, const auto& b) {
        return std::pair(a.distance, a.item) < std::pair(b.distance, b.item);
    });
    all.resize(20);
    EXPECT_EQ(found, all);
}

// --- what it is built over ------------------------------------------------

struct Feature : MzIndexable {
    explicit Feature(std::shared_ptr<MzGeometry> itsGeometry) : stored(std::move(itsGeometry)) {}
    std::shared_ptr<MzGeometry> geometry() const override { return stored; }
    std::shared_ptr<MzGeometry> stored;
};

TEST(PackedRTree, IndexesObjectsByAllTheirPieces) {
    class Pieces : public MzGeometry {
        Leaves makeLeafNodes() override {
            return {leafWithBounds({{0, 0}, {1, 1}}), leafWithBounds({{50, 0}, {1, 1}}),
                    leafWithBounds({{2, 0}, {0, 0}})};
        }
    };
    Feature pieces(std::make_shared<Pieces>()), none(nullptr);
    Feature point(MzPointGeometry::initWithPoint({50, 1}));
    MzIndexable* const objects[] = {nullptr, &pieces, &none, &point};
    const Tree tree = MzPackedRTree::initWithSpatialObjects(objects);
    EXPECT_EQ(tree->count(), 4u);
    EXPECT_EQ(tree->itemLimit(), 4u);
    EXPECT_EQ(tree->itemsInWindow({0, 0, 10, 10}), Items{1});
    EXPECT_EQ(tree->itemsInWindow({0, 0, 100, 10}), (Items{1, 3}));
    int visits = 0;
    tree->visitWindow({0, 0, 100, 10}, [&](std::uint32_t) { ++visits; });
    EXPECT_EQ(visits, 4);
    EXPECT_EQ(tree->nearest({0, 0}, 9),
              (Neighbours{{1, 0}, {3, distanceTo({50, 1, 50, 1}, {0, 0})}}));
    EXPECT_EQ(tree->nearest({60, 1}, 9), (Neighbours{{1, 9}, {3, 10}}));
}

TEST(PackedRTree, FindsNothingOfALeafThatIsNull) {
    class Gap : public MzGeometry {
        Leaves makeLeafNodes() override { return {nullptr, leafWithBounds({{0, 0}, {1, 1}})}; }
    };
    Feature feature(std::make_shared<Gap>());
    MzIndexable* const objects[] = {&feature};
    const Tree tree = MzPackedRTree::initWithSpatialObjects(objects);
    int visits = 0;
    tree->visitWindow({-9, -9, 9, 9}, [&](std::uint32_t) { ++visits; });
    EXPECT_EQ(visits, 1);
}

TEST(PackedRTree, IndexesObjectsInTheUnitsOfAProjection) {
    const auto zone = MzMapProjection::mapProjectionWithUTMZone(33);
    std::vector<std::unique_ptr<Feature>> features;
    std::vector<MzIndexable*> objects;
    std::vector<MzPoint> plane;
    for (int i = 0; i < 500; ++i) {
        const MzPoint place{10 + i % 25 * 0.4, 55 + i / 25 * 0.5};
        features.push_back(std::make_unique<Feature>(MzPointGeometry::initWithPoint(place)));
        objects.push_back(features.back().get());
        plane.push_back(zone->projectedCoordinateForLongitudeLatitude(place));
    }
    const Tree tree = MzPackedRTree::initWithSpatialObjects(objects, zone);
    const MzBox view{400'000, 6'500'000, 600'000, 6'800'000};
    Items expected;
    for (std::uint32_t i = 0; i < 500; ++i) {
        if (view.meets(MzBox::of(plane[i]))) expected.push_back(i);
    }
    EXPECT_EQ(tree->itemsInWindow(view), expected);
    EXPECT_FALSE(expected.empty());
}

TEST(PackedRTree, IndexesLeaves) {
    const std::vector<std::shared_ptr<MzTreeLeafNode>> leaves{
        MzTreeLeafNode::initWithBounds({{0, 0}, {1, 1}}, nullptr), nullptr,
        MzTreeLeafNode::initWithBounds({{5, 5}, {0, 0}}, nullptr)};
    const Tree tree = MzPackedRTree::initWithLeaves(leaves);
    EXPECT_EQ(tree->count(), 2u);
    EXPECT_EQ(tree->itemsInWindow({-9, -9, 9, 9}), (Items{0, 2}));
}

// --- blocks ---------------------------------------------------------------

using Words = std::vector<std::uint64_t>;

/// The block's bytes at an address fit for them.
Words copyOf(const Tree& tree) {
    Words words(tree->block().size() / 8);
    std::memcpy(words.data(), tree->block().data(), tree->block().size());
    return words;
}

TEST(PackedRTree, WorksFromItsBytesWhereTheyAre) {
    for (const std::size_t count : {0u, 1u, 16u, 300u, 5000u}) {
        for (const std::uint32_t nodeSize : {8u, 16u, 32u, 64u}) {
            const auto boxes = scattered(count);
            const Words words = copyOf(treeOver(boxes, nodeSize));
            const Tree tree = MzPackedRTree::initWithBlock(std::as_bytes(std::span(words)));
            ASSERT_NE(tree, nullptr);
            EXPECT_EQ(static_cast<const void*>(tree->block().data()), words.data());
            EXPECT_EQ(tree->count(), count);
            EXPECT_EQ(tree->nodeSize(), nodeSize);
            const MzBox window{-50, -50, 70, 60};
            EXPECT_EQ(tree->itemsInWindow(window), scan(boxes, window));
            EXPECT_EQ(tree->nearest({1, 2}, 5), scanNearest(boxes, {1, 2}, 5));
        }
    }
}

TEST(PackedRTree, KeepsTheOwnerOfItsBytes) {
    auto owner = std::make_shared<Words>(copyOf(treeOver(scattered(100))));
    const std::weak_ptr<Words> watched = owner;
    const auto bytes = std::as_bytes(std::span(*owner));
    Tree tree = MzPackedRTree::initWithBlock(bytes, std::move(owner));
    EXPECT_FALSE(watched.expired());
    EXPECT_EQ(tree->count(), 100u);
    tree.reset();
    EXPECT_TRUE(watched.expired());
}

TEST(PackedRTree, GivesTheSameBytesAgain) {
    const auto boxes = scattered(3000);
    const Tree first = treeOver(boxes), second = treeOver(boxes);
    EXPECT_TRUE(std::ranges::equal(first->block(), second->block()));
}

TEST(PackedRTree, RefusesBytesThatAreNoWholeBlock) {
    const Words words = copyOf(treeOver(scattered(300)));
    const auto bytes = std::as_bytes(std::span(words));
    EXPECT_EQ(MzPackedRTree::initWithBlock({}), nullptr);
    for (const std::size_t size : {std::size_t{1}, std::size_t{63}, std::size_t{64},
                                   bytes.size() / 2, bytes.size() - 8, bytes.size() - 1}) {
        EXPECT_EQ(MzPackedRTree::initWithBlock(bytes.first(size)), nullptr) << size;
    }
    Words longer = words;
    longer.push_back(0);
    EXPECT_EQ(MzPackedRTree::initWithBlock(std::as_bytes(std::span(longer))), nullptr);
    Words shifted(words.size() + 1);
    auto* const odd = reinterpret_cast<std::byte*>(shifted.data()) + 4;
    std::memcpy(odd, words.data(), bytes.size());
    EXPECT_EQ(MzPackedRTree::initWithBlock({odd, bytes.size()}), nullptr);
}

/// Whether a block is taken after one of its words was changed.
bool isTakenWith(Words words, std::size_t place, std::uint64_t value) {
    words[place] = value;
    return MzPackedRTree::initWithBlock(std::as_bytes(std::span(words))) != nullptr;
}

TEST(PackedRTree, RefusesHeadersThatDoNotFitTheirBytes) {
    const Words words = copyOf(treeOver(scattered(300)));
    ASSERT_TRUE(isTakenWith(words, 0, words[0]));
    EXPECT_FALSE(isTakenWith(words, 0, words[0] + 1));
    for (const std::uint64_t nodeSize : {0u, 1u, 4u, 8u, 17u, 64u, 128u}) {
        EXPECT_FALSE(isTakenWith(words, 1, nodeSize)) << nodeSize;
    }
    for (const std::uint64_t count :
         {std::uint64_t{0}, std::uint64_t{5000}, std::uint64_t{1} << 33, ~std::uint64_t{0}}) {
        EXPECT_FALSE(isTakenWith(words, 2, count)) << count;
    }
    EXPECT_FALSE(isTakenWith(words, 3, 299));
    EXPECT_TRUE(isTakenWith(words, 3, 301));
    EXPECT_FALSE(isTakenWith(words, 3, ~std::uint64_t{0}));
}

TEST(PackedRTree, RefusesBoxesBehindTheLast) {
    // 300 boxes: the last of 19 nodes holds 12, the last of two nodes above 3, the top 2.
    const Words words = copyOf(treeOver(scattered(300)));
    const std::size_t top = 8, above = top + 32, leaves = above + 64;
    ASSERT_EQ(leaves + 19 * 64 + 19 * 8, words.size());
    EXPECT_FALSE(isTakenWith(words, top + 1, 0));
    EXPECT_FALSE(isTakenWith(words, above + 32 + 2, 0));
    EXPECT_FALSE(isTakenWith(words, leaves + 18 * 64 + 12, 0));
    EXPECT_TRUE(isTakenWith(words, leaves + 18 * 64 + 11, 0));
}

TEST(PackedRTree, ServesManyThreads) {
    const auto boxes = scattered(5000);
    const Tree tree = treeOver(boxes);
    std::array<bool, 4> right{};
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < right.size(); ++t) {
        threads.emplace_back([&, t] {
            std::mt19937_64 engine{kSeed + t};
            right[t] = true;
            for (int i = 0; i < 200; ++i) {
                const MzBox window = anyWindow(engine);
                right[t] = right[t] && tree->itemsInWindow(window) == scan(boxes, window);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(right, (std::array<bool, 4>{true, true, true, true}));
}

}  // namespace
}  // namespace mezalith
