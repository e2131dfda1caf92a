// SPDX-License-Identifier: MIT
#include <mezalith/platform/number_text.hpp>
#include <mezalith/platform/recording_port.hpp>

#include <utility>

namespace mezalith::platform {
namespace {

constexpr double largestLayerSide = 16384;
constexpr char noneText[] = "none";

std::string listText(std::span<const double> numbers) {
    std::string text;
    for (const double number : numbers) {
        text += text.empty() ? "" : " ";
        text += shortestText(number);
    }
    return text;
}

std::string listText(std::initializer_list<double> numbers) {
    return listText(std::span(numbers.begin(), numbers.size()));
}

std::string colorText(const Color* color) {
    const auto rgb = color != nullptr ? color->deviceRGB() : std::nullopt;
    return rgb ? listText(*rgb) : noneText;
}

std::string rectText(MzRect rect) {
    return listText({rect.origin.x, rect.origin.y, rect.size.width, rect.size.height});
}

std::string imageText(const Image* image) {
    if (image == nullptr) {
        return noneText;
    }
    const MzSize size = image->size();
    return shortestText(size.width) + 'x' + shortestText(size.height);
}

bool isLayerSide(double side) { return side > 0 && side <= largestLayerSide; }

}  // namespace

struct RecordingPort::Record {
    std::vector<std::string> lines;
    int layerCount = 0;
};

class RecordingPort::RecordingLayer final : public Layer {
  public:
    RecordingLayer(std::shared_ptr<Record> record, int number, MzSize size)
        : number_(number),
          size_(size),
          port_(std::move(record), "layer " + std::to_string(number) + ": ") {}

    int number() const { return number_; }
    MzSize size() const override { return size_; }
    GraphicsPort* port() override { return &port_; }

  private:
    int number_;
    MzSize size_;
    RecordingPort port_;
};

RecordingPort::RecordingPort() : RecordingPort(std::make_shared<Record>(), {}) {}

RecordingPort::RecordingPort(std::shared_ptr<Record> record, std::string prefix)
    : record_(std::move(record)), prefix_(std::move(prefix)) {}

RecordingPort::~RecordingPort() = default;

const std::vector<std::string>& RecordingPort::lines() const { return record_->lines; }

std::string RecordingPort::text() const {
    std::string text;
    for (const std::string& line : record_->lines) {
        text += line;
        text += '\n';
    }
    return text;
}

void RecordingPort::clear() { record_->lines.clear(); }

void RecordingPort::write(std::string_view operation, std::initializer_list<double> arguments) {
    write(operation, listText(arguments));
}

void RecordingPort::write(std::string_view operation, const std::string& arguments) {
    std::string line = prefix_;
    line += operation;
    line += arguments.empty() ? "" : " ";
    line += arguments;
    record_->lines.push_back(std::move(line));
}

void RecordingPort::saveState() { write("saveState"); }

void RecordingPort::restoreState() { write("restoreState"); }

void RecordingPort::translate(double tx, double ty) { write("translate", {tx, ty}); }

void RecordingPort::rotate(double radians) { write("rotate", {radians}); }

void RecordingPort::scale(double sx, double sy) { write("scale", {sx, sy}); }

void RecordingPort::concat(const AffineTransform& t) {
    write("concat", {t.m11, t.m12, t.m21, t.m22, t.tX, t.tY});
}

void RecordingPort::setLineWidth(double width) { write("setLineWidth", {width}); }

void RecordingPort::setLineCap(LineCap cap) {
    write("setLineCap", std::to_string(static_cast<std::uint64_t>(cap)));
}

void RecordingPort::setLineJoin(LineJoin join) {
    write("setLineJoin", std::to_string(static_cast<std::uint64_t>(join)));
}

void RecordingPort::setLineDash(double phase, std::span<const double> lengths) {
    const std::string pattern = lengths.empty() ? "solid" : '[' + listText(lengths) + ']';
    write("setLineDash", shortestText(phase) + ' ' + pattern);
}

void RecordingPort::setStrokeColor(const Color* color) {
    write("setStrokeColor", colorText(color));
}

void RecordingPort::setFillColor(const Color* color) { write("setFillColor", colorText(color)); }

void RecordingPort::setRGBStrokeColor(double red, double green, double blue, double alpha) {
    write("setRGBStrokeColor", {red, green, blue, alpha});
}

void RecordingPort::setRGBFillColor(double red, double green, double blue, double alpha) {
    write("setRGBFillColor", {red, green, blue, alpha});
}

void RecordingPort::setShadow(MzSize offset, double blur) {
    write("setShadow", {offset.width, offset.height, blur});
}

void RecordingPort::setShadowWithColor(MzSize offset, double blur, const Color* color) {
    write("setShadowWithColor",
          listText({offset.width, offset.height, blur}) + ' ' + colorText(color));
}

void RecordingPort::beginPath() { write("beginPath"); }

void RecordingPort::moveToPoint(double x, double y) { write("moveToPoint", {x, y}); }

void RecordingPort::addLineToPoint(double x, double y) { write("addLineToPoint", {x, y}); }

void RecordingPort::addCurveToPoint(double cp1x, double cp1y, double cp2x, double cp2y, double x,
                                    double y) {
    write("addCurveToPoint", {cp1x, cp1y, cp2x, cp2y, x, y});
}

void RecordingPort::addArcToPoint(double x1, double y1, double x2, double y2, double radius) {
    write("addArcToPoint", {x1, y1, x2, y2, radius});
}

void RecordingPort::addEllipseInRect(MzRect rect) { write("addEllipseInRect", rectText(rect)); }

void RecordingPort::closeSubpath() { write("closeSubpath"); }

void RecordingPort::addLines(std::span<const MzPoint> points) {
    std::string_view operation = "moveToPoint";
    for (const MzPoint& point : points) {
        write(operation, {point.x, point.y});
        operation = "addLineToPoint";
    }
}

void RecordingPort::clipEvenOdd() { write("clipEvenOdd"); }

void RecordingPort::drawPath(PathDrawingMode mode) {
    write("drawPath", std::to_string(static_cast<int>(mode)));
}

std::shared_ptr<Layer> RecordingPort::createLayer(MzSize size) {
    const bool isPossible = isLayerSide(size.width) && isLayerSide(size.height);
    const std::string sides = listText({size.width, size.height});
    if (!isPossible) {
        write("createLayer", std::string(noneText) + ' ' + sides);
        return nullptr;
    }
    const int number = ++record_->layerCount;
    write("createLayer", std::to_string(number) + ' ' + sides);
    return std::make_shared<RecordingLayer>(record_, number, size);
}

void RecordingPort::drawLayerAtPoint(const Layer* layer, MzPoint point) {
    const auto* recorded = dynamic_cast<const RecordingLayer*>(layer);
    const std::string name = recorded ? std::to_string(recorded->number()) : noneText;
    write("drawLayerAtPoint", name + ' ' + listText({point.x, point.y}));
}

void RecordingPort::drawImageInRect(const Image* image, MzRect rect) {
    write("drawImageInRect", imageText(image) + ' ' + rectText(rect));
}

}  // namespace mezalith::platform
