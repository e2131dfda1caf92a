// SPDX-License-Identifier: MIT
#include <mezalith/geometry/wkb_reader.hpp>
#include <mezalith/geometry/wkb_writer.hpp>

#include <cmath>
#include <cstddef>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>
#include <geos_c.h>
#include <ogrsf_frmts.h>

// Reading and writing Well-Known Binary: the complete reader and writer, those of GEOS and of OGR,
// and a copy of the bytes.

namespace mezalith {
namespace {

using Bytes = std::vector<std::byte>;

/// Geometries as they lie in a table, a blob each.
struct Blobs {
    std::string name;
    std::vector<Bytes> all;

    std::size_t size() const {
        std::size_t sum = 0;
        for (const Bytes& blob : all) sum += blob.size();
        return sum;
    }
};

/// A circle of `count` rough points, closed.
std::vector<MzPoint> ring(std::mt19937_64& random, std::size_t count) {
    std::uniform_real_distribution<double> longitude{-170, 170}, latitude{-80, 80}, radius{1, 5};
    const MzPoint centre{longitude(random), latitude(random)};
    std::vector<MzPoint> points(count);
    for (std::size_t i = 0; i < count; ++i) {
        const double angle =
            6.283185307179586 * static_cast<double>(i) / static_cast<double>(count);
        const double r = radius(random);
        points[i] = {centre.x + r * std::cos(angle), centre.y + r * std::sin(angle)};
    }
    points.back() = points.front();
    return points;
}

Blobs polygons(const std::string& name, std::size_t blobs, std::size_t points) {
    std::mt19937_64 random{1};
    Blobs made{name, {}};
    for (std::size_t i = 0; i < blobs; ++i) {
        std::vector<MzPoint> coordinates = ring(random, points);
        MzLinearRing outer{static_cast<std::uint32_t>(points), coordinates.data()};
        made.all.push_back(MzWKBOfGeometry(geometryOf(MzPolygon{1, &outer})));
    }
    return made;
}

Blobs multiPoints() {
    std::mt19937_64 random{1};
    Blobs made{"multi-points of 1000", {}};
    for (int i = 0; i < 100; ++i) {
        std::vector<MzPoint> points = ring(random, 1000);
        made.all.push_back(MzWKBOfGeometry(geometryOf(MzMultiPoint{1000, points.data()})));
    }
    return made;
}

/// The countries of the world, in the byte order wanted.
Blobs countries(const std::string& name, bool isLittleEndian) {
    GDALAllRegister();
    const GDALDatasetUniquePtr dataset{
        GDALDataset::Open(MEZALITH_SOURCE_DIR "/data/map/naturalearth-50m.gpkg", GDAL_OF_VECTOR)};
    Blobs made{name, {}};
    for (const auto& feature : *dataset->GetLayerByName("countries")) {
        const OGRGeometry& geometry = *feature->GetGeometryRef();
        Bytes blob(geometry.WkbSize());
        geometry.exportToWkb(isLittleEndian ? wkbNDR : wkbXDR,
                             reinterpret_cast<unsigned char*>(blob.data()), wkbVariantIso);
        made.all.push_back(std::move(blob));
    }
    return made;
}

const Blobs& blobsFor(benchmark::State& state) {
    static const std::vector<Blobs> kAll{polygons("polygons of 5", 10'000, 5),
                                         polygons("polygons of 100", 1000, 100),
                                         polygons("a polygon of 10^6", 1, 1'000'000),
                                         multiPoints(),
                                         countries("countries", true),
                                         countries("countries, big-endian", false)};
    const Blobs& blobs = kAll[static_cast<std::size_t>(state.range(0))];
    state.SetLabel(blobs.name);
    return blobs;
}

// --- readers and writers; each holds one geometry

struct Copy {
    void read(const Bytes& blob) {
        bytes = std::make_unique_for_overwrite<std::byte[]>(blob.size());
        size = blob.size();
        std::memcpy(bytes.get(), blob.data(), size);
    }
    void write(Bytes& blob) const { std::memcpy(blob.data(), bytes.get(), size); }

    std::unique_ptr<std::byte[]> bytes;
    std::size_t size = 0;
};

struct Mezalith {
    void read(const Bytes& blob) { reading = MzReadWKB(blob); }
    void write(Bytes& blob) const { MzWriteWKB(*reading.geometry.record(), {}, blob); }

    MzWKBReading reading;
};

struct Geos {
    Geos() = default;
    Geos(Geos&& other) noexcept : geometry(std::exchange(other.geometry, nullptr)) {}
    Geos(const Geos&) = delete;
    Geos& operator=(const Geos&) = delete;
    Geos& operator=(Geos&&) = delete;
    ~Geos() { GEOSGeom_destroy_r(context(), geometry); }

    static GEOSContextHandle_t context() {
        static GEOSContextHandle_t context = GEOS_init_r();
        return context;
    }
    void read(const Bytes& blob) {
        static GEOSWKBReader* reader = GEOSWKBReader_create_r(context());
        GEOSGeom_destroy_r(context(), geometry);
        geometry = GEOSWKBReader_read_r(
            context(), reader, reinterpret_cast<const unsigned char*>(blob.data()), blob.size());
    }
    /// Makes bytes of its own: its interface knows no other way.
    void write(Bytes&) const {
        static GEOSWKBWriter* writer = GEOSWKBWriter_create_r(context());
        std::size_t size = 0;
        unsigned char* bytes = GEOSWKBWriter_write_r(context(), writer, geometry, &size);
        benchmark::DoNotOptimize(bytes);
        GEOSFree_r(context(), bytes);
    }

    GEOSGeometry* geometry = nullptr;
};

struct Ogr {
    void read(const Bytes& blob) {
        OGRGeometry* made = nullptr;
        OGRGeometryFactory::createFromWkb(blob.data(), nullptr, &made, blob.size());
        geometry.reset(made);
    }
    void write(Bytes& blob) const {
        geometry->exportToWkb(wkbNDR, reinterpret_cast<unsigned char*>(blob.data()), wkbVariantIso);
    }

    std::unique_ptr<OGRGeometry> geometry;
};

// --- the measurements

template <typename Peer>
void Read(benchmark::State& state) {
    const Blobs& blobs = blobsFor(state);
    for ([[maybe_unused]] auto _ : state) {
        for (const Bytes& blob : blobs.all) {
            Peer peer;
            peer.read(blob);
            benchmark::DoNotOptimize(peer);
            benchmark::ClobberMemory();
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(blobs.size()));
}

template <typename Peer>
void Write(benchmark::State& state) {
    const Blobs& blobs = blobsFor(state);
    std::vector<Peer> peers(blobs.all.size());
    for (std::size_t i = 0; i < peers.size(); ++i) peers[i].read(blobs.all[i]);
    std::vector<Bytes> output = blobs.all;
    for ([[maybe_unused]] auto _ : state) {
        for (std::size_t i = 0; i < peers.size(); ++i) {
            peers[i].write(output[i]);
            benchmark::ClobberMemory();
        }
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(blobs.size()));
}

BENCHMARK(Read<Copy>)->DenseRange(0, 5)->Unit(benchmark::kMicrosecond);
BENCHMARK(Read<Mezalith>)->DenseRange(0, 5)->Unit(benchmark::kMicrosecond);
BENCHMARK(Read<Geos>)->DenseRange(0, 5)->Unit(benchmark::kMicrosecond);
BENCHMARK(Read<Ogr>)->DenseRange(0, 5)->Unit(benchmark::kMicrosecond);
BENCHMARK(Write<Copy>)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);
BENCHMARK(Write<Mezalith>)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);
BENCHMARK(Write<Geos>)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);
BENCHMARK(Write<Ogr>)->DenseRange(0, 4)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace mezalith
