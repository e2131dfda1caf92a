// SPDX-License-Identifier: MIT
#include "mezalith/medialaxis/test_support.hpp"
#include <mezalith/medialaxis/medial_axis.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith {
namespace {

using test::Points;
using test::Random;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr std::uint64_t kSeed = 20261121;

std::shared_ptr<MzMedialAxis> axisOf(Points points) {
    const test::LogLines quiet;
    const auto ring = test::recordOf<MzLinearRing>(points);
    return MzMedialAxis::medialAxisFromRing(&ring);
}

const MzMedialAxisNode* nodeAt(const MzMedialAxis& axis, MzPoint point) {
    for (const auto& node : axis.nodes()) {
        if (std::hypot(node->point().x - point.x, node->point().y - point.y) < 1e-9) {
            return node.get();
        }
    }
    return nullptr;
}

bool isLinked(const MzMedialAxisNode& node, const MzMedialAxisArc* arc) {
    return std::ranges::count(node.arcs(), arc) == 1;
}

// A tree: each node but the root starts one arc, and both ends know their arcs.
void expectTree(const MzMedialAxis& axis) {
    ASSERT_EQ(axis.nodes().size(), axis.arcs().size() + 1);
    for (std::size_t i = 0; i < axis.arcs().size(); ++i) {
        const MzMedialAxisArc& arc = *axis.arcs()[i];
        EXPECT_EQ(arc.start(), axis.nodes()[i + 1].get());
        EXPECT_TRUE(isLinked(*arc.start(), &arc));
        EXPECT_TRUE(isLinked(*arc.end(), &arc));
        EXPECT_EQ(arc.start()->arcs().front(), &arc);
    }
}

const Points kSquare{{1, 1}, {5, 1}, {5, 5}, {1, 5}, {1, 1}};
// An L with the reflex corner at (4, 4.5).
const Points kL{{1, 1}, {9, 1}, {9, 4.5}, {4, 4.5}, {4, 9}, {1, 9}, {1, 1}};

MzPoint turned(MzPoint p) { return {0.8 * p.x - 0.6 * p.y + 20, 0.6 * p.x + 0.8 * p.y + 20}; }

// So that no bisector runs along negative x.
Points turned(Points points) {
    std::ranges::transform(points, points.begin(), [](MzPoint p) { return turned(p); });
    return points;
}

bool isFinite(MzPoint p) { return std::isfinite(p.x) && std::isfinite(p.y); }

TEST(MedialAxis, NeedsFivePoints) {
    EXPECT_EQ(MzMedialAxis::medialAxisFromRing(nullptr), nullptr);
    EXPECT_EQ(axisOf({}), nullptr);
    EXPECT_EQ(axisOf({{1, 1}, {5, 1}, {5, 5}, {1, 5}}), nullptr);
    const auto axis = axisOf(kSquare);
    ASSERT_NE(axis, nullptr);
    EXPECT_TRUE(axis->isConverged());
    expectTree(*axis);
}

TEST(MedialAxis, OfASquareMeetsInItsMiddle) {
    const auto axis = axisOf(kSquare);
    const MzMedialAxisNode* deepest = axis->mostInteriorNode();
    ASSERT_NE(deepest, nullptr);
    EXPECT_NEAR(deepest->point().x, 3, 1e-12);
    EXPECT_NEAR(deepest->point().y, 3, 1e-12);
    EXPECT_NEAR(deepest->distance(), 2, 1e-12);
}

TEST(MedialAxis, OfAConvexRingIsLinesFromItsCorners) {
    Random random(kSeed);
    for (int i = 0; i < 50; ++i) {
        const Points ring = test::placed(test::convexRing(random, 4 + i), 10, {50, 70});
        const auto axis = axisOf(ring);
        ASSERT_TRUE(axis->isConverged()) << i;
        for (const auto& arc : axis->arcs()) EXPECT_FALSE(arc->isParabola());
        for (const MzPoint corner : ring) {
            const MzMedialAxisNode* node = nodeAt(*axis, corner);
            ASSERT_NE(node, nullptr) << i;
            EXPECT_NEAR(node->distance(), 0, 1e-12);
        }
        expectTree(*axis);
    }
}

TEST(MedialAxis, OfAReflexCornerHasParabolas) {
    const Points ring = turned(kL);
    const auto axis = axisOf(ring);
    ASSERT_TRUE(axis->isConverged());
    expectTree(*axis);
    const MzPoint corner = turned({4, 4.5});
    EXPECT_EQ(nodeAt(*axis, corner), nullptr);
    int parabolas = 0;
    for (const auto& arc : axis->arcs()) {
        if (!arc->isParabola()) continue;
        ++parabolas;
        // The middle of the cubic is as far from the corner as from the rest.
        const MzPoint a = arc->start()->point(), b = arc->end()->point();
        const MzPoint c = arc->controlPoint1(), d = arc->controlPoint2();
        const MzPoint middle{(a.x + 3 * c.x + 3 * d.x + b.x) / 8,
                             (a.y + 3 * c.y + 3 * d.y + b.y) / 8};
        const double toCorner = std::hypot(middle.x - corner.x, middle.y - corner.y);
        EXPECT_NEAR(toCorner, test::distanceToRing(middle, ring), 1e-9);
        const double toOuter = std::min(test::distanceToSegment(middle, ring[0], ring[1]),
                                        test::distanceToSegment(middle, ring[5], ring[6]));
        EXPECT_NEAR(toCorner, toOuter, 1e-9);
    }
    EXPECT_EQ(parabolas, 2);
}

TEST(MedialAxis, OfABisectorAlongNegativeXMayHaveARootNowhere) {
    const auto axis = axisOf(kL);
    EXPECT_TRUE(axis->isConverged());
    EXPECT_FALSE(isFinite(axis->nodes().front()->point()));
}

TEST(MedialAxis, OfARectangleReturnsTheEarlierOfTwoDeepestNodes) {
    const auto axis = axisOf({{1, 1}, {9, 1}, {9, 5}, {1, 5}, {1, 1}});
    std::vector<const MzMedialAxisNode*> deepest;
    for (const auto& node : axis->nodes()) {
        if (node->distance() == 2) deepest.push_back(node.get());
    }
    ASSERT_GE(deepest.size(), 2u);
    EXPECT_EQ(axis->mostInteriorNode(), deepest.front());
}

TEST(MedialAxis, PicksTheFirstOfEqualNodes) {
    MzMedialAxis axis;
    EXPECT_EQ(axis.mostInteriorNode(), nullptr);
    MzMedialAxis::Nodes nodes;
    for (const double distance : {1.0, 3.0, 3.0, 2.0}) {
        nodes.push_back(std::make_shared<MzMedialAxisNode>());
        nodes.back()->setDistance(distance);
    }
    axis.setNodes(nodes);
    EXPECT_EQ(axis.mostInteriorNode(), nodes[1].get());
    nodes[0]->setDistance(kNaN);
    EXPECT_EQ(axis.mostInteriorNode(), nodes[0].get());
}

TEST(MedialAxis, GivesTheRootTheDistanceOfAnotherPoint) {
    const Points ring = turned(kL);
    const auto axis = axisOf(ring);
    const MzMedialAxisNode& root = *axis->nodes().front();
    EXPECT_GT(std::abs(root.distance() - test::distanceToRing(root.point(), ring)), 1e-3);
    for (const auto& node : axis->nodes()) {
        if (node.get() == &root) continue;
        EXPECT_NEAR(node->distance(), test::distanceToRing(node->point(), ring), 1e-9);
    }
}

TEST(MedialAxis, LogsHowItConverged) {
    Points points = kSquare;
    const auto ring = test::recordOf<MzLinearRing>(points);
    const test::LogLines log;
    const auto axis = MzMedialAxis::medialAxisFromRing(&ring);
    ASSERT_EQ(log.lines().size(), 1u);
    const double exponent = std::log(static_cast<double>(axis->loops())) / std::log(5.0);
    EXPECT_EQ(log.lines()[0],
              "Total loops: " + std::to_string(axis->loops()) +
                  ", maxLoops: 16 -- converged in n^x where x: " + std::to_string(exponent));
}

TEST(MedialAxis, LogsWhenItDoesNotConverge) {
    // Counter-clockwise, closed, from a reflex vertex on.
    Points points{{4, 4}, {4, 9}, {1, 9}, {1, 1}, {9, 1}, {9, 4}, {4, 4}};
    const auto ring = test::recordOf<MzLinearRing>(points);
    const test::LogLines log;
    const auto axis = MzMedialAxis::medialAxisFromRing(&ring);
    ASSERT_NE(axis, nullptr);
    EXPECT_FALSE(axis->isConverged());
    EXPECT_FALSE(axis->nodes().empty());
    ASSERT_FALSE(log.lines().empty());
    EXPECT_EQ(log.lines().back(), "Failed to converge!!! maxLoops: 36");
    expectTree(*axis);
}

TEST(MedialAxis, OfAReflexCornerUnderAQuarterOfAUnitDoesNotConverge) {
    const auto small = axisOf(test::placed(kL, 0.01, {0, 0}));
    EXPECT_FALSE(small->isConverged());
    EXPECT_TRUE(axisOf(test::placed(kL, 1, {0, 0}))->isConverged());
}

TEST(MedialAxis, OfARingThatLostAllItsEdgesIsEmpty) {
    const auto axis = axisOf({{0, 0}, {0, 0}, {0, 0}, {0, 0}, {0, 0}});
    ASSERT_NE(axis, nullptr);
    EXPECT_TRUE(axis->nodes().empty());
    EXPECT_TRUE(axis->arcs().empty());
    EXPECT_EQ(axis->mostInteriorNode(), nullptr);
    platform::RecordingPort port;
    const platform::GraphicsContext context(&port);
    axis->draw();
    EXPECT_TRUE(port.lines().empty());
}

TEST(MedialAxis, OfOneOrTwoCornersHasItsRootAtTheOrigin) {
    // Two of its four edges end at a coordinate of 0 without a difference elsewhere.
    const auto axis = axisOf({{0, 0}, {5, 0}, {5, 5}, {0, 5}, {0, 0}});
    ASSERT_NE(axis, nullptr);
    ASSERT_FALSE(axis->nodes().empty());
    EXPECT_EQ(axis->nodes().front()->point().x, 0);
    EXPECT_EQ(axis->nodes().front()->point().y, 0);
    expectTree(*axis);
}

TEST(MedialAxis, DrawsItsArcsAndItsDeepestPoint) {
    const auto axis = axisOf(turned(kL));
    platform::RecordingPort port;
    const platform::GraphicsContext context(&port);
    axis->draw();
    const auto& lines = port.lines();
    const auto starting = [&](const std::string& operation) {
        return std::ranges::count_if(
            lines, [&](const std::string& line) { return line.starts_with(operation); });
    };
    const auto arcs = static_cast<std::ptrdiff_t>(axis->arcs().size());
    EXPECT_EQ(starting("drawPath 2"), arcs);
    EXPECT_EQ(starting("setLineWidth 0.125"), arcs);
    EXPECT_EQ(starting("addCurveToPoint"), 2);
    EXPECT_EQ(starting("addLineToPoint"), arcs - 2);
    EXPECT_EQ(starting("addEllipseInRect"), 1);
    EXPECT_EQ(lines.back(), "drawPath 0");
    const MzPoint deepest = axis->mostInteriorNode()->point();
    platform::RecordingPort oval;
    oval.addEllipseInRect({{deepest.x - 1.5, deepest.y - 1.5}, {3, 3}});
    EXPECT_EQ(lines[lines.size() - 2], oval.lines().front());
}

TEST(MedialAxis, DrawsNothingWithoutAPort) {
    const auto axis = axisOf(kL);
    axis->draw();
    const platform::GraphicsContext context(nullptr);
    axis->draw();
}

TEST(MedialAxis, TakesCoordinatesThatAreNotFinite) {
    for (const double odd : {kNaN, kInfinity, -kInfinity, 1e308, 5e-324}) {
        for (std::size_t i = 0; i < 2 * kL.size(); ++i) {
            Points points = kL;
            (i % 2 == 0 ? points[i / 2].x : points[i / 2].y) = odd;
            const auto axis = axisOf(points);
            ASSERT_NE(axis, nullptr);
            platform::RecordingPort port;
            const platform::GraphicsContext context(&port);
            axis->draw();
            EXPECT_EQ(port.text().find("inf"), std::string::npos);
            EXPECT_EQ(port.text().find("nan"), std::string::npos);
            expectTree(*axis);
        }
    }
}

// --- step by step

/// The network by the plainest means: a list that is searched, four bisectors, and recursion.
class PlainAxis {
  public:
    struct Arc {
        std::size_t start, end;
        bool isParabola;
        MzPoint control1, control2;
    };
    std::vector<std::pair<MzPoint, double>> nodes;
    std::vector<Arc> arcs;
    std::uint64_t loops = 0;

