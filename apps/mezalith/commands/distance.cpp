// SPDX-License-Identifier: MIT
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/commands/point_fields.hpp"
#include <mezalith/projection/geodesic_line.hpp>

namespace mezalith::app {

void setUpDistance(CLI::App& command) {
    NumberQuery::setUp(command, twoPoints(), [](std::span<const double> n) {
        return Answer{{"metres", MzGeodesicDistance({n[0], n[1]}, {n[2], n[3]})}};
    });
}

}  // namespace mezalith::app
