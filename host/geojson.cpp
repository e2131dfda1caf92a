// SPDX-License-Identifier: MIT
#include "host/geojson.hpp"

#include "host/failure.hpp"
#include "host/wkb_walk.hpp"
#include <mezalith/platform/number_text.hpp>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include <nlohmann/json.hpp>

namespace mezalith::host {
namespace {

using Json = nlohmann::json;

constexpr int kDeepest = 32;

/// Writes a geometry object while the bytes are walked.
class GeoJSONWriter final : public WKBVisitor {
  public:
    void begin(const Header& header) override {
        if (isMember()) {
            separate();
        } else {
            openObject(header.type);
        }
        if (header.type != MzGeometryTypePoint) text += '[';
        open_.push_back({header.type, true});
    }

    void points(std::span<const MzPoint> run) override {
        if (open_.back().type == MzGeometryTypePoint) return position(run.front());
        if (open_.back().type == MzGeometryTypePolygon) {
            separate();
            text += '[';
        }
        for (std::size_t i = 0; i < run.size(); ++i) {
            if (i > 0) text += ',';
            position(run[i]);
        }
        if (open_.back().type == MzGeometryTypePolygon) text += ']';
    }

    void end(std::size_t) override {
        const Open closed = open_.back();
        open_.pop_back();
        if (closed.type != MzGeometryTypePoint) text += ']';
        if (!isMember()) text += '}';
    }

    std::string text;

  private:
    struct Open {
        std::uint32_t type;
        bool first;  ///< nothing stands in it yet
    };

    /// Whether what begins or ends now is the member of a multi-geometry: coordinates only.
    bool isMember() const { return !open_.empty() && open_.back().type != kGeometryCollection; }

    void separate() {
        if (!open_.back().first) text += ',';
        open_.back().first = false;
    }

    void openObject(std::uint32_t type) {
        if (!open_.empty()) separate();
        text += R"({"type":")";
        text += geometryTypeName(type);
        text += type == kGeometryCollection ? R"(","geometries":)" : R"(","coordinates":)";
    }

    void position(MzPoint point) {
        const bool isPoint = open_.back().type == MzGeometryTypePoint;
        if (isPoint && std::isnan(point.x) && std::isnan(point.y)) {
            text += "[]";
            return;
        }
        if (!std::isfinite(point.x) || !std::isfinite(point.y)) {
            throw Failure("GeoJSON", "a coordinate is not a finite number");
        }
        text += '[' + platform::shortestText(point.x) + ',' + platform::shortestText(point.y) + ']';
    }

    std::vector<Open> open_;
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

class WKBWriter {
  public:
    void geometry(const Node& node, int depth) {
        if (depth > kDeepest) node.fail("collections are nested too deeply");
        const std::string name = node.at("type").text();
        const std::uint32_t type = geometryTypeNamed(name);
        if (type == 0) node.at("type").fail("\"" + name + "\" is not a type of geometry");
        if (type != kGeometryCollection) return coordinates(type, node.at("coordinates"));
        header(type);
        const Node members = node.at("geometries");
        const std::size_t size = count(members);
        for (std::size_t i = 0; i < size; ++i) geometry(members.element(i), depth + 1);
    }

    std::vector<std::byte> bytes;

  private:
    void append(const void* data, std::size_t size) {
        const auto* first = static_cast<const std::byte*>(data);
        bytes.insert(bytes.end(), first, first + size);
    }

    void header(std::uint32_t type) {
        bytes.push_back(std::byte{1});
        append(&type, sizeof type);
    }

    std::size_t count(const Node& list) {
        const std::size_t size = list.size();
        if (size > std::numeric_limits<std::uint32_t>::max()) list.fail("too long");
        const auto written = static_cast<std::uint32_t>(size);
        append(&written, sizeof written);
        return size;
    }

    void pair(double x, double y) {
        append(&x, sizeof x);
        append(&y, sizeof y);
    }

    void position(const Node& node) {
        if (node.size() < 2) node.fail("fewer than two coordinates");
        pair(node.element(0).number(), node.element(1).number());
    }

    void positions(const Node& list) {
        const std::size_t size = count(list);
        for (std::size_t i = 0; i < size; ++i) position(list.element(i));
    }

    void coordinates(std::uint32_t type, const Node& node) {
        header(type);
        if (type == MzGeometryTypePoint) {
            constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
            return node.size() == 0 ? pair(kNaN, kNaN) : position(node);
        }
        if (type == MzGeometryTypeLineString) return positions(node);
        const std::size_t size = count(node);
        for (std::size_t i = 0; i < size; ++i) {
            if (type == MzGeometryTypePolygon) {
                positions(node.element(i));
            } else {
                coordinates(type - MzGeometryTypeMultiPoint + MzGeometryTypePoint, node.element(i));
            }
        }
    }
};

static_assert(MzGeometryTypeMultiPolygon - MzGeometryTypeMultiPoint ==
              MzGeometryTypePolygon - MzGeometryTypePoint);

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

std::string geoJSONFromWKB(std::span<const std::byte> wkb) {
    GeoJSONWriter writer;
    walkWKB(wkb, writer);
    return std::move(writer.text);
}

std::vector<std::byte> wkbFromGeoJSON(std::string_view text) {
    const Json document = parsed(text);
    WKBWriter writer;
    writer.geometry(geometryIn(Node(document, "")), 0);
    return std::move(writer.bytes);
}

}  // namespace mezalith::host
