// SPDX-License-Identifier: MIT
#include <mezalith/geometry/geometry_model.hpp>
#include <mezalith/geometry/wkb_reader.hpp>

#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith {
namespace {

using namespace test;

const Points kLine{{0, 0}, {1, 2}};
const Rings kTwoRings{square(0, 0, 4), {{1, 1}, {2, 1}, {1, 2}, {1, 1}}};

std::string errorOf(std::span<const std::byte> bytes) {
    const MzWKBReading reading = MzReadWKB(bytes);
    return reading ? "none" : reading.error.text();
}

Bytes nested(int levels) {
    WkbWriter wkb;
    for (int i = 0; i < levels; ++i) wkb.multi(kLittle, 7, 1);
    return wkb.point(kLittle, {1, 2}).bytes();
}

std::size_t offsetIn(const MzGeometryRecord* record, const void* place) {
    return static_cast<std::size_t>(static_cast<const std::byte*>(place) -
                                    reinterpret_cast<const std::byte*>(record));
}

// --- what it reads

TEST(ReadWKB, ReadsAPointInEitherOrder) {
    for (const std::uint8_t order : {kBig, kLittle, kOdd}) {
        const MzWKBReading reading = MzReadWKB(WkbWriter().point(order, {3, 4}).bytes());
        ASSERT_TRUE(reading);
        EXPECT_EQ(reading.geometry.size(), 32u);
        EXPECT_EQ(reading.geometry.record()->type, 1u);
        EXPECT_EQ(reading.geometry.record()->count, 1u);
        EXPECT_EQ(reading.geometry.record()->points[0].x, 3);
        EXPECT_EQ(reading.geometry.record()->points[0].y, 4);
        EXPECT_EQ(reading.isLittleEndian, order != kBig);
        EXPECT_EQ(reading.length, 21u);
        EXPECT_EQ(reading.form, MzWKBForm::WKB);
        EXPECT_FALSE(reading.srid || reading.hasZ || reading.hasM);
    }
}

TEST(ReadWKB, ReadsMultiLineStrings) {
    const auto wkb =
        WkbWriter().multi(kBig, 5, 2).lineString(kLittle, kLine).lineString(kBig, {{5, 6}});
    const MzWKBReading reading = MzReadWKB(wkb.bytes());
    ASSERT_TRUE(reading);
    EXPECT_TRUE(isSame(*reading.geometry.record(), {5, {kLine, {{5, 6}}}, {}}));
}

TEST(ReadWKB, PacksTheBlockDepthFirst) {
    const auto wkb = WkbWriter().multi(kLittle, 7, 2).polygon(kLittle, kTwoRings).point(kBig, {});
    const MzWKBReading reading = MzReadWKB(wkb.bytes());
    ASSERT_TRUE(reading);
    const MzGeometryRecord* record = reading.geometry.record();
    EXPECT_EQ(offsetIn(record, record->members), 16u);
    EXPECT_EQ(offsetIn(record, record->members[0].rings), 48u);
    EXPECT_EQ(offsetIn(record, record->members[0].rings[0].points), 80u);
    EXPECT_EQ(offsetIn(record, record->members[0].rings[1].points), 160u);
    EXPECT_EQ(offsetIn(record, record->members[1].points), 224u);
    EXPECT_EQ(reading.geometry.size(), 240u);
}

TEST(ReadWKB, LeavesOutZAndM) {
    const ModelMaker maker{diceOf(7), false, true};
    for (std::uint32_t type = 1; type <= 7; ++type) {
        const Model model = ModelMaker(maker).make(type);
        for (const int kind : {0, 1, 2, 3}) {
            for (const bool hasFlags : {false, true}) {
                const Dialect dialect{(kind & 1) != 0, (kind & 2) != 0, hasFlags};
                const MzWKBReading reading = MzReadWKB(bytesOf(model, dialect));
                ASSERT_TRUE(reading) << type << " " << kind << ": " << reading.error.text();
                EXPECT_TRUE(isSame(*reading.geometry.record(), model)) << type << " " << kind;
                EXPECT_EQ(reading.hasZ, dialect.hasZ);
                EXPECT_EQ(reading.hasM, dialect.hasM);
                const auto form = hasFlags ? MzWKBForm::EWKB : MzWKBForm::ISO;
                EXPECT_EQ(reading.form, kind == 0 ? MzWKBForm::WKB : form);
            }
        }
    }
}

TEST(ReadWKB, KeepsTheSRIDOfEWKB) {
    for (const std::uint8_t order : {kBig, kLittle}) {
        WkbWriter wkb;
        wkb.element(order, 0x20000002).integer(4326).countedPairs(kLine);
        const MzWKBReading reading = MzReadWKB(wkb.bytes());
        ASSERT_TRUE(reading);
        EXPECT_EQ(reading.form, MzWKBForm::EWKB);
        EXPECT_EQ(reading.srid, 4326);
        EXPECT_EQ(reading.length, 45u);
        EXPECT_TRUE(isSame(*reading.geometry.record(), {2, {kLine}, {}}));
    }
    WkbWriter members;
    members.element(kLittle, 0x20000004).integer(25833).integer(1);
    members.element(kBig, 0x20000001).integer(25833).number(1).number(2);
    EXPECT_EQ(MzReadWKB(members.bytes()).srid, 25833);
}

TEST(ReadWKB, ReadsWhatGeoPackagesHold) {
    const std::vector<std::size_t> envelopes{0, 4, 6, 6, 8};
    for (const bool isLittle : {false, true}) {
        for (std::size_t kind = 0; kind < envelopes.size(); ++kind) {
            const auto flags = static_cast<std::uint8_t>(kind << 1 | (isLittle ? 1U : 0U));
            Bytes bytes = bytesOf(std::initializer_list<int>{'G', 'P', 0, flags});
            const int srid = isLittle ? -1 : 3857;
            for (int i = 0; i < 4; ++i) {
                const int shift = isLittle ? 8 * i : 24 - 8 * i;
                bytes.push_back(static_cast<std::byte>(static_cast<unsigned>(srid) >> shift));
            }
            bytes.resize(bytes.size() + 8 * envelopes[kind], std::byte{0xEE});
            const Bytes line = WkbWriter().lineString(kBig, kLine).bytes();
            bytes.insert(bytes.end(), line.begin(), line.end());
            const MzWKBReading reading = MzReadWKB(bytes);
            ASSERT_TRUE(reading) << kind << ": " << reading.error.text();
            EXPECT_EQ(reading.form, MzWKBForm::GeoPackage);
            EXPECT_EQ(reading.srid, srid);
            EXPECT_EQ(reading.length, bytes.size());
            EXPECT_FALSE(reading.isLittleEndian);
            EXPECT_TRUE(isSame(*reading.geometry.record(), {2, {kLine}, {}}));
        }
    }
}

TEST(ReadWKB, FindsABlockAtFirstSightThatIsHardlyLarger) {
    const Dice dice = diceOf(13);
    for (int i = 0; i < 2000; ++i) {
        const Model model = ModelMaker{dice}.make();
        const Bytes bytes = bytesOf(model);
        const MzWKBReading strict = MzReadWKB(bytes);
        const MzWKBReading measured = MzReadWKB(bytes, MzTrailingBytes::Allowed);
        ASSERT_TRUE(strict && measured && isSame(*strict.geometry.record(), model)) << i;
        const std::size_t head = model.type == 3 ? 4 : model.type == 5 ? 9 : 0;
        ASSERT_EQ(strict.geometry.size(),
                  measured.geometry.size() + head * strict.geometry.record()->count)
            << i << ", type " << model.type;
    }
}

TEST(ReadWKB, StaysInItsBlockWhenPointsTakeThePlaceOfRings) {
    for (const std::uint32_t type : {3u, 5u}) {
        WkbWriter wkb;
        wkb.multi(kLittle, type, 2);
        if (type == 5) wkb.element(kLittle, 2);
        wkb.countedPairs(square(0, 0, 4));
        EXPECT_EQ(MzReadWKB(wkb.bytes()).error.offset, wkb.bytes().size()) << type;
    }
}

TEST(ReadWKB, ReadsMembersWithDimensionsOfTheirOwn) {
    WkbWriter wkb;
    wkb.multi(kLittle, 5, 2).element(kBig, 3002).integer(1);
    wkb.number(1).number(2).number(3).number(4);
    wkb.element(kLittle, 0xA0000002).integer(4326).integer(1).number(5).number(6).number(7);
    const MzWKBReading reading = MzReadWKB(wkb.bytes());
    ASSERT_TRUE(reading) << reading.error.text();
    EXPECT_TRUE(isSame(*reading.geometry.record(), {5, {{{1, 2}}, {{5, 6}}}, {}}));
}

TEST(ReadWKB, ReadsGeometriesWithoutPoints) {
    for (const std::uint32_t type : {2u, 3u, 4u, 5u, 6u, 7u}) {
        const MzWKBReading reading = MzReadWKB(WkbWriter().multi(kBig, type, 0).bytes());
        ASSERT_TRUE(reading) << type;
        EXPECT_EQ(reading.geometry.record()->type, type);
        EXPECT_EQ(reading.geometry.record()->count, 0u);
        EXPECT_EQ(reading.geometry.size(), 16u);
    }
}

TEST(ReadWKB, ReadsCollectionsNestedAHundredDeep) {
    const MzWKBReading reading = MzReadWKB(nested(100));
    ASSERT_TRUE(reading) << reading.error.text();
    std::size_t points = 0;
    MzVisitRuns(*reading.geometry.record(), [&](auto run) { points += run.size(); });
    EXPECT_EQ(points, 1u);
    EXPECT_EQ(errorOf(nested(101)),
              "byte 900: expected at most 100 collections in each other, found one more");
}

TEST(ReadWKB, RefusesWhatFollowsUnlessToldNotTo) {
    Bytes bytes = WkbWriter().point(kLittle, {3, 4}).bytes();
    bytes.resize(24);
    EXPECT_EQ(errorOf(bytes), "byte 21: expected the end of the bytes, found 3 more");
    const MzWKBReading reading = MzReadWKB(bytes, MzTrailingBytes::Allowed);
    ASSERT_TRUE(reading);
    EXPECT_EQ(reading.length, 21u);
}

// --- what it refuses

TEST(ReadWKB, NamesTheByteThatIsWrong) {
    const std::string end = ", found the end of the bytes";
    EXPECT_EQ(errorOf({}), "byte 0: expected the byte order and type of a geometry" + end);
    const Bytes point = WkbWriter().point(kLittle, {3, 4}).bytes();
    EXPECT_EQ(errorOf(std::span(point).first(20)),
              "byte 20: expected the coordinates of a point" + end);
    EXPECT_EQ(errorOf(WkbWriter().element(kLittle, 3).bytes()), "byte 5: expected a count" + end);
    EXPECT_EQ(errorOf(WkbWriter().element(kLittle, 0x20000003).bytes()),
              "byte 5: expected an SRID" + end);
    EXPECT_EQ(errorOf(WkbWriter().multi(kLittle, 2, 0xffffffff).number(0).number(0).bytes()),
              "byte 5: expected at most 1 points in the 16 bytes that follow, found 4294967295");
    EXPECT_EQ(errorOf(WkbWriter().multi(kLittle, 4, 1).lineString(kLittle, kLine).bytes()),
              "byte 10: expected a Point, found a LineString");
    EXPECT_EQ(errorOf(WkbWriter().multi(kLittle, 5, 1).point(kLittle, {}).bytes()),
              "byte 10: expected a LineString, found a Point");
    EXPECT_EQ(errorOf(WkbWriter().multi(kBig, 6, 1).multi(kBig, 6, 0).bytes()),
              "byte 10: expected a Polygon, found a MultiPolygon");
}

TEST(ReadWKB, NamesCodesThatAreNoType) {
    for (const std::uint32_t code :
         {0u, 8u, 17u, 1000u, 1008u, 3008u, 4001u, 0x10000001u, 0x1f000001u, 0xffffffffu}) {
        EXPECT_EQ(errorOf(WkbWriter().element(kBig, code).number(0).number(0).bytes()),
                  "byte 1: expected a geometry, found type code " + std::to_string(code));
    }
}

TEST(ReadWKB, NamesWhatIsWrongWithAGeoPackagesHeader) {
    const auto error = [](int version, int flags) {
        Bytes bytes = bytesOf({'G', 'P', version, flags, 0, 0, 0, 0});
        const Bytes point = WkbWriter().point(kLittle, {3, 4}).bytes();
        bytes.insert(bytes.end(), point.begin(), point.end());
        return errorOf(bytes);
    };
    EXPECT_EQ(error(0, 0), "none");
    EXPECT_EQ(error(0, 0x11), "none");
    EXPECT_EQ(error(1, 0), "byte 2: expected version 0, found 1");
    EXPECT_EQ(error(0, 0x0a), "byte 3: expected an envelope of kind 0 to 4, found 5");
    EXPECT_EQ(error(0, 0x20), "byte 3: expected a standard geometry, found an extended one");
    EXPECT_EQ(error(0, 2), "byte 29: expected an envelope, found the end of the bytes");
    EXPECT_EQ(errorOf(bytesOf({'G', 'P', 0})),
              "byte 3: expected the header of a GeoPackage's geometry, found the end of the bytes");
}

TEST(ReadWKB, BelievesNoCountBeyondTheBytes) {
    for (const std::uint32_t n :
         {0x10000000u, 0x10000001u, 0x0C30C30Du, 0x80000000u, 0xFFFFFFFFu}) {
        for (const std::uint32_t type : {2u, 3u, 4u, 5u, 6u, 7u}) {
            Bytes bytes = WkbWriter().multi(kLittle, type, n).bytes();
            bytes.resize(bytes.size() + 64);
            EXPECT_EQ(MzReadWKB(bytes).error.offset, 5u) << type;
            EXPECT_EQ(MzReadWKB(bytes).error.found, std::to_string(n)) << type;
        }
    }
}

TEST(ReadWKB, RefusesEveryPrefix) {
    const Dice dice = diceOf(11);
    for (std::uint32_t type = 1; type <= 7; ++type) {
        const Dialect dialect{type % 2 == 0, type % 3 == 0, type % 2 == 0};
        const Bytes wkb = bytesOf(ModelMaker{dice, false, true}.make(type), dialect);
        for (std::size_t length = 0; length < wkb.size(); ++length) {
            const Bytes prefix(wkb.begin(), wkb.begin() + static_cast<std::ptrdiff_t>(length));
            ASSERT_FALSE(MzReadWKB(prefix)) << type << " at " << length;
            ASSERT_FALSE(MzReadWKB(prefix, MzTrailingBytes::Allowed)) << type << " at " << length;
        }
        EXPECT_TRUE(MzReadWKB(wkb)) << type;
    }
}

/// Files that are well-formed whatever their coordinates, rings and dimensions are.
bool isReadable(std::string_view name) {
    for (const char* prefix : {"ok-", "empty-", "coord-", "ring-", "hole-", "order-", "ewkb-",
                               "iso-", "many-", "multipolygon-overlap", "one-point", "type-5",
                               "type-7-collection", "trailing", "count-too-small"}) {
        if (name.starts_with(prefix)) return true;
    }
    return false;
}

TEST(ReadWKB, RefusesWhatIsBadAndTakesWhatIsOnlyOdd) {
    const auto files = wkbFiles(MEZALITH_SOURCE_DIR "/tests/data/bad/wkb");
    ASSERT_EQ(files.size(), 91u);
    for (const auto& file : files) {
        const std::string name = file.filename().string();
        const MzWKBReading reading = MzReadWKB(readFile(file), MzTrailingBytes::Allowed);
        EXPECT_EQ(static_cast<bool>(reading), isReadable(name)) << name << reading.error.text();
        if (name.starts_with("ewkb-") && name.find("srid") != std::string::npos) {
            EXPECT_EQ(reading.srid, 4326) << name;
        }
    }
}

TEST(ReadWKB, ReadsEveryGoodFile) {
    const auto files = wkbFiles(MEZALITH_SOURCE_DIR "/data/map/wkb");
    ASSERT_GE(files.size(), 28u);
    for (const auto& file : files) EXPECT_EQ(errorOf(readFile(file)), "none") << file;
}

// --- laws

TEST(ReadWKBLaws, KeepsEveryBitInEveryDialectAndOrder) {
    EXPECT_TRUE(rc::check([] {
        const Dice dice = diceOf(*rc::gen::arbitrary<std::uint64_t>());
        const Model model = ModelMaker{dice}.make();
        const Dialect dialect{dice(2) == 0, dice(2) == 0, dice(2) == 0,
                              [dice] { return static_cast<std::uint8_t>(dice(3)); }};
        const Bytes bytes = bytesOf(model, dialect);
        const MzWKBReading reading = MzReadWKB(bytes);
        RC_ASSERT(static_cast<bool>(reading));
        RC_ASSERT(isSame(*reading.geometry.record(), model));
        RC_ASSERT(reading.length == bytes.size());
    }));
}

TEST(ReadWKBLaws, NeverReadsPastBrokenBytes) {
    EXPECT_TRUE(rc::check([] {
        const Dice dice = diceOf(*rc::gen::arbitrary<std::uint64_t>());
        Bytes bytes = bytesOf(ModelMaker{dice}.make());
        for (int i = 0; i < 3; ++i) bytes[dice(bytes.size())] = static_cast<std::byte>(dice(256));
        const MzWKBReading reading = MzReadWKB(bytes, MzTrailingBytes::Allowed);
        RC_ASSERT((reading ? reading.length : reading.error.offset) <= bytes.size());
    }));
}

}  // namespace
}  // namespace mezalith
