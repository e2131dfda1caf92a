// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/output_file.hpp"
#include "apps/mezalith/progress.hpp"
#include "apps/mezalith/text_output.hpp"
#include "host/failure.hpp"
#include "host/validity_check.hpp"
#include <mezalith/platform/number_text.hpp>

#include <cmath>
#include <memory>
#include <optional>
#include <string>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

constexpr char kFooter[] =
    "Prints a line for each feature whose geometry is not valid or cannot be read, with the first "
    "thing that is wrong and where, in the source's own coordinates, and a line for each layer. "
    "Exits with 1 when there is such a feature and no repaired copy is asked for. The copy has all "
    "features: those that are valid as they are; repaired ones in two dimensions, which their "
    "lines tell where that drops Z or M, and with curves as lines; those beyond repair as they "
    "are, and without a geometry where that cannot be read.";

struct Given {
    std::string source;
    std::string repaired;
    bool overwrite = false;
    bool json = false;
    bool quiet = false;
};

std::string textOf(MzPoint place) {
    if (std::isnan(place.x) && std::isnan(place.y)) return "none";
    return platform::shortestText(place.x) + " " + platform::shortestText(place.y);
}

/// What is to be known of the repair, after a comma.
std::string remedyOf(const host::InvalidRecord& record) {
    if (record.isMissing) return ", beyond repair, missing in a copy";
    if (!record.isRepairable) return ", beyond repair";
    return record.dropped.empty() ? "" : ", the repair drops " + record.dropped;
}

std::string textOf(const host::InvalidRecord& record) {
    return "feature " + std::to_string(record.id) + " layer " + record.layer + " at " +
           textOf(record.defect.place) + " " + record.defect.reason + remedyOf(record);
}

std::string jsonOf(const host::InvalidRecord& record) {
    JsonObject object;
    object.add("layer", record.layer)
        .addJson("feature", std::to_string(record.id))
        .add("reason", record.defect.reason)
        .add("x", record.defect.place.x)
        .add("y", record.defect.place.y)
        .addJson("repairable", record.isRepairable ? "true" : "false");
    if (record.isMissing) object.addJson("missing", "true");
    if (!record.dropped.empty()) object.add("dropped", record.dropped);
    return object.text();
}

std::string textOf(const host::LayerValidity& layer) {
    return "layer " + layer.layer + " features " + std::to_string(layer.records) + " invalid " +
           std::to_string(layer.invalid);
}

std::string jsonOf(const host::LayerValidity& layer) {
    JsonObject object;
    object.add("layer", layer.layer).add("features", layer.records).add("invalid", layer.invalid);
    return object.text();
}

std::string countedOf(std::size_t part, std::size_t all) {
    return std::to_string(part) + " of " + std::to_string(all) + " features";
}

std::string lossesOf(const host::LayerValidity& all) {
    std::string text =
        countedOf(all.lost, all.records) + " are beyond repair and copied as they are";
    if (all.missing > 0) {
        text += ", " + std::to_string(all.missing) + " of them without a geometry";
    }
    return text;
}

void run(const Given& given) {
    std::optional<OutputFile> file;
    if (!given.repaired.empty()) {
        const auto fault = host::faultOfCopyName(given.source, given.repaired);
        if (fault) throw UsageError(given.repaired, *fault);
        file.emplace(given.repaired, given.overwrite);
    }
    TextOutput output;
    Progress progress(Progress::isWanted(given.quiet));
    host::LayerValidity all;
    host::ValidityCheck check;
    const auto write = [&](const auto& line) {
        output.write((given.json ? jsonOf(line) : textOf(line)) + "\n");
    };
    check.found = [&](const host::InvalidRecord& record) { write(record); };
    check.done = [&](const host::LayerValidity& layer) {
        write(layer);
        all.records += layer.records;
        all.invalid += layer.invalid;
        all.lost += layer.lost;
        all.missing += layer.missing;
    };
    check.progress = [&](double share) { progress.show(given.source, share); };
    if (file) check.copy = given.repaired;
    const std::vector<std::byte> copy = host::checkValidity(given.source, check);
    if (file) {
        file->write(copy);
        file->commit();
    }
    output.finish();
    if (!file && all.invalid > 0) {
        throw host::Failure(given.source, countedOf(all.invalid, all.records) + " are not valid");
    }
    if (file && all.lost > 0) throw host::Failure(given.source, lossesOf(all));
}

}  // namespace

void setUpCheck(CLI::App& command) {
    const auto given = std::make_shared<Given>();
    command.add_option("SOURCE", given->source, kSourceHelp)->required()->type_name("");
    command
        .add_option("--repair", given->repaired,
                    "Write a copy with repaired geometries, .gpkg or .geojson (.wkb of .wkb)")
        ->type_name("OUT");
    command.add_flag("--overwrite", given->overwrite, "Replace OUT when it exists");
    command.add_flag("--json", given->json, "Print one JSON object a line");
    command.add_flag("--quiet", given->quiet, "Show no progress");
    command.callback([given] { run(*given); });
    command.footer(kFooter);
}

}  // namespace mezalith::app
