// SPDX-License-Identifier: MIT
#include "apps/mezalith/text_output.hpp"

#include "host/failure.hpp"
#include <mezalith/platform/number_text.hpp>

#include <cerrno>
#include <cmath>
#include <system_error>
#include <utility>

#include <nlohmann/json.hpp>

namespace mezalith::app {
namespace {

std::string joinedSides(const host::BoundingBox& box, const char* separator) {
    std::string text;
    for (const double side : {box.minX, box.minY, box.maxX, box.maxY}) {
        text += (text.empty() ? "" : separator) + platform::shortestText(side);
    }
    return text;
}

}  // namespace

TextOutput::TextOutput(std::FILE* stream, std::string name)
    : stream_(stream), name_(std::move(name)) {}

void TextOutput::write(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), stream_) != text.size()) fail();
}

void TextOutput::finish() {
    if (std::fflush(stream_) != 0) fail();
}

void TextOutput::fail() const {
    throw host::Failure(name_, std::generic_category().message(errno));
}

JsonObject& JsonObject::add(std::string_view key, double value) {
    return addJson(key, jsonNumber(value));
}

JsonObject& JsonObject::add(std::string_view key, std::size_t value) {
    return addJson(key, std::to_string(value));
}

JsonObject& JsonObject::add(std::string_view key, std::string_view value) {
    return addJson(key, jsonString(value));
}

JsonObject& JsonObject::addJson(std::string_view key, std::string_view json) {
    if (!fields_.empty()) fields_ += ",";
    fields_ += jsonString(key) + ":";
    fields_ += json;
    return *this;
}

void tellUnusable(const std::string& source, const std::string& layer,
                  const host::Unusable& unusable) {
    if (unusable.count == 0) return;
    const std::string line = "mezalith: " + source + ": " + layer + ": " +
                             std::to_string(unusable.count) + " left out, the first being " +
                             unusable.firstReason;
    std::fprintf(stderr, "%s\n", host::inOneLine(line).c_str());
}

std::string jsonNumber(double value) {
    return std::isfinite(value) ? platform::shortestText(value) : "null";
}

std::string jsonString(std::string_view text) {
    return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string boundsText(const host::BoundingBox& box) {
    return box.isEmpty() ? "none" : joinedSides(box, " ");
}

std::string boundsJson(const host::BoundingBox& box) {
    return box.isEmpty() ? "null" : "[" + joinedSides(box, ",") + "]";
}

}  // namespace mezalith::app
