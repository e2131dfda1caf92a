// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/object.hpp>
#include <mezalith/platform/predicates/program.hpp>

namespace mezalith::platform::predicates {

/// Whether `object`, which may be null, meets the predicate.
bool holds(const Program& program, const Object* object);

}  // namespace mezalith::platform::predicates
