// SPDX-License-Identifier: MIT
#include "host/wkb_walk.hpp"

#include "host/failure.hpp"
#include "host/failure_of.hpp"
#include "host/wkb_file.hpp"
#include <mezalith/geometry/multi_point_geometry.hpp>

#include <charconv>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace mezalith::host {
namespace {

const std::string kGood = MEZALITH_SOURCE_DIR "/data/map/wkb/";
const std::string kBad = MEZALITH_SOURCE_DIR "/tests/data/bad/wkb/";

/// Little-endian bytes, put together piece by piece.
class Bytes {
  public:
    Bytes& header(std::uint32_t type) {
        bytes_.push_back(std::byte{1});
        return number(type);
    }
    Bytes& number(std::uint32_t value) { return append(&value, sizeof value); }
    Bytes& pair(double x, double y) { return append(&x, sizeof x).append(&y, sizeof y); }
    Bytes& add(const Bytes& other) { return append(other.bytes_.data(), other.bytes_.size()); }
    std::span<const std::byte> span() const { return bytes_; }

  private:
    Bytes& append(const void* data, std::size_t size) {
        const auto* first = static_cast<const std::byte*>(data);
        bytes_.insert(bytes_.end(), first, first + size);
        return *this;
    }
    std::vector<std::byte> bytes_;
};

Bytes point(double x, double y) { return Bytes().header(1).pair(x, y); }
Bytes line() { return Bytes().header(2).number(2).pair(0, 0).pair(1, 2); }

std::string failureOf(std::span<const std::byte> bytes) {
    return mezalith::testing::failureOf([&] { surveyWKB(bytes); });
}

TEST(GeometryTypeName, KnowsTheSevenTypes) {
    EXPECT_EQ(geometryTypeName(3), "Polygon");
    EXPECT_EQ(geometryTypeName(kGeometryCollection), "GeometryCollection");
    EXPECT_EQ(geometryTypeName(0), "");
    EXPECT_EQ(geometryTypeName(8), "");
    for (std::uint32_t type = 1; type <= 7; ++type) {
        EXPECT_EQ(geometryTypeNamed(geometryTypeName(type)), type);
    }
    EXPECT_EQ(geometryTypeNamed("Circle"), 0u);
}

TEST(SurveyWKB, CountsAPoint) {
    const WKBSurvey survey = surveyWKB(point(3, 4).span());
    EXPECT_EQ(survey.type, 1u);
    EXPECT_TRUE(survey.littleEndian);
    EXPECT_EQ(survey.bytes, 21u);
    EXPECT_EQ(survey.parts, 1u);
    EXPECT_EQ(survey.rings, 0u);
    EXPECT_EQ(survey.vertices, 1u);
    EXPECT_EQ(survey.bounds, (BoundingBox{3, 4, 3, 4}));
}

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

TEST(SurveyWKB, AgreesWithTheManifest) {
    const auto all = manifest();
    ASSERT_GE(all.size(), 28u);
    for (const Figures& figures : all) {
        SCOPED_TRACE(figures.file);
        const WKBSurvey survey = surveyWKB(readFile(kGood + figures.file));
        EXPECT_EQ(survey.type, figures.type);
        if (figures.byteOrder != "mixed") {
            EXPECT_EQ(survey.littleEndian, figures.byteOrder == "little");
        }
        EXPECT_EQ(survey.parts, figures.parts);
        EXPECT_EQ(survey.rings, figures.rings);
        EXPECT_EQ(survey.vertices, figures.vertices);
        EXPECT_EQ(survey.bytes, figures.bytes);
        EXPECT_EQ(survey.bounds, figures.bounds);
    }
}

TEST(SurveyWKB, LeavesTrailingBytesAlone) {
    EXPECT_EQ(surveyWKB(point(0, 0).number(7).span()).bytes, 21u);
}

TEST(SurveyWKB, TakesAnyOrderByteButZeroForLittleEndian) {
    const Bytes source = point(3, 4);
    std::vector<std::byte> bytes(source.span().begin(), source.span().end());
    bytes[0] = std::byte{0xff};
    EXPECT_TRUE(surveyWKB(bytes).littleEndian);
}

TEST(SurveyWKB, NamesTheByteThatIsWrong) {
    EXPECT_EQ(failureOf({}), "byte 0: the bytes end before the header of a geometry");
    EXPECT_EQ(failureOf(Bytes().header(1).pair(1, 2).span().first(20)),
              "byte 20: the bytes end before the coordinates of a point");
    EXPECT_EQ(failureOf(Bytes().header(3).span()), "byte 5: the bytes end before a count");
    EXPECT_EQ(failureOf(Bytes().header(2).number(0xffffffff).pair(0, 0).span()),
              "byte 5: 4294967295 points do not fit into the 16 bytes that follow");
    EXPECT_EQ(failureOf(Bytes().header(1001).pair(0, 0).span()),
              "byte 1: geometry type 1001 is none of 1 to 7");
    EXPECT_EQ(failureOf(Bytes().header(4).number(1).add(line()).span()),
              "byte 10: a LineString stands where a Point belongs");
    EXPECT_EQ(failureOf(Bytes().header(6).number(2).add(line()).span()),
              "byte 10: a LineString stands where a Polygon belongs");
}

TEST(SurveyWKB, RefusesCollectionsNestedTooDeeply) {
    const auto nested = [](int levels) {
        Bytes bytes;
        for (int i = 0; i < levels; ++i) bytes.header(7).number(1);
        return bytes.add(point(1, 2));
    };
    EXPECT_EQ(surveyWKB(nested(32).span()).parts, 1u);
    EXPECT_EQ(failureOf(nested(33).span()), "byte 297: collections are nested too deeply");
}

TEST(SurveyWKB, NeverReadsPastItsBytes) {
    // Every prefix of every good file is refused; the sanitizers watch the reading.
    for (const char* name : {"multipolygon-norway-mixed.wkb", "multilinestring-date-line-be.wkb",
                             "multipoint-capitals-europe-le.wkb"}) {
        const auto bytes = readFile(kGood + name);
        for (std::size_t length = 0; length < bytes.size(); length += 7) {
            const std::vector<std::byte> prefix(bytes.begin(),
                                                bytes.begin() + static_cast<long>(length));
            EXPECT_THROW(surveyWKB(prefix), Failure) << name << " " << length;
        }
    }
}

TEST(SurveyWKB, RefusesWhatIsBadAndTakesWhatIsOnlyOdd) {
    std::size_t refused = 0;
    std::size_t taken = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kBad)) {
        const std::string name = entry.path().filename().string();
        const auto bytes = readFile(entry.path().string());
        const bool bad = failureOf(bytes) != "no failure";
        (bad ? refused : taken) += 1;
        for (const char* prefix :
             {"trunc-", "ewkb-", "iso-", "member-type-", "type-0", "type-17"}) {
            EXPECT_TRUE(bad || !name.starts_with(prefix)) << name;
        }
        for (const char* prefix : {"ok-", "empty-", "coord-", "ring-", "hole-", "order-"}) {
            EXPECT_TRUE(!bad || !name.starts_with(prefix)) << name;
        }
        if (!bad) partsOfWKB(bytes, surveyWKB(bytes));
    }
    EXPECT_EQ(refused + taken, 91u);
}

