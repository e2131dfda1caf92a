// SPDX-License-Identifier: MIT
#include "host/geojson.hpp"

#include "host/failure.hpp"
#include <mezalith/geometry/wkb_builder.hpp>
#include <mezalith/geometry/wkb_reader.hpp>
#include <mezalith/platform/number_text.hpp>

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include <nlohmann/json.hpp>

namespace mezalith::host {
namespace {

using Json = nlohmann::json;

/// Writes coordinates, and whole geometries where these hold each other.
class Writer {
  public:
    void geometry(const MzGeometryRecord& g) {
        text += R"({"type":")";
        text += MzGeometryTypeName(g.type);
        text += g.type == MzGeometryTypeGeometryCollection ? R"(","geometries":)"
                                                           : R"(","coordinates":)";
        content(g);
        text += '}';
    }

    std::string text;

  private:
    template <typename Elements, typename Write>
    void list(const Elements& elements, const Write& write) {
        text += '[';
        bool isFirst = true;
        for (const auto& element : elements) {
            if (!isFirst) text += ',';
            isFirst = false;
            write(element);
        }
        text += ']';
    }

    void content(const MzGeometryRecord& g) {
        const MzMultiLineString lines = multiLineStringOf(g);
        const MzMultiPolygon polygons = multiPolygonOf(g);
        switch (g.type) {
            case MzGeometryTypePoint:
                return point(pointsOf(&g));
            case MzGeometryTypeLineString:
            case MzGeometryTypeMultiPoint:
                return positions(g);
            case MzGeometryTypePolygon:
                return rings(polygonOf(g));
            case MzGeometryTypeMultiLineString:
                return list(lineStringsOf(&lines),
                            [this](const MzLineString& line) { positions(line); });
            case MzGeometryTypeMultiPolygon:
                return list(polygonsOf(&polygons),
                            [this](const MzPolygon& polygon) { rings(polygon); });
            default:
                return list(membersOf(&g),
                            [this](const MzGeometryRecord& member) { geometry(member); });
        }
    }

    void rings(const MzPolygon& polygon) {
        list(ringsOf(&polygon), [this](const MzLinearRing& ring) { positions(ring); });
    }

    template <typename Record>
    void positions(const Record& record) {
        list(pointsOf(&record), [this](MzPoint p) { position(p); });
    }

    void point(std::span<const MzPoint> points) {
        const bool isEmpty = points.empty() || (std::isnan(points[0].x) && std::isnan(points[0].y));
        if (isEmpty) {
            text += "[]";
        } else {
            position(points[0]);
        }
    }

    void position(MzPoint p) {
        if (!std::isfinite(p.x) || !std::isfinite(p.y)) {
            throw Failure("GeoJSON", "a coordinate is not a finite number");
        }
        text += '[' + number(p.x) + ',' + number(p.y) + ']';
    }

    /// "-0" is an integer to readers of JSON, and 0.
    static std::string number(double value) {
        return value == 0 && std::signbit(value) ? "-0.0" : platform::shortestText(value);
    }
};

/// A value in the document and where it stands.
class Node {
  public:
    Node(const Json& value, std::string path) : value_(value), path_(std::move(path)) {}

    [[noreturn]] void fail(const std::string& why) const {
        throw Failure(path_.empty() ? "/" : path_, why);
    }

    const Json& value() const { return value_; }

    Node at(const char* key) const {
        if (!value_.is_object() || !value_.contains(key)) fail(std::string("no \"") + key + "\"");
        return {value_[key], path_ + "/" + key};
    }

    Node element(std::size_t index) const {
        return {value_[index], path_ + "/" + std::to_string(index)};
    }

    std::string text() const {
        if (!value_.is_string()) fail("not a text");
        return value_.get<std::string>();
    }

    /// How many elements the list has.
    std::size_t size() const {
        if (!value_.is_array()) fail("not a list");
        return value_.size();
    }

    double number() const {
        if (!value_.is_number()) fail("not a number");
        return value_.get<double>();
    }

  private:
    const Json& value_;
    std::string path_;
};

/// Walks through a document and builds the geometry that it holds.
class Reader {
  public:
    void geometry(const Node& node, unsigned depth) {
        const std::string name = node.at("type").text();
        const std::uint32_t type = MzGeometryTypeNamed(name);
        if (type == 0 || MzGeometryTypeName(type) != name) {
            node.at("type").fail("\"" + name + "\" is not a type of geometry");
        }
        if (type != MzGeometryTypeGeometryCollection) {
            return coordinates(type, node.at("coordinates"));
        }
        // Without the path, which would be all of them.
        if (depth == MzDeepestCollection) {
            throw Failure("GeoJSON", "collections are nested too deeply");
        }
        builder.begin(type);
        forEach(node.at("geometries"), [&](const Node& member) { geometry(member, depth + 1); });
        builder.end();
    }

    MzWKBBuilder builder;

  private:
    template <typename Visit>
    static void forEach(const Node& list, const Visit& visit) {
        const std::size_t size = list.size();
        for (std::size_t i = 0; i < size; ++i) visit(list.element(i));
    }

    void position(const Node& node) {
        if (node.size() < 2) node.fail("fewer than two coordinates");
        builder.add({node.element(0).number(), node.element(1).number()});
    }

    void positions(const Node& list) {
        forEach(list, [this](const Node& node) { position(node); });
    }

    void coordinates(std::uint32_t type, const Node& node) {
        builder.begin(type);
        if (type == MzGeometryTypePoint) {
            constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
            node.size() == 0 ? builder.add({kNaN, kNaN}) : position(node);
        } else if (type == MzGeometryTypeLineString) {
            positions(node);
        } else if (type == MzGeometryTypePolygon) {
            forEach(node, [this](const Node& ring) {
                builder.beginRing();
                positions(ring);
                builder.end();
            });
        } else {
            forEach(node, [&](const Node& member) { coordinates(MzMemberTypeOf(type), member); });
        }
        builder.end();
    }
};

Json parsed(std::string_view text) {
    try {
        return Json::parse(text);
    } catch (const Json::parse_error& error) {
        throw Failure("byte " + std::to_string(error.byte), "this is not JSON");
    } catch (const Json::exception&) {
        throw Failure("GeoJSON", "a number is out of range");
    }
}

Node geometryIn(const Node& node) {
    const std::string type = node.at("type").text();
    if (type == "Feature") return node.at("geometry");
    if (type != "FeatureCollection") return node;
    const Node features = node.at("features");
    if (features.size() != 1) {
        features.fail(std::to_string(features.size()) + " features where one is wanted");
    }
    return features.element(0).at("geometry");
}

}  // namespace

std::string geoJSONOf(const MzGeometryRecord& geometry) {
    Writer writer;
    writer.geometry(geometry);
    return std::move(writer.text);
}

MzGeometryBlock geometryOfGeoJSON(std::string_view text) {
    const Json document = parsed(text);
    Reader reader;
    reader.geometry(geometryIn(Node(document, "")), 0);
    MzWKBReading reading = MzReadWKB(reader.builder.bytes());
    if (!reading) throw Failure("GeoJSON", "it holds more than can be counted");
    return std::move(reading.geometry);
}

}  // namespace mezalith::host
