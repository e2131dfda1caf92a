// SPDX-License-Identifier: MIT
#include "apps/mezalith/callout_options.hpp"
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/map.hpp"
#include "apps/mezalith/picture.hpp"
#include "apps/mezalith/progress.hpp"

#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

/// View points around the view from which callouts are taken.
constexpr double kCalloutReach = 50;

struct Given {
    MapTexts map;
    CalloutTexts callouts;
    std::string output;
    std::string sea;
    bool overwrite = false;
};

void drawLayers(Map& map, bool quiet) {
    Progress progress(Progress::isWanted(quiet));
    for (const host::Layer& layer : map.layers()) {
        const auto features = map.featuresInSight(layer);
        double done = 0;
        for (const auto& feature : features) {
            map.view().draw(*feature, map.isSelected(*feature));
            progress.show("drawing " + layer.name, ++done / static_cast<double>(features.size()));
        }
    }
}

/// Callouts at the features, which have been drawn, over all of them.
void drawCallouts(Map& map, std::optional<host::Callouts> callouts) {
    if (!callouts) return;
    for (const host::Layer& layer : map.layers()) {
        for (const auto& feature : layer.features) callouts->show(*feature, map.view());
    }
    map.view().drawSubviews();
}

void run(const Given& given) {
    Map map(given.map);
    const auto sea = given.sea.empty() ? nullptr : colorArgument("--sea", given.sea);
    const std::optional<host::Callouts> callouts = calloutsOf(given.callouts);
    const ViewOptions& options = map.options();
    Picture picture(given.output, given.overwrite, options.size, options.pixelRatio);
    map.load(picture.pixelRatio(), picture.spacing(), callouts ? kCalloutReach : 0);
    const platform::GraphicsContext context(&picture.port());
    fillBackground(picture.port(), options.size, *options.background);
    const Outlines globe = map.view().globeOutline();
    if (sea != nullptr) {
        fillOutlines(picture.port(), globe.empty() ? outlineOf(options.size) : globe, *sea);
    }
    picture.port().saveState();
    // What lines have to the outside of the globe is not for the map.
    if (!globe.empty()) clipToOutlines(picture.port(), globe);
    drawLayers(map, given.map.quiet);
    picture.port().restoreState();
    drawCallouts(map, callouts);
    picture.finish();
}

}  // namespace

void setUpRender(CLI::App& command) {
    const auto given = std::make_shared<Given>();
    addMapOptions(command, given->map);
    addCalloutOptions(command, given->callouts);
    command.add_option("-o,--output", given->output, "Picture to write, .png, .svg or .pdf")
        ->required()
        ->type_name("OUT");
    command
        .add_option("--sea", given->sea,
                    "Colour of the globe under everything, within the outline that the projection "
                    "gives it; default none")
        ->type_name("COLOR");
    command.add_flag("--overwrite", given->overwrite, "Replace OUT when it exists");
    command.callback([given] { run(*given); });
}

}  // namespace mezalith::app
