// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/object.hpp>
#include <mezalith/platform/predicates/folded_text.hpp>

#include <compare>
#include <cstdint>
#include <memory>
#include <string_view>

namespace mezalith::platform::predicates {

/// A value while a predicate is evaluated, with what keeps it alive.
class Operand {
  public:
    enum class Kind : std::uint8_t {
        Null,
        Integer,  ///< booleans, too
        Real,
        Text,
        Table,
        Object,
        List,  ///< of the predicate's own
    };

    Operand() = default;
    Operand(const Operand&) = delete;
    Operand& operator=(const Operand&) = delete;

    Kind kind() const { return kind_; }
    bool isNumber() const { return kind_ == Kind::Integer || kind_ == Kind::Real; }
    /// By kind; the other accessors answer 0, empty or null.
    std::int64_t integer() const { return integer_; }
    double real() const { return kind_ == Kind::Integer ? static_cast<double>(integer_) : real_; }
    std::string_view text() const { return text_; }
    /// The text is folded already.
    bool isFolded() const { return folded_; }
    const Dictionary* table() const { return table_; }
    const Object* object() const { return object_; }
    /// The node of a list.
    std::uint32_t list() const { return list_; }

    void setInteger(std::int64_t value);
    /// A number that is not finite is null.
    void setReal(double value);
    void setText(std::string_view text, bool folded);
    void setObject(const Object* object);
    void setList(std::uint32_t node);
    void set(const Value& value);
    /// What an object answered; `owner` keeps what it borrows.
    void set(KeyedValue value, std::shared_ptr<const Object> owner);

  private:
    void look();

    Kind kind_ = Kind::Null;
    bool folded_ = false;
    std::int64_t integer_ = 0;
    double real_ = 0;
    std::string_view text_;
    const Dictionary* table_ = nullptr;
    const Object* object_ = nullptr;
    std::uint32_t list_ = 0;
    KeyedValue held_;
    std::shared_ptr<const Object> owner_;
};

/// Numbers by value, exactly, also between integers and doubles; texts by their characters, as the
/// options see them; anything else is unordered.
std::partial_ordering order(const Operand& left, const Operand& right, TextOptions options);

/// Equal in order, or both null, or the same table or object. Lists are not compared.
bool isSame(const Operand& left, const Operand& right, TextOptions options);

}  // namespace mezalith::platform::predicates
