// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace mezalith::host {

/// Whether the texts differ in nothing but the case of the letters a to z.
bool isEqualIgnoringCase(std::string_view a, std::string_view b);

}  // namespace mezalith::host
