// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/archive_classes.hpp>
#include <mezalith/style/style.hpp>

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Style documents: keyed archives (`platform/json/keyed_archive.hpp`) of a style.
namespace mezalith {

/// The classes of style documents: styles, rules, the symbolizers that archive, and what they hold.
/// Optional are the texts and scale bounds of styles and rules, the selection filter, the filter,
/// and what is 0 or null of a stroke's dashes and of a marker's rotation and shadow.
MEZALITH_EXPORT const platform::ArchiveClasses& styleArchiveClasses();

/// A style that was read.
struct MEZALITH_EXPORT UnarchivedStyle {
    std::shared_ptr<MzStyle> style;  ///< null when there is an error
    std::string error;               ///< one line with the position
};

/// The style of a document as text (JSON); an error for any other text, and an archive of something
/// else. Symbolizers that several rules share are shared again.
MEZALITH_EXPORT UnarchivedStyle styleFromText(std::string_view text);
/// The same of a document as bytes (CBOR).
MEZALITH_EXPORT UnarchivedStyle styleFromBytes(std::span<const std::byte> bytes);

}  // namespace mezalith
