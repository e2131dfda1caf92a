// SPDX-License-Identifier: MIT
#include <mezalith/platform/json/base64.hpp>

#include <random>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

constexpr unsigned seed = 4648;

std::span<const std::byte> bytesOf(std::string_view text) { return std::as_bytes(std::span(text)); }

std::string textOf(const std::optional<std::vector<std::byte>>& bytes) {
    std::string text;
    for (const std::byte byte : bytes.value_or(std::vector<std::byte>{})) {
        text += static_cast<char>(byte);
    }
    return text;
}

TEST(Base64, HasTheFormOfItsStandard) {
    for (const auto& [plain, encoded] :
         {std::pair{"", ""}, std::pair{"f", "Zg=="}, std::pair{"fo", "Zm8="},
          std::pair{"foo", "Zm9v"}, std::pair{"foob", "Zm9vYg=="}, std::pair{"fooba", "Zm9vYmE="},
          std::pair{"foobar", "Zm9vYmFy"}, std::pair{"\xfb\xff\xbf", "+/+/"}}) {
        EXPECT_EQ(base64Text(bytesOf(plain)), encoded);
        ASSERT_TRUE(bytesFromBase64(encoded)) << encoded;
        EXPECT_EQ(textOf(bytesFromBase64(encoded)), plain);
    }
}

TEST(Base64, GivesBackWhatItWasGiven) {
    std::mt19937 random(seed);
    for (std::size_t length = 0; length < 200; ++length) {
        std::vector<std::byte> bytes(length);
        for (std::byte& byte : bytes) {
            byte = static_cast<std::byte>(random() & 255);
        }
        ASSERT_EQ(bytesFromBase64(base64Text(bytes)), bytes) << "seed " << seed << ' ' << length;
    }
}

TEST(Base64, RefusesAnyOtherText) {
    for (const char* text : {"Z", "Zg", "Zg=", "Zg===", "=", "====", "Z===", "Zm9v\n", "Zm 9v",
                             "Zm-_", "Zg==Zg==", "Zm9vZ", "Zh==", "Zm9=", "Zm9v====", "\x80m9v"}) {
        EXPECT_EQ(bytesFromBase64(text), std::nullopt) << text;
    }
}

}  // namespace
}  // namespace mezalith::platform
