// SPDX-License-Identifier: MIT
#include <mezalith/platform/predicate.hpp>

#include <functional>
#include <memory>
#include <utility>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

struct City : Object {
    explicit City(int people) : population(people) {}
    int population;
};

/// A condition written in C++, with the text it goes by.
class LambdaPredicate : public Predicate {
  public:
    using Condition = std::function<bool(const Object*)>;

    LambdaPredicate(std::string format, Condition condition)
        : format_(std::move(format)), condition_(std::move(condition)) {}

    bool evaluateWithObject(const Object* object) const override { return condition_(object); }
    std::string predicateFormat() const override { return format_; }
    std::string_view archiveClassName() const override { return "LambdaPredicate"; }
    void encodeWithCoder(KeyedArchiver&) const override {}

  private:
    std::string format_;
    Condition condition_;
};

std::shared_ptr<const Predicate> largerThan(int population) {
    return std::make_shared<LambdaPredicate>(
        "population > " + std::to_string(population), [=](const Object* object) {
            const auto* city = dynamic_cast<const City*>(object);
            return city != nullptr && city->population > population;
        });
}

TEST(Predicate, JudgesAnObjectByItsClass) {
    const auto large = largerThan(1000);
    const City village(999), town(1001);
    EXPECT_FALSE(large->evaluateWithObject(&village));
    EXPECT_TRUE(large->evaluateWithObject(&town));
}

TEST(Predicate, MeetsObjectsItDoesNotFitAndNull) {
    struct River : Object {
    } river;
    EXPECT_FALSE(largerThan(0)->evaluateWithObject(&river));
    EXPECT_FALSE(largerThan(0)->evaluateWithObject(nullptr));
}

TEST(Predicate, IsComparedByItsFormat) {
    EXPECT_EQ(largerThan(5)->predicateFormat(), largerThan(5)->predicateFormat());
    EXPECT_NE(largerThan(5)->predicateFormat(), largerThan(6)->predicateFormat());
}

TEST(Predicate, CanBeHeldAsWhatAnArchiveReads) {
    const std::shared_ptr<const Archivable> read = largerThan(5);
    const auto predicate = std::dynamic_pointer_cast<const Predicate>(read);
    ASSERT_NE(predicate, nullptr);
    EXPECT_EQ(predicate->predicateFormat(), "population > 5");
}

}  // namespace
}  // namespace mezalith::platform
