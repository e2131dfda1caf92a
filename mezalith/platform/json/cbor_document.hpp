// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/json/archive_tree.hpp>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

/// Strict reading and writing of CBOR (RFC 8949).
namespace mezalith::platform::detail {

/// The bytes of `value`: definite lengths, integers and lengths in their shortest form, doubles in
/// four bytes where that loses nothing.
std::vector<std::byte> cborBytes(const ArchiveValue& value);

/// The value that `bytes` hold, with the offsets of its parts; none, and the error, for bytes that
/// are no CBOR, too few or too many, that hold what archives do not (indefinite lengths, tags, keys
/// that are no text, a key twice, text that is not UTF-8), or are beyond the bounds of archives.
std::optional<ArchiveValue> cborTree(std::span<const std::byte> bytes, ArchiveError& error);

/// "byte N: reason", counted from 0.
std::string cborErrorText(const ArchiveError& error);

}  // namespace mezalith::platform::detail
