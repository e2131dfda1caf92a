// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/geomagnetism/magnetic_model.hpp>
#include <mezalith/platform/date.hpp>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mezalith {

/// The models of a coefficient file, one for each epoch, and the model for any date between them or
/// after the last one.
///
/// The file is ASCII text of lines of fields between blanks. A line of 11 fields begins a model:
/// name, epoch (not read), highest degree, highest degree of the secular variation, one not read,
/// first and last year (their whole parts count), lowest and highest altitude in km, two not read.
/// A line of 8 fields gives it coefficients: degree, order, g, h, their secular variation, two not
/// read. Coefficients above the highest degree, those before the first model and lines of any other
/// length do not count. A number is the longest that its field begins with; without one it is 0.
///
/// Nothing is reported: a file that cannot be read, that has a byte above 127 or more than
/// `kMaxFileSize` bytes gives no models. A model whose highest degree is not within 0 and
/// `kMaxDegree`, or a year of which is not within -9999 and 9999, is left out.
///
/// Settled: wrong or missing numbers pass for zeros, and dates that no model covers give null;
/// `MzGeomagneticModel` reads the same files and says what is wrong.
class MEZALITH_EXPORT MzMagneticPotentialCoefficients {
  public:
    static constexpr std::int64_t kMaxDegree = 63;
    static constexpr std::size_t kMaxFileSize = std::size_t{16} << 20;

    using Models = std::map<platform::Date, std::shared_ptr<const MzMagneticModel>>;

    /// Never null, whatever became of the reading.
    static std::shared_ptr<MzMagneticPotentialCoefficients> initWithCOFfile(
        const std::string& path);

    /// Adds the models of a file.
    void createModelsFromCOFfile(const std::string& path);

    /// The models by their start dates; of several that start alike, the one read last.
    const Models& models() const { return models_; }

    /// The strings without the characters of `set` at either end, in order; what becomes empty is
    /// left out.
    std::vector<std::string> timmedComponentsFromArray(std::span<const std::string> array,
                                                       std::string_view set) const;

    /// A new model for `date`, with main-field coefficients alone: interpolated between the start
    /// dates on either side of it, to the lower of their degrees, or, when it lies at or after the
    /// last one, carried on from there by the secular variation in years of 365.2422 days, to the
    /// lower of the two degrees. Null for a date that is not after the first start date, for one
    /// past a last model without secular variation, and for one that is no instant.
    ///
    /// Settled: degrees that one epoch has more than the other are lost, as are those above the
    /// secular variation's, and an epoch's own secular variation does not count while another
    /// epoch follows.
    std::shared_ptr<MzMagneticModel> magneticModelForDate(platform::Date date) const;

  private:
    class Reader;

    Models models_;
};

}  // namespace mezalith
