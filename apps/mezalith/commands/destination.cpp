// SPDX-License-Identifier: MIT
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/commands/point_fields.hpp"
#include <mezalith/projection/great_circle.hpp>

namespace mezalith::app {

void setUpDestination(CLI::App& command) {
    using Kind = NumberField::Kind;
    NumberQuery::setUp(
        command,
        {{"LON", Kind::Longitude, "Longitude of the start, degrees"},
         {"LAT", Kind::Latitude, "Latitude of the start, degrees"},
         {"METRES", Kind::Plain, "Distance along the great circle"},
         {"DEGREES", Kind::Plain, "Initial bearing, clockwise from north"}},
        [](std::span<const double> n) {
            return longitudeLatitude(MzPointWithDistanceAndBearing({n[0], n[1]}, n[2], n[3]));
        },
        {.footer = kUnwrapped});
}

}  // namespace mezalith::app
