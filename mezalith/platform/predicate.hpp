// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/archiver.hpp>
#include <mezalith/platform/object.hpp>

#include <string>

namespace mezalith::platform {

/// A condition that objects meet or do not meet. Immutable, so that any number of rules may share
/// one. Asking does not change what is asked about.
class MEZALITH_EXPORT Predicate : public Archivable {
  public:
    ~Predicate() override;

    /// Whether `object` meets the condition. `dynamic_cast` tells what the object is; one the
    /// condition does not fit, or null, is no error.
    virtual bool evaluateWithObject(const Object* object) const = 0;

    /// The condition as text. Predicates are compared by it: equal texts mean equal conditions.
    virtual std::string predicateFormat() const = 0;
};

}  // namespace mezalith::platform
