// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <variant>

namespace mezalith::platform {

/// The root of everything that can be referred to without knowing what it is: the object of a tree
/// leaf, the owner of a feature, the subject of a predicate. `dynamic_cast` tells what it is.
class MEZALITH_EXPORT Object {
  public:
    virtual ~Object();

  protected:
    Object() = default;
    Object(const Object&) = default;
    Object& operator=(const Object&) = default;
};

/// An attribute's value. `std::monostate` is null; text is UTF-8.
using Value = std::variant<std::monostate, bool, std::int64_t, double, std::string>;

/// An attribute table: values by name, in the order of the names' bytes.
using Dictionary = std::map<std::string, Value, std::less<>>;

/// What a pointing device did, as handed to the mouse hooks.
struct Event {
    double timestamp = 0;             ///< seconds since the program started
    std::uint32_t modifierFlags = 0;  ///< the host's own bits
    std::int32_t buttonNumber = 0;    ///< 0 the primary button
};

}  // namespace mezalith::platform
