// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/json_archive.hpp>
#include <mezalith/platform/json/json_document.hpp>
#include <mezalith/platform/json/tree_unarchiver.hpp>

#include <algorithm>
#include <utility>

namespace mezalith::platform {
namespace {

using Arrays = std::deque<std::vector<double>>;

std::optional<Arrays> arraysOf(const detail::ArchiveValue& content, detail::ArchiveError& error) {
    const auto* list = content.as<detail::ArchiveList>();
    if (list == nullptr) {
        error = {"/arrays: " + detail::kindOf(content) + ", not a list", content.offset};
        return std::nullopt;
    }
    Arrays arrays;
    for (const detail::ArchiveValue& member : *list) {
        auto numbers = detail::numbersOf(member);
        if (!numbers) {
            error = {"/arrays/" + std::to_string(arrays.size()) + ": " + detail::kindOf(member) +
                         ", not a list of numbers",
                     member.offset};
            return std::nullopt;
        }
        arrays.push_back(std::move(*numbers));
    }
    return arrays;
}

std::optional<Arrays> arraysIn(std::string_view text, detail::ArchiveError& error) {
    auto document = detail::jsonTree(text, error);
    if (!document) return std::nullopt;
    const auto content = detail::contentOf(std::move(*document), detail::kArraysKey, error);
    return content ? arraysOf(*content, error) : std::nullopt;
}

}  // namespace

void JsonArchiver::encodeArray(std::span<const double> values) {
    arrays_.emplace_back(values.begin(), values.end());
}

std::string JsonArchiver::text() const {
    detail::ArchiveList arrays;
    for (const std::vector<double>& array : arrays_) {
        detail::ArchiveList values;
        for (const double value : array) values.push_back({value});
        arrays.push_back({std::move(values)});
    }
    return detail::jsonText(detail::framed(detail::kArraysKey, {std::move(arrays)}));
}

JsonUnarchiver::JsonUnarchiver(std::deque<std::vector<double>> arrays)
    : arrays_(std::move(arrays)) {}

std::optional<JsonUnarchiver> JsonUnarchiver::unarchiverWithText(std::string_view text,
                                                                 std::string* error) {
    detail::ArchiveError reason;
    auto arrays = arraysIn(text, reason);
    if (error != nullptr) {
        *error = arrays ? std::string() : detail::jsonErrorText(text, reason);
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
