// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"
#include "apps/mezalith/axis.hpp"
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/layer_styles.hpp"
#include "apps/mezalith/output_file.hpp"
#include "apps/mezalith/picture.hpp"
#include "apps/mezalith/text_output.hpp"
#include "apps/mezalith/view_options.hpp"
#include "host/data_source.hpp"
#include "host/failure.hpp"
#include "host/letter_case.hpp"
#include "host/map_view.hpp"

#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

struct Given {
    std::string source;
    std::string output;
    std::optional<std::size_t> feature;
    AxisQuery query;
    bool deepest = false;
    bool overwrite = false;
    ViewTexts view;
};

using Features = std::vector<std::shared_ptr<host::Feature>>;

struct Found {
    Features features;       ///< with the polygons
    std::vector<Axis> axes;  ///< of the polygons that have one
};

Features readFeatures(const Given& given) {
    host::DataSource source(given.source);
    Features features;
    for (std::size_t i = 0; i < source.layerNames().size(); ++i) {
        const host::Layer layer = source.read(i);
        tellUnusable(given.source, layer.name, layer.unusable);
        features.insert(features.end(), layer.features.begin(), layer.features.end());
    }
    if (!given.feature) return features;
    if (*given.feature >= features.size()) {
        throw host::Failure(given.source, "it has " + std::to_string(features.size()) +
                                              " features, the first being number 0");
    }
    return {features[*given.feature]};
}

Found findAxes(const Given& given) {
    Found found{readFeatures(given), {}};
    for (const auto& feature : found.features) {
        for (const MzPolygon& polygon : polygonsOfFeature(*feature)) {
            if (auto axis = axisOf(polygon, given.query)) found.axes.push_back(std::move(*axis));
        }
    }
    if (found.axes.empty()) {
        throw host::Failure(given.source, "it has no such polygon or ring with an inside");
    }
    return found;
}

void reportLoops(const Given& given, std::span<const Axis> axes) {
    for (std::size_t i = 0; i < axes.size(); ++i) {
        if (axes[i].report.empty()) continue;
        const std::string line =
            "mezalith: " + given.source + ": polygon " + std::to_string(i) + ": " + axes[i].report;
        std::fprintf(stderr, "%s\n", host::inOneLine(line).c_str());
    }
}

std::string deepestText(std::span<const Axis> axes) {
    std::string text;
    for (const Axis& axis : axes) {
        if (!axis.deepest) continue;
        text += jsonNumber(axis.deepest->point.x) + " " + jsonNumber(axis.deepest->point.y) + " " +
                jsonNumber(axis.deepest->clearance) + "\n";
    }
    return text;
}

std::string collectionText(std::span<const Axis> axes) {
    std::string text = "{\"type\":\"FeatureCollection\",\"features\":[\n";
    for (std::size_t i = 0; i < axes.size(); ++i) {
        text += (i > 0 ? ",\n" : "") + geoJSONOf(axes[i], i);
    }
    return text + "\n]}\n";
}

bool isGeoJSON(const std::string& path) {
    const std::string ending = std::filesystem::path(path).extension().string();
    return host::isEqualIgnoringCase(ending, ".geojson");
}

void writeFile(const Given& given, const std::string& text) {
    OutputFile file(given.output, given.overwrite);
    file.write(std::as_bytes(std::span(text)));
    file.commit();
}

void draw(const Given& given, const Found& found) {
    const ViewOptions options = viewOptionsOf(given.view);
    Picture picture(given.output, given.overwrite, options.size, options.pixelRatio);
    StyleTexts texts;
    texts.stroke = {"axis:#5d7687", "circle:#c0392b", "spine:#8e44ad"};
    texts.width = {"axis:0.8", "circle:1.2", "spine:2.5"};
    LayerStyles styles(texts);
    host::BoundingBox area;
    for (const auto& feature : found.features) area.add(host::boundsOf(*feature->geometry()));
    host::MapView view({.projection = options.projection,
                        .area = options.area.value_or(area),
                        .size = options.size,
                        .pixelRatio = picture.pixelRatio(),
                        .scaleFactor = options.scaleFactor,
                        .spacing = picture.spacing()});
    const platform::GraphicsContext context(&picture.port());
    fillBackground(picture.port(), options.size, *options.background);
    const auto show = [&](const Features& features) {
        for (const auto& feature : features) {
            feature->setStyle(styles.style(feature->kind(), feature->form()));
            view.draw(*feature);
        }
    };
    show(found.features);
    for (const Axis& axis : found.axes) show(featuresOf(axis, true));
    picture.finish();
}

void run(const Given& given) {
    const bool isDrawing = !given.output.empty() && !isGeoJSON(given.output);
    if (isDrawing) pictureFormatOf(given.output);
    const Found found = findAxes(given);
    reportLoops(given, found.axes);
    if (isDrawing) return draw(given, found);
    const bool isList = given.deepest && !given.query.wantsSpine && given.output.empty();
    const std::string text = isList ? deepestText(found.axes) : collectionText(found.axes);
    if (!given.output.empty()) return writeFile(given, text);
    TextOutput output;
    output.write(text);
    output.finish();
}

void addQueryOptions(CLI::App& command, Given& given) {
    command
        .add_option("--feature", given.feature,
                    "Only this feature of the source, the first being 0")
        ->type_name("N");
    command
        .add_option("--ring", given.query.ring,
                    "Only this ring of each polygon, the outer one being 0")
        ->type_name("K");
    auto* settled = command.add_flag("--settled", given.query.isSettled,
                                     "The settled axis of one ring, with the loops it took");
    command
        .add_option_function<std::string>(
            "--prune",
            [&given](const std::string& text) {
                given.query.ratio = positiveArgument("--prune", text);
            },
            "Leave out branches that reach less than R times the clearance where they hang")
        ->type_name("R")
        ->excludes(settled);
    command.add_flag("--deepest", given.deepest,
                     "Print of each polygon its deepest point and the clearance there");
    command
        .add_flag("--spine", given.query.wantsSpine,
                  "Add the line on which a name is set, pruned by 2 unless --prune says otherwise")
        ->excludes(settled);
}

}  // namespace

void setUpMedialAxis(CLI::App& command) {
    const auto given = std::make_shared<Given>();
    command.footer(
        "Without OUT, prints GeoJSON: the nodes of the medial axis with their clearance, its arcs, "
        "the deepest point and, where asked for, the spine with the widths along it. Lengths are "
        "in the units of the data. A picture shows the polygons, the axis, the largest circle "
        "inside and the spine.");
    command.add_option("SOURCE", given->source, kSourceHelp)->required()->type_name("");
    addQueryOptions(command, *given);
    command
        .add_option("-o,--output", given->output,
                    "File to write, .geojson, or a picture, .png, .svg or .pdf")
        ->type_name("OUT");
    command.add_flag("--overwrite", given->overwrite, "Replace OUT when it exists");
    addViewOptions(command, given->view);
    command.callback([given] { run(*given); });
}

}  // namespace mezalith::app
