// SPDX-License-Identifier: MIT
#include <mezalith/platform/text_file.hpp>

#include <filesystem>
#include <fstream>
#include <ios>
#include <system_error>

namespace mezalith::platform {
namespace {

namespace fs = std::filesystem;

/// Why the file is not to be read at all; empty when nothing speaks against it. A pipe would be
/// waited for and a device never ends, so that neither is even opened.
std::string obstacle(const std::string& path, std::size_t limit) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::directory) return "is a folder";
    if (fs::exists(status) && !fs::is_regular_file(status)) return "is not a regular file";
    if (error) return error.message();
    const std::uintmax_t size = fs::file_size(path, error);
    if (error) return error.message();
    return size > limit ? "is larger than " + std::to_string(limit) + " bytes" : std::string();
}

std::optional<std::string> contents(const std::string& path, std::size_t limit) {
    std::ifstream file(path, std::ios::binary);
    std::string text;
    char block[1 << 14];
    // The size was asked for before; a file that grows meanwhile still ends at the limit.
    while (text.size() <= limit && file.read(block, sizeof block).gcount() > 0) {
        text.append(block, static_cast<std::size_t>(file.gcount()));
    }
    const bool whole = file.is_open() && file.eof() && !file.bad() && text.size() <= limit;
    return whole ? std::optional(std::move(text)) : std::nullopt;
}

}  // namespace

std::optional<std::string> textOfFile(const std::string& path, std::size_t limit,
                                      std::string* why) {
    std::string reason = obstacle(path, limit);
    std::optional<std::string> text;
    if (reason.empty()) {
        text = contents(path, limit);
        if (!text) reason = "cannot be read";
    }
    if (why != nullptr) *why = std::move(reason);
    return text;
}

}  // namespace mezalith::platform
