// SPDX-License-Identifier: MIT
#include <mezalith/platform/archive_classes.hpp>
#include <mezalith/platform/keyed_store.hpp>
#include <mezalith/platform/predicates/format_predicate.hpp>
#include <mezalith/platform/predicates/predicate_subject.hpp>

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using testing::canonical;
using testing::meets;
using testing::predicate;
using testing::Subject;

Subject oslo() {
    Subject city({{"kind", std::string("city")},
                  {"name", std::string("Oslo")},
                  {"population", std::int64_t{709037}},
                  {"height", 23.5},
                  {"capital", true},
                  {"mayor", std::monostate{}}});
    city.owner = std::make_shared<Subject>(Dictionary{{"name", std::string("Norway")}});
    return city;
}

TEST(FormatPredicate, AsksAnObjectForItsValues) {
    const Subject city = oslo();
    EXPECT_TRUE(meets(city, "kind == 'city' AND population > 500000"));
    EXPECT_FALSE(meets(city, "kind == 'city' AND population > 1000000"));
    EXPECT_TRUE(meets(city, "table.population == 709037"));
    EXPECT_TRUE(meets(city, "height > 23 AND height < 24"));
    EXPECT_TRUE(meets(city, "capital == TRUE AND capital = YES AND capital != FALSE"));
}

TEST(FormatPredicate, FollowsPathsThroughObjectsAndTables) {
    const Subject city = oslo();
    EXPECT_TRUE(meets(city, "owner.name == 'Norway'"));
    EXPECT_TRUE(meets(city, "owner.table.name == 'Norway'"));
    EXPECT_TRUE(meets(city, "SELF.owner.name == 'Norway'"));
    EXPECT_TRUE(meets(city, "owner.owner == NULL AND owner.owner.name == NULL"));
    EXPECT_TRUE(meets(city, "name.length == NULL AND table.name.length == NULL"));
}

/// Answers a fresh object for every key.
struct Maker : Object {
    KeyedValue valueForKey(std::string_view key) const override {
        if (key != "made") return std::string("a text made for the answer: ") + std::string(key);
        return std::shared_ptr<const Object>(std::make_shared<Maker>());
    }
};

TEST(FormatPredicate, KeepsAliveWhatIsMadeForTheAnswer) {
    EXPECT_TRUE(meets(Maker(), "made.made.name ENDSWITH 'answer: name'"));
    EXPECT_TRUE(meets(Maker(), "made != made AND made.made != NULL"));
}

TEST(FormatPredicate, TakesMissingKeysForNull) {
    EXPECT_TRUE(meets(oslo(), "mayor == NULL AND nothing == NIL AND nothing.at.all = nil"));
}

TEST(FormatPredicate, AsksNothingOfNothing) {
    EXPECT_TRUE(predicate("name == NULL AND SELF == NULL")->evaluateWithObject(nullptr));
    EXPECT_TRUE(predicate("TRUEPREDICATE")->evaluateWithObject(nullptr));
    EXPECT_FALSE(predicate("a.b > 0 OR FALSEPREDICATE")->evaluateWithObject(nullptr));
}

TEST(FormatPredicate, KnowsTheObjectItself) {
    const Subject city = oslo();
    EXPECT_TRUE(meets(city, "SELF == SELF AND SELF != NULL AND SELF != owner"));
    EXPECT_TRUE(meets(city, "SELF IN {1, SELF}"));
}

TEST(FormatPredicate, FillsArgumentsIn) {
    const Subject city = oslo();
    EXPECT_TRUE(meets(
        city, "%K == %@ AND %K > %d",
        {Value("name"), Value("Oslo"), Value("table.population"), Value(std::int64_t{700000})}));
    EXPECT_TRUE(meets(city, "name IN %@", {std::vector<Value>{"Oslo", "Bergen"}}));
    EXPECT_TRUE(meets(city, "population BETWEEN %@", {std::vector<Value>{std::int64_t{1}, 1e6}}));
    EXPECT_TRUE(meets(city, "height == %f AND capital == %@ AND mayor == %@",
                      {Value(23.5), Value(true), Value()}));
}

TEST(FormatPredicate, LeavesMarksInQuotesAlone) {
    EXPECT_EQ(canonical("a == '%@'"), R"(a == "%@")");
}

TEST(FormatPredicate, IsArchivedAsItsText) {
    const auto written = predicate("name ==[c] %@", {Value("oslo")});
    testing::KeyedStore store;
    written->encodeWithCoder(store);
    EXPECT_EQ(written->archiveClassName(), "Predicate");
    EXPECT_EQ(store.layout(), std::vector<std::string>{"string format"});
    EXPECT_EQ(written->archiveText(), written->predicateFormat());
    const auto read = FormatPredicate::initWithCoder(store);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->predicateFormat(), R"(name ==[c] "oslo")");
}

TEST(FormatPredicate, IsNotReadFromWhatIsNoPredicate) {
    EXPECT_EQ(FormatPredicate::initWithCoder(testing::KeyedStore()), nullptr);
    testing::KeyedStore store;
    store.encodeString("scalerank <= (6 AND OR \"", "format");
    EXPECT_EQ(FormatPredicate::initWithCoder(store), nullptr);
}

TEST(FormatPredicate, SaysWhyATextIsNone) {
    std::string reason;
    EXPECT_NE(FormatPredicate::initWithText("a == 1", reason), nullptr);
    EXPECT_EQ(reason, "");
    EXPECT_EQ(FormatPredicate::initWithText("a ==", reason), nullptr);
    EXPECT_EQ(reason, "no predicate: line 1, column 5: found the end, expected a value");
}

TEST(FormatPredicate, IsComparedByItsText) {
    EXPECT_EQ(predicate("(a) = 1 && ! b = 2")->predicateFormat(),
              predicate("a == 1 AND NOT b == 2")->predicateFormat());
}

TEST(FormatPredicate, NeedsNoPlaceForTheError) {
    EXPECT_EQ(FormatPredicate::predicateWithFormat("name =="), nullptr);
}

}  // namespace
}  // namespace mezalith::platform
