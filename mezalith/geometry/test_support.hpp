// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/clipping/clipping_region.hpp>
#include <mezalith/geometry/affine_transform.hpp>
#include <mezalith/geometry/records.hpp>
#include <mezalith/geometry/wkb.hpp>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

// What the tests of geometries share: WKB put together by hand, records with an owner, clipping
// regions, files.

namespace mezalith::test {

using Bytes = std::vector<std::byte>;
using Points = std::vector<MzPoint>;
using Rings = std::vector<Points>;

inline constexpr std::uint8_t kBig = 0;
inline constexpr std::uint8_t kLittle = 1;
inline constexpr std::uint8_t kOdd = 7;  // little-endian as well

/// Writes WKB in the byte order of the latest element.
class WkbWriter {
  public:
    WkbWriter& element(std::uint8_t order, std::uint32_t type) {
        order_ = order;
        bytes_.push_back(std::byte{order});
        return integer(type);
    }
    WkbWriter& integer(std::uint32_t value) {
        return put(order_ == kBig ? __builtin_bswap32(value) : value);
    }
    WkbWriter& number(double value) {
        const auto bits = std::bit_cast<std::uint64_t>(value);
        return put(order_ == kBig ? __builtin_bswap64(bits) : bits);
    }
    WkbWriter& pairs(std::span<const MzPoint> points) {
        for (const MzPoint p : points) number(p.x).number(p.y);
        return *this;
    }
    WkbWriter& countedPairs(std::span<const MzPoint> points) {
        return integer(static_cast<std::uint32_t>(points.size())).pairs(points);
    }
    WkbWriter& point(std::uint8_t order, MzPoint p) { return element(order, 1).pairs({&p, 1}); }
    WkbWriter& lineString(std::uint8_t order, const Points& points) {
        return element(order, 2).countedPairs(points);
    }
    WkbWriter& polygon(std::uint8_t order, const Rings& rings) {
        element(order, 3).integer(static_cast<std::uint32_t>(rings.size()));
        for (const Points& ring : rings) countedPairs(ring);
        return *this;
    }
    /// The head of a multi element, to be followed by its members.
    WkbWriter& multi(std::uint8_t order, std::uint32_t type, std::uint32_t members) {
        return element(order, type).integer(members);
    }

    const Bytes& bytes() const { return bytes_; }
    const std::byte* data() const { return bytes_.data(); }

  private:
    template <typename Word>
    WkbWriter& put(Word word) {
        bytes_.resize(bytes_.size() + sizeof word);
        std::memcpy(bytes_.data() + bytes_.size() - sizeof word, &word, sizeof word);
        return *this;
    }

    Bytes bytes_;
    std::uint8_t order_ = kLittle;
};

template <typename Record>
Record recordOf(Points& points) {
    return {static_cast<std::uint32_t>(points.size()), points.data()};
}

/// A polygon record and its arrays.
class OwnedPolygon {
  public:
    explicit OwnedPolygon(Rings rings) : points_(std::move(rings)) {
        for (Points& ring : points_) rings_.push_back(recordOf<MzLinearRing>(ring));
    }
    OwnedPolygon(OwnedPolygon&&) = default;

    MzPolygon record() { return {static_cast<std::uint32_t>(rings_.size()), rings_.data()}; }
    std::vector<MzLinearRing>& rings() { return rings_; }

  private:
    Rings points_;
    std::vector<MzLinearRing> rings_;
};

/// A multi-polygon record and its arrays.
class OwnedMultiPolygon {
  public:
    explicit OwnedMultiPolygon(const std::vector<Rings>& polygons) {
        for (const Rings& rings : polygons) owned_.emplace_back(rings);
        for (OwnedPolygon& polygon : owned_) polygons_.push_back(polygon.record());
    }

    MzMultiPolygon record() {
        return {static_cast<std::uint32_t>(polygons_.size()), polygons_.data()};
    }
    std::vector<MzPolygon>& polygons() { return polygons_; }

  private:
    std::vector<OwnedPolygon> owned_;
    std::vector<MzPolygon> polygons_;
};

inline Points square(double x, double y, double size) {
    return {{x, y}, {x + size, y}, {x + size, y + size}, {x, y + size}, {x, y}};
}

inline Bytes bytesOf(std::initializer_list<int> values) {
    Bytes bytes;
    for (const int value : values) bytes.push_back(static_cast<std::byte>(value));
    return bytes;
}

/// Zero-filled room for records.
template <typename Record>
class Room {
  public:
    explicit Room(std::size_t bytes) : words_((bytes + 7) / 8) {}
    Record* record() { return reinterpret_cast<Record*>(words_.data()); }
    std::byte* at(std::size_t offset) {
        return reinterpret_cast<std::byte*>(words_.data()) + offset;
    }

  private:
    std::vector<std::uint64_t> words_;
};

/// The bits of coordinates, for laws about any of them.
using PointBits = std::vector<std::pair<std::uint64_t, std::uint64_t>>;

inline Points pointsOfBits(const PointBits& bits) {
    Points points;
    for (const auto& [x, y] : bits) {
        points.push_back({std::bit_cast<double>(x), std::bit_cast<double>(y)});
    }
    return points;
}

/// Equal bit for bit, NaNs and signs of zeros included.
inline bool sameBits(std::span<const MzPoint> a, std::span<const MzPoint> b) {
    return std::ranges::equal(std::as_bytes(a), std::as_bytes(b));
}

/// A region that keeps every vertex in `rect` and doubles the coordinates.
inline MzClippingRegion doublingRegion(MzRect rect) {
    auto transform = MzAffineTransform::transform();
    transform->scaleBy(2);
    MzClippingRegion region;
    region.setClippingRect(rect);
    region.setTransform(std::move(transform));
    return region;
}

/// All files in `folder` that end in .wkb, by name.
inline std::vector<std::filesystem::path> wkbFiles(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".wkb") files.push_back(entry.path());
    }
    std::ranges::sort(files);
    return files;
}

inline Bytes readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace mezalith::test
