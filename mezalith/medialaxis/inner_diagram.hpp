// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/medialaxis/grid_outline.hpp>

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include <boost/polygon/voronoi_builder.hpp>

namespace mezalith::detail {

inline constexpr std::uint32_t kNoVertex = UINT32_MAX;

enum class Side : std::uint8_t { Unknown, Inside, Outside };

/// What an edge of the diagram is as far from as from another: a segment or one of its ends.
struct Site {
    enum Kind : std::uint32_t { Segment = 0, Low = 1, High = 2 };

    std::uint32_t code;
    std::uint32_t segment() const { return code >> 2; }
    Kind kind() const { return static_cast<Kind>(code & 3); }
    bool isSegment() const { return kind() == Segment; }
};

/// Receives the Voronoi diagram of an outline's segments from the builder and keeps what lies
/// inside: edges between sites that do not touch each other, and the vertices that they end in.
/// An edge between two points may be on either side; it is kept until `settle`.
class InnerDiagram {
  public:
    struct Vertex {
        double x;
        double y;
        Side side;
    };

    struct Edge {
        std::uint32_t vertices[2];
        Site sites[2];
        Side side;
    };

    explicit InnerDiagram(std::span<const GridSegment> segments) : segments_(segments) {}

    const std::vector<Vertex>& vertices() const { return vertices_; }
    /// Those that lie inside, after `settle`; the others have side Outside.
    const std::vector<Edge>& edges() const { return edges_; }
    /// Decides the edges whose side is not known by those that they lead to.
    void settle();

    // --- what the builder calls

    void _reserve(std::size_t sites) {
        vertices_.reserve(sites);
        edges_.reserve(sites + sites / 2);
    }

    template <typename SiteEvent>
    void _process_single_site(const SiteEvent&) {}

    /// The two halves of an edge, the lower one first, where `site2` comes under the line of the
    /// sweep, in the arc of `site1`. Between a segment and its end, one half lies below the
    /// segment and one above, unless the end is one of several segments and was put between two.
    template <typename SiteEvent>
    std::pair<void*, void*> _insert_new_edge(const SiteEvent& site1, const SiteEvent& site2) {
        if (site2.is_segment()) return {sideHandle(site2, false), sideHandle(site2, true)};
        if (site1.is_segment() && isEndOf(site1, site2)) {
            return {sideHandle(site1, false), sideHandle(site1, site1.is_inverse())};
        }
        const Handle handle = addEdge(site1, site2);
        return {toPointer(handle), toPointer(handle ^ 1)};
    }

    /// A vertex in which two bisectors end and a new one begins.
    template <typename SiteEvent, typename Circle>
    std::pair<void*, void*> _insert_new_edge(const SiteEvent& site1, const SiteEvent& site3,
                                             const Circle& circle, void* data12, void* data23) {
        const Handle edge12 = toHandle(data12);
        const Handle edge23 = toHandle(data23);
        const Handle edge13 = addEdge(site1, site3);
        if (isKept(edge12) || isKept(edge23) || isKept(edge13)) {
            const auto vertex = static_cast<std::uint32_t>(vertices_.size());
            vertices_.push_back({circle.x(), circle.y(),
                                 either(sideOf(edge12), either(sideOf(edge23), sideOf(edge13)))});
            setVertex(edge12, vertex);
            setVertex(edge23, vertex);
            setVertex(edge13 ^ 1, vertex);
        }
        return {toPointer(edge13), toPointer(edge13 ^ 1)};
    }

    void _build() {}

  private:
    /// Twice the number of an edge, and one for its other half, above a few that stand for edges
    /// of which only the side is known.
    using Handle = std::uintptr_t;
    static constexpr Handle kInside = 2;
    static constexpr Handle kOutside = 4;
    static constexpr Handle kFirst = 6;

    // The diagram carries what it is given without looking at it.
    // NOLINTNEXTLINE(performance-no-int-to-ptr)
    static void* toPointer(Handle handle) { return reinterpret_cast<void*>(handle); }
    static Handle toHandle(void* data) { return reinterpret_cast<Handle>(data); }
    static bool isKept(Handle handle) { return handle >= kFirst; }
    static std::size_t indexOf(Handle handle) { return (handle - kFirst) >> 1; }
    static Side either(Side a, Side b) { return a == Side::Unknown ? b : a; }

    Side sideOf(Handle handle) const {
        if (isKept(handle)) return edges_[indexOf(handle)].side;
        return (handle & ~Handle{1}) == kInside ? Side::Inside : Side::Outside;
    }

    void setVertex(Handle handle, std::uint32_t vertex) {
        if (isKept(handle)) edges_[indexOf(handle)].vertices[handle & 1] = vertex;
    }

    template <typename SiteEvent>
    Side sideAt(const SiteEvent& segment, bool isAbove) const {
        const bool isInteriorAbove = segments_[segment.initial_index()].isInteriorAbove;
        return isAbove == isInteriorAbove ? Side::Inside : Side::Outside;
    }

    template <typename SiteEvent>
    void* sideHandle(const SiteEvent& segment, bool isAbove) const {
        return toPointer(sideAt(segment, isAbove) == Side::Inside ? kInside : kOutside);
    }

    template <typename SiteEvent>
    static Site siteOf(const SiteEvent& event) {
        using namespace boost::polygon;
        const auto category = event.source_category();
        const std::uint32_t kind = event.is_segment()                              ? Site::Segment
                                   : category == SOURCE_CATEGORY_SEGMENT_END_POINT ? Site::High
                                                                                   : Site::Low;
        return {static_cast<std::uint32_t>(event.initial_index()) << 2 | kind};
    }

    template <typename SiteEvent>
    static bool isEndOf(const SiteEvent& segment, const SiteEvent& point) {
        return segment.point0() == point.point0() || segment.point1() == point.point0();
    }

    template <typename SiteEvent>
    Handle addEdge(const SiteEvent& a, const SiteEvent& b) {
        Side side = Side::Unknown;
        if (a.is_segment() || b.is_segment()) {
            // The builder turns a segment round for what is above it.
            const SiteEvent& segment = a.is_segment() ? a : b;
            side = sideAt(segment, segment.is_inverse());
            const bool isMixed = a.is_segment() != b.is_segment();
            const bool touches = isMixed && (a.is_segment() ? isEndOf(a, b) : isEndOf(b, a));
            if (side == Side::Outside) return kOutside;
            if (touches) return kInside;
        }
        edges_.push_back({{kNoVertex, kNoVertex}, {siteOf(a), siteOf(b)}, side});
        return kFirst + 2 * (edges_.size() - 1);
    }

    std::span<const GridSegment> segments_;
    std::vector<Vertex> vertices_;
    std::vector<Edge> edges_;
};

}  // namespace mezalith::detail
