// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/svg_identifiers.hpp>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

constexpr std::string_view text =
    R"svg(<g id="surface38" d="M 1"><use xlink:href="#image7" mask="url(#mask12)"/></g>)svg"
    R"svg(<image id="image7" xlink:href="data:image/png;base64,AAA7"/><g id="surface40"/>)svg"
    R"svg(<use xlink:href="#surface38"/><filter id="alpha"/><use filter="url(#alpha)" y="mask12"/>)svg";
constexpr std::string_view expected =
    R"svg(<g id="surface0" d="M 1"><use xlink:href="#image0" mask="url(#mask0)"/></g>)svg"
    R"svg(<image id="image0" xlink:href="data:image/png;base64,AAA7"/><g id="surface1"/>)svg"
    R"svg(<use xlink:href="#surface0"/><filter id="alpha"/><use filter="url(#alpha)" y="mask12"/>)svg";

TEST(SvgIdentifiers, NumbersNamesFromZeroByTheirLetters) {
    SvgIdentifiers identifiers;
    std::string result = identifiers.rewritten(text);
    result += identifiers.rest();
    EXPECT_EQ(result, expected);
}

TEST(SvgIdentifiers, DoesNotMindWhereTheTextIsCut) {
    for (std::size_t length = 1; length < text.size(); ++length) {
        SvgIdentifiers identifiers;
        std::string result;
        for (std::size_t at = 0; at < text.size(); at += length) {
            result += identifiers.rewritten(text.substr(at, length));
        }
        result += identifiers.rest();
        ASSERT_EQ(result, expected) << length;
    }
}

TEST(SvgIdentifiers, KeepsANameAcrossPieces) {
    SvgIdentifiers identifiers;
    std::string result = identifiers.rewritten(R"svg(<g id="a9"/><g id="a3"/>)svg");
    result += identifiers.rewritten(
        R"svg(<use xlink:href="#a3"/><use xlink:href="#a9"/><g id="a5"/>)svg");
    result += identifiers.rest();
    EXPECT_EQ(result, R"svg(<g id="a0"/><g id="a1"/>)svg"
                      R"svg(<use xlink:href="#a1"/><use xlink:href="#a0"/><g id="a2"/>)svg");
}

TEST(SvgIdentifiers, GivesBackWhatIsNotFinished) {
    SvgIdentifiers identifiers;
    std::string result = identifiers.rewritten(R"svg(<g id="surface)svg");
    result += identifiers.rest();
    EXPECT_EQ(result, R"svg(<g id="surface)svg");
    EXPECT_EQ(identifiers.rest(), "");
}

}  // namespace
}  // namespace mezalith::platform
