// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/format_predicate.hpp>
#include <mezalith/platform/predicates/predicate_subject.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <rapidcheck.h>

namespace mezalith::platform {
namespace {

using testing::Subject;

/// Writes random predicates in every spelling there is, with arguments to go with them.
class RandomFormat {
  public:
    explicit RandomFormat(std::uint64_t seed) : random_(seed) {}

    std::string condition(int depth) {
        switch (below(depth > 0 ? 7 : 3)) {
            case 0:
            case 1:
            case 2:
                return comparison(depth);
            case 3:
            case 4: {
                std::string text = condition(depth - 1);
                text += oneOf({" AND ", "&&", " and ", " OR ", "||", "\nor\t"});
                return text += condition(depth - 1);
            }
            case 5:
                return oneOf({"NOT ", "!", "not "}) + condition(depth - 1);
            default:
                return "(" + condition(depth - 1) + ")";
        }
    }

    std::vector<PredicateArgument> arguments;

  private:
    std::size_t below(std::size_t end) { return random_() % end; }

    std::string oneOf(const std::vector<std::string>& texts) { return texts[below(texts.size())]; }

    std::string comparison(int depth) {
        if (below(20) == 0) return oneOf({"TRUEPREDICATE", "falsepredicate"});
        std::string text = oneOf({"", "", "", "ANY ", "ALL ", "none ", "some "}) + value(depth);
        const std::string options = oneOf({"", "", "[c]", "[d]", "[cd]", " [dc]"});
        switch (below(8)) {
            case 0:
                text += " BETWEEN" + options + "{" + value(depth);
                return text += "," + value(depth) + "}";
            case 1:
                return text +=
                       " MATCHES" + options + " " + oneOf({"'a.*'", R"("[^b]\\.?")", "'(x|É)+'"});
            default:
                text += oneOf({"=", "==", "!=", "<>", "<", "<=", "=<", ">", ">=", "=>", " IN ",
                               " contains ", " BEGINSWITH ", " endswith ", " LIKE "});
                return text += options + value(depth);
        }
    }

    std::string value(int depth) {
        switch (below(depth > 0 ? 10 : 5)) {
            case 0:
                return oneOf({"1", "2.50", "-3", "- 4", "1e3", ".5", "9223372036854775807",
                              "-9223372036854775808", "TRUE", "no", "nil", "1e300"});
            case 1:
                return oneOf({"'a'", R"("a\"b\\")", R"('\u00c9\n\'')", "'é*?'", "''", "'ß'"});
            case 2:
            case 3:
                return oneOf({"a", "b", "table.a", "SELF.text", "owner.text", "#and", "#'x y'.in",
                              "SELF", "table", "größe"});
            case 4:
                return argument();
            case 5:
                return "(" + value(depth - 1) + ")";
            case 6: {
                if (below(3) == 0) return "{}";
                std::string text = "{" + value(depth - 1);
                return text += " , " + value(depth - 1) + "}";
            }
            case 7:
                return "-" + value(depth - 1);
            default: {
                std::string text = value(depth - 1);
                text += oneOf({"+", " - ", "*", "/", " ** "});
                return text += value(depth - 1);
            }
        }
    }

    std::string argument() {
        switch (below(4)) {
            case 0:
                arguments.emplace_back(Value(static_cast<std::int64_t>(random_())));
                return oneOf({"%d", "%@", "%lld"});
            case 1:
                arguments.emplace_back(Value("text.a"));
                return oneOf({"%K", "%@"});
            case 2:
                arguments.emplace_back(std::vector<Value>{"a", Value(), 2.0, true});
                return "%@";
            default:
                arguments.emplace_back(Value(static_cast<double>(random_()) / 1e9 - 5e9));
                return oneOf({"%f", "%@"});
        }
    }

    std::mt19937_64 random_;
};

Subject randomSubject(std::uint64_t seed) {
    std::mt19937_64 random(seed);
    const std::array<Value, 8> values{std::monostate{}, true, std::int64_t{1}, 2.5, "a", "É",
                                      std::int64_t{-3}, "é*?"};
    Subject subject;
    for (const char* key : {"a", "b", "text", "and", "größe"}) {
        subject.values[key] = values[random() % values.size()];
    }
    subject.owner = std::make_shared<Subject>(subject.values);
    return subject;
}

TEST(PredicateLaws, FormatsReadBackTheSame) {
    EXPECT_TRUE(rc::check("formats read back", [] {
        RandomFormat random(*rc::gen::arbitrary<std::uint64_t>());
        const std::string format = random.condition(4);
        PredicateError error;
        const auto made = FormatPredicate::predicateWithFormat(format, random.arguments, &error);
        if (made == nullptr) {
            RC_LOG(format + ": " + error.message());
            RC_FAIL("a predicate that cannot be read");
        }
        const auto read = FormatPredicate::predicateWithFormat(made->predicateFormat(), {}, &error);
        RC_ASSERT(read != nullptr);
        RC_ASSERT(read->predicateFormat() == made->predicateFormat());
        for (int i = 0; i < 8; ++i) {
            const Subject subject = randomSubject(*rc::gen::arbitrary<std::uint64_t>());
            RC_ASSERT(read->evaluateWithObject(&subject) == made->evaluateWithObject(&subject));
        }
    }));
}

TEST(PredicateLaws, AnyTextIsAPredicateOrAnError) {
    const auto pieces =
        rc::gen::container<std::vector<std::string>>(rc::gen::elementOf(std::vector<std::string>{
            "a", " ",  "==", "1", "'x'", "(",  ")",   "{",       "}",   ",",  "AND",      "NOT",
            "-", "**", "%@", "#", "\"",  "\\", "[c]", "MATCHES", "ANY", "\n", "\xC3\xA5", "\xFF"}));
    EXPECT_TRUE(rc::check("any text", [&] {
        std::string format;
        for (const std::string& piece : *pieces) format += piece;
        PredicateError error;
        const auto made = FormatPredicate::predicateWithFormat(format, {}, &error);
        RC_ASSERT((made != nullptr) == error.expected.empty());
        if (made == nullptr) RC_ASSERT(!error.found.empty());
    }));
}

TEST(PredicateLaws, ComparisonsExcludeEachOther) {
    EXPECT_TRUE(rc::check("order", [] {
        const Subject subject = randomSubject(*rc::gen::arbitrary<std::uint64_t>());
        const auto holds = [&](const char* format) { return testing::meets(subject, format); };
        const int orders =
            (holds("a < b") ? 1 : 0) + (holds("a > b") ? 1 : 0) + (holds("a == b") ? 1 : 0);
        RC_ASSERT(orders <= 1);
        RC_ASSERT(holds("a == b") != holds("a != b"));
        RC_ASSERT(holds("a < b") == holds("b > a"));
        RC_ASSERT(holds("a <= b") == holds("b >= a"));
        if (holds("a < b")) RC_ASSERT(holds("a <= b"));
        RC_ASSERT(holds("a IN {b}") == holds("a == b"));
        RC_ASSERT(holds("a BETWEEN {b, b}") == (holds("a <= b") && holds("a >= b")));
    }));
}

}  // namespace
}  // namespace mezalith::platform
