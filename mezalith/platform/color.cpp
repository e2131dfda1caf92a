// SPDX-License-Identifier: MIT
#include <mezalith/platform/color.hpp>
#include <mezalith/platform/css_color_names.hpp>
#include <mezalith/platform/nearest_name.hpp>
#include <mezalith/platform/number_text.hpp>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace mezalith::platform {
namespace {

using Components = std::array<double, 4>;
/// Of components, to compare them to the last bit.
using Bits = std::array<std::uint64_t, 4>;

struct SpaceEntry {
    std::string_view archiveName;
    std::size_t componentCount;
};

/// By the value of ColorSpace.
constexpr std::array<SpaceEntry, 6> spaces{{{"calibratedRGB", 3},
                                            {"deviceRGB", 3},
                                            {"calibratedWhite", 1},
                                            {"deviceCMYK", 4},
                                            {"named", 0},
                                            {"pattern", 0}}};

const SpaceEntry& entryOf(ColorSpace space) { return spaces[static_cast<std::size_t>(space)]; }

bool hasName(ColorSpace space) { return entryOf(space).componentCount == 0; }

std::optional<ColorSpace> spaceWithArchiveName(std::string_view name) {
    for (std::size_t i = 0; i < spaces.size(); ++i) {
        if (spaces[i].archiveName == name) {
            return static_cast<ColorSpace>(i);
        }
    }
    return std::nullopt;
}

std::string suggestedSpace(std::string_view name) {
    std::vector<std::string_view> names;
    names.reserve(spaces.size());
    for (const SpaceEntry& entry : spaces) names.push_back(entry.archiveName);
    return suggestion(name, names);
}

std::string lowerCase(std::string_view text) {
    std::string result(text);
    for (char& c : result) {
        if (c >= 'A' && c <= 'Z') {
            c = static_cast<char>(c - 'A' + 'a');
        }
    }
    return result;
}

Components componentsOfBytes(std::uint32_t rgb) {
    return {((rgb >> 16) & 255) / 255.0, ((rgb >> 8) & 255) / 255.0, (rgb & 255) / 255.0, 0};
}

constexpr std::string_view transparentName = "transparent";

std::optional<Components> rgbOfName(std::string_view name) {
    const std::string key = lowerCase(name);
    if (key == transparentName) {
        return Components{};
    }
    const auto found = std::ranges::lower_bound(detail::cssColors, std::string_view(key), {},
                                                &detail::NamedColor::name);
    if (found == detail::cssColors.end() || found->name != key) {
        return std::nullopt;
    }
    return componentsOfBytes(found->rgb);
}

double alphaOfName(std::string_view name) { return lowerCase(name) == transparentName ? 0 : 1; }

Components rgbOfCMYK(const Components& c) {
    const double light = 1 - c[3];
    return {(1 - c[0]) * light, (1 - c[1]) * light, (1 - c[2]) * light, 0};
}

Components cmykOfRGB(const Components& c) {
    const double light = std::max({c[0], c[1], c[2]});
    if (!(light > 0)) {
        return {0, 0, 0, 1};
    }
    return {(light - c[0]) / light, (light - c[1]) / light, (light - c[2]) / light, 1 - light};
}

/// Rec. 709 luma; an exact grey keeps its value.
double whiteOfRGB(const Components& c) {
    if (c[0] == c[1] && c[1] == c[2]) {
        return c[0];
    }
    return 0.2126 * c[0] + 0.7152 * c[1] + 0.0722 * c[2];
}

std::optional<Components> rgbOf(const Color& color) {
    const Components& c = color.components();
    switch (color.colorSpace()) {
        case ColorSpace::CalibratedRGB:
        case ColorSpace::DeviceRGB:
            return c;
        case ColorSpace::CalibratedWhite:
            return Components{c[0], c[0], c[0], 0};
        case ColorSpace::DeviceCMYK:
            return rgbOfCMYK(c);
        case ColorSpace::Named:
            return rgbOfName(color.name());
        case ColorSpace::Pattern:
            break;
    }
    return std::nullopt;
}

Components componentsFromRGB(const Components& rgb, ColorSpace space) {
    switch (space) {
        case ColorSpace::CalibratedWhite:
            return {whiteOfRGB(rgb), 0, 0, 0};
        case ColorSpace::DeviceCMYK:
            return cmykOfRGB(rgb);
        default:
            return rgb;
    }
}

std::optional<std::uint32_t> hexadecimal(std::string_view digits) {
    std::uint32_t value = 0;
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, 16);
    if (error != std::errc{} || stop != end) {
        return std::nullopt;
    }
    return value;
}

