// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/archive_classes.hpp>
#include <mezalith/platform/archiver.hpp>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::platform {

/// Keyed archives as JSON text (RFC 8259) that people can read, compare and mend:
///
///     {
///      "format": "mezalith archive",
///      "version": 1,
///      "root": {
///       "class": "Color",
///       "colorSpace": "calibratedRGB",
///       "components": [0.8, 0.2, 0.1],
///       "alpha": 1
///      }
///     }
///
/// An object has its class name under "class" and its fields behind it in the order they were
/// written; objects stand within each other. Numbers are the shortest text that reads back to the
/// same value of their type, numbers that are not finite the strings "nan", "inf" and "-inf"; bytes
/// are base64 text; text that is not UTF-8 gets U+FFFD in place of what is wrong. The key "class"
/// is the archive's own: a field of that name is not written.
class MEZALITH_EXPORT JsonKeyedArchiver final : public KeyedArchiver {
  public:
    /// The archive of `root`, which may be null. Objects that would stand deeper than 63 levels of
    /// objects and lists, and could not be read again, are written as null.
    static std::string archivedText(const Archivable* root);

    ~JsonKeyedArchiver() override;
    JsonKeyedArchiver(const JsonKeyedArchiver&) = delete;
    JsonKeyedArchiver& operator=(const JsonKeyedArchiver&) = delete;

    void encodeBool(bool value, std::string_view key) override;
    void encodeInt(std::int32_t value, std::string_view key) override;
    void encodeFloat(float value, std::string_view key) override;
    void encodeDouble(double value, std::string_view key) override;
    void encodeBytes(std::span<const std::byte> bytes, std::string_view key) override;
    void encodeString(std::string_view value, std::string_view key) override;
    void encodeNumber(std::optional<double> value, std::string_view key) override;
    void encodeDoubles(std::span<const double> values, std::string_view key) override;
    void encodeObject(const Archivable* object, std::string_view key) override;
    void encodeObjects(std::span<const Archivable* const> objects, std::string_view key) override;

  private:
    struct Fields;
    explicit JsonKeyedArchiver(int depth);

    std::unique_ptr<Fields> fields_;
};

/// What a keyed archive held.
struct MEZALITH_EXPORT UnarchivedObject {
    /// Null when there is an error, and when the archive's object is null, of an unknown class, or
    /// refused by its class.
    std::shared_ptr<const Archivable> object;
    /// Why the text could not be read: one line, with the position where there is one. Empty when
    /// it could.
    std::string error;
    /// What was there but could not be used as what it was asked for, one line each: its place
    /// such as "/root/rules/0/filter" and the reason. A thousand at most.
    std::vector<std::string> remarks;
};

/// Reads such archives, strictly: text that is longer than 4 MiB, nested deeper than 64 levels,
/// not UTF-8, or more or less than one JSON value, objects with a key twice, and archives of
/// another format or version are refused as a whole. Values of the wrong type or out of range count
/// as absent. A whole number may have a point, an integer may stand for any number.
class MEZALITH_EXPORT JsonKeyedUnarchiver final : public KeyedUnarchiver {
  public:
    /// The archive's object, made of `classes` only. Never throws, whatever the text.
    static UnarchivedObject unarchivedObject(std::string_view text, const ArchiveClasses& classes);

    ~JsonKeyedUnarchiver() override;
    JsonKeyedUnarchiver(const JsonKeyedUnarchiver&) = delete;
    JsonKeyedUnarchiver& operator=(const JsonKeyedUnarchiver&) = delete;

    bool containsValueForKey(std::string_view key) const override;
    bool decodeBool(std::string_view key) const override;
    std::int32_t decodeInt(std::string_view key) const override;
    float decodeFloat(std::string_view key) const override;
    double decodeDouble(std::string_view key) const override;
    std::vector<std::byte> decodeBytes(std::string_view key) const override;
    std::string decodeString(std::string_view key) const override;
    std::optional<double> decodeNumber(std::string_view key) const override;
    std::vector<double> decodeDoubles(std::string_view key) const override;
    std::shared_ptr<const Archivable> decodeObject(std::string_view key) const override;
    /// Empty unless the value is a list; null for each member that is no object of a known class.
    std::vector<std::shared_ptr<const Archivable>> decodeObjects(
        std::string_view key) const override;

  private:
    struct Source;
    explicit JsonKeyedUnarchiver(std::unique_ptr<Source> source);

    std::unique_ptr<Source> source_;
};

}  // namespace mezalith::platform