TEST(PartsOfWKB, TakesCollectionsAndMultiLineStringsApart) {
    const Bytes lines = Bytes().header(5).number(2).add(line()).add(line());
    const Bytes points = Bytes().header(4).number(2).add(point(1, 1)).add(point(2, 2));
    const Bytes inner = Bytes().header(7).number(1).add(point(5, 6));
    const Bytes all = Bytes().header(7).number(3).add(lines).add(points).add(inner);
    const WKBSurvey survey = surveyWKB(all.span());
    EXPECT_EQ(survey.parts, 5u);
    const auto parts = partsOfWKB(all.span(), survey);
    ASSERT_EQ(parts.size(), 4u);
    EXPECT_EQ(parts[0].form, Form::Line);
    EXPECT_EQ(parts[1].form, Form::Line);
    EXPECT_EQ(parts[2].form, Form::Points);
    EXPECT_EQ(parts[2].geometry->geometryType(), 4u);
    EXPECT_EQ(parts[3].form, Form::Points);
    EXPECT_EQ(parts[3].geometry->geometryType(), 1u);
}

TEST(PartsOfWKB, MakesAMultiPointOfALine) {
    const Bytes bytes = line();
    const auto parts = partsOfWKB(bytes.span(), surveyWKB(bytes.span()));
    ASSERT_EQ(parts.size(), 1u);
    ASSERT_EQ(parts[0].geometry->geometryType(), 4u);
    const auto* geometry = static_cast<const MzMultiPointGeometry*>(parts[0].geometry.get());
    ASSERT_EQ(geometry->multiPointGeometry()->count, 2u);
    EXPECT_EQ(geometry->multiPointGeometry()->points[1].y, 2);
}

TEST(PartsOfWKB, KeepsPolygonsWholeAndLeavesOutWhatHasNoPoints) {
    const auto norway = readFile(kGood + "multipolygon-norway-be.wkb");
    const auto parts = partsOfWKB(norway, surveyWKB(norway));
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_EQ(parts[0].form, Form::Area);
    EXPECT_EQ(parts[0].geometry->leafNodes().size(), 4u);
    for (const char* name : {"empty-linestring.wkb", "empty-multipoint.wkb", "empty-polygon.wkb"}) {
        const auto bytes = readFile(kBad + name);
        EXPECT_TRUE(partsOfWKB(bytes, surveyWKB(bytes)).empty()) << name;
    }
}

}  // namespace
}  // namespace mezalith::host
