// SPDX-License-Identifier: MIT
#include <mezalith/platform/interface_file.hpp>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

struct Owner : InterfaceOwner {
    std::shared_ptr<Object> object;
    std::shared_ptr<Object> representedObject() const override { return object; }
};

std::shared_ptr<View> viewOfWidth(double width) {
    return std::make_shared<View>(MzRect{{0, 0}, {width, 1}});
}

/// Takes its names off the list again.
class InterfaceFiles : public ::testing::Test {
  protected:
    ~InterfaceFiles() override {
        for (const char* name : {"a", "b", ""}) InterfaceFile::setLoader(name, nullptr);
    }
    Owner owner;
};

TEST_F(InterfaceFiles, YieldTheViewThatTheLoaderOfTheNameMakes) {
    InterfaceFile::setLoader("a", [](const InterfaceOwner&) { return viewOfWidth(1); });
    InterfaceFile::setLoader("b", [](const InterfaceOwner&) { return viewOfWidth(2); });
    EXPECT_EQ(InterfaceFile::load("a", owner)->frame().size.width, 1);
    EXPECT_EQ(InterfaceFile::load("b", owner)->frame().size.width, 2);
    EXPECT_NE(InterfaceFile::load("a", owner), InterfaceFile::load("a", owner));
}

TEST_F(InterfaceFiles, YieldNothingForUnknownNames) {
    EXPECT_EQ(InterfaceFile::load("a", owner), nullptr);
    EXPECT_EQ(InterfaceFile::load("", owner), nullptr);
}

TEST_F(InterfaceFiles, HandTheOwnerToTheLoader) {
    owner.object = viewOfWidth(3);
    const InterfaceOwner* seen = nullptr;
    InterfaceFile::setLoader("a", [&](const InterfaceOwner& given) {
        seen = &given;
        return std::dynamic_pointer_cast<View>(given.representedObject());
    });
    EXPECT_EQ(InterfaceFile::load("a", owner), owner.object);
    EXPECT_EQ(seen, &owner);
}

TEST_F(InterfaceFiles, AreReplacedAndTakenOff) {
    InterfaceFile::setLoader("a", [](const InterfaceOwner&) { return viewOfWidth(1); });
    InterfaceFile::setLoader("a", [](const InterfaceOwner&) { return viewOfWidth(2); });
    EXPECT_EQ(InterfaceFile::load("a", owner)->frame().size.width, 2);
    InterfaceFile::setLoader("a", nullptr);
    InterfaceFile::setLoader("a", nullptr);
    EXPECT_EQ(InterfaceFile::load("a", owner), nullptr);
}

TEST_F(InterfaceFiles, MayTakeThemselvesOffWhileLoading) {
    const auto width = std::make_shared<double>(4);
    InterfaceFile::setLoader("a", [width](const InterfaceOwner&) {
        InterfaceFile::setLoader("a", nullptr);
        return viewOfWidth(*width);
    });
    EXPECT_EQ(InterfaceFile::load("a", owner)->frame().size.width, 4);
    EXPECT_EQ(InterfaceFile::load("a", owner), nullptr);
}

}  // namespace
}  // namespace mezalith::platform
