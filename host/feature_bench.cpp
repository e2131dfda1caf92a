// SPDX-License-Identifier: MIT
#include "host/feature.hpp"
#include <mezalith/geometry/point_geometry.hpp>
#include <mezalith/platform/predicates/format_predicate.hpp>

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include <benchmark/benchmark.h>

// Filtering features by a predicate, and by the same condition written in C++.

namespace mezalith::host {
namespace {

using Features = std::vector<std::shared_ptr<Feature>>;

/// Half of them cities, half of these large, each with the attributes of a table of thirty columns.
Features placesOf(std::int64_t count) {
    std::mt19937 random(20240229);
    Features places;
    auto columns = std::make_shared<platform::Dictionary::Names>();
    for (int column = 10; column < 38; ++column) {
        columns->push_back("column" + std::to_string(column));
    }
    columns->emplace_back("name");
    columns->emplace_back("population");
    for (std::int64_t id = 0; id < count; ++id) {
        std::vector<platform::Value> values;
        for (int column = 0; column < 28; ++column) values.emplace_back(std::to_string(random()));
        const bool isCity = random() % 2 == 0;
        values.emplace_back("Place " + std::to_string(id));
        values.emplace_back(static_cast<std::int64_t>(random() % 2000000));
        FeatureRecord record{id, isCity ? "city" : "town", {columns, std::move(values)}};
        places.push_back(
            std::make_shared<Feature>(std::make_shared<const FeatureRecord>(std::move(record)),
                                      Part{Form::Points, MzPointGeometry::initWithPoint({0, 0})}));
    }
    return places;
}

bool isLargeCity(const Feature& feature) {
    if (feature.record()->layer != "city") return false;
    const platform::Dictionary& attributes = feature.propertiesByName();
    const platform::Value* const found = attributes.find("population");
    const auto* population = std::get_if<std::int64_t>(found);
    return population != nullptr && *population > 1000000;
}

template <typename Test>
void filter(benchmark::State& state, Test test) {
    const Features places = placesOf(state.range(0));
    for (auto _ : state) {
        std::int64_t count = 0;
        for (const auto& place : places) count += test(*place) ? 1 : 0;
        benchmark::DoNotOptimize(count);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void filterBy(benchmark::State& state, const char* format) {
    const auto predicate = platform::FormatPredicate::predicateWithFormat(format);
    filter(state, [&](const Feature& place) { return predicate->evaluateWithObject(&place); });
}

void FilterByHand(benchmark::State& state) { filter(state, isLargeCity); }

void FilterByPredicate(benchmark::State& state) {
    filterBy(state, "kind == 'city' AND propertiesByName.population > 1000000");
}

void FilterByAttribute(benchmark::State& state) { filterBy(state, "population > 1000000"); }

void FilterByFoldedText(benchmark::State& state) {
    filterBy(state, "name CONTAINS[cd] 'PLACE 77'");
}

void FilterByPattern(benchmark::State& state) { filterBy(state, "name LIKE '*7?'"); }

void FilterByRegularExpression(benchmark::State& state) {
    filterBy(state, "name MATCHES '.*7[0-4]'");
}

BENCHMARK(FilterByHand)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(FilterByPredicate)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(FilterByAttribute)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(FilterByFoldedText)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(FilterByPattern)->Arg(1000)->Arg(10000)->Arg(100000);
BENCHMARK(FilterByRegularExpression)->Arg(1000)->Arg(10000)->Arg(100000);

}  // namespace
}  // namespace mezalith::host
