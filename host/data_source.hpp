// SPDX-License-Identifier: MIT
#pragma once

#include "host/bounding_box.hpp"
#include "host/feature.hpp"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace mezalith::host {

/// Records whose geometry cannot be used.
struct Unusable {
    std::size_t count = 0;
    std::string firstReason;  ///< with the first one's number

    void add(std::int64_t id, const std::string& problem) {
        if (count++ == 0) firstReason = "feature " + std::to_string(id) + ": " + problem;
    }
};

/// What a layer holds, counted. Vertices include the closing points of rings; the bounds are
/// longitudes and latitudes.
struct LayerDescription {
    std::string name;
    std::size_t features = 0;  ///< records, with or without a geometry
    std::size_t vertices = 0;
    std::map<std::string, std::size_t>
        types;  ///< records by WKB type name; "None" without geometry
    BoundingBox bounds;
    Unusable unusable;  ///< among those without a geometry
};

/// A layer's features, ready to be styled and drawn.
struct Layer {
    std::string name;
    std::vector<std::shared_ptr<Feature>> features;  ///< in the order of the source
    Unusable unusable;                               ///< left out
};

/// A file of map data, opened for reading: whatever the data library has a vector driver for among
/// those allowed here, or a bare `.wkb` file with one geometry.
///
/// Everything comes out in longitude and latitude on WGS 84, in degrees, in two dimensions, curves
/// as polylines. A source without a reference system is taken to be that already. Nothing is ever
/// fetched: only local files are opened (and, when asked for by "PG:", a PostgreSQL database).
///
/// Every operation throws a Failure with the source's name when the source cannot be read. A data
/// source belongs to the thread that made it; another thread makes its own.
class DataSource {
  public:
    /// Called now and then during long work with the share that is done, 0 to 1.
    using Progress = std::function<void(double)>;

    /// `source` is the path of a file, or "path:layer" for one layer of it, or "PG:..." .
    explicit DataSource(const std::string& source);
    ~DataSource();
    DataSource(const DataSource&) = delete;
    DataSource& operator=(const DataSource&) = delete;

    /// The layers, or the one that was asked for.
    std::vector<std::string> layerNames() const;
    /// The forms that features of the layer at `index` may have by what it says of itself: all
    /// where it says nothing of them.
    std::vector<Form> formsOf(std::size_t index) const;

    /// What the layer at `index` of `layerNames` holds; reads all of it.
    LayerDescription describe(std::size_t index, const Progress& progress = {});

    /// The features of the layer at `index`; one for each line of a multi-line-string and each
    /// member of a collection, sharing their attributes. Records without a geometry, and those
    /// whose geometry cannot be used, make none. With an `area`, in degrees, records that lie
    /// outside of it, and of its repetitions 360 degrees to the east and the west, are left out
    /// where the source can tell without reading them all; the others keep their order.
    Layer read(std::size_t index, const Progress& progress = {},
               const std::optional<BoundingBox>& area = {});

    class Backend;

  private:
    std::string source_;
    std::unique_ptr<Backend> backend_;
};

}  // namespace mezalith::host
