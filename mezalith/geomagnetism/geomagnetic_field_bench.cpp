// SPDX-License-Identifier: MIT
#include <mezalith/geomagnetism/geomagnetic_field.hpp>

#include <array>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

#include <benchmark/benchmark.h>

namespace mezalith {
namespace {

constexpr double kYear = 2026.89;

const MzGeomagneticModel& model() { return *MzGeomagneticModel::internationalReferenceField(); }

/// Places of a map, the same in every run.
std::vector<MzPoint> sample(benchmark::State& state) {
    std::mt19937_64 random{1};
    std::uniform_real_distribution<double> longitude{-180, 180}, latitude{-85, 85};
    std::vector<MzPoint> places(static_cast<std::size_t>(state.range(0)));
    for (MzPoint& place : places) place = {longitude(random), latitude(random)};
    return places;
}

void countPlaces(benchmark::State& state) {
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// --- the baseline --------------------------------------------------------------------------------

/// The three components on a sphere, by the textbook's recursion with all factors computed before:
/// no ellipsoid, no angles, nothing that a user asks for.
class BareRecursion {
  public:
    BareRecursion() {
        std::vector<MzGaussCoefficients> values(MzGeomagneticModel::countToDegree(kDegree));
        std::vector<MzGaussCoefficients> rates(values.size());
        model().coefficientsInYear(kYear, values, rates);
        for (int n = 1; n <= kDegree; ++n) {
            for (int m = 0; m <= n; ++m) {
                g_[n][m] = values[MzGeomagneticModel::indexOf(n, m)].g;
                h_[n][m] = values[MzGeomagneticModel::indexOf(n, m)].h;
                root_[n][m] = std::sqrt(n * n - m * m);
                sectoral_[n] = n == 1 ? 1 : std::sqrt((2.0 * n - 1) / (2.0 * n));
            }
        }
    }

    double sumAt(MzPoint place) const {
        const double theta = (90 - place.y) * std::numbers::pi / 180;
        const double lambda = place.x * std::numbers::pi / 180;
        const double c = std::cos(theta), s = std::sin(theta);
        std::array<double, kDegree + 1> cosines, sines;
        for (int m = 0; m <= kDegree; ++m) {
            cosines[m] =
                m == 0 ? 1 : cosines[m - 1] * std::cos(lambda) - sines[m - 1] * std::sin(lambda);
            sines[m] =
                m == 0 ? 0 : sines[m - 1] * std::cos(lambda) + cosines[m - 1] * std::sin(lambda);
        }
        double p[kDegree + 1][kDegree + 1] = {{1}};
        double north = 0, east = 0, down = 0;
        for (int n = 1; n <= kDegree; ++n) {
            for (int m = 0; m <= n; ++m) {
                if (m == n) {
                    p[n][n] = sectoral_[n] * s * p[n - 1][n - 1];
                } else {
                    const double below = m < n - 1 ? root_[n - 1][m] * p[n - 2][m] : 0;
                    p[n][m] = ((2 * n - 1) * c * p[n - 1][m] - below) / root_[n][m];
                }
                const double under = m < n ? root_[n][m] * p[n - 1][m] : 0;
                const double slope = (n * c * p[n][m] - under) / s;
                const double along = g_[n][m] * cosines[m] + h_[n][m] * sines[m];
                north += along * slope;
                east += m * (g_[n][m] * sines[m] - h_[n][m] * cosines[m]) * p[n][m] / s;
                down -= (n + 1) * along * p[n][m];
            }
        }
        return north + east + down;
    }

  private:
    static constexpr int kDegree = 13;
    double g_[kDegree + 1][kDegree + 1] = {}, h_[kDegree + 1][kDegree + 1] = {};
    double root_[kDegree + 1][kDegree + 1] = {};
    double sectoral_[kDegree + 1] = {};
};

void BareRecursionOneByOne(benchmark::State& state) {
    const std::vector<MzPoint> places = sample(state);
    const BareRecursion recursion;
    for ([[maybe_unused]] auto _ : state) {
        for (const MzPoint place : places) benchmark::DoNotOptimize(recursion.sumAt(place));
    }
    countPlaces(state);
}
BENCHMARK(BareRecursionOneByOne)->RangeMultiplier(16)->Range(64, 16384);

// --- the field -----------------------------------------------------------------------------------

void ElementsOneByOne(benchmark::State& state) {
    const std::vector<MzPoint> places = sample(state);
    const MzGeomagneticField field(model(), kYear);
    for ([[maybe_unused]] auto _ : state) {
        for (const MzPoint place : places) benchmark::DoNotOptimize(field.elementsAt(place));
    }
    countPlaces(state);
}
BENCHMARK(ElementsOneByOne)->RangeMultiplier(16)->Range(64, 16384);

void ElementsAndTimeOneByOne(benchmark::State& state) {
    const std::vector<MzPoint> places = sample(state);
    for ([[maybe_unused]] auto _ : state) {
        for (const MzPoint place : places) {
            benchmark::DoNotOptimize(MzGeomagneticField(model(), kYear).elementsAt(place));
        }
    }
    countPlaces(state);
}
BENCHMARK(ElementsAndTimeOneByOne)->RangeMultiplier(16)->Range(64, 16384);

void AnnualChangeOneByOne(benchmark::State& state) {
    const std::vector<MzPoint> places = sample(state);
    const MzGeomagneticField field(model(), kYear);
    for ([[maybe_unused]] auto _ : state) {
        for (const MzPoint place : places) benchmark::DoNotOptimize(field.annualChangeAt(place));
    }
    countPlaces(state);
}
BENCHMARK(AnnualChangeOneByOne)->RangeMultiplier(16)->Range(64, 16384);

/// Twice as many longitudes as latitudes, as on a map of the world.
void ElementsOnGrid(benchmark::State& state) {
    const auto rows = static_cast<std::size_t>(std::sqrt(static_cast<double>(state.range(0)) / 2));
    const auto columns = static_cast<std::size_t>(state.range(0)) / rows;
    std::vector<double> longitudes(columns), latitudes(rows);
    for (std::size_t i = 0; i < columns; ++i) longitudes[i] = static_cast<double>(i) - 180;
    for (std::size_t i = 0; i < rows; ++i) latitudes[i] = static_cast<double>(i) * 0.5 - 40;
    std::vector<MzMagneticElements> results(rows * columns);
    const MzGeomagneticField field(model(), kYear);
    for ([[maybe_unused]] auto _ : state) {
        field.elementsOnGrid(longitudes, latitudes, 0, results);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(results.size()));
}
BENCHMARK(ElementsOnGrid)->Arg(128)->Arg(2048)->Arg(32768);

}  // namespace
}  // namespace mezalith
