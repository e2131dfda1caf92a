// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/cairo/pictures.hpp>

#include <random>

#include <gtest/gtest.h>

namespace mezalith::platform {
namespace {

using namespace pictures;

constexpr unsigned seed = 20240601;

/// Draws at random, with numbers of all magnitudes and of none.
class Scribbler {
  public:
    explicit Scribbler(unsigned round) : random_(seed + round) {}

    void scribble(GraphicsPort& port, int operations, int depth = 0) {
        for (int i = 0; i < operations; ++i) {
            const int choice = whole(26);
            if (choice < 12) {
                addToPath(port, choice);
            } else if (choice < 20) {
                changeState(port, choice);
            } else if (choice < 25) {
                port.drawPath(static_cast<PathDrawingMode>(whole(6)));
            } else if (depth < 2) {
                stamp(port, depth);
            }
        }
    }

  private:
    std::mt19937_64 random_;

    int whole(int end) { return std::uniform_int_distribution(0, end - 1)(random_); }

    double number() {
        static constexpr std::array strange{0.0,  -0.0,  1e-300, 1e300,   -1e300,  5e-324, 1e9,
                                            -1e9, 8.4e6, 2.1e6,  -32768., 65536.5, 1e18,   1e-9};
        switch (whole(40)) {
            case 0:
                return nan;
            case 1:
                return whole(2) != 0 ? infinity : -infinity;
            case 2:
            case 3:
                return strange[static_cast<std::size_t>(whole(static_cast<int>(strange.size())))];
            default:
                return std::uniform_real_distribution(-60.0, 120.0)(random_);
        }
    }

    MzPoint point() { return {number(), number()}; }

    void addToPath(GraphicsPort& port, int choice) {
        switch (choice) {
            case 0:
                port.beginPath();
                return;
            case 1:
                port.moveToPoint(number(), number());
                return;
            case 2:
                port.addCurveToPoint(number(), number(), number(), number(), number(), number());
                return;
            case 3:
                port.addArcToPoint(number(), number(), number(), number(), number());
                return;
            case 4:
                port.addEllipseInRect({point(), {number(), number()}});
                return;
            case 5:
                port.closeSubpath();
                return;
            case 6:
            case 7:
                port.addLines(std::array{point(), point(), point(), point()});
                return;
            default:
                port.addLineToPoint(number(), number());
        }
    }

    void changeState(GraphicsPort& port, int choice) {
        switch (choice) {
            case 12:
                port.saveState();
                return;
            case 13:
            case 14:
                port.restoreState();
                return;
            case 15:
                transform(port);
                return;
            case 16:
                port.setLineWidth(number());
                port.setLineCap(static_cast<LineCap>(whole(4)));
                port.setLineJoin(static_cast<LineJoin>(whole(4)));
                return;
            case 17: {
                const std::array lengths{number(), number(), number()};
                port.setLineDash(number(),
                                 std::span(lengths).first(static_cast<std::size_t>(whole(4))));
                return;
            }
            case 18:
                port.setShadow({number(), number()}, number() / 4);
                return;
            default:
                if (whole(8) == 0) {
                    port.clipEvenOdd();
                }
        }
    }

    void transform(GraphicsPort& port) {
        switch (whole(8)) {
            case 0:
                port.concat({number(), number(), number(), number(), number(), number()});
                return;
            case 1:
                port.scale(number(), number());
                return;
            case 2:
                port.rotate(number());
                return;
            default:
                port.translate(number() / 10, number() / 10);
        }
    }

    void stamp(GraphicsPort& port, int depth) {
        const auto layer = port.createLayer({number(), number()});
        if (layer) {
            scribble(*layer->port(), 20, depth + 1);
            port.drawLayerAtPoint(layer.get(), point());
            port.drawLayerAtPoint(layer.get(), {5, 5});
        }
    }
};

TEST(CairoPort, SurvivesWhateverIsDrawn) {
    for (unsigned round = 0; round < 40; ++round) {
        const auto port = CairoPort::pixelPort({60, 40}, 1 + round % 3);
        Scribbler(round).scribble(*port, 150);
        ASSERT_EQ(port->error(), std::nullopt) << "seed " << seed << " round " << round;
    }
}

TEST(CairoDocument, SurvivesWhateverIsDrawn) {
    const auto ignore = [](std::span<const std::byte>) { return true; };
    for (unsigned round = 0; round < 25; ++round) {
        const auto svg = CairoPort::svgPort({60, 40}, ignore);
        const auto pdf = CairoPort::pdfPort({60, 40}, ignore);
        Scribbler(round).scribble(*svg, 100);
        Scribbler(round).scribble(*pdf, 100);
        ASSERT_TRUE(svg->finish()) << *svg->error() << " seed " << seed << " round " << round;
        ASSERT_TRUE(pdf->finish()) << *pdf->error() << " seed " << seed << " round " << round;
    }
}

}  // namespace
}  // namespace mezalith::platform
