// SPDX-License-Identifier: MIT
#include "apps/mezalith/number_query.hpp"

#include "apps/mezalith/arguments.hpp"
#include "host/failure.hpp"

#include <cstdlib>
#include <limits>
#include <sstream>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

using Kind = NumberField::Kind;

/// A stream that keeps what it is given.
class Sink {
  public:
    ~Sink() {
        std::fclose(stream_);
        std::free(data_);
    }
    std::FILE* stream() { return stream_; }
    std::string text() {
        std::fflush(stream_);
        return {data_, size_};
    }

  private:
    char* data_ = nullptr;
    std::size_t size_ = 0;
    std::FILE* stream_ = open_memstream(&data_, &size_);
};

NumberQuery sumQuery() {
    return {{{"LON", Kind::Longitude, ""}, {"LAT", Kind::Latitude, ""}, {"N", Kind::Plain, ""}},
            [](std::span<const double> n) {
                return Answer{{"sum", n[0] + n[1] + n[2]}, {"first", n[0]}};
            }};
}

struct Outcome {
    std::string text;
    std::string error;
};

Outcome run(NumberQuery query, const std::string& input, bool json = false) {
    query.setJson(json);
    Sink sink;
    TextOutput output(sink.stream(), "sink");
    std::istringstream stream(input);
    try {
        query.answerLines(stream, output);
    } catch (const host::Failure& failure) {
        return {sink.text(), failure.what()};
    }
    return {sink.text(), ""};
}

Outcome run(const std::string& input, bool json = false) { return run(sumQuery(), input, json); }

TEST(NumberQuery, AnswersArguments) {
    Sink sink;
    TextOutput output(sink.stream(), "sink");
    sumQuery().answerArguments(std::vector<std::string>{"-1.5", "2", "0.25"}, output);
    EXPECT_EQ(sink.text(), "0.75 -1.5\n");
}

TEST(NumberQuery, WantsAllArgumentsAndLatitudes) {
    Sink sink;
    TextOutput output(sink.stream(), "sink");
    const auto errorOf = [&](std::vector<std::string> arguments) -> std::string {
        try {
            sumQuery().answerArguments(arguments, output);
        } catch (const UsageError& error) {
            return error.what();
        }
        return "no error";
    };
    EXPECT_EQ(errorOf({"1", "2", ""}), "N: \"\" is not a number");
    EXPECT_EQ(errorOf({"1", "2"}), "N: is missing");
    EXPECT_EQ(errorOf({"1", "90.5", "3"}), "LAT: 90.5 is not a latitude");
    EXPECT_EQ(errorOf({"500", "-90", "3"}), "no error");
}

TEST(NumberQuery, AnswersEachLine) {
    EXPECT_EQ(run("1 2 3\n\n  4\t5 6\r\n").text, "6 1\n15 4\n");
    EXPECT_EQ(run("1 2 3", true).text, "{\"sum\":6,\"first\":1}\n");
    EXPECT_EQ(run("").text, "");
}

TEST(NumberQuery, WritesTheFirstValueOrAllWithTheirNames) {
    NumberQuery query = sumQuery();
    query.setTextForm(NumberQuery::TextForm::FirstValue);
    EXPECT_EQ(run(query, "1 2 3\n").text, "6\n");
    EXPECT_EQ(run(query, "1 2 3", true).text, "{\"sum\":6,\"first\":1}\n");
    query.setTextForm(NumberQuery::TextForm::NamesAndValues);
    EXPECT_EQ(run(query, "1 2 3\n").text, "sum 6 first 1\n");
}

TEST(NumberQuery, TakesNumbersFromSeveralLines) { EXPECT_EQ(run("1 2\n3\n").text, "6 1\n"); }

TEST(NumberQuery, PartsListsOfAnswersByAnEmptyLine) {
    const NumberQuery query({{"N", Kind::Plain, ""}},
                            [](std::span<const double> n, const AnswerSink& sink) {
                                for (double i = 1; i <= n[0]; ++i) sink({{"i", i}});
                            });
    EXPECT_EQ(run(query, "2\n0\n3\n").text, "1\n2\n\n\n1\n2\n3\n");
    EXPECT_EQ(run(query, "1\n1\n", true).text, "{\"i\":1}\n{\"i\":1}\n");
}

TEST(NumberQuery, NamesTheLineThatIsWrong) {
    EXPECT_EQ(run("1 2 3\nx 2 3\n").error, "standard input, line 2: LON: \"x\" is not a number");
    EXPECT_EQ(run("1 2 3\nx 2 3\n").text, "6 1\n");
    EXPECT_EQ(run("1 2 3 4\n").error, "standard input, line 1: 4: one number too many");
    EXPECT_EQ(run("1 2\n").error, "standard input, line 1: N is missing");
    EXPECT_EQ(run("1 91 3\n").error, "standard input, line 1: LAT: 91 is not a latitude");
}

TEST(NumberQuery, SaysWhenThereIsNoAnswer) {
    const NumberQuery query({{"N", Kind::Plain, ""}}, [](std::span<const double>) {
        return Answer{{"metres", std::numeric_limits<double>::quiet_NaN()}};
    });
    Sink sink;
    TextOutput output(sink.stream(), "sink");
    EXPECT_THROW(query.answerArguments(std::vector<std::string>{"1"}, output), host::Failure);
    EXPECT_EQ(sink.text(), "");
}

}  // namespace
}  // namespace mezalith::app
