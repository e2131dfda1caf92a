// SPDX-License-Identifier: MIT
#include <mezalith/platform/object.hpp>

#include <memory>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

class Counted : public Object {
  public:
    explicit Counted(int& ended) : ended_(&ended) {}
    Counted(const Counted&) = default;
    Counted& operator=(const Counted&) = default;
    ~Counted() override { ++*ended_; }

  private:
    int* ended_;
};

class Other : public Object {};

TEST(Object, EndsAsItsOwnClassThroughTheRoot) {
    int ended = 0;
    std::unique_ptr<Object>(std::make_unique<Counted>(ended)).reset();
    EXPECT_EQ(ended, 1);
}

TEST(Object, TellsItsClassByDynamicCast) {
    const Other other;
    const Object* object = &other;
    EXPECT_EQ(dynamic_cast<const Other*>(object), &other);
    EXPECT_EQ(dynamic_cast<const Counted*>(object), nullptr);
}

TEST(Object, HasNoPropertiesAtTheRoot) {
    EXPECT_TRUE(std::holds_alternative<std::monostate>(Other().valueForKey("name")));
}

TEST(Dictionary, AnswersForAKey) {
    const Dictionary table{{"flag", true},
                           {"name", std::string("Oslo")},
                           {"nothing", std::monostate{}},
                           {"people", std::int64_t{700}},
                           {"share", 0.5}};
    EXPECT_EQ(valueForKey(table, "flag"), KeyedValue(true));
    EXPECT_EQ(valueForKey(table, "name"), KeyedValue(std::string_view("Oslo")));
    EXPECT_EQ(valueForKey(table, "nothing"), KeyedValue());
    EXPECT_EQ(valueForKey(table, "people"), KeyedValue(std::int64_t{700}));
    EXPECT_EQ(valueForKey(table, "share"), KeyedValue(0.5));
    EXPECT_EQ(valueForKey(table, "Name"), KeyedValue());
}

TEST(Dictionary, LendsItsText) {
    const Dictionary table{{"name", std::string("a text that is too long to lie in its string")}};
    const auto text = std::get<std::string_view>(valueForKey(table, "name"));
    EXPECT_EQ(text.data(), std::get<std::string>(*table.find("name")).data());
}

TEST(Event, IsThePrimaryButtonByDefault) {
    const Event event;
    EXPECT_EQ(event.buttonNumber, 0);
    EXPECT_EQ(event.modifierFlags, 0u);
    EXPECT_EQ(event.timestamp, 0);
}

}  // namespace
}  // namespace mezalith::platform
