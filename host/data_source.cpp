// SPDX-License-Identifier: MIT
#include "host/data_source.hpp"

#include "host/failure.hpp"
#include "host/survey.hpp"
#include "host/wkb_file.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <mutex>
#include <optional>
#include <system_error>
#include <utility>

#include <cpl_conv.h>
#include <cpl_http.h>
#include <gdal_priv.h>
#include <ogr_spatialref.h>
#include <ogrsf_frmts.h>

namespace mezalith::host {

/// One record as it lies in a source.
struct SourceRecord {
    std::int64_t id = 0;
    platform::Dictionary attributes;
    MzGeometryBlock geometry;  ///< in longitude and latitude; without a record when there is none
    std::string problem;       ///< why there is none although the source has one
};

/// A way to read sources. Failures it throws do not name the source yet.
class DataSource::Backend {
  public:
    using Sink = std::function<void(SourceRecord&&)>;

    virtual ~Backend() = default;
    virtual std::vector<std::string> layerNames() const = 0;
    /// How many records a layer says it has; 0 when it does not know.
    virtual std::size_t expectedRecords(std::size_t index) = 0;
    /// May leave out what lies outside the area that was last asked for.
    virtual void forEachRecord(std::size_t index, const Sink& sink) = 0;
    /// Everywhere, when there is none.
    virtual void lookOnlyAt(std::size_t index, const std::optional<BoundingBox>& area) = 0;
};

namespace {

/// A source taken apart.
struct Address {
    std::string name;                  ///< as the user gave it, without the layer
    std::string connection;            ///< what to open
    std::optional<std::string> layer;  ///< the one layer that is wanted
};

class WKBBackend final : public DataSource::Backend {
  public:
    explicit WKBBackend(const std::string& path)
        : name_(layerNameOfFile(path)), bytes_(readFile(path)) {
        if (bytes_.empty()) throw Failure(path, "the file is empty");
    }

    std::vector<std::string> layerNames() const override { return {name_}; }
    std::size_t expectedRecords(std::size_t) override { return 1; }
    void forEachRecord(std::size_t, const Sink& sink) override {
        sink({.id = 1, .attributes = {}, .geometry = readWKB(bytes_).geometry, .problem = {}});
    }
    void lookOnlyAt(std::size_t, const std::optional<BoundingBox>&) override {}

