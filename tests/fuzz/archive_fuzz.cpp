// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/json_archive.hpp>
#include <mezalith/platform/json/keyed_archive.hpp>
#include <mezalith/style/style_archive.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

// Reads any bytes as a style document of either form, and as an unkeyed archive. What was read is
// written in both forms, read again, and written the same.

namespace mezalith {
namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

void checkRead(const UnarchivedStyle& read) {
    require((read.style == nullptr) == !read.error.empty());
    require(read.error.find('\n') == std::string::npos);
    if (read.style == nullptr) return;
    const std::string text = platform::archivedText(read.style.get());
    const auto bytes = platform::archivedBytes(read.style.get());
    for (const UnarchivedStyle& again : {styleFromText(text), styleFromBytes(bytes)}) {
        require(again.style != nullptr);
        require(platform::archivedText(again.style.get()) == text);
        require(platform::archivedBytes(again.style.get()) == bytes);
    }
}

void checkUnkeyed(std::string_view text) {
    std::string error;
    auto unarchiver = platform::JsonUnarchiver::unarchiverWithText(text, &error);
    require(unarchiver.has_value() == error.empty());
    std::array<double, 6> values{};
    while (unarchiver && unarchiver->decodeArray(values)) {
        platform::JsonArchiver archiver;
        archiver.encodeArray(values);
        require(platform::JsonUnarchiver::unarchiverWithText(archiver.text()).has_value());
    }
}

}  // namespace
}  // namespace mezalith

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    mezalith::checkRead(mezalith::styleFromText(text));
    mezalith::checkRead(mezalith::styleFromBytes(std::as_bytes(std::span(text))));
    mezalith::checkUnkeyed(text);
    return 0;
}
