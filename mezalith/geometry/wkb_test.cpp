// SPDX-License-Identifier: MIT
#include <mezalith/geometry/test_support.hpp>
#include <mezalith/geometry/wkb.hpp>
#include <mezalith/platform/log.hpp>

#include <array>
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

// The program's own malloc and realloc, which refuse one size on demand. The sanitizer has its own.
#if defined(__GLIBC__) && !defined(__SANITIZE_ADDRESS__)
#define MEZALITH_TEST_REFUSES_MEMORY

constexpr std::size_t kNothingRefused = std::numeric_limits<std::size_t>::max();
static std::size_t refusedSize = kNothingRefused;

extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_realloc(void* memory, std::size_t size);

extern "C" MEZALITH_EXPORT void* malloc(std::size_t size) noexcept {
    return size == refusedSize ? nullptr : __libc_malloc(size);
}

extern "C" MEZALITH_EXPORT void* realloc(void* memory, std::size_t size) noexcept {
    return size == refusedSize ? nullptr : __libc_realloc(memory, size);
}
#endif

namespace mezalith {
namespace {

using namespace test;

/// Zero-filled room for records.
template <typename Record>
class Room {
  public:
    explicit Room(std::size_t bytes) : words_((bytes + 7) / 8) {}
    Record* record() { return reinterpret_cast<Record*>(words_.data()); }
    std::byte* at(std::size_t offset) {
        return reinterpret_cast<std::byte*>(words_.data()) + offset;
    }

  private:
    std::vector<std::uint64_t> words_;
};

/// A buffer of the encoders with its counter.
class Encoding {
  public:
    ~Encoding() { std::free(buffer); }
    Bytes counted() const { return {buffer, buffer + length}; }
    template <typename Value>
    Value read(std::size_t offset) const {
        Value value;
        std::memcpy(&value, buffer + offset, sizeof value);
        return value;
    }

