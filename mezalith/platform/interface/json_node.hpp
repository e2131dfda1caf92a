// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::platform::detail {

struct JsonEntry;

/// A JSON value that knows where it stands.
struct JsonNode {
    enum class Kind { Null, Boolean, Number, Text, List, Table };

    Kind kind = Kind::Null;
    std::size_t position = 0;  ///< of its first byte in the text
    bool boolean = false;
    double number = 0;
    std::string text{};
    std::vector<JsonNode> list{};
    std::vector<JsonEntry> table{};  ///< in the order written, each key once

    /// The value under `key`; null when this is no table or has no such key.
    const JsonNode* find(std::string_view key) const;
};

struct JsonEntry {
    std::string key;
    std::size_t position;  ///< of the key
    JsonNode value;
};

/// Lists and tables within each other.
inline constexpr std::size_t deepestNode = 64;

/// Reads strict JSON (RFC 8259). None, and an error "line L, column C: reason", for any other text,
/// for a key that a table has twice and for nesting deeper than `deepestNode`.
std::optional<JsonNode> readJson(std::string_view text, std::string& error);

/// "line L, column C" of a byte, both from 1, columns in bytes.
std::string placeOf(std::string_view text, std::size_t position);

}  // namespace mezalith::platform::detail
