// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/date.hpp>
#include <mezalith/platform/predicates/format_predicate.hpp>

#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith::app {

/// The arguments are wrong; `main` prints the one-line message and answers 2.
class UsageError : public std::runtime_error {
  public:
    UsageError(const std::string& argument, const std::string& why);
};

/// The arguments without the program's name, as the parser can take them: it knows a number by the
/// digit behind its sign, so "-.5" becomes "-0.5", alone or at the head of a list.
std::vector<std::string> argumentsForParser(int count, const char* const* arguments);

/// `text` as a finite number. `name` is the argument's, for the UsageError that is thrown
/// otherwise.
double numberArgument(const std::string& name, std::string_view text);

/// The same for a number greater than 0.
double positiveArgument(const std::string& name, std::string_view text);

/// `text` as an instant, "YYYY-MM-DD" at 00:00 GMT or "YYYY-MM-DDTHH:MM:SSZ"; throws a UsageError
/// about the argument `name` for any other text and for days that there are not.
platform::Date dateArgument(const std::string& name, std::string_view text);

/// The form that it takes, for help texts.
inline constexpr char kDateForm[] = "YYYY-MM-DD[THH:MM:SSZ]";

/// The parts of `text` between `separator`s, one at least.
std::vector<std::string> split(std::string_view text, char separator);

/// `count` finite numbers with `separator` between them, as numberArgument reads them; `form`
/// ("WxH") shows in the UsageError what is wanted.
std::vector<double> numbersArgument(const std::string& name, std::string_view text, char separator,
                                    std::size_t count, const std::string& form);

/// The value and, when there is one, the layer it is for: "land:#fff" is ("land", "#fff").
struct LayerValue {
    std::optional<std::string> layer;
    std::string value;
};

/// Takes the prefix off at the last colon, so that layer names may hold colons.
LayerValue layerValue(std::string_view text);

/// `text` as a predicate. `name` is the argument's, for the UsageError that is thrown otherwise.
std::shared_ptr<const platform::FormatPredicate> predicateArgument(const std::string& name,
                                                                   std::string_view text);

}  // namespace mezalith::app
