// SPDX-License-Identifier: MIT
#include <mezalith/geometry/test_support.hpp>
#include <mezalith/geometry/wkb.hpp>
#include <mezalith/platform/log.hpp>

#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith {
namespace {

using namespace test;

const Points kThreePoints{{1, 2}, {-3.5, 4.25}, {1e300, -0.0}};

// --- primitives

TEST(WkbPrimitives, OnlyZeroMeansBigEndian) {
    const Bytes bytes = bytesOf({0, 1, 7, 255});
    const std::byte* cursor = bytes.data();
    EXPECT_EQ(wkbByteOrder(&cursor), wkbBigEndian);
    EXPECT_EQ(wkbByteOrder(&cursor), wkbLittleEndian);
    EXPECT_EQ(wkbByteOrder(&cursor), wkbLittleEndian);
    EXPECT_EQ(wkbByteOrder(&cursor), wkbLittleEndian);
    EXPECT_EQ(cursor, bytes.data() + 4);
}

TEST(WkbPrimitives, ReadWithoutAdvancingOrAdvance) {
    const Bytes bytes = bytesOf({9, 1, 2, 3, 4});
    EXPECT_EQ(getInt(bytes.data() + 1, 1), 0x04030201u);
    EXPECT_EQ(getInt(bytes.data() + 1, 2), 0x01020304u);
    EXPECT_EQ(getByte(bytes.data()), 9);
    const std::byte* cursor = bytes.data();
    EXPECT_EQ(popByte(&cursor), 9);
    EXPECT_EQ(popInt(&cursor, 2), 0x01020304u);
    EXPECT_EQ(cursor, bytes.data() + 5);
}

TEST(WkbPrimitives, ReadDoublesInBothOrders) {
    const Bytes bytes = bytesOf({0, 0, 0, 0, 0, 0, 0xF0, 0x3F, 0x3F, 0xF0, 0, 0, 0, 0, 0, 0});
    const std::byte* cursor = bytes.data();
    EXPECT_EQ(popDouble(&cursor, 1), 1.0);
    EXPECT_EQ(popDouble(&cursor, 2), 1.0);
    EXPECT_EQ(cursor, bytes.data() + 16);
}

TEST(WkbPrimitives, SkipTheSizeOfWhatTheySkip) {
    const Bytes bytes(13);
    const std::byte* cursor = bytes.data();
    skipByte(&cursor);
    EXPECT_EQ(cursor, bytes.data() + 1);
    skipInt(&cursor);
    EXPECT_EQ(cursor, bytes.data() + 5);
    skipDouble(&cursor);
    EXPECT_EQ(cursor, bytes.data() + 13);
}

TEST(WkbPrimitives, WriteInHostOrderAndAdvance) {
    Bytes bytes(13);
    std::byte* cursor = bytes.data();
    const std::uint8_t byte = 0xAB;
    const std::uint32_t integer = 0x01020304;
    const double number = 1;
    writeByte(&cursor, &byte);
    writeInt(&cursor, &integer);
    writeDouble(&cursor, &number);
    EXPECT_EQ(cursor, bytes.data() + 13);
    EXPECT_EQ(bytes, bytesOf({0xAB, 4, 3, 2, 1, 0, 0, 0, 0, 0, 0, 0xF0, 0x3F}));
}

TEST(WkbPrimitives, TypeIsReadInTheOrderOfTheElement) {
    EXPECT_EQ(geometryTypeFromData(bytesOf({0, 0, 0, 0, 3}).data()), 3u);
    EXPECT_EQ(geometryTypeFromData(bytesOf({1, 3, 0, 0, 0}).data()), 3u);
    EXPECT_EQ(geometryTypeFromData(bytesOf({7, 3, 0, 0, 0}).data()), 3u);
    EXPECT_EQ(geometryTypeFromData(bytesOf({0, 3, 0, 0, 0}).data()), 0x03000000u);
}

TEST(WkbPrimitives, AlwaysWriteLittleEndian) {
    EXPECT_EQ(wkbByteOrderFromHost(), 1);
    EXPECT_EQ(wkbByteOrderFromHost(), 1);
}

TEST(PrintHEX, LogsSixteenLines) {
    std::vector<std::string> lines;
    const auto before =
        platform::setLogSink([&](std::string_view line) { lines.emplace_back(line); });
    Bytes bytes(40);
    for (std::size_t i = 0; i < 16; ++i) bytes[i] = static_cast<std::byte>(0x11 * i);
    printHEX(bytes.data());
    platform::setLogSink(before);
    ASSERT_EQ(lines.size(), 16u);
    EXPECT_EQ(lines[0], "Hex Out: 00");
    EXPECT_EQ(lines[10], "Hex Out: AA");
    EXPECT_EQ(lines[15], "Hex Out: FF");
}

// --- decoders: points

TEST(WkbDecoder, ReadsAPointInEitherOrder) {
    for (const std::uint8_t order : {kBig, kLittle, kOdd}) {
        const auto wkb = WkbWriter().point(order, {3.25, -7});
        const std::byte* cursor = wkb.data();
        MzPoint point{};
        EXPECT_EQ(wkbPointToMzPoint(&cursor, 1, &point), 16u);
        EXPECT_EQ(cursor, wkb.data() + 21);
        EXPECT_EQ(point.x, 3.25) << int{order};
        EXPECT_EQ(point.y, -7) << int{order};
    }
}

TEST(WkbDecoder, ReadsRawPairsInTheGivenOrder) {
    for (const std::uint8_t order : {kBig, kLittle}) {
        const auto wkb = WkbWriter().element(order, 2).pairs(kThreePoints);
        const std::byte* cursor = wkb.data() + 5;
        Points points(3);
        EXPECT_EQ(pointToMzPoint(&cursor, 3, points.data(), order == kBig ? 2 : 1), 48u);
        EXPECT_EQ(cursor, wkb.data() + 5 + 48);
        EXPECT_TRUE(sameBits(points, kThreePoints));
    }
}

TEST(WkbDecoder, OnlySizesWithoutAnOutput) {
    const auto wkb = WkbWriter()
                         .multi(kLittle, 4, 3)
                         .point(kLittle, {1, 2})
                         .point(kLittle, {3, 4})
                         .point(kLittle, {5, 6});
    const std::byte* cursor = wkb.data();
    EXPECT_EQ(wkbMultiPointToMzMultiPoint(&cursor, nullptr), 64u);
    EXPECT_EQ(cursor - wkb.data(), 72);
    cursor = wkb.data();
    EXPECT_EQ(pointToMzPoint(&cursor, 3, nullptr, 1), 48u);
    EXPECT_EQ(cursor - wkb.data(), 48);
    cursor = wkb.data() + 9;
    EXPECT_EQ(wkbPointToMzPoint(&cursor, 3, nullptr), 48u);
    EXPECT_EQ(cursor - wkb.data(), 72);
    cursor = wkb.data();
    EXPECT_EQ(wkbPointToMzPoint(&cursor, 0, nullptr), 0u);
    EXPECT_EQ(cursor, wkb.data());
}

TEST(WkbDecoder, SizesIn64Bits) {
    const std::byte nothing{};
    const std::byte* cursor = &nothing;
    EXPECT_EQ(wkbPointToMzPoint(&cursor, 0xFFFFFFFF, nullptr), 0xFFFFFFFF0u);
    EXPECT_EQ(cursor - &nothing, 0xFFFFFFFFLL * 21);
    cursor = &nothing;
    EXPECT_EQ(pointToMzPoint(&cursor, 0x10000001, nullptr, 1), 0x100000010u);
    EXPECT_EQ(cursor - &nothing, 0x100000010LL);
}

TEST(WkbDecoder, KeepsThePayloadOfNaNs) {
    const Points signalling = pointsOfBits({{0x7FF0123456789ABC, 0xFFF0000000000001}});
    for (const std::uint8_t order : {kBig, kLittle}) {
        const auto wkb = WkbWriter().point(order, signalling[0]);
        const std::byte* cursor = wkb.data();
        Points points(1);
        wkbPointToMzPoint(&cursor, 1, points.data());
        EXPECT_TRUE(sameBits(points, signalling));
    }
}

TEST(WkbDecoder, PutsTheMultiPointsArrayBehindItsRecord) {
    const auto wkb = WkbWriter().multi(kBig, 4, 2).point(kLittle, {1, 2}).point(kBig, {3, 4});
    Room<MzMultiPoint> room(48);
    const std::byte* cursor = wkb.data();
    EXPECT_EQ(wkbMultiPointToMzMultiPoint(&cursor, room.record()), 48u);
    EXPECT_EQ(cursor, wkb.data() + wkb.bytes().size());
    EXPECT_EQ(room.record()->count, 2u);
    EXPECT_EQ(reinterpret_cast<std::byte*>(room.record()->points), room.at(16));
    EXPECT_TRUE(sameBits(pointsOf(room.record()), Points{{1, 2}, {3, 4}}));
}

TEST(WkbDecoder, DoesNotLookAtTheTypesOfMembers) {
    const auto wkb = WkbWriter().multi(kLittle, 4, 1).element(kLittle, 99).pairs(Points{{8, 9}});
    Room<MzMultiPoint> room(32);
    const std::byte* cursor = wkb.data();
    wkbMultiPointToMzMultiPoint(&cursor, room.record());
    EXPECT_EQ(room.record()->points[0].y, 9);
}

// --- decoders: rings, line strings, polygons

TEST(WkbDecoder, SkipsThePairsOfRingsWithoutAnArray) {
    const auto wkb = WkbWriter().element(kBig, 3).countedPairs(kThreePoints).countedPairs({});
    std::array<MzLinearRing, 2> rings{};
    const std::byte* cursor = wkb.data() + 5;
    EXPECT_EQ(linearRingToMzLinearRing(&cursor, 2, rings.data(), 2), 32u + 48u);
    EXPECT_EQ(cursor, wkb.data() + wkb.bytes().size());
    EXPECT_EQ(rings[0].count, 3u);
    EXPECT_EQ(rings[0].points, nullptr);
    EXPECT_EQ(rings[1].count, 0u);
}

TEST(WkbDecoder, FillsTheArraysThatRingsDesignate) {
    const auto wkb = WkbWriter().element(kBig, 3).countedPairs(kThreePoints);
    Points points(3);
    MzLinearRing ring{0, points.data()};
    const std::byte* cursor = wkb.data() + 5;
    EXPECT_EQ(linearRingToMzLinearRing(&cursor, 1, &ring, 2), 16u + 48u);
    EXPECT_EQ(ring.points, points.data());
    EXPECT_TRUE(sameBits(points, kThreePoints));
}

TEST(WkbDecoder, SizesRingsAndLineStringsAsItFillsThem) {
    const auto wkb = WkbWriter().lineString(kBig, kThreePoints).lineString(kOdd, {{1, 1}});
    const std::byte* sizing = wkb.data();
    EXPECT_EQ(wkbLineStringToMzLineString(&sizing, 2, nullptr), 32u + 64u);
    Points points(3);
    std::array<MzLineString, 2> lines{MzLineString{0, points.data()}, MzLineString{0, nullptr}};
    const std::byte* filling = wkb.data();
    EXPECT_EQ(wkbLineStringToMzLineString(&filling, 2, lines.data()), 32u + 64u);
    EXPECT_EQ(sizing, filling);
    EXPECT_EQ(sizing, wkb.data() + wkb.bytes().size());
    EXPECT_TRUE(sameBits(points, kThreePoints));
    EXPECT_EQ(lines[1].count, 1u);
    EXPECT_EQ(lines[1].points, nullptr);
}

TEST(WkbDecoder, PutsRings256BytesBehindTheirPolygon) {
    const Rings one{kThreePoints, {{1, 1}}};
    const Rings other{{{5, 5}, {6, 6}}};
    const auto wkb = WkbWriter().polygon(kLittle, one).polygon(kBig, other);
    const std::byte* cursor = wkb.data();
    const std::size_t size = 32 + (32 + 64) + (16 + 32);
    EXPECT_EQ(wkbPolygonToMzPolygon(&cursor, 2, nullptr), size);
    EXPECT_EQ(cursor, wkb.data() + wkb.bytes().size());
    Room<MzPolygon> room(size + 512);
    cursor = wkb.data();
    EXPECT_EQ(wkbPolygonToMzPolygon(&cursor, 2, room.record()), size);
    EXPECT_EQ(room.record()[0].count, 2u);
    EXPECT_EQ(reinterpret_cast<std::byte*>(room.record()[0].rings), room.at(256));
    EXPECT_EQ(room.record()[1].count, 1u);
    EXPECT_EQ(reinterpret_cast<std::byte*>(room.record()[1].rings), room.at(256 + 16));
    EXPECT_EQ(room.record()[0].rings[0].count, 3u);
    EXPECT_EQ(room.record()[1].rings[0].count, 2u);
    EXPECT_EQ(room.record()[1].rings[0].points, nullptr);
}

TEST(WkbDecoder, PutsPolygonsBehindTheMultiPolygon) {
    const auto wkb =
        WkbWriter().multi(kBig, 6, 2).polygon(kLittle, {kThreePoints}).polygon(kBig, {{{5, 5}}});
    const std::byte* cursor = wkb.data();
    const std::size_t size = 16 + 32 + (16 + 48) + (16 + 16);
    EXPECT_EQ(wkbMultiPolygonToMzMultiPolygon(&cursor, nullptr), size);
    EXPECT_EQ(cursor, wkb.data() + wkb.bytes().size());
    Room<MzMultiPolygon> room(size + 512);
    cursor = wkb.data();
    EXPECT_EQ(wkbMultiPolygonToMzMultiPolygon(&cursor, room.record()), size);
    EXPECT_EQ(room.record()->count, 2u);
    EXPECT_EQ(reinterpret_cast<std::byte*>(room.record()->polygons), room.at(16));
    EXPECT_EQ(reinterpret_cast<std::byte*>(room.record()->polygons[1].rings), room.at(16 + 272));
    EXPECT_EQ(room.record()->polygons[0].rings[0].count, 3u);
}

TEST(WkbDecoder, PutsLineStringsBehindTheMultiLineString) {
    const auto wkb =
        WkbWriter().multi(kLittle, 5, 2).lineString(kBig, kThreePoints).lineString(kLittle, {});
    const std::byte* cursor = wkb.data();
    EXPECT_EQ(wkbMultiLineStringToMzMultiLineString(&cursor, nullptr), 16u + 32u + 48u);
    Room<MzMultiLineString> room(96);
    cursor = wkb.data();
    EXPECT_EQ(wkbMultiLineStringToMzMultiLineString(&cursor, room.record()), 96u);
    EXPECT_EQ(cursor, wkb.data() + wkb.bytes().size());
    EXPECT_EQ(room.record()->count, 2u);
    EXPECT_EQ(reinterpret_cast<std::byte*>(room.record()->lineStrings), room.at(16));
    EXPECT_EQ(room.record()->lineStrings[0].count, 3u);
    EXPECT_EQ(room.record()->lineStrings[0].points, nullptr);
}

// --- laws

TEST(WkbDecoderLaws, MixedByteOrdersDecodeAlike) {
    EXPECT_TRUE(rc::check([](const PointBits& bits) {
        const Points points = pointsOfBits(bits);
        WkbWriter wkb;
        wkb.multi(*rc::gen::arbitrary<std::uint8_t>(), 4,
                  static_cast<std::uint32_t>(points.size()));
        for (const MzPoint p : points) wkb.point(*rc::gen::element(kBig, kLittle, kOdd), p);
        Room<MzMultiPoint> room(16 + 16 * points.size());
        const std::byte* cursor = wkb.data();
        wkbMultiPointToMzMultiPoint(&cursor, room.record());
        RC_ASSERT(sameBits(pointsOf(room.record()), points));
    }));
}

}  // namespace
}  // namespace mezalith
