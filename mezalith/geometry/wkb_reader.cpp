// SPDX-License-Identifier: MIT
#include <mezalith/geometry/wkb_bytes.hpp>
#include <mezalith/geometry/wkb_reader.hpp>

#include <string>
#include <utility>

namespace mezalith {
namespace {

using namespace detail;

/// A position in bytes that may end anywhere, and the first thing that was wrong with them.
class Input {
  public:
    Input(std::span<const std::byte> bytes, std::size_t at) : bytes_(bytes), at_(at) {}

    std::size_t at() const { return at_; }
    std::size_t left() const { return bytes_.size() - at_; }

    /// Null when there are fewer, which `what` then names.
    const std::byte* take(std::size_t bytes, const char* what) {
        if (bytes > left()) return missing(what);
        const std::byte* taken = bytes_.data() + at_;
        at_ += bytes;
        return taken;
    }

    /// Always false.
    [[gnu::noinline]] bool fail(std::size_t offset, std::string expected, std::string found) {
        error = {offset, std::move(expected), std::move(found)};
        return false;
    }

    MzReadError error;

  private:
    // Apart from what is read all the time.
    [[gnu::noinline]] const std::byte* missing(const char* what) {
        fail(bytes_.size(), what, "the end of the bytes");
        return nullptr;
    }

    std::span<const std::byte> bytes_;
    std::size_t at_;
};

/// The beginning of an element.
struct Head {
    std::uint32_t code = 0;  ///< as it stands in the bytes
    std::uint32_t type = 0;
    int order = wkbLittleEndian;
    bool hasZ = false;
    bool hasM = false;
    std::optional<std::int32_t> srid;

    std::size_t positionBytes() const {
        return kPairBytes + (hasZ ? sizeof(double) : 0) + (hasM ? sizeof(double) : 0);
    }
    bool isEWKB() const { return (code & kEWKBFlags) != 0; }
    bool isISO() const { return !isEWKB() && code > 1000; }

    static constexpr std::uint32_t kEWKBFlags = kEWKBZ | kEWKBM | kEWKBSRID;
};

std::string namedType(std::uint32_t type) {
    return type == 0 ? "a geometry" : "a " + std::string(MzGeometryTypeName(type));
}

/// Takes a type code apart; false for what is none.
bool readCode(std::uint32_t code, Head& head) {
    const std::uint32_t plain = code & ~Head::kEWKBFlags;
    const std::uint32_t dimensions = plain / 1000;
    head.type = plain % 1000;
    head.hasZ = (code & kEWKBZ) != 0 || dimensions == 1 || dimensions == 3;
    head.hasM = (code & kEWKBM) != 0 || dimensions == 2 || dimensions == 3;
    return dimensions <= 3 && head.type >= MzGeometryTypePoint &&
           head.type <= MzGeometryTypeGeometryCollection;
}

/// Reads the rest of a head whose code is not just the type that is wanted.
[[gnu::noinline]] bool readRarerHead(Input& input, Head& head, std::uint32_t wanted) {
    const std::size_t offset = input.at() - sizeof(std::uint32_t);
    if (!readCode(head.code, head)) {
        return input.fail(offset, namedType(wanted), "type code " + std::to_string(head.code));
    }
    if (wanted != 0 && head.type != wanted) {
        return input.fail(offset, namedType(wanted), namedType(head.type));
    }
    if ((head.code & kEWKBSRID) == 0) return true;
    const std::byte* srid = input.take(sizeof(std::uint32_t), "an SRID");
    if (srid != nullptr) head.srid = static_cast<std::int32_t>(loadInt(srid, head.order));
    return srid != nullptr;
}

bool readHead(Input& input, Head& head, std::uint32_t wanted) {
    const std::byte* bytes = input.take(kHeaderBytes, "the byte order and type of a geometry");
    if (bytes == nullptr) return false;
    head.order = orderOfElement(bytes);
    head.code = loadInt(bytes + 1, head.order);
    if (wanted == 0 || head.code != wanted) return readRarerHead(input, head, wanted);
    head.type = wanted;
    return true;
}

/// Always false.
[[gnu::noinline]] bool refuseCount(Input& input, std::uint32_t count, std::size_t least,
                                   const char* what) {
    return input.fail(input.at() - sizeof count,
                      "at most " + std::to_string(input.left() / least) + " " + what + " in the " +
                          std::to_string(input.left()) + " bytes that follow",
                      std::to_string(count));
}

/// Reads a count of things that take at least `least` bytes each.
bool readCount(Input& input, const Head& head, std::size_t least, const char* what,
               std::uint32_t& count) {
    const std::byte* bytes = input.take(sizeof count, "a count");
    if (bytes == nullptr) return false;
    count = loadInt(bytes, head.order);
    return count * least <= input.left() || refuseCount(input, count, least, what);
}

/// Walks through a geometry. It measures the block that the geometry needs or, when `kFills`, fills
/// one that is large enough; then records are where they are to be filled, otherwise null.
template <bool kFills>
class Walk {
  public:
    Walk(Input& input, std::byte* block) : input_(input), block_(block) {}

