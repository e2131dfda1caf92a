// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::platform {

/// The bytes in base64 (RFC 4648, section 4): four characters for three bytes, padded with "=".
MEZALITH_EXPORT std::string base64Text(std::span<const std::byte> bytes);

/// The bytes of such a text. Strict: none for other characters, white space included, missing or
/// superfluous padding, and bits behind the last byte that are not 0.
MEZALITH_EXPORT std::optional<std::vector<std::byte>> bytesFromBase64(std::string_view text);

}  // namespace mezalith::platform
