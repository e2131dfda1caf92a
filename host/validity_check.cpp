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
    std::optional<MzDefect> defect;
    MzGeometryBlock repaired;
};

Finding findingOf(const MzWKBReading& geometry) {
    if (!geometry) {
        const double nowhere = std::numeric_limits<double>::quiet_NaN();
        return {MzDefect{geometry.error.text(), {nowhere, nowhere}}, {}};
    }
    Finding finding{MzDefectOf(*geometry.geometry.record()), {}};
    if (finding.defect) finding.repaired = MzRepaired(*geometry.geometry.record());
    return finding;
}

void count(LayerValidity& layer, std::int64_t id, const Finding& finding,
           const ValidityCheck& check) {
    ++layer.records;
    if (!finding.defect) return;
    const bool isRepairable = finding.repaired.record() != nullptr;
    ++layer.invalid;
    if (!isRepairable) ++layer.lost;
    if (check.found) check.found({layer.layer, id, *finding.defect, isRepairable});
}

Finding findingOf(const OGRFeature& record) {
    const OGRGeometry* geometry = record.GetGeometryRef();
    if (geometry == nullptr) return {};
    return findingOf(readingOf(*simplified(OGRGeometryUniquePtr(geometry->clone()))));
}

void checkLayer(OGRLayer& layer, const ValidityCheck& check, RepairedCopy* copy) {
    ErrorScope errors;
    LayerValidity validity{.layer = layer.GetName()};
    const auto expected = static_cast<double>(layer.GetFeatureCount(FALSE));
    if (copy != nullptr) copy->beginLayer(layer);
    layer.ResetReading();
    while (const OGRFeatureUniquePtr record{layer.GetNextFeature()}) {
        const Finding finding = findingOf(*record);
        count(validity, record->GetFID(), finding, check);
        if (copy != nullptr) copy->add(*record, finding.repaired);
        if (check.progress && expected > 0) {
            check.progress(std::min(1.0, static_cast<double>(validity.records) / expected));
        }
    }
    if (errors.hasError()) throw Failure(layer.GetName(), errors.takeError(""));
    if (check.done) check.done(validity);
}

std::vector<std::byte> checkWKBFile(const SourceAddress& address, const ValidityCheck& check) {
    if (check.copy && !isWKBFile(*check.copy)) {
        throw Failure(*check.copy, "a copy of a .wkb file ends in .wkb");
    }
    std::vector<std::byte> bytes = readFile(address.name);
    const Finding finding = findingOf(readWKB(bytes));
    LayerValidity validity{.layer = layerNameOfFile(address.name)};
    count(validity, 1, finding, check);
    if (check.done) check.done(validity);
    const MzGeometryRecord* repaired = finding.repaired.record();
    return repaired != nullptr ? MzWKBOfGeometry(*repaired) : bytes;
}

std::vector<std::byte> checkDataset(const SourceAddress& address, const ValidityCheck& check) {
    const GDALDatasetUniquePtr dataset = openedDataset(address);
    const auto copy = check.copy ? std::make_unique<RepairedCopy>(*check.copy) : nullptr;
    for (OGRLayer* layer : layersOf(*dataset, address)) checkLayer(*layer, check, copy.get());
    return copy != nullptr ? copy->bytes() : std::vector<std::byte>();
}

}  // namespace

std::vector<std::byte> checkValidity(const std::string& source, const ValidityCheck& check) {
    const SourceAddress address = SourceAddress::of(source);
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
