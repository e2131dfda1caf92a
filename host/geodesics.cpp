// SPDX-License-Identifier: MIT
#include "host/geodesics.hpp"

#include <mezalith/projection/geodesic_line.hpp>

#include <algorithm>

namespace mezalith::host {
namespace {

/// Pixels between two points, and the metres that come of it at least and at most. At a kilometre
/// chord and arc are two centimetres apart, less than any map shows.
constexpr double kPixels = 4;
constexpr double kLeast = 1000;
constexpr double kMost = 50'000;

}  // namespace

Layer geodesicLayer(std::span<const Ends> lines, const MapView& view) {
    const double metres = view.scaleDenominator() * MapView::kPixelSize * kPixels;
    const double resolution = std::clamp(metres, kLeast, kMost);
    Layer layer{.name = kGeodesicLayer, .features = {}, .unusable = {}};
    for (const auto& [start, end] : lines) {
        const auto id = static_cast<std::int64_t>(layer.features.size()) + 1;
        const auto record =
            std::make_shared<const FeatureRecord>(FeatureRecord{id, layer.name, {}});
        for (auto& geometry : MzGeodesicLines(start, end, resolution, nullptr)) {
            layer.features.push_back(
                std::make_shared<Feature>(record, Part{Form::Line, std::move(geometry)}));
        }
    }
    return layer;
}

}  // namespace mezalith::host
