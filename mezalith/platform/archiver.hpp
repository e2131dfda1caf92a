// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::platform {

class KeyedArchiver;
class KeyedUnarchiver;

/// What can be written to a keyed archive as an object. Each class also has a static
/// `initWithCoder`, registered under its archive class name.
class MEZALITH_EXPORT Archivable {
  public:
    virtual ~Archivable();

    /// The name under which the class is found again when decoding.
    virtual std::string_view archiveClassName() const = 0;
    virtual void encodeWithCoder(KeyedArchiver& coder) const = 0;

  protected:
    Archivable() = default;
    Archivable(const Archivable&) = default;
    Archivable& operator=(const Archivable&) = default;
};

/// Writes an object's fields under keys, in the order of the calls. Each stored type is its own
/// call; writing a key twice keeps the later value.
class MEZALITH_EXPORT KeyedArchiver {
  public:
    virtual ~KeyedArchiver();

    virtual void encodeBool(bool value, std::string_view key) = 0;
    virtual void encodeInt(std::int32_t value, std::string_view key) = 0;
    virtual void encodeFloat(float value, std::string_view key) = 0;
    virtual void encodeDouble(double value, std::string_view key) = 0;
    virtual void encodeBytes(std::span<const std::byte> bytes, std::string_view key) = 0;
    virtual void encodeString(std::string_view value, std::string_view key) = 0;
    /// A boxed number; nothing is stored as null.
    virtual void encodeNumber(std::optional<double> value, std::string_view key) = 0;
    virtual void encodeDoubles(std::span<const double> values, std::string_view key) = 0;
    /// An object, or null.
    virtual void encodeObject(const Archivable* object, std::string_view key) = 0;
    virtual void encodeObjects(std::span<const Archivable* const> objects,
                               std::string_view key) = 0;
};

/// Reads what a KeyedArchiver wrote. An absent key or one of another type answers NO, 0, empty or
/// null, as do numbers that the type asked for cannot hold.
class MEZALITH_EXPORT KeyedUnarchiver {
  public:
    virtual ~KeyedUnarchiver();

    virtual bool containsValueForKey(std::string_view key) const = 0;
    virtual bool decodeBool(std::string_view key) const = 0;
    virtual std::int32_t decodeInt(std::string_view key) const = 0;
    virtual float decodeFloat(std::string_view key) const = 0;
    virtual double decodeDouble(std::string_view key) const = 0;
    virtual std::vector<std::byte> decodeBytes(std::string_view key) const = 0;
    virtual std::string decodeString(std::string_view key) const = 0;
    virtual std::optional<double> decodeNumber(std::string_view key) const = 0;
    virtual std::vector<double> decodeDoubles(std::string_view key) const = 0;
    /// The object under `key`, made by the `initWithCoder` registered for its class name; null for
    /// an absent key, an unknown class, or when that initialiser answers null.
    virtual std::shared_ptr<const Archivable> decodeObject(std::string_view key) const = 0;
    virtual std::vector<std::shared_ptr<const Archivable>> decodeObjects(
        std::string_view key) const = 0;
};

/// An unkeyed archive: a sequence of arrays, read back in the order they were written.
class MEZALITH_EXPORT Archiver {
  public:
    virtual ~Archiver();
    /// Appends an array of doubles (element type "d") with its count.
    virtual void encodeArray(std::span<const double> values) = 0;
};

class MEZALITH_EXPORT Unarchiver {
  public:
    virtual ~Unarchiver();
    /// Reads the next array into `values`. NO, leaving `values` untouched, when the next element is
    /// not an array of doubles of exactly that length.
    virtual bool decodeArray(std::span<double> values) = 0;
};

}  // namespace mezalith::platform
