// SPDX-License-Identifier: MIT
#include "apps/mezalith/output_file.hpp"

#include "host/failure.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mezalith::app {
namespace {

namespace fs = std::filesystem;

/// What a new file may be read and written by, before the process's mask.
constexpr mode_t kMode = 0666;

bool isWrittenDirectly(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    return fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status);
}

/// Where the path leads; the path itself when that is nowhere yet.
std::string followed(const std::string& path) {
    std::error_code error;
    const fs::path target = fs::canonical(path, error);
    return error ? path : target.string();
}

}  // namespace

OutputFile::OutputFile(std::string path, bool overwrite)
    : path_(std::move(path)), target_(followed(path_)), overwrite_(overwrite) {
    if (isWrittenDirectly(target_)) {
        descriptor_ = ::open(target_.c_str(), O_WRONLY | O_CLOEXEC);
    } else {
        std::error_code error;
        if (fs::is_directory(target_, error)) fail(EISDIR);
        if (!overwrite_ && fs::exists(target_, error)) {
            throw host::Failure(path_, "the file exists; --overwrite replaces it");
        }
        openTemporary();
    }
    if (descriptor_ < 0) fail(errno);
}

OutputFile::~OutputFile() {
    if (descriptor_ >= 0) ::close(descriptor_);
    if (!temporary_.empty()) ::unlink(temporary_.c_str());
}

void OutputFile::fail(int error) const {
    throw host::Failure(path_, std::generic_category().message(error));
}

void OutputFile::openTemporary() {
    const fs::path target(target_);
    const std::string hidden = (target.parent_path() / ("." + target.filename().string())).string();
    for (int attempt = 0; attempt < 100; ++attempt) {
        const std::string name =
            hidden + "." + std::to_string(::getpid()) + "." + std::to_string(attempt);
        descriptor_ = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
        if (descriptor_ >= 0) temporary_ = name;
        if (descriptor_ >= 0 || errno != EEXIST) return;
    }
}

void OutputFile::write(std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor_, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) fail(errno);
        if (count > 0) bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
}

void OutputFile::commit() {
    if (::close(std::exchange(descriptor_, -1)) != 0) fail(errno);
    if (!temporary_.empty()) rename();
}

void OutputFile::rename() {
    const unsigned flags = overwrite_ ? 0 : RENAME_NOREPLACE;
    int result = ::renameat2(AT_FDCWD, temporary_.c_str(), AT_FDCWD, target_.c_str(), flags);
    // Some file systems cannot refuse to replace; there the look at the beginning has to do.
    if (result != 0 && errno == EINVAL) result = std::rename(temporary_.c_str(), target_.c_str());
    if (result != 0) fail(errno);
    temporary_.clear();
}

}  // namespace mezalith::app
