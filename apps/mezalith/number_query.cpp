// SPDX-License-Identifier: MIT
#include "apps/mezalith/number_query.hpp"

#include "apps/mezalith/arguments.hpp"
#include "host/failure.hpp"
#include <mezalith/platform/number_text.hpp>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iostream>
#include <memory>
#include <sstream>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

/// What is wrong with the numbers, not with where the answers go.
struct Unanswered : host::Failure {
    using Failure::Failure;
};

double checkedNumber(const NumberField& field, const std::string& text) {
    const double number = numberArgument(field.name, text);
    if (field.kind == NumberField::Kind::Latitude) checkLatitude(field.name, number);
    return number;
}

std::vector<std::string> wordsOf(const std::string& line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) words.push_back(word);
    return words;
}

std::string textOf(std::span<const Answer::value_type> answer, bool named) {
    std::string text;
    for (const auto& [name, value] : answer) {
        if (!text.empty()) text += " ";
        if (named) text += std::string(name) + " ";
        text += platform::shortestText(value);
    }
    return text;
}

std::string jsonOf(const Answer& answer) {
    JsonObject object;
    for (const auto& [name, value] : answer) object.add(name, value);
    return object.text();
}

}  // namespace

void checkLatitude(const std::string& name, double latitude) {
    if (std::abs(latitude) > 90) {
        throw UsageError(name, platform::shortestText(latitude) + " is not a latitude");
    }
}

NumberQuery::NumberQuery(std::vector<NumberField> fields, ListFunction function, bool isList)
    : fields_(std::move(fields)), function_(std::move(function)), isList_(isList) {}

NumberQuery::NumberQuery(std::vector<NumberField> fields, ListFunction function)
    : NumberQuery(std::move(fields), std::move(function), true) {}

NumberQuery::NumberQuery(std::vector<NumberField> fields, Function function)
    : NumberQuery(
          std::move(fields),
          [function = std::move(function)](std::span<const double> numbers,
                                           const AnswerSink& sink) { sink(function(numbers)); },
          false) {}

void NumberQuery::setUp(CLI::App& command, std::vector<NumberField> fields, Function function,
                        Frame frame) {
    NumberQuery(std::move(fields), std::move(function)).addTo(command, std::move(frame));
}

void NumberQuery::setUpList(CLI::App& command, std::vector<NumberField> fields,
                            ListFunction function) {
    NumberQuery(std::move(fields), std::move(function)).addTo(command, Frame{});
}

void NumberQuery::addTo(CLI::App& command, Frame frame) const {
    struct Given {
        std::vector<std::string> numbers;
        bool json = false;
    };
    const auto given = std::make_shared<Given>();
    given->numbers.resize(fields_.size());
    std::vector<const CLI::Option*> options;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        options.push_back(
            command.add_option(fields_[i].name, given->numbers[i], fields_[i].help)->type_name(""));
    }
    command.add_flag("--json", given->json, "Print one JSON object a line");
    if (*frame.footer != 0) command.footer(frame.footer);
    command.callback([given, options, frame = std::move(frame), query = *this]() mutable {
        query.setJson(given->json);
        if (frame.begin) query.setTextForm(frame.begin(given->json));
        const auto count = std::ranges::count_if(
            options, [](const CLI::Option* option) { return option->count() > 0; });
        TextOutput output;
        if (count == 0) {
            query.answerLines(std::cin, output);
        } else {
            query.answerArguments(std::span(given->numbers).first(static_cast<std::size_t>(count)),
                                  output);
        }
        output.finish();
        if (frame.end) frame.end();
    });
}

void NumberQuery::answerArguments(std::span<const std::string> arguments,
                                  TextOutput& output) const {
    std::vector<double> numbers;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        if (i >= arguments.size()) throw UsageError(fields_[i].name, "is missing");
        numbers.push_back(checkedNumber(fields_[i], arguments[i]));
    }
    answer(numbers, output);
}

void NumberQuery::answerLines(std::istream& input, TextOutput& output) const {
    std::vector<double> numbers;
    std::size_t lineNumber = 0;
    bool isFirst = true;
    const auto place = [&] { return "standard input, line " + std::to_string(lineNumber); };
    for (std::string line; std::getline(input, line);) {
        ++lineNumber;
        try {
            takeNumbers(line, numbers);
        } catch (const UsageError& error) {
            throw host::Failure(place(), error.what());
        }
        if (numbers.size() < fields_.size()) continue;
        if (isList_ && !json_ && !isFirst) output.write("\n");
        isFirst = false;
        try {
            answer(numbers, output);
        } catch (const Unanswered& failure) {
            throw failure.within(place());
        }
        numbers.clear();
    }
    if (!numbers.empty()) {
        throw host::Failure(place(), std::string(fields_[numbers.size()].name) + " is missing");
    }
}

void NumberQuery::takeNumbers(const std::string& line, std::vector<double>& numbers) const {
    for (const std::string& word : wordsOf(line)) {
        if (numbers.size() == fields_.size()) throw UsageError(word, "one number too many");
        numbers.push_back(checkedNumber(fields_[numbers.size()], word));
    }
}

void NumberQuery::answer(std::span<const double> numbers, TextOutput& output) const {
    function_(numbers, [&](const Answer& answer) { write(answer, output); });
}

void NumberQuery::write(const Answer& answer, TextOutput& output) const {
    for (const auto& [name, value] : answer) {
        if (!std::isfinite(value)) throw Unanswered(name, "no answer to these numbers");
    }
    std::span<const Answer::value_type> shown = answer;
    if (textForm_ == TextForm::FirstValue)
        shown = shown.first(std::min<std::size_t>(1, shown.size()));
    const bool named = textForm_ == TextForm::NamesAndValues;
    output.write((json_ ? jsonOf(answer) : textOf(shown, named)) + "\n");
}

}  // namespace mezalith::app
