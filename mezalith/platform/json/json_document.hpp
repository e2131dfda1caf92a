// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <nlohmann/json.hpp>

/// What the archives share: their frame, and strict reading and writing of JSON (RFC 8259).
namespace mezalith::platform::detail {

/// In the order written.
using JsonWritten = nlohmann::ordered_json;
/// Sorted by key.
using JsonRead = nlohmann::json;

/// Arrays and objects within each other.
inline constexpr int deepestJson = 64;
inline constexpr std::size_t longestJson = std::size_t{4} * 1024 * 1024;

inline constexpr char rootKey[] = "root";
inline constexpr char arraysKey[] = "arrays";

/// A number as JSON: integral and other finite doubles as numbers, the others as the strings "nan",
/// "inf" and "-inf".
JsonWritten numberAsJson(double value);
/// The number nearest to `value` that has the shortest text.
JsonWritten numberAsJson(float value);
JsonWritten numbersAsJson(std::span<const double> values);
std::optional<double> numberFromJson(const JsonRead& value);
/// None unless the value is a list of numbers only.
std::optional<std::vector<double>> numbersFromJson(const JsonRead& value);

/// The text of `value`: objects with a key a line, arrays of numbers on one line; numbers as the
/// shortest text that reads back to the same double. Ends with a line end.
std::string jsonText(const JsonWritten& value);

/// The archive that holds `content` under `key`.
std::string archiveText(const char* key, JsonWritten content);

/// What `archiveText` put under `key`. None, and an error "line L, column C: reason" or "reason",
/// for text that is no JSON, is longer than `longestJson` or deeper than `deepestJson`, holds a key
/// twice in an object, or is no archive of this kind and version.
std::optional<JsonRead> archiveContent(std::string_view text, const char* key, std::string& error);

}  // namespace mezalith::platform::detail
