// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace mezalith::app {

/// A result file that appears under its name only when it is complete: it is written under a
/// temporary name in the same folder and renamed at the end, and vanishes when that never comes.
/// What is no regular file (a device, a pipe) is written directly. Every operation throws a
/// host::Failure with the path when it fails.
class OutputFile {
  public:
    /// A file that exists already is a failure unless `overwrite`.
    OutputFile(std::string path, bool overwrite);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(std::span<const std::byte> bytes);
    /// Completes the file. Without `overwrite`, one that has come into being meanwhile stays.
    void commit();

  private:
    [[noreturn]] void fail(int error) const;
    void openTemporary();
    void rename();

    std::string path_;       ///< as it was given
    std::string target_;     ///< with symbolic links followed
    std::string temporary_;  ///< empty when written directly
    bool overwrite_;
    int descriptor_ = -1;
};

}  // namespace mezalith::app
