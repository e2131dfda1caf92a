// SPDX-License-Identifier: MIT
#include "mezalith/geometry/plane_vector.hpp"
#include "mezalith/medialaxis/disjoint_sets.hpp"
#include "mezalith/medialaxis/inner_diagram.hpp"
#include <mezalith/medialaxis/deepest_search.hpp>
#include <mezalith/medialaxis/grid_network.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>

namespace mezalith::detail {

void InnerDiagram::settle() {
    DisjointSets sets(vertices_.size());
    const auto isOpen = [](const Edge& e) {
        return e.vertices[0] == kNoVertex || e.vertices[1] == kNoVertex;
    };
    for (const Edge& edge : edges_) {
        if (edge.side == Side::Unknown && !isOpen(edge)) {
            sets.join(edge.vertices[0], edge.vertices[1]);
        }
    }
    for (std::uint32_t i = 0; i < vertices_.size(); ++i) {
        Vertex& first = vertices_[sets.find(i)];
        first.side = either(first.side, vertices_[i].side);
    }
    for (Edge& edge : edges_) {
        if (edge.side != Side::Unknown) continue;
        edge.side = isOpen(edge) ? Side::Outside : vertices_[sets.find(edge.vertices[0])].side;
    }
}

namespace {

/// Below this, in steps, two nodes are one.
constexpr double kNear = 1.0 / 16;
/// By how many steps a vertex of a sound diagram may be beyond what is nearest to it.
constexpr double kSlack = 1;

MzPoint pointOf(GridPoint p) { return {static_cast<double>(p.x), static_cast<double>(p.y)}; }

MzPoint pointOf(const GridNode& node) { return {node.x, node.y}; }

/// The diagram of an outline turned into a network.
class NetworkBuilder {
  public:
    explicit NetworkBuilder(const GridOutline& outline)
        : outline_(outline), diagram_(outline.segments) {
        boost::polygon::voronoi_builder<std::int32_t> builder;
        for (const GridSegment& s : outline.segments) {
            builder.insert_segment(s.low.x, s.low.y, s.high.x, s.high.y);
        }
        builder.construct(&diagram_);
        diagram_.settle();
        collectSites();
    }

    std::optional<GridNetwork> build() {
        if (!addNodes()) return std::nullopt;
        addArcs();
        if (!isSound()) return std::nullopt;
        return std::move(network_);
    }

    std::optional<GridNode> deepest() const {
        std::optional<GridNode> best;
        for (const InnerDiagram::Edge& edge : diagram_.edges()) {
            if (edge.side != Side::Inside) continue;
            if (!isRight(edge)) return std::nullopt;
            for (const std::uint32_t vertex : edge.vertices) {
                const GridNode node = nodeAt(vertex, edge);
                if (!best || node.clearance > best->clearance) best = node;
            }
        }
        return best;
    }

    /// Of an outline of segments from around those squares, the deepest vertex in one of them.
    std::optional<GridNode> deepestIn(const DeepestSearch& search) const {
        std::optional<GridNode> best;
        for (const InnerDiagram::Vertex& vertex : diagram_.vertices()) {
            const MzPoint p{vertex.x, vertex.y};
            const auto clearance = search.clearanceAt(p);
            if (clearance && (!best || *clearance > best->clearance)) best = {p.x, p.y, *clearance};
        }
        return best;
    }

  private:
    MzPoint endOf(Site site) const {
        const GridSegment& s = outline_.segments[site.segment()];
        return pointOf(site.kind() == Site::High ? s.high : s.low);
    }

    double distanceTo(Site site, MzPoint p) const {
        const GridSegment& s = outline_.segments[site.segment()];
        if (!site.isSegment()) return distanceBetween(endOf(site), p);
        const MzPoint along = minus(pointOf(s.high), pointOf(s.low));
        return std::abs(cross(along, minus(p, pointOf(s.low)))) / lengthOf(along);
    }

    /// Whether the point is over or under a segment, and not beyond an end, where that would be
    /// nearer; true for a point.
    bool isBeside(Site site, MzPoint p) const {
        if (!site.isSegment()) return true;
        const GridSegment& s = outline_.segments[site.segment()];
        const MzPoint along = minus(pointOf(s.high), pointOf(s.low));
        const double length = lengthOf(along);
        const double place = dot(along, minus(p, pointOf(s.low))) / length;
        return -kSlack <= place && place <= length + kSlack;
    }

