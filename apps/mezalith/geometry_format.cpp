// SPDX-License-Identifier: MIT
#include "apps/mezalith/geometry_format.hpp"

#include "apps/mezalith/arguments.hpp"
#include "apps/mezalith/hexadecimal.hpp"
#include "host/failure.hpp"
#include "host/geojson.hpp"
#include "host/wkb_file.hpp"
#include <mezalith/geometry/wkt_reader.hpp>
#include <mezalith/geometry/wkt_writer.hpp>

#include <array>
#include <utility>

namespace mezalith::app {
namespace {

constexpr std::array<std::string_view, 4> kFormNames{"WKB", "ISO", "EWKB", "GeoPackage"};

bool isIn(char c, std::string_view set) { return set.find(c) != std::string_view::npos; }

constexpr std::string_view kBlanks = " \t\r\n";

/// Of a text, without the byte order mark that some editors put before it.
std::string_view textOf(std::span<const std::byte> bytes) {
    std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    constexpr std::string_view kMark = "\xef\xbb\xbf";
    if (text.starts_with(kMark)) text.remove_prefix(kMark.size());
    return text;
}

std::vector<std::byte> bytesOfDigits(std::string_view text) {
    try {
        return bytesFromHexadecimal("hexadecimal digits", text);
    } catch (const UsageError& error) {
        throw host::Failure("this is not a geometry", error.what());
    }
}

MzWKBReading readingOf(MzWKTReading text) {
    if (!text) throw host::Failure(text.error);
    MzWKBReading reading;
    reading.geometry = std::move(text.geometry);
    reading.srid = text.srid;
    return reading;
}

MzWKBReading readAs(GeometryFormat format, std::span<const std::byte> bytes) {
    const std::string_view text = textOf(bytes);
    MzWKBReading reading;
    switch (format) {
        case GeometryFormat::WKT:
            reading = readingOf(MzReadWKT(text));
            break;
        case GeometryFormat::GeoJSON:
            reading.geometry = host::geometryOfGeoJSON(text);
            break;
        default:
            return host::readWKB(bytes);
    }
    reading.length = bytes.size();
    return reading;
}

std::string written(const MzGeometryRecord& geometry, const GeometryOutput& output) {
    switch (output.format) {
        case GeometryFormat::WKT:
            return MzWKTOfGeometry(geometry);
        case GeometryFormat::GeoJSON:
            return host::geoJSONOf(geometry);
        default:
            return hexadecimalFromBytes(MzWKBOfGeometry(geometry, output.binary));
    }
}

}  // namespace

GeometryFormat likelyFormatOf(std::span<const std::byte> bytes) {
    const std::string_view text = textOf(bytes);
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos || text.starts_with(std::string_view("GP\0", 3))) {
        return GeometryFormat::Binary;
    }
    if (text[first] == '{') return GeometryFormat::GeoJSON;
    if (isIn(text[first], "0123456789abcdefABCDEF\\")) return GeometryFormat::Digits;
    const bool isWord = isIn(text[first], "plmgsPLMGS");
    return isWord ? GeometryFormat::WKT : GeometryFormat::Binary;
}

GeometryFormat geometryFormatArgument(const std::string& name, std::string_view text) {
    if (text == "binary") return GeometryFormat::Binary;
    if (text == "hex") return GeometryFormat::Digits;
    if (text == "wkt") return GeometryFormat::WKT;
    if (text == "geojson") return GeometryFormat::GeoJSON;
    throw UsageError(name, "\"" + std::string(text) + "\" is none of binary, hex, wkt, geojson");
}

GivenGeometry readGeometry(std::span<const std::byte> bytes, GeometryFormat format) {
    if (format == GeometryFormat::Digits) {
        return readGeometry(bytesOfDigits(textOf(bytes)), GeometryFormat::Binary);
    }
    return {format, readAs(format, bytes), bytes.size()};
}

std::string_view formNameOf(const GivenGeometry& given) {
    if (given.format == GeometryFormat::WKT) return "WKT";
    if (given.format == GeometryFormat::GeoJSON) return "GeoJSON";
    return kFormNames[static_cast<std::size_t>(given.reading.form)];
}

std::string dimensionsOf(const MzWKBReading& reading) {
    return std::string("XY") + (reading.hasZ ? "Z" : "") + (reading.hasM ? "M" : "");
}

GeometryOutput geometryOutputArgument(const std::string& name, std::string_view text) {
    constexpr std::array<std::string_view, 4> kBinary{"wkb", "iso", "ewkb", "gpkg"};
    for (std::size_t form = 0; form < kBinary.size(); ++form) {
        if (text != kBinary[form]) continue;
        GeometryOutput output;
        output.binary.form = static_cast<MzWKBForm>(form);
        return output;
    }
    if (text == "wkt") return {GeometryFormat::WKT, {}};
    if (text == "geojson") return {GeometryFormat::GeoJSON, {}};
    throw UsageError(name,
                     "\"" + std::string(text) + "\" is none of wkb, iso, ewkb, gpkg, wkt, geojson");
}

std::vector<std::byte> writtenGeometry(const MzGeometryRecord& geometry,
                                       const GeometryOutput& output) {
    if (output.format == GeometryFormat::Binary) return MzWKBOfGeometry(geometry, output.binary);
    const std::string text = written(geometry, output) + "\n";
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace mezalith::app
