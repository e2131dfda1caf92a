// SPDX-License-Identifier: MIT
#include "apps/mezalith/layer_styles.hpp"

#include "apps/mezalith/style_file.hpp"
#include "apps/mezalith/view_options.hpp"
#include "host/failure.hpp"
#include "host/wkb_file.hpp"
#include <mezalith/platform/images/image_decoder.hpp>
#include <mezalith/style/image_symbolizer.hpp>
#include <mezalith/style/line_symbolizer.hpp>
#include <mezalith/style/point_symbolizer.hpp>
#include <mezalith/style/polygon_symbolizer.hpp>

#include <algorithm>

#include <CLI/CLI.hpp>

namespace mezalith::app {
namespace {

using ColorPointer = std::shared_ptr<const platform::Color>;
using ImagePointer = std::shared_ptr<const platform::Image>;

constexpr char kNothing[] = "none";
constexpr char kStyleOption[] = "--style";
constexpr char kIconOption[] = "--icon";
constexpr float kMarkerSize = 5;
/// View points around a view that are searched at most for what reaches in.
constexpr double kFarthestReach = 2000;

ColorPointer paintArgument(const std::string& name, const std::string& text) {
    return text == kNothing ? nullptr : colorArgument(name, text);
}

/// "VALUE" or "LAYER=VALUE", for values that are names of files.
struct FileOfLayer {
    std::optional<std::string> layer;
    std::string file;

