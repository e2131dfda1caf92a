// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/geometry_format.hpp"
#include "apps/mezalith/hexadecimal.hpp"
#include "apps/mezalith/output_file.hpp"
#include "apps/mezalith/text_output.hpp"
#include "host/failure.hpp"
#include "host/survey.hpp"
#include "host/wkb_file.hpp"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

using Bytes = std::vector<std::byte>;

struct Given {
    std::string file;
    std::optional<std::string> hex;
    std::optional<std::string> wkt;
    std::string geoJSON;
    std::optional<GeometryFormat> from;
    std::optional<GeometryOutput> to;
    std::optional<std::int32_t> srid;
    std::string output;
    bool isBigEndian = false;
    bool toGeoJSON = false;
    bool digits = false;
    bool json = false;
    bool overwrite = false;
};

/// What a geometry is to be read from.
struct Input {
    std::string name;  ///< for messages
    Bytes bytes;
    GeometryFormat format;
};

Input inputOf(const Given& given) {
    if (given.hex) {
        return {"--hex", bytesFromHexadecimal("--hex", *given.hex), GeometryFormat::Binary};
    }
    if (given.wkt) {
        const auto text = std::as_bytes(std::span(*given.wkt));
        return {"--wkt", {text.begin(), text.end()}, GeometryFormat::WKT};
    }
    if (!given.geoJSON.empty()) {
        return {given.geoJSON, host::readFile(given.geoJSON), GeometryFormat::GeoJSON};
    }
    Bytes bytes = host::readFile(given.file);
    const GeometryFormat format = given.from.value_or(likelyFormatOf(bytes));
    return {given.file, std::move(bytes), format};
}

std::array<std::pair<const char*, std::size_t>, 5> figuresOf(const GivenGeometry& input,
                                                             const host::Survey& survey) {
    return {{{"parts", survey.parts},
             {"rings", survey.rings},
             {"vertices", survey.vertices},
             {"bytes", input.reading.length},
             {"trailing", input.size - input.reading.length}}};
}

std::string_view byteOrderOf(const GivenGeometry& input) {
    if (input.format != GeometryFormat::Binary) return "none";
    return input.reading.isLittleEndian ? "little" : "big";
}

std::string textOf(const GivenGeometry& input, const host::Survey& survey) {
    const auto& srid = input.reading.srid;
    std::string text = "type ";
    text += MzGeometryTypeName(input.reading.geometry.record()->type);
    text.append("\nform ").append(formNameOf(input));
    text.append("\nbyte-order ").append(byteOrderOf(input));
    text.append("\nsrid ").append(srid ? std::to_string(*srid) : "none");
    text.append("\ndimensions ").append(dimensionsOf(input.reading));
    for (const auto& [name, value] : figuresOf(input, survey)) {
        text += std::string("\n") + name + " " + std::to_string(value);
    }
    return text + "\nbounds " + boundsText(survey.bounds) + "\n";
}

std::string jsonOf(const GivenGeometry& input, const host::Survey& survey) {
    const auto& srid = input.reading.srid;
    JsonObject object;
    object.add("type", MzGeometryTypeName(input.reading.geometry.record()->type));
    object.add("form", formNameOf(input)).add("byteOrder", byteOrderOf(input));
    object.addJson("srid", srid ? std::to_string(*srid) : "null");
    object.add("dimensions", std::string_view(dimensionsOf(input.reading)));
    for (const auto& [name, value] : figuresOf(input, survey)) object.add(name, value);
    return object.addJson("bounds", boundsJson(survey.bounds)).text() + "\n";
}

/// What is to be written; nothing when the geometry is only to be inspected.
std::optional<GeometryOutput> wantedOutput(const Given& given) {
    if (given.to) return given.to;
    if (given.toGeoJSON) return GeometryOutput{GeometryFormat::GeoJSON, {}};
    if (!given.geoJSON.empty()) return GeometryOutput{};
    return {};
}

Bytes converted(const Given& given, const GivenGeometry& input, GeometryOutput output) {
    output.binary.isLittleEndian = !given.isBigEndian;
    output.binary.srid = given.srid ? given.srid : input.reading.srid;
    const bool isDigits = given.digits || given.output.empty();
    if (output.format == GeometryFormat::Binary && isDigits) output.format = GeometryFormat::Digits;
    return writtenGeometry(*input.reading.geometry.record(), output);
}

