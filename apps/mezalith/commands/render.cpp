// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"
#include "apps/mezalith/callout_options.hpp"
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/layer_styles.hpp"
#include "apps/mezalith/number_query.hpp"
#include "apps/mezalith/picture.hpp"
#include "apps/mezalith/progress.hpp"
#include "apps/mezalith/view_options.hpp"
#include "host/data_source.hpp"
#include "host/failure.hpp"
#include "host/feature_index.hpp"
#include "host/geodesics.hpp"
#include "host/map_view.hpp"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mezalith::app {
namespace {

struct Given {
    std::vector<std::string> sources;
    std::vector<std::string> geodesics;
    std::string output;
    ViewTexts view;
    StyleTexts styles;
    CalloutTexts callouts;
    bool overwrite = false;
    bool quiet = false;
};

using Sources = std::vector<std::unique_ptr<host::DataSource>>;
using Layers = std::vector<host::Layer>;

Sources openSources(const std::vector<std::string>& names) {
    Sources sources;
    for (const std::string& name : names) {
        sources.push_back(std::make_unique<host::DataSource>(name));
    }
    return sources;
}

std::vector<host::Ends> geodesicsOf(const std::vector<std::string>& texts) {
    std::vector<host::Ends> lines;
    for (const std::string& text : texts) {
        const auto n = numbersArgument("--geodesic", text, ',', 4, "LON,LAT,LON,LAT");
        checkLatitude("--geodesic", n[1]);
        checkLatitude("--geodesic", n[3]);
        lines.push_back({{n[0], n[1]}, {n[2], n[3]}});
    }
    return lines;
}

std::vector<std::string> layerNamesOf(const Sources& sources) {
    std::vector<std::string> names;
    for (const auto& source : sources) {
        for (const std::string& name : source->layerNames()) names.push_back(name);
    }
    return names;
}

void tellWhatIsLeftOut(const std::string& source, const host::Layer& layer) {
    if (layer.unusable == 0) return;
    const std::string line = "mezalith: " + source + ": " + layer.name + ": " +
                             std::to_string(layer.unusable) + " left out, the first being " +
                             layer.firstReason;
    std::fprintf(stderr, "%s\n", host::inOneLine(line).c_str());
}

Layers readLayers(const Sources& sources, const Given& given,
                  const std::optional<host::BoundingBox>& area) {
    Layers layers;
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const std::vector<std::string> names = sources[i]->layerNames();
        for (std::size_t j = 0; j < names.size(); ++j) {
            {
                Progress progress(Progress::isWanted(given.quiet));
                layers.push_back(sources[i]->read(
                    j, [&](double share) { progress.show("reading " + names[j], share); }, area));
            }
            tellWhatIsLeftOut(given.sources[i], layers.back());
        }
    }
    return layers;
}

host::BoundingBox boundsOfLayers(const Layers& layers) {
    host::BoundingBox box;
    for (const host::Layer& layer : layers) {
        for (const auto& feature : layer.features) box.add(host::boundsOf(*feature->geometry()));
    }
    return box;
}

/// Callouts at the features, which have been drawn, over all of them.
void drawCallouts(host::MapView& view, const Layers& layers,
                  std::optional<host::Callouts> callouts) {
    if (!callouts) return;
    for (const host::Layer& layer : layers) {
        for (const auto& feature : layer.features) callouts->show(*feature, view);
    }
    view.drawSubviews();
}

void drawLayers(host::MapView& view, const Layers& layers, LayerStyles& styles, bool quiet) {
    Progress progress(Progress::isWanted(quiet));
    for (const host::Layer& layer : layers) {
        const auto seen = host::FeatureIndex(layer.features).meeting(view.seen());
        double done = 0;
        for (const std::uint32_t place : seen) {
            const auto& feature = layer.features[place];
            feature->setStyle(styles.style(layer.name, feature->form()));
            view.draw(*feature);
            progress.show("drawing " + layer.name, ++done / static_cast<double>(seen.size()));
        }
    }
}

/// What a view of `area` can show; everything for the view of everything.
std::optional<host::BoundingBox> areaToRead(host::ViewFrame frame,
                                            const std::optional<host::BoundingBox>& area) {
    if (!area) return std::nullopt;
    frame.area = *area;
    return host::MapView(frame).seen();
}

void run(const Given& given) {
    const ViewOptions options = viewOptionsOf(given.view);
    LayerStyles styles(given.styles);
    const std::optional<host::Callouts> callouts = calloutsOf(given.callouts);
    Picture picture(given.output, given.overwrite, options.size, options.pixelRatio);
    const std::vector<host::Ends> geodesics = geodesicsOf(given.geodesics);
    const Sources sources = openSources(given.sources);
    std::vector<std::string> names = layerNamesOf(sources);
    if (!geodesics.empty()) names.emplace_back(host::kGeodesicLayer);
    styles.checkLayers(names);
    host::ViewFrame frame{.projection = options.projection,
                          .area = {},
                          .size = options.size,
                          .pixelRatio = picture.pixelRatio(),
                          .scaleFactor = options.scaleFactor};
    Layers layers = readLayers(sources, given, areaToRead(frame, options.area));
    frame.area = options.area.value_or(boundsOfLayers(layers));
    if (frame.area.isEmpty())
        throw host::Failure(given.sources.front(), "there is nothing to draw");
    host::MapView view(frame);
    layers.push_back(host::geodesicLayer(geodesics, view));
    const platform::GraphicsContext context(&picture.port());
    fillBackground(picture.port(), options.size, *options.background);
    drawLayers(view, layers, styles, given.quiet);
    drawCallouts(view, layers, callouts);
    picture.finish();
}

}  // namespace

void setUpRender(CLI::App& command) {
    const auto given = std::make_shared<Given>();
    command
        .add_option("SOURCE", given->sources, std::string(kSourceHelp) + "; drawn in this order")
        ->required()
        ->type_name("");
    command.add_option("-o,--output", given->output, "Picture to write, .png, .svg or .pdf")
        ->required()
        ->type_name("OUT");
    command.add_flag("--overwrite", given->overwrite, "Replace OUT when it exists");
    command
        .add_option("--geodesic", given->geodesics,
                    "Great circle to draw over the map, in the layer \"geodesic\"; repeatable")
        ->type_name("LON,LAT,LON,LAT")
        ->expected(1)
        ->take_all();
    addViewOptions(command, given->view);
    addStyleOptions(command, given->styles);
    addCalloutOptions(command, given->callouts);
    command.add_flag("--quiet", given->quiet, "Show no progress");
    command.callback([given] { run(*given); });
}

}  // namespace mezalith::app
