// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdio>
#include <optional>
#include <string>

namespace mezalith::app {

/// A bar that shows how far long work is. It stays away when the stream is no terminal, and while
/// the work is young; it is gone when the object ends.
class Progress {
  public:
    using Clock = std::chrono::steady_clock;

    /// Whether a bar is to be shown on standard error: it is a terminal and `quiet` is off.
    static bool isWanted(bool quiet);

    /// `stream` is borrowed.
    explicit Progress(bool wanted, std::FILE* stream = stderr);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// `share` of `task` is done, 0 to 1.
    void show(const std::string& task, double share, Clock::time_point now = Clock::now());

  private:
    bool wanted_;
    std::FILE* stream_;
    Clock::time_point next_;  ///< when the bar is to be drawn again
    bool drawn_ = false;
};

}  // namespace mezalith::app
