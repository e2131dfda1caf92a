// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"
#include "apps/mezalith/command_table.hpp"
#include "apps/mezalith/hexadecimal.hpp"
#include "apps/mezalith/output_file.hpp"
#include "apps/mezalith/text_output.hpp"
#include "host/failure.hpp"
#include "host/geojson.hpp"
#include "host/wkb_file.hpp"
#include "host/wkb_walk.hpp"

#include <array>
#include <memory>
#include <string>
#include <vector>

namespace mezalith::app {
namespace {

using Bytes = std::vector<std::byte>;

struct Given {
    std::string file;
    std::string hex;
    std::string geoJSON;
    std::string output;
    bool toGeoJSON = false;
    bool json = false;
    bool overwrite = false;
};

/// Runs `work` on what came from `name`, which its failures then tell.
template <typename Work>
auto about(const std::string& name, const Work& work) {
    try {
        return work();
    } catch (const host::Failure& failure) {
        throw failure.within(name);
    }
}

std::string inputName(const Given& given) { return given.file.empty() ? "--hex" : given.file; }

Bytes inputBytes(const Given& given) {
    if (!given.file.empty()) return host::readFile(given.file);
    return bytesFromHexadecimal("--hex", given.hex);
}

std::array<std::pair<const char*, std::size_t>, 5> figuresOf(const host::WKBSurvey& survey,
                                                             std::size_t size) {
    return {{{"parts", survey.parts},
             {"rings", survey.rings},
             {"vertices", survey.vertices},
             {"bytes", survey.bytes},
             {"trailing", size - survey.bytes}}};
}

const char* byteOrderOf(const host::WKBSurvey& survey) {
    return survey.littleEndian ? "little" : "big";
}

std::string textOf(const host::WKBSurvey& survey, std::size_t size) {
    std::string text = "type ";
    text += host::geometryTypeName(survey.type);
    text += std::string("\nbyte-order ") + byteOrderOf(survey);
    for (const auto& [name, value] : figuresOf(survey, size)) {
        text += std::string("\n") + name + " " + std::to_string(value);
    }
    return text + "\nbounds " + boundsText(survey.bounds);
}

std::string jsonOf(const host::WKBSurvey& survey, std::size_t size) {
    JsonObject object;
    object.add("type", host::geometryTypeName(survey.type));
    object.add("byteOrder", std::string_view(byteOrderOf(survey)));
    for (const auto& [name, value] : figuresOf(survey, size)) object.add(name, value);
    return object.addJson("bounds", boundsJson(survey.bounds)).text();
}

/// The result as bytes: text with a line end, or Well-Known Binary for a file.
Bytes resultOf(const Given& given) {
    std::string text;
    if (!given.geoJSON.empty()) {
        const Bytes document = host::readFile(given.geoJSON);
        const std::string_view view(reinterpret_cast<const char*>(document.data()),
                                    document.size());
        Bytes wkb = about(given.geoJSON, [&] { return host::wkbFromGeoJSON(view); });
        if (!given.output.empty()) return wkb;
        text = hexadecimalFromBytes(wkb);
    } else {
        const Bytes wkb = inputBytes(given);
        text = about(inputName(given), [&] {
            if (given.toGeoJSON) return host::geoJSONFromWKB(wkb);
            const host::WKBSurvey survey = host::surveyWKB(wkb);
            return given.json ? jsonOf(survey, wkb.size()) : textOf(survey, wkb.size());
        });
    }
    text += "\n";
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

void run(const Given& given) {
    const int inputs =
        int{!given.file.empty()} + int{!given.hex.empty()} + int{!given.geoJSON.empty()};
    if (inputs != 1) throw UsageError("wkb", "one of FILE, --hex and --from-geojson is wanted");
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

}  // namespace

void setUpWKB(CLI::App& command) {
    const auto given = std::make_shared<Given>();
    command.add_option("FILE", given->file, "File with one geometry")->type_name("");
    command.add_option("--hex", given->hex, "The geometry itself, in hexadecimal")
        ->type_name("HEX");
    command.add_option("--from-geojson", given->geoJSON, "Make Well-Known Binary of this file")
        ->type_name("FILE");
    command.add_flag("--to-geojson", given->toGeoJSON, "Print the geometry as GeoJSON");
    command.add_flag("--json", given->json, "Print what it holds as a JSON object");
    command
        .add_option("-o,--output", given->output,
                    "Write here; without it Well-Known Binary is printed in hexadecimal")
        ->type_name("OUT");
    command.add_flag("--overwrite", given->overwrite, "Replace OUT when it exists");
    command.callback([given] { run(*given); });
}

}  // namespace mezalith::app
