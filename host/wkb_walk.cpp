// SPDX-License-Identifier: MIT
#include "host/wkb_walk.hpp"

#include "host/failure.hpp"
#include <mezalith/geometry/line_string_geometry.hpp>
#include <mezalith/geometry/multi_point_geometry.hpp>

#include <array>
#include <string>

namespace mezalith::host {
namespace {

constexpr int kDeepest = 32;
constexpr std::size_t kPairBytes = 16;
constexpr std::size_t kCountBytes = 4;
constexpr std::size_t kHeaderBytes = 5;

constexpr std::array<std::string_view, 8> kTypeNames{
    "",           "Point",           "LineString",   "Polygon",
    "MultiPoint", "MultiLineString", "MultiPolygon", "GeometryCollection"};

/// What the members of a type must be; 0 for any type, and for types without members.
constexpr std::array<std::uint32_t, 8> kMemberTypes{0, 0, 0, 0, 1, 2, 3, 0};

class Walker {
  public:
    Walker(std::span<const std::byte> bytes, WKBVisitor& visitor)
        : bytes_(bytes), visitor_(visitor) {}

    std::size_t walk() {
        geometry(0, 0);
        return at_;
    }

  private:
    [[noreturn]] static void fail(std::size_t at, const std::string& why) {
        throw Failure("byte " + std::to_string(at), why);
    }

    std::size_t left() const { return bytes_.size() - at_; }
    const std::byte* here() const { return bytes_.data() + at_; }

    void need(std::size_t count, const char* what) const {
        if (left() < count) fail(bytes_.size(), std::string("the bytes end before ") + what);
    }

    std::uint32_t popCount(int order, std::size_t leastBytes, const char* what) {
        need(kCountBytes, "a count");
        const std::uint32_t count = getInt(here(), order);
        at_ += kCountBytes;
        if (count > left() / leastBytes) {
            fail(at_ - kCountBytes, std::to_string(count) + " " + what + " do not fit into the " +
                                        std::to_string(left()) + " bytes that follow");
        }
        return count;
    }

    void popPoints(std::uint32_t count, int order) {
        run_.resize(count);
        const std::byte* cursor = here();
        pointToMzPoint(&cursor, count, run_.data(), order);
        at_ += count * kPairBytes;
        visitor_.points(run_);
    }

    std::uint32_t popType(int order, std::uint32_t wanted) {
        const std::uint32_t type = getInt(here(), order);
        if (type == 0 || type >= kTypeNames.size()) {
            fail(at_, "geometry type " + std::to_string(type) + " is none of 1 to 7");
        }
        if (wanted != 0 && type != wanted) {
            fail(at_, "a " + std::string(kTypeNames[type]) + " stands where a " +
                          std::string(kTypeNames[wanted]) + " belongs");
        }
        at_ += kHeaderBytes - 1;
        return type;
    }

    void geometry(std::uint32_t wanted, int depth) {
        const std::size_t offset = at_;
        if (depth > kDeepest) fail(at_, "collections are nested too deeply");
        need(kHeaderBytes, "the header of a geometry");
        const int order = *here() == std::byte{0} ? wkbBigEndian : wkbLittleEndian;
        at_ += 1;
        const std::uint32_t type = popType(order, wanted);
        body({type, 1, offset, order == wkbLittleEndian}, order, depth);
        visitor_.end(at_);
    }

    void body(WKBVisitor::Header header, int order, int depth) {
        switch (header.type) {
            case MzGeometryTypePoint:
                need(kPairBytes, "the coordinates of a point");
                visitor_.begin(header);
                return popPoints(1, order);
            case MzGeometryTypeLineString:
                header.count = popCount(order, kPairBytes, "points");
                visitor_.begin(header);
                return popPoints(header.count, order);
            case MzGeometryTypePolygon:
                return rings(header, order);
            default:
                return members(header, order, depth);
        }
    }

