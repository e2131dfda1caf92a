// SPDX-License-Identifier: MIT
#include <mezalith/geometry/geometry.hpp>
#include <mezalith/geometry/geometry_model.hpp>
#include <mezalith/geometry/wkb_encoder.hpp>
#include <mezalith/geometry/wkb_reader.hpp>
#include <mezalith/geometry/wkb_writer.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <span>
#include <utility>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

const Points kLine{{0, 0}, {1, 2}};

bool settledReads(const Bytes& bytes) {
    return MzGeometry::geometryWithWKBData(std::span(bytes)) != nullptr;
}

// --- Well-Known Binary in

TEST(ChoosingWellKnownBinaryIn, SettledDecodersTrustTheCountThatTheBytesSay) {
    Bytes bytes = WkbWriter().element(kLittle, 2).integer(1000).pairs(kLine).bytes();
    ASSERT_EQ(bytes.size(), 41u);
    const MzReadError error = MzReadWKB(bytes).error;
    EXPECT_EQ(error.text(),
              "byte 5: expected at most 2 points in the 32 bytes that follow, found 1000");
    EXPECT_FALSE(settledReads(bytes)) << "which checks that they are there";
    bytes.resize(9 + 1000 * 16);  // so that its cursor stays within them
    const std::byte* cursor = bytes.data();
    EXPECT_EQ(wkbLineStringToMzLineString(&cursor, 1, nullptr), 16'016u);
}

TEST(ChoosingWellKnownBinaryIn, SettledDecodersLookAtNoMembersType) {
    const Bytes wrong = WkbWriter().multi(kLittle, 4, 1).lineString(kLittle, kLine).bytes();
    const std::byte* cursor = wrong.data();
    EXPECT_EQ(wkbMultiPointToMzMultiPoint(&cursor, nullptr), 32u);
    EXPECT_TRUE(settledReads(wrong));
    EXPECT_EQ(MzReadWKB(wrong).error.text(), "byte 10: expected a Point, found a LineString");
}

TEST(ChoosingWellKnownBinaryIn, SettledDecodersLeaveLinesAndRingsWithoutTheirPoints) {
    const Bytes bytes = WkbWriter().lineString(kBig, kLine).bytes();
    MzLineString line{};
    const std::byte* cursor = bytes.data();
    wkbLineStringToMzLineString(&cursor, 1, &line);
    EXPECT_EQ(line.count, 2u);
    EXPECT_EQ(line.points, nullptr);
    const Bytes ringBytes = WkbWriter().countedPairs(square(0, 0, 1)).bytes();
    MzLinearRing ring{};
    cursor = ringBytes.data();
    linearRingToMzLinearRing(&cursor, 1, &ring, wkbLittleEndian);
    EXPECT_EQ(ring.count, 5u);
    EXPECT_EQ(ring.points, nullptr);
    const MzWKBReading reading = MzReadWKB(bytes);
    ASSERT_TRUE(reading);
    EXPECT_TRUE(isSame(*reading.geometry.record(), {2, {kLine}, {}}));
}

TEST(ChoosingWellKnownBinaryIn, SettledDecodersKnowNeitherZNorMNorSRIDNorCollections) {
    const Model line{2, {kLine}, {}};
    for (const bool hasFlags : {false, true}) {
        for (const Dialect& dialect : {Dialect{.hasZ = true, .hasFlags = hasFlags},
                                       {.hasM = true, .hasFlags = hasFlags},
                                       {.hasZ = true, .hasM = true, .hasFlags = hasFlags}}) {
            const Bytes bytes = bytesOf(line, dialect);
            EXPECT_FALSE(settledReads(bytes)) << dialect.code(2);
            const MzWKBReading reading = MzReadWKB(bytes);
            ASSERT_TRUE(reading) << dialect.code(2);
            EXPECT_TRUE(isSame(*reading.geometry.record(), line)) << dialect.code(2);
            EXPECT_EQ(reading.hasZ, dialect.hasZ);
            EXPECT_EQ(reading.hasM, dialect.hasM);
        }
    }
    const Model collection{7, {}, {line, {1, {{{3, 4}}}, {}}}};
    for (const auto& [model, form] : {std::pair(line, MzWKBForm::EWKB),
                                      {line, MzWKBForm::GeoPackage},
                                      {collection, MzWKBForm::WKB},
                                      {Model{5, {kLine, kLine}, {}}, MzWKBForm::WKB}}) {
        const MzWKBReading plain = MzReadWKB(bytesOf(model));
        const Bytes bytes = MzWKBOfGeometry(*plain.geometry.record(), {.form = form, .srid = 4326});
        EXPECT_FALSE(settledReads(bytes)) << model.type;
        const MzWKBReading reading = MzReadWKB(bytes);
        ASSERT_TRUE(reading) << model.type;
        EXPECT_TRUE(isSame(*reading.geometry.record(), model)) << model.type;
        EXPECT_EQ(reading.srid.value_or(0), form == MzWKBForm::WKB ? 0 : 4326);
    }
}

TEST(ChoosingWellKnownBinaryIn, TheCounterpartReadsCollections100Deep) {
    Model model{1, {{{3, 4}}}, {}};
    for (int i = 0; i < 100; ++i) model = {7, {}, {model}};
    EXPECT_TRUE(MzReadWKB(bytesOf(model)));
    EXPECT_FALSE(settledReads(bytesOf(model)));
    EXPECT_EQ(MzReadWKB(bytesOf(Model{7, {}, {model}})).error.text(),
              "byte 900: expected at most 100 collections in each other, found one more");
}

// --- Well-Known Binary out

struct Free {
    void operator()(std::byte* buffer) const { std::free(buffer); }
};
using Buffer = std::unique_ptr<std::byte, Free>;

template <typename Value>
Value valueAt(const Buffer& buffer, std::size_t offset) {
    Value value;
    std::memcpy(&value, buffer.get() + offset, sizeof value);
    return value;
}

TEST(ChoosingWellKnownBinaryOut, SettledEncodersKeep35BytesOfTwoSquaresWhichNothingReads) {
    OwnedMultiPolygon polygons({{square(0, 0, 4)}, {square(9, 9, 1)}});
    const MzMultiPolygon record = polygons.record();
    std::uint64_t length = 0;
    const Buffer settled(wkbMultiPolygonToData(&record, &length));
    EXPECT_EQ(length, 35u);
    EXPECT_FALSE(MzReadWKB({settled.get(), length}));
    EXPECT_EQ(valueAt<double>(settled, 35 + 16), 4) << "of the first square, not 10";
    const Bytes bytes = MzWKBOfGeometry(geometryOf(record));
    EXPECT_EQ(bytes.size(), 195u);
    const MzWKBReading reading = MzReadWKB(bytes);
    ASSERT_TRUE(reading);
    const Model both{6, {}, {{3, {square(0, 0, 4)}, {}}, {3, {square(9, 9, 1)}, {}}}};
    EXPECT_TRUE(isSame(*reading.geometry.record(), both));
}

TEST(ChoosingWellKnownBinaryOut, SettledEncodersWriteTheFirstRingsCountBeforeEachRing) {
    const Rings rings{square(0, 0, 9), {{2, 2}, {3, 2}, {3, 3}, {2, 2}}};
    OwnedPolygon owned(rings);
    std::uint64_t length = 0;
    const Buffer settled(wkbLinearRingToData(owned.rings().data(), 2, nullptr, &length));
    EXPECT_EQ(valueAt<std::uint32_t>(settled, 0), 5u);
    EXPECT_EQ(valueAt<std::uint32_t>(settled, 4 + 5 * 16), 5u);
    const Bytes bytes = MzWKBOfGeometry(geometryOf(owned.record()));
    const MzWKBReading reading = MzReadWKB(bytes);
    ASSERT_TRUE(reading);
    EXPECT_TRUE(isSame(*reading.geometry.record(), {3, rings, {}}));
}

TEST(ChoosingWellKnownBinaryOut, TheCounterpartKeepsEveryBit) {
    const PointBits bits{{0x7FF0000000000001, 0xFFF8DEADBEEF0123}, {0x8000000000000000, 1}};
    Points points = pointsOfBits(bits);
    const Bytes bytes = MzWKBOfGeometry(geometryOf(recordOf<MzLineString>(points)));
    const MzWKBReading reading = MzReadWKB(bytes);
    ASSERT_TRUE(reading);
    EXPECT_TRUE(sameBits(pointsOf(reading.geometry.record()), points));
}

}  // namespace
}  // namespace mezalith
