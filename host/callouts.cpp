// SPDX-License-Identifier: MIT
#include "host/callouts.hpp"

#include "host/failure.hpp"
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/geometry/polygon_functions.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/style/bubble_symbolizer.hpp>
#include <mezalith/style/style.hpp>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace mezalith::host {
namespace {

constexpr char kCardName[] = "callout";

constexpr char kDefaultCard[] = R"({
    "format": "mezalith interface",
    "version": 1,
    "content": {"column": [
        {"label": "{featureName}", "size": 13, "bold": true, "maxWidth": 220},
        {"label": "{kind}", "size": 11, "color": "#666666", "maxWidth": 220}
    ], "spacing": 1, "minWidth": 80}
})";

/// The card under its name while callouts are made from it.
class OfferedCard {
  public:
    explicit OfferedCard(platform::InterfaceDocument::Pointer card) {
        platform::InterfaceFile::setLoader(kCardName,
                                           platform::InterfaceDocument::loader(std::move(card)));
    }
    ~OfferedCard() { platform::InterfaceFile::setLoader(kCardName, nullptr); }
    OfferedCard(const OfferedCard&) = delete;
    OfferedCard& operator=(const OfferedCard&) = delete;
};

/// Keeps the centroid of the largest ring it is shown.
struct LargestRing {
    std::optional<MzPoint> centroid;
    double area = 0;

    void see(const MzPolygon& polygon) {
        for (const MzLinearRing& ring : ringsOf(&polygon)) {
            double signedArea = 0;
            const auto middle = MzCentroid(&ring, &signedArea);
            if (!middle || !(std::abs(signedArea) > area)) continue;
            centroid = middle;
            area = std::abs(signedArea);
        }
    }
};

std::optional<MzPoint> centroidOf(const MzGeometry& geometry) {
    LargestRing largest;
    if (const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(&geometry)) {
        largest.see(*polygon->polygonGeometry());
    } else if (const auto* polygons = dynamic_cast<const MzMultiPolygonGeometry*>(&geometry)) {
        for (const MzPolygon& member : polygonsOf(polygons->multiPolygonGeometry())) {
            largest.see(member);
        }
    }
    return largest.centroid;
}

/// Another feature of the same record, at a point, that draws with `symbolizer` alone.
Feature featureAt(MzPoint point, const Feature& feature,
                  const std::shared_ptr<MzSymbolizer>& symbolizer) {
    const auto style = std::make_shared<MzStyle>();
    const auto rule = std::make_shared<MzRule>();
    rule->addSymbolizer(symbolizer);
    style->addRule(rule);
    Feature place(feature.record(), {Form::Points, MzPointGeometry::initWithPoint(point)});
    place.setStyle(style);
    return place;
}

}  // namespace

std::optional<MzPoint> calloutPlace(const Part& part) {
    if (const auto* point = dynamic_cast<const MzPointGeometry*>(part.geometry.get())) {
        return point->asNSPoint();
    }
    const auto* points = dynamic_cast<const MzMultiPointGeometry*>(part.geometry.get());
    if (points == nullptr) return centroidOf(*part.geometry);
    const auto run = pointsOf(points->multiPointGeometry());
    if (run.empty()) return std::nullopt;
    return run[part.form == Form::Line ? run.size() / 2 : 0];
}

platform::InterfaceDocument::Pointer Callouts::defaultCard() {
    return platform::InterfaceDocument::documentWithText(kDefaultCard, nullptr);
}

Callouts::Callouts(std::shared_ptr<const platform::Predicate> condition,
                   platform::InterfaceDocument::Pointer card)
    : condition_(std::move(condition)), card_(std::move(card)) {}

void Callouts::show(const Feature& feature, MapView& view) {
    if (!condition_->evaluateWithObject(&feature)) return;
    const auto place = calloutPlace({feature.form(), feature.geometry()});
    if (!place) return;
    // Without a style: what is represented must not own the callout that owns it.
    const auto represented = feature.withGeometry(feature.geometry());
    represented->setStyle(nullptr);
    const OfferedCard offered(card_);
    const auto callout = MzBubbleSymbolizer::initWithNib(kCardName, represented);
    view.draw(featureAt(*place, feature, callout));
    if (callout->bubbleView()->superview() == nullptr) return;
    if (++count_ > kMost) {
        throw Failure("callouts", "more than " + std::to_string(kMost) + " features meet " +
                                      condition_->predicateFormat());
    }
}

}  // namespace mezalith::host
