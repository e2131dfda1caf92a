// SPDX-License-Identifier: MIT
#include "mezalith/geometry/plane_vector.hpp"
#include "mezalith/medialaxis/object_text.hpp"
#include "mezalith/medialaxis/preferred_root.hpp"
#include <mezalith/medialaxis/bisector.hpp>
#include <mezalith/medialaxis/curve_intersection.hpp>
#include <mezalith/platform/log.hpp>

#include <cmath>
#include <limits>
#include <optional>

namespace mezalith {
namespace {

using detail::cross;
using detail::lengthOf;
using detail::minus;
using detail::normalised;
using detail::plus;
using detail::times;

constexpr double kNowhere = std::numeric_limits<double>::infinity();

const MzRingEdge* edgeOf(const MzRingComponent* component) {
    const bool isEdge =
        component != nullptr && component->ringComponentType() == MzRingComponentTypeEdge;
    return isEdge ? static_cast<const MzRingEdge*>(component) : nullptr;
}

const MzRingInflexVertex* vertexOf(const MzRingComponent* component) {
    const bool isVertex =
        component != nullptr && component->ringComponentType() == MzRingComponentTypeInflexVertex;
    return isVertex ? static_cast<const MzRingInflexVertex*>(component) : nullptr;
}

/// The direction of the bisector between two edges, the latter on its right.
MzPoint directionBetween(const MzRingEdge& left, const MzRingEdge& right) {
    const MzPoint difference = minus(right.direction(), left.direction());
    const double length = lengthOf(difference);
    if (length == 0) return detail::leftNormal(right.direction());
    return detail::over(difference, length);
}

std::shared_ptr<MzBisector> cornerBisector(MzPoint start, MzPoint direction,
                                           const std::shared_ptr<MzRingComponent>& left,
                                           const std::shared_ptr<MzRingComponent>& right) {
    auto bisector = std::make_shared<MzBisector>();
    bisector->setBisectorType(MzBisectorTypeLine);
    bisector->setStart(start);
    bisector->setDirection(direction);
    bisector->setLeftComponent(left);
    bisector->setRightComponent(right);
    return bisector;
}

struct Line {
    MzPoint start;
    MzPoint direction;
};

Line lineBetween(const MzRingEdge& a, const MzRingEdge& b) {
    double t = 0;
    double other = 0;
    MzRayRayIntersection(&t, &other, a.start(), a.direction(), b.start(), b.direction());
    if (!std::isfinite(t)) return {times(plus(a.start(), b.start()), 0.5), a.direction()};
    return {plus(a.start(), times(a.direction(), t)), minus(b.direction(), a.direction())};
}

Line lineBetween(MzPoint a, MzPoint b) {
    return {times(plus(a, b), 0.5), {b.y - a.y, -(b.x - a.x)}};
}

/// The line of points as far from one component as from the other, both of one kind.
std::optional<Line> lineBetween(const MzRingComponent* a, const MzRingComponent* b) {
    const MzRingEdge* edgeA = edgeOf(a);
    const MzRingEdge* edgeB = edgeOf(b);
    if (edgeA != nullptr && edgeB != nullptr) return lineBetween(*edgeA, *edgeB);
    const MzRingInflexVertex* vertexA = vertexOf(a);
    const MzRingInflexVertex* vertexB = vertexOf(b);
    if (vertexA == nullptr || vertexB == nullptr) return std::nullopt;
    return lineBetween(vertexA->point(), vertexB->point());
}

/// Both roots of a line and a parabola.
struct Crossings {
    double t1;
    double s1;
    double t2;
    double s2;
};

Crossings crossingsOf(const Line& line, const MzBisector& parabola) {
    Crossings c{};
    MzRayParabolaIntersectionBothAnswers(&c.t1, &c.s1, &c.t2, &c.s2, line.start, line.direction,
                                         parabola.start(), parabola.direction(),
                                         parabola.quadratic());
    return c;
}

/// A meeting of two parabolas on the line they have in common: the parameters on both, and on the
/// line.
struct Meeting {
    double s1;
    double s2;
    double t;
};

bool isSame(double a, double b) { return std::abs(std::log10(std::abs(a / b))) < 1e-6; }

/// The root of `first` at the place on the line at which the other parabola has parameter `s`.
Meeting meetingAt(const Crossings& first, double t, double s) {
    if (isSame(first.t1, t)) return {first.s1, s, first.t1};
    if (isSame(first.t2, t)) return {first.s2, s, first.t2};
    return {kNowhere, kNowhere, kNowhere};
}

}  // namespace

MzBisector::~MzBisector() {
    // A bisector about to go hands over its own first, so that its destructor finds only nulls.
    MzBisectors pending;
    const auto take = [&pending](MzBisector& from) {
        if (from.leftBisector_) pending.push_back(std::move(from.leftBisector_));
        if (from.rightBisector_) pending.push_back(std::move(from.rightBisector_));
    };
    take(*this);
    while (!pending.empty()) {
        const auto bisector = std::move(pending.back());
        pending.pop_back();
        if (bisector.use_count() == 1) take(*bisector);
    }
}

MzBisectors MzBisector::bisectorsFromRingComponents(const MzRingComponents& components) {
    MzBisectors bisectors;
    for (std::size_t i = 0; i < components.size(); ++i) {
        const auto& current = components[i];
        const auto& previous = components[i == 0 ? components.size() - 1 : i - 1];
        const MzRingEdge* incoming = edgeOf(previous.get());
        if (incoming == nullptr) continue;
        if (const MzRingEdge* edge = edgeOf(current.get())) {
            bisectors.push_back(cornerBisector(edge->start(), directionBetween(*incoming, *edge),
                                               previous, current));
        } else if (const MzRingInflexVertex* vertex = vertexOf(current.get())) {
            const auto& next = components[i + 1 == components.size() ? 0 : i + 1];
            const MzRingEdge* outgoing = edgeOf(next.get());
            const double nan = std::numeric_limits<double>::quiet_NaN();
            const MzPoint along = outgoing == nullptr ? MzPoint{nan, nan} : outgoing->direction();
            bisectors.push_back(cornerBisector(
                vertex->point(), detail::leftNormal(incoming->direction()), previous, current));
            bisectors.push_back(
                cornerBisector(vertex->point(), detail::leftNormal(along), current, next));
        }
    }
    return bisectors;
}

std::shared_ptr<MzBisector> MzBisector::bisectorFromLeftBisector(
    const std::shared_ptr<MzBisector>& left, const std::shared_ptr<MzBisector>& right,
    MzPoint intersection) {
    auto bisector = std::make_shared<MzBisector>();
    bisector->start_ = intersection;
    bisector->leftBisector_ = left;
    bisector->rightBisector_ = right;
    if (left != nullptr) bisector->leftComponent_ = left->leftComponent_;
    if (right != nullptr) bisector->rightComponent_ = right->rightComponent_;
    bisector->layBetweenComponents();
    return bisector;
}

/// Sets type, direction and, for a parabola, start and quadratic from the components.
void MzBisector::layBetweenComponents() {
    const MzRingEdge* leftEdge = edgeOf(leftComponent_.get());
    const MzRingEdge* rightEdge = edgeOf(rightComponent_.get());
    const MzRingInflexVertex* leftVertex = vertexOf(leftComponent_.get());
    const MzRingInflexVertex* rightVertex = vertexOf(rightComponent_.get());
    if (leftEdge != nullptr && rightEdge != nullptr) {
        bisectorType_ = MzBisectorTypeLine;
        direction_ = directionBetween(*leftEdge, *rightEdge);
    } else if (leftVertex != nullptr && rightVertex != nullptr) {
        bisectorType_ = MzBisectorTypeLine;
        direction_ =
            detail::leftNormal(normalised(minus(rightVertex->point(), leftVertex->point())));
    } else if (leftVertex != nullptr && rightEdge != nullptr) {
        layParabola(*rightEdge, leftVertex->point(), 2);
    } else if (leftEdge != nullptr && rightVertex != nullptr) {
        layParabola(*leftEdge, rightVertex->point(), -2);
    }
}

/// `direction` times the focal distance is the rate at which the parabola runs along the edge.
void MzBisector::layParabola(const MzRingEdge& edge, MzPoint focus, double direction) {
    const MzPoint meeting = start_;
    double focalDistance = 0;
    MzParabolaCoefficientsForSegmentPoint(&focalDistance, &start_, edge.start(), edge.direction(),
                                          focus);
    bisectorType_ = MzBisectorTypeParabola;
    quadratic_ = times(detail::leftNormal(edge.direction()), focalDistance);
    direction_ = times(edge.direction(), direction * focalDistance);
    anchorAt(meeting);
}

/// Moves the parameter so that it is 0 at `point`. The start keeps the curve's own value there.
void MzBisector::anchorAt(MzPoint point) {
    if (cross(quadratic_, direction_) == 0) {
        platform::log(
            "Determinant is zero! This cannot happen -- there's a problem with the algorithm.");
        return;
    }
    const double s = cross(minus(point, start_), quadratic_) / cross(direction_, quadratic_);
    start_ = pointAt(s);
    direction_ = {direction_.x + 2 * quadratic_.x * s, direction_.y + 2 * quadratic_.y * s};
}

MzPoint MzBisector::pointAt(double s) const {
    return detail::curvePoint(start_, direction_, quadratic_, s);
}

MzPoint MzBisector::intersectionWithBisector(const MzBisector* other, double* s1,
                                             double* s2) const {
    if (other == nullptr) {
        *s1 = *s2 = kNowhere;
        return {0, 0};
    }
    const bool isLine = bisectorType_ == MzBisectorTypeLine;
    const bool isParabola = bisectorType_ == MzBisectorTypeParabola;
    const bool otherIsLine = other->bisectorType_ == MzBisectorTypeLine;
    const bool otherIsParabola = other->bisectorType_ == MzBisectorTypeParabola;
    if (isLine && otherIsLine) return lineMeetsLine(*other, s1, s2);
    if (isLine && otherIsParabola) return lineMeetsParabola(*other, s1, s2);
    if (isParabola && otherIsLine) return parabolaMeetsLine(*other, s1, s2);
    return parabolaMeetsParabola(*other, s1, s2);
}

MzPoint MzBisector::lineMeetsLine(const MzBisector& other, double* s1, double* s2) const {
    MzRayRayIntersection(s1, s2, start_, direction_, other.start_, other.direction_);
    const bool ofOneVertex = rightComponent_ == other.leftComponent_ &&
                             vertexOf(rightComponent_.get()) != nullptr && isOfCorner() &&
                             other.isOfCorner();
    if (ofOneVertex) *s1 = *s2 = kNowhere;
    if (*s1 == kNowhere) return {0, 0};
    return plus(start_, times(direction_, *s1));
}

MzPoint MzBisector::lineMeetsParabola(const MzBisector& other, double* s1, double* s2) const {
    const Crossings c = crossingsOf({start_, direction_}, other);
    const bool first = detail::prefersFirstRoot(c.t1, c.t2);
    *s1 = first ? c.t1 : c.t2;
    *s2 = first ? c.s1 : c.s2;
    if (*s1 == kNowhere) return {0, 0};
    return plus(start_, times(direction_, *s1));
}

MzPoint MzBisector::parabolaMeetsLine(const MzBisector& other, double* s1, double* s2) const {
    const Crossings c = crossingsOf({other.start_, other.direction_}, *this);
    const bool first = detail::prefersFirstRoot(c.s1, c.s2);
    *s1 = first ? c.s1 : c.s2;
    *s2 = first ? c.t1 : c.t2;
    if (*s2 == kNowhere) return {0, 0};
    return plus(other.start_, times(other.direction_, *s2));
}

/// Both lie on the bisector of the two components that they do not have in common, a line.
MzPoint MzBisector::parabolaMeetsParabola(const MzBisector& other, double* s1, double* s2) const {
    const bool isRight = leftComponent_ == other.rightComponent_;
    const auto line = lineBetween((isRight ? rightComponent_ : leftComponent_).get(),
                                  (isRight ? other.leftComponent_ : other.rightComponent_).get());
    if (!line) {
        platform::log("Is this case really possible???");
        *s1 = *s2 = kNowhere;
        return {0, 0};
    }
    const Crossings mine = crossingsOf(*line, *this);
    const Crossings others = crossingsOf(*line, other);
    const Meeting first = meetingAt(mine, others.t1, others.s1);
    const Meeting second = meetingAt(mine, others.t2, others.s2);
    const Meeting& kept = detail::prefersFirstRoot(first.s1, second.s1) ? first : second;
    *s1 = kept.s1;
    *s2 = kept.s2;
    return plus(line->start, times(line->direction, kept.t));
}

bool MzBisector::meetsBeforeItsEnd(const MzBisector& earlier) const {
    double mine = 0;
    double its = 0;
    intersectionWithBisector(&earlier, &mine, &its);
    return mine > 0 && its > 0 && its < earlier.endParameter_;
}

bool MzBisector::fakeRendezvousWithBisectorOnRight(const MzBisector* bisector) const {
    if (bisector == nullptr) return false;
    const MzBisector* earlier = bisector->leftBisector_.get();
    while (earlier != nullptr && !meetsBeforeItsEnd(*earlier)) {
        earlier = earlier->leftBisector_.get();
    }
    return earlier != nullptr;
}

bool MzBisector::fakeRendezvousWithBisectorOnLeft(const MzBisector* bisector) const {
    if (bisector == nullptr) return false;
    const MzBisector* earlier = bisector->rightBisector_.get();
    while (earlier != nullptr && !meetsBeforeItsEnd(*earlier)) {
        earlier = earlier->rightBisector_.get();
    }
    return earlier != nullptr;
}

double MzBisector::distanceFromStartToComponents() const {
    if (const MzRingEdge* edge = edgeOf(leftComponent_.get())) {
        const double along = detail::dot(minus(start_, edge->start()), edge->direction());
        const MzPoint foot = plus(edge->start(), times(edge->direction(), along));
        return lengthOf(minus(foot, start_));
    }
    if (const MzRingInflexVertex* vertex = vertexOf(leftComponent_.get())) {
        return lengthOf(minus(start_, vertex->point()));
    }
    return 0;
}

void MzBisector::rescale() {
    if (bisectorType_ != MzBisectorTypeParabola) return;
    const double end = endParameter_;
    direction_ = times(direction_, end);
    quadratic_ = {quadratic_.x * end * end, quadratic_.y * end * end};
    endParameter_ = 1;
}

std::pair<MzPoint, MzPoint> MzBisector::controlPoints(MzPoint end) const {
    const MzPoint tangent{2 * quadratic_.x + direction_.x, 2 * quadratic_.y + direction_.y};
    return {plus(start_, detail::over(direction_, 3)), minus(end, detail::over(tangent, 3))};
}

platform::BezierPath MzBisector::path() {
    platform::BezierPath path;
    path.setLineWidth(0.125);
    if (endParameter_ >= kNowhere) return path;
    path.moveToPoint(start_);
    if (bisectorType_ != MzBisectorTypeParabola) {
        path.lineToPoint(pointAt(endParameter_));
        return path;
    }
    rescale();
    const MzPoint end = plus(plus(start_, direction_), quadratic_);
    const auto [control1, control2] = controlPoints(end);
    path.curveToPoint(end, control1, control2);
    return path;
}

std::string MzBisector::description() const {
    std::string text = detail::baseDescription("MzBisector", this) +
                       " Start: " + detail::pointText(start_, 0) +
                       " Direction: " + detail::pointText(direction_, 3);
    if (bisectorType_ != MzBisectorTypeLine) {
        text += " Quadratic: " + detail::pointText(quadratic_, 3);
    }
    return text;
}

}  // namespace mezalith
