// SPDX-License-Identifier: MIT
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/commands/point_fields.hpp"
#include <mezalith/projection/great_circle.hpp>

namespace mezalith::app {

void setUpMidpoint(CLI::App& command) {
    NumberQuery::setUp(command, twoPoints(),
                       [](std::span<const double> n) {
                           return longitudeLatitude(MzGeodesicMidpoint(n[0], n[1], n[2], n[3]));
                       },
                       {.footer = kUnwrapped});
}

}  // namespace mezalith::app
