// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/platform/cairo/cairo_port.hpp>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <limits>
#include <memory>
#include <ostream>
#include <span>
#include <vector>

/// What the tests of drawn pictures share.
namespace mezalith::platform::pictures {

inline constexpr double infinity = std::numeric_limits<double>::infinity();
inline const double nan = std::nan("");

using PortPointer = std::unique_ptr<CairoPort>;
using Drawing = std::function<void(GraphicsPort&)>;

/// One pixel's channels, colours multiplied by alpha.
struct Pixel {
    int alpha;
    int red;
    int green;
    int blue;
    friend bool operator==(const Pixel&, const Pixel&) = default;
    friend void PrintTo(const Pixel& p, std::ostream* stream) {
        *stream << "argb " << p.alpha << ' ' << p.red << ' ' << p.green << ' ' << p.blue;
    }
};

/// The pixel in column x, row y from the bottom.
inline Pixel at(const CairoPort& port, int x, int y) {
    const auto row = port.pixelRow(port.pixelHeight() - 1 - y);
    const std::uint32_t value = row[static_cast<std::size_t>(x)];
    const auto channel = [&](int shift) { return static_cast<int>((value >> shift) & 255); };
    return {channel(24), channel(16), channel(8), channel(0)};
}

inline int alphaAt(const CairoPort& port, int x, int y) { return at(port, x, y).alpha; }

inline void rectangle(GraphicsPort& port, double x, double y, double width, double height) {
    port.addLines(std::array{MzPoint{x, y}, MzPoint{x + width, y}, MzPoint{x + width, y + height},
                             MzPoint{x, y + height}});
    port.closeSubpath();
}

inline void fillRectangle(GraphicsPort& port, double x, double y, double width, double height) {
    rectangle(port, x, y, width, height);
    port.drawPath(PathDrawingMode::Fill);
}

inline void strokeLine(GraphicsPort& port, MzPoint from, MzPoint to) {
    port.addLines(std::array{from, to});
    port.drawPath(PathDrawingMode::Stroke);
}

inline std::vector<std::uint32_t> pixelsOf(const CairoPort& port) {
    std::vector<std::uint32_t> pixels;
    for (int row = 0; row < port.pixelHeight(); ++row) {
        const auto line = port.pixelRow(row);
        pixels.insert(pixels.end(), line.begin(), line.end());
    }
    return pixels;
}

/// The pixels of a drawing; none when it fails.
inline std::vector<std::uint32_t> drawn(MzSize size, double ratio, const Drawing& draw) {
    const PortPointer port = CairoPort::pixelPort(size, ratio);
    draw(*port);
    return port->error() ? std::vector<std::uint32_t>{} : pixelsOf(*port);
}

inline bool isEmpty(const CairoPort& port) {
    return std::ranges::all_of(pixelsOf(port), [](std::uint32_t pixel) { return pixel == 0; });
}

/// The largest difference of a channel.
inline int largestDifference(const std::vector<std::uint32_t>& a,
                             const std::vector<std::uint32_t>& b) {
    int largest = a.size() == b.size() ? 0 : 256;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        for (const int shift : {0, 8, 16, 24}) {
            const int difference =
                static_cast<int>((a[i] >> shift) & 255) - static_cast<int>((b[i] >> shift) & 255);
            largest = std::max(largest, std::abs(difference));
        }
    }
    return largest;
}

/// A square with a square in it, running the same way or the other.
inline void squareInSquare(GraphicsPort& port, bool sameWay) {
    rectangle(port, 1, 1, 18, 18);
    if (sameWay) {
        rectangle(port, 6, 6, 8, 8);
    } else {
        rectangle(port, 14, 6, -8, 8);
    }
}

}  // namespace mezalith::platform::pictures
