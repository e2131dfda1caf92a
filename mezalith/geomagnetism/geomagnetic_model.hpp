// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith {

/// A pair of Gauss coefficients, Schmidt semi-normalised: nT, or nT a year.
struct MzGaussCoefficients {
    double g = 0;
    double h = 0;
};

/// The main field of the Earth over a span of years: Gauss coefficients at one or more epochs,
/// linear in between, and how they change after the last one. It never changes once it is made.
///
/// It is read from any of the layouts that such models are published in, told apart by their
/// contents:
///
///     COF     lines of 11 fields that begin an epoch, of 8 fields with its coefficients
///     table   "g/h n m 1900.0 1905.0 ... 2025-30", then a line for each g and each h
///     SHC     degrees, number of epochs, order 2; a line of epochs; a line for each coefficient,
///             those of negative order being h
///
/// Unlike `MzMagneticPotentialCoefficients` it takes nothing for granted: a file with a wrong or a
/// missing number is no model.
/// Source: Alken et al. (2021), International Geomagnetic Reference Field: the thirteenth
/// generation, Earth, Planets and Space 73:49; ESA, Swarm L2 Product Definition (SHC).
class MEZALITH_EXPORT MzGeomagneticModel {
  public:
    /// The highest degree that is read.
    static constexpr int kMaxDegree = 63;
    static constexpr std::size_t kMaxFileSize = std::size_t{16} << 20;

    /// Where a date lies to the years that the model is made for.
    enum class Validity { Valid, NotYet, Expired };

    struct Epoch {
        double year = 0;
        int degree = 0;
        /// Of degree n and order m at n (n + 1) / 2 + m; that of degree 0 is 0.
        std::vector<MzGaussCoefficients> coefficients{};
    };

    /// What a model is made of.
    struct Contents {
        std::string name{};
        std::vector<Epoch> epochs{};  ///< their years ascending; without any there is no field
        /// Change after the last epoch, a year, laid out like an epoch's coefficients, to the
        /// degree that the secular variation is given to. Empty when the field goes on changing as
        /// it does between the last two epochs.
        std::vector<MzGaussCoefficients> rates{};
        double firstYear = 0;
        double lastYear = 0;
    };

    /// The model in the file at `path`; null when it cannot be read or holds none, and then `*why`,
    /// if asked, says so with the line.
    static std::shared_ptr<const MzGeomagneticModel> modelWithContentsOfFile(
        const std::string& path, std::string* why = nullptr);

    /// The same for a file's text.
    static std::shared_ptr<const MzGeomagneticModel> modelWithText(std::string_view text,
                                                                   std::string* why = nullptr);

    /// The International Geomagnetic Reference Field, 14th generation, 1900 to 2030: the resource
    /// "IGRF14.shc", read once. Null when that is not to be found.
    static std::shared_ptr<const MzGeomagneticModel> internationalReferenceField();

    /// What lies above the highest degree that is read does not count.
    explicit MzGeomagneticModel(Contents contents);

    const std::string& name() const { return contents_.name; }
    const std::vector<Epoch>& epochs() const { return contents_.epochs; }
    /// The highest degree of any epoch.
    int degree() const { return degree_; }

    /// The years that the model is made for, as decimal years.
    double firstYear() const { return contents_.firstYear; }
    double lastYear() const { return contents_.lastYear; }
    /// NaN is valid nowhere: it is not yet.
    Validity validityInYear(double year) const;

    /// Fills in the coefficients in the decimal `year` and their change per year there, for degrees
    /// 0 to `degree()`, laid out like an epoch's. Between two epochs they are linear, to the higher
    /// of their degrees; before the first and after the last they go on as they begin and end.
    void coefficientsInYear(double year, std::span<MzGaussCoefficients> values,
                            std::span<MzGaussCoefficients> rates) const;

    /// The number of coefficients to a degree, that of degree 0 included.
    static constexpr std::size_t countToDegree(int degree) {
        return (static_cast<std::size_t>(degree) + 1) * (static_cast<std::size_t>(degree) + 2) / 2;
    }
    static constexpr std::size_t indexOf(int degree, int order) {
        return countToDegree(degree - 1) + static_cast<std::size_t>(order);
    }

  private:
    std::size_t segmentOf(double year) const;
    void fillRates(std::size_t segment, std::span<MzGaussCoefficients> rates) const;

    Contents contents_;
    int degree_ = 0;
};

}  // namespace mezalith
