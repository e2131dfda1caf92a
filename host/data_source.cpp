// SPDX-License-Identifier: MIT
#include "host/data_source.hpp"

#include "host/failure.hpp"
#include "host/map_library.hpp"
#include "host/source_address.hpp"
#include "host/survey.hpp"
#include "host/wkb_file.hpp"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include <ogr_spatialref.h>

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
    virtual std::vector<Form> formsOf(std::size_t index) const = 0;
    /// How many records a layer says it has; 0 when it does not know.
    virtual std::size_t expectedRecords(std::size_t index) = 0;
    /// May leave out what lies outside the area that was last asked for.
    virtual void forEachRecord(std::size_t index, const Sink& sink) = 0;
    /// Everywhere, when there is none.
    virtual void lookOnlyAt(std::size_t index, const std::optional<BoundingBox>& area) = 0;
    /// Whether what lies in an area comes in the order of an index and not in that of its numbers.
    virtual bool isIndexed(std::size_t index) const = 0;
};

namespace {

std::vector<Form> allForms() { return {Form::Points, Form::Line, Form::Area}; }

class WKBBackend final : public DataSource::Backend {
  public:
    explicit WKBBackend(const std::string& path)
        : name_(layerNameOfFile(path)), bytes_(readFile(path)) {
        if (bytes_.empty()) throw Failure(path, "the file is empty");
    }

    std::vector<std::string> layerNames() const override { return {name_}; }
    std::vector<Form> formsOf(std::size_t) const override { return allForms(); }
    std::size_t expectedRecords(std::size_t) override { return 1; }
    void forEachRecord(std::size_t, const Sink& sink) override {
        sink({.id = 1, .attributes = {}, .geometry = readWKB(bytes_).geometry, .problem = {}});
    }
    void lookOnlyAt(std::size_t, const std::optional<BoundingBox>&) override {}
    bool isIndexed(std::size_t) const override { return false; }

  private:
    std::string name_;
    std::vector<std::byte> bytes_;
};

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

/// The fields of a layer in the order of their names, which its records share.
class Columns {
  public:
    explicit Columns(OGRFeatureDefn& definition) {
        std::map<std::string, int> fieldByName;
        for (int i = 0; i < definition.GetFieldCount(); ++i) {
            fieldByName.insert_or_assign(definition.GetFieldDefn(i)->GetNameRef(), i);
        }
        auto names = std::make_shared<platform::Dictionary::Names>();
        names->reserve(fieldByName.size());
        fields_.reserve(fieldByName.size());
        for (const auto& [name, field] : fieldByName) {
            names->push_back(name);
            fields_.push_back(field);
        }
        names_ = std::move(names);
    }

    platform::Dictionary attributesOf(const OGRFeature& feature) const {
        std::vector<platform::Value> values;
        values.reserve(fields_.size());
        for (const int field : fields_) values.push_back(valueOf(feature, field));
        return {names_, std::move(values)};
    }

