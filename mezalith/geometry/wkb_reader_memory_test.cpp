// SPDX-License-Identifier: MIT
#include "tests/support/counted_blocks.hpp"
#include <mezalith/geometry/geometry_model.hpp>
#include <mezalith/geometry/wkb_reader.hpp>
#include <mezalith/geometry/wkb_writer.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using namespace test;

/// A geometry of `count` points, rings, lines or members.
Model modelOf(std::uint32_t type, std::size_t count) {
    const Points points(count, {3, 4});
    switch (type) {
        case MzGeometryTypePoint:
            return {type, {{{3, 4}}}, {}};
        case MzGeometryTypeLineString:
        case MzGeometryTypeMultiPoint:
            return {type, {points}, {}};
        case MzGeometryTypePolygon:
        case MzGeometryTypeMultiLineString:
            return {type, Rings(count, square(0, 0, 1)), {}};
        default:
            break;
    }
    Model model{type, {}, {}};
    for (std::size_t i = 0; i < count; ++i) {
        const auto any = static_cast<std::uint32_t>(1 + i % 7);
        model.members.push_back(modelOf(type == MzGeometryTypeMultiPolygon ? 3 : any, i % 5));
    }
    return model;
}

/// How many blocks of memory the reading takes; none when there is no geometry.
std::size_t blocksToRead(const Bytes& bytes, MzTrailingBytes trailing) {
    const std::size_t before = blocks;
    const MzWKBReading reading = MzReadWKB(bytes, trailing);
    return reading ? blocks - before : 0;
}

void expectOneBlock(const Bytes& bytes) {
    for (const auto trailing : {MzTrailingBytes::Refused, MzTrailingBytes::Allowed}) {
        EXPECT_EQ(blocksToRead(bytes, trailing), 1u) << bytes.size() << " bytes";
    }
}

TEST(ReadWKBMemory, IsOneBlockHoweverManyPointsRingsAndMembersThereAre) {
    for (std::uint32_t type = 1; type <= 7; ++type) {
        for (const std::size_t count : {0U, 1U, 10U, 1000U}) {
            SCOPED_TRACE(testing::Message() << count << " in type " << type);
            expectOneBlock(bytesOf(modelOf(type, count)));
        }
    }
}

TEST(ReadWKBMemory, IsOneBlockInEveryForm) {
    const auto order = [next = std::uint8_t{0}]() mutable { return next ^= 1; };
    for (const Dialect& dialect : {Dialect{.hasZ = true},
                                   {.hasM = true},
                                   {.hasZ = true, .hasM = true, .hasFlags = true},
                                   {.order = order}}) {
        for (std::uint32_t type = 1; type <= 7; ++type) {
            expectOneBlock(bytesOf(modelOf(type, 20), dialect));
        }
    }
    const MzWKBReading reading = MzReadWKB(bytesOf(modelOf(MzGeometryTypeMultiPolygon, 20)));
    ASSERT_TRUE(reading);
    for (const MzWKBForm form : {MzWKBForm::EWKB, MzWKBForm::GeoPackage}) {
        expectOneBlock(MzWKBOfGeometry(*reading.geometry.record(), {.form = form, .srid = 4326}));
    }
}

TEST(ReadWKBMemory, IsOneBlockHoweverDeepCollectionsAre) {
    Model model = modelOf(MzGeometryTypePolygon, 2);
    for (int i = 0; i < 100; ++i) model = {MzGeometryTypeGeometryCollection, {}, {model}};
    expectOneBlock(bytesOf(model));
}

TEST(ReadWKBMemory, IsCounted) {
    const std::size_t before = blocks;
    const auto two = std::pair(std::make_unique<std::byte[]>(64), std::make_unique<int>(3));
    EXPECT_NE(two.first, nullptr);
    EXPECT_EQ(blocks - before, 2u);
}

}  // namespace
}  // namespace mezalith
