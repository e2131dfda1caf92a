// SPDX-License-Identifier: MIT
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/commands/point_fields.hpp"
#include <mezalith/projection/great_circle.hpp>

namespace mezalith::app {

void setUpMidpoint(CLI::App& command) {
    command.footer("The longitude is not wrapped into -180 to 180.");
    NumberQuery::setUp(command, twoPoints(), [](std::span<const double> n) {
        return longitudeLatitude(MzGeodesicMidpoint(n[0], n[1], n[2], n[3]));
    });
}

}  // namespace mezalith::app
