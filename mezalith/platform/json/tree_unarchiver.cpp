// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/base64.hpp>
#include <mezalith/platform/json/tree_archiver.hpp>
#include <mezalith/platform/json/tree_unarchiver.hpp>
#include <mezalith/platform/nearest_name.hpp>
#include <mezalith/platform/number_text.hpp>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <limits>
#include <string>
#include <unordered_map>
#include <utility>

namespace mezalith::platform::detail {
namespace {

/// `key` as one step of a JSON pointer (RFC 6901).
std::string step(std::string_view key) {
    std::string text = "/";
    for (const char c : key) {
        text += c == '~' ? std::string("~0") : c == '/' ? std::string("~1") : std::string(1, c);
    }
    return text;
}

// --- values

std::optional<bool> boolOf(const ArchiveValue& value) {
    const bool* content = value.as<bool>();
    return content != nullptr ? std::optional(*content) : std::nullopt;
}

std::optional<std::int32_t> intOf(const ArchiveValue& value) {
    const auto number = numberOf(value);
    if (!number) return std::nullopt;
    const bool isInt = *number >= std::numeric_limits<std::int32_t>::min() &&
                       *number <= std::numeric_limits<std::int32_t>::max() &&
                       *number == std::trunc(*number);
    return isInt ? std::optional(static_cast<std::int32_t>(*number)) : std::nullopt;
}

std::optional<float> floatOf(const ArchiveValue& value) {
    const auto number = numberOf(value);
    const bool isTooLarge =
        number && std::isfinite(*number) && std::abs(*number) > std::numeric_limits<float>::max();
    return number && !isTooLarge ? std::optional(static_cast<float>(*number)) : std::nullopt;
}

std::optional<std::string> stringOf(const ArchiveValue& value) {
    const auto* content = value.as<std::string>();
    return content != nullptr ? std::optional(*content) : std::nullopt;
}

/// The outer optional says whether the value is of the type, the inner one is the value.
std::optional<std::optional<double>> numberOrNullOf(const ArchiveValue& value) {
    using Number = std::optional<double>;
    const Number number = numberOf(value);
    const bool isOne = number || value.as<std::monostate>() != nullptr;
    return isOne ? std::optional<Number>(std::in_place, number) : std::nullopt;
}

std::optional<ArchiveBytes> plainBytesOf(const ArchiveValue& value) {
    if (const auto* bytes = value.as<ArchiveBytes>()) return *bytes;
    const auto* text = value.as<std::string>();
    return text != nullptr ? bytesFromBase64(*text) : std::nullopt;
}

std::optional<ArchiveBytes> bytesOfDoubles(const ArchiveValue& value) {
    const auto doubles = numbersOf(value);
    if (!doubles) return std::nullopt;
    const auto bytes = std::as_bytes(std::span(*doubles));
    return ArchiveBytes(bytes.begin(), bytes.end());
}

/// Whether both are the same doubles; one NaN is as good as another.
bool areSameDoubles(const ArchiveBytes& a, const ArchiveBytes& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); i += sizeof(double)) {
        double x = 0;
        double y = 0;
        std::memcpy(&x, &a[i], sizeof x);
        std::memcpy(&y, &b[i], sizeof y);
        const bool areNaN = std::isnan(x) && std::isnan(y);
        const bool isSame = std::bit_cast<std::uint64_t>(x) == std::bit_cast<std::uint64_t>(y);
        if (!areNaN && !isSame) return false;
    }
    return true;
}

/// Bytes as they are, as doubles, or as both if they agree.
std::optional<ArchiveBytes> bytesOf(const ArchiveValue& value) {
    const auto* both = value.as<ArchiveObject>();
    if (both == nullptr) {
        return value.as<ArchiveList>() != nullptr ? bytesOfDoubles(value) : plainBytesOf(value);
    }
    const ArchiveValue* doubles = memberOf(*both, kDoublesKey);
    const ArchiveValue* plain = memberOf(*both, kBytesKey);
    if (doubles == nullptr || plain == nullptr || both->size() != 2) return std::nullopt;
    const auto readable = bytesOfDoubles(*doubles);
    auto bytes = plainBytesOf(*plain);
    return readable && bytes && areSameDoubles(*readable, *bytes) ? bytes : std::nullopt;
}

// --- objects

struct Made {
    std::shared_ptr<const Archivable> object;
    int levels = 0;  ///< that it takes with all that is in it
};

/// An object that may be referred to.
struct Shared {
    enum class State { New, Open, Done };

    Shared(const ArchiveObject& fields, std::size_t begin) : object(fields), offset(begin) {}