    explicit PlainAxis(Points points) {
        const auto ring = test::recordOf<MzLinearRing>(points);
        list_ =
            MzBisector::bisectorsFromRingComponents(MzRingComponent::ringComponentsFromRing(&ring));
        const auto [left, right] = std::ranges::minmax(points, {}, &MzPoint::x);
        const auto [low, high] = std::ranges::minmax(points, {}, &MzPoint::y);
        reach_ = std::sqrt((high.y - low.y) * (high.y - low.y) +
                           (right.x - left.x) * (right.x - left.x));
        const std::uint64_t most = list_.size() * list_.size();
        look(0);
        if (list_.size() < 4) b3_ = memberAt(0);
        while (list_.size() > 2 && loops < most) goOn();
        if (b0_ != nullptr) finish();
    }

  private:
    using Bisector = std::shared_ptr<MzBisector>;

    Bisector memberAt(std::size_t k) const {
        return list_.empty() ? nullptr : list_[k % list_.size()];
    }
    std::size_t indexOf(const Bisector& b) const {
        return static_cast<std::size_t>(std::ranges::find(list_, b) - list_.begin());
    }
    void erase(const Bisector& b) { std::erase(list_, b); }
    void insert(const Bisector& b, std::size_t k) {
        list_.insert(list_.begin() + static_cast<std::ptrdiff_t>(k), b);
    }
    void look(std::size_t k) {
        b0_ = memberAt(k);
        b1_ = list_.size() < 2 ? nullptr : memberAt(k + 1);
        b2_ = list_.size() < 3 ? nullptr : memberAt(k + 2);
        b3_ = list_.size() < 4 ? nullptr : memberAt(k + 3);
    }