    std::size_t used() const { return used_; }
    const Head& outermost() const { return outermost_; }

    bool geometry() {
        auto* record = place<MzGeometryRecord>(1);
        return readHead(input_, outermost_, 0) && body(record, outermost_, 0);
    }

  private:
    template <typename Element>
    Element* place(std::uint32_t count) {
        const std::size_t offset = used_;
        used_ += count * sizeof(Element);
        return kFills ? reinterpret_cast<Element*>(block_ + offset) : nullptr;
    }

    /// Gives the record an array of `count` elements and reads each.
    template <typename Record, typename Element, typename Read>
    bool elements(Record* record, Element* Record::*array, std::uint32_t count, const Read& read) {
        auto* element = place<Element>(count);
        if constexpr (kFills) {
            record->count = count;
            record->*array = element;
        }
        for (std::uint32_t i = 0; i < count; ++i) {
            if (!read(kFills ? element + i : nullptr)) return false;
        }
        return true;
    }

    bool position(MzPoint* output, const Head& head) {
        const std::byte* from = input_.take(head.positionBytes(), "the coordinates of a point");
        if (from == nullptr) return false;
        if constexpr (kFills) loadPairs(from, 1, output, head.order);
        return true;
    }

    /// The positions that a count precedes.
    template <typename Record>
    bool positions(Record* record, const Head& head) {
        std::uint32_t count = 0;
        if (!readCount(input_, head, head.positionBytes(), "points", count)) return false;
        const std::byte* from = input_.take(count * head.positionBytes(), "points");
        auto* points = place<MzPoint>(count);
        if constexpr (kFills) {
            record->count = count;
            record->points = points;
            load(from, points, count, head);
        }
        return true;
    }

    static void load(const std::byte* from, MzPoint* points, std::uint32_t count,
                     const Head& head) {
        const std::size_t step = head.positionBytes();
        if (step == kPairBytes) return loadPairs(from, count, points, head.order);
        for (std::uint32_t i = 0; i < count; ++i) {
            loadPairs(from + i * step, 1, points + i, head.order);
        }
    }

    template <typename Record>
    bool rings(Record* record, const Head& head) {
        std::uint32_t count = 0;
        return readCount(input_, head, kRingBytes, "rings", count) &&
               elements(record, &Record::rings, count,
                        [&](MzLinearRing* ring) { return positions(ring, head); });
    }

    /// The members of a multi-geometry.
    template <typename Element, typename Read>
    bool members(MzGeometryRecord* record, Element* MzGeometryRecord::*array, const Head& head,
                 const Read& read) {
        const std::uint32_t wanted = MzMemberTypeOf(head.type);
        const std::size_t least = wanted == MzGeometryTypePoint ? kPointBytes : kElementBytes;
        std::uint32_t count = 0;
        return readCount(input_, head, least, "members", count) &&
               elements(record, array, count, [&](Element* element) {
                   Head own;
                   return readHead(input_, own, wanted) && read(element, own);
               });
    }

    bool body(MzGeometryRecord* record, const Head& head, unsigned depth) {
        using Record = MzGeometryRecord;
        if constexpr (kFills) record->type = head.type;
        switch (head.type) {
            case MzGeometryTypePoint:
                return elements(record, &Record::points, 1,
                                [&](MzPoint* point) { return position(point, head); });
            case MzGeometryTypeLineString:
                return positions(record, head);
            case MzGeometryTypePolygon:
                return rings(record, head);
            case MzGeometryTypeMultiPoint:
                return members(record, &Record::points, head, [&](MzPoint* point, const Head& own) {
                    return position(point, own);
                });
            case MzGeometryTypeMultiLineString:
                return members(
                    record, &Record::lineStrings, head,
                    [&](MzLineString* line, const Head& own) { return positions(line, own); });
            case MzGeometryTypeMultiPolygon:
                return members(
                    record, &Record::polygons, head,
                    [&](MzPolygon* polygon, const Head& own) { return rings(polygon, own); });
            default:
                return collection(record, head, depth);
        }
    }

    bool collection(MzGeometryRecord* record, const Head& head, unsigned depth) {
        if (depth == MzDeepestCollection) {
            return input_.fail(
                input_.at() - kHeaderBytes,
                "at most " + std::to_string(MzDeepestCollection) + " collections in each other",
                "one more");
        }
        return members(record, &MzGeometryRecord::members, head,
                       [&](MzGeometryRecord* member, const Head& own) {
                           return body(member, own, depth + 1);
                       });
    }