    const ArchiveObject& object;
    std::size_t offset;
    State state = State::New;
    Made made{};
};

/// Where an object stands.
struct Spot {
    std::string place;  ///< a JSON pointer
    std::size_t offset;
    int level;
};

/// What is known of all of an archive while it is read. The first error counts.
struct Reading {
    const ArchiveClasses& classes;
    ArchiveError& error;
    std::unordered_map<std::int64_t, Shared> shared{};

    bool hasFailed() const { return !error.reason.empty(); }

    Made fail(const std::string& place, std::size_t offset, const std::string& reason) {
        if (!hasFailed()) error = {place.empty() ? reason : place + ": " + reason, offset};
        return {};
    }

    // No deeper than the tree.
    // NOLINTNEXTLINE(misc-no-recursion)
    void findShared(const ArchiveValue& value) {
        if (const auto* list = value.as<ArchiveList>()) {
            for (const ArchiveValue& member : *list) findShared(member);
        }
        const auto* object = value.as<ArchiveObject>();
        if (object == nullptr) return;
        for (const ArchiveMember& member : *object) findShared(member.value);
        const ArchiveValue* id = memberOf(*object, kIdKey);
        const auto* number = id != nullptr ? id->as<std::int64_t>() : nullptr;
        if (number != nullptr && !shared.try_emplace(*number, *object, value.offset).second) {
            fail({}, id->offset, "a second object with the id " + std::to_string(*number));
        }
    }

    /// Fails for a root that is null or of another known class than `className`, if one is wanted.
    void checkRoot(const ArchiveValue& root, std::string_view className) {
        if (className.empty()) return;
        const auto* object = root.as<ArchiveObject>();
        const ArchiveValue* value = object != nullptr ? memberOf(*object, kClassKey) : nullptr;
        const auto* name = value != nullptr ? value->as<std::string>() : nullptr;
        if (root.as<std::monostate>() != nullptr) {
            fail(step(kRootKey), root.offset, "null, not " + std::string(className));
        } else if (name != nullptr && *name != className && classes.contains(*name)) {
            fail(step(kRootKey) + step(kClassKey), value->offset,
                 *name + ", not " + std::string(className));
        }
    }

    Made make(const ArchiveValue& value, const std::string& place, int level,
              std::string_view className);
    Made makeShared(std::int64_t id, const Spot& spot, std::string_view className);
    Made makeObject(const ArchiveObject& object, const Spot& spot, std::string_view className);
    const std::string* classOf(const ArchiveObject& object, const Spot& spot);
};

/// Hands out the fields of one object.
class TreeUnarchiver final : public KeyedUnarchiver {
  public:
    TreeUnarchiver(const ArchiveObject& object, const Spot& spot, std::string_view className,
                   Reading& reading)
        : object_(object),
          spot_(spot),
          className_(className),
          reading_(reading),
          isAsked_(object.size()) {}

    /// Levels of the object with all that was made in it.
    int levels() const { return levels_; }

    /// Fails for keys that nobody asked for and those that were missed.
    void finish() const {
        const auto unknown = std::ranges::find_if(object_, [this](const ArchiveMember& member) {
            const auto i = static_cast<std::size_t>(&member - object_.data());
            return !isAsked_[i] && !isReserved(member.key);
        });
        if (unknown != object_.end()) {
            const std::vector<std::string_view> known(known_.begin(), known_.end());
            reading_.fail(spot_.place, unknown->offset,
                          "unknown key" + suggestion(unknown->key, known));
        } else if (!missing_.empty()) {
            reading_.fail(spot_.place, spot_.offset,
                          std::string(className_) + " without \"" + missing_ + "\"");
        }
    }

