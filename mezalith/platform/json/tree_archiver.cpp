// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/tree_archiver.hpp>
#include <mezalith/platform/json/utf8.hpp>
#include <mezalith/platform/number_text.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <unordered_map>
#include <unordered_set>

namespace mezalith::platform::detail {
namespace {

bool fits(int level) { return level + kObjectLevels - 1 <= kDeepestArchive; }

/// Finds the objects that stand in an archive more than once.
class Census final : public KeyedArchiver {
  public:
    /// How often each object stands in the archive.
    std::unordered_map<const Archivable*, int> counts;

    // No deeper than what is written.
    // NOLINTNEXTLINE(misc-no-recursion)
    void visit(const Archivable* object, int level) {
        if (object == nullptr || !fits(level) || object->archiveText() || ++counts[object] > 1) {
            return;
        }
        const int outer = std::exchange(level_, level);
        object->encodeWithCoder(*this);
        level_ = outer;
    }

    void encodeBool(bool, std::string_view) override {}
    void encodeInt(std::int32_t, std::string_view) override {}
    void encodeFloat(float, std::string_view) override {}
    void encodeDouble(double, std::string_view) override {}
    void encodeBytes(std::span<const std::byte>, std::string_view) override {}
    void encodeString(std::string_view, std::string_view) override {}
    void encodeNumber(std::optional<double>, std::string_view) override {}
    void encodeDoubles(std::span<const double>, std::string_view) override {}
    // NOLINTNEXTLINE(misc-no-recursion)
    void encodeObject(const Archivable* object, std::string_view) override {
        visit(object, level_ + 1);
    }
    // NOLINTNEXTLINE(misc-no-recursion)
    void encodeObjects(std::span<const Archivable* const> objects, std::string_view) override {
        for (const Archivable* object : objects) visit(object, level_ + kLevelInList);
    }

  private:
    int level_ = kRootLevel;
};

/// What was written of an object.
struct Written {
    ArchiveValue value;
    int levels = 0;  ///< that it takes with all that is in it
};

/// An object that can be referred to.
struct Shared {
    std::int64_t id = 0;
    int levels = 0;
};

/// What is known of all of an archive while it is written.
struct Writing {
    const std::unordered_map<const Archivable*, int>& counts;
    std::unordered_map<const Archivable*, Shared> shared{};
    std::unordered_set<const Archivable*> open{};  ///< being written
};

/// The number nearest to `value` that has the shortest text.
double shortestDouble(float value) {
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    const auto nearby = numberFromText(
        std::string_view(buffer.data(), static_cast<std::size_t>(end - buffer.data())));
    const double exact = value;
    return nearby && static_cast<float>(*nearby) == value ? *nearby : exact;
}

ArchiveValue listOf(std::span<const double> values) {
    ArchiveList list;
    for (const double value : values) list.push_back({value});
    return {std::move(list)};
}

/// Writes the fields of one object.
class TreeArchiver final : public KeyedArchiver {
  public:
    // No deeper than `fits` lets it.
    // NOLINTNEXTLINE(misc-no-recursion)
    static Written written(const Archivable* object, int level, Writing& writing) {
        if (object == nullptr) return {};
        if (auto text = object->archiveText()) return {{mendedUTF8(*text)}};
        if (writing.open.contains(object)) return {};
        if (const auto known = writing.shared.find(object); known != writing.shared.end()) {
            return reference(known->second, level);
        }
        return fits(level) ? whole(*object, level, writing) : Written();
    }

    void encodeBool(bool value, std::string_view key) override { put(key, {value}); }
    void encodeInt(std::int32_t value, std::string_view key) override {
        put(key, {std::int64_t{value}});
    }
    void encodeFloat(float value, std::string_view key) override {
        put(key, {shortestDouble(value)});
    }
    void encodeDouble(double value, std::string_view key) override { put(key, {value}); }
    void encodeBytes(std::span<const std::byte> bytes, std::string_view key) override {
        put(key, {ArchiveBytes(bytes.begin(), bytes.end())});
    }
    void encodeString(std::string_view value, std::string_view key) override {
        put(key, {mendedUTF8(value)});
    }
    void encodeNumber(std::optional<double> value, std::string_view key) override {
        put(key, value ? ArchiveValue{*value} : ArchiveValue{});
    }
    void encodeDoubles(std::span<const double> values, std::string_view key) override {
        put(key, listOf(values));
    }
    void encodeBytesOfDoubles(std::span<const double> values, std::string_view key) override {
        const auto bytes = std::as_bytes(values);
        ArchiveObject both;
        both.push_back({std::string(kDoublesKey), listOf(values)});
        both.push_back({std::string(kBytesKey), {ArchiveBytes(bytes.begin(), bytes.end())}});
        put(key, values.empty() ? listOf(values) : ArchiveValue{std::move(both)});
    }
    // NOLINTNEXTLINE(misc-no-recursion)
    void encodeObject(const Archivable* object, std::string_view key) override {
        put(key, keep(written(object, level_ + 1, writing_), 1));
    }
    // NOLINTNEXTLINE(misc-no-recursion)
    void encodeObjects(std::span<const Archivable* const> objects, std::string_view key) override {
        ArchiveList list;
        for (const Archivable* object : objects) {
            list.push_back(keep(written(object, level_ + kLevelInList, writing_), kLevelInList));
        }
        put(key, {std::move(list)});
    }

  private:
    TreeArchiver(int level, Writing& writing) : level_(level), writing_(writing) {}

    static Written reference(const Shared& shared, int level) {
        if (level + shared.levels - 1 > kDeepestArchive) return {};
        ArchiveObject object;
        object.push_back({std::string(kRefKey), {shared.id}});
        return {{std::move(object)}, shared.levels};
    }

    // NOLINTNEXTLINE(misc-no-recursion)
    static Written whole(const Archivable& object, int level, Writing& writing) {
        TreeArchiver archiver(level, writing);
        archiver.fields_.push_back(
            {std::string(kClassKey), {mendedUTF8(object.archiveClassName())}});
        const auto count = writing.counts.find(&object);
        const bool isShared = count != writing.counts.end() && count->second > 1;
        if (isShared) {
            const auto id = static_cast<std::int64_t>(writing.shared.size()) + 1;
            writing.shared[&object].id = id;
            archiver.fields_.push_back({std::string(kIdKey), {id}});
        }
        writing.open.insert(&object);
        object.encodeWithCoder(archiver);
        writing.open.erase(&object);
        if (isShared) writing.shared[&object].levels = archiver.levels_;
        return {{std::move(archiver.fields_)}, archiver.levels_};
    }

    ArchiveValue keep(Written written, int levelsDown) {
        levels_ = std::max(levels_, written.levels + levelsDown);
        return std::move(written.value);
    }

    void put(std::string_view key, ArchiveValue value) {
        if (isReserved(key)) return;
        const auto found = std::ranges::find(fields_, key, &ArchiveMember::key);
        if (found != fields_.end()) {
            found->value = std::move(value);
        } else {
            fields_.push_back({mendedUTF8(key), std::move(value)});
        }
    }

    ArchiveObject fields_;
    int level_;
    int levels_ = kObjectLevels;
    Writing& writing_;
};

}  // namespace

bool isReserved(std::string_view key) {
    return key == kClassKey || key == kIdKey || key == kRefKey;
}

ArchiveValue treeOf(const Archivable* root) {
    Census census;
    census.visit(root, kRootLevel);
    Writing writing{census.counts};
    return TreeArchiver::written(root, kRootLevel, writing).value;
}

}  // namespace mezalith::platform::detail
