// SPDX-License-Identifier: MIT
#include "host/repaired_copy.hpp"

#include "host/failure.hpp"
#include "host/geojson_records.hpp"
#include "host/letter_case.hpp"
#include <mezalith/geometry/wkb_writer.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>

#include <cpl_vsi.h>

namespace mezalith::host {
namespace {

struct Form {
    std::string_view ending;
    const char* driver;
};
constexpr std::array<Form, 2> kForms{{{".gpkg", "GPKG"}, {".geojson", "GeoJSON"}}};

/// The end of the forms for a name that is of none.
auto formOf(const std::string& path) {
    const std::string ending = std::filesystem::path(path).extension().string();
    return std::ranges::find_if(
        kForms, [&](const Form& form) { return isEqualIgnoringCase(ending, form.ending); });
}

/// What a layer may hold once geometries have been parted.
OGRwkbGeometryType typeFor(OGRwkbGeometryType type) {
    const OGRwkbGeometryType flat = wkbFlatten(type);
    const bool isSingle = flat == wkbPoint || flat == wkbLineString || flat == wkbPolygon;
    return isSingle ? wkbUnknown : type;
}

}  // namespace

bool RepairedCopy::isName(const std::string& path) { return formOf(path) != kForms.end(); }

RepairedCopy::RepairedCopy(std::string path)
    : path_(std::move(path)),
      place_("/vsimem/" + std::to_string(reinterpret_cast<std::uintptr_t>(this))) {
    const Form& form = *formOf(path_);
    place_ += form.ending;
    isGeoJSON_ = form.ending == ".geojson";
    prepareMapLibrary();
    ErrorScope errors;
    GDALDriver* driver = GetGDALDriverManager()->GetDriverByName(form.driver);
    if (driver != nullptr) {
        dataset_.reset(driver->Create(place_.c_str(), 0, 0, 0, GDT_Unknown, nullptr));
    }
    if (dataset_ == nullptr) fail(errors, "no driver for its form");
    isTransaction_ = dataset_->TestCapability(ODsCTransactions) != FALSE &&
                     dataset_->StartTransaction() == OGRERR_NONE;
}

RepairedCopy::~RepairedCopy() {
    dataset_.reset();
    VSIUnlink(place_.c_str());
}

void RepairedCopy::fail(ErrorScope& errors, const char* otherwise) const {
    throw Failure(path_, errors.takeError(otherwise));
}

void RepairedCopy::beginLayer(OGRLayer& source) {
    ErrorScope errors;
    CPLStringList options;
    if (*source.GetFIDColumn() != '\0') options.SetNameValue("FID", source.GetFIDColumn());
    if (*source.GetGeometryColumn() != '\0') {
        options.SetNameValue("GEOMETRY_NAME", source.GetGeometryColumn());
    }
    layer_ = dataset_->CreateLayer(source.GetName(), source.GetSpatialRef(),
                                   typeFor(source.GetGeomType()), options.List());
    if (layer_ == nullptr) fail(errors, "no layer can be made");
    if (isGeoJSON_) return;
    OGRFeatureDefn& fields = *source.GetLayerDefn();
    for (int i = 0; i < fields.GetFieldCount(); ++i) {
        if (layer_->CreateField(fields.GetFieldDefn(i)) != OGRERR_NONE) {
            fail(errors, "a field is refused");
        }
    }
}

void RepairedCopy::add(OGRFeature& record, const MzGeometryBlock& repaired) {
    ErrorScope errors;
    OGRFeature copy(isGeoJSON_ ? record.GetDefnRef() : layer_->GetLayerDefn());
    copy.SetFrom(&record);
    copy.SetFID(record.GetFID());
    if (repaired.record() != nullptr) {
        const std::vector<std::byte> wkb = MzWKBOfGeometry(*repaired.record());
        OGRGeometry* geometry = nullptr;
        OGRGeometryFactory::createFromWkb(wkb.data(), layer_->GetSpatialRef(), &geometry,
                                          wkb.size());
        copy.SetGeometryDirectly(geometry);
    }
    if (isGeoJSON_) {
        records_ += (records_.empty() ? "" : ",\n") + geoJSONOf(copy);
        return;
    }
    if (layer_->CreateFeature(&copy) != OGRERR_NONE) fail(errors, "a record is refused");
}

std::vector<std::byte> RepairedCopy::bytes() {
    ErrorScope errors;
    if (isTransaction_ && dataset_->CommitTransaction() != OGRERR_NONE) {
        fail(errors, "the transaction is refused");
    }
    dataset_.reset();
    if (errors.hasError()) fail(errors, "");
    vsi_l_offset size = 0;
    const auto* data =
        reinterpret_cast<const std::byte*>(VSIGetMemFileBuffer(place_.c_str(), &size, FALSE));
    if (data == nullptr) fail(errors, "nothing was written");
    if (!isGeoJSON_) return {data, data + size};
    std::string text(reinterpret_cast<const char*>(data), size);
    constexpr std::string_view kList = "\"features\": [\n";
    const std::size_t list = text.find(kList);
    if (list == std::string::npos) fail(errors, "there is no place for records");
    text.insert(list + kList.size(), records_);
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace mezalith::host