    Input& input_;
    std::byte* block_;
    std::size_t used_ = 0;
    Head outermost_;
};

bool isGeoPackage(std::span<const std::byte> bytes) {
    return bytes.size() >= 2 && bytes[0] == std::byte{'G'} && bytes[1] == std::byte{'P'};
}

/// Takes the header before the geometry and notes its SRID.
bool readGeoPackageHeader(Input& input, std::optional<std::int32_t>& srid) {
    const std::byte* header = input.take(kGeoPackageBytes, "the header of a GeoPackage's geometry");
    if (header == nullptr) return false;
    const auto version = std::to_integer<unsigned>(header[2]);
    const auto flags = std::to_integer<unsigned>(header[3]);
    const unsigned kind = flags >> 1U & 7U;
    if (version != 0) return input.fail(2, "version 0", std::to_string(version));
    if ((flags & kGeoPackageExtended) != 0) {
        return input.fail(3, "a standard geometry", "an extended one");
    }
    if (kind >= kEnvelopeBytes.size()) {
        return input.fail(3, "an envelope of kind 0 to 4", std::to_string(kind));
    }
    const int order = (flags & 1U) != 0 ? wkbLittleEndian : wkbBigEndian;
    srid = static_cast<std::int32_t>(loadInt(header + 4, order));
    return input.take(kEnvelopeBytes[kind], "an envelope") != nullptr;
}

MzWKBForm formOf(const Head& head) {
    if (head.isEWKB()) return MzWKBForm::EWKB;
    return head.isISO() ? MzWKBForm::ISO : MzWKBForm::WKB;
}

/// Everything but the geometry; false when there is an error.
bool describe(Input& input, const Head& head, MzTrailingBytes trailing, MzWKBReading& reading) {
    reading.isLittleEndian = head.order == wkbLittleEndian;
    reading.hasZ = head.hasZ;
    reading.hasM = head.hasM;
    if (reading.form != MzWKBForm::GeoPackage) {
        reading.form = formOf(head);
        reading.srid = head.srid;
    }
    reading.length = input.at();
    if (input.left() == 0 || trailing == MzTrailingBytes::Allowed) return true;
    return input.fail(input.at(), "the end of the bytes", std::to_string(input.left()) + " more");
}

/// A block that a plain geometry fits into, where its type and count tell; otherwise 0. It has at
/// most the bytes to spare that rings and lines have for their own heads and counts: where the
/// bytes end too early, points may stand in their place.
std::size_t sizeAtFirstSight(std::span<const std::byte> bytes) {
    if (bytes.size() < kElementBytes) return 0;
    const int order = orderOfElement(bytes.data());
    const std::size_t count = loadInt(bytes.data() + kHeaderBytes, order);
    const std::size_t rest = bytes.size() - kElementBytes;
    const std::uint32_t type = loadInt(bytes.data() + 1, order);
    if (type == MzGeometryTypePoint) return sizeof(MzGeometryRecord) + sizeof(MzPoint);
    if (count > rest / kRingBytes) return 0;
    // An array of points, of rings or of lines.
    const std::size_t size = sizeof(MzGeometryRecord) + count * sizeof(MzPoint);
    switch (type) {
        case MzGeometryTypeLineString:
        case MzGeometryTypeMultiPoint:
            return size;
        case MzGeometryTypePolygon:
        case MzGeometryTypeMultiLineString:
            return size + rest;
        default:
            return 0;
    }
}

/// The reading without a geometry.
MzWKBReading refused(MzWKBReading reading, MzReadError error) {
    reading.error = std::move(error);
    return reading;
}

}  // namespace

MzWKBReading MzReadWKB(std::span<const std::byte> bytes, MzTrailingBytes trailing) {
    MzWKBReading reading;
    Input input(bytes, 0);
    if (isGeoPackage(bytes)) {
        reading.form = MzWKBForm::GeoPackage;
        if (!readGeoPackageHeader(input, reading.srid)) {
            return refused(std::move(reading), std::move(input.error));
        }
    }
    std::size_t size = 0;
    if (trailing == MzTrailingBytes::Refused) size = sizeAtFirstSight(bytes.subspan(input.at()));
    if (size == 0) {
        Input ahead = input;
        Walk<false> measuring(ahead, nullptr);
        if (!measuring.geometry()) return refused(std::move(reading), std::move(ahead.error));
        size = measuring.used();
    }
    MzGeometryBlock block(size);
    Walk<true> filling(input, block.data());
    if (!filling.geometry() || !describe(input, filling.outermost(), trailing, reading)) {
        return refused(std::move(reading), std::move(input.error));
    }
    reading.geometry = std::move(block);
    return reading;
}

}  // namespace mezalith
