// SPDX-License-Identifier: MIT
#pragma once

#include "host/source_address.hpp"
#include <mezalith/geometry/wkb_reader.hpp>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gdal_priv.h>
#include <ogrsf_frmts.h>

// What all need who use the library of map data.

namespace mezalith::host {

/// While it lives, what the data library reports on this thread stays here instead of going to
/// standard error.
class ErrorScope {
  public:
    ErrorScope() {
        CPLPushErrorHandlerEx(&ErrorScope::take, this);
        CPLErrorReset();
    }
    ~ErrorScope() { CPLPopErrorHandler(); }
    ErrorScope(const ErrorScope&) = delete;
    ErrorScope& operator=(const ErrorScope&) = delete;

    /// The first error since the last call, or `otherwise`.
    std::string takeError(const char* otherwise) {
        return std::exchange(error_, std::nullopt).value_or(otherwise);
    }
    bool hasError() const { return error_.has_value(); }

  private:
    static void take(CPLErr kind, CPLErrorNum, const char* text) {
        auto* scope = static_cast<ErrorScope*>(CPLGetErrorHandlerUserData());
        if (kind >= CE_Failure && !scope->error_) scope->error_ = text;
    }

    std::optional<std::string> error_;
};

/// Once a process: drivers, and every road to the network closed.
void prepareMapLibrary();

/// The source, opened for reading. Throws a Failure that names it.
GDALDatasetUniquePtr openedDataset(const SourceAddress& address);
/// The layers of the dataset that are wanted, at least one; they are the dataset's own.
std::vector<OGRLayer*> layersOf(GDALDataset& dataset, const SourceAddress& address);

/// The simple geometry nearest in kind to `geometry`, which it consumes: curves as lines, surfaces
/// as polygons, in two dimensions.
OGRGeometryUniquePtr simplified(OGRGeometryUniquePtr geometry);
MzWKBReading readingOf(const OGRGeometry& geometry);

}  // namespace mezalith::host
