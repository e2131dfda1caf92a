// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/evaluation.hpp>
#include <mezalith/platform/predicates/like_pattern.hpp>
#include <mezalith/platform/predicates/operand.hpp>

#include <cmath>
#include <compare>
#include <limits>
#include <span>
#include <utility>

namespace mezalith::platform::predicates {
namespace {

using Kind = Operand::Kind;

/// Sets `sum` to itself and `operand`, or less it. What integers cannot hold is rounded.
void add(Operand& sum, const Operand& operand, bool inverse) {
    std::int64_t whole = 0;
    if (sum.kind() == Kind::Integer && operand.kind() == Kind::Integer &&
        !(inverse ? __builtin_sub_overflow(sum.integer(), operand.integer(), &whole)
                  : __builtin_add_overflow(sum.integer(), operand.integer(), &whole))) {
        return sum.setInteger(whole);
    }
    sum.setReal(inverse ? sum.real() - operand.real() : sum.real() + operand.real());
}

/// Likewise for products; quotients are never rounded to integers.
void multiply(Operand& product, const Operand& operand, bool inverse) {
    std::int64_t whole = 0;
    if (!inverse && product.kind() == Kind::Integer && operand.kind() == Kind::Integer &&
        !__builtin_mul_overflow(product.integer(), operand.integer(), &whole)) {
        return product.setInteger(whole);
    }
    product.setReal(inverse ? product.real() / operand.real() : product.real() * operand.real());
}

void negate(Operand& operand) {
    if (operand.kind() == Kind::Integer &&
        operand.integer() != std::numeric_limits<std::int64_t>::min()) {
        operand.setInteger(-operand.integer());
    } else if (operand.isNumber()) {
        operand.setReal(-operand.real());
    } else {
        operand.setObject(nullptr);
    }
}

template <typename Test>
bool testTexts(const Operand& left, const Operand& right, TextOptions options, Test test) {
    if (left.kind() != Kind::Text || right.kind() != Kind::Text) return false;
    if (!options.any()) return test(left.text(), right.text());
    const FoldedText a(left.text(), left.isFolded() ? TextOptions{} : options);
    const FoldedText b(right.text(), right.isFolded() ? TextOptions{} : options);
    return test(a.view(), b.view());
}

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

class Evaluation {
  public:
    Evaluation(const Program& program, const Object* object) : program_(program), object_(object) {}

    bool holds(std::uint32_t index) const {
        const Node& node = program_[index];
        switch (node.operation) {
            case Operation::Or:
                return anyOperand(node, [this](std::uint32_t i) { return holds(i); });
            case Operation::And:
                return !anyOperand(node, [this](std::uint32_t i) { return !holds(i); });
            case Operation::Not:
                return !holds(node.first);
            case Operation::True:
                return true;
            case Operation::False:
                return false;
            default:
                return compares(node);
        }
    }

  private:
    template <typename Test>
    bool anyOperand(const Node& node, Test test) const {
        for (std::uint32_t i = node.first; i != kNoNode; i = program_[i].next) {
            if (test(i)) return true;
        }
        return false;
    }

    /// Whether a member of the collection passes; null has none, a single value is its own.
    template <typename Test>
    bool anyMember(const Operand& collection, Test test) const {
        if (collection.kind() == Kind::Null) return false;
        if (collection.kind() == Kind::List) {
            return anyOperand(program_[collection.list()], [&](std::uint32_t i) {
                Operand member;
                load(i, member);
                return test(member);
            });
        }
        if (collection.kind() != Kind::Table) return test(collection);
        for (const auto& entry : *collection.table()) {
            Operand member;
            member.set(entry.value);
            if (test(member)) return true;
        }
        return false;
    }

    bool compares(const Node& node) const {
        Operand left, right;
        load(node.first, left);
        load(program_[node.first].next, right);
        const auto meets = [&](const Operand& member) { return compares(node, member, right); };
        switch (node.quantifier) {
            case Quantifier::Any:
                return anyMember(left, meets);
            case Quantifier::None:
                return !anyMember(left, meets);
            case Quantifier::All:
                return !anyMember(left, [&](const Operand& member) { return !meets(member); });
            default:
                return meets(left);
        }
    }

