// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geometry/geometry_record.hpp>
#include <mezalith/geometry/wkb_reader.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace mezalith {

/// How a geometry is written.
struct MzWKBOptions {
    /// ISO is the same as WKB, as there is neither Z nor M.
    MzWKBForm form = MzWKBForm::WKB;
    bool isLittleEndian = true;
    /// For EWKB, which goes without where there is none, and for a GeoPackage's header, where 0
    /// says that it is not known.
    std::optional<std::int32_t> srid{};
};

/// How many bytes the geometry takes when it is written; 0 for one that cannot be: with a type that
/// is none, in any depth, or with collections nested deeper than 100.
MEZALITH_EXPORT std::size_t MzWKBSize(const MzGeometryRecord& geometry,
                                      const MzWKBOptions& options = {});

/// Writes the geometry, every element in the same byte order, coordinates bit for bit. A
/// GeoPackage's header has an envelope unless the geometry is a point or has no finite one.
/// `output` has the bytes that `MzWKBSize` says for the same arguments; with another size nothing
/// is written and the answer is NO.
MEZALITH_EXPORT bool MzWriteWKB(const MzGeometryRecord& geometry, const MzWKBOptions& options,
                                std::span<std::byte> output);

/// The same in bytes of its own; none for a geometry that cannot be written.
MEZALITH_EXPORT std::vector<std::byte> MzWKBOfGeometry(const MzGeometryRecord& geometry,
                                                       const MzWKBOptions& options = {});

}  // namespace mezalith
