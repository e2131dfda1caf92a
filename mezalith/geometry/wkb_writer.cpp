// SPDX-License-Identifier: MIT
#include <mezalith/geometry/wkb_bytes.hpp>
#include <mezalith/geometry/wkb_writer.hpp>

#include <algorithm>
#include <cmath>
#include <limits>

namespace mezalith {
namespace {

using namespace detail;

constexpr MzPoint kNowhere{std::numeric_limits<double>::quiet_NaN(),
                           std::numeric_limits<double>::quiet_NaN()};

// --- sizes; 0 for what cannot be written

template <typename Record>
std::size_t sizeOfRun(const Record& record) {
    return sizeof(std::uint32_t) + pointsOf(&record).size_bytes();
}

std::size_t sizeOfElement(const MzLineString& line) { return kHeaderBytes + sizeOfRun(line); }

std::size_t sizeOfElement(const MzPolygon& polygon) {
    std::size_t size = kElementBytes;
    for (const MzLinearRing& ring : ringsOf(&polygon)) size += sizeOfRun(ring);
    return size;
}

template <typename Elements>
std::size_t sizeOfElements(const Elements& elements) {
    std::size_t size = kElementBytes;
    for (const auto& element : elements) size += sizeOfElement(element);
    return size;
}

std::size_t sizeOf(const MzGeometryRecord& geometry, unsigned depth);

std::size_t sizeOfCollection(const MzGeometryRecord& geometry, unsigned depth) {
    if (depth == MzDeepestCollection) return 0;
    std::size_t size = kElementBytes;
    for (const MzGeometryRecord& member : membersOf(&geometry)) {
        const std::size_t own = sizeOf(member, depth + 1);
        if (own == 0) return 0;
        size += own;
    }
    return size;
}

std::size_t sizeOf(const MzGeometryRecord& geometry, unsigned depth) {
    const MzMultiLineString lines = multiLineStringOf(geometry);
    const MzMultiPolygon polygons = multiPolygonOf(geometry);
    switch (geometry.type) {
        case MzGeometryTypePoint:
            return kPointBytes;
        case MzGeometryTypeLineString:
            return sizeOfElement(lineStringOf(geometry));
        case MzGeometryTypePolygon:
            return sizeOfElement(polygonOf(geometry));
        case MzGeometryTypeMultiPoint:
            return kElementBytes + pointsOf(&geometry).size() * kPointBytes;
        case MzGeometryTypeMultiLineString:
            return sizeOfElements(lineStringsOf(&lines));
        case MzGeometryTypeMultiPolygon:
            return sizeOfElements(polygonsOf(&polygons));
        case MzGeometryTypeGeometryCollection:
            return sizeOfCollection(geometry, depth);
        default:
            return 0;
    }
}

/// The envelope of a GeoPackage's header, where it has one.
std::optional<MzCorners> envelopeOf(const MzGeometryRecord& geometry) {
    const auto corners = MzCornersOfGeometry(geometry);
    const bool isFinite = corners && std::isfinite(corners->low.x) &&
                          std::isfinite(corners->low.y) && std::isfinite(corners->high.x) &&
                          std::isfinite(corners->high.y);
    return isFinite && geometry.type != MzGeometryTypePoint ? corners : std::nullopt;
}

/// Bytes before the geometry's own header and within it.
std::size_t sizeOfExtras(const MzGeometryRecord& geometry, const MzWKBOptions& options) {
    switch (options.form) {
        case MzWKBForm::EWKB:
            return options.srid ? sizeof(std::int32_t) : 0;
        case MzWKBForm::GeoPackage:
            return kGeoPackageBytes + (envelopeOf(geometry) ? kEnvelopeBytes[1] : 0);
        default:
            return 0;
    }
}

// --- bytes

/// Writes into room that was measured.
class Output {
  public:
    Output(std::byte* to, bool isLittleEndian)
        : cursor_(to), order_(isLittleEndian ? wkbLittleEndian : wkbBigEndian) {}

    void geoPackageHeader(const MzGeometryRecord& geometry, std::int32_t srid) {
        const auto envelope = envelopeOf(geometry);
        const bool isEmpty = !MzCornersOfGeometry(geometry);
        const unsigned flags = unsigned{order_ == wkbLittleEndian} | (envelope ? 2U : 0U) |
                               (isEmpty ? kGeoPackageEmpty : 0U);
        for (const unsigned byte : {unsigned{'G'}, unsigned{'P'}, 0U, flags}) {
            store(&cursor_, static_cast<std::uint8_t>(byte));
        }
        integer(static_cast<std::uint32_t>(srid));
        if (!envelope) return;
        const MzPoint x{envelope->low.x, envelope->high.x};
        const MzPoint y{envelope->low.y, envelope->high.y};
        pairs({&x, 1});
        pairs({&y, 1});
    }

