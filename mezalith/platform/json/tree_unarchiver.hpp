// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/archive_classes.hpp>
#include <mezalith/platform/archiver.hpp>
#include <mezalith/platform/json/archive_tree.hpp>

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace mezalith::platform::detail {

/// A number, also where it stands as the text of one that is not finite.
std::optional<double> numberOf(const ArchiveValue& value);
/// None unless the value is a list of numbers only.
std::optional<std::vector<double>> numbersOf(const ArchiveValue& value);

/// The object that `treeOf` made `tree` of, or null with the error for what is none. Objects are
/// made of `classes` only, each once, however often it stands in the tree; every key of the tree
/// must have been asked for and, unless it is optional, every key asked for must be there. If a
/// `rootClass` is given, the root must be of that class and may leave its name out.
std::shared_ptr<const Archivable> objectOf(const ArchiveValue& tree, const ArchiveClasses& classes,
                                           std::string_view rootClass, ArchiveError& error);

}  // namespace mezalith::platform::detail
