// SPDX-License-Identifier: MIT
#include <mezalith/geometry/wkb_builder.hpp>
#include <mezalith/geometry/wkb_bytes.hpp>

namespace mezalith {

template <typename Value>
void MzWKBBuilder::append(const Value& value) {
    const std::size_t size = bytes_.size();
    bytes_.resize(size + sizeof value);
    std::byte* cursor = bytes_.data() + size;
    detail::store(&cursor, value);
}

void MzWKBBuilder::open(bool isCounted) {
    if (!open_.empty()) ++open_.back().count;
    open_.push_back({bytes_.size(), 0, isCounted});
    if (isCounted) append(std::uint32_t{0});
}

void MzWKBBuilder::begin(std::uint32_t type) {
    append(std::uint8_t{1});
    append(type);
    open(type != MzGeometryTypePoint);
}

void MzWKBBuilder::beginRing() { open(true); }

void MzWKBBuilder::add(MzPoint point) {
    append(point);
    ++open_.back().count;
}

void MzWKBBuilder::end() {
    const Open closed = open_.back();
    open_.pop_back();
    if (!closed.isCounted) return;
    std::byte* cursor = bytes_.data() + closed.offset;
    detail::store(&cursor, closed.count);
}

}  // namespace mezalith
