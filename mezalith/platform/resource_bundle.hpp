// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::platform {

/// The data files that come with the library, found by their names alone.
class MEZALITH_EXPORT ResourceBundle {
  public:
    /// The variable of the environment that names a folder to look into first.
    static constexpr char kVariable[] = "MEZALITH_RESOURCES";

    /// The library's own bundle: the folder that the environment names, when it does, then
    /// "share/mezalith" in the folder of the program or library that holds this code or in one of
    /// the four above it. That is so in the tree of a build, after an installation, and wherever
    /// one has been moved to; the current folder does not matter.
    static ResourceBundle library();

    /// Resources are looked for in `folders`, in this order.
    explicit ResourceBundle(std::vector<std::filesystem::path> folders);

    /// The path of the resource called `name`, such as "IGRF11.COF"; nothing when no folder has a
    /// file of that name.
    std::optional<std::string> pathForResource(std::string_view name) const;

  private:
    std::vector<std::filesystem::path> folders_;
};

}  // namespace mezalith::platform
