// SPDX-License-Identifier: MIT
#include "host/survey.hpp"

#include "host/wkb_file.hpp"
#include <mezalith/geometry/geometry_model.hpp>
#include <mezalith/geometry/wkt_reader.hpp>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

const std::string kGood = MEZALITH_SOURCE_DIR "/data/map/wkb/";

/// One line of the manifest, whose figures were counted by another reader.
struct Figures {
    std::string file;
    std::uint32_t type;
    std::string byteOrder;
    std::size_t parts, rings, vertices, bytes;
    BoundingBox bounds;
};

std::vector<Figures> manifest() {
    std::ifstream file(kGood + "MANIFEST.csv");
    std::string line;
    std::getline(file, line);
    std::vector<Figures> all;
    while (std::getline(file, line)) {
        std::vector<std::string> fields;
        std::stringstream stream(line);
        for (std::string field; std::getline(stream, field, ',');) fields.push_back(field);
        const auto number = [&](std::size_t i) { return std::strtod(fields[i].c_str(), nullptr); };
        const auto count = [&](std::size_t i) { return static_cast<std::size_t>(number(i)); };
        all.push_back({fields[0],
                       static_cast<std::uint32_t>(count(1)),
                       fields[3],
                       count(4),
                       count(5),
                       count(7),
                       count(8),
                       {number(9), number(10), number(11), number(12)}});
    }
    return all;
}

TEST(SurveyOf, AgreesWithTheManifest) {
    const auto all = manifest();
    ASSERT_GE(all.size(), 28u);
    for (const Figures& figures : all) {
        SCOPED_TRACE(figures.file);
        const MzWKBReading reading = readWKB(readFile(kGood + figures.file));
        const Survey survey = surveyOf(*reading.geometry.record());
        EXPECT_EQ(reading.geometry.record()->type, figures.type);
        if (figures.byteOrder != "mixed") {
            EXPECT_EQ(reading.isLittleEndian, figures.byteOrder == "little");
        }
        EXPECT_EQ(survey.parts, figures.parts);
        EXPECT_EQ(survey.rings, figures.rings);
        EXPECT_EQ(survey.vertices, figures.vertices);
        EXPECT_EQ(reading.length, figures.bytes);
        EXPECT_EQ(survey.bounds, figures.bounds);
    }
}

TEST(SurveyOf, CountsWhatCollectionsHold) {
    const test::Points ring = test::square(0, 0, 4);
    const test::Model polygon{3, {ring, ring}, {}};
    const test::Model inner{7, {}, {{6, {}, {polygon, polygon}}, {4, {{{9, 9}, {8, 8}}}, {}}}};
    const MzWKBReading reading = readWKB(test::bytesOf({7, {}, {polygon, inner, {5, {ring}, {}}}}));
    const Survey survey = surveyOf(*reading.geometry.record());
    EXPECT_EQ(survey.parts, 1u + 2 + 2 + 1);
    EXPECT_EQ(survey.rings, 6u);
    EXPECT_EQ(survey.vertices, 6u * 5 + 2 + 5);
    EXPECT_EQ(survey.bounds, (BoundingBox{0, 0, 9, 9}));
}

TEST(SurveyOf, CountsNoVerticesOfEmptyPoints) {
    const auto verticesOf = [](const char* text) {
        return surveyOf(*MzReadWKT(text).geometry.record()).vertices;
    };
    EXPECT_EQ(verticesOf("POINT EMPTY"), 0u);
    EXPECT_EQ(verticesOf("POINT (1 2)"), 1u);
    EXPECT_EQ(verticesOf("MULTIPOINT ((1 2), EMPTY, (3 4))"), 2u);
    EXPECT_EQ(verticesOf("GEOMETRYCOLLECTION (POINT EMPTY, LINESTRING (1 2, 3 4))"), 2u);
}

}  // namespace
}  // namespace mezalith::host
