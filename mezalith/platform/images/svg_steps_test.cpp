// SPDX-License-Identifier: MIT
#include <mezalith/platform/images/svg_steps.hpp>

#include <string>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

std::string svg(const std::string& body) { return "<svg>" + body + "</svg>"; }

double steps(const std::string& body) {
    const SvgSteps found = svgSteps(svg(body));
    EXPECT_EQ(found.refusal, "") << body;
    return found.count;
}

std::string refusal(const std::string& body) { return svgSteps(svg(body)).refusal; }

std::string repeated(const std::string& text, int count) {
    std::string result;
    for (int i = 0; i < count; ++i) result += text;
    return result;
}

TEST(SvgSteps, AreOneForEachElement) {
    EXPECT_EQ(steps(""), 1);
    EXPECT_EQ(steps("<g><path/><path></path></g>"), 4);
    EXPECT_EQ(svgSteps("").count, 0);
    EXPECT_EQ(
        svgSteps("<?xml version='1.0' encoding=\"UTF-8\"?><!-- <g/> --><svg><g/></svg>").count, 2);
}

TEST(SvgSteps, GrowWithAttributesDashesAndMasks) {
    EXPECT_EQ(steps("<path d='" + std::string(128, 'z') + "'/>"), 4.0625);
    EXPECT_GT(steps("<path d='" + std::string(65536, 'z') + "'/>"), 16 * 1024);
    EXPECT_GT(steps("<path stroke-dasharray='1 1'/>"), 2000);
    EXPECT_GT(steps("<path style='stroke-dasharray:1,1'/>"), 2000);
    EXPECT_LT(steps("<path stroke-dasharray='none'/>"), 3);
    EXPECT_LT(steps("<path style='stroke-dasharray : none'/>"), 3);
    EXPECT_GT(steps("<style>path { stroke-dasharray: 1 }</style><path/>"), 6000);
    EXPECT_EQ(steps("<path mask='url(#m)'/>") - steps("<path class='url(#m)'/>"), 10);
}

TEST(SvgSteps, CountWhatIsReferredToEachTime) {
    const std::string star = "<g id='star'>" + repeated("<path/>", 9) + "</g>";
    const double once = steps(star);
    EXPECT_NEAR(steps(star + "<use href='#star'/>") - once, 11, 0.2);
    EXPECT_NEAR(steps(star + "<use xlink:href=\"#star\"/>") - once, 11, 0.2);
    EXPECT_NEAR(steps(star + "<path fill='url(#star)'/>") - once, 11, 0.3);
    EXPECT_NEAR(steps(star + "<path style='fill: url( &quot;#star\")'/>") - once, 11, 0.6);
    EXPECT_NEAR(steps(star + "<use href='&#x23;st&#97;r'/>") - once, 11, 0.2);
    EXPECT_NEAR(steps(star + "<use href='#moon'/>") - once, 1, 0.2);
    EXPECT_NEAR(steps(star + "<path fill='#fff'/>") - once, 1, 0.2);
}