    explicit FileOfLayer(const std::string& text) {
        const std::size_t at = text.find('=');
        if (at != std::string::npos) layer = text.substr(0, at);
        file = text.substr(at != std::string::npos ? at + 1 : 0);
    }
};

ImagePointer readIcon(const std::string& file) {
    const platform::DecodedImage decoded = platform::decodeImage(host::readFile(file));
    if (decoded.image == nullptr) throw host::Failure(file, decoded.error);
    return decoded.image;
}

double sizeArgument(const std::string& name, const std::string& text) {
    const double size = numberArgument(name, text);
    if (!(size > 0)) throw UsageError(name, text + " is no size");
    return size;
}

double widthArgument(const std::string& name, const std::string& text) {
    const double width = numberArgument(name, text);
    if (width < 0) throw UsageError(name, text + " is less than 0");
    return width;
}

std::vector<double> dashArgument(const std::string& name, const std::string& text) {
    std::vector<double> lengths;
    if (text == kNothing) return lengths;
    for (const std::string& part : split(text, ',')) lengths.push_back(widthArgument(name, part));
    return lengths;
}

/// Muted colours that print well and leave the map's own colours to the options.
Paint defaultPaint(host::Form form) {
    const auto color = [](const char* text) { return platform::Color::colorWithText(text); };
    switch (form) {
        case host::Form::Area:
            return {color("#ece6d8"), color("#8f877a"), 0.5, {}};
        case host::Form::Line:
            return {nullptr, color("#5d7687"), 0.8, {}};
        case host::Form::Points:
            return {color("#a8543a"), color("#ffffff"), 0.5, {}};
    }
    return {};
}

float opacityOf(const ColorPointer& color) {
    return color == nullptr ? 0 : static_cast<float>(color->alphaComponent());
}

void applyStroke(MzStrokedSymbolizer& symbolizer, const Paint& paint) {
    symbolizer.setStrokeWidth(static_cast<float>(paint.width));
    symbolizer.setLineDash(paint.dash.data(), paint.dash.size());
    symbolizer.setIsDashed(!paint.dash.empty());
    // Round caps would close the gaps of a dashed line.
    if (!paint.dash.empty()) symbolizer.setLineCap(0);
}

bool strokes(const Paint& paint) { return paint.stroke != nullptr && paint.width > 0; }

std::shared_ptr<MzSymbolizer> areaSymbolizer(const Paint& paint) {
    auto symbolizer = std::make_shared<MzPolygonSymbolizer>();
    applyStroke(*symbolizer, paint);
    symbolizer->setShouldFill(paint.fill != nullptr);
    symbolizer->setFillColor(paint.fill);
    symbolizer->setFillOpacity(opacityOf(paint.fill));
    symbolizer->setShouldStroke(strokes(paint));
    symbolizer->setStrokeColor(paint.stroke);
    symbolizer->setStrokeOpacity(opacityOf(paint.stroke));
    return symbolizer;
}

std::shared_ptr<MzSymbolizer> lineSymbolizer(const Paint& paint) {
    if (!strokes(paint)) return nullptr;
    auto symbolizer = std::make_shared<MzLineSymbolizer>();
    applyStroke(*symbolizer, paint);
    symbolizer->setStrokeColor(paint.stroke);
    symbolizer->setStrokeOpacity(opacityOf(paint.stroke));
    return symbolizer;
}

std::shared_ptr<MzSymbolizer> pointSymbolizer(const Paint& paint) {
    auto symbolizer = std::make_shared<MzPointSymbolizer>();
    applyStroke(*symbolizer, paint);
    symbolizer->setSymbolSize(kMarkerSize);
    symbolizer->setShouldFill(paint.fill != nullptr);
    symbolizer->setFillColor(paint.fill);
    symbolizer->setShouldStroke(strokes(paint));
    symbolizer->setStrokeColor(paint.stroke);
    return symbolizer;
}

/// Centred at its point, the longer side as long as the paint says.
std::shared_ptr<MzSymbolizer> iconSymbolizer(const Paint& paint) {
    MzSize size = paint.icon->size();
    const double scale = paint.iconSize.value_or(std::max(size.width, size.height)) /
                         std::max(size.width, size.height);
    size = {size.width * scale, size.height * scale};
    return MzImageSymbolizer::initWithImage(paint.icon, {0.5, 0.5}, 0, size);
}

std::shared_ptr<MzSymbolizer> symbolizerFor(const Paint& paint, host::Form form) {
    switch (form) {
        case host::Form::Area:
            return areaSymbolizer(paint);
        case host::Form::Line:
            return lineSymbolizer(paint);
        case host::Form::Points:
            return paint.icon != nullptr ? iconSymbolizer(paint) : pointSymbolizer(paint);
    }
    return nullptr;
}

}  // namespace

void addStyleOptions(CLI::App& command, StyleTexts& texts) {
    const auto add = [&command](const char* name, std::vector<std::string>& values,
                                const char* type, const char* help) {
        command.add_option(name, values, help)->type_name(type)->allow_extra_args(false);
    };
    add("--fill", texts.fill, "[LAYER:]COLOR", "Colour of areas and markers, or none; repeatable");
    add("--stroke", texts.stroke, "[LAYER:]COLOR",
        "Colour of lines and outlines, or none; repeatable");
    add("--width", texts.width, "[LAYER:]POINTS", "Width of lines and outlines; repeatable");
    add("--dash", texts.dash, "[LAYER:]A,B,...",
        "Painted and unpainted lengths in turn, or none; repeatable");
    add(kIconOption, texts.icon, "[LAYER=]FILE",
        "Picture in place of markers: PNG, JPEG, TIFF, WebP or SVG; repeatable");
    add("--icon-size", texts.iconSize, "[LAYER:]POINTS",
        "Longer side of the picture; default its natural size; repeatable");
    add(kStyleOption, texts.style, "[LAYER=]FILE",
        "Style document, .json or .cbor, in place of colours, width and dash; repeatable");
}

LayerStyles::LayerStyles(const StyleTexts& texts) {
    const auto take = [this](const char* name, const std::vector<std::string>& values, auto& result,
                             const auto& read) {
        for (const std::string& text : values) {
            const LayerValue value = layerValue(text);
            result[value.layer] = read(name, value.value);
            argumentOfLayer_.try_emplace(value.layer, name);
        }
    };
    take("--fill", texts.fill, fill_, paintArgument);
    take("--stroke", texts.stroke, stroke_, paintArgument);
    take("--width", texts.width, width_, widthArgument);
    take("--dash", texts.dash, dash_, dashArgument);
    take("--icon-size", texts.iconSize, iconSize_, sizeArgument);
    readIcons(texts.icon);
    readDocuments(texts.style);
}

void LayerStyles::readIcons(const std::vector<std::string>& arguments) {
    for (const std::string& text : arguments) {
        const FileOfLayer icon(text);
        icon_[icon.layer] = readIcon(icon.file);
        argumentOfLayer_.try_emplace(icon.layer, kIconOption);
    }
}

void LayerStyles::readDocuments(const std::vector<std::string>& arguments) {
    for (const std::string& text : arguments) {
        const auto [layer, file] = FileOfLayer(text);
        const auto argument = argumentOfLayer_.find(layer);
        if (argument != argumentOfLayer_.end() && argument->second != kStyleOption) {
            throw UsageError(argument->second, "--style " + text + " says all of the same layers");
        }
        documents_[layer] = readStyleFile(file);
        argumentOfLayer_[layer] = kStyleOption;
    }
}

void LayerStyles::checkLayers(std::span<const std::string> layers) const {
    for (const auto& [layer, argument] : argumentOfLayer_) {
        if (layer && std::ranges::find(layers, *layer) == layers.end()) {
            throw UsageError(argument, "no layer \"" + *layer + "\" on the map");
        }
    }
}

template <typename T>
const T* LayerStyles::find(const Values<T>& values, const std::string& layer) {
    auto found = values.find(layer);
    if (found == values.end()) found = values.find(std::nullopt);
    return found == values.end() ? nullptr : &found->second;
}

Paint LayerStyles::paint(const std::string& layer, host::Form form) const {
    Paint paint = defaultPaint(form);
    if (const auto* fill = find(fill_, layer)) paint.fill = *fill;
    if (const auto* stroke = find(stroke_, layer)) paint.stroke = *stroke;
    if (const auto* width = find(width_, layer)) paint.width = *width;
    if (const auto* dash = find(dash_, layer)) paint.dash = *dash;
    if (const auto* icon = find(icon_, layer)) paint.icon = *icon;
    if (const auto* size = find(iconSize_, layer)) paint.iconSize = *size;
    return paint;
}

std::shared_ptr<MzStyle> LayerStyles::style(const std::string& layer, host::Form form) {
    if (const auto* document = find(documents_, layer)) return *document;
    std::shared_ptr<MzStyle>& style = styles_[{layer, form}];
    if (style != nullptr) return style;
    style = std::make_shared<MzStyle>();
    const auto rule = std::make_shared<MzRule>();
    rule->addSymbolizer(symbolizerFor(paint(layer, form), form));
    style->addRule(rule);
    return style;
}

double LayerStyles::reach(const std::string& layer, std::span<const host::Form> forms,
                          double scaleFactor) {
    double reach = 0;
    for (const host::Form form : forms) {
        reach = std::max(reach, style(layer, form)->paintReach(scaleFactor));
    }
    return std::min(reach, kFarthestReach);
}

}  // namespace mezalith::app