  private:
    std::string name_;
    std::vector<std::byte> bytes_;
};

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

/// Once a process: drivers, and every road to the network closed.
void prepareLibrary() {
    static std::once_flag once;
    std::call_once(once, [] {
        registerDrivers();
        CPLHTTPSetFetchCallback(&fetchNothing, nullptr);
        CPLSetConfigOption("CPL_VSIL_CURL_ALLOWED_FILENAME", "none");
        OSRSetPROJEnableNetwork(0);
    });
}

/// Column names that make points of a table without geometry.
constexpr std::array<const char*, 4> kOpenOptions{"X_POSSIBLE_NAMES=lon,longitude,long,x",
                                                  "Y_POSSIBLE_NAMES=lat,latitude,y",
                                                  "KEEP_GEOM_COLUMNS=YES", nullptr};

platform::Value valueOf(const OGRFeature& feature, int field) {
    if (!feature.IsFieldSetAndNotNull(field)) return std::monostate{};
    const OGRFieldDefn* definition = feature.GetFieldDefnRef(field);
    switch (definition->GetType()) {
        case OFTInteger:
        case OFTInteger64:
            if (definition->GetSubType() == OFSTBoolean) {
                return feature.GetFieldAsInteger(field) != 0;
            }
            return static_cast<std::int64_t>(feature.GetFieldAsInteger64(field));
        case OFTReal:
            return feature.GetFieldAsDouble(field);
        default:
            return std::string(feature.GetFieldAsString(field));
    }
}

platform::Dictionary attributesOf(const OGRFeature& feature) {
    platform::Dictionary attributes;
    for (int i = 0; i < feature.GetFieldCount(); ++i) {
        attributes.insert_or_assign(feature.GetFieldDefnRef(i)->GetNameRef(), valueOf(feature, i));
    }
    return attributes;
}

/// Degrees beyond what any layer holds, and still a number to every driver.
constexpr double kEverywhere = 1e9;
/// By how much layers of the whole globe, rounded, overlap themselves at the 180th meridian.
constexpr double kSeam = 0.01;

using Transformation = std::unique_ptr<OGRCoordinateTransformation>;
using Geometry = std::unique_ptr<OGRGeometry>;

/// From the layer's reference system to longitude and latitude; null where nothing is to be done.
Transformation transformationOf(OGRLayer& layer, ErrorScope& errors) {
    const OGRSpatialReference* source = layer.GetSpatialRef();
    if (source == nullptr) return nullptr;
    OGRSpatialReference target;
    target.SetWellKnownGeogCS("WGS84");
    target.SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    if (source->IsSame(&target)) return nullptr;
    Transformation transformation(OGRCreateCoordinateTransformation(source, &target));
    if (transformation == nullptr) {
        throw Failure(layer.GetName(), errors.takeError("unknown reference system"));
    }
    return transformation;
}

/// The longitudes at which a layer may show something of `area`: its own, or all that there are
/// when either repeats around the globe.
std::pair<double, double> longitudesToRead(OGRLayer& layer, const BoundingBox& area) {
    OGREnvelope extent;
    const bool isKnown = layer.GetExtent(&extent, FALSE) == OGRERR_NONE;
    const auto isWithin = [](double west, double east, double limit) {
        return -limit <= west && east <= limit;
    };
    const bool isOnGlobe = isKnown && isWithin(extent.MinX, extent.MaxX, 180 + kSeam);
    if (isOnGlobe && isWithin(area.minX, area.maxX, 180 - kSeam)) return {area.minX, area.maxX};
    return {-kEverywhere, kEverywhere};
}

/// The simple geometry nearest in kind to `geometry`, which it consumes.
Geometry simplified(Geometry geometry) {
    if (geometry->hasCurveGeometry()) geometry.reset(geometry->getLinearGeometry());
    geometry->flattenTo2D();
    switch (wkbFlatten(geometry->getGeometryType())) {
        case wkbTriangle:
            return Geometry(OGRGeometryFactory::forceToPolygon(geometry.release()));
        case wkbPolyhedralSurface:
        case wkbTIN:
            return Geometry(OGRGeometryFactory::forceToMultiPolygon(geometry.release()));
        default:
            return geometry;
    }
}

MzWKBReading readingOf(const OGRGeometry& geometry) {
    std::vector<std::byte> wkb(geometry.WkbSize());
    geometry.exportToWkb(wkbNDR, reinterpret_cast<unsigned char*>(wkb.data()), wkbVariantIso);
    return MzReadWKB(wkb);
}

class LibraryBackend final : public DataSource::Backend {
  public:
    explicit LibraryBackend(const Address& address) {
        prepareLibrary();
        ErrorScope errors;
        dataset_.reset(GDALDataset::Open(address.connection.c_str(),
                                         GDAL_OF_VECTOR | GDAL_OF_READONLY | GDAL_OF_VERBOSE_ERROR,
                                         nullptr, kOpenOptions.data(), nullptr));
        if (dataset_ == nullptr) {
            throw Failure(address.name, errors.takeError("not a known format"));
        }
        for (int i = 0; i < dataset_->GetLayerCount(); ++i) keepLayer(i, address.layer);
        if (layers_.empty()) throw Failure(address.name, "no layer " + address.layer.value_or(""));
    }

    std::vector<std::string> layerNames() const override {
        std::vector<std::string> names;
        names.reserve(layers_.size());
        for (OGRLayer* layer : layers_) names.emplace_back(layer->GetName());
        return names;
    }

    std::size_t expectedRecords(std::size_t index) override {
        const ErrorScope errors;
        return static_cast<std::size_t>(std::max<GIntBig>(layers_[index]->GetFeatureCount(0), 0));
    }

    void forEachRecord(std::size_t index, const Sink& sink) override {
        ErrorScope errors;
        OGRLayer& layer = *layers_[index];
        const Transformation transformation = transformationOf(layer, errors);
        layer.ResetReading();
        while (const OGRFeatureUniquePtr feature{layer.GetNextFeature()}) {
            sink(recordOf(*feature, transformation.get(), errors));
        }
        if (errors.hasError()) throw Failure(layer.GetName(), errors.takeError(""));
    }

    void lookOnlyAt(std::size_t index, const std::optional<BoundingBox>& area) override {
        ErrorScope errors;
        OGRLayer& layer = *layers_[index];
        if (!area || transformationOf(layer, errors) != nullptr) {
            layer.SetSpatialFilter(nullptr);
            return;
        }
        const auto [west, east] = longitudesToRead(layer, *area);
        layer.SetSpatialFilterRect(finite(west), finite(area->minY), finite(east),
                                   finite(area->maxY));
    }

  private:
    /// The limit, or one beyond all coordinates: drivers write it into queries, where no infinity
    /// can stand.
    static double finite(double limit) { return std::clamp(limit, -1e9, 1e9); }

    void keepLayer(int index, const std::optional<std::string>& wanted) {
        OGRLayer* layer = dataset_->GetLayer(index);
        if (!wanted || *wanted == layer->GetName()) layers_.push_back(layer);
    }

