// SPDX-License-Identifier: MIT
#include "host/source_address.hpp"

#include "host/failure.hpp"

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace mezalith::host {
namespace {

/// An absolute path cannot be taken for anything but a file.
SourceAddress addressOfPath(const std::string& path, const std::optional<std::string>& layer) {
    return {path, std::filesystem::absolute(path).string(), layer};
}

}  // namespace

SourceAddress SourceAddress::of(const std::string& source) {
    if (source.starts_with("PG:")) return {source, source, std::nullopt};
    if (source.find("://") != std::string::npos || source.starts_with("/vsi")) {
        throw Failure(source, "only local files are read");
    }
    std::error_code error;
    if (std::filesystem::exists(source, error)) return addressOfPath(source, std::nullopt);
    const std::size_t colon = source.rfind(':');
    const std::string path = source.substr(0, colon);
    if (colon == std::string::npos || !std::filesystem::exists(path, error)) {
        throw Failure(source, std::generic_category().message(ENOENT));
    }
    return addressOfPath(path, source.substr(colon + 1));
}

}  // namespace mezalith::host