    /// Whether both ends of an edge are where its sites can be the nearest ones.
    bool isPossible(const InnerDiagram::Edge& edge) const {
        for (const std::uint32_t vertex : edge.vertices) {
            if (vertex == kNoVertex) return false;
            const MzPoint p{diagram_.vertices()[vertex].x, diagram_.vertices()[vertex].y};
            if (!isBeside(edge.sites[0], p) || !isBeside(edge.sites[1], p)) return false;
        }
        return true;
    }

    /// Up to three of the sites that a vertex is as far from as from no other.
    struct NearestSites {
        std::array<Site, 3> sites;
        std::uint32_t count = 0;

        void add(Site site) {
            const bool isKnown =
                std::any_of(sites.begin(), sites.begin() + count,
                            [site](Site known) { return known.code == site.code; });
            if (!isKnown && count < sites.size()) sites[count++] = site;
        }
    };

    void collectSites() {
        nearest_.resize(diagram_.vertices().size());
        for (const InnerDiagram::Edge& edge : diagram_.edges()) {
            if (edge.side != Side::Inside) continue;
            for (const std::uint32_t vertex : edge.vertices) {
                if (vertex == kNoVertex) continue;
                for (const Site site : edge.sites) nearest_[vertex].add(site);
            }
        }
    }

    /// Whether an edge is one of a Voronoi diagram, as far as can be seen from its ends: no site of
    /// one end is nearer to the other end than those of the edge are. Source: Delaunay (1934), Sur
    /// la sphere vide, for points: a triangulation that holds so across every edge holds so
    /// everywhere.
    bool isRight(const InnerDiagram::Edge& edge) const {
        if (!isPossible(edge)) return false;
        for (const int end : {0, 1}) {
            const InnerDiagram::Vertex& vertex = diagram_.vertices()[edge.vertices[end]];
            const MzPoint p{vertex.x, vertex.y};
            const double least = distanceTo(edge.sites[0], p) - kSlack;
            const NearestSites& others = nearest_[edge.vertices[1 - end]];
            for (std::uint32_t i = 0; i < others.count; ++i) {
                const Site other = others.sites[i];
                if (distanceTo(other, p) < least && isBeside(other, p)) return false;
            }
        }
        return true;
    }

    /// The corner that two segments have in common, or null.
    const GridPoint* cornerOf(const InnerDiagram::Edge& edge) const {
        if (!edge.sites[0].isSegment() || !edge.sites[1].isSegment()) return nullptr;
        const GridSegment& s = outline_.segments[edge.sites[0].segment()];
        const GridSegment& t = outline_.segments[edge.sites[1].segment()];
        if (s.low == t.low || s.low == t.high) return &s.low;
        if (s.high == t.low || s.high == t.high) return &s.high;
        return nullptr;
    }

    GridNode nodeAt(std::uint32_t vertex, const InnerDiagram::Edge& edge) const {
        const InnerDiagram::Vertex& v = diagram_.vertices()[vertex];
        const MzPoint p{v.x, v.y};
        const GridPoint* corner = cornerOf(edge);
        if (corner != nullptr && std::abs(p.x - corner->x) < kNear &&
            std::abs(p.y - corner->y) < kNear) {
            return {static_cast<double>(corner->x), static_cast<double>(corner->y), 0};
        }
        return {p.x, p.y, distanceTo(edge.sites[0], p)};
    }

    static bool isNear(const InnerDiagram::Vertex& a, const InnerDiagram::Vertex& b) {
        return std::abs(a.x - b.x) < kNear && std::abs(a.y - b.y) < kNear;
    }

    /// One node for each set of vertices that are near each other, in a corner if one of them is;
    /// false where the diagram cannot be right.
    bool addNodes() {
        const auto& vertices = diagram_.vertices();
        DisjointSets sets(vertices.size());
        for (const InnerDiagram::Edge& edge : diagram_.edges()) {
            if (edge.side != Side::Inside) continue;
            const auto [a, b] = edge.vertices;
            if (!isRight(edge)) return false;
            if (isNear(vertices[a], vertices[b])) sets.join(a, b);
        }
        if (outline_.isTouching) joinCorners(sets);
        nodes_.assign(vertices.size(), kNoVertex);
        network_.nodes.reserve(vertices.size());
        for (const InnerDiagram::Edge& edge : diagram_.edges()) {
            if (edge.side != Side::Inside) continue;
            for (const std::uint32_t vertex : edge.vertices) {
                addNode(sets.find(vertex), nodeAt(vertex, edge));
                nodes_[vertex] = nodes_[sets.find(vertex)];
            }
        }
        return true;
    }

