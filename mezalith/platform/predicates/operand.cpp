// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/operand.hpp>

#include <cmath>
#include <compare>
#include <type_traits>
#include <utility>
#include <variant>

namespace mezalith::platform::predicates {
namespace {

constexpr double kIntegersEnd = 0x1p63;

std::partial_ordering orderOf(std::int64_t integer, double real) {
    // Through doubles, integers beyond 2^53 would lose their last digits.
    if (std::isnan(real)) return std::partial_ordering::unordered;
    if (real >= kIntegersEnd) return std::partial_ordering::less;
    if (real < -kIntegersEnd) return std::partial_ordering::greater;
    const double whole = std::floor(real);
    const auto below = static_cast<std::int64_t>(whole);
    if (integer != below) return integer <=> below;
    return whole < real ? std::partial_ordering::less : std::partial_ordering::equivalent;
}

std::partial_ordering reversed(std::partial_ordering order) {
    if (std::is_lt(order)) return std::partial_ordering::greater;
    return std::is_gt(order) ? std::partial_ordering::less : order;
}

std::partial_ordering orderOfNumbers(const Operand& left, const Operand& right) {
    using Kind = Operand::Kind;
    if (left.kind() == Kind::Real && right.kind() == Kind::Real)
        return left.real() <=> right.real();
    if (left.kind() == Kind::Real) return reversed(orderOf(right.integer(), left.real()));
    if (right.kind() == Kind::Real) return orderOf(left.integer(), right.real());
    return left.integer() <=> right.integer();
}

std::strong_ordering orderOfTexts(const Operand& left, const Operand& right, TextOptions options) {
    if (!options.any()) return left.text() <=> right.text();
    const FoldedText a(left.text(), left.isFolded() ? TextOptions{} : options);
    const FoldedText b(right.text(), right.isFolded() ? TextOptions{} : options);
    return a.view() <=> b.view();
}

}  // namespace

void Operand::setInteger(std::int64_t value) {
    kind_ = Kind::Integer;
    integer_ = value;
}

void Operand::setReal(double value) {
    kind_ = std::isfinite(value) ? Kind::Real : Kind::Null;
    real_ = value;
}

void Operand::setText(std::string_view text, bool folded) {
    kind_ = Kind::Text;
    text_ = text;
    folded_ = folded;
}

void Operand::setObject(const Object* object) {
    kind_ = object != nullptr ? Kind::Object : Kind::Null;
    object_ = object;
}

void Operand::setList(std::uint32_t node) {
    kind_ = Kind::List;
    list_ = node;
}

void Operand::set(const Value& value) {
    if (const auto* flag = std::get_if<bool>(&value)) setInteger(*flag ? 1 : 0);
    if (const auto* whole = std::get_if<std::int64_t>(&value)) setInteger(*whole);
    if (const auto* real = std::get_if<double>(&value)) setReal(*real);
    if (const auto* text = std::get_if<std::string>(&value)) setText(*text, false);
}

void Operand::set(KeyedValue value, std::shared_ptr<const Object> owner) {
    held_ = std::move(value);
    owner_ = std::move(owner);
    std::visit(
        [this](const auto& held) {
            using Held = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<Held, double>) {
                setReal(held);
            } else if constexpr (std::is_integral_v<Held>) {
                setInteger(held);
            } else if constexpr (std::is_convertible_v<Held, std::string_view>) {
                setText(held, false);
            } else if constexpr (std::is_same_v<Held, const Dictionary*>) {
                kind_ = held != nullptr ? Kind::Table : Kind::Null;
                table_ = held;
            } else if constexpr (std::is_same_v<Held, std::shared_ptr<const Object>>) {
                setObject(held.get());
            }
        },
        held_);
}

std::partial_ordering order(const Operand& left, const Operand& right, TextOptions options) {
    using Kind = Operand::Kind;
    if (left.isNumber() && right.isNumber()) return orderOfNumbers(left, right);
    if (left.kind() == Kind::Text && right.kind() == Kind::Text) {
        return orderOfTexts(left, right, options);
    }
    return std::partial_ordering::unordered;
}

bool isSame(const Operand& left, const Operand& right, TextOptions options) {
    using Kind = Operand::Kind;
    if (left.kind() == right.kind()) {
        if (left.kind() == Kind::Null) return true;
        if (left.kind() == Kind::Table) return *left.table() == *right.table();
        if (left.kind() == Kind::Object) return left.object() == right.object();
    }
    return std::is_eq(order(left, right, options));
}

}  // namespace mezalith::platform::predicates