    bool containsValueForKey(std::string_view key) const override { return find(key) != nullptr; }
    bool decodeBool(std::string_view key) const override {
        return decoded<bool>(key, boolOf, "a boolean");
    }
    std::int32_t decodeInt(std::string_view key) const override {
        return decoded<std::int32_t>(key, intOf, "a 32-bit integer");
    }
    float decodeFloat(std::string_view key) const override {
        return decoded<float>(key, floatOf, "a single-precision number");
    }
    double decodeDouble(std::string_view key) const override {
        return decoded<double>(key, numberOf, "a number");
    }
    std::vector<std::byte> decodeBytes(std::string_view key) const override {
        const ArchiveValue* value = find(key);
        if (value != nullptr && value->as<ArchiveObject>() != nullptr && !bytesOf(*value)) {
            reading_.fail(placeOf(key), value->offset, R"(no "doubles" with the same as "bytes")");
            return {};
        }
        return decoded<ArchiveBytes>(key, bytesOf, "bytes in base64 or a list of numbers");
    }
    std::string decodeString(std::string_view key) const override {
        return decoded<std::string>(key, stringOf, "a text");
    }
    std::optional<double> decodeNumber(std::string_view key) const override {
        return decoded<std::optional<double>>(key, numberOrNullOf, "a number or null");
    }
    std::vector<double> decodeDoubles(std::string_view key) const override {
        return decoded<std::vector<double>>(key, numbersOf, "a list of numbers");
    }
    std::shared_ptr<const Archivable> decodeObject(std::string_view key) const override {
        return decodeObjectOfClass({}, key);
    }
    // No deeper than archives are.
    // NOLINTNEXTLINE(misc-no-recursion)
    std::shared_ptr<const Archivable> decodeObjectOfClass(std::string_view className,
                                                          std::string_view key) const override {
        const ArchiveValue* value = wanted(key);
        if (value == nullptr) return nullptr;
        return keep(reading_.make(*value, placeOf(key), spot_.level + 1, className), 1);
    }
    // NOLINTNEXTLINE(misc-no-recursion)
    std::vector<std::shared_ptr<const Archivable>> decodeObjects(
        std::string_view key) const override {
        std::vector<std::shared_ptr<const Archivable>> objects;
        const ArchiveValue* value = wanted(key);
        if (value == nullptr) return objects;
        const auto* list = value->as<ArchiveList>();
        if (list == nullptr) {
            reading_.fail(placeOf(key), value->offset, kindOf(*value) + ", not a list of objects");
            return objects;
        }
        for (std::size_t i = 0; i < list->size() && !reading_.hasFailed(); ++i) {
            objects.push_back(
                keep(reading_.make((*list)[i], placeOf(key, i), spot_.level + kLevelInList, {}),
                     kLevelInList));
        }
        return objects;
    }
    void failWithError(const std::string& reason, std::string_view key) const override {
        if (const ArchiveValue* value = find(key)) {
            reading_.fail(placeOf(key), value->offset, reason);
        }
    }
    void failWithErrorAtIndex(const std::string& reason, std::string_view key,
                              std::size_t index) const override {
        const ArchiveValue* value = find(key);
        const auto* list = value != nullptr ? value->as<ArchiveList>() : nullptr;
        if (list != nullptr && index < list->size()) {
            reading_.fail(placeOf(key, index), (*list)[index].offset, reason);
        }
    }

  private:
    std::string placeOf(std::string_view key) const { return spot_.place + step(key); }
    std::string placeOf(std::string_view key, std::size_t index) const {
        return placeOf(key) + step(std::to_string(index));
    }

    /// The value under `key`, which counts as asked for; null when there is none.
    const ArchiveValue* find(std::string_view key) const {
        if (isReserved(key)) return nullptr;
        if (std::ranges::find(known_, key) == known_.end()) known_.emplace_back(key);
        const auto found = std::ranges::find(object_, key, &ArchiveMember::key);
        if (found == object_.end()) return nullptr;
        isAsked_[static_cast<std::size_t>(found - object_.begin())] = true;
        return &found->value;
    }

    /// The same, of a key that is missed unless it is optional.
    const ArchiveValue* wanted(std::string_view key) const {
        const ArchiveValue* value = find(key);
        if (value == nullptr && missing_.empty() && !isReserved(key) &&
            !reading_.classes.isOptional(className_, key)) {
            missing_ = key;
        }
        return value;
    }

    /// The value under `key` as `read` makes it; fails when it does not.
    template <typename T>
    T decoded(std::string_view key, std::optional<T> (*read)(const ArchiveValue&),
              const char* what) const {
        const ArchiveValue* value = wanted(key);
        if (value == nullptr) return {};
        auto result = read(*value);
        if (!result) {
            reading_.fail(placeOf(key), value->offset, kindOf(*value) + ", not " + what);
        }
        return std::move(result).value_or(T{});
    }

    std::shared_ptr<const Archivable> keep(Made made, int levelsDown) const {
        levels_ = std::max(levels_, made.levels + levelsDown);
        return std::move(made.object);
    }

    const ArchiveObject& object_;
    const Spot& spot_;
    std::string_view className_;
    Reading& reading_;
    // Decoding asks; the archive stays as it is.
    mutable std::vector<bool> isAsked_;
    mutable std::vector<std::string> known_;
    mutable std::string missing_;
    mutable int levels_ = kObjectLevels;
};

