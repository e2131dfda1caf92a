// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/identified.hpp"
#include "apps/mezalith/map.hpp"
#include "apps/mezalith/text_output.hpp"
#include "host/hit_finder.hpp"

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

struct Given {
    MapTexts map;
    std::string at;
    std::string tolerance = "2";
    bool json = false;
};

double toleranceOf(const Given& given) {
    const double tolerance = numberArgument("--tolerance", given.tolerance);
    if (tolerance < 0) {
        throw UsageError("--tolerance", given.tolerance + " is less than 0");
    }
    return tolerance;
}

void run(const Given& given) {
    Map map(given.map);
    const auto at = numbersArgument("--at", given.at, ',', 2, "X,Y");
    const double tolerance = toleranceOf(given);
    map.load(map.options().pixelRatio.value_or(1));
    host::HitFinder finder(map.view(), map.layers());
    const auto hits = finder.at({at[0], at[1]}, tolerance, [&](const host::Feature& feature) {
        return map.isSelected(feature);
    });
    TextOutput output;
    for (const auto& [feature, hit] : hits) {
        output.write((given.json ? identifiedJson(*feature, hit) : identifiedText(*feature, hit)) +
                     "\n");
    }
    output.finish();
}

}  // namespace

void setUpIdentify(CLI::App& command) {
    const auto given = std::make_shared<Given>();
    addMapOptions(command, given->map);
    command
        .add_option("--at", given->at, "Place to ask about, view points from the lower left corner")
        ->required()
        ->type_name("X,Y");
    command
        .add_option(
            "--tolerance", given->tolerance,
            "How far beside what is drawn a click still hits, view points; 2 when not given")
        ->type_name("PIXELS");
    command.add_flag("--json", given->json, "Print one JSON object a line");
    command.footer(
        "Prints what a click there hits as it is drawn, a feature a line, those on top first:\n"
        "markers and pictures, lines with their width and dashes, what is filled of areas.");
    command.callback([given] { run(*given); });
}

}  // namespace mezalith::app
