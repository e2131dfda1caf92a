// SPDX-License-Identifier: MIT
#include "apps/mezalith/view_options.hpp"

#include "apps/mezalith/arguments.hpp"
#include <mezalith/projection/utm_projection.hpp>
#include <mezalith/projection/web_mercator_projection.hpp>
#ifdef MEZALITH_WITH_PROJ
#include <mezalith/projection/proj/proj_projection.hpp>
#endif

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <utility>

#include <CLI/CLI.hpp>

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

std::shared_ptr<MzMapProjection> zoneArgument(const std::string& text) {
    using Hemisphere = MzUTMProjection::Hemisphere;
    std::string number = text.substr(4);
    const char last = number.empty() ? '\0' : number.back();
    const bool isNorth = last == 'n' || last == 'N', isSouth = last == 's' || last == 'S';
    if (isNorth || isSouth) number.pop_back();
    const double zone = numberArgument("--projection", number);
    if (!(zone >= 1 && zone <= 60 && zone == std::floor(zone))) {
        throw UsageError("--projection", "\"" + text + "\" is not " + kProjectionHelp);
    }
    const auto whole = static_cast<std::uint32_t>(zone);
    if (!isNorth && !isSouth) return MzMapProjection::mapProjectionWithUTMZone(whole);
    return MzUTMProjection::initWithZone(whole, isNorth ? Hemisphere::North : Hemisphere::South);
}

/// The systems that need no library, by their codes; null for others.
std::shared_ptr<MzMapProjection> ownSystem(std::string text) {
    std::ranges::transform(text, text.begin(), [](unsigned char c) { return std::tolower(c); });
    if (text == "epsg:3857") return std::make_shared<MzWebMercatorProjection>();
    for (const auto& [prefix, hemisphere] :
         {std::pair{"epsg:326", MzUTMProjection::Hemisphere::North},
          std::pair{"epsg:327", MzUTMProjection::Hemisphere::South}}) {
        if (!text.starts_with(prefix) || text.size() != 10) continue;
        const std::string zone = text.substr(8);
        if (zone.find_first_not_of("0123456789") != std::string::npos) continue;
        return MzUTMProjection::initWithZone(static_cast<std::uint32_t>(std::stoi(zone)),
                                             hemisphere);
    }
    return nullptr;
}

std::shared_ptr<MzMapProjection> systemArgument(const std::string& text) {
    if (auto own = ownSystem(text)) return own;
    std::string reason;
#ifdef MEZALITH_WITH_PROJ
    if (auto system = MzProjProjection::initWithText(text, &reason)) return system;
#else
    reason = "this program was built without the PROJ library";
#endif
    throw UsageError("--projection", "\"" + text + "\": " + reason);
}

}  // namespace

std::shared_ptr<MzMapProjection> projectionArgument(const std::string& text) {
    if (text == "plate-carree") return MzMapProjection::mapProjectionWithPlateCarree();
    if (text.starts_with("utm:")) return zoneArgument(text);
    if (text.starts_with('+') || text.find(':') != std::string::npos) return systemArgument(text);
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
    add("--bbox", texts.bbox, "W,S,E,N",
        "Area to show, degrees; default the data's bounds, or the projection's own area within "
        "them");
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