    void rings(WKBVisitor::Header header, int order) {
        header.count = popCount(order, kCountBytes, "rings");
        visitor_.begin(header);
        for (std::uint32_t i = 0; i < header.count; ++i) {
            popPoints(popCount(order, kPairBytes, "points"), order);
        }
    }

    void members(WKBVisitor::Header header, int order, int depth) {
        const std::uint32_t wanted = kMemberTypes[header.type];
        const std::size_t least =
            kHeaderBytes + (wanted == MzGeometryTypePoint ? kPairBytes : kCountBytes);
        header.count = popCount(order, least, "members");
        visitor_.begin(header);
        for (std::uint32_t i = 0; i < header.count; ++i) geometry(wanted, depth + 1);
    }

    std::span<const std::byte> bytes_;
    std::size_t at_ = 0;
    WKBVisitor& visitor_;
    std::vector<MzPoint> run_;
};

class Surveyor final : public WKBVisitor {
  public:
    void begin(const Header& header) override {
        if (open_.empty()) {
            survey.type = header.type;
            survey.littleEndian = header.littleEndian;
        }
        if (header.type <= MzGeometryTypePolygon) ++survey.parts;
        if (header.type == MzGeometryTypePolygon) survey.rings += header.count;
        open_.push_back(header);
    }

    void points(std::span<const MzPoint> run) override {
        survey.vertices += run.size();
        survey.bounds.add(run);
    }

    void end(std::size_t offset) override {
        const Header header = open_.back();
        open_.pop_back();
        if (isElement(header.type)) {
            survey.elements.push_back({header.type, header.offset, offset - header.offset});
        }
    }

    WKBSurvey survey;

  private:
    static bool holdsElements(std::uint32_t type) {
        return type == kGeometryCollection || type == MzGeometryTypeMultiLineString;
    }

    bool isElement(std::uint32_t type) const {
        return !holdsElements(type) && (open_.empty() || holdsElements(open_.back().type));
    }

    std::vector<Header> open_;
};

std::shared_ptr<MzGeometry> polyline(const std::shared_ptr<MzGeometry>& lineString) {
    const auto* line = static_cast<const MzLineStringGeometry*>(lineString.get());
    const MzLineString* record = line->lineStringGeometry();
    return MzMultiPointGeometry::initWithMultiPoint({record->count, record->points});
}

Part partOfElement(std::span<const std::byte> bytes, std::uint32_t type) {
    const auto geometry = MzGeometry::geometryWithWKBData(bytes);
    if (geometry == nullptr) return {Form::Points, nullptr};
    switch (type) {
        case MzGeometryTypeLineString:
            return {Form::Line, polyline(geometry)};
        case MzGeometryTypePolygon:
        case MzGeometryTypeMultiPolygon:
            return {Form::Area, geometry};
        default:
            return {Form::Points, geometry};
    }
}

}  // namespace

WKBVisitor::~WKBVisitor() = default;

std::string_view geometryTypeName(std::uint32_t type) {
    return type < kTypeNames.size() ? kTypeNames[type] : std::string_view{};
}

std::uint32_t geometryTypeNamed(std::string_view name) {
    for (std::uint32_t type = 1; type < kTypeNames.size(); ++type) {
        if (kTypeNames[type] == name) return type;
    }
    return 0;
}

std::size_t walkWKB(std::span<const std::byte> bytes, WKBVisitor& visitor) {
    return Walker(bytes, visitor).walk();
}

WKBSurvey surveyWKB(std::span<const std::byte> bytes) {
    Surveyor surveyor;
    surveyor.survey.bytes = walkWKB(bytes, surveyor);
    return std::move(surveyor.survey);
}

std::vector<Part> partsOfWKB(std::span<const std::byte> bytes, const WKBSurvey& survey) {
    std::vector<Part> parts;
    for (const WKBElement& element : survey.elements) {
        Part part = partOfElement(bytes.subspan(element.offset, element.length), element.type);
        if (part.geometry != nullptr && !part.geometry->leafNodes().empty()) {
            parts.push_back(std::move(part));
        }
    }
    return parts;
}

}  // namespace mezalith::host