  private:
    std::shared_ptr<const platform::Dictionary::Names> names_;
    std::vector<int> fields_;  ///< one for each name
};

/// The forms of features whose geometries have a type.
std::vector<Form> formsOfType(OGRwkbGeometryType type) {
    const OGRwkbGeometryType flat = wkbFlatten(type);
    const auto isOneOf = [flat](OGRwkbGeometryType one, OGRwkbGeometryType several) {
        return OGR_GT_IsSubClassOf(flat, one) != FALSE ||
               OGR_GT_IsSubClassOf(flat, several) != FALSE;
    };
    if (flat == wkbNone) return {};
    if (isOneOf(wkbPoint, wkbMultiPoint)) return {Form::Points};
    if (isOneOf(wkbCurve, wkbMultiCurve)) return {Form::Line};
    if (isOneOf(wkbSurface, wkbMultiSurface)) return {Form::Area};
    return allForms();
}

/// Degrees beyond what any layer holds, and still a number to every driver.
constexpr double kEverywhere = 1e9;
/// By how much layers of the whole globe, rounded, overlap themselves at the 180th meridian.
constexpr double kSeam = 0.01;

using Transformation = std::unique_ptr<OGRCoordinateTransformation>;

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

/// Where a layer says that its records are.
std::optional<BoundingBox> extentOf(OGRLayer& layer) {
    OGREnvelope extent;
    if (layer.GetExtent(&extent, FALSE) != OGRERR_NONE) return std::nullopt;
    return BoundingBox{extent.MinX, extent.MinY, extent.MaxX, extent.MaxY};
}

/// Where a layer of this extent may hold something that `area` shows: at its longitudes, or at all
/// that there are when either repeats around the globe. Finite, as drivers write it into queries.
BoundingBox areaToRead(const std::optional<BoundingBox>& extent, const BoundingBox& area) {
    const auto isWithin = [](const BoundingBox& box, double limit) {
        return -limit <= box.minX && box.maxX <= limit;
    };
    const bool isOnGlobe = extent && isWithin(*extent, 180 + kSeam);
    const bool isOnce = isOnGlobe && isWithin(area, 180 - kSeam);
    const auto finite = [](double limit) { return std::clamp(limit, -kEverywhere, kEverywhere); };
    return {isOnce ? finite(area.minX) : -kEverywhere, finite(area.minY),
            isOnce ? finite(area.maxX) : kEverywhere, finite(area.maxY)};
}

/// A text or a name as it stands in SQL, between marks.
std::string quoted(const std::string& text, char mark) {
    std::string result(1, mark);
    for (const char c : text) result += std::string(c == mark ? 2 : 1, c);
    return result + mark;
}

/// The table of a GeoPackage that is the index of a layer.
std::string indexTableOf(OGRLayer& layer) {
    return std::string("rtree_") + layer.GetName() + "_" + layer.GetGeometryColumn();
}

bool hasTable(GDALDataset& geoPackage, const std::string& name) {
    const std::string query =
        "SELECT name FROM sqlite_master WHERE name = " + quoted(name, '\'') + " COLLATE NOCASE";
    OGRLayer* const found = geoPackage.ExecuteSQL(query.c_str(), nullptr, nullptr);
    if (found == nullptr) return false;
    const bool isThere = found->GetFeatureCount() > 0;
    geoPackage.ReleaseResultSet(found);
    return isThere;
}

/// The condition that a GeoPackage's index finds a record in the area. Records are then read in
/// the order in which they lie in the file, which takes less time than that of the index.
std::string indexCondition(OGRLayer& layer, const BoundingBox& area) {
    std::array<char, 160> bounds{};
    CPLsnprintf(bounds.data(), bounds.size(),
                "maxx >= %.17g AND minx <= %.17g AND maxy >= %.17g AND miny <= %.17g", area.minX,
                area.maxX, area.minY, area.maxY);
    return quoted(layer.GetFIDColumn(), '"') + " IN (SELECT id FROM " +
           quoted(indexTableOf(layer), '"') + " WHERE " + bounds.data() + ")";
}

class LibraryBackend final : public DataSource::Backend {
  public:
    explicit LibraryBackend(const SourceAddress& address) {
        dataset_ = openedDataset(address);
        layers_ = layersOf(*dataset_, address);
    }

    std::vector<std::string> layerNames() const override {
        std::vector<std::string> names;
        names.reserve(layers_.size());
        for (OGRLayer* layer : layers_) names.emplace_back(layer->GetName());
        return names;
    }

    std::vector<Form> formsOf(std::size_t index) const override {
        return formsOfType(layers_[index]->GetGeomType());
    }

    std::size_t expectedRecords(std::size_t index) override {
        const ErrorScope errors;
        return static_cast<std::size_t>(std::max<GIntBig>(layers_[index]->GetFeatureCount(0), 0));
    }

