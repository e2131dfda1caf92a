// SPDX-License-Identifier: MIT
#include <mezalith/platform/log.hpp>

#include <cstdio>
#include <mutex>
#include <string>
#include <utility>

namespace mezalith::platform {
namespace {

struct Log {
    std::recursive_mutex mutex;  // recursive: a sink may log
    LogSink sink;
};

// Never destroyed, so that the destructors of other statics can still log.
Log& sharedLog() {
    // NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables): one log for all
    static Log& shared = *new Log;
    return shared;
}

void writeToStandardError(std::string_view line) {
    const std::string text = std::string(line).append(1, '\n');
    std::fwrite(text.data(), 1, text.size(), stderr);
}

}  // namespace

void log(std::string_view line) {
    Log& shared = sharedLog();
    const std::lock_guard lock(shared.mutex);
    const LogSink sink = shared.sink;  // a copy: the sink may replace itself
    if (sink) {
        sink(line);
    } else {
        writeToStandardError(line);
    }
}

LogSink setLogSink(LogSink sink) {
    Log& shared = sharedLog();
    const std::lock_guard lock(shared.mutex);
    return std::exchange(shared.sink, std::move(sink));
}

}  // namespace mezalith::platform