    /// Where the outline touches itself, several ends of the network lie in one corner.
    void joinCorners(DisjointSets& sets) const {
        std::map<GridPoint, std::uint32_t> vertexIn;
        for (const InnerDiagram::Edge& edge : diagram_.edges()) {
            if (edge.side != Side::Inside) continue;
            for (const std::uint32_t vertex : edge.vertices) {
                if (nodeAt(vertex, edge).clearance != 0) continue;
                sets.join(vertex, vertexIn.emplace(*cornerOf(edge), vertex).first->second);
            }
        }
    }

    void addNode(std::uint32_t set, const GridNode& node) {
        if (nodes_[set] == kNoVertex) {
            nodes_[set] = static_cast<std::uint32_t>(network_.nodes.size());
            network_.nodes.push_back(node);
        } else if (node.clearance == 0) {
            network_.nodes[nodes_[set]] = node;
        }
    }

    void addArcs() {
        network_.arcs.reserve(diagram_.edges().size());
        for (const InnerDiagram::Edge& edge : diagram_.edges()) {
            if (edge.side != Side::Inside) continue;
            const std::uint32_t start = nodes_[edge.vertices[0]];
            const std::uint32_t end = nodes_[edge.vertices[1]];
            if (start != end) network_.arcs.push_back(arcOf(edge, start, end));
        }
    }

    GridArc arcOf(const InnerDiagram::Edge& edge, std::uint32_t start, std::uint32_t end) const {
        const auto [a, b] = edge.sites;
        if (a.isSegment() == b.isSegment()) return {start, end, false, 0, 0};
        const MzPoint control =
            tangentsMeet(a.isSegment() ? a : b, endOf(a.isSegment() ? b : a),
                         pointOf(network_.nodes[start]), pointOf(network_.nodes[end]));
        return {start, end, true, control.x, control.y};
    }

    /// Where the tangents in `from` and `to` meet of the parabola with this directrix and focus.
    /// At x along the directrix from under the focus, which is h above it, the parabola is
    /// x²/2h + h/2 above it, and the tangents at x1 and x2 meet at (x1 + x2)/2, x1·x2/2h + h/2.
    MzPoint tangentsMeet(Site directrix, MzPoint focus, MzPoint from, MzPoint to) const {
        const GridSegment& s = outline_.segments[directrix.segment()];
        const MzPoint along = normalised(minus(pointOf(s.high), pointOf(s.low)));
        const double height = cross(along, minus(focus, pointOf(s.low)));
        const double x1 = dot(along, minus(from, focus));
        const double x2 = dot(along, minus(to, focus));
        const double above = x1 * x2 / (2 * height) - height / 2;
        return plus(focus, plus(times(along, (x1 + x2) / 2), times(leftNormal(along), above)));
    }

    /// Inside an outline every end of the axis lies in a corner of it.
    bool isSound() const {
        std::vector<std::uint32_t> degrees(network_.nodes.size());
        for (const GridArc& arc : network_.arcs) {
            ++degrees[arc.start];
            ++degrees[arc.end];
        }
        for (std::size_t i = 0; i < degrees.size(); ++i) {
            if (degrees[i] == 1 && network_.nodes[i].clearance != 0) return false;
        }
        return true;
    }

    const GridOutline& outline_;
    InnerDiagram diagram_;
    std::vector<NearestSites> nearest_;  ///< of the vertices
    std::vector<std::uint32_t> nodes_;   ///< of the vertices
    GridNetwork network_;
};

}  // namespace

std::optional<GridNetwork> gridNetworkOf(const GridOutline& outline) {
    return NetworkBuilder(outline).build();
}

std::optional<GridNode> deepestNodeOf(const GridOutline& outline) {
    const DeepestSearch search(outline.segments);
    if (!search.cells().empty()) {
        GridOutline around;
        around.segments = search.segments();
        if (auto node = NetworkBuilder(around).deepestIn(search)) return node;
    }
    return NetworkBuilder(outline).deepest();
}

}  // namespace mezalith::detail
