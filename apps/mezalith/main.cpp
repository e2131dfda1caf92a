// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/manual.hpp"
#include "apps/mezalith/text_output.hpp"
#include "host/failure.hpp"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <exception>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

enum ExitStatus { kDone = 0, kFailed = 1, kWrongArguments = 2 };

int report(const std::string& message, ExitStatus status) {
    std::fprintf(stderr, "mezalith: %s\n", host::inOneLine(message).c_str());
    return status;
}

void setUp(CLI::App& app) {
    app.name("mezalith");
    app.set_help_flag("--help", "Print this help");
    app.set_version_flag("--version", "mezalith " MEZALITH_VERSION, "Print the version");
    app.require_subcommand(1);
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    for (const Command& command : commandTable()) {
        command.setUp(*app.add_subcommand(command.name, command.help)->group(command.category));
    }
}

void print(const std::string& text) {
    TextOutput output;
    output.write(text);
    output.finish();
}

/// The command that was given, with the command within it if there is one.
std::string commandOf(const CLI::App& app) {
    const auto commands = app.get_subcommands();
    if (commands.empty()) return "arguments";
    const std::string name = commands.front()->get_name();
    const auto nested = commands.front()->get_subcommands();
    return nested.empty() ? name : name + " " + nested.front()->get_name();
}

int parse(CLI::App& app, std::vector<std::string> arguments) {
    std::ranges::reverse(arguments);
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::Success& request) {
        std::ostringstream text;
        app.exit(request, text, text);
        print(text.str());
    } catch (const CLI::ParseError& error) {
        return report(commandOf(app) + ": " + error.what(), kWrongArguments);
    }
    return kDone;
}

/// The options before a command ask for help or version and end the work, so the command is first.
void checkCommand(const std::vector<std::string>& arguments) {
    if (arguments.empty()) throw UsageError("arguments", "no command; --help lists them");
    const std::string& first = arguments.front();
    const auto isFirst = [&first](const Command& command) { return first == command.name; };
    if (!first.starts_with('-') && std::ranges::none_of(commandTable(), isFirst)) {
        throw UsageError(first, "no such command; --help lists them");
    }
}

int run(const std::vector<std::string>& arguments) {
    checkCommand(arguments);
    CLI::App app("geometry and cartography on the command line");
    setUp(app);
    // For packagers; not in the help.
    if (arguments == std::vector<std::string>{"--generate-man"}) {
        print(manualPage(app, MEZALITH_VERSION));
    } else if (arguments == std::vector<std::string>{"--generate-completion"}) {
        print(bashCompletion(app));
    } else {
        return parse(app, arguments);
    }
    return kDone;
}

int runReporting(int count, const char* const* arguments) {
    try {
        return run(argumentsForParser(count, arguments));
    } catch (const UsageError& error) {
        return report(error.what(), kWrongArguments);
    } catch (const host::Failure& failure) {
        return report(failure.what(), kFailed);
    } catch (const std::bad_alloc&) {
        return report("memory: there is not enough", kFailed);
    } catch (const std::exception& error) {
        return report(std::string("internal: ") + error.what(), kFailed);
    }
}

}  // namespace
}  // namespace mezalith::app

int main(int count, char** arguments) {
    // A closed pipe is reported like any other output that cannot be written.
    std::signal(SIGPIPE, SIG_IGN);
    return mezalith::app::runReporting(count, arguments);
}
