// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/json/archive_tree.hpp>

#include <optional>
#include <string>
#include <string_view>

/// Strict reading and writing of JSON (RFC 8259). What is exported serves interface files, too.
namespace mezalith::platform::detail {

/// The text of `value`, for people: objects with a key a line, lists of plain values on one line;
/// numbers as the shortest text that reads back to the same double, those that are not finite as
/// the strings "nan", "inf" and "-inf", bytes as base64. Ends with a line end.
std::string jsonText(const ArchiveValue& value);

/// The value that `text` holds, with the offsets of its bytes; none, and the error, for text that
/// is no JSON, holds a key twice in an object, or is beyond the bounds of archives.
MEZALITH_EXPORT std::optional<ArchiveValue> jsonTree(std::string_view text, ArchiveError& error);

/// "line L, column C: reason", both counted from 1, columns in characters.
MEZALITH_EXPORT std::string jsonErrorText(std::string_view text, const ArchiveError& error);

}  // namespace mezalith::platform::detail
