// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <string_view>

namespace mezalith::platform {

/// Whether the whole of `text` is like `pattern`, both in UTF-8: "*" stands for any run of
/// characters, none included, "?" for one character, and a backslash takes their meaning from these
/// two and from itself. Time grows at worst with the product of the lengths; nothing is allocated.
MEZALITH_EXPORT bool isLike(std::string_view text, std::string_view pattern);

}  // namespace mezalith::platform
