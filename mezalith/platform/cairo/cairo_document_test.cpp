// SPDX-License-Identifier: MIT
#include "tests/support/temporary_folder.hpp"
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/cairo/pictures.hpp>

#include <cstdio>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using namespace pictures;

/// A port into a string that outlives it.
struct Document {
    std::string bytes;
    PortPointer port;

    CairoPort::Sink sink() {
        return [this](std::span<const std::byte> piece) {
            bytes.append(reinterpret_cast<const char*>(piece.data()), piece.size());
            return true;
        };
    }
};

enum class Format { SVG, PDF };

std::string documentOf(Format format, const Drawing& draw, double ratio = 2) {
    Document document;
    document.port = format == Format::SVG ? CairoPort::svgPort({200, 100}, document.sink(), ratio)
                                          : CairoPort::pdfPort({200, 100}, document.sink(), ratio);
    draw(*document.port);
    EXPECT_TRUE(document.port->finish());
    EXPECT_EQ(document.port->error(), std::nullopt);
    return document.bytes;
}

std::size_t count(std::string_view text, std::string_view word) {
    std::size_t result = 0;
    for (auto at = text.find(word); at != text.npos; at = text.find(word, at + word.size())) {
        ++result;
    }
    return result;
}

/// All that a map without shadows draws: areas, lines, dashes, clips, translucency, markers.
void plainMap(GraphicsPort& port) {
    port.saveState();
    rectangle(port, 5, 5, 190, 90);
    port.clipEvenOdd();
    port.setRGBFillColor(0.8, 0.9, 1, 0.5);
    port.setRGBStrokeColor(0.2, 0.2, 0.2, 0.7);
    port.setLineJoin(LineJoin::Round);
    squareInSquare(port, true);
    port.drawPath(PathDrawingMode::EvenOddFillStroke);
    port.setLineDash(1, std::array{4.0, 2.0});
    strokeLine(port, {-1e9, -1e9}, {1e9, 1e9});
    const auto layer = port.createLayer({10, 10});
    layer->port()->setRGBFillColor(1, 0, 0, 0.5);
    layer->port()->addEllipseInRect({{1, 1}, {8, 8}});
    layer->port()->drawPath(PathDrawingMode::EvenOddFillStroke);
    for (int i = 0; i < 5; ++i) {
        port.drawLayerAtPoint(layer.get(), {20.5 + 30 * i, 40});
    }
    port.setShadowWithColor({3, 3}, 0, Color::blackColor().get());
    fillRectangle(port, 100, 10, 20, 20);
    port.restoreState();
}

void shadowedMap(GraphicsPort& port) {
    plainMap(port);
    port.setShadow({3, -3}, 4);
    fillRectangle(port, 60, 60, 20, 20);
    const auto layer = port.createLayer({10, 10});
    fillRectangle(*layer->port(), 2, 2, 6, 6);
    port.drawLayerAtPoint(layer.get(), {150, 20});
}

TEST(CairoDocument, IsOneWholeSVGInPixelUnits) {
    const std::string svg = documentOf(Format::SVG, plainMap);
    EXPECT_TRUE(svg.starts_with("<?xml"));
    EXPECT_TRUE(svg.ends_with("</svg>\n"));
    EXPECT_NE(svg.find(R"(width="200px" height="100px" viewBox="0 0 200 100")"), svg.npos);
}

TEST(CairoDocument, IsOneWholePDF) {
    const std::string pdf = documentOf(Format::PDF, plainMap);
    EXPECT_TRUE(pdf.starts_with("%PDF-"));
    EXPECT_TRUE(pdf.ends_with("%%EOF\n"));
    EXPECT_NE(pdf.find("/MediaBox [ 0 0 200 100 ]"), pdf.npos);
    EXPECT_NE(pdf.find("/Count 1"), pdf.npos);
}

TEST(CairoDocument, OfAMapWithoutShadowsHoldsNoImage) {
    EXPECT_EQ(count(documentOf(Format::SVG, plainMap), "<image"), 0);
    EXPECT_EQ(count(documentOf(Format::PDF, plainMap), "/Subtype /Image"), 0);
}

TEST(CairoDocument, KeepsLayersAsVectorsAndOnce) {
    const std::string svg = documentOf(Format::SVG, [](GraphicsPort& port) {
        const auto layer = port.createLayer({10, 10});
        fillRectangle(*layer->port(), 2, 2, 5, 5);
        for (int i = 0; i < 20; ++i) {
            port.drawLayerAtPoint(layer.get(), {9.5 * i, 5});
        }
    });
    EXPECT_EQ(count(svg, "<use"), 20);
    EXPECT_EQ(count(svg, "<path"), 1);
}

