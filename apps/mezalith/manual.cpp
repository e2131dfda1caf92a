// SPDX-License-Identifier: MIT
#include "apps/mezalith/manual.hpp"

#include <vector>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

std::vector<const CLI::App*> commandsOf(const CLI::App& app) {
    return app.get_subcommands([](const CLI::App*) { return true; });
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& app, bool positional) {
    return app.get_options([positional](const CLI::Option* option) {
        return !option->get_group().empty() && option->get_positional() == positional;
    });
}

/// Text as the man macros take it: hyphens that can be copied, no accidental requests.
std::string escaped(const std::string& text) {
    std::string result;
    for (const char letter : text) {
        if (letter == '\\') {
            result += "\\e";
        } else if (letter == '-') {
            result += "\\-";
        } else {
            result += letter;
        }
    }
    const bool isRequest = result.starts_with('.') || result.starts_with('\'');
    return isRequest ? "\\&" + result : result;
}

std::string bold(const std::string& text) { return "\\fB" + escaped(text) + "\\fR"; }
std::string italic(const std::string& text) { return "\\fI" + escaped(text) + "\\fR"; }

std::string namesOf(const CLI::Option& option) {
    std::string names;
    for (const std::string& name : option.get_snames()) names += bold("-" + name) + ", ";
    for (const std::string& name : option.get_lnames()) names += bold("--" + name) + ", ";
    names.resize(names.size() - 2);
    if (!option.get_type_name().empty()) names += " " + italic(option.get_type_name());
    return names;
}

std::string descriptionOf(const CLI::Option& option) {
    std::string text = option.get_description();
    if (!option.get_default_str().empty()) text += " (default " + option.get_default_str() + ")";
    return text + ".";
}

/// "wkb", or "style check" for a command within a command.
std::string nameOf(const CLI::App& command) {
    const CLI::App* parent = command.get_parent();
    const bool isNested = parent != nullptr && parent->get_parent() != nullptr;
    return isNested ? nameOf(*parent) + " " + command.get_name() : command.get_name();
}

std::string synopsisOf(const CLI::App& command) {
    std::string text = bold("mezalith " + nameOf(command)) + " [options]";
    for (const CLI::Option* option : optionsOf(command, true)) {
        text += " " + italic(option->get_name());
        if (option->get_items_expected_max() > 1) text += " ...";
    }
    return text;
}

std::string sectionOf(const CLI::App& command) {
    if (const auto nested = commandsOf(command); !nested.empty()) {
        std::string text;
        for (const CLI::App* each : nested) text += sectionOf(*each);
        return text;
    }
    std::string text = ".SS " + nameOf(command) + "\n" + synopsisOf(command) + "\n.PP\n" +
                       escaped(command.get_description()) + ".\n";
    if (!command.get_footer().empty()) text += escaped(command.get_footer()) + "\n";
    for (const CLI::Option* option : optionsOf(command, true)) {
        text +=
            ".TP\n" + italic(option->get_name()) + "\n" + escaped(descriptionOf(*option)) + "\n";
    }
    for (const CLI::Option* option : optionsOf(command, false)) {
        text += ".TP\n" + namesOf(*option) + "\n" + escaped(descriptionOf(*option)) + "\n";
    }
    return text;
}

std::string optionWordsOf(const CLI::App& app) {
    std::string words;
    for (const CLI::Option* option : optionsOf(app, false)) {
        for (const std::string& name : option->get_lnames()) words += " --" + name;
        for (const std::string& name : option->get_snames()) words += " -" + name;
    }
    return words;
}

/// The options of a command and, if it has commands of its own, these first with theirs.
std::string wordsOf(const CLI::App& app) {
    std::string names;
    std::string options;
    for (const CLI::App* command : commandsOf(app)) {
        names += " " + command->get_name();
        if (app.get_parent() != nullptr) options += optionWordsOf(*command);
    }
    const std::string words = names + optionWordsOf(app) + options;
    return words.empty() ? words : words.substr(1);
}

constexpr char kConventions[] = R"(.SH CONVENTIONS
A coordinate pair is longitude then latitude, in degrees. Numbers may be negative. Where numbers are
arguments they can come on standard input instead, one query a line. Results are printed as the
shortest text that reads back to the same number, with one space between fields.
.PP
A
.I SOURCE
is whatever file of map data the data library opens,
.IB FILE : LAYER
for one layer of it, a bare
.I .wkb
file, or
.I PG:...
for a PostgreSQL database.
.SH EXIT STATUS
.TP
.B 0
Done.
.TP
.B 1
The work failed; one line on standard error says what and why.
.TP
.B 2
The arguments are wrong.
.SH EXAMPLES
.nf
mezalith render world.gpkg:land world.gpkg:rivers \-o world.png \-\-fill land:#f2ecdd
mezalith style default polygon > land.json
mezalith render world.gpkg:land \-o world.png \-\-style land=land.json
mezalith distance \-122.4 37.8 2.35 48.86
echo 10.75 59.91 | mezalith project \-\-projection utm:33
.fi
)";

constexpr char kCompletionTail[] = R"(    esac
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -o bashdefault -o default -F _mezalith mezalith
)";

}  // namespace

std::string manualPage(const CLI::App& app, const std::string& version) {
    std::string page = R"(.TH MEZALITH 1 "" "mezalith )" + version + "\" \"User Commands\"\n" +
                       ".SH NAME\nmezalith \\- " + escaped(app.get_description()) +
                       "\n.SH SYNOPSIS\n.B mezalith\n.I COMMAND\n[options] [arguments]\n" +
                       ".SH DESCRIPTION\nOne program with a command for each task. Results go to "
                       "standard output, messages and progress to standard error.\n.TP\n";
    for (const CLI::Option* option : optionsOf(app, false)) {
        page += namesOf(*option) + "\n" + escaped(descriptionOf(*option)) + "\n.TP\n";
    }
    page.resize(page.size() - 4);
    page += ".SH COMMANDS\n";
    for (const CLI::App* command : commandsOf(app)) page += sectionOf(*command);
    return page + kConventions;
}

std::string bashCompletion(const CLI::App& app) {
    std::string groups = " ";
    std::string cases;
    for (const CLI::App* command : commandsOf(app)) {
        if (!commandsOf(*command).empty()) groups += command->get_name() + " ";
        cases += "        " + command->get_name() + ") words='" + wordsOf(*command) + "' ;;\n";
    }
    return "# bash completion for mezalith\n"
           "_mezalith() {\n"
           "    local current=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]-} words=''\n"
           "    local groups='" +
           groups +
           "'\n"
           "    COMPREPLY=()\n"
           "    ((COMP_CWORD > 1)) || command=''\n"
           "    if [[ -n $command && $current != -* ]]; then\n"
           "        ((COMP_CWORD == 2)) && [[ $groups == *\" $command \"* ]] || return\n"
           "    fi\n"
           "    case $command in\n"
           "        '') words='" +
           wordsOf(app) + "' ;;\n" + cases + kCompletionTail;
}

}  // namespace mezalith::app
