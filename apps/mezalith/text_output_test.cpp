// SPDX-License-Identifier: MIT
#include "apps/mezalith/text_output.hpp"

#include "host/failure_of.hpp"

#include <array>
#include <cmath>
#include <memory>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, CloseFile>;

TEST(TextOutput, WritesThrough) {
    const File file(std::tmpfile());
    TextOutput output(file.get(), "file");
    output.write("one\n");
    output.write("two\n");
    output.finish();
    std::rewind(file.get());
    std::array<char, 16> text{};
    EXPECT_EQ(std::fread(text.data(), 1, text.size(), file.get()), 8u);
    EXPECT_STREQ(text.data(), "one\ntwo\n");
}

TEST(TextOutput, ReportsAFullDisk) {
    const File file(std::fopen("/dev/full", "w"));
    ASSERT_NE(file, nullptr);
    TextOutput output(file.get(), "the full one");
    output.write("lost");
    EXPECT_EQ(mezalith::testing::failureOf([&] { output.finish(); }),
              "the full one: No space left on device");
}

TEST(JsonObject, KeepsTheOrderOfItsFields) {
    EXPECT_EQ(JsonObject().text(), "{}");
    EXPECT_EQ(JsonObject()
                  .add("z", 0.1)
                  .add("a", std::size_t{12})
                  .add("n", "b\"\n")
                  .addJson("l", "[1]")
                  .text(),
              R"({"z":0.1,"a":12,"n":"b\"\n","l":[1]})");
}

TEST(JsonNumber, IsShortestOrNull) {
    EXPECT_EQ(jsonNumber(-180), "-180");
    EXPECT_EQ(jsonNumber(1e300), "1e+300");
    EXPECT_EQ(jsonNumber(std::nan("")), "null");
    EXPECT_EQ(jsonNumber(INFINITY), "null");
}

TEST(Bounds, AreFourNumbersOrNone) {
    EXPECT_EQ(boundsText({-180, -90, 180, 83.5}), "-180 -90 180 83.5");
    EXPECT_EQ(boundsJson({-180, -90, 180, 83.5}), "[-180,-90,180,83.5]");
    EXPECT_EQ(boundsText({}), "none");
    EXPECT_EQ(boundsJson({}), "null");
}

TEST(JsonString, ReplacesWhatIsNotUTF8) {
    EXPECT_EQ(jsonString("caf\xc3\xa9"), "\"caf\xc3\xa9\"");
    EXPECT_EQ(jsonString("\xff"), "\"\xef\xbf\xbd\"");
}

}  // namespace
}  // namespace mezalith::app
