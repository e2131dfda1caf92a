// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace mezalith::platform::detail {

/// A block of TIFF structure in either byte order: a file, or what cameras put into others.
class TiffBlock {
  public:
    explicit TiffBlock(std::string_view bytes);

    /// The first number, of 16 or 32 bits, under the tag in the first directory. None without it
    /// and where the block is no TIFF or is cut short.
    std::optional<std::uint32_t> value(std::uint16_t tag) const;

  private:
    std::string_view bytes_;
    bool isLittle_;

    std::optional<std::uint32_t> number(std::size_t offset, std::size_t size) const;
};

}  // namespace mezalith::platform::detail