    void forEachRecord(std::size_t index, const Sink& sink) override {
        ErrorScope errors;
        OGRLayer& layer = *layers_[index];
        const Transformation transformation = transformationOf(layer, errors);
        const Columns columns(*layer.GetLayerDefn());
        layer.ResetReading();
        while (const OGRFeatureUniquePtr feature{layer.GetNextFeature()}) {
            sink(recordOf(*feature, columns, transformation.get(), errors));
            if (errors.hasError()) break;
        }
        if (errors.hasError()) throw Failure(layer.GetName(), errors.takeError(""));
    }

    void lookOnlyAt(std::size_t index, const std::optional<BoundingBox>& area) override {
        ErrorScope errors;
        OGRLayer& layer = *layers_[index];
        layer.SetSpatialFilter(nullptr);
        layer.SetAttributeFilter(nullptr);
        if (!area || transformationOf(layer, errors) != nullptr) return;
        const std::optional<BoundingBox> extent = extentOf(layer);
        const BoundingBox read = areaToRead(extent, *area);
        if (extent && read.holds(*extent)) return;
        if (hasIndexTable(index)) {
            layer.SetAttributeFilter(indexCondition(layer, read).c_str());
        } else {
            layer.SetSpatialFilterRect(read.minX, read.minY, read.maxX, read.maxY);
        }
    }

    bool isIndexed(std::size_t index) const override {
        return layers_[index]->TestCapability(OLCFastSpatialFilter) != FALSE;
    }

  private:
    /// Whether a table can be asked for the numbers of records; views have that of another layer.
    bool hasIndexTable(std::size_t index) const {
        OGRLayer& layer = *layers_[index];
        const bool isGeoPackage = std::string_view("GPKG") == dataset_->GetDriverName();
        return isGeoPackage && isIndexed(index) && hasTable(*dataset_, indexTableOf(layer));
    }

    static SourceRecord recordOf(OGRFeature& feature, const Columns& columns,
                                 OGRCoordinateTransformation* transformation, ErrorScope& errors) {
        SourceRecord record{feature.GetFID(), columns.attributesOf(feature), {}, {}};
        if (feature.GetGeometryRef() == nullptr) {
            record.problem = errors.takeError("");
            return record;
        }
        const OGRGeometryUniquePtr geometry =
            simplified(OGRGeometryUniquePtr(feature.StealGeometry()));
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

std::unique_ptr<DataSource::Backend> backendFor(const SourceAddress& address) {
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
    if (!record.problem.empty()) description.unusable.add(record.id, record.problem);
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
    if (!source.problem.empty()) layer.unusable.add(source.id, source.problem);
    if (source.geometry.record() == nullptr) return;
    const auto record = std::make_shared<const FeatureRecord>(
        FeatureRecord{source.id, layer.name, std::move(source.attributes)});
    for (Part& part : partsOf(*source.geometry.record())) {
        layer.features.push_back(std::make_shared<Feature>(record, std::move(part)));
    }
}

}  // namespace

DataSource::DataSource(const std::string& source)
    : source_(source), backend_(backendFor(SourceAddress::of(source))) {}

DataSource::~DataSource() = default;

std::vector<std::string> DataSource::layerNames() const { return backend_->layerNames(); }

std::vector<Form> DataSource::formsOf(std::size_t index) const { return backend_->formsOf(index); }

LayerDescription DataSource::describe(std::size_t index, const Progress& progress) {
    LayerDescription description{
        .name = layerNames()[index], .types = {}, .bounds = {}, .unusable = {}};
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
    Layer layer{.name = layerNames()[index], .features = {}, .unusable = {}};
    try {
        backend_->lookOnlyAt(index, area);
        forEachRecord(*backend_, index, progress,
                      [&](SourceRecord&& record) { addToLayer(layer, std::move(record)); });
    } catch (const Failure& failure) {
        throw failure.within(source_);
    }
    // What lies over what is not for the view to decide.
    if (area && backend_->isIndexed(index)) {
        std::ranges::stable_sort(layer.features, {},
                                 [](const auto& feature) { return feature->record()->id; });
    }
    return layer;
}

}  // namespace mezalith::host
