// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/wkb_writer.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::app {

/// How a geometry can be held in a file: as one of the forms of Well-Known Binary, as their
/// hexadecimal digits, or as one of two texts.
enum class GeometryFormat { Binary, Digits, WKT, GeoJSON };

/// A geometry that was read, and what was said of it.
struct GivenGeometry {
    GeometryFormat format;  ///< digits are binary by now
    MzWKBReading reading;   ///< of a text, with its geometry, SRID and length only
    std::size_t size;       ///< of all bytes, or of the text
};

/// What the bytes of a file most likely are.
GeometryFormat likelyFormatOf(std::span<const std::byte> bytes);

/// "binary", "hex", "wkt" or "geojson" as a format; throws a UsageError about the argument `name`.
GeometryFormat geometryFormatArgument(const std::string& name, std::string_view text);

/// Reads one geometry. Throws a host::Failure that says where it is wrong.
GivenGeometry readGeometry(std::span<const std::byte> bytes, GeometryFormat format);

/// "WKB", "ISO", "EWKB", "GeoPackage", "WKT" or "GeoJSON".
std::string_view formNameOf(const GivenGeometry& given);

/// "XY", "XYZ", "XYM" or "XYZM", as the bytes have it.
std::string dimensionsOf(const MzWKBReading& reading);

/// How a geometry is to be written.
struct GeometryOutput {
    GeometryFormat format = GeometryFormat::Binary;
    MzWKBOptions binary;  ///< of binary and of its digits
};

/// "wkb", "iso", "ewkb", "gpkg", "wkt" or "geojson" as what to write; throws a UsageError about the
/// argument `name`.
GeometryOutput geometryOutputArgument(const std::string& name, std::string_view text);

/// The geometry as the bytes of a file; texts and digits end in a line end. Throws a host::Failure
/// for coordinates that GeoJSON has no numbers for.
std::vector<std::byte> writtenGeometry(const MzGeometryRecord& geometry,
                                       const GeometryOutput& output);

}  // namespace mezalith::app
