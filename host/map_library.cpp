// SPDX-License-Identifier: MIT
#include "host/map_library.hpp"

#include "host/failure.hpp"

#include <array>
#include <cstddef>
#include <mutex>

#include <cpl_conv.h>
#include <cpl_http.h>
#include <ogr_spatialref.h>

namespace mezalith::host {
namespace {

/// Column names that make points of a table without geometry.
constexpr std::array<const char*, 4> kOpenOptions{"X_POSSIBLE_NAMES=lon,longitude,long,x",
                                                  "Y_POSSIBLE_NAMES=lat,latitude,y",
                                                  "KEEP_GEOM_COLUMNS=YES", nullptr};

/// The drivers that read local vector files, and the one database. Only these are registered:
/// nothing that follows references to elsewhere and nothing that talks to web services.
void registerDrivers() {
    RegisterOGRGeoPackage();
    RegisterOGRShape();
    RegisterOGRGeoJSON();
    RegisterOGRGeoJSONSeq();
    RegisterOGRTopoJSON();
    RegisterOGRFlatGeobuf();
    RegisterOGRTAB();
    RegisterOGRKML();
    RegisterOGRGPX();
    RegisterOGRCSV();
    RegisterOGRDXF();
    RegisterOGROpenFileGDB();
    RegisterOGRPG();
}

/// Stands in the place of the library's own way to fetch what a file refers to, and fails.
CPLHTTPResult* fetchNothing(const char*, CSLConstList, GDALProgressFunc, void*,
                            CPLHTTPFetchWriteFunc, void*, void*) {
    auto* result = static_cast<CPLHTTPResult*>(CPLCalloc(1, sizeof(CPLHTTPResult)));
    result->nStatus = 1;
    result->pszErrBuf = CPLStrdup("nothing is fetched");
    return result;
}

}  // namespace

void prepareMapLibrary() {
    static std::once_flag once;
    std::call_once(once, [] {
        registerDrivers();
        CPLHTTPSetFetchCallback(&fetchNothing, nullptr);
        CPLSetConfigOption("CPL_VSIL_CURL_ALLOWED_FILENAME", "none");
        OSRSetPROJEnableNetwork(0);
    });
}

GDALDatasetUniquePtr openedDataset(const SourceAddress& address) {
    prepareMapLibrary();
    ErrorScope errors;
    GDALDatasetUniquePtr dataset(GDALDataset::Open(
        address.connection.c_str(), GDAL_OF_VECTOR | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR,
        nullptr, kOpenOptions.data(), nullptr));
    if (dataset == nullptr) throw Failure(address.name, errors.takeError("not a known format"));
    return dataset;
}

std::vector<OGRLayer*> layersOf(GDALDataset& dataset, const SourceAddress& address) {
    std::vector<OGRLayer*> layers;
    for (int i = 0; i < dataset.GetLayerCount(); ++i) {
        OGRLayer* const layer = dataset.GetLayer(i);
        if (!address.layer || *address.layer == layer->GetName()) layers.push_back(layer);
    }
    if (layers.empty()) throw Failure(address.name, "no layer " + address.layer.value_or(""));
    return layers;
}

OGRGeometryUniquePtr simplified(OGRGeometryUniquePtr geometry) {
    if (geometry->hasCurveGeometry()) geometry.reset(geometry->getLinearGeometry());
    geometry->flattenTo2D();
    switch (wkbFlatten(geometry->getGeometryType())) {
        case wkbTriangle:
            return OGRGeometryUniquePtr(OGRGeometryFactory::forceToPolygon(geometry.release()));
        case wkbPolyhedralSurface:
        case wkbTIN:
            return OGRGeometryUniquePtr(
                OGRGeometryFactory::forceToMultiPolygon(geometry.release()));
        default:
            return geometry;
    }
}

MzWKBReading readingOf(const OGRGeometry& geometry) {
    std::vector<std::byte> wkb(geometry.WkbSize());
    geometry.exportToWkb(wkbNDR, reinterpret_cast<unsigned char*>(wkb.data()), wkbVariantIso);
    return MzReadWKB(wkb);
}

}  // namespace mezalith::host
