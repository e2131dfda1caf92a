// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/geos/validity.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace mezalith::host {

/// A record whose geometry is not valid.
struct InvalidRecord {
    std::string layer;
    std::int64_t id = 0;  ///< the source's own number of the record
    MzDefect defect;      ///< the place in the source's own coordinates; NaN when there is none
    bool isRepairable = false;
    bool isMissing = false;  ///< it cannot be read: a copy has the record without a geometry
    std::string dropped;     ///< "Z", "M" or "ZM": what its repaired geometry goes without
};

/// The records of a layer, counted.
struct LayerValidity {
    std::string layer;
    std::size_t records = 0;  ///< with or without a geometry
    std::size_t invalid = 0;
    std::size_t lost = 0;     ///< of the invalid ones those of which a repair leaves nothing
    std::size_t missing = 0;  ///< of the lost ones those whose geometry cannot be read
};

/// What is asked of a check, and told meanwhile.
struct ValidityCheck {
    std::function<void(const InvalidRecord&)> found{};  ///< in the order of the source
    std::function<void(const LayerValidity&)> done{};   ///< after each layer
    std::function<void(double)> progress{};             ///< the share that is done, 0 to 1
    /// The name of the file that the repaired copy will be written to, which says its form by its
    /// ending: .gpkg or .geojson, and .wkb for a source that is one. None for no copy.
    std::optional<std::string> copy{};
};

/// What is wrong with `copy` as the name of a copy of `source`, if anything is.
std::optional<std::string> faultOfCopyName(const std::string& source, const std::string& copy);

/// Checks every geometry of a source, as `DataSource` names it, in its own coordinates. Answers the
/// bytes of the copy, if one is wanted: every layer, record and attribute, geometries repaired
/// where they are not valid, all others and what cannot be repaired as they are. Repaired ones are
/// of two dimensions and without curves; a .wkb keeps its form, byte order and SRID. A record whose
/// geometry cannot be read is not valid either. Throws a Failure when the source cannot be read or
/// the copy cannot be made.
std::vector<std::byte> checkValidity(const std::string& source, const ValidityCheck& check);

}  // namespace mezalith::host
