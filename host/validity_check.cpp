// SPDX-License-Identifier: MIT
#include "host/validity_check.hpp"

#include "host/failure.hpp"
#include "host/map_library.hpp"
#include "host/repaired_copy.hpp"
#include "host/source_address.hpp"
#include "host/wkb_file.hpp"
#include <mezalith/geometry/wkb_writer.hpp>

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

namespace mezalith::host {
namespace {

/// A geometry looked at: what is wrong with it, and what a repair makes of it.
struct Finding {
    std::optional<MzDefect> defect{};
    MzGeometryBlock repaired{};
    bool isMissing = false;
    std::string dropped{};  ///< what a repair drops
};

/// A defect of the whole, which is nowhere.
MzDefect unreadable(std::string why) {
    constexpr double kNowhere = std::numeric_limits<double>::quiet_NaN();
    return {std::move(why), {kNowhere, kNowhere}};
}

std::string furtherDimensions(bool hasZ, bool hasM) {
    return std::string(hasZ ? "Z" : "") + (hasM ? "M" : "");
}

Finding findingOf(const MzWKBReading& geometry) {
    if (!geometry) return {.defect = unreadable(geometry.error.text())};
    Finding finding{.defect = MzDefectOf(*geometry.geometry.record())};
    if (!finding.defect) return finding;
    finding.repaired = MzRepaired(*geometry.geometry.record());
    finding.dropped = furtherDimensions(geometry.hasZ, geometry.hasM);
    return finding;
}

/// `errors` has what the reading of the record came upon.
Finding findingOf(const OGRFeature& record, ErrorScope& errors) {
    Finding finding;
    if (const OGRGeometry* geometry = record.GetGeometryRef()) {
        finding = findingOf(readingOf(*simplified(OGRGeometryUniquePtr(geometry->clone()))));
        finding.dropped =
            furtherDimensions(geometry->Is3D() != FALSE, geometry->IsMeasured() != FALSE);
    }
    if (errors.hasError() && !finding.defect) {
        finding.defect = unreadable(errors.takeError(""));
        finding.isMissing = record.GetGeometryRef() == nullptr;
    }
    return finding;
}

void count(LayerValidity& layer, std::int64_t id, const Finding& finding,
           const ValidityCheck& check) {
    ++layer.records;
    if (!finding.defect) return;
    const bool isRepairable = finding.repaired.record() != nullptr;
    ++layer.invalid;
    if (!isRepairable) ++layer.lost;
    if (finding.isMissing) ++layer.missing;
    if (!check.found) return;
    check.found({layer.layer, id, *finding.defect, isRepairable, finding.isMissing,
                 isRepairable ? finding.dropped : ""});
}

/// Whether there was another record.
bool checkNext(OGRLayer& layer, LayerValidity& validity, const ValidityCheck& check,
               RepairedCopy* copy) {
    ErrorScope errors;
    const OGRFeatureUniquePtr record{layer.GetNextFeature()};
    if (record == nullptr) {
        if (errors.hasError()) throw Failure(layer.GetName(), errors.takeError(""));
        return false;
    }
    const Finding finding = findingOf(*record, errors);
    count(validity, record->GetFID(), finding, check);
    if (copy != nullptr) copy->add(*record, finding.repaired);
    return true;
}

void checkLayer(OGRLayer& layer, const ValidityCheck& check, RepairedCopy* copy) {
    ErrorScope errors;
    LayerValidity validity{.layer = layer.GetName()};
    const auto expected = static_cast<double>(layer.GetFeatureCount(FALSE));
    if (copy != nullptr) copy->beginLayer(layer);
    layer.ResetReading();
    while (checkNext(layer, validity, check, copy)) {
        if (check.progress && expected > 0) {
            check.progress(std::min(1.0, static_cast<double>(validity.records) / expected));
        }
    }
    if (errors.hasError()) throw Failure(layer.GetName(), errors.takeError(""));
    if (check.done) check.done(validity);
}

std::vector<std::byte> checkWKBFile(const SourceAddress& address, const ValidityCheck& check) {
    std::vector<std::byte> bytes = readFile(address.name);
    const MzWKBReading geometry = readWKB(bytes);
    const Finding finding = findingOf(geometry);
    LayerValidity validity{.layer = layerNameOfFile(address.name)};
    count(validity, 1, finding, check);
    if (check.done) check.done(validity);
    const MzGeometryRecord* repaired = finding.repaired.record();
    if (repaired == nullptr) return bytes;
    return MzWKBOfGeometry(*repaired, {geometry.form, geometry.isLittleEndian, geometry.srid});
}

std::vector<std::byte> checkDataset(const SourceAddress& address, const ValidityCheck& check) {
    const GDALDatasetUniquePtr dataset = openedDataset(address);
    const auto copy = check.copy ? std::make_unique<RepairedCopy>(*check.copy) : nullptr;
    for (OGRLayer* layer : layersOf(*dataset, address)) checkLayer(*layer, check, copy.get());
    return copy != nullptr ? copy->bytes() : std::vector<std::byte>();
}

}  // namespace

std::optional<std::string> faultOfCopyName(const std::string& source, const std::string& copy) {
    if (isWKBFile(SourceAddress::of(source).name)) {
        if (isWKBFile(copy)) return {};
        return "a copy of a .wkb file ends in .wkb";
    }
    if (RepairedCopy::isName(copy)) return {};
    return std::string("a copy ends in ") + RepairedCopy::kEndings;
}

std::vector<std::byte> checkValidity(const std::string& source, const ValidityCheck& check) {
    const SourceAddress address = SourceAddress::of(source);
    if (check.copy) {
        if (const auto fault = faultOfCopyName(source, *check.copy)) {
            throw Failure(*check.copy, *fault);
        }
    }
    try {
        return isWKBFile(address.name) ? checkWKBFile(address, check)
                                       : checkDataset(address, check);
    } catch (const Failure& failure) {
        const std::string text = failure.what();
        const bool isNamed =
            text.starts_with(address.name) || (check.copy && text.starts_with(*check.copy));
        if (isNamed) throw;
        throw failure.within(source);
    }
}

}  // namespace mezalith::host
