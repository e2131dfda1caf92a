// SPDX-License-Identifier: MIT
#pragma once

#include "host/data_source.hpp"
#include "mezalith/geometry/test_support.hpp"
#include <mezalith/geometry/multi_polygon_geometry.hpp>
#include <mezalith/geometry/polygon_geometry.hpp>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

// The areas of the maps in data/map.

namespace mezalith::test {

/// Every package, and the folder of single geometries.
inline std::vector<std::filesystem::path> mapSources(const std::filesystem::path& root) {
    const std::filesystem::path folder = root / "data/map";
    std::vector<std::filesystem::path> sources{folder / "wkb"};
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".gpkg") sources.push_back(entry.path());
    }
    std::ranges::sort(sources);
    return sources;
}

/// As part of a test's name.
inline std::string nameOfMap(const testing::TestParamInfo<std::filesystem::path>& source) {
    std::string name = source.param.stem().string();
    std::erase_if(name, [](unsigned char c) { return std::isalnum(c) == 0; });
    return name;
}

inline std::vector<std::string> filesOf(const std::filesystem::path& source) {
    if (!std::filesystem::is_directory(source)) return {source.string()};
    std::vector<std::string> files;
    for (const auto& file : wkbFiles(source)) files.push_back(file.string());
    return files;
}

/// Calls `use` with each geometry of every layer.
template <typename Use>
void forEachGeometry(const std::filesystem::path& source, const Use& use) {
    for (const std::string& file : filesOf(source)) {
        host::DataSource data(file);
        for (std::size_t i = 0; i < data.layerNames().size(); ++i) {
            for (const auto& feature : data.read(i).features) use(feature->geometry());
        }
    }
}

/// Calls `use` with the record of each polygon, those of multi-polygons among them.
template <typename Use>
void forEachPolygon(const std::filesystem::path& source, const Use& use) {
    forEachGeometry(source, [&](const std::shared_ptr<MzGeometry>& geometry) {
        if (const auto* one = dynamic_cast<const MzPolygonGeometry*>(geometry.get())) {
            use(*one->polygonGeometry());
        } else if (const auto* many = dynamic_cast<const MzMultiPolygonGeometry*>(geometry.get())) {
            for (const MzPolygon& member : polygonsOf(many->multiPolygonGeometry())) use(member);
        }
    });
}

/// Calls `use` with the record of each multi-polygon.
template <typename Use>
void forEachMultiPolygon(const std::filesystem::path& source, const Use& use) {
    forEachGeometry(source, [&](const std::shared_ptr<MzGeometry>& geometry) {
        const auto* many = dynamic_cast<const MzMultiPolygonGeometry*>(geometry.get());
        if (many != nullptr) use(*many->multiPolygonGeometry());
    });
}

inline Rings ringsOfRecord(const MzPolygon& polygon) {
    Rings rings;
    for (const MzLinearRing& ring : ringsOf(&polygon)) {
        const auto run = pointsOf(&ring);
        rings.emplace_back(run.begin(), run.end());
    }
    return rings;
}

}  // namespace mezalith::test
