// SPDX-License-Identifier: MIT
#include <mezalith/platform/object.hpp>

namespace mezalith::platform {

Object::~Object() = default;

}  // namespace mezalith::platform