    std::byte* buffer = nullptr;
    std::uint64_t length = 0;
};

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
    const auto signalling = std::bit_cast<double>(std::uint64_t{0x7FF0123456789ABC});
    for (const std::uint8_t order : {kBig, kLittle}) {
        const auto wkb = WkbWriter().element(order, 1).integer(0).integer(0);
        Bytes bytes(wkb.bytes().begin(), wkb.bytes().begin() + 5);
        std::uint64_t word = 0x7FF0123456789ABC;
        if (order == kBig) word = __builtin_bswap64(word);
        const auto* from = reinterpret_cast<const std::byte*>(&word);
        bytes.insert(bytes.end(), from, from + 8);
        bytes.insert(bytes.end(), from, from + 8);
        const std::byte* cursor = bytes.data();
        std::array<std::uint64_t, 2> point{};
        wkbPointToMzPoint(&cursor, 1, reinterpret_cast<MzPoint*>(point.data()));
        EXPECT_EQ(point[0], std::bit_cast<std::uint64_t>(signalling));
        EXPECT_EQ(point[1], 0x7FF0123456789ABCu);
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

// --- encoders

TEST(WkbEncoder, WritesAMultiPointOfTwoAs51Bytes) {
    Points points{{1, 2}, {3, 4}};
    const auto multiPoint = recordOf<MzMultiPoint>(points);
    Encoding wkb;
    wkb.buffer = wkbMultiPointToData(&multiPoint, &wkb.length);
    EXPECT_EQ(wkb.length, 51u);
    const auto expected =
        WkbWriter().multi(kLittle, 4, 2).point(kLittle, {1, 2}).point(kLittle, {3, 4});
    EXPECT_EQ(wkb.counted(), expected.bytes());
    EXPECT_EQ(Bytes(wkb.buffer, wkb.buffer + 14),
              bytesOf({1, 4, 0, 0, 0, 2, 0, 0, 0, 1, 1, 0, 0, 0}));
}

TEST(WkbEncoder, AppendsPointsBehindTheCountedBytes) {
    Encoding wkb;
    wkb.buffer = wkbPointToData(kThreePoints.data(), 1, nullptr, &wkb.length);
    EXPECT_EQ(wkb.length, 21u);
    wkb.buffer = wkbPointToData(kThreePoints.data() + 1, 2, wkb.buffer, &wkb.length);
    EXPECT_EQ(wkb.length, 63u);
    const auto expected = WkbWriter()
                              .point(kLittle, kThreePoints[0])
                              .point(kLittle, kThreePoints[1])
                              .point(kLittle, kThreePoints[2]);
    EXPECT_EQ(wkb.counted(), expected.bytes());
}

TEST(WkbEncoder, IgnoresTheBufferWhileNothingIsCounted) {
    std::byte ignored{};
    Encoding wkb;
    wkb.buffer = wkbPointToData(kThreePoints.data(), 1, &ignored, &wkb.length);
    EXPECT_NE(wkb.buffer, &ignored);
    EXPECT_EQ(wkb.length, 21u);
}

TEST(WkbEncoder, RepeatsTheCountOfRing0AndCountsNoPairs) {
    OwnedPolygon polygon({square(0, 0, 1), {{2, 2}, {3, 2}, {3, 3}, {2, 2}}});
    Encoding wkb;
    wkb.buffer = wkbLinearRingToData(polygon.rings().data(), 2, nullptr, &wkb.length);
    EXPECT_EQ(wkb.length, 8u);
    EXPECT_EQ(wkb.read<std::uint32_t>(0), 5u);
    EXPECT_EQ(wkb.read<double>(4 + 16), 1.0);
    EXPECT_EQ(wkb.read<std::uint32_t>(4 + 80), 5u);
    EXPECT_EQ(wkb.read<double>(4 + 80 + 4), 2.0);
    EXPECT_EQ(wkb.read<double>(4 + 80 + 4 + 56), 2.0);
}

TEST(WkbEncoder, StartsRingsAtTheCounter) {
    OwnedPolygon polygon({square(0, 0, 1)});
    Encoding wkb;
    wkb.buffer = wkbPointToData(kThreePoints.data(), 1, nullptr, &wkb.length);
    wkb.buffer = wkbLinearRingToData(polygon.rings().data(), 1, wkb.buffer, &wkb.length);
    EXPECT_EQ(wkb.length, 25u);
    EXPECT_EQ(wkb.read<std::uint8_t>(0), 1u);
    EXPECT_EQ(wkb.read<std::uint32_t>(21), 5u);
    EXPECT_EQ(wkb.read<double>(25 + 16), 1.0);
}

TEST(WkbEncoder, ReturnsTheBufferUntouchedForNoRings) {
    Encoding wkb;
    wkb.buffer = wkbPointToData(kThreePoints.data(), 1, nullptr, &wkb.length);
    std::byte* before = wkb.buffer;
    const MzLinearRing ring{};
    const MzLineString line{};
    const MzPolygon polygon{};
    EXPECT_EQ(wkbLinearRingToData(&ring, 0, wkb.buffer, &wkb.length), before);
    EXPECT_EQ(wkbLineStringToData(&line, 0, wkb.buffer, &wkb.length), before);
    EXPECT_EQ(wkbPolygonToData(&polygon, 0, wkb.buffer, &wkb.length), before);
    EXPECT_EQ(wkbLinearRingToData(nullptr, 3, wkb.buffer, &wkb.length), before);
    EXPECT_EQ(wkbLineStringToData(nullptr, 3, wkb.buffer, &wkb.length), before);
    EXPECT_EQ(wkbPolygonToData(nullptr, 3, wkb.buffer, &wkb.length), before);
    EXPECT_EQ(wkb.length, 21u);
    // Not even a counter of 0 starts a new buffer then.
    std::byte kept{};
    std::uint64_t length = 0;
    EXPECT_EQ(wkbLinearRingToData(&ring, 0, &kept, &length), &kept);
    EXPECT_EQ(wkbLineStringToData(&line, 0, &kept, &length), &kept);
    EXPECT_EQ(wkbPolygonToData(&polygon, 0, &kept, &length), &kept);
    EXPECT_EQ(length, 0u);
}

TEST(WkbEncoder, IndexesRingsWithEightBits) {
    Rings rings(300);
    for (std::size_t i = 0; i < rings.size(); ++i) rings[i] = {{static_cast<double>(i), 0}};
    rings[0].push_back({-1, -1});
    OwnedPolygon polygon(rings);
    Encoding wkb;
    wkb.buffer = wkbLinearRingToData(polygon.rings().data(), 300, nullptr, &wkb.length);
    EXPECT_EQ(wkb.length, 1200u);
    const std::size_t ring0 = 4 + 32;
    const std::size_t other = 4 + 16;
    const std::size_t ring256 = ring0 + 255 * other;
    EXPECT_EQ(wkb.read<double>(ring0 + 254 * other + 4), 255);
    EXPECT_EQ(wkb.read<std::uint32_t>(ring256), 2u);
    EXPECT_EQ(wkb.read<double>(ring256 + 4), 0);
    EXPECT_EQ(wkb.read<double>(ring256 + 4 + 16), -1);
    EXPECT_EQ(wkb.read<double>(ring256 + ring0 + 42 * other + 4), 43);
}

TEST(WkbEncoder, RepeatsTheCountOfLine0AndCountsNoPairs) {
    Points first{{1, 2}, {3, 4}};
    Points second{{5, 6}, {7, 8}, {9, 10}};
    const std::array lines{recordOf<MzLineString>(first), recordOf<MzLineString>(second)};
    Encoding wkb;
    wkb.buffer = wkbLineStringToData(lines.data(), 2, nullptr, &wkb.length);
    EXPECT_EQ(wkb.length, 18u);
    EXPECT_EQ(Bytes(wkb.buffer, wkb.buffer + 9), bytesOf({1, 2, 0, 0, 0, 2, 0, 0, 0}));
    EXPECT_EQ(wkb.read<double>(9), 1.0);
    EXPECT_EQ(Bytes(wkb.buffer + 41, wkb.buffer + 50), bytesOf({1, 2, 0, 0, 0, 2, 0, 0, 0}));
    EXPECT_EQ(wkb.read<double>(50 + 40), 10.0);
}

TEST(WkbEncoder, WritesAMultiLineString) {
    Points points{{1, 2}, {3, 4}};
    std::array lines{recordOf<MzLineString>(points), recordOf<MzLineString>(points)};
    const MzMultiLineString multi{2, lines.data()};
    Encoding wkb;
    wkb.buffer = wkbMultiLineStringToData(&multi, &wkb.length);
    EXPECT_EQ(wkb.length, 27u);
    EXPECT_EQ(Bytes(wkb.buffer, wkb.buffer + 9), bytesOf({1, 5, 0, 0, 0, 2, 0, 0, 0}));
    EXPECT_EQ(Bytes(wkb.buffer + 9, wkb.buffer + 18), bytesOf({1, 2, 0, 0, 0, 2, 0, 0, 0}));
}

TEST(WkbEncoder, WritesPolygon0InEveryRound) {
    OwnedMultiPolygon polygons({{square(0, 0, 1)}, {square(5, 5, 1), square(6, 6, 1)}});
    Encoding wkb;
    wkb.buffer = wkbPolygonToData(polygons.polygons().data(), 2, nullptr, &wkb.length);
    EXPECT_EQ(wkb.length, 26u);
    const Bytes round = bytesOf({1, 3, 0, 0, 0, 1, 0, 0, 0, 5, 0, 0, 0});
    EXPECT_EQ(Bytes(wkb.buffer, wkb.buffer + 13), round);
    EXPECT_EQ(Bytes(wkb.buffer + 13, wkb.buffer + 26), round);
    EXPECT_EQ(wkb.read<double>(26 + 16), 1.0);
}

TEST(WkbEncoder, CountsFourBytesARingInMultiPolygons) {
    OwnedMultiPolygon polygons({{square(0, 0, 1), square(2, 2, 1)}, {square(5, 5, 1)}});
    const MzMultiPolygon multi = polygons.record();
    Encoding wkb;
    wkb.buffer = wkbMultiPolygonToData(&multi, &wkb.length);
    EXPECT_EQ(wkb.length, 9u + 2 * (9u + 8u));
    EXPECT_EQ(Bytes(wkb.buffer, wkb.buffer + 22),
              bytesOf({1, 6, 0, 0, 0, 2, 0, 0, 0, 1, 3, 0, 0, 0, 2, 0, 0, 0, 5, 0, 0, 0}));
}

TEST(WkbEncoder, TakesNullArraysAsEmpty) {
    const MzMultiPoint points{4000000000u, nullptr};
    const MzMultiPolygon polygons{4000000000u, nullptr};
    const MzMultiLineString lines{4000000000u, nullptr};
    Encoding wkb;
    wkb.buffer = wkbMultiPointToData(&points, &wkb.length);
    EXPECT_EQ(wkb.counted(), bytesOf({1, 4, 0, 0, 0, 0, 0, 0, 0}));
    Encoding other;
    other.buffer = wkbMultiPolygonToData(&polygons, &other.length);
    EXPECT_EQ(other.counted(), bytesOf({1, 6, 0, 0, 0, 0, 0, 0, 0}));
    Encoding third;
    third.buffer = wkbMultiLineStringToData(&lines, &third.length);
    EXPECT_EQ(third.counted(), bytesOf({1, 5, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(WkbEncoder, TakesRingsWithoutAnArrayAsEmpty) {
    Points points{{7, 8}};
    const std::array rings{MzLinearRing{4000000000u, nullptr}, recordOf<MzLinearRing>(points)};
    Encoding wkb;
    wkb.buffer = wkbLinearRingToData(rings.data(), 2, nullptr, &wkb.length);
    EXPECT_EQ(wkb.length, 8u);
    EXPECT_EQ(wkb.read<std::uint32_t>(0), 0u);
    EXPECT_EQ(wkb.read<std::uint32_t>(4), 0u);
    EXPECT_EQ(wkb.read<double>(8), 7);
}

// --- allocation failures

constexpr std::uint64_t kBeyondMemory = std::numeric_limits<std::uint64_t>::max();

TEST(WkbEncoderWithoutMemory, RefusesACounterThatCannotGrow) {
    Encoding wkb;
    wkb.buffer = wkbPointToData(kThreePoints.data(), 1, nullptr, &wkb.length);
    wkb.length = kBeyondMemory;
    testing::internal::CaptureStderr();
    wkb.buffer = wkbPointToData(kThreePoints.data(), 1, wkb.buffer, &wkb.length);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "ERROR: realloc failed in wkbPointToData");
    EXPECT_EQ(wkb.buffer, nullptr);
    EXPECT_EQ(wkb.length, kBeyondMemory);
}

#ifdef MEZALITH_TEST_REFUSES_MEMORY

/// What `encode` prints, and that it answers null, while allocations of `size` bytes fail.
template <typename Encode>
std::string printedWithout(std::size_t size, Encode encode) {
    testing::internal::CaptureStderr();
    refusedSize = size;
    std::byte* buffer = encode();
    refusedSize = kNothingRefused;
    EXPECT_EQ(buffer, nullptr);
    return testing::internal::GetCapturedStderr();
}

/// The same for an encoder that appends to one point, with room refused for `needed` bytes more.
template <typename Encode>
std::string printedAppendingWithout(std::size_t needed, Encode encode) {
    std::uint64_t length = 0;
    std::byte* buffer = wkbPointToData(kThreePoints.data(), 1, nullptr, &length);
    const std::string printed =
        printedWithout(21 + needed, [&] { return encode(buffer, &length); });
    EXPECT_EQ(length, 21u);
    return printed;
}

TEST(WkbEncoderWithoutMemory, SaysWhichFunctionFailed) {
    Points points = square(0, 0, 1);
    const auto ring = recordOf<MzLinearRing>(points);
    const auto line = recordOf<MzLineString>(points);
    const MzPolygon polygon{};
    const auto encodePoint = [&](std::byte* buffer, std::uint64_t* length) {
        return wkbPointToData(points.data(), 5, buffer, length);
    };
    const auto encodeRing = [&](std::byte* buffer, std::uint64_t* length) {
        return wkbLinearRingToData(&ring, 1, buffer, length);
    };
    const auto encodeLine = [&](std::byte* buffer, std::uint64_t* length) {
        return wkbLineStringToData(&line, 1, buffer, length);
    };
    const auto encodePolygon = [&](std::byte* buffer, std::uint64_t* length) {
        return wkbPolygonToData(&polygon, 1, buffer, length);
    };
    const auto expectTexts = [](std::size_t needed, const std::string& who, const auto& encode) {
        std::uint64_t length = 0;
        EXPECT_EQ(printedWithout(needed, [&] { return encode(nullptr, &length); }),
                  "ERROR: malloc failed in " + who);
        EXPECT_EQ(length, 0u);
        EXPECT_EQ(printedAppendingWithout(needed, encode), "ERROR: realloc failed in " + who);
    };
    expectTexts(105, "wkbPointToData", encodePoint);
    expectTexts(84, "wkbLinearRingToData", encodeRing);
    expectTexts(89, "wkbLineStringToData", encodeLine);
    expectTexts(9, "wkbPolygonToData", encodePolygon);
}

TEST(WkbEncoderWithoutMemory, NamesThePointEncoderForMultiPoints) {
    const MzMultiPoint points{};
    const MzMultiLineString lines{};
    const MzMultiPolygon polygons{};
    std::uint64_t length = 0;
    EXPECT_EQ(printedWithout(9, [&] { return wkbMultiPointToData(&points, &length); }),
              "ERROR: malloc failed in wkbPointToData");
    EXPECT_EQ(printedWithout(9, [&] { return wkbMultiLineStringToData(&lines, &length); }),
              "ERROR: malloc failed in wkbMultiLineStringToData");
    EXPECT_EQ(printedWithout(9, [&] { return wkbMultiPolygonToData(&polygons, &length); }),
              "ERROR: malloc failed in wkbMultiPolygonToData");
    EXPECT_EQ(length, 0u);
}

TEST(WkbEncoderWithoutMemory, WritesNothingMoreBehindAFailedRing) {
    OwnedMultiPolygon polygons({{square(0, 0, 1)}, {square(1, 1, 1)}});
    const MzMultiPolygon multi = polygons.record();
    std::uint64_t length = 0;
    EXPECT_EQ(printedWithout(18 + 84, [&] { return wkbMultiPolygonToData(&multi, &length); }),
              "ERROR: realloc failed in wkbLinearRingToData");
    EXPECT_EQ(length, 18u);
}

#endif

// --- laws

rc::Gen<double> anyBits() {
    return rc::gen::map(rc::gen::resize(1000, rc::gen::arbitrary<std::uint64_t>()),
                        [](std::uint64_t bits) { return std::bit_cast<double>(bits); });
}

Points anyPoints() {
    const auto ordinates = *rc::gen::container<std::vector<double>>(anyBits());
    Points points;
    for (std::size_t i = 0; i + 1 < ordinates.size(); i += 2) {
        points.push_back({ordinates[i], ordinates[i + 1]});
    }
    return points;
}

TEST(WkbLaws, MultiPointsComeBackFromTheirEncoding) {
    EXPECT_TRUE(rc::check([] {
        Points points = anyPoints();
        const auto multiPoint = recordOf<MzMultiPoint>(points);
        Encoding wkb;
        wkb.buffer = wkbMultiPointToData(&multiPoint, &wkb.length);
        RC_ASSERT(wkb.length == 9 + 21 * points.size());
        const std::byte* cursor = wkb.buffer;
        const std::size_t size = wkbMultiPointToMzMultiPoint(&cursor, nullptr);
        RC_ASSERT(size == sizeOfMzMultiPoint(&multiPoint));
        Room<MzMultiPoint> room(size);
        cursor = wkb.buffer;
        RC_ASSERT(wkbMultiPointToMzMultiPoint(&cursor, room.record()) == size);
        RC_ASSERT(cursor == wkb.buffer + wkb.length);
        RC_ASSERT(sameBits(pointsOf(room.record()), points));
    }));
}

TEST(WkbLaws, MixedByteOrdersDecodeAlike) {
    EXPECT_TRUE(rc::check([] {
        const Points points = anyPoints();
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
