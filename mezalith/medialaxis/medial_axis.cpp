// SPDX-License-Identifier: MIT
#include "mezalith/geometry/plane_vector.hpp"
#include "mezalith/medialaxis/object_text.hpp"
#include <mezalith/medialaxis/medial_axis.hpp>
#include <mezalith/medialaxis/ring_component.hpp>
#include <mezalith/platform/bezier_path.hpp>
#include <mezalith/platform/graphics_port.hpp>
#include <mezalith/platform/log.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <list>
#include <span>
#include <string>

namespace mezalith {
namespace {

/// The diagonal of the bounding box.
double diagonalOf(std::span<const MzPoint> points) {
    MzPoint low = points.front();
    MzPoint high = low;
    for (const MzPoint p : points) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    const double height = high.y - low.y;
    const double width = high.x - low.x;
    return std::sqrt(height * height + width * width);
}

/// The bisectors that are still running, around the ring, and the four of them that are looked at.
/// Two neighbours that meet are replaced by the one that leaves their meeting point; where that
/// proves wrong, it is split into the two again.
class Front {
  public:
    Front(MzBisectors bisectors, double reach)
        : list_(std::make_move_iterator(bisectors.begin()),
                std::make_move_iterator(bisectors.end())),
          reach_(reach),
          maxLoops_(static_cast<std::uint64_t>(list_.size()) * list_.size()) {
        look(list_.begin());
        if (list_.size() < 4) b3_ = list_.begin();
    }

    void run() {
        while (list_.size() > 2 && loops_ < maxLoops_) {
            ++loops_;
            goOn();
        }
    }

    bool isEmpty() const { return list_.empty(); }
    std::uint64_t loops() const { return loops_; }
    std::uint64_t maxLoops() const { return maxLoops_; }
    std::shared_ptr<MzBisector> first() const { return at(b0_); }
    std::shared_ptr<MzBisector> second() const { return at(b1_); }

  private:
    using List = std::list<std::shared_ptr<MzBisector>>;
    using Place = List::iterator;

    /// Parameters of the meetings of b0 and b1, of b1 and b2, and of b2 and b3.
    struct Meetings {
        double b1WithB0;
        double b0WithB1;
        double b1WithB2;
        double b2WithB1;
        double b2WithB3;
        double b3WithB2;
        MzPoint point;  ///< of b1 and b2
    };

    std::shared_ptr<MzBisector> at(Place place) const {
        return place == list_.end() ? nullptr : *place;
    }

    Place after(Place place) {
        ++place;
        return place == list_.end() ? list_.begin() : place;
    }

    /// Takes the four from `place` on; those that are too many for the list are its end.
    void look(Place place) {
        b0_ = place;
        b1_ = list_.size() < 2 ? list_.end() : after(b0_);
        b2_ = list_.size() < 3 ? list_.end() : after(b1_);
        b3_ = list_.size() < 4 ? list_.end() : after(b2_);
    }

    Meetings meetings() const {
        Meetings m{};
        (*b0_)->intersectionWithBisector(b1_->get(), &m.b0WithB1, &m.b1WithB0);
        m.point = (*b1_)->intersectionWithBisector(b2_->get(), &m.b1WithB2, &m.b2WithB1);
        if (b3_ != list_.end()) {
            (*b3_)->intersectionWithBisector(b2_->get(), &m.b3WithB2, &m.b2WithB3);
        }
        return m;
    }

    /// Whether b1 and b2 meet before either meets its other neighbour.
    bool isTheirTurn(const Meetings& m) const {
        bool leftFirst =
            m.b0WithB1 > 0 && m.b1WithB0 > 0 && m.b1WithB0 < m.b1WithB2 && list_.size() > 3;
        bool rightFirst =
            b3_ != list_.end() && m.b3WithB2 > 0 && m.b2WithB3 > 0 && m.b2WithB3 < m.b2WithB1;
        if (list_.size() == 4 && leftFirst != rightFirst) leftFirst = rightFirst = false;
        return !leftFirst && !rightFirst;
    }

