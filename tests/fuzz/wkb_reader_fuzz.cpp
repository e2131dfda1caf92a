// SPDX-License-Identifier: MIT
#include <mezalith/geometry/wkb_reader.hpp>
#include <mezalith/geometry/wkb_writer.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <vector>

// Reads any bytes; what could be read is written in every form and order, and to read that again
// and to write it as before is the identity.

namespace mezalith {
namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

void roundTrip(const MzGeometryRecord& geometry, const MzWKBOptions& options) {
    const std::vector<std::byte> plain = MzWKBOfGeometry(geometry);
    const std::vector<std::byte> bytes = MzWKBOfGeometry(geometry, options);
    require(!bytes.empty() && bytes.size() == MzWKBSize(geometry, options));
    const MzWKBReading again = MzReadWKB(bytes);
    require(static_cast<bool>(again));
    require(again.length == bytes.size() && again.isLittleEndian == options.isLittleEndian);
    require(MzWKBOfGeometry(*again.geometry.record()) == plain);
    require(MzWKBOfGeometry(*again.geometry.record(), options) == bytes);
}

void fuzz(std::span<const std::byte> bytes) {
    const MzWKBReading strict = MzReadWKB(bytes);
    const MzWKBReading reading = MzReadWKB(bytes, MzTrailingBytes::Allowed);
    if (!reading) {
        require(!strict && reading.error.offset <= bytes.size());
        return;
    }
    require(static_cast<bool>(strict) == (reading.length == bytes.size()));
    for (const auto form : {MzWKBForm::WKB, MzWKBForm::EWKB, MzWKBForm::GeoPackage}) {
        for (const bool isLittle : {false, true}) {
            roundTrip(*reading.geometry.record(), {form, isLittle, reading.srid});
        }
    }
}

}  // namespace
}  // namespace mezalith

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mezalith::fuzz(std::as_bytes(std::span(data, size)));
    return 0;
}
