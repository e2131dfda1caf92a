// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/geometry/records.hpp>
#include <mezalith/geometry/wkb.hpp>
#include <mezalith/geometry/wkb_bytes.hpp>

#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace mezalith::detail {

/// Bytes that are taken as they come.
class TrustedBytes {
  public:
    explicit TrustedBytes(wkbCursor cursor) : cursor_(cursor) {}
    const std::byte* take(std::size_t bytes) {
        const std::byte* taken = *cursor_;
        *cursor_ += bytes;
        return taken;
    }
    bool canHold(std::uint32_t, std::size_t) { return true; }

  private:
    wkbCursor cursor_;
};

/// Bytes that may end anywhere and claim anything. Once something does not fit they are at an end.
class CheckedBytes {
  public:
    explicit CheckedBytes(std::span<const std::byte> bytes) : rest_(bytes) {}
    /// Null when there are fewer.
    const std::byte* take(std::size_t bytes) {
        if (bytes > rest_.size()) return fail();
        const std::byte* taken = rest_.data();
        rest_ = rest_.subspan(bytes);
        return taken;
    }
    /// Whether `count` elements of at least `least` bytes fit.
    bool canHold(std::uint32_t count, std::size_t least) {
        const bool fits = count <= rest_.size() / least;
        if (!fits) fail();
        return fits;
    }
    bool heldEverything() const { return !failed_; }

  private:
    const std::byte* fail() {
        rest_ = {};
        failed_ = true;
        return nullptr;
    }

    std::span<const std::byte> rest_;
    bool failed_ = false;
};

/// Leaves the point arrays of rings and line strings to whoever made the records, and puts others
/// at fixed distances behind theirs.
struct DesignatedArrays {
    MzPoint* place(MzLineString& line) const { return line.points; }
    MzPoint* place(MzLinearRing& ring) const { return ring.points; }
    MzPoint* place(MzMultiPoint& points) const { return behind(points, points.points); }
    MzLineString* place(MzMultiLineString& lines) const { return behind(lines, lines.lineStrings); }
    MzPolygon* place(MzMultiPolygon& multi) const { return behind(multi, multi.polygons); }
    /// Settled: 256 bytes behind the polygon's own record.
    MzLinearRing* place(MzPolygon& polygon) const { return behind(polygon, polygon.rings, 256); }

  private:
    template <typename Record, typename Element>
    static Element* behind(Record& record, Element*& array, std::size_t bytes = sizeof(Record)) {
        array = reinterpret_cast<Element*>(reinterpret_cast<std::byte*>(&record) + bytes);
        return array;
    }
};

/// Walks WKB elements, adds up the record bytes they need and, where it is given records, fills
/// them. `Bytes` is what it reads, `Arrays` tells where the array of a record goes once its count
/// is known. All of WKB is read here.
template <typename Bytes, typename Arrays>
class WkbWalk {
  public:
    WkbWalk(Bytes& bytes, Arrays arrays) : bytes_(bytes), arrays_(arrays) {}

    std::size_t pairs(std::uint32_t n, MzPoint* output, int order) {
        const std::byte* from = bytes_.take(n * kPairBytes);
        if (from != nullptr && output != nullptr) loadPairs(from, n, output, order);
        return n * sizeof(MzPoint);
    }

    std::size_t points(std::uint32_t n, MzPoint* output) {
        const std::byte* from = bytes_.take(n * kPointBytes);
        if (from != nullptr && output != nullptr) {
            for (MzPoint* end = output + n; output != end; ++output, from += kPointBytes) {
                loadPairs(from + kHeaderBytes, 1, output, orderOfElement(from));
            }
        }
        return n * sizeof(MzPoint);
    }

    std::size_t rings(std::uint32_t r, MzLinearRing* output, int order) {
        std::size_t size = r * sizeof(MzLinearRing);
        for (std::uint32_t i = 0; i < r; ++i) size += countedPairs(at(output, i), order);
        return size;
    }

    std::size_t lineStrings(std::uint32_t n, MzLineString* output) {
        std::size_t size = n * sizeof(MzLineString);
        for (std::uint32_t i = 0; i < n; ++i) size += countedPairs(at(output, i), header());
        return size;
    }

    std::size_t polygons(std::uint32_t n, MzPolygon* output) {
        std::size_t size = n * sizeof(MzPolygon);
        for (std::uint32_t i = 0; i < n; ++i) {
            const int order = header();
            const std::uint32_t r = count(order, kRingBytes);
            size += rings(r, arrayFor(at(output, i), r), order);
        }
        return size;
    }

    std::size_t multiPoint(MzMultiPoint* output) {
        const std::uint32_t n = count(header(), kPointBytes);
        return sizeof(MzMultiPoint) + points(n, arrayFor(output, n));
    }

    std::size_t multiLineString(MzMultiLineString* output) {
        const std::uint32_t n = count(header(), kElementBytes);
        return sizeof(MzMultiLineString) + lineStrings(n, arrayFor(output, n));
    }

    std::size_t multiPolygon(MzMultiPolygon* output) {
        const std::uint32_t n = count(header(), kElementBytes);
        return sizeof(MzMultiPolygon) + polygons(n, arrayFor(output, n));
    }

  private:
    template <typename Record>
    static Record* at(Record* records, std::uint32_t i) {
        return records == nullptr ? nullptr : records + i;
    }

    /// The byte order of the element whose byte order and type are taken.
    int header() {
        const std::byte* element = bytes_.take(kHeaderBytes);
        return element == nullptr ? wkbLittleEndian : orderOfElement(element);
    }

    /// A count of elements that have at least `least` bytes.
    std::uint32_t count(int order, std::size_t least) {
        const std::byte* from = bytes_.take(sizeof(std::uint32_t));
        const std::uint32_t n = from == nullptr ? 0 : loadInt(from, order);
        return bytes_.canHold(n, least) ? n : 0;
    }

    template <typename Record>
    std::size_t countedPairs(Record* record, int order) {
        const std::uint32_t n = count(order, kPairBytes);
        return pairs(n, arrayFor(record, n), order);
    }

    template <typename Record>
    auto arrayFor(Record* record, std::uint32_t n)
        -> decltype(std::declval<Arrays&>().place(*record)) {
        if (record == nullptr) return nullptr;
        record->count = n;
        return arrays_.place(*record);
    }

    Bytes& bytes_;
    Arrays arrays_;
};

}  // namespace mezalith::detail
