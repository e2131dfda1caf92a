// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"

#include "host/failure.hpp"
#include <mezalith/platform/number_text.hpp>

#include <cctype>
#include <chrono>
#include <cmath>
#include <cstddef>

namespace mezalith::app {
namespace {

bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

/// The number that `text` has where `form` has `letter`s; the other characters of the form stand
/// for themselves. Empty for texts that are not of the form.
std::optional<int> numberAt(std::string_view text, std::string_view form, char letter) {
    int number = 0;
    if (text.size() != form.size()) return std::nullopt;
    for (std::size_t i = 0; i < form.size(); ++i) {
        const bool isNumber = std::islower(static_cast<unsigned char>(form[i])) != 0;
        if (isNumber ? !isDigit(text[i]) : text[i] != form[i]) return std::nullopt;
        if (form[i] == letter) number = number * 10 + (text[i] - '0');
    }
    return number;
}

}  // namespace

UsageError::UsageError(const std::string& argument, const std::string& why)
    : std::runtime_error(host::inOneLine(argument + ": " + why)) {}

std::vector<std::string> argumentsForParser(int count, const char* const* arguments) {
    std::vector<std::string> result;
    for (int i = 1; i < count; ++i) {
        std::string argument = arguments[i];
        const bool bare = argument.size() > 2 && argument.starts_with("-.") && isDigit(argument[2]);
        if (bare) argument.insert(1, "0");
        result.push_back(std::move(argument));
    }
    return result;
}

double numberArgument(const std::string& name, std::string_view text) {
    const std::optional<double> number = platform::numberFromText(text);
    if (!number || !std::isfinite(*number)) {
        throw UsageError(name, "\"" + std::string(text) + "\" is not a number");
    }
    return *number;
}

double positiveArgument(const std::string& name, std::string_view text) {
    const double number = numberArgument(name, text);
    if (number <= 0) throw UsageError(name, std::string(text) + " is not greater than 0");
    return number;
}

platform::Date dateArgument(const std::string& name, std::string_view text) {
    constexpr std::string_view kDay = "yyyy-mm-dd", kInstant = "yyyy-mm-ddThh:ii:ssZ";
    const std::string_view form = text.size() == kDay.size() ? kDay : kInstant;
    const auto year = numberAt(text, form, 'y');
    if (!year)
        throw UsageError(name, "\"" + std::string(text) + "\" is not of the form " + kDateForm);
    const auto at = [&](char letter) { return numberAt(text, form, letter).value_or(0); };
    const std::chrono::year_month_day day(std::chrono::year(*year) / at('m') / at('d'));
    if (!day.ok() || at('h') > 23 || at('i') > 59 || at('s') > 59) {
        throw UsageError(name, "there is no " + std::string(text));
    }
    return std::chrono::sys_days(day) + std::chrono::hours(at('h')) +
           std::chrono::minutes(at('i')) + std::chrono::seconds(at('s'));
}

std::vector<std::string> split(std::string_view text, char separator) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    while (true) {
        const std::size_t end = text.find(separator, begin);
        parts.emplace_back(text.substr(begin, end - begin));
        if (end == std::string_view::npos) return parts;
        begin = end + 1;
    }
}

std::vector<double> numbersArgument(const std::string& name, std::string_view text, char separator,
                                    std::size_t count, const std::string& form) {
    const std::vector<std::string> parts = split(text, separator);
    if (parts.size() != count) {
        throw UsageError(name, "\"" + std::string(text) + "\" is not of the form " + form);
    }
    std::vector<double> numbers;
    numbers.reserve(parts.size());
    for (const std::string& part : parts) numbers.push_back(numberArgument(name, part));
    return numbers;
}

LayerValue layerValue(std::string_view text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos) return {std::nullopt, std::string(text)};
    return {std::string(text.substr(0, colon)), std::string(text.substr(colon + 1))};
}

std::shared_ptr<const platform::FormatPredicate> predicateArgument(const std::string& name,
                                                                   std::string_view text) {
    platform::PredicateError error;
    auto predicate = platform::FormatPredicate::predicateWithFormat(text, {}, &error);
    if (predicate == nullptr) throw UsageError(name, error.message());
    return predicate;
}

}  // namespace mezalith::app
