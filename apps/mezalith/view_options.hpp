// SPDX-License-Identifier: MIT
#pragma once

#include "host/bounding_box.hpp"
#include <mezalith/platform/color.hpp>
#include <mezalith/projection/map_projection.hpp>

#include <memory>
#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace mezalith::app {

/// The view options of the command line, as they were given.
struct ViewTexts {
    std::string projection = "plate-carree";
    std::string bbox{};
    std::string size = "1200x800";
    std::string scaleFactor = "1";
    std::string pixelRatio{};
    std::string background = "white";
};

/// The view options, understood.
struct ViewOptions {
    std::shared_ptr<MzMapProjection> projection;
    std::optional<host::BoundingBox> area;  ///< degrees; the data's bounds when it is not given
    MzSize size{};                          ///< view points
    double scaleFactor = 1;
    std::optional<double>
        pixelRatio;  ///< backing pixels per view point; the format's when not given
    std::shared_ptr<const platform::Color> background;
};

/// Adds the options to `command`; `texts` must live as long.
void addViewOptions(CLI::App& command, ViewTexts& texts);

/// Throws a UsageError for what is not to be understood.
ViewOptions viewOptionsOf(const ViewTexts& texts);

/// "plate-carree"; "utm:ZONE" for the settled projection of a zone, 1 to 60, "utm:ZONEn" or
/// "utm:ZONEs" for its counterpart in a hemisphere; any reference system by its code, such as
/// "epsg:3857", or as a PROJ string. Throws a UsageError for what is none of these.
std::shared_ptr<MzMapProjection> projectionArgument(const std::string& text);

/// The help text that goes with it.
inline constexpr char kProjectionHelp[] =
    "plate-carree, utm:ZONE (1 to 60; with n or s the hemisphere), epsg:CODE or a PROJ string";

/// A colour as "#rgb", "#rrggbb", "#rrggbbaa" or by its CSS name; throws a UsageError about the
/// argument `name` for any other text.
std::shared_ptr<const platform::Color> colorArgument(const std::string& name,
                                                     const std::string& text);

}  // namespace mezalith::app