/// 0xrgb to 0xrrggbb.
std::uint32_t doubledDigits(std::uint32_t rgb) {
    return ((rgb & 0xf00) * 0x1100) | ((rgb & 0x0f0) * 0x110) | ((rgb & 0x00f) * 0x11);
}

}  // namespace

Color::Color(ColorSpace space, std::array<double, 4> components, double alpha, std::string name)
    : space_(space), components_(components), alpha_(alpha), name_(std::move(name)) {}

std::shared_ptr<const Color> Color::make(ColorSpace space, std::array<double, 4> components,
                                         double alpha, std::string name) {
    return std::shared_ptr<const Color>(new Color(space, components, alpha, std::move(name)));
}

std::shared_ptr<const Color> Color::colorWithCalibratedRed(double red, double green, double blue,
                                                           double alpha) {
    return make(ColorSpace::CalibratedRGB, {red, green, blue, 0}, alpha);
}

std::shared_ptr<const Color> Color::colorWithDeviceRed(double red, double green, double blue,
                                                       double alpha) {
    return make(ColorSpace::DeviceRGB, {red, green, blue, 0}, alpha);
}

std::shared_ptr<const Color> Color::colorWithCalibratedWhite(double white, double alpha) {
    return make(ColorSpace::CalibratedWhite, {white, 0, 0, 0}, alpha);
}

std::shared_ptr<const Color> Color::colorWithDeviceCyan(double cyan, double magenta, double yellow,
                                                        double black, double alpha) {
    return make(ColorSpace::DeviceCMYK, {cyan, magenta, yellow, black}, alpha);
}

std::shared_ptr<const Color> Color::colorWithName(std::string_view name) {
    return make(ColorSpace::Named, {}, alphaOfName(name), std::string(name));
}

std::shared_ptr<const Color> Color::colorWithPatternName(std::string_view name) {
    return make(ColorSpace::Pattern, {}, 1, std::string(name));
}

std::shared_ptr<const Color> Color::blackColor() { return colorWithCalibratedWhite(0, 1); }

std::shared_ptr<const Color> Color::whiteColor() { return colorWithCalibratedWhite(1, 1); }

std::shared_ptr<const Color> Color::cyanColor() { return colorWithCalibratedRed(0, 1, 1, 1); }

std::shared_ptr<const Color> Color::darkGrayColor() { return colorWithCalibratedWhite(1.0 / 3, 1); }

std::shared_ptr<const Color> Color::colorWithText(std::string_view text) {
    if (!text.starts_with('#')) {
        return colorWithName(text)->colorUsingColorSpace(ColorSpace::CalibratedRGB);
    }
    const std::string_view digits = text.substr(1);
    const auto value = hexadecimal(digits);
    if (!value || (digits.size() != 3 && digits.size() != 6 && digits.size() != 8)) {
        return nullptr;
    }
    if (digits.size() == 8) {
        return make(ColorSpace::CalibratedRGB, componentsOfBytes(*value >> 8),
                    (*value & 255) / 255.0);
    }
    const std::uint32_t rgb = digits.size() == 3 ? doubledDigits(*value) : *value;
    return make(ColorSpace::CalibratedRGB, componentsOfBytes(rgb), 1);
}

