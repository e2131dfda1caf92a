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

    /// The whole object as one line of text, for archives that people read; none unless the class
    /// has such a form and it says all of this object.
    virtual std::optional<std::string> archiveText() const;

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
    /// The bytes of native doubles, to be read as bytes. Archives that people read show the numbers
    /// beside them.
    virtual void encodeBytesOfDoubles(std::span<const double> values, std::string_view key);
    /// An object, or null. Objects are told apart by their addresses: each must live until the
    /// whole archive is written.
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

    /// The object under `key` where one of the class `className` is wanted, so that it may be given
    /// by its `archiveText` or without its class name. One of another class is answered as well.
    virtual std::shared_ptr<const Archivable> decodeObjectOfClass(std::string_view className,
                                                                  std::string_view key) const;

    /// Says why the value under `key` cannot be used, on which strict archives are refused as a
    /// whole; others do without the value.
    virtual void failWithError(const std::string& reason, std::string_view key) const;
    /// The same of one of the objects in the list under `key`.
    virtual void failWithErrorAtIndex(const std::string& reason, std::string_view key,
                                      std::size_t index) const;
};

/// The object of class `className` under `key`, null where it is null; none, and the archive fails,
/// when it is no T.
template <typename T>
std::optional<std::shared_ptr<const T>> decodedObject(const KeyedUnarchiver& coder,
                                                      const std::string& className,
                                                      std::string_view key) {
    const std::shared_ptr<const Archivable> object = coder.decodeObjectOfClass(className, key);
    auto result = std::dynamic_pointer_cast<const T>(object);
    if (object == nullptr || result != nullptr) return result;
    coder.failWithError(std::string(object->archiveClassName()) + ", not " + className, key);
    return std::nullopt;
}

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