    static SourceRecord recordOf(OGRFeature& feature, OGRCoordinateTransformation* transformation,
                                 ErrorScope& errors) {
        SourceRecord record{feature.GetFID(), attributesOf(feature), {}, {}};
        if (feature.GetGeometryRef() == nullptr) return record;
        const Geometry geometry = simplified(Geometry(feature.StealGeometry()));
        const bool usable =
            transformation == nullptr || geometry->transform(transformation) == OGRERR_NONE;
        if (!usable) {
            record.problem = errors.takeError("its coordinates cannot be transformed");
            return record;
        }
        MzWKBReading reading = readingOf(*geometry);
        if (!reading) record.problem = reading.error.text();
        record.geometry = std::move(reading.geometry);
        return record;
    }

    GDALDatasetUniquePtr dataset_;
    std::vector<OGRLayer*> layers_;  ///< of the dataset
};

/// An absolute path cannot be taken for anything but a file.
Address addressOfPath(const std::string& path, const std::optional<std::string>& layer) {
    return {path, std::filesystem::absolute(path).string(), layer};
}

Address addressOf(const std::string& source) {
    if (source.starts_with("PG:")) return {source, source, std::nullopt};
    if (source.find("://") != std::string::npos || source.starts_with("/vsi")) {
        throw Failure(source, "only local files are read");
    }
    std::error_code error;
    if (std::filesystem::exists(source, error)) return addressOfPath(source, std::nullopt);
    const std::size_t colon = source.rfind(':');
    const std::string path = source.substr(0, colon);
    if (colon == std::string::npos || !std::filesystem::exists(path, error)) {
        throw Failure(source, std::generic_category().message(ENOENT));
    }
    return addressOfPath(path, source.substr(colon + 1));
}

std::unique_ptr<DataSource::Backend> backendFor(const Address& address) {
    if (!isWKBFile(address.name)) return std::make_unique<LibraryBackend>(address);
    const std::string layer = layerNameOfFile(address.name);
    const std::string wanted = address.layer.value_or(layer);
    if (wanted != layer) throw Failure(address.name, "no layer " + wanted);
    return std::make_unique<WKBBackend>(address.name);
}

/// Passes records on and reports how far the work is.
void forEachRecord(DataSource::Backend& backend, std::size_t index,
                   const DataSource::Progress& progress, const DataSource::Backend::Sink& sink) {
    const std::size_t expected = progress ? backend.expectedRecords(index) : 0;
    std::size_t done = 0;
    backend.forEachRecord(index, [&](SourceRecord&& record) {
        sink(std::move(record));
        ++done;
        if (expected > 0) {
            progress(std::min(1.0, static_cast<double>(done) / static_cast<double>(expected)));
        }
    });
}

void addToDescription(LayerDescription& description, const SourceRecord& record) {
    ++description.features;
    if (record.geometry.record() == nullptr) {
        ++description.types["None"];
        return;
    }
    const Survey survey = surveyOf(*record.geometry.record());
    ++description.types[std::string(MzGeometryTypeName(record.geometry.record()->type))];
    description.vertices += survey.vertices;
    description.bounds.add(survey.bounds);
}

void addToLayer(Layer& layer, SourceRecord&& source) {
    if (!source.problem.empty())
        throw Failure("feature " + std::to_string(source.id), source.problem);
    if (source.geometry.record() == nullptr) return;
    const auto record = std::make_shared<const FeatureRecord>(
        FeatureRecord{source.id, layer.name, std::move(source.attributes)});
    for (Part& part : partsOf(*source.geometry.record())) {
        layer.features.push_back(std::make_shared<Feature>(record, std::move(part)));
    }
}

}  // namespace

DataSource::DataSource(const std::string& source)
    : source_(source), backend_(backendFor(addressOf(source))) {}

DataSource::~DataSource() = default;

std::vector<std::string> DataSource::layerNames() const { return backend_->layerNames(); }

LayerDescription DataSource::describe(std::size_t index, const Progress& progress) {
    LayerDescription description{.name = layerNames()[index], .types = {}, .bounds = {}};
    try {
        backend_->lookOnlyAt(index, {});
        forEachRecord(*backend_, index, progress,
                      [&](SourceRecord&& record) { addToDescription(description, record); });
    } catch (const Failure& failure) {
        throw failure.within(source_);
    }
    return description;
}

Layer DataSource::read(std::size_t index, const Progress& progress,
                       const std::optional<BoundingBox>& area) {
    Layer layer{.name = layerNames()[index], .features = {}, .firstReason = {}};
    try {
        backend_->lookOnlyAt(index, area);
        forEachRecord(*backend_, index, progress, [&](SourceRecord&& record) {
            try {
                addToLayer(layer, std::move(record));
            } catch (const Failure& failure) {
                if (layer.unusable++ == 0) layer.firstReason = failure.what();
            }
        });
    } catch (const Failure& failure) {
        throw failure.within(source_);
    }
    return layer;
}

}  // namespace mezalith::host
