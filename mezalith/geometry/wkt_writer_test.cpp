// SPDX-License-Identifier: MIT
#include <mezalith/geometry/geometry_model.hpp>
#include <mezalith/geometry/wkb_reader.hpp>
#include <mezalith/geometry/wkt_reader.hpp>
#include <mezalith/geometry/wkt_writer.hpp>

#include <bit>
#include <limits>
#include <string>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

std::string textOf(const Model& model) {
    const MzWKBReading reading = MzReadWKB(bytesOf(model));
    return MzWKTOfGeometry(*reading.geometry.record());
}

TEST(WriteWKT, WritesTheShortestNumbersThatReadBack) {
    EXPECT_EQ(textOf({1, {{{0.1, 1.0 / 3}}}, {}}), "POINT (0.1 0.3333333333333333)");
    EXPECT_EQ(textOf({1, {{{-0.0, 1e300}}}, {}}), "POINT (-0 1e+300)");
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(textOf({1, {{{kNaN, 5}}}, {}}), "POINT (nan 5)");
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(textOf({2, {{{kInfinity, -kInfinity}}}, {}}), "LINESTRING (inf -inf)");
}

TEST(WriteWKT, WritesNothingForWhatCannotBeWritten) {
    MzPoint point{1, 2};
    MzGeometryRecord member{.count = 1, .type = 8, .points = &point};
    EXPECT_EQ(MzWKTOfGeometry(member), "");
    EXPECT_EQ(MzWKTOfGeometry(geometryOf(std::span(&member, 1))), "");
    EXPECT_EQ(MzWKTOfGeometry({.count = 9, .type = 1, .points = nullptr}), "POINT EMPTY");
    EXPECT_EQ(MzWKTOfGeometry({.count = 9, .type = 6, .points = nullptr}), "MULTIPOLYGON EMPTY");
}

TEST(WriteWKTLaws, WhatIsReadBackIsTheSameToTheLastBit) {
    const Dice dice = diceOf(3);
    for (int i = 0; i < 3000; ++i) {
        Model model = ModelMaker{dice}.make();
        const MzWKBReading binary = MzReadWKB(bytesOf(model));
        bool hasNaN = false;
        MzVisitRuns(*binary.geometry.record(), [&](auto run) {
            for (const MzPoint p : run) hasNaN = hasNaN || p.x != p.x || p.y != p.y;
        });
        if (hasNaN) continue;
        const MzWKTReading reading = MzReadWKT(MzWKTOfGeometry(*binary.geometry.record()));
        ASSERT_TRUE(reading) << reading.error.text();
        ASSERT_TRUE(isSame(*reading.geometry.record(), model)) << i;
    }
}

}  // namespace
}  // namespace mezalith
