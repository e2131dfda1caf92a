// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace mezalith::platform {

/// An attribute's value. `std::monostate` is null; text is UTF-8.
using Value = std::variant<std::monostate, bool, std::int64_t, double, std::string>;

/// An attribute table: values by name, in the order of the names' bytes. The values lie in one run
/// of memory, and the records of one source may share their names: to look a name up in one after
/// the other costs little more than to fetch its value.
class MEZALITH_EXPORT Dictionary {
  public:
    /// Each once, in the order of their bytes.
    using Names = std::vector<std::string>;

    struct Entry {
        const std::string& name;
        const Value& value;
    };

    /// Goes through the entries.
    class Iterator {
      public:
        using difference_type = std::ptrdiff_t;
        using value_type = Entry;

        Iterator() = default;
        Iterator(const std::string* name, const Value* value) : name_(name), value_(value) {}
        Entry operator*() const { return {*name_, *value_}; }
        Iterator& operator++() {
            ++name_;
            ++value_;
            return *this;
        }
        Iterator operator++(int) {
            const Iterator before = *this;
            ++*this;
            return before;
        }
        bool operator==(const Iterator& other) const { return name_ == other.name_; }

      private:
        const std::string* name_ = nullptr;
        const Value* value_ = nullptr;
    };

    Dictionary() = default;
    /// Of several entries of one name the last counts.
    Dictionary(std::initializer_list<std::pair<std::string, Value>> entries);
    /// A record of a source, whose columns have these names; as many values, in their order.
    Dictionary(std::shared_ptr<const Names> names, std::vector<Value> values);

    std::size_t size() const { return values_.size(); }
    bool empty() const { return values_.empty(); }
    Iterator begin() const { return {names().data(), values_.data()}; }
    Iterator end() const { return {names().data() + size(), values_.data() + size()}; }

    /// Null when there is no such name. Good until the table is changed.
    const Value* find(std::string_view name) const;
    bool contains(std::string_view name) const { return find(name) != nullptr; }
    /// The value of this name, which comes into being, null, when there is none.
    Value& operator[](std::string_view name);

    friend bool operator==(const Dictionary& a, const Dictionary& b) {
        return a.names() == b.names() && a.values_ == b.values_;
    }

  private:
    const Names& names() const;
    std::size_t placeOf(std::string_view name) const;

    std::shared_ptr<const Names> names_;  ///< null for none
    std::vector<Value> values_;
};

}  // namespace mezalith::platform
