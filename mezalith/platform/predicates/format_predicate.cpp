// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/evaluation.hpp>
#include <mezalith/platform/predicates/format_predicate.hpp>
#include <mezalith/platform/predicates/parser.hpp>
#include <mezalith/platform/predicates/program.hpp>
#include <mezalith/platform/predicates/syntax.hpp>

#include <utility>

namespace mezalith::platform {
namespace {

constexpr std::string_view kFormatKey = "format";

}  // namespace

std::string PredicateError::message() const {
    return "line " + std::to_string(line) + ", column " + std::to_string(column) + ": found " +
           found + ", expected " + expected;
}

FormatPredicate::FormatPredicate(std::unique_ptr<const predicates::Program> program,
                                 std::string format)
    : program_(std::move(program)), format_(std::move(format)) {}

FormatPredicate::~FormatPredicate() = default;

std::shared_ptr<const FormatPredicate> FormatPredicate::predicateWithFormat(
    std::string_view format, std::span<const PredicateArgument> arguments, PredicateError* error) {
    PredicateError unasked;
    PredicateError& problem = error != nullptr ? *error : unasked;
    auto program = predicates::parsePredicate(format, arguments, problem);
    if (program == nullptr) return nullptr;
    std::string canonical = predicates::formatOf(*program);
    if (canonical.size() > predicates::kLongestFormat) {
        problem = predicates::tooLong(canonical.size());
        return nullptr;
    }
    return std::shared_ptr<const FormatPredicate>(
        new FormatPredicate(std::move(program), std::move(canonical)));
}

std::shared_ptr<const FormatPredicate> FormatPredicate::initWithText(std::string_view text,
                                                                     std::string& reason) {
    PredicateError error;
    auto predicate = predicateWithFormat(text, {}, &error);
    if (predicate == nullptr) reason = "no predicate: " + error.message();
    return predicate;
}

std::shared_ptr<const FormatPredicate> FormatPredicate::initWithCoder(
    const KeyedUnarchiver& coder) {
    std::string reason;
    auto predicate = initWithText(coder.decodeString(kFormatKey), reason);
    if (predicate == nullptr) coder.failWithError(reason, kFormatKey);
    return predicate;
}

bool FormatPredicate::evaluateWithObject(const Object* object) const {
    return predicates::holds(*program_, object);
}

void FormatPredicate::encodeWithCoder(KeyedArchiver& coder) const {
    coder.encodeString(format_, kFormatKey);
}

}  // namespace mezalith::platform
