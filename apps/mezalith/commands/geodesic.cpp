// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/commands/point_fields.hpp"
#include "host/failure.hpp"
#include <mezalith/projection/geodesic_line.hpp>

#include <memory>

#include <CLI/CLI.hpp>

namespace mezalith::app {

void setUpGeodesic(CLI::App& command) {
    const auto resolution = std::make_shared<double>();
    command.footer(
        "The points run from the first to the second, equally spaced. Longitudes are not wrapped "
        "into -180 to 180: each is within 180 degrees of the one before. Lines that come on "
        "standard input are parted by an empty line.");
    command
        .add_option_function<std::string>(
            "--resolution",
            [resolution](const std::string& text) {
                *resolution = positiveArgument("--resolution", text);
            },
            "Most that two points may be apart, metres")
        ->type_name("METRES")
        ->required();
    NumberQuery::setUpList(
        command, twoPoints(), [resolution](std::span<const double> n, const AnswerSink& sink) {
            const auto points = MzGeodesicPoints({n[0], n[1]}, {n[2], n[3]}, *resolution);
            if (points.empty()) throw host::Failure("--resolution", "too many points");
            for (const MzPoint point : points) sink(longitudeLatitude(point));
        });
}

}  // namespace mezalith::app
