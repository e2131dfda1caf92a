// SPDX-License-Identifier: MIT
#pragma once

#include <span>

namespace CLI {
class App;
}

namespace mezalith::app {

/// One command of the program. Help, dispatch, manual page and completion all come from the table
/// of these.
struct Command {
    const char* name;
    const char* category;
    const char* help;
    void (*setUp)(CLI::App& command);  ///< adds arguments and what the command does
};

/// All commands, by category.
std::span<const Command> commandTable();

/// The help text of a SOURCE.
inline constexpr char kSourceHelp[] =
    "File of map data, FILE:LAYER for one layer of it, a .wkb file, or PG:... for a database";

void setUpRender(CLI::App& command);
void setUpIdentify(CLI::App& command);
void setUpInfo(CLI::App& command);
void setUpCheck(CLI::App& command);
void setUpWKB(CLI::App& command);
void setUpStyle(CLI::App& command);
void setUpProject(CLI::App& command);
void setUpDistance(CLI::App& command);
void setUpBearing(CLI::App& command);
void setUpMedialAxis(CLI::App& command);
void setUpMidpoint(CLI::App& command);
void setUpGeodesic(CLI::App& command);
void setUpDestination(CLI::App& command);
void setUpDeclination(CLI::App& command);
void setUpDeclinationMap(CLI::App& command);

}  // namespace mezalith::app
