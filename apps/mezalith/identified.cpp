// SPDX-License-Identifier: MIT
#include "apps/mezalith/identified.hpp"

#include "apps/mezalith/text_output.hpp"

#include <cstdint>
#include <variant>

namespace mezalith::app {
namespace {

std::string jsonOf(const platform::Value& value) {
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "true" : "false";
    if (const auto* whole = std::get_if<std::int64_t>(&value)) return std::to_string(*whole);
    if (const auto* real = std::get_if<double>(&value)) return jsonNumber(*real);
    if (const auto* text = std::get_if<std::string>(&value)) return jsonString(*text);
    return "null";
}

std::string attributesJson(const host::Feature& feature) {
    JsonObject object;
    for (const auto& [name, value] : feature.propertiesByName()) {
        object.addJson(name, jsonOf(value));
    }
    return object.text();
}

const char* nameOf(const MzSymbolizer& symbolizer) {
    switch (symbolizer.symbolizerType()) {
        case 0:
            return "point";
        case 1:
            return "line";
        case 2:
            return "polygon";
        case 14561:
            return "image";
        case 118166:
            return "bubble";
        default:
            return "other";
    }
}

}  // namespace

std::string identifiedText(const host::Feature& feature, const MzStyleHit& hit) {
    return "layer " + feature.record()->layer + " id " + std::to_string(feature.record()->id) +
           " name " + jsonString(feature.featureName()) + " rule " + std::to_string(hit.ruleIndex) +
           " " + jsonString(hit.rule->name()) + " symbolizer " +
           std::to_string(hit.symbolizerIndex) + " " + nameOf(*hit.symbolizer) + " attributes " +
           attributesJson(feature);
}

std::string identifiedJson(const host::Feature& feature, const MzStyleHit& hit) {
    JsonObject rule, symbolizer, object;
    rule.add("index", hit.ruleIndex).add("name", hit.rule->name());
    symbolizer.add("index", hit.symbolizerIndex).add("type", nameOf(*hit.symbolizer));
    object.add("layer", feature.record()->layer)
        .addJson("id", std::to_string(feature.record()->id))
        .add("name", feature.featureName())
        .addJson("rule", rule.text())
        .addJson("symbolizer", symbolizer.text())
        .addJson("attributes", attributesJson(feature));
    return object.text();
}

}  // namespace mezalith::app
