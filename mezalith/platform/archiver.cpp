// SPDX-License-Identifier: MIT
#include <mezalith/platform/archiver.hpp>

namespace mezalith::platform {

Archivable::~Archivable() = default;
KeyedArchiver::~KeyedArchiver() = default;
KeyedUnarchiver::~KeyedUnarchiver() = default;
Archiver::~Archiver() = default;
Unarchiver::~Unarchiver() = default;

std::optional<std::string> Archivable::archiveText() const { return std::nullopt; }

void KeyedArchiver::encodeBytesOfDoubles(std::span<const double> values, std::string_view key) {
    encodeBytes(std::as_bytes(values), key);
}

std::shared_ptr<const Archivable> KeyedUnarchiver::decodeObjectOfClass(std::string_view,
                                                                       std::string_view key) const {
    return decodeObject(key);
}

void KeyedUnarchiver::failWithError(const std::string&, std::string_view) const {}

void KeyedUnarchiver::failWithErrorAtIndex(const std::string&, std::string_view,
                                           std::size_t) const {}

}  // namespace mezalith::platform
