// SPDX-License-Identifier: MIT
#include <mezalith/platform/cairo/cairo_port.hpp>
#include <mezalith/platform/cairo/pictures.hpp>
#include <mezalith/platform/hit_port.hpp>

#include <numbers>
#include <optional>
#include <random>

#include <gtest/gtest.h>

/// What the hit-testing port says against the pixels of the same drawing.
namespace mezalith::platform {
namespace {

using namespace pictures;

constexpr unsigned seed = 20240620;
constexpr int side = 80;

/// Alphas from here on are seen.
constexpr int seenAlpha = 26;

/// From the centre of a pixel to its corners, and what curves and the rasteriser deviate.
constexpr double pixelReach = 0.7072 + 0.15;

/// A pixel whose neighbours up to this distance from its centre are clear is no hit.
constexpr double slack = 1.0;

/// How far a stamped layer is blurred.
constexpr double stampBlur = 0.75;

/// Random drawings, each told by the state of the generator it begins with.
class Sketcher {
  public:
    explicit Sketcher(unsigned round) : random_(seed + round) {}

    double number(double from, double to) {
        return std::uniform_real_distribution(from, to)(random_);
    }
    int whole(int end) { return std::uniform_int_distribution(0, end - 1)(random_); }
    MzPoint point() { return {number(-10, side + 10.0), number(-10, side + 10.0)}; }

    void stroke(GraphicsPort& port) {
        style(port);
        transform(port);
        shape(port, whole(6));
        port.drawPath(PathDrawingMode::Stroke);
    }

    void dashes(GraphicsPort& port, bool ofEllipse) {
        style(port);
        transform(port);
        hasCurves_ = false;
        const double on = number(0, 15);
        const std::array lengths{whole(4) == 0 ? 0.0 : on, number(3, 15), number(1, 9)};
        port.setLineDash(number(-20, 20),
                         std::span(lengths).first(static_cast<std::size_t>(whole(2)) + 2));
        shape(port, ofEllipse ? 0 : 1 + whole(5));
        port.drawPath(PathDrawingMode::Stroke);
    }

    void fill(GraphicsPort& port) {
        transform(port);
        for (int count = whole(3); count >= 0; --count) shape(port, whole(6));
        port.drawPath(PathDrawingMode{whole(2)});
    }

    /// A stroked and filled shape in a layer, which is turned.
    void marker(GraphicsPort& port) {
        const double size = number(10, 40);
        const auto layer = port.createLayer({size, size});
        GraphicsPort& inner = *layer->port();
        inner.translate(size / 2, size / 2);
        inner.scale(size / side / 1.5, size / side / 1.5);
        inner.translate(-side / 2.0, -side / 2.0);
        style(inner);
        shape(inner, whole(6));
        inner.drawPath(PathDrawingMode{whole(5)});
        place(port);
        port.drawLayerAtPoint(layer.get(), {number(-size, 0), number(-size, 0)});
    }

    void icon(GraphicsPort& port, const Image& image) {
        const MzSize size{number(8, 50), number(8, 50)};
        if (whole(2) != 0) {
            place(port);
            port.drawImageInRect(&image, {{-size.width / 2, -size.height / 2}, size});
            return;
        }
        const auto layer = port.createLayer(size);
        layer->port()->drawImageInRect(&image, {{0, 0}, size});
        place(port);
        port.drawLayerAtPoint(layer.get(), {-size.width / 2, -size.height / 2});
    }

    void clip(GraphicsPort& port) {
        shape(port, whole(6));
        port.clipEvenOdd();
    }

  private:
    std::mt19937_64 random_;
    bool hasCurves_ = true;

    void style(GraphicsPort& port) {
        port.setLineWidth(number(0.5, whole(4) == 0 ? 24 : 8));
        port.setLineCap(static_cast<LineCap>(whole(3)));
        port.setLineJoin(static_cast<LineJoin>(whole(3)));
    }

    void place(GraphicsPort& port) {
        port.translate(number(0, side), number(0, side));
        port.rotate(number(-7, 7));
    }

    void transform(GraphicsPort& port) {
        if (whole(2) != 0) return;
        place(port);
        const double across = number(0.4, 1.6);
        port.scale(across, whole(2) != 0 ? across : number(0.4, 1.6));
        port.translate(-side / 2.0, -side / 2.0);
    }