    bool compares(const Node& node, const Operand& left, const Operand& right) const {
        const TextOptions options = node.options;
        switch (node.operation) {
            case Operation::Equal:
                return isEqual(left, right, options);
            case Operation::NotEqual:
                return !isEqual(left, right, options);
            case Operation::Less:
                return std::is_lt(order(left, right, options));
            case Operation::LessOrEqual:
                return std::is_lteq(order(left, right, options));
            case Operation::Greater:
                return std::is_gt(order(left, right, options));
            case Operation::GreaterOrEqual:
                return std::is_gteq(order(left, right, options));
            case Operation::Between:
                return isBetween(left, program_[right.list()], options);
            case Operation::In:
                return isIn(left, right, options);
            case Operation::Contains:
                return isIn(right, left, options);
            default:
                return comparesTexts(node, left, right);
        }
    }

    bool comparesTexts(const Node& node, const Operand& left, const Operand& right) const {
        // A pattern knows of case by itself.
        TextOptions options = node.options;
        if (node.operation == Operation::Matches) options.ignoresCase = false;
        return testTexts(left, right, options, [&](std::string_view text, std::string_view other) {
            switch (node.operation) {
                case Operation::BeginsWith:
                    return text.starts_with(other);
                case Operation::EndsWith:
                    return text.ends_with(other);
                case Operation::Like:
                    return isLike(text, other);
                default:
                    return RE2::FullMatch({text.data(), text.size()},
                                          *program_.patterns[node.index]);
            }
        });
    }

    bool isEqual(const Operand& left, const Operand& right, TextOptions options) const {
        if (left.kind() != Kind::List || right.kind() != Kind::List) {
            return isSame(left, right, options);
        }
        std::uint32_t i = program_[left.list()].first, j = program_[right.list()].first;
        while (i != kNoNode && j != kNoNode) {
            Operand a, b;
            load(i, a);
            load(j, b);
            if (!isEqual(a, b, options)) return false;
            i = program_[i].next;
            j = program_[j].next;
        }
        return i == j;
    }

    bool isBetween(const Operand& value, const Node& bounds, TextOptions options) const {
        Operand low, high;
        load(bounds.first, low);
        load(program_[bounds.first].next, high);
        return std::is_gteq(order(value, low, options)) &&
               std::is_lteq(order(value, high, options));
    }

    bool isIn(const Operand& value, const Operand& whole, TextOptions options) const {
        if (whole.kind() == Kind::Text) return testTexts(whole, value, options, contains);
        if (whole.kind() != Kind::List && whole.kind() != Kind::Table) return false;
        return anyMember(whole,
                         [&](const Operand& member) { return isEqual(value, member, options); });
    }

    void load(std::uint32_t index, Operand& operand) const {
        const Node& node = program_[index];
        switch (node.operation) {
            case Operation::Self:
                return operand.setObject(object_);
            case Operation::Path:
                return loadPath(program_.paths[node.index], operand);
            case Operation::List:
                return operand.setList(index);
            case Operation::Constant:
                if (node.folded) return operand.setText(program_.foldedTexts[node.textIndex], true);
                return operand.set(program_.constants[node.index]);
            default:
                return loadResult(node, operand);
        }
    }

    void loadPath(std::span<const std::string> path, Operand& operand) const {
        if (object_ == nullptr) return;
        std::shared_ptr<const Object> owner;
        KeyedValue value = object_->valueForKey(path[0]);
        for (const std::string& key : path.subspan(1)) {
            if (const auto* object = std::get_if<std::shared_ptr<const Object>>(&value)) {
                owner = *object;
                value = owner != nullptr ? owner->valueForKey(key) : KeyedValue();
            } else if (const auto* table = std::get_if<const Dictionary*>(&value)) {
                value = *table != nullptr ? valueForKey(**table, key) : KeyedValue();
            } else {
                return;
            }
        }
        operand.set(std::move(value), std::move(owner));
    }

    /// Of arithmetic: null when an operand is no number or the result is not finite.
    void loadResult(const Node& node, Operand& result) const {
        load(node.first, result);
        if (node.operation == Operation::Minus) return negate(result);
        for (std::uint32_t i = program_[node.first].next; i != kNoNode; i = program_[i].next) {
            Operand operand;
            load(i, operand);
            if (!result.isNumber() || !operand.isNumber()) return result.setObject(nullptr);
            if (node.operation == Operation::Sum) {
                add(result, operand, program_[i].inverse);
            } else if (node.operation == Operation::Product) {
                multiply(result, operand, program_[i].inverse);
            } else {
                result.setReal(std::pow(result.real(), operand.real()));
            }
        }
    }

    const Program& program_;
    const Object* object_;
};

}  // namespace

bool holds(const Program& program, const Object* object) {
    return Evaluation(program, object).holds(program.root);
}

}  // namespace mezalith::platform::predicates
