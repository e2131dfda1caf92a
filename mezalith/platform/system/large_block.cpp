// SPDX-License-Identifier: MIT
#include <mezalith/platform/system/large_block.hpp>

#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace mezalith::platform {
namespace {

constexpr std::size_t kLargePage = std::size_t{1} << 21;
constexpr std::size_t kLine = 64;

/// A refusal changes nothing but the speed.
void askForLargePages([[maybe_unused]] std::byte* bytes, [[maybe_unused]] std::size_t size) {
#ifdef MADV_HUGEPAGE
    madvise(bytes, size / kLargePage * kLargePage, MADV_HUGEPAGE);
#endif
}

}  // namespace

std::shared_ptr<std::byte> largeBlock(std::size_t size) {
    const bool isLarge = size >= 2 * kLargePage;
    const std::align_val_t alignment{isLarge ? kLargePage : kLine};
    auto* const bytes = static_cast<std::byte*>(::operator new(size, alignment, std::nothrow));
    if (bytes == nullptr) return nullptr;
    if (isLarge) askForLargePages(bytes, size);
    return {bytes, [alignment](std::byte* block) { ::operator delete(block, alignment); }};
}

}  // namespace mezalith::platform
