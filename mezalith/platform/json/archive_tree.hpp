// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <variant>
#include <vector>

/// What archives hold, whichever way their bytes are written: a tree of values, bounded in depth
/// and size. Each value knows where in the bytes it begins.
namespace mezalith::platform::detail {

struct ArchiveValue;
struct ArchiveMember;
using ArchiveBytes = std::vector<std::byte>;
using ArchiveList = std::vector<ArchiveValue>;
/// In the order written; no key twice.
using ArchiveObject = std::vector<ArchiveMember>;

struct ArchiveValue {
    std::variant<std::monostate, bool, std::int64_t, double, std::string, ArchiveBytes, ArchiveList,
                 ArchiveObject>
        value;  // no initialiser: ArchiveMember is not known yet
    std::size_t offset = 0;

    template <typename T>
    const T* as() const {
        return std::get_if<T>(&value);
    }
    template <typename T>
    T* as() {
        return std::get_if<T>(&value);
    }
};

struct ArchiveMember {
    std::string key;
    ArchiveValue value;
    std::size_t offset = 0;  ///< of the key
};

/// Why bytes are no archive, or not one of what they should be.
struct ArchiveError {
    std::string reason;
    std::size_t offset = 0;  ///< of what is wrong
};

/// Lists and objects within each other, and what all of an archive may hold.
inline constexpr int kDeepestArchive = 128;
inline constexpr std::size_t kLongestArchive = std::size_t{4} * 1024 * 1024;
inline constexpr std::size_t kMostValues = std::size_t{1} << 18;

inline constexpr std::string_view kRootKey = "root";
inline constexpr std::string_view kArraysKey = "arrays";

/// Null when the object has no such key.
MEZALITH_EXPORT const ArchiveValue* memberOf(const ArchiveObject& object, std::string_view key);

/// What a value is, for messages: "a text", "the number 1.5".
std::string kindOf(const ArchiveValue& value);

/// The reason why there are too many bytes, if there are.
std::optional<ArchiveError> sizeError(std::size_t size);

/// Builds a tree from the events of a reader. Every call answers whether the tree can go on; if not
/// there is an error.
class ArchiveBuilder {
  public:
    bool add(ArchiveValue value);
    bool addKey(std::string key, std::size_t offset);
    /// Begins a list or an object, which is `empty` yet.
    bool open(ArchiveValue empty);
    bool close();
    bool fail(std::string reason, std::size_t offset);

    const ArchiveError& error() const { return error_; }
    ArchiveValue takeRoot() { return std::move(root_); }

  private:
    struct Open {
        ArchiveValue* value;  ///< stays where it is: what holds it grows only when it is closed
        std::unordered_set<std::string> keys;
    };

    ArchiveValue* place(ArchiveValue value);

    ArchiveValue root_;
    std::vector<Open> open_;
    std::size_t count_ = 0;
    ArchiveError error_;
};

/// The document that holds `content` under `key` in the archives' frame.
ArchiveValue framed(std::string_view key, ArchiveValue content);

/// What `framed` put under `key`; none, and the error, for what is no archive of this kind and
/// version or holds more.
std::optional<ArchiveValue> contentOf(ArchiveValue document, std::string_view key,
                                      ArchiveError& error);

}  // namespace mezalith::platform::detail
