// SPDX-License-Identifier: MIT
#pragma once

#include "host/map_library.hpp"
#include <mezalith/geometry/geometry_block.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace mezalith::host {

/// A copy of a source of map data in the making. It comes into being in memory, in the form that
/// the ending of `path` says; failures name that. Every number keeps its last bit.
class RepairedCopy {
  public:
    /// What the names of copies end in, in letters of either case.
    static constexpr char kEndings[] = ".gpkg or .geojson";
    static bool isName(const std::string& path);

    /// `path` is such a name.
    explicit RepairedCopy(std::string path);
    ~RepairedCopy();
    RepairedCopy(const RepairedCopy&) = delete;
    RepairedCopy& operator=(const RepairedCopy&) = delete;

    /// The records to come are those of this layer, with its name, reference system and fields.
    void beginLayer(OGRLayer& source);
    /// A record with another geometry, or with its own when `repaired` holds none.
    void add(OGRFeature& record, const MzGeometryBlock& repaired);
    /// All of it; the copy is closed by that.
    std::vector<std::byte> bytes();

  private:
    [[noreturn]] void fail(ErrorScope& errors, const char* otherwise) const;

    std::string path_;
    std::string place_;  ///< in memory
    GDALDatasetUniquePtr dataset_;
    OGRLayer* layer_ = nullptr;  ///< of the dataset
    bool isTransaction_ = false;
    bool isGeoJSON_ = false;
    std::string records_;  ///< of GeoJSON, to be put into what the dataset is without any
};

}  // namespace mezalith::host
