// SPDX-License-Identifier: MIT
#include "apps/mezalith/map.hpp"

#include "apps/mezalith/arguments.hpp"
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/number_query.hpp"
#include "apps/mezalith/progress.hpp"
#include "apps/mezalith/text_output.hpp"
#include "host/failure.hpp"
#include "host/feature_index.hpp"
#include "host/halves.hpp"

#include <algorithm>
#include <array>
#include <cstdint>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

using Sources = std::vector<std::unique_ptr<host::DataSource>>;

Sources openSources(const std::vector<std::string>& names) {
    Sources sources;
    for (const std::string& name : names) {
        sources.push_back(std::make_unique<host::DataSource>(name));
    }
    return sources;
}

std::vector<std::string> layerNamesOf(const Sources& sources) {
    std::vector<std::string> names;
    for (const auto& source : sources) {
        for (const std::string& name : source->layerNames()) names.push_back(name);
    }
    return names;
}

/// How far features of the sources may reach into a view from around it, in view points.
double reachOf(const Sources& sources, LayerStyles& styles, double scaleFactor) {
    double reach = 0;
    for (const auto& source : sources) {
        const std::vector<std::string> names = source->layerNames();
        for (std::size_t i = 0; i < names.size(); ++i) {
            reach = std::max(reach, styles.reach(names[i], source->formsOf(i), scaleFactor));
        }
    }
    return reach;
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

/// What a view of `area` can show; everything for the view of everything.
std::optional<host::BoundingBox> areaToRead(host::ViewFrame frame,
                                            const std::optional<host::BoundingBox>& area) {
    if (!area) return std::nullopt;
    frame.area = *area;
    return host::MapView(frame).seen();
}

/// Of data with these bounds, what a projection is meant for, when the data is of more than that.
host::BoundingBox usualArea(const MzMapProjection& projection, const host::BoundingBox& bounds) {
    const MzRect use = projection.areaOfUse();
    if (use.size.width == 0) return bounds;
    const host::BoundingBox area = host::BoundingBox::of(use);
    constexpr double kWorld = 359;  // degrees
    const bool isWorld = bounds.width() > kWorld && bounds.maxY >= area.minY;
    return isWorld || bounds.holds(area) ? area : bounds;
}

}  // namespace

void addMapOptions(CLI::App& command, MapTexts& texts) {
    command.add_option("SOURCE", texts.sources, std::string(kSourceHelp) + "; drawn in this order")
        ->required()
        ->type_name("");
    command
        .add_option("--geodesic", texts.geodesics,
                    "Great circle to draw over the map, in the layer \"geodesic\"; repeatable")
        ->type_name("LON,LAT,LON,LAT")
        ->expected(1)
        ->take_all();
    command
        .add_option("--where", texts.where,
                    "Take only features of the sources that meet this, such as \"kind == 'land'\"")
        ->type_name("PREDICATE");
    command.add_option("--select", texts.select, "Draw features that meet this as selected")
        ->type_name("PREDICATE");
    addViewOptions(command, texts.view);
    addStyleOptions(command, texts.styles);
    command.add_flag("--quiet", texts.quiet, "Show no progress");
}

Map::Map(const MapTexts& texts)
    : sources_(texts.sources),
      options_(viewOptionsOf(texts.view)),
      styles_(texts.styles),
      geodesics_(geodesicsOf(texts.geodesics)),
      where_(texts.where ? predicateArgument("--where", *texts.where) : nullptr),
      select_(texts.select ? predicateArgument("--select", *texts.select) : nullptr),
      quiet_(texts.quiet) {}

bool Map::isSelected(const host::Feature& feature) const {
    return select_ != nullptr && select_->evaluateWithObject(&feature);
}

Map::Features Map::featuresInSight(const host::Layer& layer) const {
    Features features;
    for (const std::uint32_t place : host::FeatureIndex(layer.features).meeting(view_->seen())) {
        features.push_back(layer.features[place]);
    }
    return features;
}

host::BoundingBox Map::bounds() const {
    host::BoundingBox box;
    for (const host::Layer& layer : layers_) {
        for (const auto& feature : layer.features) box.add(host::boundsOf(*feature->geometry()));
    }
    return box;
}

void Map::load(double pixelRatio, double spacing, double leastReach) {
    host::ViewFrame frame{.projection = options_.projection,
                          .area = {},
                          .size = options_.size,
                          .pixelRatio = pixelRatio,
                          .scaleFactor = options_.scaleFactor,
                          .spacing = spacing};
    const Sources sources = openSources(sources_);
    std::vector<std::string> names = layerNamesOf(sources);
    if (!geodesics_.empty()) names.emplace_back(host::kGeodesicLayer);
    styles_.checkLayers(names);
    const double reach = reachOf(sources, styles_, options_.scaleFactor);
    frame.reach = std::max({leastReach, reach, geodesicReach()});
    const auto area = areaToRead(frame, options_.area);
    for (std::size_t i = 0; i < sources.size(); ++i) {
        for (std::size_t j = 0; j < sources[i]->layerNames().size(); ++j) {
            readLayer(i, *sources[i], j, area);
        }
    }
    frame.area = options_.area.value_or(usualArea(*options_.projection, bounds()));
    if (frame.area.isEmpty()) throw host::Failure(sources_.front(), "there is nothing to draw");
    view_ = std::make_unique<host::MapView>(frame);
    layers_.push_back(host::geodesicLayer(geodesics_, *view_));
    styleLayer(layers_.back());
}

double Map::geodesicReach() {
    if (geodesics_.empty()) return 0;
    return styles_.reach(std::string(host::kGeodesicLayer), std::array{host::Form::Line},
                         options_.scaleFactor);
}

void Map::readLayer(std::size_t source, host::DataSource& data, std::size_t index,
                    const std::optional<host::BoundingBox>& area) {
    const std::string task = "reading " + data.layerNames()[index];
    {
        const bool isWanted = Progress::isWanted(quiet_);
        Progress progress(isWanted);
        host::DataSource::Progress show;
        if (isWanted) show = [&](double share) { progress.show(task, share); };
        layers_.push_back(data.read(index, show, area));
    }
    host::Layer& layer = layers_.back();
    tellUnusable(sources_[source], layer.name, layer.unusable);
    styleLayer(layer);
    if (where_ != nullptr) {
        std::erase_if(layer.features, [this](const auto& feature) {
            return !where_->evaluateWithObject(feature.get());
        });
    }
    host::joinHalves(layer.features);
}

void Map::styleLayer(host::Layer& layer) {
    for (const auto& feature : layer.features) {
        feature->setStyle(styles_.style(layer.name, feature->form()));
    }
}

}  // namespace mezalith::app
