// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/base64.hpp>
#include <mezalith/platform/json/json_document.hpp>
#include <mezalith/platform/json/json_keyed_archive.hpp>

#include <cmath>
#include <limits>
#include <utility>

namespace mezalith::platform {
namespace {

using detail::JsonRead;
using detail::JsonWritten;

constexpr char classKey[] = "class";

/// Leaves room for a list of numbers in the object.
constexpr int deepestObject = detail::deepestJson - 1;
/// The root, within the document.
constexpr int rootDepth = 2;

constexpr std::size_t mostRemarks = 1000;

/// `key` as one step of a JSON pointer (RFC 6901).
std::string step(std::string_view key) {
    std::string text = "/";
    for (const char c : key) {
        text += c == '~' ? std::string("~0") : c == '/' ? std::string("~1") : std::string(1, c);
    }
    return text;
}

std::optional<bool> boolFromJson(const JsonRead& value) {
    return value.is_boolean() ? std::optional(value.get<bool>()) : std::nullopt;
}

std::optional<std::int32_t> intFromJson(const JsonRead& value) {
    if (!value.is_number()) {
        return std::nullopt;
    }
    const auto number = value.get<double>();
    const bool isInt = number >= std::numeric_limits<std::int32_t>::min() &&
                       number <= std::numeric_limits<std::int32_t>::max() &&
                       number == std::trunc(number);
    return isInt ? std::optional(static_cast<std::int32_t>(number)) : std::nullopt;
}

std::optional<float> floatFromJson(const JsonRead& value) {
    const auto number = detail::numberFromJson(value);
    if (!number ||
        (std::isfinite(*number) && std::abs(*number) > std::numeric_limits<float>::max())) {
        return std::nullopt;
    }
    return static_cast<float>(*number);
}

std::optional<std::string> stringFromJson(const JsonRead& value) {
    return value.is_string() ? std::optional(value.get<std::string>()) : std::nullopt;
}

std::optional<std::vector<std::byte>> bytesFromJson(const JsonRead& value) {
    const auto text = stringFromJson(value);
    return text ? bytesFromBase64(*text) : std::nullopt;
}

/// The outer optional says whether the value is of the type, the inner one is the value.
std::optional<std::optional<double>> numberOrNullFromJson(const JsonRead& value) {
    const auto number = detail::numberFromJson(value);
    return number || value.is_null() ? std::optional(number) : std::nullopt;
}

}  // namespace

// --- writing

struct JsonKeyedArchiver::Fields {
    JsonWritten object = JsonWritten::object();
    int depth;  ///< of the object in the text

    void put(std::string_view key, JsonWritten value) {
        if (key != classKey) {
            object[std::string(key)] = std::move(value);
        }
    }

    static JsonWritten written(const Archivable* value, int depth) {
        if (value == nullptr || depth > deepestObject) {
            return nullptr;
        }
        JsonKeyedArchiver archiver(depth);
        archiver.fields_->object[classKey] = std::string(value->archiveClassName());
        value->encodeWithCoder(archiver);
        return std::move(archiver.fields_->object);
    }
};

JsonKeyedArchiver::JsonKeyedArchiver(int depth) : fields_(new Fields{.depth = depth}) {}

JsonKeyedArchiver::~JsonKeyedArchiver() = default;

std::string JsonKeyedArchiver::archivedText(const Archivable* root) {
    return detail::archiveText(detail::rootKey, Fields::written(root, rootDepth));
}

void JsonKeyedArchiver::encodeBool(bool value, std::string_view key) { fields_->put(key, value); }

void JsonKeyedArchiver::encodeInt(std::int32_t value, std::string_view key) {
    fields_->put(key, value);
}

void JsonKeyedArchiver::encodeFloat(float value, std::string_view key) {
    fields_->put(key, detail::numberAsJson(value));
}

void JsonKeyedArchiver::encodeDouble(double value, std::string_view key) {
    fields_->put(key, detail::numberAsJson(value));
}

void JsonKeyedArchiver::encodeBytes(std::span<const std::byte> bytes, std::string_view key) {
    fields_->put(key, base64Text(bytes));
}

void JsonKeyedArchiver::encodeString(std::string_view value, std::string_view key) {
    fields_->put(key, std::string(value));
}

void JsonKeyedArchiver::encodeNumber(std::optional<double> value, std::string_view key) {
    fields_->put(key, value ? detail::numberAsJson(*value) : JsonWritten());
}

void JsonKeyedArchiver::encodeDoubles(std::span<const double> values, std::string_view key) {
    fields_->put(key, detail::numbersAsJson(values));
}

void JsonKeyedArchiver::encodeObject(const Archivable* object, std::string_view key) {
    fields_->put(key, Fields::written(object, fields_->depth + 1));
}

void JsonKeyedArchiver::encodeObjects(std::span<const Archivable* const> objects,
                                      std::string_view key) {
    JsonWritten list = JsonWritten::array();
    for (const Archivable* object : objects) {
        list.push_back(Fields::written(object, fields_->depth + 2));
    }
    fields_->put(key, std::move(list));
}

// --- reading

struct JsonKeyedUnarchiver::Source {
    const JsonRead& object;
    std::string place;
    const ArchiveClasses& classes;
    std::vector<std::string>& remarks;

