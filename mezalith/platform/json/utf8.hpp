// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace mezalith::platform {

/// How many bytes at the head of `text` are one character in UTF-8 (RFC 3629): 1 to 4, or 0 when
/// there is none. Overlong forms, surrogates and what is beyond U+10FFFF are no characters.
MEZALITH_EXPORT std::size_t characterLength(std::string_view text);

MEZALITH_EXPORT bool isUTF8(std::string_view text);

/// `text` with U+FFFD in place of each byte that belongs to no character.
MEZALITH_EXPORT std::string mendedUTF8(std::string_view text);

}  // namespace mezalith::platform
