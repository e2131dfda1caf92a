// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/dictionary.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>

namespace mezalith::platform {

class Object;

/// What an object answers for a key: a value, a table or another object. Text as a view, and
/// tables, lie with the object that answered; they are good while it lives and is not changed.
using KeyedValue = std::variant<std::monostate, bool, std::int64_t, double, std::string,
                                std::string_view, const Dictionary*, std::shared_ptr<const Object>>;

/// The entry `key` of `table`, text as a view; null when there is none.
MEZALITH_EXPORT KeyedValue valueForKey(const Dictionary& table, std::string_view key);

/// The root of everything that can be referred to without knowing what it is: the object of a tree
/// leaf, the owner of a feature, the subject of a predicate. `dynamic_cast` tells what it is.
class MEZALITH_EXPORT Object {
  public:
    virtual ~Object();

    /// The property of this name, for those who ask without knowing the class, as predicates do;
    /// null for any other key. The root has no properties.
    virtual KeyedValue valueForKey(std::string_view key) const;

  protected:
    Object() = default;
    Object(const Object&) = default;
    Object& operator=(const Object&) = default;
};

/// What a pointing device did, as handed to the mouse hooks.
struct Event {
    double timestamp = 0;             ///< seconds since the program started
    std::uint32_t modifierFlags = 0;  ///< the host's own bits
    std::int32_t buttonNumber = 0;    ///< 0 the primary button
};

}  // namespace mezalith::platform
