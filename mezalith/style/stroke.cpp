// SPDX-License-Identifier: MIT
#include <mezalith/platform/pen.hpp>
#include <mezalith/style/stroke.hpp>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <string>

namespace mezalith {

namespace {

std::vector<double> scaled(std::span<const double> lengths, double factor) {
    std::vector<double> result(lengths.begin(), lengths.end());
    for (double& length : result) length *= factor;
    return result;
}

void encodeUnsigned(platform::KeyedArchiver& coder, std::uint64_t value, std::string_view key) {
    coder.encodeInt(static_cast<std::int32_t>(value), key);
}

std::uint64_t decodeUnsigned(const platform::KeyedUnarchiver& coder, std::string_view key) {
    return static_cast<std::uint64_t>(coder.decodeInt(key));
}

/// At most `count` whole doubles; fails unless there are as many, or none at all.
std::vector<double> decodeDash(const platform::KeyedUnarchiver& coder, std::uint64_t count) {
    const std::vector<std::byte> bytes = coder.decodeBytes("lineDash");
    if (!bytes.empty() && bytes.size() != count * sizeof(double)) {
        coder.failWithError(
            std::to_string(bytes.size()) + " bytes, but lineDashCount is " + std::to_string(count),
            "lineDash");
    }
    std::vector<double> dash(std::min<std::uint64_t>(count, bytes.size() / sizeof(double)));
    if (!dash.empty()) std::memcpy(dash.data(), bytes.data(), dash.size() * sizeof(double));
    return dash;
}

std::uint64_t decodeCount(const platform::KeyedUnarchiver& coder, std::string_view key) {
    const std::int32_t count = coder.decodeInt(key);
    if (count < 0)
        coder.failWithError("the number " + std::to_string(count) + ", not a count", key);
    return static_cast<std::uint64_t>(std::max(count, 0));
}

}  // namespace

std::span<const double> MzStroke::dashPattern() const {
    return {lineDash.data(), std::min<std::uint64_t>(lineDashCount, lineDash.size())};
}

void MzStroke::applyTo(platform::GraphicsPort& port, double scaleFactor) const {
    port.setLineCap(platform::LineCap{lineCap});
    port.setLineJoin(platform::LineJoin{lineJoin});
    port.setLineWidth(double{strokeWidth} * scaleFactor);
    const std::span<const double> pattern = dashPattern();
    if (isDashed && !pattern.empty()) {
        port.setLineDash(lineDashOffset * scaleFactor, scaled(pattern, scaleFactor));
    } else {
        port.setLineDash(0.0, {});
    }
}

double MzStroke::reach(double scaleFactor) const {
    using platform::LineCap, platform::LineJoin;
    platform::Pen pen;
    pen.width = std::max(double{strokeWidth} * scaleFactor, 0.0);
    pen.cap = std::min(LineCap{lineCap}, LineCap::Square);
    pen.join = LineJoin{lineJoin} <= LineJoin::Bevel ? LineJoin{lineJoin} : LineJoin::Miter;
    return pen.reach();
}

void MzStroke::copyFrom(const MzStroke& source) {
    strokeWidth = source.strokeWidth;
    lineJoin = source.lineJoin;
    lineCap = source.lineCap;
    lineDashOffset = source.lineDashOffset;
    isDashed = source.isDashed;
    const std::span<const double> pattern = source.dashPattern();
    lineDash.assign(pattern.begin(), pattern.end());
    if (!pattern.empty()) lineDashCount = source.lineDashCount;
}

bool MzStroke::isEqualTo(const MzStroke& other) const {
    return strokeWidth == other.strokeWidth && lineJoin == other.lineJoin &&
           lineCap == other.lineCap && lineDashOffset == other.lineDashOffset &&
           lineDashCount == other.lineDashCount;
}

void MzStroke::encodeWithCoder(platform::KeyedArchiver& coder) const {
    const std::span<const double> pattern = dashPattern();
    encodeUnsigned(coder, lineJoin, "lineJoin");
    encodeUnsigned(coder, lineCap, "lineCap");
    coder.encodeFloat(static_cast<float>(lineDashOffset), "lineDashOffset");
    encodeUnsigned(coder, pattern.empty() ? lineDashCount : pattern.size(), "lineDashCount");
    coder.encodeBool(isDashed, "isDashed");
    coder.encodeBytesOfDoubles(pattern, "lineDash");
}

void MzStroke::decodeWithCoder(const platform::KeyedUnarchiver& coder) {
    lineJoin = decodeUnsigned(coder, "lineJoin");
    lineCap = decodeUnsigned(coder, "lineCap");
    lineDashOffset = double{coder.decodeFloat("lineDashOffset")};
    lineDashCount = decodeCount(coder, "lineDashCount");
    isDashed = coder.decodeBool("isDashed");
    lineDash = decodeDash(coder, lineDashCount);
}

}  // namespace mezalith
