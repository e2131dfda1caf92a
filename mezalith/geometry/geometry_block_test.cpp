// SPDX-License-Identifier: MIT
#include <mezalith/geometry/geometry_block.hpp>

#include <cstdint>
#include <new>
#include <utility>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

TEST(GeometryBlock, HasNoRecordUntilThereIsOne) {
    EXPECT_EQ(MzGeometryBlock().record(), nullptr);
    EXPECT_EQ(MzGeometryBlock().size(), 0u);
}

TEST(GeometryBlock, KeepsItsPointersWhenMoved) {
    MzGeometryBlock block(32);
    ASSERT_EQ(reinterpret_cast<std::uintptr_t>(block.data()) % alignof(MzGeometryRecord), 0u);
    auto* point = new (block.data() + 16) MzPoint{3, 4};
    new (block.data()) MzGeometryRecord(geometryOf(point));
    const MzGeometryBlock moved = std::move(block);
    ASSERT_NE(moved.record(), nullptr);
    EXPECT_EQ(moved.size(), 32u);
    EXPECT_EQ(moved.record()->points[0].y, 4);
}

TEST(ReadError, NamesTheByteAndWhatIsThere) {
    const MzReadError error{10, "a Point", "a LineString"};
    EXPECT_EQ(error.text(), "byte 10: expected a Point, found a LineString");
}

}  // namespace
}  // namespace mezalith