    void header(std::uint32_t type, std::optional<std::int32_t> srid = {}) {
        store(&cursor_, static_cast<std::uint8_t>(order_ == wkbLittleEndian));
        integer(srid ? type | kEWKBSRID : type);
        if (srid) integer(static_cast<std::uint32_t>(*srid));
    }

    void body(const MzGeometryRecord& geometry) {
        const MzMultiLineString lines = multiLineStringOf(geometry);
        const MzMultiPolygon polygons = multiPolygonOf(geometry);
        switch (geometry.type) {
            case MzGeometryTypePoint:
                return pairs(geometry.points == nullptr ? std::span(&kNowhere, 1)
                                                        : std::span(geometry.points, 1));
            case MzGeometryTypeLineString:
                return run(geometry);
            case MzGeometryTypePolygon:
                return rings(polygonOf(geometry));
            case MzGeometryTypeMultiPoint:
                return points(pointsOf(&geometry));
            case MzGeometryTypeMultiLineString:
                count(lineStringsOf(&lines));
                for (const MzLineString& line : lineStringsOf(&lines)) {
                    header(MzGeometryTypeLineString);
                    run(line);
                }
                return;
            case MzGeometryTypeMultiPolygon:
                count(polygonsOf(&polygons));
                for (const MzPolygon& polygon : polygonsOf(&polygons)) {
                    header(MzGeometryTypePolygon);
                    rings(polygon);
                }
                return;
            default:
                return members(membersOf(&geometry));
        }
    }

  private:
    void integer(std::uint32_t value) {
        store(&cursor_, order_ == wkbBigEndian ? __builtin_bswap32(value) : value);
    }

    template <typename Elements>
    void count(const Elements& elements) {
        integer(static_cast<std::uint32_t>(elements.size()));
    }

    void pairs(std::span<const MzPoint> points) {
        if (points.empty()) return;
        copyPairs(std::as_bytes(points).data(), points.size(), cursor_, order_);
        cursor_ += points.size_bytes();
    }

    template <typename Record>
    void run(const Record& record) {
        count(pointsOf(&record));
        pairs(pointsOf(&record));
    }

    void rings(const MzPolygon& polygon) {
        count(ringsOf(&polygon));
        for (const MzLinearRing& ring : ringsOf(&polygon)) run(ring);
    }

    void points(std::span<const MzPoint> points) {
        count(points);
        for (const MzPoint& point : points) {
            header(MzGeometryTypePoint);
            pairs({&point, 1});
        }
    }

    void members(std::span<const MzGeometryRecord> members) {
        count(members);
        for (const MzGeometryRecord& member : members) {
            header(member.type);
            body(member);
        }
    }

    std::byte* cursor_;
    int order_;
};

void write(const MzGeometryRecord& geometry, const MzWKBOptions& options, std::byte* to) {
    Output output(to, options.isLittleEndian);
    const bool isEWKB = options.form == MzWKBForm::EWKB;
    if (options.form == MzWKBForm::GeoPackage) {
        output.geoPackageHeader(geometry, options.srid.value_or(0));
    }
    output.header(geometry.type, isEWKB ? options.srid : std::nullopt);
    output.body(geometry);
}

}  // namespace

std::size_t MzWKBSize(const MzGeometryRecord& geometry, const MzWKBOptions& options) {
    const std::size_t size = sizeOf(geometry, 0);
    return size == 0 ? 0 : size + sizeOfExtras(geometry, options);
}

bool MzWriteWKB(const MzGeometryRecord& geometry, const MzWKBOptions& options,
                std::span<std::byte> output) {
    const std::size_t size = MzWKBSize(geometry, options);
    if (size == 0 || size != output.size()) return false;
    write(geometry, options, output.data());
    return true;
}

std::vector<std::byte> MzWKBOfGeometry(const MzGeometryRecord& geometry,
                                       const MzWKBOptions& options) {
    std::vector<std::byte> bytes(MzWKBSize(geometry, options));
    if (!bytes.empty()) write(geometry, options, bytes.data());
    return bytes;
}

}  // namespace mezalith
