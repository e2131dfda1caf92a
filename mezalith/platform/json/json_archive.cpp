// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/json_archive.hpp>
#include <mezalith/platform/json/json_document.hpp>

#include <algorithm>
#include <utility>

namespace mezalith::platform {
namespace {

std::optional<std::deque<std::vector<double>>> arraysOf(std::string_view text, std::string& error) {
    const auto content = detail::archiveContent(text, detail::arraysKey, error);
    if (!content) {
        return std::nullopt;
    }
    if (!content->is_array()) {
        error = "/arrays: not a list";
        return std::nullopt;
    }
    std::deque<std::vector<double>> arrays;
    for (const detail::JsonRead& member : *content) {
        auto numbers = detail::numbersFromJson(member);
        if (!numbers) {
            error = "/arrays/" + std::to_string(arrays.size()) + ": not a list of numbers";
            return std::nullopt;
        }
        arrays.push_back(std::move(*numbers));
    }
    return arrays;
}

}  // namespace

void JsonArchiver::encodeArray(std::span<const double> values) {
    arrays_.emplace_back(values.begin(), values.end());
}

std::string JsonArchiver::text() const {
    auto arrays = detail::JsonWritten::array();
    for (const std::vector<double>& array : arrays_) {
        arrays.push_back(detail::numbersAsJson(array));
    }
    return detail::archiveText(detail::arraysKey, std::move(arrays));
}

JsonUnarchiver::JsonUnarchiver(std::deque<std::vector<double>> arrays)
    : arrays_(std::move(arrays)) {}

std::optional<JsonUnarchiver> JsonUnarchiver::unarchiverWithText(std::string_view text,
                                                                 std::string* error) {
    std::string reason;
    auto arrays = arraysOf(text, reason);
    if (error != nullptr) {
        *error = reason;
    }
    return arrays ? std::optional(JsonUnarchiver(std::move(*arrays))) : std::nullopt;
}

bool JsonUnarchiver::decodeArray(std::span<double> values) {
    if (arrays_.empty() || arrays_.front().size() != values.size()) {
        return false;
    }
    std::ranges::copy(arrays_.front(), values.begin());
    arrays_.pop_front();
    return true;
}

}  // namespace mezalith::platform
