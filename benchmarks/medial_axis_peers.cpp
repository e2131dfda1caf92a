// SPDX-License-Identifier: MIT
#include <mezalith/geometry/records.hpp>
#include <mezalith/medialaxis/grid_outline.hpp>
#include <mezalith/medialaxis/medial_axis.hpp>
#include <mezalith/medialaxis/polygon_skeleton.hpp>
#include <mezalith/platform/log.hpp>

#include <cmath>
#include <cstdint>
#include <memory>
#include <numbers>
#include <random>
#include <string_view>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <boost/polygon/voronoi.hpp>
#include <geos/algorithm/construct/MaximumInscribedCircle.h>
#include <geos/geom/Coordinate.h>
#include <geos/geom/CoordinateArraySequence.h>
#include <geos/geom/GeometryFactory.h>
#include <geos/geom/LinearRing.h>
#include <geos/geom/Polygon.h>
#ifdef MEZALITH_HAVE_CGAL
#include <CGAL/Segment_Delaunay_graph_2.h>
#include <CGAL/Segment_Delaunay_graph_filtered_traits_2.h>
#include <CGAL/Simple_cartesian.h>
#endif

// The medial axis of a star of so many vertices and its deepest point: the skeleton, Boost's bare
// diagram of the same segments on the same grid, CGAL's graph of segments, GEOS's largest circle,
// and the settled axis.

namespace mezalith {
namespace {

/// Corners at even angles, their distance from the middle between 60 and 100, closed.
std::vector<MzPoint> starFor(const benchmark::State& state) {
    std::mt19937_64 random{1};
    std::uniform_real_distribution<double> radius{60, 100};
    std::vector<MzPoint> points;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        const double angle =
            2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(state.range(0));
        const double r = radius(random);
        points.push_back({r * std::cos(angle), r * std::sin(angle)});
    }
    points.push_back(points.front());
    return points;
}

/// A star as a polygon record.
struct Star {
    explicit Star(const benchmark::State& state) : points(starFor(state)) {}
    MzPolygon polygon() { return {1, &ring}; }

    std::vector<MzPoint> points;
    MzLinearRing ring{static_cast<std::uint32_t>(points.size()), points.data()};
};

void count(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void skeleton(benchmark::State& state) {
    Star star(state);
    const MzPolygon polygon = star.polygon();
    for (auto _ : state) {
        benchmark::DoNotOptimize(MzPolygonSkeleton::skeletonFromPolygon(&polygon));
    }
    count(state);
}

void boostDiagram(benchmark::State& state) {
    Star star(state);
    const MzPolygon polygon = star.polygon();
    const auto outline = detail::gridOutlineOf(&polygon);
    for (auto _ : state) {
        boost::polygon::voronoi_builder<std::int32_t> builder;
        for (const auto& s : outline.segments) {
            builder.insert_segment(s.low.x, s.low.y, s.high.x, s.high.y);
        }
        boost::polygon::voronoi_diagram<double> diagram;
        builder.construct(&diagram);
        benchmark::DoNotOptimize(diagram.num_edges());
    }
    count(state);
}

#ifdef MEZALITH_HAVE_CGAL
void cgalGraph(benchmark::State& state) {
    using Kernel = CGAL::Simple_cartesian<double>;
    using Traits = CGAL::Segment_Delaunay_graph_filtered_traits_without_intersections_2<Kernel>;
    using Graph = CGAL::Segment_Delaunay_graph_2<Traits>;
    Star star(state);
    std::vector<Kernel::Point_2> points;
    for (const MzPoint p : star.points) points.emplace_back(p.x, p.y);
    std::vector<std::pair<std::size_t, std::size_t>> segments;
    for (std::size_t i = 0; i + 2 < points.size(); ++i) segments.emplace_back(i, i + 1);
    segments.emplace_back(points.size() - 2, 0);
    points.pop_back();
    for (auto _ : state) {
        Graph graph;
        graph.insert_segments(points.begin(), points.end(), segments.begin(), segments.end());
        benchmark::DoNotOptimize(graph.number_of_faces());
    }
    count(state);
}
#endif

void deepestPoint(benchmark::State& state) {
    Star star(state);
    const MzPolygon polygon = star.polygon();
    for (auto _ : state) benchmark::DoNotOptimize(MzDeepestPoint(&polygon));
    count(state);
}

/// To a millionth of the star's size; the deepest point above is exact.
void geosCircle(benchmark::State& state) {
    using namespace geos::geom;
    const auto factory = GeometryFactory::create();
    std::vector<Coordinate> coordinates;
    for (const MzPoint p : starFor(state)) coordinates.emplace_back(p.x, p.y);
    const auto polygon = factory->createPolygon(factory->createLinearRing(
        std::make_unique<CoordinateArraySequence>(std::move(coordinates))));
    for (auto _ : state) {
        geos::algorithm::construct::MaximumInscribedCircle circle(polygon.get(), 2e-4);
        benchmark::DoNotOptimize(circle.getCenter());
    }
    count(state);
}

void settledAxis(benchmark::State& state) {
    platform::setLogSink([](std::string_view) {});
    Star star(state);
    double loops = 0;
    for (auto _ : state) {
        const auto axis = MzMedialAxis::medialAxisFromRing(&star.ring);
        loops = static_cast<double>(axis->loops());
    }
    state.counters["loops"] = loops;
    state.counters["exponent"] =
        std::log(loops) / std::log(static_cast<double>(star.points.size()));
    count(state);
}

BENCHMARK(skeleton)->Arg(50)->Arg(200)->Arg(1000)->Arg(5000);
BENCHMARK(boostDiagram)->Arg(50)->Arg(200)->Arg(1000)->Arg(5000);
#ifdef MEZALITH_HAVE_CGAL
BENCHMARK(cgalGraph)->Arg(50)->Arg(200)->Arg(1000)->Arg(5000);
#endif
BENCHMARK(deepestPoint)->Arg(50)->Arg(200)->Arg(1000)->Arg(2000)->Arg(5000);
BENCHMARK(geosCircle)->Arg(50)->Arg(200)->Arg(1000)->Arg(2000)->Arg(5000);
BENCHMARK(settledAxis)->Arg(50)->Arg(100)->Arg(200);

}  // namespace
}  // namespace mezalith