    void shape(GraphicsPort& port, int kind) {
        if (kind == 0) {
            port.addEllipseInRect({point(), {number(2, side), number(2, side)}});
            return;
        }
        port.moveToPoint(point().x, point().y);
        for (int count = kind + whole(4); count > 0; --count) {
            const MzPoint a = point(), b = point(), c = point();
            if (hasCurves_ && whole(6) == 0) {
                port.addCurveToPoint(a.x, a.y, b.x, b.y, c.x, c.y);
            } else if (hasCurves_ && whole(12) == 0) {
                port.addArcToPoint(a.x, a.y, b.x, b.y, number(1, 30));
            } else {
                port.addLineToPoint(c.x, c.y);
            }
        }
        if (whole(2) != 0) port.closeSubpath();
    }
};

/// The largest alpha of the pixels that have a part within `distance` of a pixel's centre.
int largestAlphaAround(const CairoPort& port, int x, int y, double distance) {
    const int reach = static_cast<int>(std::ceil(distance + 0.5));
    int largest = 0;
    for (int dy = -reach; dy <= reach; ++dy) {
        for (int dx = -reach; dx <= reach; ++dx) {
            const double away =
                std::hypot(std::max(std::abs(dx) - 0.5, 0.0), std::max(std::abs(dy) - 0.5, 0.0));
            const bool isIn = x + dx >= 0 && x + dx < side && y + dy >= 0 && y + dy < side;
            if (away <= distance && isIn)
                largest = std::max(largest, alphaAt(port, x + dx, y + dy));
        }
    }
    return largest;
}

bool isHit(const Drawing& draw, int x, int y, double tolerance) {
    HitPort port({x + 0.5, y + 0.5}, tolerance);
    draw(port);
    return port.isHit();
}

/// How many pixels were looked at, by what they are.
struct Seen {
    int painted = 0;
    int clear = 0;
    int clearHits = 0;  ///< of the clear ones
};

/// Looks at pixels of a drawing: one that is painted is a hit, one with nothing near is none.
void compare(const Drawing& draw, unsigned round, double blur, Seen& seen) {
    const PortPointer picture = CairoPort::pixelPort({side, side});
    draw(*picture);
    ASSERT_FALSE(picture->error());
    std::mt19937_64 random(round);
    std::uniform_int_distribution<int> pixel(12, side - 13);
    for (int i = 0; i < 40; ++i) {
        const int x = pixel(random), y = pixel(random);
        const double tolerance = i % 3;
        if (alphaAt(*picture, x, y) >= seenAlpha) {
            ++seen.painted;
            ASSERT_TRUE(isHit(draw, x, y, pixelReach + blur))
                << "round " << round << ", painted pixel " << x << ' ' << y;
        }
        if (largestAlphaAround(*picture, x, y, tolerance + slack + blur) == 0) {
            ++seen.clear;
            seen.clearHits += isHit(draw, x, y, tolerance) ? 1 : 0;
        }
    }
}

template <typename Draw>
void compareRounds(unsigned rounds, double blur, Draw draw, int mostClearHits = 0) {
    Seen seen;
    for (unsigned round = 0; round < rounds; ++round) {
        compare([&](GraphicsPort& port) { draw(Sketcher(round), port); }, round, blur, seen);
        if (::testing::Test::HasFatalFailure()) return;
        ASSERT_LE(seen.clearHits, mostClearHits) << "round " << round;
    }
    EXPECT_GT(seen.painted, static_cast<int>(rounds / 2));
    EXPECT_GT(seen.clear, static_cast<int>(rounds));
}

TEST(CairoHit, AgreesWithStrokes) {
    compareRounds(1500, 0, [](Sketcher sketcher, GraphicsPort& port) { sketcher.stroke(port); });
}

TEST(CairoHit, AgreesWithDashes) {
    compareRounds(1000, 0,
                  [](Sketcher sketcher, GraphicsPort& port) { sketcher.dashes(port, false); });
}

TEST(CairoHit, AgreesWithDashesOfEllipses) {
    // Lines along curves that are as good as others have other lengths.
    compareRounds(500, 1,
                  [](Sketcher sketcher, GraphicsPort& port) { sketcher.dashes(port, true); });
}

TEST(CairoHit, AgreesWithFills) {
    compareRounds(1000, 0, [](Sketcher sketcher, GraphicsPort& port) { sketcher.fill(port); });
}

TEST(CairoHit, AgreesWithStampedMarkers) {
    compareRounds(1000, stampBlur,
                  [](Sketcher sketcher, GraphicsPort& port) { sketcher.marker(port); });
}

TEST(CairoHit, AgreesWithTurnedIcons) {
    // A ring and a corner.
    Bitmap bitmap = Bitmap::bitmapWithSize(24, 24);
    for (std::int32_t y = 0; y < 24; ++y) {
        for (std::int32_t x = 0; x < 24; ++x) {
            const double away = std::hypot(x - 11.5, y - 11.5);
            if ((away > 6 && away < 11) || x + y < 6) {
                bitmap.row(y)[static_cast<std::size_t>(x)] = 0xFF203040;
            }
        }
    }
    const auto image = Image::imageWithBitmap(std::move(bitmap));
    compareRounds(1000, 1.25,
                  [&](Sketcher sketcher, GraphicsPort& port) { sketcher.icon(port, *image); });
}

TEST(CairoHit, AgreesWithWhatIsClipped) {
    compareRounds(
        600, 0.25,
        [](Sketcher sketcher, GraphicsPort& port) {
            sketcher.clip(port);
            port.setLineWidth(3);
            if (sketcher.whole(2) != 0) sketcher.clip(port);
            if (sketcher.whole(2) != 0) {
                sketcher.stroke(port);
            } else {
                sketcher.fill(port);
            }
        },
        // Clips that miss each other by less than the grain of discs.
        2);
}

}  // namespace
}  // namespace mezalith::platform
