// SPDX-License-Identifier: MIT
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/commands/point_fields.hpp"
#include "apps/mezalith/view_options.hpp"

#include <memory>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

struct Given {
    std::shared_ptr<MzMapProjection> projection;
    bool inverse = false;
};

Answer answer(const Given& given, MzPoint point) {
    if (given.inverse) {
        return longitudeLatitude(given.projection->longitudeLatitudeForProjectedCoordinate(point));
    }
    checkLatitude("LAT", point.y);
    const MzPoint plane = given.projection->projectedCoordinateForLongitudeLatitude(point);
    return {{"x", plane.x}, {"y", plane.y}};
}

}  // namespace

void setUpProject(CLI::App& command) {
    using Kind = NumberField::Kind;
    const auto given = std::make_shared<Given>();
    command
        .add_option_function<std::string>(
            "--projection",
            [given](const std::string& text) { given->projection = projectionArgument(text); },
            kProjectionHelp)
        ->type_name("PROJECTION")
        ->required();
    command.add_flag("--inverse", given->inverse, "Take X Y and answer longitude and latitude");
    NumberQuery::setUp(command,
                       {{"LON", Kind::Longitude, "Longitude, degrees; X with --inverse"},
                        {"LAT", Kind::Plain, "Latitude, degrees; Y with --inverse"}},
                       [given](std::span<const double> n) {
                           return answer(*given, {n[0], n[1]});
                       });
}

}  // namespace mezalith::app
