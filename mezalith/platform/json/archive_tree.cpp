// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/archive_tree.hpp>
#include <mezalith/platform/nearest_name.hpp>
#include <mezalith/platform/number_text.hpp>

#include <algorithm>
#include <array>

namespace mezalith::platform::detail {
namespace {

constexpr std::string_view kFormatKey = "format";
constexpr std::string_view kFormatName = "mezalith archive";
constexpr std::string_view kVersionKey = "version";
constexpr std::int64_t kVersion = 1;

struct KindText {
    std::string operator()(std::monostate) const { return "null"; }
    std::string operator()(bool) const { return "a boolean"; }
    std::string operator()(std::int64_t number) const {
        return "the number " + std::to_string(number);
    }
    std::string operator()(double number) const { return "the number " + shortestText(number); }
    std::string operator()(const std::string&) const { return "a text"; }
    std::string operator()(const ArchiveBytes&) const { return "bytes"; }
    std::string operator()(const ArchiveList&) const { return "a list"; }
    std::string operator()(const ArchiveObject&) const { return "an object"; }
};

/// Why an object is no frame of an archive with `key`; empty when it is one.
ArchiveError frameError(const ArchiveObject& frame, std::string_view key, std::size_t offset) {
    const std::array names{kFormatKey, kVersionKey, key};
    for (const ArchiveMember& member : frame) {
        if (std::ranges::find(names, member.key) == names.end()) {
            return {"unknown key" + suggestion(member.key, names), member.offset};
        }
    }
    const ArchiveValue* version = memberOf(frame, kVersionKey);
    const auto* number = version != nullptr ? version->as<std::int64_t>() : nullptr;
    if (number == nullptr || *number != kVersion) {
        return {"an archive of another version than " + std::to_string(kVersion),
                version != nullptr ? version->offset : offset};
    }
    if (memberOf(frame, key) == nullptr) {
        return {"an archive without \"" + std::string(key) + "\"", offset};
    }
    return {};
}

bool isFormat(const ArchiveObject* frame) {
    const ArchiveValue* format = frame != nullptr ? memberOf(*frame, kFormatKey) : nullptr;
    const std::string* name = format != nullptr ? format->as<std::string>() : nullptr;
    return name != nullptr && *name == kFormatName;
}

}  // namespace

const ArchiveValue* memberOf(const ArchiveObject& object, std::string_view key) {
    const auto found = std::ranges::find(object, key, &ArchiveMember::key);
    return found != object.end() ? &found->value : nullptr;
}

std::string kindOf(const ArchiveValue& value) { return std::visit(KindText(), value.value); }

std::optional<ArchiveError> sizeError(std::size_t size) {
    if (size <= kLongestArchive) return std::nullopt;
    return ArchiveError{"longer than " + std::to_string(kLongestArchive) + " bytes",
                        kLongestArchive};
}

bool ArchiveBuilder::add(ArchiveValue value) { return place(std::move(value)) != nullptr; }

bool ArchiveBuilder::addKey(std::string key, std::size_t offset) {
    if (!open_.back().keys.insert(key).second) {
        return fail("a second key" + suggestion(key, {}), offset);
    }
    open_.back().value->as<ArchiveObject>()->push_back({std::move(key), {}, offset});
    return true;
}

bool ArchiveBuilder::open(ArchiveValue empty) {
    if (open_.size() == kDeepestArchive) {
        return fail("nested deeper than " + std::to_string(kDeepestArchive), empty.offset);
    }
    ArchiveValue* placed = place(std::move(empty));
    if (placed == nullptr) return false;
    open_.push_back({placed, {}});
    return true;
}

bool ArchiveBuilder::close() {
    open_.pop_back();
    return true;
}

bool ArchiveBuilder::fail(std::string reason, std::size_t offset) {
    error_ = {std::move(reason), offset};
    return false;
}

ArchiveValue* ArchiveBuilder::place(ArchiveValue value) {
    if (++count_ > kMostValues) {
        fail("more than " + std::to_string(kMostValues) + " values", value.offset);
        return nullptr;
    }
    ArchiveValue* target = &root_;
    if (!open_.empty()) {
        ArchiveValue& container = *open_.back().value;
        auto* list = container.as<ArchiveList>();
        target =
            list != nullptr ? &list->emplace_back() : &container.as<ArchiveObject>()->back().value;
    }
    *target = std::move(value);
    return target;
}

ArchiveValue framed(std::string_view key, ArchiveValue content) {
    ArchiveObject frame;
    frame.push_back({std::string(kFormatKey), {std::string(kFormatName)}});
    frame.push_back({std::string(kVersionKey), {kVersion}});
    frame.push_back({std::string(key), std::move(content)});
    return {std::move(frame)};
}

std::optional<ArchiveValue> contentOf(ArchiveValue document, std::string_view key,
                                      ArchiveError& error) {
    auto* frame = document.as<ArchiveObject>();
    error = !isFormat(frame) ? ArchiveError{"no mezalith archive", document.offset}
                             : frameError(*frame, key, document.offset);
    if (!error.reason.empty()) return std::nullopt;
    return std::move(std::ranges::find(*frame, key, &ArchiveMember::key)->value);
}

}  // namespace mezalith::platform::detail
