// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/archiver.hpp>
#include <mezalith/platform/json/archive_tree.hpp>

#include <string_view>

/// How objects become trees of values, and what trees mean. An object is
///
/// - null;
/// - a text, when its class has such a form and it says all of the object;
/// - an object with its class name under "class", its number under "id" when it stands in the
///   archive more than once, and its fields behind these in the order they were written;
/// - {"ref": number} wherever else it stands.
namespace mezalith::platform::detail {

inline constexpr std::string_view kClassKey = "class";
inline constexpr std::string_view kIdKey = "id";
inline constexpr std::string_view kRefKey = "ref";
/// Of bytes of doubles: the numbers, and the bytes themselves.
inline constexpr std::string_view kDoublesKey = "doubles";
inline constexpr std::string_view kBytesKey = "bytes";

/// Levels that an object takes at least: itself, and bytes of doubles in it.
inline constexpr int kObjectLevels = 3;
/// The root's level, within the frame.
inline constexpr int kRootLevel = 2;
inline constexpr int kLevelInList = 2;

/// Whether `key` is the archive's own and no field can have it.
bool isReserved(std::string_view key);

/// The tree of `root`, which may be null. Objects within themselves, and objects so deep that they
/// could not be read again, are null in it.
ArchiveValue treeOf(const Archivable* root);

}  // namespace mezalith::platform::detail