    void goOn() {
        ++loops;
        double u0 = 0, u1 = 0, m1 = 0, m2 = 0, w3 = 0, w2 = 0;
        b0_->intersectionWithBisector(b1_.get(), &u0, &u1);
        const MzPoint meeting = b1_->intersectionWithBisector(b2_.get(), &m1, &m2);
        if (b3_ != nullptr) b3_->intersectionWithBisector(b2_.get(), &w3, &w2);
        const bool valid = 0 < m1 && m1 < reach_ && 0 < m2 && m2 < reach_;
        bool leftFirst = u0 > 0 && u1 > 0 && u1 < m1 && list_.size() > 3;
        bool rightFirst = b3_ != nullptr && w3 > 0 && w2 > 0 && w2 < m2;
        if (list_.size() == 4 && leftFirst != rightFirst) leftFirst = rightFirst = false;
        if (valid && !leftFirst && !rightFirst) {
            merge(m1, m2, meeting);
        } else {
            splitOrAdvance(valid);
        }
    }

    void merge(double m1, double m2, MzPoint meeting) {
        b1_->setEndParameter(m1);
        b2_->setEndParameter(m2);
        const auto merged = MzBisector::bisectorFromLeftBisector(b1_, b2_, meeting);
        const std::size_t k = indexOf(b1_);
        erase(b1_);
        erase(b2_);
        insert(merged, std::min(k, list_.size()));
        look(indexOf(merged));
    }