    void goOn() {
        const Meetings m = meetings();
        const bool valid =
            0 < m.b1WithB2 && m.b1WithB2 < reach_ && 0 < m.b2WithB1 && m.b2WithB1 < reach_;
        if (valid && isTheirTurn(m)) {
            merge(m);
        } else if ((*b1_)->fakeRendezvousWithBisectorOnRight(b2_->get())) {
            splitSecond();
        } else if ((!valid && (*b1_)->leftBisector() != nullptr &&
                    (*b1_)->rightBisector() != nullptr) ||
                   (*b2_)->fakeRendezvousWithBisectorOnLeft(b1_->get()) ||
                   (*b0_)->fakeRendezvousWithBisectorOnRight(b1_->get())) {
            splitFirst();
        } else {
            look(b1_);
        }
    }

    void merge(const Meetings& m) {
        (*b1_)->setEndParameter(m.b1WithB2);
        (*b2_)->setEndParameter(m.b2WithB1);
        const auto merged =
            list_.insert(b1_, MzBisector::bisectorFromLeftBisector(*b1_, *b2_, m.point));
        list_.erase(b1_);
        list_.erase(b2_);
        look(merged);
    }

    /// Puts the bisectors that met at the start of the one at `place` there, the right one in its
    /// place.
    std::pair<Place, Place> split(Place place) {
        const std::shared_ptr<MzBisector> gone = *place;
        gone->leftBisector()->setEndParameter(1);
        gone->rightBisector()->setEndParameter(1);
        *place = gone->rightBisector();
        return {list_.insert(place, gone->leftBisector()), place};
    }

    void splitFirst() {
        const auto [left, right] = split(b1_);
        b0_ = left;
        b1_ = right;
    }

    void splitSecond() {
        const auto [left, right] = split(b2_);
        b2_ = left;
        b3_ = right;
    }

