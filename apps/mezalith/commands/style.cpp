// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/output_file.hpp"
#include "apps/mezalith/style_file.hpp"
#include "apps/mezalith/text_output.hpp"
#include "host/failure.hpp"
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/platform/json/keyed_archive.hpp>

#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

// --- check

/// Says of each file whether it is a style; the last failure is thrown, the others are told.
void check(const std::vector<std::string>& files) {
    std::optional<host::Failure> last;
    TextOutput output;
    for (const std::string& file : files) {
        try {
            readStyleFile(file);
            output.write(file + " ok\n");
        } catch (const host::Failure& failure) {
            if (last) std::fprintf(stderr, "mezalith: %s\n", last->what());
            last = failure;
        }
    }
    output.finish();
    if (last) throw host::Failure(*last);
}

// --- convert

struct Conversion {
    std::string input;
    std::string output;
    bool overwrite = false;
};

void convert(const Conversion& given) {
    const StyleFormat format = styleFormatOf(given.output);
    const std::vector<std::byte> document = styleDocument(*readStyleFile(given.input), format);
    OutputFile file(given.output, given.overwrite);
    file.write(document);
    file.commit();
}

// --- default

/// Bytes of a geometry that is asked for nothing but its type.
constexpr std::size_t kCapacity = 64;

const std::map<std::string, std::shared_ptr<MzGeometry>>& geometriesByType() {
    static const std::map<std::string, std::shared_ptr<MzGeometry>> kGeometries{
        {"point", MzPointGeometry::initWithCapacity(kCapacity)},
        {"multi-point", MzMultiPointGeometry::initWithCapacity(kCapacity)},
        {"line", MzLineStringGeometry::initWithCapacity(kCapacity)},
        {"polygon", MzPolygonGeometry::initWithCapacity(kCapacity)},
        {"multi-polygon", MzMultiPolygonGeometry::initWithCapacity(kCapacity)}};
    return kGeometries;
}

void printDefault(const std::string& type) {
    const auto found = geometriesByType().find(type);
    if (found == geometriesByType().end()) {
        throw UsageError("TYPE", "\"" + type + "\" is none of line, multi-point, multi-polygon, " +
                                     "point and polygon");
    }
    TextOutput output;
    output.write(platform::archivedText(MzStyle::styleForGeometry(found->second.get()).get()));
    output.finish();
}

// --- arguments

void setUpStyleCheck(CLI::App& style) {
    const auto files = std::make_shared<std::vector<std::string>>();
    CLI::App* command = style.add_subcommand("check", "Say whether files are style documents");
    command->add_option("FILE", *files, "Style document, .json or .cbor")
        ->required()
        ->type_name("");
    command->callback([files] { check(*files); });
}

void setUpStyleConvert(CLI::App& style) {
    const auto given = std::make_shared<Conversion>();
    CLI::App* command = style.add_subcommand("convert", "Convert between JSON and CBOR");
    command->add_option("IN", given->input, "Style document, .json or .cbor")
        ->required()
        ->type_name("");
    command->add_option("OUT", given->output, "File to write, .json or .cbor")
        ->required()
        ->type_name("");
    command->add_flag("--overwrite", given->overwrite, "Replace OUT when it exists");
    command->callback([given] { convert(*given); });
}

void setUpStyleDefault(CLI::App& style) {
    const auto type = std::make_shared<std::string>();
    CLI::App* command =
        style.add_subcommand("default", "Print the style document a type of geometry begins with");
    command->add_option("TYPE", *type, "point, multi-point, line, polygon or multi-polygon")
        ->required()
        ->type_name("");
    command->callback([type] { printDefault(*type); });
}

}  // namespace

void setUpStyle(CLI::App& command) {
    command.require_subcommand(1);
    command.get_formatter()->label("SUBCOMMAND", "COMMAND");
    setUpStyleCheck(command);
    setUpStyleConvert(command);
    setUpStyleDefault(command);
    for (CLI::App* each : command.get_subcommands({})) each->group("Commands");
}

}  // namespace mezalith::app