    /// The value under `key`; null when there is none.
    const JsonRead* find(std::string_view key) const {
        const auto member = object.find(key);
        return key == classKey || member == object.end() ? nullptr : &*member;
    }

    /// The value under `key` as `read` makes it; a default value, with a remark, when it does not.
    template <typename T>
    T decoded(std::string_view key, std::optional<T> (*read)(const JsonRead&),
              const char* wanted) const {
        const JsonRead* member = find(key);
        if (member == nullptr) {
            return {};
        }
        auto value = read(*member);
        if (!value) {
            remark(place + step(key), std::string("not ") + wanted);
        }
        return std::move(value).value_or(T{});
    }

    void remark(const std::string& where, const std::string& reason) const {
        if (remarks.size() < mostRemarks) {
            remarks.push_back(where + ": " + reason);
        }
    }

    std::shared_ptr<const Archivable> make(const JsonRead& value, const std::string& where) const {
        if (value.is_null()) {
            return nullptr;
        }
        const auto name = value.is_object() ? value.find(classKey) : value.end();
        if (!value.is_object() || name == value.end() || !name->is_string()) {
            remark(where, "not an object of a class");
            return nullptr;
        }
        const auto& className = name->get_ref<const std::string&>();
        if (!classes.contains(className)) {
            remark(where, "of the unknown class " + name->dump());
            return nullptr;
        }
        const JsonKeyedUnarchiver coder(
            std::make_unique<Source>(Source{value, where, classes, remarks}));
        auto result = classes.make(className, coder);
        if (!result) {
            remark(where, "no " + className);
        }
        return result;
    }
};

JsonKeyedUnarchiver::JsonKeyedUnarchiver(std::unique_ptr<Source> source)
    : source_(std::move(source)) {}

JsonKeyedUnarchiver::~JsonKeyedUnarchiver() = default;

UnarchivedObject JsonKeyedUnarchiver::unarchivedObject(std::string_view text,
                                                       const ArchiveClasses& classes) {
    UnarchivedObject result;
    const auto root = detail::archiveContent(text, detail::rootKey, result.error);
    if (root) {
        const Source source{*root, {}, classes, result.remarks};
        result.object = source.make(*root, step(detail::rootKey));
    }
    return result;
}

bool JsonKeyedUnarchiver::containsValueForKey(std::string_view key) const {
    return source_->find(key) != nullptr;
}

bool JsonKeyedUnarchiver::decodeBool(std::string_view key) const {
    return source_->decoded<bool>(key, boolFromJson, "a boolean");
}

std::int32_t JsonKeyedUnarchiver::decodeInt(std::string_view key) const {
    return source_->decoded<std::int32_t>(key, intFromJson, "a 32-bit integer");
}

float JsonKeyedUnarchiver::decodeFloat(std::string_view key) const {
    return source_->decoded<float>(key, floatFromJson, "a single-precision number");
}

double JsonKeyedUnarchiver::decodeDouble(std::string_view key) const {
    return source_->decoded<double>(key, detail::numberFromJson, "a number");
}

std::vector<std::byte> JsonKeyedUnarchiver::decodeBytes(std::string_view key) const {
    return source_->decoded<std::vector<std::byte>>(key, bytesFromJson, "bytes in base64");
}

std::string JsonKeyedUnarchiver::decodeString(std::string_view key) const {
    return source_->decoded<std::string>(key, stringFromJson, "a text");
}

std::optional<double> JsonKeyedUnarchiver::decodeNumber(std::string_view key) const {
    return source_->decoded<std::optional<double>>(key, numberOrNullFromJson, "a number or null");
}

std::vector<double> JsonKeyedUnarchiver::decodeDoubles(std::string_view key) const {
    return source_->decoded<std::vector<double>>(key, detail::numbersFromJson, "a list of numbers");
}

std::shared_ptr<const Archivable> JsonKeyedUnarchiver::decodeObject(std::string_view key) const {
    const JsonRead* member = source_->find(key);
    return member ? source_->make(*member, source_->place + step(key)) : nullptr;
}

std::vector<std::shared_ptr<const Archivable>> JsonKeyedUnarchiver::decodeObjects(
    std::string_view key) const {
    std::vector<std::shared_ptr<const Archivable>> objects;
    const JsonRead* member = source_->find(key);
    if (member == nullptr) {
        return objects;
    }
    const std::string place = source_->place + step(key);
    if (!member->is_array()) {
        source_->remark(place, "not a list of objects");
        return objects;
    }
    for (std::size_t i = 0; i < member->size(); ++i) {
        objects.push_back(source_->make((*member)[i], place + step(std::to_string(i))));
    }
    return objects;
}

}  // namespace mezalith::platform