std::shared_ptr<const Color> Color::colorWithAlphaComponent(double alpha) const {
    return make(space_, components_, space_ == ColorSpace::Pattern ? alpha_ : alpha, name_);
}

std::shared_ptr<const Color> Color::colorUsingColorSpace(ColorSpace space) const {
    if (hasName(space)) {
        return nullptr;
    }
    if (space == space_) {
        return make(space, components_, alpha_);
    }
    const auto rgb = rgbOf(*this);
    return rgb ? make(space, componentsFromRGB(*rgb, space), alpha_) : nullptr;
}

std::optional<std::array<double, 4>> Color::deviceRGB() const {
    auto rgb = rgbOf(*this);
    if (rgb) (*rgb)[3] = alpha_;
    return rgb;
}

bool Color::isEqualToColor(const Color* other) const {
    const auto mine = rgbOf(*this);
    const auto theirs = other ? rgbOf(*other) : std::nullopt;
    return mine && theirs && *mine == *theirs && alpha_ == other->alpha_;
}

std::string Color::description() const {
    const auto rgb = rgbOf(*this);
    if (!rgb) {
        return name_;
    }
    return shortestText((*rgb)[0]) + ' ' + shortestText((*rgb)[1]) + ' ' + shortestText((*rgb)[2]) +
           ' ' + shortestText(alpha_);
}

std::string_view Color::archiveClassName() const { return "Color"; }

void Color::encodeWithCoder(KeyedArchiver& coder) const {
    const SpaceEntry& entry = entryOf(space_);
    coder.encodeString(entry.archiveName, "space");
    if (hasName(space_)) {
        coder.encodeString(name_, "name");
    } else {
        coder.encodeDoubles({components_.data(), entry.componentCount}, "components");
    }
    coder.encodeNumber(alpha_, "alpha");
}

std::optional<std::string> Color::archiveText() const {
    static constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text = "#";
    for (const double channel : {components_[0], components_[1], components_[2], alpha_}) {
        // A NaN is out of range, too.
        const bool isInRange = channel >= 0 && channel <= 1;
        const auto byte = static_cast<std::size_t>(isInRange ? std::lround(channel * 255) : 0);
        text += {kDigits[byte / 16], kDigits[byte % 16]};
    }
    const auto read = colorWithText(text);
    const bool isSame = space_ == read->space_ && alpha_ == read->alpha_ &&
                        std::bit_cast<Bits>(components_) == std::bit_cast<Bits>(read->components_);
    return isSame ? std::optional(text) : std::nullopt;
}

std::shared_ptr<const Color> Color::initWithCoder(const KeyedUnarchiver& coder) {
    const std::string spaceName = coder.decodeString("space");
    const auto space = spaceWithArchiveName(spaceName);
    const auto alpha = coder.containsValueForKey("alpha") ? coder.decodeNumber("alpha") : 1;
    if (!space) {
        coder.failWithError("unknown colour space" + suggestedSpace(spaceName), "space");
        return nullptr;
    }
    if (!alpha) {
        coder.failWithError("null, not a number", "alpha");
        return nullptr;
    }
    if (hasName(*space)) {
        return make(*space, {}, *alpha, coder.decodeString("name"));
    }
    const std::vector<double> values = coder.decodeDoubles("components");
    const std::size_t count = entryOf(*space).componentCount;
    if (values.size() != count) {
        coder.failWithError(std::to_string(values.size()) + " components where " + spaceName +
                                " has " + std::to_string(count),
                            "components");
        return nullptr;
    }
    Components components{};
    std::ranges::copy(values, components.begin());
    return make(*space, components, *alpha);
}

bool isEqualToColor(const std::shared_ptr<const Color>& a, const std::shared_ptr<const Color>& b) {
    return a && a->isEqualToColor(b.get());
}

}  // namespace mezalith::platform
