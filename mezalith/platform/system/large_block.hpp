// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstddef>
#include <memory>

namespace mezalith::platform {

/// `size` bytes at an address that 64 divides, freed with their last holder; null when there is no
/// memory. What they hold at first is not said. Some megabytes and more lie on large pages where
/// the system has them: taking 4096 bytes at a time from the system costs more than filling them.
MEZALITH_EXPORT std::shared_ptr<std::byte> largeBlock(std::size_t size);

}  // namespace mezalith::platform
