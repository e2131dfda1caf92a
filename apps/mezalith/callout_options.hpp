// SPDX-License-Identifier: MIT
#pragma once

#include "host/callouts.hpp"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace mezalith::app {

/// The callout options of the command line, as they were given.
struct CalloutTexts {
    std::string condition{};  ///< a predicate; empty for no callouts
    std::string card{};       ///< an interface file; empty for the default card
};

/// Adds the options to `command`; `texts` must live as long.
void addCalloutOptions(CLI::App& command, CalloutTexts& texts);

/// What the options ask for; none when they ask for no callouts. Throws a UsageError for a
/// condition that is not to be understood and a host::Failure, with the file's path, for a card.
std::optional<host::Callouts> calloutsOf(const CalloutTexts& texts);

}  // namespace mezalith::app
