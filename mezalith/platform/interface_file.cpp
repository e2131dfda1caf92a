// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface_file.hpp>

#include <map>
#include <string>
#include <utility>

namespace mezalith::platform {
namespace {

using Loaders = std::map<std::string, InterfaceFile::Loader, std::less<>>;

Loaders& loaders() {
    static Loaders all;
    return all;
}

}  // namespace

InterfaceOwner::~InterfaceOwner() = default;

void InterfaceFile::setLoader(std::string_view name, Loader loader) {
    if (loader) {
        loaders().insert_or_assign(std::string(name), std::move(loader));
    } else if (const auto found = loaders().find(name); found != loaders().end()) {
        loaders().erase(found);
    }
}

std::shared_ptr<View> InterfaceFile::load(std::string_view name, const InterfaceOwner& owner) {
    const auto found = loaders().find(name);
    if (found == loaders().end()) return nullptr;
    // A copy, as the loader may change the list.
    const Loader loader = found->second;
    return loader(owner);
}

}  // namespace mezalith::platform
