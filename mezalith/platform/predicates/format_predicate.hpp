// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/predicate.hpp>

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace mezalith::platform {

namespace predicates {
struct Program;
}

/// What stands for a "%@", "%K" or "%d" of a predicate format: a value, or a list of them.
using PredicateArgument = std::variant<Value, std::vector<Value>>;

/// Why a text is no predicate.
struct MEZALITH_EXPORT PredicateError {
    std::size_t line = 1;    ///< from 1
    std::size_t column = 1;  ///< from 1, in characters
    std::string found;       ///< what stands there: a word in quotes, or words about it
    std::string expected;    ///< what should

    /// "line 1, column 6: found "AND", expected a value".
    std::string message() const;
};

/// A predicate written as text, such as `kind == "city" AND population > 1000000`; the language is
/// told in docs/predicates.md. It is compiled once, and asks objects for their values by key.
/// Asking does not allocate, but for comparisons under [c] or [d] with long texts that have
/// capitals or letters beyond ASCII, and for the first answers of regular expressions.
class MEZALITH_EXPORT FormatPredicate final : public Predicate {
  public:
    /// The predicate that `format` is with `arguments` in place of its "%"s, one by one. Null, and
    /// `error` set, when there is none: for what is not in the language, more than 64 levels of
    /// nesting or 64 KiB, arguments that are missing, left over or of the wrong kind.
    static std::shared_ptr<const FormatPredicate> predicateWithFormat(
        std::string_view format, std::span<const PredicateArgument> arguments = {},
        PredicateError* error = nullptr);

    /// The predicate that `encodeWithCoder` wrote; null, on which the archive fails, when its
    /// format is none.
    static std::shared_ptr<const FormatPredicate> initWithCoder(const KeyedUnarchiver& coder);
    /// The predicate whose `archiveText` is `text`; null, and the error's message, when it is none.
    static std::shared_ptr<const FormatPredicate> initWithText(std::string_view text,
                                                               std::string& reason);

    ~FormatPredicate() override;
    FormatPredicate(const FormatPredicate&) = delete;
    FormatPredicate& operator=(const FormatPredicate&) = delete;

    /// Keys are asked of `object`; all are null when it is null.
    bool evaluateWithObject(const Object* object) const override;

    /// The predicate's one canonical text, arguments filled in: reads back to a predicate with the
    /// same text that answers the same.
    std::string predicateFormat() const override { return format_; }

    std::string_view archiveClassName() const override { return "Predicate"; }
    /// The format, under "format".
    void encodeWithCoder(KeyedArchiver& coder) const override;
    /// The format.
    std::optional<std::string> archiveText() const override { return format_; }

  private:
    FormatPredicate(std::unique_ptr<const predicates::Program> program, std::string format);

    std::unique_ptr<const predicates::Program> program_;
    std::string format_;
};

}  // namespace mezalith::platform