TEST(SvgSteps, RefuseWhatMultipliesWithoutEnd) {
    std::string text = "<path id='a0'/>";
    for (int i = 1; i <= 30; ++i) {
        const std::string use = "<use href='#a" + std::to_string(i - 1) + "'/>";
        text += "<g id='a" + std::to_string(i) + "'>" + use + use + "</g>";
    }
    EXPECT_EQ(refusal(text), "it takes too many steps to draw");
    EXPECT_EQ(refusal(repeated("<path/>", 200'000)), "it takes too many steps to draw");
}

TEST(SvgSteps, CountMarkersAtEveryVertex) {
    const std::string marker = "<marker id='m'>" + repeated("<path/>", 9) + "</marker>";
    const std::string path = "<path d='" + repeated("L1 1", 100) + "'/>";
    const double once = steps(marker + path);
    EXPECT_GT(steps(marker + "<g marker-mid='url(#m)'>" + path + "</g>") - once, 1000);
    EXPECT_GT(steps(marker + "<g style='marker:url(#m)'>" + path + "</g>") - once, 1000);
    EXPECT_LT(steps(marker + "<g style='fill:url(#m)'>" + path + "</g>") - once, 20);
}

TEST(SvgSteps, RefuseLongPaths) {
    const std::string path = "<path id='a' d='" + std::string(40'000, 'z') + "'/>";
    EXPECT_EQ(refusal(path), "");
    EXPECT_EQ(refusal(repeated(path, 4)), "its paths are too long");
    EXPECT_EQ(refusal(path + repeated("<use href='#a'/>", 3)), "its paths are too long");
    EXPECT_EQ(refusal("<polygon points='" + std::string(80'000, '1') + "'/>"),
              "its paths are too long");
    EXPECT_EQ(refusal(repeated("<path d='" + std::string(1000, 'z') + "'/>", 1000)), "");
}

TEST(SvgSteps, TellHowDeepElementsLie) {
    EXPECT_EQ(svgSteps(svg("<g/><g><path/></g><path/>")).depth, 3);
    EXPECT_EQ(svgSteps(svg("<g id='a'><g><path/></g></g><use href='#a'/>")).depth, 5);
}

TEST(SvgSteps, RefuseWhatTakesReadersTooLong) {
    EXPECT_EQ(refusal("<g " + repeated("a='1' ", 300) + "/>"), "too many attributes: <g>");
    EXPECT_EQ(
        refusal("<style>" + repeated(".a{fill:red}", 2000) + "</style>" + repeated("<g/>", 10'000)),
        "the style sheets are too long");
}

TEST(SvgSteps, EndWhereReferencesRunInACircle) {
    EXPECT_LT(steps("<g id='a'><use href='#b'/></g><g id='b'><use href='#a'/></g>"), 20);
    EXPECT_LT(steps("<g id='a' clip-path='url(#a)'/>"), 5);
}

TEST(SvgSteps, RefuseWhatIsNestedTooDeeply) {
    EXPECT_EQ(refusal(repeated("<g>", 200) + repeated("</g>", 200)), "");
    EXPECT_EQ(refusal(repeated("<g>", 100'000)), "elements are nested too deeply");
}

TEST(SvgSteps, RefuseEntities) {
    for (const char* prolog :
         {"<!DOCTYPE svg [<!ENTITY a 'b'>]>", "<!DOCTYPE svg SYSTEM 'x' [", "<!ENTITY a 'b'>"}) {
        EXPECT_EQ(svgSteps(prolog + svg("")).refusal, "entities are not read");
    }
    EXPECT_EQ(svgSteps("<!DOCTYPE svg PUBLIC \"-//W3C//DTD SVG 1.1//EN\" \"svg11.dtd\">" + svg(""))
                  .refusal,
              "");
}

TEST(SvgSteps, RefuseOtherEncodings) {
    const auto encoded = [](const std::string& name) {
        return svgSteps("<?xml version='1.0' encoding='" + name + "'?>" + svg("")).refusal;
    };
    EXPECT_EQ(encoded("UTF-8"), "");
    EXPECT_EQ(encoded("iso-8859-1"), "");
    EXPECT_EQ(encoded("UTF-7"), "the encoding is not read: utf-7");
}

TEST(SvgSteps, RefuseWhatWouldReadMoreThanTheText) {
    EXPECT_EQ(refusal("<image href='data:image/png;base64,'/>"), "not drawn: <image>");
    EXPECT_EQ(refusal("<text>of some font</text>"), "not drawn: <text>");
    EXPECT_EQ(refusal("<xi:include href='/etc/passwd'/>"), "not drawn: <include>");
    EXPECT_EQ(refusal("<style>@import url(a.css);</style>"),
              "escapes and imports in style sheets are not read");
    EXPECT_EQ(svgSteps("<?xml-stylesheet href='a.css'?>" + svg("")).refusal,
              "style sheets outside the picture are not read");
}

TEST(SvgSteps, RefuseFilters) {
    EXPECT_EQ(refusal("<filter id='f'/>"), "not drawn: <filter>");
    EXPECT_EQ(refusal("<path filter='blur(9)'/>"), "filters are not drawn");
    EXPECT_EQ(refusal("<path style='fill:red;filter:blur(9)'/>"), "filters are not drawn");
    EXPECT_EQ(refusal("<style><![CDATA[ path{filter : blur(9)} ]]></style>"),
              "filters are not drawn");
    EXPECT_EQ(refusal("<path style='filter:none;color-interpolation-filters:sRGB'/>"), "");
}

TEST(SvgSteps, RefuseStylesThatHideWhatTheyReferTo) {
    const std::string pattern = "<pattern id='p'/>";
    EXPECT_EQ(refusal("<style>path{fill:url(#p)}</style>" + pattern),
              "style sheets may refer to gradients only");
    EXPECT_EQ(refusal("<style>path{fill:url(#p)}</style><linearGradient id='p'/>"), "");
    EXPECT_EQ(refusal("<style>path{fill:url(\\23 p)}</style>" + pattern),
              "escapes and imports in style sheets are not read");
    EXPECT_EQ(refusal("<path style='fill:url(\\23 p)'/>" + pattern),
              "escapes in styles are not read");
}

TEST(SvgSteps, StopWhereTheTextIsNotWellFormed) {
    for (const char* text :
         {"<", "<svg", "<svg a", "<svg a=", "<svg a=b>", "<svg a='", "<!--", "<![CDATA[", "<?",
          "<!", "</", "<svg></svg></svg></g>", "&#", "<svg a='&#"}) {
        EXPECT_LE(svgSteps(text).count, 2) << text;
    }
}

}  // namespace
}  // namespace mezalith::platform
