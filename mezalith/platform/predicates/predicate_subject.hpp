// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/predicates/format_predicate.hpp>

#include <cstdio>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace mezalith::testing {

/// An object for predicates to ask: its values by key, all of them again as the table under
/// "table", and another object under "owner".
class Subject final : public platform::Object {
  public:
    Subject() = default;
    explicit Subject(platform::Dictionary table) : values(std::move(table)) {}

    platform::Dictionary values;
    std::shared_ptr<const platform::Object> owner;

    platform::KeyedValue valueForKey(std::string_view key) const override {
        if (key == "table") return &values;
        if (key == "owner") return owner;
        return platform::valueForKey(values, key);
    }
};

/// The predicate, or null and a line on standard error.
inline std::shared_ptr<const platform::FormatPredicate> predicate(
    std::string_view format, std::initializer_list<platform::PredicateArgument> arguments = {}) {
    platform::PredicateError error;
    auto made = platform::FormatPredicate::predicateWithFormat(format, arguments, &error);
    if (made == nullptr) std::fprintf(stderr, "%s\n", error.message().c_str());
    return made;
}

/// Whether there is such a predicate and the object meets it.
inline bool meets(const platform::Object& object, std::string_view format,
                  std::initializer_list<platform::PredicateArgument> arguments = {}) {
    const auto made = predicate(format, arguments);
    return made != nullptr && made->evaluateWithObject(&object);
}

/// The canonical text, or the error's message.
inline std::string canonical(std::string_view format,
                             std::initializer_list<platform::PredicateArgument> arguments = {}) {
    platform::PredicateError error;
    const auto made = platform::FormatPredicate::predicateWithFormat(format, arguments, &error);
    return made != nullptr ? made->predicateFormat() : error.message();
}

}  // namespace mezalith::testing
