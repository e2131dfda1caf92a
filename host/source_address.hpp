// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>

namespace mezalith::host {

/// A source of map data, as users name it, taken apart.
struct SourceAddress {
    std::string name;                  ///< as the user gave it, without the layer
    std::string connection;            ///< what to open
    std::optional<std::string> layer;  ///< the one layer that is wanted

    /// Of the path of a file, "path:layer" or "PG:...". Throws a Failure for a file that is not
    /// there and for what would have to be fetched.
    static SourceAddress of(const std::string& source);
};

}  // namespace mezalith::host
