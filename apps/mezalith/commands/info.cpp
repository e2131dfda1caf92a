// SPDX-License-Identifier: MIT
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/progress.hpp"
#include "apps/mezalith/text_output.hpp"
#include "host/data_source.hpp"

#include <memory>
#include <string>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

struct Given {
    std::string source;
    bool json = false;
    bool quiet = false;
};

std::string textOf(const host::LayerDescription& layer) {
    std::string text = "layer " + layer.name + " features " + std::to_string(layer.features) +
                       " vertices " + std::to_string(layer.vertices) + " bounds " +
                       boundsText(layer.bounds) + " types";
    for (const auto& [type, count] : layer.types) text += " " + type + " " + std::to_string(count);
    return text;
}

std::string jsonOf(const host::LayerDescription& layer) {
    JsonObject types;
    for (const auto& [type, count] : layer.types) types.add(type, count);
    JsonObject object;
    object.add("layer", layer.name)
        .add("features", layer.features)
        .add("vertices", layer.vertices)
        .addJson("bounds", boundsJson(layer.bounds))
        .addJson("types", types.text());
    return object.text();
}

void run(const Given& given) {
    host::DataSource source(given.source);
    TextOutput output;
    for (std::size_t i = 0; i < source.layerNames().size(); ++i) {
        const host::LayerDescription layer = [&] {
            Progress progress(Progress::isWanted(given.quiet));
            const std::string task = source.layerNames()[i];
            return source.describe(i, [&](double share) { progress.show(task, share); });
        }();
        output.write((given.json ? jsonOf(layer) : textOf(layer)) + "\n");
        tellUnusable(given.source, layer.name, layer.unusable);
    }
    output.finish();
}

}  // namespace

void setUpInfo(CLI::App& command) {
    const auto given = std::make_shared<Given>();
    command.add_option("SOURCE", given->source, kSourceHelp)->required()->type_name("");
    command.add_flag("--json", given->json, "Print one JSON object a line");
    command.add_flag("--quiet", given->quiet, "Show no progress");
    command.callback([given] { run(*given); });
}

}  // namespace mezalith::app
