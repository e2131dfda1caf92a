// SPDX-License-Identifier: MIT
#include <mezalith/export.hpp>
#include <mezalith/geometry/test_support.hpp>
#include <mezalith/geometry/wkb.hpp>
#include <mezalith/geometry/wkb_encoder.hpp>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
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

TEST(WkbEncoder, TakesPointsWithoutAnArrayAsEmpty) {
    Encoding wkb;
    wkb.buffer = wkbPointToData(nullptr, 4000000000u, nullptr, &wkb.length);
    EXPECT_NE(wkb.buffer, nullptr);
    EXPECT_EQ(wkb.length, 0u);
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

TEST(WkbEncoderLaws, MultiPointsComeBackFromTheirEncoding) {
    EXPECT_TRUE(rc::check([](const PointBits& bits) {
        Points points = pointsOfBits(bits);
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

}  // namespace
}  // namespace mezalith
