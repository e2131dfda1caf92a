// SPDX-License-Identifier: MIT
#include "apps/mezalith/style_file.hpp"

#include "apps/mezalith/arguments.hpp"
#include "host/failure.hpp"

#include <string_view>

#include <gtest/gtest.h>

namespace mezalith::app {
namespace {

const std::string kFolder = MEZALITH_SOURCE_DIR "/tests/data/bad/archive/";

TEST(StyleFile, IsTextOrBytesByItsEnding) {
    EXPECT_EQ(styleFormatOf("a.b/land.json"), StyleFormat::JSON);
    EXPECT_EQ(styleFormatOf("LAND.CBOR"), StyleFormat::CBOR);
    EXPECT_THROW(styleFormatOf("land.xml"), UsageError);
    EXPECT_THROW(styleFormatOf("json"), UsageError);
}

TEST(StyleFile, IsReadInEitherFormat) {
    const auto text = readStyleFile(kFolder + "ok-style.json");
    const auto bytes = readStyleFile(kFolder + "ok-style.cbor");
    EXPECT_EQ(styleDocument(*text, StyleFormat::CBOR), styleDocument(*bytes, StyleFormat::CBOR));
    const auto json = styleDocument(*bytes, StyleFormat::JSON);
    EXPECT_TRUE(std::string_view(reinterpret_cast<const char*>(json.data()), json.size())
                    .starts_with("{\n \"format\": \"mezalith archive\",\n"));
}

TEST(StyleFile, FailsWithItsPathAndWhatIsWrong) {
    try {
        readStyleFile(kFolder + "misspelt-class.json");
        FAIL();
    } catch (const host::Failure& failure) {
        EXPECT_EQ(failure.what(), kFolder +
                                      "misspelt-class.json: line 22, column 16: "
                                      "/root/rules/0/symbolizers/0/class: unknown class "
                                      "\"MzLineSymboliser\", did you mean \"MzLineSymbolizer\"?");
    }
    EXPECT_THROW(readStyleFile(kFolder + "nowhere.json"), host::Failure);
}

}  // namespace
}  // namespace mezalith::app
