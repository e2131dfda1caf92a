// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/archiver.hpp>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace mezalith::platform {

/// The space a colour's components are given in.
enum class ColorSpace {
    CalibratedRGB,    ///< red, green, blue
    DeviceRGB,        ///< red, green, blue
    CalibratedWhite,  ///< grey, 0 black to 1 white
    DeviceCMYK,       ///< cyan, magenta, yellow, black
    Named,            ///< a name in a catalogue, with an RGB meaning only if the name is known
    Pattern           ///< a repeated picture; has no components and converts to nothing
};

/// An immutable colour. Components and alpha are doubles, normally 0 to 1, kept as given.
/// Held by `std::shared_ptr<const Color>`; a null pointer is no colour.
class MEZALITH_EXPORT Color final : public Archivable {
  public:
    static std::shared_ptr<const Color> colorWithCalibratedRed(double red, double green,
                                                               double blue, double alpha);
    static std::shared_ptr<const Color> colorWithDeviceRed(double red, double green, double blue,
                                                           double alpha);
    static std::shared_ptr<const Color> colorWithCalibratedWhite(double white, double alpha);
    static std::shared_ptr<const Color> colorWithDeviceCyan(double cyan, double magenta,
                                                            double yellow, double black,
                                                            double alpha);
    /// A colour of a catalogue, by name (case does not matter): the CSS colour names are known.
    /// Any other name makes a colour that converts to nothing.
    static std::shared_ptr<const Color> colorWithName(std::string_view name);
    /// A colour that stands for a repeated picture, told apart by name only.
    static std::shared_ptr<const Color> colorWithPatternName(std::string_view name);

    static std::shared_ptr<const Color> blackColor();
    static std::shared_ptr<const Color> whiteColor();
    static std::shared_ptr<const Color> cyanColor();
    static std::shared_ptr<const Color> darkGrayColor();

    /// Reads "#rgb", "#rrggbb", "#rrggbbaa" or a CSS colour name ("transparent" too) as calibrated
    /// RGB; null for anything else.
    static std::shared_ptr<const Color> colorWithText(std::string_view text);

    ColorSpace colorSpace() const { return space_; }
    const std::string& name() const { return name_; }
    /// The components in the order of the colour space, unused ones 0.
    const std::array<double, 4>& components() const { return components_; }
    double alphaComponent() const { return alpha_; }

    /// The same colour with this alpha (replaced, not multiplied). A pattern stays as it is.
    std::shared_ptr<const Color> colorWithAlphaComponent(double alpha) const;

    /// The colour in `space`, the alpha unchanged. Calibrated and device RGB share their
    /// components; grey is the Rec. 709 luma; CMYK is the plain complement (1 - c)(1 - k). Null
    /// where there is no conversion (patterns, unknown names, and any conversion to a named or
    /// pattern space).
    std::shared_ptr<const Color> colorUsingColorSpace(ColorSpace space) const;

    /// Red, green, blue and alpha in device RGB; none where there is no conversion.
    std::optional<std::array<double, 4>> deviceRGB() const;

    /// YES when both colours convert to calibrated RGB and their components and alpha are equal
    /// there. A pattern is equal to nothing, itself included; so is null.
    bool isEqualToColor(const Color* other) const;

    /// "red green blue alpha" in calibrated RGB as shortest numbers, or the name of what has none.
    std::string description() const;

    std::string_view archiveClassName() const override;
    /// Writes "space", then "components" as doubles or, for a space without, "name", and "alpha".
    void encodeWithCoder(KeyedArchiver& coder) const override;
    /// "#rrggbbaa" when it reads back to exactly this colour.
    std::optional<std::string> archiveText() const override;
    /// Reads what `encodeWithCoder` wrote, an absent alpha as 1; null for an unknown space, an
    /// alpha that is null and components that are not as many numbers as the space has.
    /// Out-of-range components are kept.
    static std::shared_ptr<const Color> initWithCoder(const KeyedUnarchiver& coder);

  private:
    Color(ColorSpace space, std::array<double, 4> components, double alpha, std::string name);
    static std::shared_ptr<const Color> make(ColorSpace space, std::array<double, 4> components,
                                             double alpha, std::string name = {});

    ColorSpace space_;
    std::array<double, 4> components_;
    double alpha_;
    std::string name_;
};

/// `isEqualToColor` for pointers that may be null: null is equal to nothing.
MEZALITH_EXPORT bool isEqualToColor(const std::shared_ptr<const Color>& a,
                                    const std::shared_ptr<const Color>& b);

}  // namespace mezalith::platform