TEST(CairoDocument, HoldsAnImageForEachBlurredShadow) {
    EXPECT_EQ(count(documentOf(Format::SVG, shadowedMap), "<image"), 2);
    // A picture and its transparency each.
    EXPECT_EQ(count(documentOf(Format::PDF, shadowedMap), "/Subtype /Image"), 4);
}

TEST(CairoDocument, ShadowImagesAreNoLargerThanTheyMust) {
    const auto shadowOf = [](double x, double blur) {
        return [=](GraphicsPort& port) {
            port.setShadow({0, 0}, blur);
            fillRectangle(port, x, 10, 20, 20);
        };
    };
    // 20 points, three deviations and a pixel around them, two pixels a point.
    EXPECT_NE(documentOf(Format::SVG, shadowOf(50, 4)).find(R"(width="66" height="66")"),
              std::string::npos);
    // All but five points lie outside the page.
    EXPECT_NE(documentOf(Format::SVG, shadowOf(-15, 4)).find(R"(width="24" height="66")"),
              std::string::npos);
    // A wide blur needs half the pixels; this one is cut off a pixel below the page.
    EXPECT_NE(documentOf(Format::SVG, shadowOf(50, 16)).find(R"(width="70" height="56")"),
              std::string::npos);
}

TEST(CairoDocument, IsTheSameEachTime) {
    for (const Format format : {Format::SVG, Format::PDF}) {
        const std::string first = documentOf(format, shadowedMap);
        drawn({20, 20}, 1, plainMap);
        EXPECT_EQ(documentOf(format, shadowedMap), first);
    }
}

TEST(CairoDocument, CarriesNoDate) {
    const std::string pdf = documentOf(Format::PDF, shadowedMap);
    EXPECT_EQ(count(pdf, "Date"), 0);
    EXPECT_EQ(count(pdf, "/ID"), 0);
}

TEST(CairoDocument, OfNothingIsABlankPage) {
    const Drawing nothing = [](GraphicsPort&) {};
    EXPECT_TRUE(documentOf(Format::SVG, nothing).ends_with("</svg>\n"));
    EXPECT_NE(documentOf(Format::PDF, nothing).find("/Count 1"), std::string::npos);
}

TEST(CairoDocument, HasNoPixels) {
    Document document;
    const auto port = CairoPort::svgPort({20, 20}, document.sink());
    EXPECT_EQ(port->pixelWidth(), 0);
    EXPECT_EQ(port->pixelHeight(), 0);
    EXPECT_TRUE(port->pixelRow(0).empty());
    EXPECT_FALSE(port->writePNG(document.sink()));
    EXPECT_EQ(port->error(), std::nullopt);
}

TEST(CairoDocument, IgnoresWhatIsDrawnAfterItsEnd) {
    Document document;
    document.port = CairoPort::pdfPort({200, 100}, document.sink());
    const auto layer = document.port->createLayer({10, 10});
    EXPECT_TRUE(document.port->finish());
    const std::string bytes = document.bytes;
    shadowedMap(*document.port);
    shadowedMap(*layer->port());
    document.port->drawLayerAtPoint(layer.get(), {1, 1});
    EXPECT_TRUE(document.port->finish());
    EXPECT_EQ(document.bytes, bytes);
}

TEST(CairoDocument, IsFinishedByItsEnd) {
    Document document;
    document.port = CairoPort::svgPort({20, 20}, document.sink());
    document.port.reset();
    EXPECT_TRUE(document.bytes.ends_with("</svg>\n"));
}

TEST(CairoDocument, LayersMayBeDrawnIntoEachOther) {
    // Not as SVG: Cairo 1.16 loses the memory of a layer that changes after it was drawn there.
    documentOf(Format::PDF, [](GraphicsPort& port) {
        const auto a = port.createLayer({10, 10});
        const auto b = port.createLayer({10, 10});
        for (int i = 0; i < 3; ++i) {
            fillRectangle(*a->port(), 1, 1, 2, 2);
            a->port()->drawLayerAtPoint(a.get(), {1, 1});
            a->port()->drawLayerAtPoint(b.get(), {2, 2});
            b->port()->drawLayerAtPoint(a.get(), {2, 2});
        }
        port.drawLayerAtPoint(b.get(), {0, 0});
    });
}

