// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::app {

/// The bytes that pairs of hexadecimal digits in either case stand for, blanks and line ends
/// between them and "\x" or "0x" before them left out. Throws a UsageError about the argument
/// `name` for anything else.
std::vector<std::byte> bytesFromHexadecimal(const std::string& name, std::string_view text);

/// Two lower-case digits a byte.
std::string hexadecimalFromBytes(std::span<const std::byte> bytes);

}  // namespace mezalith::app
