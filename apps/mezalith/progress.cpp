// SPDX-License-Identifier: MIT
#include "apps/mezalith/progress.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include <unistd.h>

namespace mezalith::app {
namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 500ms;
constexpr auto kInterval = 100ms;
constexpr double kCells = 30;
constexpr const char* kClearLine = "\r\x1b[K";

}  // namespace

bool Progress::isWanted(bool quiet) { return !quiet && ::isatty(STDERR_FILENO) != 0; }

Progress::Progress(bool wanted, std::FILE* stream)
    : wanted_(wanted), stream_(stream), next_(Clock::now() + kPatience) {}

Progress::~Progress() {
    if (drawn_) std::fputs(kClearLine, stream_);
}

void Progress::show(const std::string& task, double share, Clock::time_point now) {
    if (!wanted_ || now < next_) return;
    next_ = now + kInterval;
    drawn_ = true;
    const double known = std::clamp(share, 0.0, 1.0);
    const auto done = static_cast<std::size_t>(std::floor(known * kCells));
    const std::string bar = std::string(done, '#') + std::string(30 - done, '.');
    std::fprintf(stream_, "%s%s [%s] %3.0f %%", kClearLine, task.c_str(), bar.c_str(),
                 std::floor(known * 100));
    std::fflush(stream_);
}

}  // namespace mezalith::app