    void splitOrAdvance(bool valid) {
        const bool isMerged = b1_->leftBisector() != nullptr && b1_->rightBisector() != nullptr;
        if (b1_->fakeRendezvousWithBisectorOnRight(b2_.get())) {
            std::tie(b2_, b3_) = split(b2_);
        } else if (!valid && isMerged) {
            std::tie(b0_, b1_) = split(b1_);
        } else if (b2_->fakeRendezvousWithBisectorOnLeft(b1_.get()) ||
                   b0_->fakeRendezvousWithBisectorOnRight(b1_.get())) {
            std::tie(b0_, b1_) = split(b1_);
        } else {
            look(indexOf(b1_));
        }
    }

    std::pair<Bisector, Bisector> split(const Bisector& x) {
        const Bisector left = x->leftBisector(), right = x->rightBisector();
        left->setEndParameter(1);
        right->setEndParameter(1);
        const std::size_t k = indexOf(x);
        list_.erase(list_.begin() + static_cast<std::ptrdiff_t>(k));
        insert(right, k);
        insert(left, k);
        return {left, right};
    }

    void finish() {
        const Bisector left = b1_ == nullptr ? nullptr : b1_->leftBisector();
        double s = 0, t = 0;
        const MzPoint root = b0_->intersectionWithBisector(left.get(), &s, &t);
        b0_->setEndParameter(0 < s && s < t ? s : t);
        nodes.emplace_back(root, b0_->distanceFromStartToComponents());
        grow(0, b0_);
        grow(0, left);
        grow(0, b1_ == nullptr ? nullptr : b1_->rightBisector());
    }

