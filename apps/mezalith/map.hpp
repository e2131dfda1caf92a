// SPDX-License-Identifier: MIT
#pragma once

#include "apps/mezalith/layer_styles.hpp"
#include "apps/mezalith/view_options.hpp"
#include "host/data_source.hpp"
#include "host/geodesics.hpp"
#include "host/map_view.hpp"
#include <mezalith/platform/predicates/format_predicate.hpp>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace mezalith::app {

/// What the commands that show a map are given, as it was given.
struct MapTexts {
    std::vector<std::string> sources{};
    std::vector<std::string> geodesics{};
    std::optional<std::string> where{};
    std::optional<std::string> select{};
    ViewTexts view{};
    StyleTexts styles{};
    bool quiet = false;
};

/// Adds SOURCE... and the options to `command`; `texts` must live as long.
void addMapOptions(CLI::App& command, MapTexts& texts);

/// A map that the command line asks for: layers of styled features, and the view that shows them.
class Map {
  public:
    using Features = std::vector<std::shared_ptr<host::Feature>>;
    using Layers = std::vector<host::Layer>;

    /// Throws a UsageError for an option that is not to be understood.
    explicit Map(const MapTexts& texts);

    const ViewOptions& options() const { return options_; }

    /// Reads the sources and makes the view, of `pixelRatio` backing pixels per view point and
    /// with vertices `spacing` backing pixels apart. Reads what the view shows, and what lies
    /// around it within the reach of its style or of `leastReach` view points. Says on standard
    /// error what is left out.
    /// Throws a UsageError for styles of layers that there are not, and a host::Failure for sources
    /// that cannot be read and when there is nothing to see.
    void load(double pixelRatio, double spacing = host::ViewFrame().spacing, double leastReach = 0);

    /// In the order of drawing.
    const Layers& layers() const { return layers_; }
    /// Those of a layer's features that the view may show, in the order of drawing; after `load`.
    Features featuresInSight(const host::Layer& layer) const;
    /// After `load`.
    host::MapView& view() { return *view_; }
    bool isSelected(const host::Feature& feature) const;

  private:
    using Predicate = std::shared_ptr<const platform::FormatPredicate>;

    void readLayer(std::size_t source, host::DataSource& data, std::size_t index,
                   const std::optional<host::BoundingBox>& area);
    void styleLayer(host::Layer& layer);
    double geodesicReach();
    host::BoundingBox bounds() const;

    std::vector<std::string> sources_;
    ViewOptions options_;
    LayerStyles styles_;
    std::vector<host::Ends> geodesics_;
    Predicate where_;
    Predicate select_;
    bool quiet_;
    Layers layers_;
    std::unique_ptr<host::MapView> view_;
};

}  // namespace mezalith::app
