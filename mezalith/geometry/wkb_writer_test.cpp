// SPDX-License-Identifier: MIT
#include <mezalith/geometry/geometry_model.hpp>
#include <mezalith/geometry/wkb_writer.hpp>

#include <limits>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith {
namespace {

using namespace test;

const Points kLine{{0, 0}, {1, 2}};

// --- forms

TEST(WriteWKB, WritesAPointInEitherOrder) {
    MzPoint point{3, 4};
    EXPECT_EQ(MzWKBOfGeometry(geometryOf(&point)), WkbWriter().point(kLittle, point).bytes());
    EXPECT_EQ(MzWKBOfGeometry(geometryOf(&point), {.isLittleEndian = false}),
              WkbWriter().point(kBig, point).bytes());
    EXPECT_EQ(MzWKBOfGeometry(geometryOf(&point), {.form = MzWKBForm::ISO, .srid = 4326}),
              WkbWriter().point(kLittle, point).bytes());
}

TEST(WriteWKB, WritesTheSRIDOfTheOutermostElementOnly) {
    Points points = kLine;
    const auto geometry = geometryOf(recordOf<MzMultiPoint>(points));
    WkbWriter expected;
    expected.element(kBig, 0x20000004).integer(4326).integer(2);
    expected.point(kBig, kLine[0]).point(kBig, kLine[1]);
    const MzWKBOptions options{.form = MzWKBForm::EWKB, .isLittleEndian = false, .srid = 4326};
    EXPECT_EQ(MzWKBOfGeometry(geometry, options), expected.bytes());
    EXPECT_EQ(MzWKBOfGeometry(geometry, {.form = MzWKBForm::EWKB}), MzWKBOfGeometry(geometry));
}

TEST(WriteWKB, WritesGeoPackageHeaders) {
    Points points{{5, -2}, {1, 7}};
    const auto line = geometryOf(recordOf<MzLineString>(points));
    const Bytes bytes = MzWKBOfGeometry(line, {.form = MzWKBForm::GeoPackage, .srid = 4326});
    const Bytes header = bytesOf({'G', 'P', 0, 3, 0xE6, 0x10, 0, 0});
    ASSERT_EQ(bytes.size(), 8u + 32 + 41);
    EXPECT_TRUE(std::equal(header.begin(), header.end(), bytes.begin()));
    const Points envelope{{1, 5}, {-2, 7}};
    EXPECT_TRUE(
        std::ranges::equal(std::span(bytes).subspan(8, 32), std::as_bytes(std::span(envelope))));
    const MzWKBReading reading = MzReadWKB(bytes);
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading.srid, 4326);
}

TEST(WriteWKB, WritesNoEnvelopeAroundPointsAndNothing) {
    const MzWKBOptions options{
        .form = MzWKBForm::GeoPackage, .isLittleEndian = false, .srid = 4326};
    MzPoint point{3, 4};
    const Bytes full = MzWKBOfGeometry(geometryOf(&point), options);
    const Bytes header = bytesOf({'G', 'P', 0, 0, 0, 0, 0x10, 0xE6});
    EXPECT_EQ(full.size(), 8u + 21);
    EXPECT_TRUE(std::equal(header.begin(), header.end(), full.begin()));
    const Bytes empty = MzWKBOfGeometry(geometryOf(MzPolygon{0, nullptr}), options);
    EXPECT_EQ(empty.size(), 8u + 9);
    EXPECT_EQ(empty[3], std::byte{0x10});
    Points infinite{{1, 2}, {std::numeric_limits<double>::infinity(), 3}};
    EXPECT_EQ(MzWKBOfGeometry(geometryOf(recordOf<MzLineString>(infinite)), options).size(),
              8u + 41);
}

TEST(WriteWKB, KeepsThePayloadsOfNaNs) {
    const PointBits bits{{0x7FF0000000000001, 0xFFF8DEADBEEF0123}, {0x8000000000000000, 1}};
    const Points points = pointsOfBits(bits);
    for (const bool isLittle : {false, true}) {
        for (const std::uint32_t type : {2u, 4u}) {
            const MzWKBReading first = MzReadWKB(bytesOf({type, {points}, {}}));
            ASSERT_TRUE(first);
            const MzWKBReading again =
                MzReadWKB(MzWKBOfGeometry(*first.geometry.record(), {.isLittleEndian = isLittle}));
            ASSERT_TRUE(again);
            EXPECT_TRUE(sameBits(pointsOf(again.geometry.record()), points)) << type;
        }
    }
}

// --- what is not there

