// SPDX-License-Identifier: MIT
#include "mezalith/geometry/plane_vector.hpp"
#include "mezalith/medialaxis/object_text.hpp"
#include "mezalith/medialaxis/truncated_logarithm.hpp"
#include <mezalith/geometry/polygon_functions.hpp>
#include <mezalith/medialaxis/ring_component.hpp>

#include <cmath>
#include <span>

namespace mezalith {
namespace {

/// Indices of the points of one step: before, at and after the current one.
struct Step {
    std::int64_t previous;
    std::int64_t current;
    std::int64_t next;
};

Step forwardStep(std::int64_t k, std::int64_t count) {
    return {k == 0 ? count - 1 : k - 1, k, k == count - 1 ? 0 : k + 1};
}

/// Steps over the point whose edge was dropped last, -1 for none. Only the reverse walk does so.
Step reverseStep(std::int64_t k, std::int64_t count, std::int64_t lastDropped) {
    Step step{k == 0 ? 0 : count - k, count - 1 - k, k == count - 1 ? count - 1 : count - 2 - k};
    if (step.next == lastDropped) step.next = lastDropped <= 0 ? count - 1 : lastDropped - 1;
    if (step.previous == lastDropped) {
        step.previous = lastDropped + 1 == count ? 0 : lastDropped + 1;
    }
    return step;
}

/// Whether a coordinate differs by more than 1e-8 of its current value.
bool differs(double previous, double current) {
    return detail::truncatedLogarithm(std::abs((previous - current) / current)) > -8;
}

bool isReverse(const MzLinearRing* ring) {
    double area = 0;
    MzCentroid(ring, &area);
    return area < 0;
}

void appendStep(MzRingComponents& components, std::shared_ptr<MzRingEdge> edge, MzPoint next) {
    const MzPoint corner = edge->end();
    const MzPoint direction = edge->direction();
    components.push_back(std::move(edge));
    if (detail::cross(direction, detail::minus(next, corner)) < 0) {
        components.push_back(MzRingInflexVertex::ringInflexVertexFromPoint(corner));
    }
}

}  // namespace

std::string MzRingComponent::description() const {
    return detail::baseDescription("MzRingComponent", this);
}

MzRingComponents MzRingComponent::ringComponentsFromRing(const MzLinearRing* ring) {
    const std::span<const MzPoint> points = pointsOf(ring);
    const auto count = static_cast<std::int64_t>(points.size());
    const auto at = [&](std::int64_t index) { return points[static_cast<std::size_t>(index)]; };
    const bool reverse = isReverse(ring);
    std::int64_t lastDropped = -1;
    MzRingComponents components;
    for (std::int64_t k = 0; k < count; ++k) {
        const Step step = reverse ? reverseStep(k, count, lastDropped) : forwardStep(k, count);
        const MzPoint previous = at(step.previous);
        const MzPoint current = at(step.current);
        if (differs(previous.x, current.x) || differs(previous.y, current.y)) {
            appendStep(components, MzRingEdge::ringEdgeFromStart(previous, current), at(step.next));
        } else {
            lastDropped = step.current;
        }
    }
    return components;
}

std::shared_ptr<MzRingEdge> MzRingEdge::ringEdgeFromStart(MzPoint start, MzPoint end) {
    auto edge = std::make_shared<MzRingEdge>();
    edge->setStart(start);
    edge->setEnd(end);
    edge->setDirection(detail::normalised(detail::minus(end, start)));
    return edge;
}

std::string MzRingEdge::description() const {
    return detail::baseDescription("MzRingEdge", this) + " Start: " + detail::pointText(start_, 0) +
           " End: " + detail::pointText(end_, 0) +
           " Direction: " + detail::pointText(direction_, 3);
}

std::shared_ptr<MzRingInflexVertex> MzRingInflexVertex::ringInflexVertexFromPoint(MzPoint point) {
    auto vertex = std::make_shared<MzRingInflexVertex>();
    vertex->setPoint(point);
    return vertex;
}

std::string MzRingInflexVertex::description() const {
    return detail::baseDescription("MzRingInflexVertex", this) +
           " Point: " + detail::pointText(point_, 0);
}

}  // namespace mezalith
