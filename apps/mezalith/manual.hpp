// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace CLI {
class App;
}

namespace mezalith::app {

/// The manual page (section 1, in the man macros) of a program with commands: its description, each
/// command with its arguments and options, and the exit status. Hidden options are left out.
std::string manualPage(const CLI::App& app, const std::string& version);

/// A completion for bash: commands first, then the options of the command, file names elsewhere.
std::string bashCompletion(const CLI::App& app);

}  // namespace mezalith::app
