// SPDX-License-Identifier: MIT
#include <mezalith/platform/system/large_block.hpp>

#include <bit>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

TEST(LargeBlock, CanBeUsedToItsEnds) {
    for (const std::size_t size :
         {std::size_t{1}, std::size_t{100}, std::size_t{1} << 22, (std::size_t{1} << 22) + 12345}) {
        const auto block = largeBlock(size);
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(std::bit_cast<std::uintptr_t>(block.get()) % 64, 0u);
        block.get()[0] = std::byte{1};
        block.get()[size - 1] = std::byte{2};
        EXPECT_EQ(block.get()[size - 1], std::byte{2});
    }
}

TEST(LargeBlock, OutlivesAllButItsLastHolder) {
    auto first = largeBlock(64);
    const auto second = first;
    first.reset();
    EXPECT_EQ(second.use_count(), 1);
    second.get()[63] = std::byte{};
}

#if !defined(__SANITIZE_ADDRESS__)
TEST(LargeBlock, IsNullWithoutMemory) {
    EXPECT_EQ(largeBlock(std::numeric_limits<std::size_t>::max() / 4), nullptr);
}
#endif

}  // namespace
}  // namespace mezalith::platform