TEST(WriteWKB, TakesNullArraysForEmpty) {
    for (std::uint32_t type = 2; type <= 7; ++type) {
        const MzGeometryRecord geometry{.count = 9, .type = type, .points = nullptr};
        EXPECT_EQ(MzWKBOfGeometry(geometry), WkbWriter().multi(kLittle, type, 0).bytes()) << type;
    }
    const MzWKBReading point =
        MzReadWKB(MzWKBOfGeometry({.count = 0, .type = 1, .points = nullptr}));
    ASSERT_TRUE(point);
    EXPECT_TRUE(std::isnan(point.geometry.record()->points[0].x));
    EXPECT_TRUE(std::isnan(point.geometry.record()->points[0].y));
}

TEST(WriteWKB, WritesNothingForWhatHasNoType) {
    MzPoint point{3, 4};
    MzGeometryRecord members[] = {geometryOf(&point), geometryOf(&point)};
    members[1].type = 8;
    const MzGeometryRecord collection = geometryOf(std::span(members));
    EXPECT_EQ(MzWKBSize(collection), 0u);
    EXPECT_TRUE(MzWKBOfGeometry(collection).empty());
    EXPECT_EQ(MzWKBSize(members[1], {.form = MzWKBForm::GeoPackage}), 0u);
    EXPECT_FALSE(MzWriteWKB(collection, {}, {}));
}

TEST(WriteWKB, NestsAsDeepAsIsRead) {
    MzPoint point{3, 4};
    std::vector<MzGeometryRecord> levels{geometryOf(&point)};
    levels.reserve(102);
    for (int i = 0; i < 101; ++i) levels.push_back(geometryOf(std::span(&levels.back(), 1)));
    EXPECT_TRUE(MzReadWKB(MzWKBOfGeometry(levels[100])));
    EXPECT_TRUE(MzWKBOfGeometry(levels[101]).empty());
}

TEST(WriteWKB, WantsJustTheBytesItNeeds) {
    MzPoint point{3, 4};
    Bytes bytes(22, std::byte{0xEE});
    EXPECT_FALSE(MzWriteWKB(geometryOf(&point), {}, bytes));
    EXPECT_FALSE(MzWriteWKB(geometryOf(&point), {}, std::span(bytes).first(20)));
    EXPECT_EQ(bytes, Bytes(22, std::byte{0xEE}));
    EXPECT_TRUE(MzWriteWKB(geometryOf(&point), {}, std::span(bytes).first(21)));
    EXPECT_EQ(bytes.back(), std::byte{0xEE});
    EXPECT_TRUE(MzReadWKB(std::span(bytes).first(21)));
}

// --- laws

TEST(WriteWKBLaws, RoundTripsAreTheIdentity) {
    EXPECT_TRUE(rc::check([] {
        const Dice dice = diceOf(*rc::gen::arbitrary<std::uint64_t>());
        const Model model = ModelMaker{dice}.make();
        const Dialect mixed{.order = [dice] { return static_cast<std::uint8_t>(dice(2)); }};
        const MzWKBReading first = MzReadWKB(bytesOf(model, mixed));
        RC_ASSERT(static_cast<bool>(first));
        const MzWKBOptions options{.form = static_cast<MzWKBForm>(dice(4)),
                                   .isLittleEndian = dice(2) == 0,
                                   .srid = static_cast<std::int32_t>(dice(0))};
        const Bytes bytes = MzWKBOfGeometry(*first.geometry.record(), options);
        RC_ASSERT(bytes.size() == MzWKBSize(*first.geometry.record(), options));
        const MzWKBReading again = MzReadWKB(bytes);
        RC_ASSERT(static_cast<bool>(again));
        RC_ASSERT(isSame(*again.geometry.record(), model));
        RC_ASSERT(again.isLittleEndian == options.isLittleEndian);
        RC_ASSERT(again.srid.has_value() == (options.form >= MzWKBForm::EWKB));
        RC_ASSERT(again.srid.value_or(*options.srid) == options.srid);
    }));
}

TEST(WriteWKBLaws, WritesTheBytesOfItsOwnDialect) {
    EXPECT_TRUE(rc::check([] {
        const Dice dice = diceOf(*rc::gen::arbitrary<std::uint64_t>());
        const std::uint8_t order = dice(2) == 0 ? kBig : kLittle;
        const Bytes bytes = bytesOf(ModelMaker{dice}.make(), {.order = [=] { return order; }});
        const MzWKBReading reading = MzReadWKB(bytes);
        RC_ASSERT(static_cast<bool>(reading));
        RC_ASSERT(MzWKBOfGeometry(*reading.geometry.record(),
                                  {.isLittleEndian = order == kLittle}) == bytes);
    }));
}

}  // namespace
}  // namespace mezalith