TEST(CairoDocument, ShowsLayersWithinLayers) {
    const std::string svg = documentOf(Format::SVG, [](GraphicsPort& port) {
        const auto inner = port.createLayer({4, 4});
        fillRectangle(*inner->port(), 1, 1, 2, 2);
        const auto outer = port.createLayer({20, 20});
        outer->port()->drawLayerAtPoint(inner.get(), {3, 3});
        outer->port()->drawLayerAtPoint(inner.get(), {9, 9});
        port.drawLayerAtPoint(outer.get(), {0, 0});
        port.drawLayerAtPoint(outer.get(), {30, 0});
    });
    EXPECT_EQ(count(svg, "<use"), 4);
    EXPECT_EQ(count(svg, "<path"), 1);
}

TEST(CairoDocument, ReportsASinkThatRefuses) {
    for (const std::size_t room : {0, 100, 1000}) {
        std::size_t taken = 0;
        const CairoPort::Sink sink = [&](std::span<const std::byte> bytes) {
            taken += bytes.size();
            return taken <= room;
        };
        for (const Format format : {Format::SVG, Format::PDF}) {
            taken = 0;
            const auto port = format == Format::SVG ? CairoPort::svgPort({200, 100}, sink)
                                                    : CairoPort::pdfPort({200, 100}, sink);
            shadowedMap(*port);
            EXPECT_FALSE(port->finish());
            EXPECT_EQ(port->error(), "the output cannot be written");
        }
    }
}

TEST(CairoDocument, WritesTheSameIntoAFile) {
    const testing::TemporaryFolder folder;
    const auto svgPort = CairoPort::svgPort({200, 100}, folder.path("map.svg"));
    shadowedMap(*svgPort);
    EXPECT_TRUE(svgPort->finish());
    EXPECT_EQ(folder.contentOf("map.svg"), documentOf(Format::SVG, shadowedMap));
    const auto pdfPort = CairoPort::pdfPort({200, 100}, folder.path("map.pdf"));
    shadowedMap(*pdfPort);
    EXPECT_TRUE(pdfPort->finish());
    EXPECT_EQ(folder.contentOf("map.pdf"), documentOf(Format::PDF, shadowedMap));
}

TEST(CairoDocument, RefusingASizeLeavesTheFileAlone) {
    const testing::TemporaryFolder folder;
    EXPECT_EQ(CairoPort::svgPort({0, 100}, folder.path("map.svg")), nullptr);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST(CairoDocument, SaysWhyAFileCannotBeMade) {
    const auto port = CairoPort::pdfPort({200, 100}, "/nonexistent/map.pdf");
    ASSERT_NE(port, nullptr);
    EXPECT_EQ(port->error(), "/nonexistent/map.pdf: No such file or directory");
    plainMap(*port);
    EXPECT_FALSE(port->finish());
}

TEST(CairoDocument, SaysWhenTheDiskIsFull) {
    if (!std::filesystem::exists("/dev/full")) {
        GTEST_SKIP() << "no device that is always full";
    }
    for (const bool isSVG : {true, false}) {
        const std::filesystem::path full("/dev/full");
        const auto port =
            isSVG ? CairoPort::svgPort({200, 100}, full) : CairoPort::pdfPort({200, 100}, full);
        shadowedMap(*port);
        EXPECT_FALSE(port->finish());
        EXPECT_EQ(port->error(), "/dev/full: No space left on device");
    }
    const auto picture = CairoPort::pixelPort({20, 20});
    EXPECT_FALSE(picture->writePNG("/dev/full"));
    EXPECT_EQ(picture->error(), "/dev/full: No space left on device");
}

TEST(CairoPicture, IsWrittenAsPNG) {
    const auto port = CairoPort::pixelPort({20, 10}, 2);
    plainMap(*port);
    Document document;
    EXPECT_TRUE(port->writePNG(document.sink()));
    const std::string header("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\x28\0\0\0\x14\x08\x06", 26);
    EXPECT_EQ(document.bytes.substr(0, 26), header);
    EXPECT_EQ(count(document.bytes, "tIME"), 0);
    const testing::TemporaryFolder folder;
    EXPECT_TRUE(port->writePNG(folder.path("map.png")));
    EXPECT_EQ(folder.contentOf("map.png"), document.bytes);
    EXPECT_EQ(port->error(), std::nullopt);
}

TEST(CairoPicture, ReportsASinkThatRefusesItsPNG) {
    const auto port = CairoPort::pixelPort({20, 10});
    EXPECT_FALSE(port->writePNG([](std::span<const std::byte>) { return false; }));
    EXPECT_EQ(port->error(), "the output cannot be written");
}

}  // namespace
}  // namespace mezalith::platform
