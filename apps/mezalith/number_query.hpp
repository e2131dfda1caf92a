// SPDX-License-Identifier: MIT
#pragma once

#include "apps/mezalith/text_output.hpp"

#include <functional>
#include <iosfwd>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
}

namespace mezalith::app {

/// One of the numbers that a command asks for.
struct NumberField {
    enum class Kind { Longitude, Latitude, Plain };

    const char* name;
    Kind kind;
    const char* help;
};

/// What a command answers: values with their names.
using Answer = std::vector<std::pair<const char*, double>>;

/// Throws a UsageError about the argument `name` unless `latitude` lies within -90 and 90.
void checkLatitude(const std::string& name, double latitude);

/// Takes the answers to one query, one by one.
using AnswerSink = std::function<void(const Answer&)>;

/// A command that turns a few numbers into a few others. The numbers are its arguments or, when
/// there are none, come on standard input: each query takes as many as there are fields, from one
/// line or, point by point, from several. Answers are one line each: the values, or with --json an
/// object with the names. Where a query has several answers, an empty line parts those of one line
/// of input from those of the next, except with --json.
class NumberQuery {
  public:
    using Function = std::function<Answer(std::span<const double>)>;
    /// Answers by any number of lines.
    using ListFunction = std::function<void(std::span<const double>, const AnswerSink&)>;

    /// What of an answer is written as text: its values, the first of them, or all with their
    /// names. With --json it is always all of it.
    enum class TextForm { Values, FirstValue, NamesAndValues };

    /// What a command says of itself and does around its answers.
    struct Frame {
        /// Called before the first query, with whether --json is given.
        std::function<TextForm(bool)> begin{};
        /// Called when all answers are written; a host::Failure thrown here ends the work.
        std::function<void()> end{};
        /// What the help says behind the arguments.
        const char* footer = "";
    };

    /// Adds positional arguments and --json to `command`, and runs `function` when it is called.
    static void setUp(CLI::App& command, std::vector<NumberField> fields, Function function) {
        setUp(command, std::move(fields), std::move(function), {});
    }
    static void setUp(CLI::App& command, std::vector<NumberField> fields, Function function,
                      Frame frame);
    /// The same with several answers to a query.
    static void setUpList(CLI::App& command, std::vector<NumberField> fields,
                          ListFunction function);

    NumberQuery(std::vector<NumberField> fields, Function function);
    NumberQuery(std::vector<NumberField> fields, ListFunction function);

    /// Answers the arguments. Throws a UsageError for a wrong one.
    void answerArguments(std::span<const std::string> arguments, TextOutput& output) const;
    /// Answers everything on `input`. Throws a host::Failure with the line for what is wrong there.
    void answerLines(std::istream& input, TextOutput& output) const;

    void setJson(bool json) { json_ = json; }
    void setTextForm(TextForm form) { textForm_ = form; }

  private:
    NumberQuery(std::vector<NumberField> fields, ListFunction function, bool isList);

    void addTo(CLI::App& command, Frame frame) const;
    void answer(std::span<const double> numbers, TextOutput& output) const;
    void write(const Answer& answer, TextOutput& output) const;
    void takeNumbers(const std::string& line, std::vector<double>& numbers) const;

    std::vector<NumberField> fields_;
    ListFunction function_;
    bool isList_;
    bool json_ = false;
    TextForm textForm_ = TextForm::Values;
};

}  // namespace mezalith::app
