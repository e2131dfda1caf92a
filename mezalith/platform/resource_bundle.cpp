// SPDX-License-Identifier: MIT
#include <mezalith/platform/resource_bundle.hpp>

#include <cstdlib>
#include <system_error>
#include <utility>

#include <dlfcn.h>

namespace mezalith::platform {
namespace {

namespace fs = std::filesystem;

/// lib/<architecture>/<package> is as deep as libraries are put.
constexpr int kLevels = 5;

/// The file that this function was loaded from: the shared library, or the program that it has been
/// linked into. Empty when it cannot be told.
fs::path ownFile() {
    Dl_info info{};
    std::error_code error;
    fs::path file;
    if (dladdr(reinterpret_cast<const void*>(&ownFile), &info) != 0) file = info.dli_fname;
    // A program is known by what it was called; the system knows where it is.
    if (!file.is_absolute()) file = "/proc/self/exe";
    return fs::canonical(file, error);
}

std::vector<fs::path> libraryFolders() {
    std::vector<fs::path> folders;
    // Unsafe only beside one who writes the environment, which the library does not.
    // NOLINTNEXTLINE(concurrency-mt-unsafe)
    const char* named = std::getenv(ResourceBundle::kVariable);
    if (named != nullptr && *named != '\0') folders.emplace_back(named);
    static const fs::path own = ownFile();
    fs::path folder = own.parent_path();
    for (int level = 0; level < kLevels && !folder.empty(); ++level) {
        folders.push_back(folder / "share" / "mezalith");
        folder = folder.parent_path();
    }
    return folders;
}

}  // namespace

ResourceBundle ResourceBundle::library() { return ResourceBundle(libraryFolders()); }

ResourceBundle::ResourceBundle(std::vector<fs::path> folders) : folders_(std::move(folders)) {}

std::optional<std::string> ResourceBundle::pathForResource(std::string_view name) const {
    for (const fs::path& folder : folders_) {
        const fs::path path = folder / name;
        std::error_code error;
        if (fs::is_regular_file(path, error)) return path.string();
    }
    return std::nullopt;
}

}  // namespace mezalith::platform
