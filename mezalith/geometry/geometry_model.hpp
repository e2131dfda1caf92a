// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/geometry_record.hpp>
#include <mezalith/geometry/test_support.hpp>

#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <vector>

// A geometry as tests think of it, with what makes one at random, writes it in any way that
// Well-Known Binary has, and compares it with records.

namespace mezalith::test {

struct Model {
    std::uint32_t type = MzGeometryTypePoint;
    std::vector<Points> runs;    ///< of a point, lines, rings or a multi-point
    std::vector<Model> members;  ///< of a multi-polygon or a collection
};

/// A number below `limit`, from wherever a test takes its numbers.
using Dice = std::function<std::uint64_t(std::uint64_t limit)>;

/// The same numbers in every run; copies go on where the others are.
inline Dice diceOf(std::uint64_t seed) {
    return [random = std::make_shared<std::mt19937_64>(seed)](std::uint64_t limit) {
        return limit == 0 ? (*random)() : (*random)() % limit;
    };
}

struct ModelMaker {
    Dice dice;
    bool anyBits = true;   ///< coordinates of any bits; otherwise small numbers
    bool isValid = false;  ///< lines of two points, closed rings of four, no empty member

    double coordinate() {
        if (anyBits) return std::bit_cast<double>(dice(0));
        return (static_cast<double>(dice(2'000'001)) - 1e6) / 1024;
    }
    Points run(std::size_t least, bool closed) {
        Points points(isValid ? least + dice(5) : dice(6));
        for (MzPoint& p : points) p = {coordinate(), coordinate()};
        if (isValid && closed) points.back() = points.front();
        return points;
    }
    std::vector<Points> runs(std::size_t least, bool closed) {
        std::vector<Points> made(isValid ? 1 + dice(3) : dice(4));
        for (Points& points : made) points = run(least, closed);
        return made;
    }
    Model make(std::uint32_t type, unsigned depth = 0) {
        switch (type) {
            case MzGeometryTypePoint:
                return {type, {{{coordinate(), coordinate()}}}, {}};
            case MzGeometryTypeLineString:
                return {type, {run(2, false)}, {}};
            case MzGeometryTypePolygon:
                return {type, runs(4, true), {}};
            case MzGeometryTypeMultiPoint:
                return {type, {run(1, false)}, {}};
            case MzGeometryTypeMultiLineString:
                return {type, runs(2, false), {}};
            default:
                break;
        }
        Model model{type, {}, std::vector<Model>((isValid ? 1 : 0) + dice(4))};
        for (Model& member : model.members) {
            const auto any = static_cast<std::uint32_t>(1 + dice(depth < 3 ? 7 : 6));
            member = make(type == MzGeometryTypeMultiPolygon ? 3 : any, depth + 1);
        }
        return model;
    }
    Model make() { return make(static_cast<std::uint32_t>(1 + dice(7))); }
};

inline bool isSame(const MzPolygon& polygon, const std::vector<Points>& rings) {
    return std::ranges::equal(ringsOf(&polygon), rings,
                              [](const MzLinearRing& ring, const Points& points) {
                                  return sameBits(pointsOf(&ring), points);
                              });
}

/// Whether the record is the model, every bit of its coordinates included.
inline bool isSame(const MzGeometryRecord& record, const Model& model) {
    if (record.type != model.type) return false;
    const MzMultiLineString lines = multiLineStringOf(record);
    const MzMultiPolygon polygons = multiPolygonOf(record);
    switch (record.type) {
        case MzGeometryTypePolygon:
            return isSame(polygonOf(record), model.runs);
        case MzGeometryTypeMultiLineString:
            return std::ranges::equal(lineStringsOf(&lines), model.runs,
                                      [](const MzLineString& line, const Points& points) {
                                          return sameBits(pointsOf(&line), points);
                                      });
        case MzGeometryTypeMultiPolygon:
            return std::ranges::equal(polygonsOf(&polygons), model.members,
                                      [](const MzPolygon& polygon, const Model& member) {
                                          return isSame(polygon, member.runs);
                                      });
        case MzGeometryTypeGeometryCollection:
            return std::ranges::equal(membersOf(&record), model.members,
                                      [](const MzGeometryRecord& member, const Model& other) {
                                          return isSame(member, other);
                                      });
        default:
            return record.count == model.runs.at(0).size() &&
                   sameBits(pointsOf(&record), model.runs[0]);
    }
}

/// How `write` writes.
struct Dialect {
    bool hasZ = false;
    bool hasM = false;
    bool hasFlags = false;  ///< EWKB's, otherwise ISO's codes
    std::function<std::uint8_t()> order = [] { return kLittle; };

    std::uint32_t code(std::uint32_t type) const {
        if (!hasFlags) return type + (hasZ ? 1000U : 0) + (hasM ? 2000U : 0);
        return type | (hasZ ? 0x80000000U : 0) | (hasM ? 0x40000000U : 0);
    }
};

inline void writePositions(WkbWriter& wkb, const Points& points, const Dialect& dialect) {
    for (const MzPoint p : points) {
        wkb.number(p.x).number(p.y);
        if (dialect.hasZ) wkb.number(99);
        if (dialect.hasM) wkb.number(-7);
    }
}

inline void writeCounted(WkbWriter& wkb, const Points& points, const Dialect& dialect) {
    wkb.integer(static_cast<std::uint32_t>(points.size()));
    writePositions(wkb, points, dialect);
}

/// Writes a model in a dialect, each element in the order that comes next.
inline void write(WkbWriter& wkb, const Model& model, const Dialect& dialect) {
    const std::uint32_t type = model.type;
    wkb.element(dialect.order(), dialect.code(type));
    if (type == MzGeometryTypePoint) return writePositions(wkb, model.runs[0], dialect);
    if (type == MzGeometryTypeLineString) return writeCounted(wkb, model.runs[0], dialect);
    if (type == MzGeometryTypePolygon) {
        wkb.integer(static_cast<std::uint32_t>(model.runs.size()));
        for (const Points& ring : model.runs) writeCounted(wkb, ring, dialect);
        return;
    }
    std::vector<Model> members = model.members;
    if (type == MzGeometryTypeMultiPoint) {
        for (const MzPoint p : model.runs[0]) members.push_back({MzGeometryTypePoint, {{p}}, {}});
    }
    if (type == MzGeometryTypeMultiLineString) {
        for (const Points& line : model.runs) {
            members.push_back({MzGeometryTypeLineString, {line}, {}});
        }
    }
    wkb.integer(static_cast<std::uint32_t>(members.size()));
    for (const Model& member : members) write(wkb, member, dialect);
}

inline Bytes bytesOf(const Model& model, const Dialect& dialect = {}) {
    WkbWriter wkb;
    write(wkb, model, dialect);
    return wkb.bytes();
}

}  // namespace mezalith::test
