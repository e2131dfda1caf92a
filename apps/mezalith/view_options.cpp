// SPDX-License-Identifier: MIT
#include "apps/mezalith/view_options.hpp"

#include "apps/mezalith/arguments.hpp"

#include <cmath>
#include <cstdint>

namespace mezalith::app {
namespace {

host::BoundingBox areaArgument(const std::string& text) {
    const auto sides = numbersArgument("--bbox", text, ',', 4, "W,S,E,N");
    // East of west across the antimeridian.
    const double east = sides[2] < sides[0] ? sides[2] + 360 : sides[2];
    const host::BoundingBox area{sides[0], sides[1], east, sides[3]};
    if (area.isEmpty()) throw UsageError("--bbox", "no area in " + text);
    return area;
}

MzSize sizeArgument(const std::string& text) {
    const auto sides = numbersArgument("--size", text, 'x', 2, "WxH");
    if (!(sides[0] > 0 && sides[1] > 0)) throw UsageError("--size", "no area in " + text);
    return {sides[0], sides[1]};
}

}  // namespace

std::shared_ptr<MzMapProjection> projectionArgument(const std::string& text) {
    if (text == "plate-carree") return MzMapProjection::mapProjectionWithPlateCarree();
    if (text.starts_with("utm:")) {
        const double zone = numberArgument("--projection", text.substr(4));
        if (zone >= 1 && zone <= 60 && zone == std::floor(zone)) {
            return MzMapProjection::mapProjectionWithUTMZone(static_cast<std::uint64_t>(zone));
        }
    }
    throw UsageError("--projection", "\"" + text + "\" is not " + kProjectionHelp);
}

std::shared_ptr<const platform::Color> colorArgument(const std::string& name,
                                                     const std::string& text) {
    auto color = platform::Color::colorWithText(text);
    if (color == nullptr) throw UsageError(name, "\"" + text + "\" is not a colour");
    return color;
}

void addViewOptions(CLI::App& command, ViewTexts& texts) {
    const auto add = [&command](const char* name, std::string& text, const char* type,
                                const char* help) {
        command.add_option(name, text, help)->type_name(type)->capture_default_str();
    };
    add("--projection", texts.projection, "PROJECTION", kProjectionHelp);
    add("--bbox", texts.bbox, "W,S,E,N", "Area to show, degrees; default the data's bounds");
    add("--size", texts.size, "WxH", "Size of the view, view points");
    add("--scale-factor", texts.scaleFactor, "FACTOR", "Multiplies widths, dashes and symbols");
    add("--pixel-ratio", texts.pixelRatio, "RATIO",
        "Backing pixels per view point; default 1, in documents 4");
    add("--background", texts.background, "COLOR", "Colour behind everything");
}

ViewOptions viewOptionsOf(const ViewTexts& texts) {
    ViewOptions options;
    options.projection = projectionArgument(texts.projection);
    if (!texts.bbox.empty()) options.area = areaArgument(texts.bbox);
    options.size = sizeArgument(texts.size);
    options.scaleFactor = positiveArgument("--scale-factor", texts.scaleFactor);
    if (!texts.pixelRatio.empty()) {
        options.pixelRatio = positiveArgument("--pixel-ratio", texts.pixelRatio);
    }
    options.background = colorArgument("--background", texts.background);
    return options;
}

}  // namespace mezalith::app
