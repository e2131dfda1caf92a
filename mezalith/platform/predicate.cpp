// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicate.hpp>

namespace mezalith::platform {

Predicate::~Predicate() = default;

}  // namespace mezalith::platform
