// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/archiver.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace mezalith::testing {

/// A keyed archive in memory, for tests, that tells in which order and as what its values were
/// written, and in which order they were asked for. Objects are kept by reference.
class KeyedStore final : public platform::KeyedArchiver, public platform::KeyedUnarchiver {
  public:
    using Bytes = std::vector<std::byte>;
    using Object = const platform::Archivable*;
    using Objects = std::vector<Object>;
    using Value = std::variant<bool, std::int32_t, float, double, Bytes, std::string,
                               std::optional<double>, std::vector<double>, Object, Objects>;

    /// "type key" of each value in the order written.
    std::vector<std::string> layout() const {
        static constexpr std::array<const char*, std::variant_size_v<Value>> kTypes{
            "bool",   "int",    "float",   "double", "bytes",
            "string", "number", "doubles", "object", "objects"};
        std::vector<std::string> lines;
        lines.reserve(entries_.size());
        for (const auto& [key, value] : entries_)
            lines.push_back(kTypes[value.index()] + (" " + key));
        return lines;
    }
    /// The keys in the order asked for.
    const std::vector<std::string>& asked() const { return asked_; }

    void encodeBool(bool value, std::string_view key) override { put(key, value); }
    void encodeInt(std::int32_t value, std::string_view key) override { put(key, value); }
    void encodeFloat(float value, std::string_view key) override { put(key, value); }
    void encodeDouble(double value, std::string_view key) override { put(key, value); }
    void encodeBytes(std::span<const std::byte> bytes, std::string_view key) override {
        put(key, Bytes(bytes.begin(), bytes.end()));
    }
    void encodeString(std::string_view value, std::string_view key) override {
        put(key, std::string(value));
    }
    void encodeNumber(std::optional<double> value, std::string_view key) override {
        put(key, value);
    }
    void encodeDoubles(std::span<const double> values, std::string_view key) override {
        put(key, std::vector<double>(values.begin(), values.end()));
    }
    void encodeObject(Object object, std::string_view key) override { put(key, object); }
    void encodeObjects(std::span<const Object> objects, std::string_view key) override {
        put(key, Objects(objects.begin(), objects.end()));
    }

    bool containsValueForKey(std::string_view key) const override { return find(key) != nullptr; }
    bool decodeBool(std::string_view key) const override { return get<bool>(key); }
    std::int32_t decodeInt(std::string_view key) const override { return get<std::int32_t>(key); }
    float decodeFloat(std::string_view key) const override { return get<float>(key); }
    double decodeDouble(std::string_view key) const override { return get<double>(key); }
    Bytes decodeBytes(std::string_view key) const override { return get<Bytes>(key); }
    std::string decodeString(std::string_view key) const override { return get<std::string>(key); }
    /// A double is a number, too.
    std::optional<double> decodeNumber(std::string_view key) const override {
        const Value* value = find(key);
        if (value != nullptr && std::holds_alternative<double>(*value)) return get<double>(key);
        return get<std::optional<double>>(key);
    }
    std::vector<double> decodeDoubles(std::string_view key) const override {
        return get<std::vector<double>>(key);
    }
    std::shared_ptr<const platform::Archivable> decodeObject(std::string_view key) const override {
        return unowned(get<Object>(key));
    }
    std::vector<std::shared_ptr<const platform::Archivable>> decodeObjects(
        std::string_view key) const override {
        std::vector<std::shared_ptr<const platform::Archivable>> result;
        for (const Object object : get<Objects>(key)) result.push_back(unowned(object));
        return result;
    }

  private:
    void put(std::string_view key, Value value) {
        entries_.emplace_back(std::string(key), std::move(value));
    }
    const Value* find(std::string_view key) const {
        const auto entry = std::ranges::find(entries_, key, &Entry::first);
        return entry != entries_.end() ? &entry->second : nullptr;
    }
    template <typename T>
    T get(std::string_view key) const {
        asked_.emplace_back(key);
        const Value* value = find(key);
        return value != nullptr && std::holds_alternative<T>(*value) ? std::get<T>(*value) : T{};
    }
    static std::shared_ptr<const platform::Archivable> unowned(Object object) {
        return {std::shared_ptr<const platform::Archivable>(), object};
    }

    using Entry = std::pair<std::string, Value>;
    std::vector<Entry> entries_;
    mutable std::vector<std::string> asked_;
};

}  // namespace mezalith::testing
