// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/geomagnetic_model.hpp>
#include <mezalith/geomagnetism/magnetic_declination.hpp>
#include <mezalith/geomagnetism/magnetic_potential_coefficients.hpp>
#include <mezalith/platform/resource_bundle.hpp>
#include <mezalith/platform/text_file.hpp>

#include <random>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace mezalith {
namespace {

std::string resource(const char* name) {
    return platform::ResourceBundle::library().pathForResource(name).value_or("");
}

void countBytes(benchmark::State& state, const std::string& path) {
    const auto text = platform::textOfFile(path, MzGeomagneticModel::kMaxFileSize);
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(text ? text->size() : 0));
}

void SettledDeclination(benchmark::State& state) {
    std::mt19937_64 random{1};
    std::uniform_real_distribution<double> longitude{-180, 180}, latitude{-85, 85};
    std::vector<MzPoint> places(static_cast<std::size_t>(state.range(0)));
    for (MzPoint& place : places) place = {longitude(random), latitude(random)};
    const platform::Date date = platform::startOfYear(2008);
    const MzMagneticDeclination declination;
    for ([[maybe_unused]] auto _ : state) {
        for (const MzPoint place : places) {
            benchmark::DoNotOptimize(declination.declinationForLatitudeLongitude(place, date));
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(SettledDeclination)->RangeMultiplier(16)->Range(4, 1024);

/// The baseline of reading: the bytes alone.
void BytesOfIGRF11(benchmark::State& state) {
    const std::string path = resource("IGRF11.COF");
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(platform::textOfFile(path, MzGeomagneticModel::kMaxFileSize));
    }
    countBytes(state, path);
}
BENCHMARK(BytesOfIGRF11);

void SettledReadingOfIGRF11(benchmark::State& state) {
    const std::string path = resource("IGRF11.COF");
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(MzMagneticPotentialCoefficients::initWithCOFfile(path));
    }
    countBytes(state, path);
}
BENCHMARK(SettledReadingOfIGRF11);

void ReadingOfIGRF11(benchmark::State& state) {
    const std::string path = resource("IGRF11.COF");
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(MzGeomagneticModel::modelWithContentsOfFile(path));
    }
    countBytes(state, path);
}
BENCHMARK(ReadingOfIGRF11);

void ReadingOfIGRF14(benchmark::State& state) {
    const std::string path = resource("IGRF14.shc");
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(MzGeomagneticModel::modelWithContentsOfFile(path));
    }
    countBytes(state, path);
}
BENCHMARK(ReadingOfIGRF14);

}  // namespace
}  // namespace mezalith
