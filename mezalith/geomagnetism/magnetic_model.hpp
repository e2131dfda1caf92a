// SPDX-License-Identifier: MIT
#pragma once

#include <mezalith/export.hpp>
#include <mezalith/platform/date.hpp>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace mezalith {

/// A model of the Earth's main field: Gauss coefficients of a spherical-harmonic expansion by
/// degree and order, Schmidt semi-normalised, in nT, and their secular variation in nT a year. A
/// coefficient that has not been set is 0.
class MEZALITH_EXPORT MzMagneticModel {
  public:
    /// Finds texts without making a string of them.
    struct TextHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>()(text);
        }
    };
    using Cache = std::unordered_map<std::string, double, TextHash, std::equal_to<>>;

    const std::string& name() const { return name_; }
    void setName(std::string name) { name_ = std::move(name); }

    /// First instant of validity; none until set.
    std::optional<platform::Date> startDate() const { return startDate_; }
    void setStartDate(std::optional<platform::Date> date) { startDate_ = date; }

    /// End of validity; none until set.
    std::optional<platform::Date> endDate() const { return endDate_; }
    void setEndDate(std::optional<platform::Date> date) { endDate_ = date; }

    /// Highest degree of the main field.
    std::uint64_t maxDegree() const { return maxDegree_; }
    void setMaxDegree(std::uint64_t degree) { maxDegree_ = degree; }

    /// Highest degree of the secular variation; 0 means that there is none.
    std::uint64_t maxSVDegree() const { return maxSVDegree_; }
    void setMaxSVDegree(std::uint64_t degree) { maxSVDegree_ = degree; }

    /// Lowest altitude, kilometres.
    double minAltitude() const { return minAltitude_; }
    void setMinAltitude(double altitude) { minAltitude_ = altitude; }

    /// Highest altitude, kilometres.
    double maxAltitude() const { return maxAltitude_; }
    void setMaxAltitude(double altitude) { maxAltitude_ = altitude; }

    /// All coefficients, under "1_0_g", "1_0_h", "1_0_g_sv" and "1_0_h_sv" for degree 1, order 0.
    const Cache& cache() const { return cache_; }
    Cache& cache() { return cache_; }

    double gCoefficientOfDegree(std::int64_t degree, std::int64_t order) const;
    double hCoefficientOfDegree(std::int64_t degree, std::int64_t order) const;
    double gSVCoefficientOfDegree(std::int64_t degree, std::int64_t order) const;
    double hSVCoefficientOfDegree(std::int64_t degree, std::int64_t order) const;

    void setGCoefficient(double coefficient, std::int64_t degree, std::int64_t order);
    void setHCoefficient(double coefficient, std::int64_t degree, std::int64_t order);
    void setGSVCoefficient(double coefficient, std::int64_t degree, std::int64_t order);
    void setHSVCoefficient(double coefficient, std::int64_t degree, std::int64_t order);

  private:
    std::string name_;
    std::optional<platform::Date> startDate_;
    std::optional<platform::Date> endDate_;
    std::uint64_t maxDegree_ = 0;
    std::uint64_t maxSVDegree_ = 0;
    double minAltitude_ = 0;
    double maxAltitude_ = 0;
    Cache cache_;
};

}  // namespace mezalith
