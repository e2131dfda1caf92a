// SPDX-License-Identifier: MIT
#include "apps/mezalith/arguments.hpp"

#include "host/failure.hpp"
#include <mezalith/platform/number_text.hpp>

#include <cmath>
#include <cstddef>

namespace mezalith::app {
namespace {

bool isDigit(char letter) { return letter >= '0' && letter <= '9'; }

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

}  // namespace mezalith::app
