// SPDX-License-Identifier: MIT
#pragma once

#include "host/map_library.hpp"
#include <mezalith/geometry/geometry_block.hpp>

#include <cstddef>
#include <string>
#include <vector>

namespace mezalith::host {

/// A copy of a source of map data in the making. It comes into being in memory, in the form that
/// the ending of `path` says; failures name that.
class RepairedCopy {
  public:
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
};

}  // namespace mezalith::host
