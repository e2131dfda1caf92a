// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/tiff_block.hpp>

namespace mezalith::platform::detail {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t entrySize = 12;
constexpr std::uint32_t longType = 4;

}  // namespace

TiffBlock::TiffBlock(std::string_view bytes)
    : bytes_(bytes), isLittle_(bytes.starts_with("II*\0"sv)) {
    if (!isLittle_ && !bytes.starts_with("MM\0*"sv)) {
        bytes_ = {};
    }
}

std::optional<std::uint32_t> TiffBlock::number(std::size_t offset, std::size_t size) const {
    if (offset > bytes_.size() || size > bytes_.size() - offset) {
        return std::nullopt;
    }
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t place = isLittle_ ? size - 1 - i : i;
        value = value << 8 | static_cast<unsigned char>(bytes_[offset + place]);
    }
    return value;
}

std::optional<std::uint32_t> TiffBlock::value(std::uint16_t tag) const {
    const std::size_t directory = number(4, 4).value_or(0);
    const std::size_t count = number(directory, 2).value_or(0);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t entry = directory + 2 + i * entrySize;
        if (number(entry, 2) == tag) {
            return number(entry + 8, number(entry + 2, 2) == longType ? 4 : 2);
        }
    }
    return std::nullopt;
}

}  // namespace mezalith::platform::detail
