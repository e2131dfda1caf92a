// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/style/style.hpp>

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace mezalith::app {

enum class StyleFormat { JSON, CBOR };

/// The format that a style document's ending asks for, ".json" or ".cbor" in letters of either
/// case. Throws a UsageError for any other ending.
StyleFormat styleFormatOf(const std::string& path);

/// The style of the document at `path`. Throws a UsageError for its ending, and a host::Failure
/// with the path when it cannot be read or is none.
std::shared_ptr<MzStyle> readStyleFile(const std::string& path);

/// The style's document in this format.
std::vector<std::byte> styleDocument(const MzStyle& style, StyleFormat format);

}  // namespace mezalith::app