Bytes resultOf(const Given& given, const GivenGeometry& input) {
    if (const auto wanted = wantedOutput(given)) return converted(given, input, *wanted);
    const host::Survey survey = host::surveyOf(*input.reading.geometry.record());
    const std::string text = given.json ? jsonOf(input, survey) : textOf(input, survey);
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

Bytes resultOf(const Given& given) {
    const Input input = inputOf(given);
    try {
        return resultOf(given, readGeometry(input.bytes, input.format));
    } catch (const host::Failure& failure) {
        throw failure.within(input.name);
    }
}

void checkInputs(const Given& given) {
    const std::array<bool, 4> inputs{!given.file.empty(), given.hex.has_value(),
                                     given.wkt.has_value(), !given.geoJSON.empty()};
    if (std::ranges::count(inputs, true) != 1) {
        throw UsageError("wkb", "one of FILE, --hex, --wkt and --from-geojson is wanted");
    }
    if (given.hex == "") throw UsageError("--hex", "the text is empty");
    if (given.wkt == "") throw UsageError("--wkt", "the text is empty");
}

/// Refuses options that would do nothing.
void checkOptions(const Given& given) {
    const auto refuse = [](bool isIdle, const char* option, const char* why) {
        if (isIdle) throw UsageError(option, why);
    };
    const auto wanted = wantedOutput(given);
    const bool isBinary = wanted && wanted->format == GeometryFormat::Binary;
    const bool hasSRID = isBinary && (wanted->binary.form == MzWKBForm::EWKB ||
                                      wanted->binary.form == MzWKBForm::GeoPackage);
    constexpr char kBinaryOnly[] = "only for what becomes wkb, iso, ewkb or gpkg";
    refuse(given.from && given.file.empty(), "--from", "only for a FILE");
    refuse(given.json && wanted, "--json", "not for what is converted");
    refuse(given.isBigEndian && !isBinary, "--big-endian", kBinaryOnly);
    refuse(given.digits && !isBinary, "--digits", kBinaryOnly);
    refuse(given.srid && !hasSRID, "--srid", "only for what becomes ewkb or gpkg");
}

void run(const Given& given) {
    checkInputs(given);
    checkOptions(given);
    if (given.output.empty()) {
        const Bytes result = resultOf(given);
        TextOutput output;
        output.write({reinterpret_cast<const char*>(result.data()), result.size()});
        return output.finish();
    }
    OutputFile file(given.output, given.overwrite);
    file.write(resultOf(given));
    file.commit();
}

void addInputs(CLI::App& command, Given& given) {
    command
        .add_option("FILE", given.file,
                    "File with one geometry: Well-Known Binary of any form, its hexadecimal "
                    "digits, Well-Known Text or GeoJSON")
        ->type_name("");
    command
        .add_option_function<std::string>(
            "--hex", [&given](const std::string& text) { given.hex = text; },
            "The geometry itself, in hexadecimal, with or without \\x or 0x before it")
        ->type_name("HEX");
    command
        .add_option_function<std::string>(
            "--wkt", [&given](const std::string& text) { given.wkt = text; },
            "The geometry itself, as Well-Known Text")
        ->type_name("TEXT");
    command
        .add_option("--from-geojson", given.geoJSON,
                    "Make Well-Known Binary, or what --to says, of this file")
        ->type_name("FILE");
    command
        .add_option_function<std::string>(
            "--from",
            [&given](const std::string& text) {
                given.from = geometryFormatArgument("--from", text);
            },
            "What FILE is, where its first byte misleads: binary, hex, wkt or geojson")
        ->type_name("FORM");
}

void addOutputs(CLI::App& command, Given& given) {
    auto* toGeoJSON =
        command.add_flag("--to-geojson", given.toGeoJSON, "Print the geometry as GeoJSON");
    command
        .add_option_function<std::string>(
            "--to",
            [&given](const std::string& text) { given.to = geometryOutputArgument("--to", text); },
            "Convert to wkb, iso, ewkb, gpkg (what a GeoPackage holds), wkt or geojson")
        ->type_name("FORM")
        ->excludes(toGeoJSON);
    command.add_flag("--big-endian", given.isBigEndian,
                     "Write big-endian instead of little-endian");
    command
        .add_option("--srid", given.srid,
                    "SRID of ewkb and gpkg; without it that of the input, if it has one")
        ->type_name("N");
    command.add_flag("--digits", given.digits, "Write binary to OUT in hexadecimal, too");
    command.add_flag("--json", given.json, "Print what it holds as a JSON object");
    command
        .add_option("-o,--output", given.output,
                    "Write here; without it Well-Known Binary is printed in hexadecimal")
        ->type_name("OUT");
    command.add_flag("--overwrite", given.overwrite, "Replace OUT when it exists");
}

}  // namespace

void setUpWKB(CLI::App& command) {
    const auto given = std::make_shared<Given>();
    command.footer(
        "Without --to says what the geometry is: its type and form, byte order, SRID and "
        "dimensions, what it holds and where it lies. Third and fourth coordinates are left out of "
        "what is converted; everything else keeps its last bit.");
    addInputs(command, *given);
    addOutputs(command, *given);
    command.callback([given] { run(*given); });
}

}  // namespace mezalith::app
