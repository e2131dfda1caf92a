// SPDX-License-Identifier: MIT
#include <mezalith/platform/archive_classes.hpp>
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/shadow.hpp>

#include <algorithm>
#include <utility>

namespace mezalith::platform {
namespace {

std::shared_ptr<const Archivable> colorWithText(std::string_view text, std::string& reason) {
    auto color = Color::colorWithText(text);
    if (color == nullptr) reason = "a text, not a colour such as \"#rrggbbaa\"";
    return color;
}

}  // namespace

ArchiveClasses ArchiveClasses::platformClasses() {
    ArchiveClasses classes;
    classes.add("Color", Color::initWithCoder, {"alpha"});
    classes.addText("Color", colorWithText);
    classes.add("Shadow", Shadow::initWithCoder);
    return classes;
}

void ArchiveClasses::add(std::string_view name, InitWithCoder initWithCoder, Keys optional) {
    Entry entry{std::move(initWithCoder), {}, std::move(optional)};
    classes_.insert_or_assign(std::string(name), std::move(entry));
}

void ArchiveClasses::addText(std::string_view name, InitWithText initWithText) {
    classes_[std::string(name)].initWithText = std::move(initWithText);
}

bool ArchiveClasses::contains(std::string_view name) const {
    return classes_.find(name) != classes_.end();
}

bool ArchiveClasses::isOptional(std::string_view name, std::string_view key) const {
    const auto found = classes_.find(name);
    return found != classes_.end() &&
           std::ranges::find(found->second.optional, key) != found->second.optional.end();
}

std::vector<std::string_view> ArchiveClasses::names() const {
    std::vector<std::string_view> names;
    names.reserve(classes_.size());
    for (const auto& [name, entry] : classes_) names.push_back(name);
    return names;
}

std::shared_ptr<const Archivable> ArchiveClasses::make(std::string_view name,
                                                       const KeyedUnarchiver& coder) const {
    const auto found = classes_.find(name);
    if (found == classes_.end() || !found->second.initWithCoder) return nullptr;
    return found->second.initWithCoder(coder);
}

std::shared_ptr<const Archivable> ArchiveClasses::makeFromText(std::string_view name,
                                                               std::string_view text,
                                                               std::string& reason) const {
    const auto found = classes_.find(name);
    if (found == classes_.end() || !found->second.initWithText) {
        reason = "a text, not an object";
        return nullptr;
    }
    return found->second.initWithText(text, reason);
}

}  // namespace mezalith::platform