    static bool isVertex(const std::shared_ptr<MzRingComponent>& component) {
        return component->ringComponentType() == MzRingComponentTypeInflexVertex;
    }

    void grow(std::size_t node, const Bisector& b) {
        if (b == nullptr) return;
        if (b->leftBisector() == nullptr && b->rightBisector() == nullptr &&
            (isVertex(b->leftComponent()) || isVertex(b->rightComponent()))) {
            return;
        }
        Arc arc{nodes.size(), node, b->bisectorType() == MzBisectorTypeParabola, {}, {}};
        if (arc.isParabola) {
            const double e = b->endParameter();
            const MzPoint d{b->direction().x * e, b->direction().y * e};
            const MzPoint q{b->quadratic().x * e * e, b->quadratic().y * e * e};
            const MzPoint n = nodes[node].first;
            arc.control1 = {b->start().x + d.x / 3, b->start().y + d.y / 3};
            arc.control2 = {n.x - (2 * q.x + d.x) / 3, n.y - (2 * q.y + d.y) / 3};
        }
        arcs.push_back(arc);
        nodes.emplace_back(b->start(), b->distanceFromStartToComponents());
        const std::size_t start = arc.start;
        grow(start, b->leftBisector());
        grow(start, b->rightBisector());
    }

    MzBisectors list_;
    double reach_ = 0;
    Bisector b0_, b1_, b2_, b3_;
};

bool isSame(double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); }
bool isSame(MzPoint a, MzPoint b) { return isSame(a.x, b.x) && isSame(a.y, b.y); }

/// To the last bit.
bool isSame(const MzMedialAxis& axis, const PlainAxis& plain) {
    const auto& nodes = axis.nodes();
    const auto& arcs = axis.arcs();
    if (axis.loops() != plain.loops || nodes.size() != plain.nodes.size()) return false;
    if (arcs.size() != plain.arcs.size()) return false;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (!isSame(nodes[i]->point(), plain.nodes[i].first)) return false;
        if (!isSame(nodes[i]->distance(), plain.nodes[i].second)) return false;
    }
    for (std::size_t i = 0; i < arcs.size(); ++i) {
        const PlainAxis::Arc& arc = plain.arcs[i];
        if (arcs[i]->start() != nodes[arc.start].get()) return false;
        if (arcs[i]->end() != nodes[arc.end].get()) return false;
        if (arcs[i]->isParabola() != arc.isParabola) return false;
        if (!isSame(arcs[i]->controlPoint1(), arc.control1)) return false;
        if (!isSame(arcs[i]->controlPoint2(), arc.control2)) return false;
    }
    return true;
}

/// Columns of whole heights side by side, counter-clockwise and closed: many meetings at once.
Points skyline(Random& random, int columns) {
    Points points{{10, 10}, {10.0 + 20 * columns, 10}};
    for (int i = columns; i > 0; --i) {
        const double top = 30 + 20.0 * static_cast<double>(random() % 4);
        points.push_back({10.0 + 20 * i, top});
        points.push_back({10.0 + 20 * (i - 1), top});
    }
    points.push_back(points.front());
    return points;
}

/// Corners anywhere, with crossings; a triangle with one of them twice where there are three.
Points tangle(Random& random, int count) {
    Points points;
    for (int i = 0; i < count; ++i) {
        points.push_back({test::uniform(random, 10, 200), test::uniform(random, 10, 200)});
    }
    points.push_back(points.back());
    points.push_back(points.front());
    return points;
}

/// Either way round, all corners at whole coordinates.
Points wholeRing(Random& random, int kind) {
    const int count = 4 + static_cast<int>(random() % 12);
    const double size = 20 + 10 * (kind % 7);
    Points points =
        kind % 5 == 0   ? test::placed(test::starRing(random, count, 0.4), size, {200, 300})
        : kind % 5 == 1 ? test::placed(test::convexRing(random, count), size, {200, 300})
        : kind % 5 == 2 ? skyline(random, count / 3)
                        : tangle(random, kind % 5 == 3 ? count : 3);
    for (MzPoint& p : points) p = {std::round(p.x), std::round(p.y)};
    return kind % 2 == 0 ? points : test::reversed(points);
}

