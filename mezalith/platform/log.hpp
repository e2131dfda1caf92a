// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <functional>
#include <string_view>

namespace mezalith::platform {

/// Takes one line of the log, without a line end.
using LogSink = std::function<void(std::string_view)>;

/// Writes one line to the log: to the sink, or to standard error while none is set.
/// Safe from several threads.
MEZALITH_EXPORT void log(std::string_view line);

/// Makes `sink` the log's receiver and returns the one before it; an empty sink restores standard
/// error. Safe from several threads. The sink is called under the log's lock, so that no call of it
/// is under way once another has taken its place; it may itself log and set sinks.
MEZALITH_EXPORT LogSink setLogSink(LogSink sink);

}  // namespace mezalith::platform
