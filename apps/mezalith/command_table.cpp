// SPDX-License-Identifier: MIT
#include "apps/mezalith/command_table.hpp"

#include <array>

namespace mezalith::app {
namespace {

constexpr auto kCommands = std::to_array<Command>({
    {"render", "Maps", "Draw a map as PNG, SVG or PDF", setUpRender},
    {"identify", "Maps", "Say which features a click on a map hits", setUpIdentify},
    {"style", "Maps", "Check, convert and begin style documents", setUpStyle},
    {"info", "Data", "Say what a source of map data holds", setUpInfo},
    {"check", "Data", "Find geometries that are not valid, and repair them", setUpCheck},
    {"wkb", "Data", "Inspect and convert Well-Known Binary", setUpWKB},
    {"medial-axis", "Data", "Find medial axes, deepest points and spines of polygons",
     setUpMedialAxis},
    {"project", "Geodesy", "Project longitude and latitude, or back", setUpProject},
    {"distance", "Geodesy", "Great-circle distance between two points, metres", setUpDistance},
    {"bearing", "Geodesy", "Initial bearing from one point to another, degrees", setUpBearing},
    {"midpoint", "Geodesy", "Point halfway along a great circle", setUpMidpoint},
    {"geodesic", "Geodesy", "Points along the great circle between two points", setUpGeodesic},
    {"destination", "Geodesy", "Point at a distance and bearing from another", setUpDestination},
    {"declination", "Magnetism", "Angle from true to magnetic north, degrees", setUpDeclination},
    {"declination-map", "Magnetism", "Draw lines of equal declination over a map",
     setUpDeclinationMap},
});

}  // namespace

std::span<const Command> commandTable() { return kCommands; }

}  // namespace mezalith::app
