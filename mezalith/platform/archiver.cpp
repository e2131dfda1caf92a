// SPDX-License-Identifier: MIT
#include <mezalith/platform/archiver.hpp>

namespace mezalith::platform {

Archivable::~Archivable() = default;
KeyedArchiver::~KeyedArchiver() = default;
KeyedUnarchiver::~KeyedUnarchiver() = default;
Archiver::~Archiver() = default;
Unarchiver::~Unarchiver() = default;

}  // namespace mezalith::platform