// NOLINTNEXTLINE(misc-no-recursion)
Made Reading::make(const ArchiveValue& value, const std::string& place, int level,
                   std::string_view className) {
    if (hasFailed() || value.as<std::monostate>() != nullptr) return {};
    if (const auto* text = value.as<std::string>()) {
        std::string reason;
        auto object = classes.makeFromText(className, *text, reason);
        return object != nullptr ? Made{object} : fail(place, value.offset, reason);
    }
    const auto* object = value.as<ArchiveObject>();
    if (object == nullptr) return fail(place, value.offset, kindOf(value) + ", not an object");
    const Spot spot{place, value.offset, level};
    const ArchiveValue* ref = memberOf(*object, kRefKey);
    const ArchiveValue* id = ref != nullptr ? ref : memberOf(*object, kIdKey);
    if (ref != nullptr && object->size() > 1) {
        return fail(place, value.offset, "\"ref\" beside other keys");
    }
    if (id == nullptr) return makeObject(*object, spot, className);
    const auto* number = id->as<std::int64_t>();
    if (number == nullptr) return fail(place, id->offset, kindOf(*id) + ", not a whole number");
    return makeShared(*number, spot, className);
}

// NOLINTNEXTLINE(misc-no-recursion)
Made Reading::makeShared(std::int64_t id, const Spot& spot, std::string_view className) {
    const auto found = shared.find(id);
    if (found == shared.end()) {
        return fail(spot.place, spot.offset, "no object has the id " + std::to_string(id));
    }
    Shared& target = found->second;
    if (target.state == Shared::State::Open) {
        return fail(spot.place, spot.offset, "an object that it stands in");
    }
    if (target.state == Shared::State::New) {
        target.state = Shared::State::Open;
        target.made = makeObject(target.object, {spot.place, target.offset, spot.level}, className);
        target.state = Shared::State::Done;
    }
    if (spot.level + target.made.levels - 1 > kDeepestArchive) {
        return fail(spot.place, spot.offset,
                    "nested deeper than " + std::to_string(kDeepestArchive));
    }
    return target.made;
}

// NOLINTNEXTLINE(misc-no-recursion)
Made Reading::makeObject(const ArchiveObject& object, const Spot& spot,
                         std::string_view className) {
    if (memberOf(object, kClassKey) != nullptr || className.empty()) {
        const std::string* name = classOf(object, spot);
        if (name == nullptr) return {};
        className = *name;
    }
    if (spot.level + kObjectLevels - 1 > kDeepestArchive) {
        return fail(spot.place, spot.offset,
                    "nested deeper than " + std::to_string(kDeepestArchive));
    }
    const TreeUnarchiver coder(object, spot, className, *this);
    auto result = classes.make(className, coder);
    coder.finish();
    if (result == nullptr) {
        return fail(spot.place, spot.offset, "no " + std::string(className));
    }
    return hasFailed() ? Made{} : Made{std::move(result), coder.levels()};
}

const std::string* Reading::classOf(const ArchiveObject& object, const Spot& spot) {
    const ArchiveValue* value = memberOf(object, kClassKey);
    if (value == nullptr) {
        fail(spot.place, spot.offset, "an object without \"class\"");
        return nullptr;
    }
    const auto* name = value->as<std::string>();
    const std::string place = spot.place + step(kClassKey);
    if (name == nullptr) {
        fail(place, value->offset, kindOf(*value) + ", not a text");
        return nullptr;
    }
    if (!classes.contains(*name)) {
        fail(place, value->offset, "unknown class" + suggestion(*name, classes.names()));
        return nullptr;
    }
    return name;
}

}  // namespace

std::optional<double> numberOf(const ArchiveValue& value) {
    if (const auto* integer = value.as<std::int64_t>()) return static_cast<double>(*integer);
    if (const auto* number = value.as<double>()) return *number;
    const auto* text = value.as<std::string>();
    const auto number = text != nullptr ? numberFromText(*text) : std::nullopt;
    return number && !std::isfinite(*number) ? number : std::nullopt;
}

std::optional<std::vector<double>> numbersOf(const ArchiveValue& value) {
    const auto* list = value.as<ArchiveList>();
    if (list == nullptr) return std::nullopt;
    std::vector<double> numbers;
    for (const ArchiveValue& member : *list) {
        const auto number = numberOf(member);
        if (!number) return std::nullopt;
        numbers.push_back(*number);
    }
    return numbers;
}

std::shared_ptr<const Archivable> objectOf(const ArchiveValue& tree, const ArchiveClasses& classes,
                                           std::string_view rootClass, ArchiveError& error) {
    error = {};
    Reading reading{classes, error};
    reading.findShared(tree);
    reading.checkRoot(tree, rootClass);
    const Made made = reading.make(tree, step(kRootKey), kRootLevel, rootClass);
    return reading.hasFailed() ? nullptr : made.object;
}

}  // namespace mezalith::platform::detail
