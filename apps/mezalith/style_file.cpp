// SPDX-License-Identifier: MIT
#include "apps/mezalith/style_file.hpp"

#include "apps/mezalith/arguments.hpp"
#include "host/failure.hpp"
#include "host/letter_case.hpp"
#include "host/wkb_file.hpp"
#include <mezalith/platform/json/keyed_archive.hpp>
#include <mezalith/style/style_archive.hpp>

#include <filesystem>
#include <span>
#include <string_view>

namespace mezalith::app {

StyleFormat styleFormatOf(const std::string& path) {
    const std::string ending = std::filesystem::path(path).extension().string();
    if (host::isEqualIgnoringCase(ending, ".json")) return StyleFormat::JSON;
    if (host::isEqualIgnoringCase(ending, ".cbor")) return StyleFormat::CBOR;
    throw UsageError(path, "a style document ends in .json or .cbor");
}

std::shared_ptr<MzStyle> readStyleFile(const std::string& path) {
    const StyleFormat format = styleFormatOf(path);
    const std::vector<std::byte> bytes = host::readFile(path);
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    UnarchivedStyle read =
        format == StyleFormat::JSON ? styleFromText(text) : styleFromBytes(bytes);
    if (read.style == nullptr) throw host::Failure(path, read.error);
    return std::move(read.style);
}

std::vector<std::byte> styleDocument(const MzStyle& style, StyleFormat format) {
    if (format == StyleFormat::CBOR) return platform::archivedBytes(&style);
    const std::string text = platform::archivedText(&style);
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace mezalith::app