TEST(MedialAxis, TakesThePlainestStepsToTheLastBit) {
    Random random(kSeed);
    int converged = 0;
    constexpr int kRings = 1500;
    for (int i = 0; i < kRings; ++i) {
        const Points ring = wholeRing(random, i);
        const auto axis = axisOf(ring);
        ASSERT_NE(axis, nullptr);
        const test::LogLines quiet;
        ASSERT_TRUE(isSame(*axis, PlainAxis(ring))) << "ring " << i;
        converged += axis->isConverged() ? 1 : 0;
    }
    EXPECT_GT(converged, kRings / 2);
    EXPECT_LT(converged, kRings);
}

// --- the law of the axis

struct Component {
    MzPoint point;
    MzPoint direction;
    bool isEdge;
};

std::vector<Component> componentsOf(Points points) {
    const auto ring = test::recordOf<MzLinearRing>(points);
    std::vector<Component> found;
    for (const auto& component : MzRingComponent::ringComponentsFromRing(&ring)) {
        if (const auto* edge = dynamic_cast<const MzRingEdge*>(component.get())) {
            found.push_back({edge->start(), edge->direction(), true});
        } else {
            const auto& vertex = static_cast<const MzRingInflexVertex&>(*component);
            found.push_back({vertex.point(), {}, false});
        }
    }
    return found;
}

double distanceTo(const Component& component, MzPoint p) {
    const MzPoint d{p.x - component.point.x, p.y - component.point.y};
    if (!component.isEdge) return std::hypot(d.x, d.y);
    return std::abs(component.direction.x * d.y - component.direction.y * d.x);
}

MzPoint pointOf(const MzMedialAxisArc& arc, double share) {
    const MzPoint a = arc.start()->point(), b = arc.end()->point();
    if (!arc.isParabola()) return {a.x + (b.x - a.x) * share, a.y + (b.y - a.y) * share};
    const MzPoint c = arc.controlPoint1(), d = arc.controlPoint2();
    const double r = 1 - share;
    const double w[4] = {r * r * r, 3 * r * r * share, 3 * r * share * share,
                         share * share * share};
    return {w[0] * a.x + w[1] * c.x + w[2] * d.x + w[3] * b.x,
            w[0] * a.y + w[1] * c.y + w[2] * d.y + w[3] * b.y};
}

/// Whether some two components are equally far from the start, the middle and the end of the arc.
bool liesBetweenTwo(const MzMedialAxisArc& arc, const std::vector<Component>& components,
                    double tolerance) {
    std::vector<std::vector<double>> distances;
    for (const double share : {0.0, 0.37, 1.0}) {
        std::vector<double> row;
        for (const Component& c : components) row.push_back(distanceTo(c, pointOf(arc, share)));
        distances.push_back(std::move(row));
    }
    for (std::size_t i = 0; i < components.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            const bool equal = std::ranges::all_of(
                distances, [&](const auto& row) { return std::abs(row[i] - row[j]) <= tolerance; });
            if (equal) return true;
        }
    }
    return false;
}

TEST(MedialAxis, OfRandomRingsLiesBetweenTwoComponentsWhereItConverged) {
    Random random(kSeed);
    int converged = 0;
    constexpr int kRings = 60;
    for (int i = 0; i < kRings; ++i) {
        const int count = 5 + static_cast<int>(random() % 116);
        const double least = i % 3 == 0 ? 0.9 : 0.5;
        const Points ring =
            test::reversed(test::placed(test::starRing(random, count, least), 100, {300, 400}));
        const auto axis = axisOf(ring);
        expectTree(*axis);
        if (!axis->isConverged()) continue;
        ++converged;
        const auto components = componentsOf(ring);
        for (const auto& arc : axis->arcs()) {
            if (arc->end() == axis->nodes().front().get()) continue;
            ASSERT_TRUE(liesBetweenTwo(*arc, components, 1e-9 * 283)) << "ring " << i;
        }
    }
    EXPECT_GT(converged, kRings / 2);
}

}  // namespace
}  // namespace mezalith
