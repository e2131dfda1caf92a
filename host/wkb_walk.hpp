// SPDX-License-Identifier: MIT
#pragma once

#include "host/bounding_box.hpp"
#include <mezalith/geometry/geometry.hpp>
#include <mezalith/geometry/primitives.hpp>
#include <mezalith/geometry/wkb.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace mezalith::host {

/// WKB type code of a geometry collection, which holds members of any type.
inline constexpr std::uint32_t kGeometryCollection = 7;

/// "Point", "LineString", ... "GeometryCollection" for the codes 1 to 7; empty for any other.
std::string_view geometryTypeName(std::uint32_t type);

/// The code of such a name; 0 for any other text.
std::uint32_t geometryTypeNamed(std::string_view name);

/// Told what well-known binary holds, in the order of the bytes.
class WKBVisitor {
  public:
    struct Header {
        std::uint32_t type;   ///< 1 to 7
        std::uint32_t count;  ///< points, rings or members to come; 1 for a point
        std::size_t offset;   ///< of the geometry's first byte
        bool littleEndian;
    };

    virtual ~WKBVisitor();
    virtual void begin(const Header& header) = 0;
    /// The points of a point, of a line string or of one ring. Valid during the call only.
    virtual void points(std::span<const MzPoint> run) = 0;
    /// The innermost geometry begun ends before the byte at `offset`.
    virtual void end(std::size_t offset) = 0;
};

/// Walks through one geometry of any of the seven types, checking that every byte it promises is
/// there and that members are of the type they must be, and answers how many bytes it takes; more
/// may follow. Throws a Failure that names the byte ("byte 9: ...") for anything else, Z, M and
/// SRID variants and collections nested more than 32 deep included. Source: OGC 06-103r4, Simple
/// feature access part 1, clause 8.
std::size_t walkWKB(std::span<const std::byte> bytes, WKBVisitor& visitor);

/// One geometry within the bytes that is not made of others of its own kind.
struct WKBElement {
    std::uint32_t type;  ///< 1, 2, 3, 4 or 6
    std::size_t offset;
    std::size_t length;
};

/// What well-known binary holds, counted.
struct WKBSurvey {
    std::uint32_t type = 0;
    bool littleEndian = true;
    std::size_t bytes = 0;  ///< taken by the geometry
    std::size_t parts = 0;  ///< points, line strings and polygons
    std::size_t rings = 0;
    std::size_t vertices = 0;  ///< closing points of rings included
    BoundingBox bounds;        ///< of the finite vertices
    /// Members of multi-line-strings and of collections singly, all else whole.
    std::vector<WKBElement> elements;
};

/// Counts; throws as `walkWKB` does.
WKBSurvey surveyWKB(std::span<const std::byte> bytes);

/// How a geometry wants to be drawn. A multi-point geometry serves as points and as a polyline, and
/// its type alone does not tell which is meant.
enum class Form { Points, Line, Area };

/// A geometry that symbolizers can draw.
struct Part {
    Form form;
    std::shared_ptr<MzGeometry> geometry;
};

/// What the elements of surveyed bytes look like to the symbolizers: line strings become
/// multi-point geometries, everything else stays as it is; elements without points are left out.
std::vector<Part> partsOfWKB(std::span<const std::byte> bytes, const WKBSurvey& survey);

}  // namespace mezalith::host
