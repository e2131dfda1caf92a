// SPDX-License-Identifier: MIT
#include "apps/mezalith/axis.hpp"

#include "apps/mezalith/text_output.hpp"
#include <mezalith/geometry/multi_point_geometry.hpp>
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>
#include <mezalith/medialaxis/medial_axis.hpp>
#include <mezalith/medialaxis/polygon_spine.hpp>
#include <mezalith/platform/log.hpp>

#include <cmath>
#include <memory>
#include <numbers>
#include <span>
#include <unordered_map>
#include <utility>

namespace mezalith::app {
namespace {

/// Where spines end that are not asked to be pruned: before corners of less than 60 degrees.
constexpr double kSpineRatio = 2;

bool isFinite(MzPoint p) { return std::isfinite(p.x) && std::isfinite(p.y); }

/// Keeps the library's own lines from standard error while it lives.
class QuietLog {
  public:
    QuietLog() : before_(platform::setLogSink([](std::string_view) {})) {}
    ~QuietLog() { platform::setLogSink(std::move(before_)); }
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;

  private:
    platform::LogSink before_;
};

std::string reportOf(const MzMedialAxis& axis) {
    return std::string(axis.isConverged() ? "converged after " : "did not converge in ") +
           std::to_string(axis.loops()) + " loops of at most " + std::to_string(axis.maxLoops());
}

std::optional<Axis> settledAxisOf(const MzLinearRing& ring) {
    const QuietLog quiet;
    const auto found = MzMedialAxis::medialAxisFromRing(&ring);
    if (found == nullptr) return std::nullopt;
    Axis axis;
    axis.report = reportOf(*found);
    std::unordered_map<const MzMedialAxisNode*, std::uint32_t> numbers;
    for (const auto& node : found->nodes()) {
        if (!isFinite(node->point()) || !std::isfinite(node->distance())) continue;
        numbers[node.get()] = static_cast<std::uint32_t>(axis.nodes.size());
        axis.nodes.push_back({node->point(), node->distance()});
    }
    for (const auto& arc : found->arcs()) {
        const auto start = numbers.find(arc->start());
        const auto end = numbers.find(arc->end());
        const bool isDrawable = start != numbers.end() && end != numbers.end() &&
                                isFinite(arc->controlPoint1()) && isFinite(arc->controlPoint2());
        if (!isDrawable) continue;
        axis.arcs.push_back({start->second, end->second, arc->isParabola(), arc->controlPoint1(),
                             arc->controlPoint2()});
    }
    const MzMedialAxisNode* deepest = found->mostInteriorNode();
    const auto number = numbers.find(deepest);
    if (number != numbers.end()) axis.deepest = axis.nodes[number->second];
    return axis;
}

std::optional<Axis> skeletonAxisOf(const MzPolygon& polygon, const AxisQuery& query) {
    const auto whole = MzPolygonSkeleton::skeletonFromPolygon(&polygon);
    if (whole == nullptr) return std::nullopt;
    const auto shown = query.ratio ? whole->prunedByRatio(*query.ratio) : whole;
    Axis axis{shown->nodes(), shown->arcs(), whole->deepestNode(), {}, {}};
    if (query.wantsSpine) {
        const auto pruned = whole->prunedByRatio(query.ratio.value_or(kSpineRatio));
        axis.spine = MzSpineOfPolygon(&polygon, pruned.get());
    }
    return axis;
}

std::string pairOf(MzPoint p) { return "[" + jsonNumber(p.x) + "," + jsonNumber(p.y) + "]"; }

std::string coordinatesOf(std::span<const MzPoint> points) {
    std::string text = "[";
    for (const MzPoint p : points) text += (text.size() > 1 ? "," : "") + pairOf(p);
    return text + "]";
}

std::string featureText(const char* type, const std::string& coordinates,
                        const JsonObject& properties) {
    JsonObject geometry;
    geometry.add("type", std::string_view(type)).addJson("coordinates", coordinates);
    JsonObject feature;
    feature.add("type", std::string_view("Feature"))
        .addJson("geometry", geometry.text())
        .addJson("properties", properties.text());
    return feature.text();
}

/// The properties that every feature has.
JsonObject propertiesOf(const char* kind, std::size_t polygon) {
    JsonObject properties;
    properties.add("kind", std::string_view(kind)).add("polygon", polygon);
    return properties;
}

std::vector<MzPoint> pointsOfSpine(const Axis& axis) {
    std::vector<MzPoint> points;
    points.reserve(axis.spine.size());
    for (const MzSkeletonNode& node : axis.spine) points.push_back(node.point);
    return points;
}

std::string widthsOf(const Axis& axis) {
    std::string text = "[";
    for (const MzSkeletonNode& node : axis.spine) {
        text += (text.size() > 1 ? "," : "") + jsonNumber(2 * node.clearance);
    }
    return text + "]";
}

std::vector<MzPoint> circleAround(const MzSkeletonNode& node) {
    constexpr int kCorners = 180;
    std::vector<MzPoint> points;
    for (int i = 0; i <= kCorners; ++i) {
        const double angle = 2 * std::numbers::pi * (i % kCorners) / kCorners;
        points.push_back({node.point.x + node.clearance * std::cos(angle),
                          node.point.y + node.clearance * std::sin(angle)});
    }
    return points;
}

std::shared_ptr<host::Feature> lineFeature(const char* layer, std::vector<MzPoint> points) {
    const auto record =
        std::make_shared<const host::FeatureRecord>(host::FeatureRecord{1, layer, {}});
    const MzMultiPoint line{static_cast<std::uint32_t>(points.size()), points.data()};
    return std::make_shared<host::Feature>(
        record, host::Part{host::Form::Line, MzMultiPointGeometry::initWithMultiPoint(line)});
}

}  // namespace

std::vector<MzPoint> Axis::pointsOf(const MzSkeletonArc& arc) const {
    const MzPoint a = nodes[arc.start].point;
    const MzPoint d = nodes[arc.end].point;
    if (!arc.isParabola) return {a, d};
    constexpr int kPieces = 16;
    const MzPoint b = arc.controlPoint1;
    const MzPoint c = arc.controlPoint2;
    std::vector<MzPoint> points{a};
    for (int i = 1; i < kPieces; ++i) {
        const double t = static_cast<double>(i) / kPieces;
        const double r = 1 - t;
        const double w[4]{r * r * r, 3 * r * r * t, 3 * r * t * t, t * t * t};
        points.push_back({w[0] * a.x + w[1] * b.x + w[2] * c.x + w[3] * d.x,
                          w[0] * a.y + w[1] * b.y + w[2] * c.y + w[3] * d.y});
    }
    points.push_back(d);
    return points;
}

std::optional<Axis> axisOf(const MzPolygon& polygon, const AxisQuery& query) {
    const std::span<MzLinearRing> rings = ringsOf(&polygon);
    const std::size_t ring = query.ring.value_or(0);
    if (ring >= rings.size()) return std::nullopt;
    if (query.isSettled) return settledAxisOf(rings[ring]);
    const MzPolygon only{1, &rings[ring]};
    return skeletonAxisOf(query.ring ? only : polygon, query);
}

std::vector<MzPolygon> polygonsOfFeature(const host::Feature& feature) {
    const auto geometry = feature.geometry();
    if (const auto* polygon = dynamic_cast<const MzPolygonGeometry*>(geometry.get())) {
        return {*polygon->polygonGeometry()};
    }
    const auto* polygons = dynamic_cast<const MzMultiPolygonGeometry*>(geometry.get());
    if (polygons == nullptr) return {};
    const auto members = polygonsOf(polygons->multiPolygonGeometry());
    return {members.begin(), members.end()};
}

std::string geoJSONOf(const Axis& axis, std::size_t polygon) {
    std::string text;
    const auto add = [&text](const std::string& feature) {
        text += (text.empty() ? "" : ",\n") + feature;
    };
    for (std::size_t i = 0; i < axis.nodes.size(); ++i) {
        JsonObject properties = propertiesOf("node", polygon);
        properties.add("node", i).add("clearance", axis.nodes[i].clearance);
        add(featureText("Point", pairOf(axis.nodes[i].point), properties));
    }
    for (const MzSkeletonArc& arc : axis.arcs) {
        JsonObject properties = propertiesOf("arc", polygon);
        properties.add("start", std::size_t{arc.start}).add("end", std::size_t{arc.end});
        if (arc.isParabola) {
            const std::vector<MzPoint> controls{arc.controlPoint1, arc.controlPoint2};
            properties.addJson("controlPoints", coordinatesOf(controls));
        }
        add(featureText("LineString", coordinatesOf(axis.pointsOf(arc)), properties));
    }
    if (axis.deepest) {
        JsonObject properties = propertiesOf("deepest", polygon);
        properties.add("clearance", axis.deepest->clearance);
        add(featureText("Point", pairOf(axis.deepest->point), properties));
    }
    if (axis.spine.size() > 1) {
        JsonObject properties = propertiesOf("spine", polygon);
        properties.addJson("widths", widthsOf(axis));
        add(featureText("LineString", coordinatesOf(pointsOfSpine(axis)), properties));
    }
    return text;
}

std::vector<std::shared_ptr<host::Feature>> featuresOf(const Axis& axis, bool showsCircle) {
    std::vector<std::shared_ptr<host::Feature>> features;
    features.reserve(axis.arcs.size() + 2);
    for (const MzSkeletonArc& arc : axis.arcs) {
        features.push_back(lineFeature("axis", axis.pointsOf(arc)));
    }
    if (showsCircle && axis.deepest) {
        features.push_back(lineFeature("circle", circleAround(*axis.deepest)));
    }
    if (axis.spine.size() > 1) features.push_back(lineFeature("spine", pointsOfSpine(axis)));
    return features;
}

}  // namespace mezalith::app
