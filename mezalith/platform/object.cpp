// SPDX-License-Identifier: MIT
#include <mezalith/platform/object.hpp>

#include <type_traits>

namespace mezalith::platform {

KeyedValue valueForKey(const Dictionary& table, std::string_view key) {
    const Value* const found = table.find(key);
    if (found == nullptr) return {};
    return std::visit(
        [](const auto& value) -> KeyedValue {
            if constexpr (std::is_same_v<decltype(value), const std::string&>) {
                return std::string_view(value);
            } else {
                return value;
            }
        },
        *found);
}

Object::~Object() = default;

KeyedValue Object::valueForKey(std::string_view) const { return {}; }

}  // namespace mezalith::platform
