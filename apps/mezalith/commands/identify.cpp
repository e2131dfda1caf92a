// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/identified.hpp"
#include "apps/mezalith/map.hpp"
#include "apps/mezalith/text_output.hpp"

#include <memory>
#include <ranges>
#include <set>
#include <string>

namespace mezalith::app {
namespace {

struct Given {
    MapTexts map;
    std::string at;
    bool json = false;
};

/// Tells the records under the point, those drawn last first. A record of several parts is told
/// once.
void tellHits(Map& map, MzPoint point, const auto& tell) {
    std::set<const host::FeatureRecord*> told;
    for (const host::Layer& layer : map.layers() | std::views::reverse) {
        const auto features = map.featuresInSight(layer);
        for (const auto& feature : features | std::views::reverse) {
            const auto hit = map.view().hit(*feature, point, map.isSelected(*feature));
            if (hit && told.insert(feature->record().get()).second) tell(*feature, *hit);
        }
    }
}

void run(const Given& given) {
    Map map(given.map);
    const auto at = numbersArgument("--at", given.at, ',', 2, "X,Y");
    map.load(map.options().pixelRatio.value_or(1));
    TextOutput output;
    tellHits(map, {at[0], at[1]}, [&](const host::Feature& feature, const MzStyleHit& hit) {
        output.write((given.json ? identifiedJson(feature, hit) : identifiedText(feature, hit)) +
                     "\n");
    });
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
    command.add_flag("--json", given->json, "Print one JSON object a line");
    command.footer(
        "Prints what a click there hits, a feature a line, those on top first. Markers and\n"
        "pictures can be hit; lines and areas cannot.");
    command.callback([given] { run(*given); });
}

}  // namespace mezalith::app