    List list_;
    double reach_;
    std::uint64_t maxLoops_;
    std::uint64_t loops_ = 0;
    Place b0_;
    Place b1_;
    Place b2_;
    Place b3_;
};

void report(const Front& front, std::size_t points) {
    if (front.loops() == front.maxLoops()) {
        platform::log("Failed to converge!!! maxLoops: " + std::to_string(front.maxLoops()));
        return;
    }
    const double exponent =
        std::log(static_cast<double>(front.loops())) / std::log(static_cast<double>(points));
    platform::log("Total loops: " + std::to_string(front.loops()) +
                  ", maxLoops: " + std::to_string(front.maxLoops()) +
                  " -- converged in n^x where x: " + detail::fixedText(exponent, 6));
}

bool isInflexVertex(const MzRingComponent* component) {
    return component != nullptr &&
           component->ringComponentType() == MzRingComponentTypeInflexVertex;
}

/// Whether a bisector leaves an inflex vertex at right angles to one of its edges: its points are
/// no nearer to that edge than to the vertex.
bool isNormalOfVertex(const MzBisector& bisector) {
    return bisector.leftBisector() == nullptr && bisector.rightBisector() == nullptr &&
           (isInflexVertex(bisector.leftComponent().get()) ||
            isInflexVertex(bisector.rightComponent().get()));
}

void strokeArc(platform::GraphicsPort& port, const MzMedialAxisArc& arc) {
    const MzPoint start = arc.start()->point();
    const MzPoint end = arc.end()->point();
    const bool isDrawable = detail::isFinite(start) && detail::isFinite(end) &&
                            detail::isFinite(arc.controlPoint1()) &&
                            detail::isFinite(arc.controlPoint2());
    if (!isDrawable) return;
    platform::BezierPath path;
    path.setLineWidth(0.125);
    path.moveToPoint(start);
    if (arc.isParabola()) {
        path.curveToPoint(end, arc.controlPoint1(), arc.controlPoint2());
    } else {
        path.lineToPoint(end);
    }
    path.stroke(port);
}

}  // namespace

std::shared_ptr<MzMedialAxis> MzMedialAxis::medialAxisFromRing(const MzLinearRing* ring) {
    const std::span<const MzPoint> points = pointsOf(ring);
    if (points.size() <= 4) return nullptr;
    Front front(
        MzBisector::bisectorsFromRingComponents(MzRingComponent::ringComponentsFromRing(ring)),
        diagonalOf(points));
    front.run();
    report(front, points.size());
    auto axis = std::make_shared<MzMedialAxis>();
    axis->loops_ = front.loops();
    axis->maxLoops_ = front.maxLoops();
    if (front.isEmpty()) return axis;
    const std::shared_ptr<MzBisector> first = front.first();
    const std::shared_ptr<MzBisector> second = front.second();
    const std::shared_ptr<MzBisector> left = second ? second->leftBisector() : nullptr;
    double s = 0;
    double t = 0;
    const MzPoint meeting = first->intersectionWithBisector(left.get(), &s, &t);
    // Settled: t is a parameter of the other bisector.
    first->setEndParameter(0 < s && s < t ? s : t);
    MzMedialAxisNode* root = axis->addNode(meeting, first->distanceFromStartToComponents());
    axis->buildNetworkFromNode(root, first);
    axis->buildNetworkFromNode(root, left);
    axis->buildNetworkFromNode(root, second ? second->rightBisector() : nullptr);
    return axis;
}

MzMedialAxisNode* MzMedialAxis::addNode(MzPoint point, double distance) {
    nodes_.push_back(std::make_shared<MzMedialAxisNode>());
    nodes_.back()->setPoint(point);
    nodes_.back()->setDistance(distance);
    return nodes_.back().get();
}

/// Adds the arc of `bisector`, which ends at `end`, and the node at its start.
MzMedialAxisNode* MzMedialAxis::addArc(MzMedialAxisNode* end, MzBisector& bisector) {
    arcs_.push_back(std::make_shared<MzMedialAxisArc>());
    MzMedialAxisArc* arc = arcs_.back().get();
    arc->setEnd(end);
    if (bisector.bisectorType() == MzBisectorTypeParabola) {
        bisector.rescale();
        const auto [control1, control2] = bisector.controlPoints(end->point());
        arc->setIsParabola(true);
        arc->setControlPoint1(control1);
        arc->setControlPoint2(control2);
    }
    end->addArc(arc);
    MzMedialAxisNode* start = addNode(bisector.start(), bisector.distanceFromStartToComponents());
    start->addArc(arc);
    arc->setStart(start);
    return start;
}

void MzMedialAxis::buildNetworkFromNode(MzMedialAxisNode* node,
                                        const std::shared_ptr<MzBisector>& bisector) {
    std::vector<std::pair<MzMedialAxisNode*, MzBisector*>> pending{{node, bisector.get()}};
    while (!pending.empty()) {
        const auto [end, next] = pending.back();
        pending.pop_back();
        if (next == nullptr || isNormalOfVertex(*next)) continue;
        MzMedialAxisNode* start = addArc(end, *next);
        pending.emplace_back(start, next->rightBisector().get());
        pending.emplace_back(start, next->leftBisector().get());
    }
}

MzMedialAxisNode* MzMedialAxis::mostInteriorNode() const {
    MzMedialAxisNode* best = nullptr;
    for (const auto& node : nodes_) {
        if (node == nullptr) continue;
        if (best == nullptr || node->distance() > best->distance()) best = node.get();
    }
    return best;
}

void MzMedialAxis::draw() const {
    const auto* context = platform::GraphicsContext::current();
    platform::GraphicsPort* port = context == nullptr ? nullptr : context->graphicsPort();
    if (port == nullptr) return;
    for (const auto& arc : arcs_) {
        if (arc != nullptr && arc->start() != nullptr && arc->end() != nullptr) {
            strokeArc(*port, *arc);
        }
    }
    const MzMedialAxisNode* deepest = mostInteriorNode();
    if (deepest == nullptr || !detail::isFinite(deepest->point())) return;
    port->beginPath();
    port->addEllipseInRect({detail::minus(deepest->point(), {1.5, 1.5}), {3, 3}});
    port->drawPath(platform::PathDrawingMode::Fill);
}

}  // namespace mezalith
