// SPDX-License-Identifier: MIT
#include <mezalith/geometry/packed_block.hpp>
#include <mezalith/geometry/test_support.hpp>
#include <mezalith/geometry/wkb.hpp>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith::detail {
namespace {

using namespace test;

const Rings kTwoRings{square(0, 0, 4), {{1, 1}, {2, 1}, {1, 2}, {1, 1}}};
const Rings kOneRing{square(9, 9, 1)};

std::size_t offset(const Block& block, const void* place) {
    return static_cast<std::size_t>(static_cast<const std::byte*>(place) - block.data());
}

template <typename Record>
const Record* recordIn(const Block& block) {
    return reinterpret_cast<const Record*>(block.data());
}

void expectPolygon(const MzPolygon& polygon, const Rings& expected) {
    ASSERT_EQ(polygon.count, expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_TRUE(sameBits(pointsOf(&polygon.rings[i]), expected[i])) << "ring " << i;
    }
}

// --- layout

TEST(PackedBlock, PutsRingsBehindTheHeaderAndPointsBehindTheRings) {
    OwnedPolygon polygon(kTwoRings);
    const MzPolygon record = polygon.record();
    const Block block = packedCopy(record);
    EXPECT_EQ(block.size(), sizeOfMzPolygon(&record));
    const auto* packed = recordIn<MzPolygon>(block);
    EXPECT_EQ(offset(block, packed->rings), 16u);
    EXPECT_EQ(offset(block, packed->rings[0].points), 16u + 32);
    EXPECT_EQ(offset(block, packed->rings[1].points), 16u + 32 + 80);
    EXPECT_EQ(block.size(), 16u + 32 + 80 + 64);
    expectPolygon(*packed, kTwoRings);
}

TEST(PackedBlock, NestsMultiPolygonsDepthFirst) {
    OwnedMultiPolygon polygons({kTwoRings, {}, kOneRing});
    const MzMultiPolygon record = polygons.record();
    const Block block = packedCopy(record);
    EXPECT_EQ(block.size(), sizeOfMzMultiPolygon(&record));
    const auto* packed = recordIn<MzMultiPolygon>(block);
    ASSERT_EQ(packed->count, 3u);
    EXPECT_EQ(offset(block, packed->polygons), 16u);
    EXPECT_EQ(offset(block, packed->polygons[0].rings), 64u);
    EXPECT_EQ(offset(block, packed->polygons[0].rings[0].points), 96u);
    EXPECT_EQ(offset(block, packed->polygons[0].rings[1].points), 176u);
    EXPECT_EQ(offset(block, packed->polygons[1].rings), 240u);
    EXPECT_EQ(offset(block, packed->polygons[2].rings), 240u);
    EXPECT_EQ(offset(block, packed->polygons[2].rings[0].points), 256u);
    EXPECT_EQ(block.size(), 336u + 3 * 16);
    expectPolygon(packed->polygons[0], kTwoRings);
    expectPolygon(packed->polygons[1], {});
    expectPolygon(packed->polygons[2], kOneRing);
}

TEST(PackedBlock, PutsPointsBehindTheHeader) {
    Points points = square(0, 0, 1);
    const auto multiPoint = recordOf<MzMultiPoint>(points);
    const Block block = packedCopy(multiPoint);
    EXPECT_EQ(block.size(), sizeOfMzMultiPoint(&multiPoint));
    EXPECT_EQ(offset(block, recordIn<MzMultiPoint>(block)->points), 16u);
    EXPECT_TRUE(sameBits(pointsOf(recordIn<MzMultiPoint>(block)), points));
    const Block line = packedCopy(recordOf<MzLineString>(points));
    EXPECT_EQ(offset(line, recordIn<MzLineString>(line)->points), 16u);
    EXPECT_TRUE(sameBits(pointsOf(recordIn<MzLineString>(line)), points));
}

TEST(PackedBlock, StaysValidWhenMoved) {
    OwnedPolygon polygon(kTwoRings);
    Block block = packedCopy(polygon.record());
    const Block moved = std::move(block);
    expectPolygon(*recordIn<MzPolygon>(moved), kTwoRings);
}

TEST(PackedBlock, TakesNullArraysAsEmpty) {
    const std::uint32_t many = 4000000000u;
    EXPECT_EQ(packedCopy(MzLineString{many, nullptr}).size(), 16u);
    EXPECT_EQ(packedCopy(MzMultiPolygon{many, nullptr}).size(), 16u);
    OwnedPolygon polygon(kTwoRings);
    polygon.rings()[0] = {many, nullptr};
    MzPolygon members[] = {polygon.record(), {many, nullptr}};
    const Block block = packedCopy(MzMultiPolygon{2, members});
    const auto* packed = recordIn<MzMultiPolygon>(block);
    EXPECT_EQ(block.size(), 16u + 32 + (16 + 32 + 64) + 16);
    EXPECT_EQ(packed->polygons[0].rings[0].count, 0u);
    EXPECT_EQ(packed->polygons[0].rings[1].count, 4u);
    EXPECT_EQ(packed->polygons[1].count, 0u);
}

// --- from WKB

TEST(PackedBlockFromWKB, HoldsAPoint) {
    const Block block = packedBlockFromWKB(WkbWriter().point(kBig, {3, 4}).bytes(), 1);
    ASSERT_EQ(block.size(), 16u);
    EXPECT_EQ(recordIn<MzPoint>(block)->x, 3);
    EXPECT_EQ(recordIn<MzPoint>(block)->y, 4);
}

TEST(PackedBlockFromWKB, IsTheBlockOfTheRecords) {
    for (const std::uint8_t order : {kBig, kLittle}) {
        const Block block = packedBlockFromWKB(WkbWriter().polygon(order, kTwoRings).bytes(), 3);
        ASSERT_EQ(block.size(), 192u);
        EXPECT_EQ(offset(block, recordIn<MzPolygon>(block)->rings), 16u);
        EXPECT_EQ(offset(block, recordIn<MzPolygon>(block)->rings[1].points), 128u);
        expectPolygon(*recordIn<MzPolygon>(block), kTwoRings);

        const Points points = kTwoRings[1];
        const Block line = packedBlockFromWKB(WkbWriter().lineString(order, points).bytes(), 2);
        ASSERT_EQ(line.size(), 80u);
        EXPECT_EQ(offset(line, recordIn<MzLineString>(line)->points), 16u);
        EXPECT_TRUE(sameBits(pointsOf(recordIn<MzLineString>(line)), points));
    }
}

TEST(PackedBlockFromWKB, ReadsEachMemberInItsOwnOrder) {
    const auto wkb = WkbWriter()
                         .multi(kLittle, 6, 3)
                         .polygon(kBig, kTwoRings)
                         .polygon(kLittle, {})
                         .polygon(kOdd, kOneRing);
    const Block block = packedBlockFromWKB(wkb.bytes(), 6);
    ASSERT_EQ(block.size(), 336u);
    const auto* packed = recordIn<MzMultiPolygon>(block);
    ASSERT_EQ(packed->count, 3u);
    EXPECT_EQ(offset(block, packed->polygons[2].rings[0].points), 256u);
    expectPolygon(packed->polygons[0], kTwoRings);
    expectPolygon(packed->polygons[1], {});
    expectPolygon(packed->polygons[2], kOneRing);
}

TEST(PackedBlockFromWKB, HoldsGeometriesWithoutPoints) {
    for (const std::uint32_t type : {2u, 3u, 4u, 6u}) {
        const Block block = packedBlockFromWKB(WkbWriter().multi(kLittle, type, 0).bytes(), type);
        ASSERT_EQ(block.size(), 16u) << type;
        EXPECT_EQ(recordIn<MzMultiPoint>(block)->count, 0u) << type;
    }
}

TEST(PackedBlockFromWKB, NeedsTheTypeAskedFor) {
    const Bytes point = WkbWriter().point(kLittle, {3, 4}).bytes();
    EXPECT_TRUE(packedBlockFromWKB(point, 2).empty());
    EXPECT_TRUE(packedBlockFromWKB(point, 0).empty());
    const Bytes lines = WkbWriter().multi(kLittle, 5, 0).bytes();
    EXPECT_TRUE(packedBlockFromWKB(lines, 5).empty());
    const Bytes collection = WkbWriter().multi(kLittle, 7, 0).bytes();
    EXPECT_TRUE(packedBlockFromWKB(collection, 7).empty());
}

TEST(PackedBlockFromWKB, PassesOverWhatFollows) {
    Bytes wkb = WkbWriter().polygon(kLittle, kOneRing).bytes();
    wkb.resize(wkb.size() + 7, std::byte{0xEE});
    expectPolygon(*recordIn<MzPolygon>(packedBlockFromWKB(wkb, 3)), kOneRing);
}

TEST(PackedBlockFromWKB, IsEmptyForEveryPrefix) {
    const std::vector<std::pair<std::uint32_t, Bytes>> geometries{
        {1, WkbWriter().point(kLittle, {1, 2}).bytes()},
        {2, WkbWriter().lineString(kBig, kTwoRings[0]).bytes()},
        {3, WkbWriter().polygon(kBig, kTwoRings).bytes()},
        {4, WkbWriter().multi(kLittle, 4, 2).point(kBig, {}).point(kLittle, {}).bytes()},
        {6, WkbWriter().multi(kBig, 6, 2).polygon(kBig, kTwoRings).polygon(1, kOneRing).bytes()},
    };
    for (const auto& [type, wkb] : geometries) {
        EXPECT_FALSE(packedBlockFromWKB(wkb, type).empty()) << type;
        for (std::size_t length = 0; length < wkb.size(); ++length) {
            const Bytes prefix(wkb.begin(), wkb.begin() + static_cast<std::ptrdiff_t>(length));
            ASSERT_TRUE(packedBlockFromWKB(prefix, type).empty()) << type << " at " << length;
        }
    }
}

TEST(PackedBlockFromWKB, BelievesNoCountBeyondTheBytes) {
    // Counts whose sizes are 0 or small in 32 bits, negative when signed, or the greatest.
    for (const std::uint32_t n :
         {0x10000000u, 0x10000001u, 0x0C30C30Du, 0x80000000u, 0xFFFFFFFFu}) {
        const auto isEmpty = [](const WkbWriter& wkb, std::uint32_t type) {
            Bytes bytes = wkb.bytes();
            bytes.resize(bytes.size() + 64);
            return packedBlockFromWKB(bytes, type).empty();
        };
        EXPECT_TRUE(isEmpty(WkbWriter().multi(kLittle, 2, n), 2)) << n;
        EXPECT_TRUE(isEmpty(WkbWriter().multi(kLittle, 3, n), 3)) << n;
        EXPECT_TRUE(isEmpty(WkbWriter().multi(kBig, 3, 1).integer(n), 3)) << n;
        EXPECT_TRUE(isEmpty(WkbWriter().multi(kLittle, 4, n), 4)) << n;
        EXPECT_TRUE(isEmpty(WkbWriter().multi(kLittle, 6, n), 6)) << n;
        EXPECT_TRUE(isEmpty(WkbWriter().multi(kLittle, 6, 1).multi(kBig, 3, n), 6)) << n;
    }
}

TEST(PackedBlockFromWKB, Holds300Rings) {
    Rings rings;
    for (int i = 0; i < 300; ++i) rings.push_back(square(i, i, 0.5));
    const Block block = packedBlockFromWKB(WkbWriter().polygon(kBig, rings).bytes(), 3);
    ASSERT_EQ(block.size(), 16u + 300 * (16 + 80));
    expectPolygon(*recordIn<MzPolygon>(block), rings);
}

// --- laws

Rings anyRings() {
    Rings rings(*rc::gen::inRange<std::size_t>(0, 6));
    for (Points& ring : rings) {
        ring.resize(*rc::gen::inRange<std::size_t>(0, 9));
        for (MzPoint& p : ring) p = {*rc::gen::arbitrary<double>(), *rc::gen::arbitrary<double>()};
    }
    return rings;
}

TEST(PackedBlockLaws, SizesAreTheDecodersFigures) {
    EXPECT_TRUE(rc::check([] {
        std::vector<Rings> members(*rc::gen::inRange<std::size_t>(0, 5));
        WkbWriter wkb;
        wkb.multi(*rc::gen::element(kBig, kLittle), 6, static_cast<std::uint32_t>(members.size()));
        for (Rings& rings : members) {
            rings = anyRings();
            wkb.polygon(*rc::gen::element(kBig, kLittle), rings);
        }
        OwnedMultiPolygon polygons(members);
        const MzMultiPolygon record = polygons.record();
        const std::byte* cursor = wkb.data();
        const Block block = packedBlockFromWKB(wkb.bytes(), 6);
        RC_ASSERT(block.size() == wkbMultiPolygonToMzMultiPolygon(&cursor, nullptr));
        RC_ASSERT(packedCopy(record).size() == sizeOfMzMultiPolygon(&record));
        RC_ASSERT(packedCopy(record).size() == block.size() + 16 * members.size());
        RC_ASSERT(static_cast<std::size_t>(cursor - wkb.data()) == wkb.bytes().size());
    }));
}

TEST(PackedBlockLaws, WKBAndRecordsGiveTheSamePolygon) {
    EXPECT_TRUE(rc::check([] {
        const Rings rings = anyRings();
        OwnedPolygon polygon(rings);
        const MzPolygon record = polygon.record();
        const Block copied = packedCopy(record);
        const Block decoded = packedBlockFromWKB(
            WkbWriter().polygon(*rc::gen::element(kBig, kLittle), rings).bytes(), 3);
        RC_ASSERT(copied.size() == decoded.size());
        const auto* a = recordIn<MzPolygon>(copied);
        const auto* b = recordIn<MzPolygon>(decoded);
        RC_ASSERT(a->count == b->count);
        for (std::uint32_t i = 0; i < a->count; ++i) {
            RC_ASSERT(offset(copied, a->rings[i].points) == offset(decoded, b->rings[i].points));
            RC_ASSERT(sameBits(pointsOf(&a->rings[i]), pointsOf(&b->rings[i])));
        }
    }));
}

}  // namespace
}  // namespace mezalith::detail
