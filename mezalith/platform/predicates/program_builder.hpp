// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/predicates/format_predicate.hpp>
#include <mezalith/platform/predicates/program.hpp>

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::platform::predicates {

/// Thrown by the builder and the grammar, caught by the parser.
struct SyntaxError {
    std::size_t offset;
    std::string found;  ///< empty: what stands there
    std::string expected;
};

/// Builds a program from what the grammar recognises, in the order in which it is complete:
/// operands before what joins them. Throws a SyntaxError for what is grammatical but means nothing.
class ProgramBuilder {
  public:
    using Arguments = std::span<const PredicateArgument>;

    ProgramBuilder(std::string_view format, Arguments arguments);

    /// Whether the last operand is a value, so that a condition would need a comparison.
    bool endsInValue() const;

    // Operands. Each text is the part of the format that was recognised.
    void addWord(std::string_view word);  ///< TRUE, NULL, SELF, TRUEPREDICATE, ...
    void addNumber(std::string_view digits);
    void addText(std::string_view quotedText);
    void addArgument(std::string_view mark);
    void addName(std::string_view name);  ///< of the path that `addPath` completes
    void addPath(std::string_view path);

    // What joins or changes the last operands.
    void join(Operation operation, bool inverse = false);
    void negate(std::string_view all);  ///< a minus and its operand
    void deny(std::string_view all);    ///< a NOT and its operand
    void beginComparison(std::string_view sign);
    void setOptions(std::string_view letters);
    void endComparison();
    void beginQuantifier(std::string_view word);
    void endQuantifier();
    void beginList();
    void addMember();
    void endList(std::string_view all);
    /// Whether the list begun last has members.
    bool listHasMembers() const { return lists_.back().first != kNoNode; }
    /// The last operand with what stands around it.
    void widen(std::string_view all);

    /// One level deeper, at `place`.
    void enter(const char* place);
    void leave() { --depth_; }

    /// The finished program.
    std::unique_ptr<const Program> finish();

    [[noreturn]] void fail(const char* place, std::string expected) const;

  private:
    struct Operand {
        std::uint32_t node;
        std::size_t begin;  ///< the part of the format that it comes from
        std::size_t end;
    };
    struct Comparison {
        Operation operation;
        TextOptions options;
    };
    struct Chain {
        std::uint32_t first = kNoNode;
        std::uint32_t last = kNoNode;
    };

    [[noreturn]] void failAt(std::size_t offset, std::string found, std::string expected) const;
    std::size_t offsetOf(const char* place) const;
    void push(const Node& node, std::string_view from);
    std::uint32_t add(const Node& node);
    Operand pop();
    void append(Chain& chain, std::uint32_t node);
    void checkValue(const Operand& operand) const;
    void checkCondition(const Operand& operand) const;
    std::uint32_t constant(Value value);
    std::uint32_t listOf(std::span<const Value> values, std::string_view mark);
    const PredicateArgument& nextArgument(std::string_view mark);
    const Value& valueArgument(std::string_view mark, const char* expected);
    void checkArgument(const Value& value, std::string_view mark) const;
    void addKeyArgument(std::string_view mark);
    void addNumberArgument(std::string_view mark);
    void pushArgument(const Value& value, std::string_view mark);
    void checkBounds(const Operand& right) const;
    std::uint32_t compilePattern(const Operand& right, TextOptions options);
    void foldTexts(std::uint32_t index, TextOptions options);

    std::string_view format_;
    Arguments arguments_;
    std::size_t usedArguments_ = 0;
    std::unique_ptr<Program> program_ = std::make_unique<Program>();
    std::vector<Operand> operands_;
    std::vector<Comparison> comparisons_;
    std::vector<Quantifier> quantifiers_;
    std::vector<Chain> lists_;
    std::vector<std::uint32_t> lastOperand_;  ///< by node, of a sum, product, AND or OR
    std::vector<std::string> path_;
    int depth_ = 0;
};

}  // namespace mezalith::platform::predicates
