// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicates/predicate_subject.hpp>

#include <cstdint>
#include <fstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using Examples = std::vector<std::pair<std::string, std::string>>;

std::string trimmed(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(' ');
    if (begin == std::string::npos) return {};
    return text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
}

/// The lines "example -> answer" of the document's blocks of this name.
Examples examples(const std::string& block) {
    std::ifstream document(MEZALITH_SOURCE_DIR "/docs/predicates.md");
    Examples found;
    bool within = false;
    for (std::string line; std::getline(document, line);) {
        const std::size_t arrow = line.find("->");
        if (line.starts_with("```")) {
            within = line == "```" + block;
        } else if (within && arrow != std::string::npos) {
            found.emplace_back(trimmed(line.substr(0, arrow)), trimmed(line.substr(arrow + 2)));
        } else {
            EXPECT_FALSE(within) << line;
        }
    }
    return found;
}

/// The feature that the document shows.
class Tromso final : public Object {
  public:
    KeyedValue valueForKey(std::string_view key) const override {
        if (key == "kind") return std::string_view("city");
        if (key == "featureName") return std::string_view("Tromsø");
        if (key == "allowsInteraction") return true;
        if (key == "propertiesByName") return &attributes_;
        return platform::valueForKey(attributes_, key);
    }

  private:
    Dictionary attributes_{{"name", std::string("Tromsø")},
                           {"population", std::int64_t{71000}},
                           {"height", 10.5},
                           {"capital", false},
                           {"mayor", std::monostate{}},
                           {"in", std::string("Troms")},
                           {"pop max", std::int64_t{76000}}};
};

TEST(PredicateDocument, AnswersItsExamplesAsItSays) {
    const Tromso tromso;
    const Examples all = examples("predicate");
    EXPECT_GE(all.size(), 50u);
    for (const auto& [format, answer] : all) {
        ASSERT_TRUE(answer == "yes" || answer == "no") << format;
        const auto made = testing::predicate(format);
        ASSERT_NE(made, nullptr) << format;
        EXPECT_EQ(made->evaluateWithObject(&tromso), answer == "yes") << format;
    }
}

TEST(PredicateDocument, WritesItsExamplesAsItSays) {
    const Examples all = examples("canonical");
    EXPECT_GE(all.size(), 7u);
    for (const auto& [format, answer] : all) EXPECT_EQ(testing::canonical(format), answer);
}

}  // namespace
}  // namespace mezalith::platform
