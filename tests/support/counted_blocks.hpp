// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

// Counts the blocks that the program takes from the heap. For one source of a program: it replaces
// the operators, every form that is used, as sanitizers bring forms that do not call each other.

namespace mezalith::test {

inline std::atomic<std::size_t> blocks = 0;

}  // namespace mezalith::test

[[gnu::noinline]] void* operator new(std::size_t size) {
    ++mezalith::test::blocks;
    void* const block = std::malloc(size);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}
[[gnu::noinline]] void* operator new[](std::size_t size) { return operator new(size); }
[[gnu::noinline]] void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    ++mezalith::test::blocks;
    return std::malloc(size);
}

[[gnu::noinline]] void operator delete(void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete(void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}
[[gnu::noinline]] void operator delete[](void* block) noexcept { std::free(block); }
[[gnu::noinline]] void operator delete[](void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}
