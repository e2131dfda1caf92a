// SPDX-License-Identifier: MIT
#include <mezalith/geometry/wkt_reader.hpp>
#include <mezalith/geometry/wkt_writer.hpp>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

// Reads any text; what could be read is written, and to read that again gives the same text.

namespace mezalith {
namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

void fuzz(std::string_view text) {
    const MzWKTReading reading = MzReadWKT(text);
    if (!reading) return require(reading.error.offset <= text.size());
    const std::string written = MzWKTOfGeometry(*reading.geometry.record());
    const MzWKTReading again = MzReadWKT(written);
    require(static_cast<bool>(again));
    require(again.geometry.size() == reading.geometry.size());
    require(MzWKTOfGeometry(*again.geometry.record()) == written);
}

}  // namespace
}  // namespace mezalith

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mezalith::fuzz({reinterpret_cast<const char*>(data), size});
    return 0;
}
