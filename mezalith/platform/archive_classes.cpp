// SPDX-License-Identifier: MIT
#include <mezalith/platform/archive_classes.hpp>
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/shadow.hpp>

#include <utility>

namespace mezalith::platform {

ArchiveClasses ArchiveClasses::platformClasses() {
    ArchiveClasses classes;
    classes.add("Color", Color::initWithCoder);
    classes.add("Shadow", Shadow::initWithCoder);
    return classes;
}

void ArchiveClasses::add(std::string_view name, InitWithCoder initWithCoder) {
    classes_.insert_or_assign(std::string(name), std::move(initWithCoder));
}

bool ArchiveClasses::contains(std::string_view name) const {
    return classes_.find(name) != classes_.end();
}

std::shared_ptr<const Archivable> ArchiveClasses::make(std::string_view name,
                                                       const KeyedUnarchiver& coder) const {
    const auto found = classes_.find(name);
    return found != classes_.end() && found->second ? found->second(coder) : nullptr;
}

}  // namespace mezalith::platform
