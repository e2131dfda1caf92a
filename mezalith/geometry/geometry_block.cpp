// SPDX-License-Identifier: MIT
#include <mezalith/geometry/geometry_block.hpp>

namespace mezalith {

std::string MzReadError::text() const {
    return "byte " + std::to_string(offset) + ": expected " + expected + ", found " + found;
}

}  // namespace mezalith
