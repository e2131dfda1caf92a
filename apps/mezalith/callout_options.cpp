// SPDX-License-Identifier: MIT
#include "apps/mezalith/callout_options.hpp"

#include "apps/mezalith/arguments.hpp"
#include "host/failure.hpp"

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

platform::InterfaceDocument::Pointer cardOf(const std::string& file) {
    if (file.empty()) return host::Callouts::defaultCard();
    std::string error;
    auto card = platform::InterfaceDocument::documentWithFile(file, &error);
    if (card == nullptr) throw host::Failure(file, error);
    return card;
}

}  // namespace

void addCalloutOptions(CLI::App& command, CalloutTexts& texts) {
    CLI::Option* const callout =
        command
            .add_option("--callout", texts.condition,
                        "Callouts at the features that meet this condition, over the map")
            ->type_name("PREDICATE");
    command
        .add_option("--interface", texts.card,
                    "Interface file of what callouts show; default name and layer")
        ->type_name("FILE")
        ->needs(callout);
}

std::optional<host::Callouts> calloutsOf(const CalloutTexts& texts) {
    if (texts.condition.empty()) return std::nullopt;
    return host::Callouts(predicateArgument("--callout", texts.condition), cardOf(texts.card));
}

}  // namespace mezalith::app
